#include "dicom/codecs/ExtendedJpegDecoder.h"

#include "dicom/codecs/CodecError.h"

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmjpeg/djcparam.h>
#include <dcmtk/dcmjpeg/djdijg12.h>

#include <algorithm>
#include <vector>

namespace cinedisc::dicom::codecs {
namespace {

/// The library's decoder, silent: a warning, of which it does not tell which one it is, means damage. What
/// is harmless must be gone from the stream before.
class QuietDecoder : public DJDecompressIJG12Bit {
  public:
    explicit QuietDecoder(const DJCodecParameter& parameters) : DJDecompressIJG12Bit(parameters, OFFalse) {}

    void emitMessage(int level) const override {
        if (level < 0) damaged_ = true;
    }
    bool damaged() const { return damaged_; }

  private:
    mutable bool damaged_ = false;
};

/// Zeros at the end of entropy-coded data: of the last codes, or what fills the data up.
enum class LastZeros { AreCodes, AreFilling };

/// Rebuilds a stream without what a decoder would only warn of and what could only confuse it: comments,
/// application data, filling, and the selection of coefficients in the scan headers of sequential processes,
/// which have no choice (ITU-T T.81 B.2.3) and are often written as 0 to 0.
class Essentials {
  public:
    Essentials(std::span<const std::uint8_t> stream, LastZeros zeros)
        : stream_(stream), reader_(stream), zeros_(zeros) {}

    std::vector<std::uint8_t> take(bool isSequential) {
        std::size_t codedFrom = stream_.size();
        while (const auto next = reader_.next()) {
            const std::size_t start = reader_.position() - next->length();
            appendCoded(codedFrom, start);
            codedFrom = stream_.size();
            if (next->code == marker::eoi) break;
            if (next->code >= marker::app0) continue;
            result_.push_back(0xFF);
            result_.insert(result_.end(), stream_.begin() + static_cast<std::ptrdiff_t>(start + 1),
                           stream_.begin() + static_cast<std::ptrdiff_t>(reader_.position()));
            if (next->code == marker::sos && isSequential && next->payload.size() >= 4) {
                const std::uint8_t selection[] = {0, 63, 0};
                std::copy(std::begin(selection), std::end(selection), result_.end() - 3);
            }
            const bool codedFollows = next->code == marker::sos || next->standsAlone();
            if (codedFollows && next->code != marker::soi) codedFrom = reader_.position();
        }
        appendCoded(codedFrom, stream_.size());
        result_.insert(result_.end(), {0xFF, marker::eoi});
        return std::move(result_);
    }

  private:
    void appendCoded(std::size_t from, std::size_t to) {
        if (from >= to) return;
        const auto coded = stream_.subspan(from, to - from);
        const auto isFilling = [&](std::size_t i) {
            return coded[i] == 0 && (i == 0 || coded[i - 1] != 0xFF);
        };
        std::size_t length = coded.size();
        while (zeros_ == LastZeros::AreFilling && length > 0 && isFilling(length - 1)) --length;
        result_.insert(result_.end(), coded.begin(), coded.begin() + static_cast<std::ptrdiff_t>(length));
    }

    std::span<const std::uint8_t> stream_;
    JpegMarkerReader reader_;
    LastZeros zeros_;
    std::vector<std::uint8_t> result_;
};

/// False when the library finds the stream at fault.
bool decode(std::vector<std::uint8_t> input, std::span<std::uint16_t> pixels) {
    const DJCodecParameter parameters(ECC_lossyYCbCr, EDC_never, EUC_never, EPC_colorByPixel);
    QuietDecoder decoder(parameters);
    OFCondition condition = decoder.init();
    if (condition.good())
        condition = decoder.decode(input.data(), static_cast<Uint32>(input.size()),
                                   reinterpret_cast<Uint8*>(pixels.data()),
                                   static_cast<Uint32>(pixels.size_bytes()), OFFalse);
    return condition.good() && !decoder.damaged();
}

}  // namespace

std::optional<DecodeError> decodeExtendedJpeg(std::span<const std::uint8_t> stream, const JpegHeader& header,
                                              std::span<std::uint16_t> pixels) {
    const bool isSequential = header.startOfFrame != marker::sof2;
    const auto decodeWith = [&](LastZeros zeros) {
        return decode(Essentials(stream, zeros).take(isSequential), pixels);
    };
    // Encoders should end with ones, which tells the two apart, but some end with zeros.
    const bool bad = !decodeWith(LastZeros::AreCodes) && !decodeWith(LastZeros::AreFilling);
    // A progressive picture without its last scans would only look blurred.
    if ((bad || header.startOfFrame == marker::sof2) && !hasEnd(stream)) return cutOff();
    if (bad) return broken("12-bit JPEG data that contradict themselves");
    return std::nullopt;
}

}  // namespace cinedisc::dicom::codecs
