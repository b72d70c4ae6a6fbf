#include "tests/dicom/Fixtures.h"

#include "dicom/TextSplitting.h"

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dctag.h>

#include <regex>
#include <stdexcept>

namespace cinedisc::test {

using namespace dicom;

std::shared_ptr<const DicomFile> opened(const Bytes& bytes) {
    auto file = DicomFile::open(std::make_shared<MemoryByteSource>(bytes));
    if (!file) throw std::runtime_error(file.error().detail);
    return file.value();
}

std::shared_ptr<const DicomFile> opened(const DicomBuilder& builder) { return opened(builder.build()); }

void put(DicomItem& into, const std::string& elements) {
    static const std::regex comma(", "), form(R"((?:(\w\w):)?(\w+)(?:\[(\d)\])?(?:\.(.*))?)");
    using Parts = std::sregex_token_iterator;
    for (Parts at(elements.begin(), elements.end(), comma, -1), end; at != end; ++at) {
        const std::string element = *at;
        const std::size_t equals = element.find('=');
        const std::string name = element.substr(0, equals);  // matching takes stack for every letter
        std::smatch parts;
        DcmTag known;
        if (equals == std::string::npos || !std::regex_match(name, parts, form) ||
            DcmTag::findTagFromName(parts.str(2).c_str(), known).bad())
            throw std::logic_error(element);
        const Tag tag{known.getGroup(), known.getElement()};
        const std::string kind = parts[1].matched ? parts.str(1) : known.getVR().getValidVRName();
        const std::string value = element.substr(equals + 1);
        if (parts[4].matched) {
            const std::size_t index = parts[3].matched ? std::size_t(parts.str(3)[0] - '0') : 0;
            std::vector<DicomItem> items;
            for (const auto& each : into.elements)
                if (each.tag == tag) items = each.items;
            items.resize(std::max(items.size(), index + 1));
            put(items[index], parts.str(4) + "=" + value);
            into.sequence(tag, items);
        } else if (std::string_view("US SS UL OB OW").find(kind) != std::string_view::npos) {
            std::vector<std::int64_t> numbers;
            for (const auto each : splitValues(value))
                if (!each.empty()) numbers.push_back(std::stoll(std::string(each), nullptr, 0));
            into.numbers(tag, kind.c_str(), numbers);
        } else {
            into.text(tag, kind.c_str(), value);
        }
    }
}

Bytes rleFrame(const Bytes& pixels) {
    constexpr std::size_t longestRun = 128;
    Bytes stream = bytesOf({1, 0, 0, 0, 64}) + Bytes(59);
    for (std::size_t at = 0; at < pixels.size(); at += longestRun) {
        const std::size_t run = std::min(longestRun, pixels.size() - at);
        stream.push_back(static_cast<std::byte>(run - 1));
        stream.insert(stream.end(), &pixels[at], &pixels[at] + run);
    }
    if (stream.size() % 2) stream.push_back(std::byte{0x80});
    return stream;
}

Bytes pixelsOfFrame(int frame, std::size_t count) {
    Bytes pixels(count);
    for (std::size_t i = 0; i < count; ++i)
        pixels[i] = static_cast<std::byte>((i * 7 + static_cast<std::size_t>(frame) * 31) % 251);
    return pixels;
}

DicomBuilder rleRun(int rows, int columns, int frames, OffsetTable table) {
    std::vector<Bytes> streams;
    for (int frame = 0; frame < frames; ++frame)
        streams.push_back(rleFrame(pixelsOfFrame(frame, static_cast<std::size_t>(rows * columns))));
    return DicomBuilder::image(rows, columns, frames)
        .transferSyntax(rleSyntax)
        .encapsulatedFrames(streams, table);
}

std::vector<double> samplesIn(const Result<Frame>& frame) {
    std::vector<double> numbers;
    if (frame)
        std::visit([&](const auto& all) { numbers.assign(all.begin(), all.end()); }, frame.value().samples);
    return numbers;
}

bool shows(const DicomFile& file, int frame, const Bytes& pixels) {
    return std::ranges::equal(samplesIn(file.decode(frame)), pixels, {}, {}, std::to_integer<int>);
}

Bytes fakeJpeg(std::size_t size, int mark) {
    Bytes stream = bytesOf({0xFF, 0xD8, 0xFF, 0xE0, 0x00, 0x10});
    stream.resize(std::max<std::size_t>(size, 8), static_cast<std::byte>(mark));
    return stream;
}

}  // namespace cinedisc::test
