#include "dicom/FileHeader.h"

#include "dicom/CodeStream.h"
#include "dicom/DataSetParser.h"
#include "dicom/ElementHeader.h"
#include "dicom/Faults.h"
#include "dicom/ForwardBuffer.h"
#include "dicom/Inflating.h"
#include "dicom/MemoryByteSource.h"
#include "dicom/OffsetTable.h"
#include "dicom/PrefetchedSource.h"
#include "dicom/Tags.h"
#include "dicom/TextSplitting.h"

#include <algorithm>

namespace cinedisc::dicom {

namespace {

constexpr std::size_t preambleBytes = 128;
constexpr std::string_view prefix = "DICM";
constexpr std::uint64_t mostInflatedBytes = 128ull << 20;

/// Whether a system that is asked to run the file would: Windows, Linux, macOS, scripts. The preamble may
/// legitimately be another picture format's (PS3.10 section 7.1).
bool isProgram(std::string_view start) {
    constexpr std::string_view signatures[] = {"MZ",
                                               "\x7F\x45LF",
                                               "#!",
                                               "\xFE\xED\xFA\xCE",
                                               "\xFE\xED\xFA\xCF",
                                               "\xCE\xFA\xED\xFE",
                                               "\xCF\xFA\xED\xFE",
                                               "\xCA\xFE\xBA\xBE"};
    return std::ranges::any_of(signatures, [&](auto signature) { return start.starts_with(signature); });
}

/// Skips preamble and prefix (PS3.10 section 7.1); whether the prefix was there.
bool skipPrefix(ForwardBuffer& buffer, FileHeader& header) {
    const auto start = textOf(buffer.peek(preambleBytes + prefix.size()));
    for (const std::size_t at : {preambleBytes, std::size_t{0}}) {
        if (start.size() < at + prefix.size() || start.substr(at, prefix.size()) != prefix) continue;
        header.beginsAsProgram = at > 0 && isProgram(start);
        buffer.advance(at + prefix.size());
        return true;
    }
    return false;
}

void parseBody(FileHeader& header, ForwardBuffer& buffer, Encoding declared) {
    header.encoding = sniffEncoding(buffer.peek(ElementHeader::mostBytes), declared);
    if (header.syntaxUid.empty()) {
        header.syntax = &nativeSyntax(header.encoding);
        header.syntaxUid = header.syntax->uid;
    }
    DataSetParser parser(buffer);
    header.brokenOff = parser.parse(header.elements, header.encoding);
    header.pixels = parser.pixels();
}

/// Reads on over the offset table to the beginning of the first fragment, so that they need no read of their
/// own.
void fetchOffsetTable(const FileHeader& header, ForwardBuffer& buffer) {
    constexpr std::size_t firstFragment = itemHeader + codeStreamSignatureBytes;
    if (!header.pixels || !header.pixels->isOpen) return;
    const auto item = readElementHeader(buffer.peek(itemHeader), implicitLittle, buffer.remaining());
    if (!item || item->tag != tags::Item || item->length > mostOffsetTableBytes) return;
    buffer.peek(itemHeader + item->length + firstFragment);
}

/// Whether what follows the meta information is deflated indeed: some writers only say so.
bool isDeflated(const FileHeader& header, ForwardBuffer& buffer) {
    return header.syntax && header.syntax->deflated &&
           !looksLikeDataSet(buffer.peek(ElementHeader::mostBytes), buffer.size());
}

}  // namespace

Result<FileHeader> readFileHeader(std::shared_ptr<const ByteSource> source) {
    if (source->size() == 0) return DecodeError{DecodeError::Kind::NotDicom, DecodeError::Reason::Empty};
    FileHeader header;
    ForwardBuffer buffer(*source);
    const bool hasPrefix = skipPrefix(buffer, header);
    if (buffer.hasFailed() && buffer.remaining() == 0) return faults::cannotRead({}, buffer.size());
    if (!hasPrefix && !looksLikeDataSet(buffer.peek(ElementHeader::mostBytes), buffer.size()))
        return DecodeError{DecodeError::Kind::NotDicom};

    DataSetParser(buffer).parseFileMeta(header.elements);
    header.syntaxUid = header.elements.string(tags::TransferSyntaxUID);
    header.syntax = findTransferSyntax(header.syntaxUid);
    const Encoding declared = header.syntax ? header.syntax->encoding : explicitLittle;

    if (isDeflated(header, buffer)) {
        const std::uint64_t start = buffer.position();
        const PrefetchedSource deflated(source, start, buffer.takeRest());
        auto inflated = inflateFrom(deflated, start, mostInflatedBytes);
        if (!inflated) {
            header.brokenOff = inflated.error();
            header.body = std::move(source);
            return header;
        }
        header.body = std::make_shared<MemoryByteSource>(std::move(inflated.value()));
        ForwardBuffer unpacked(*header.body);
        parseBody(header, unpacked, declared);
        return header;
    }

    parseBody(header, buffer, declared);
    fetchOffsetTable(header, buffer);
    const std::uint64_t restOffset = buffer.position();
    header.body = std::make_shared<PrefetchedSource>(std::move(source), restOffset, buffer.takeRest());
    return header;
}

}  // namespace cinedisc::dicom
