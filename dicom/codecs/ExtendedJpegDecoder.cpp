#include "dicom/codecs/ExtendedJpegDecoder.h"

#include "dicom/codecs/BaselineJpegDecoder.h"
#include "dicom/codecs/CodecError.h"

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmjpeg/djcparam.h>
#include <dcmtk/dcmjpeg/djdijg12.h>

#include <algorithm>
#include <vector>

namespace cinedisc::dicom::codecs {
namespace {

/// The library's decoder, silent: what it would log tells whether the data were damaged.
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

/// The stream without comments and application data, which could only confuse, and with an end marker. Its
/// entropy-coded data are left alone.
std::vector<std::uint8_t> essentials(std::span<const std::uint8_t> stream) {
    std::vector<std::uint8_t> result{0xFF, marker::soi};
    JpegMarkerReader reader(stream);
    while (const auto next = reader.next()) {
        if (next->code == marker::soi || (next->code >= marker::app0 && next->code != marker::sof55))
            continue;
        const std::size_t length = next->payload.size() + 4;
        if (next->code == marker::sos) {
            const auto rest = stream.subspan(reader.position() - length);
            result.insert(result.end(), rest.begin(), rest.end());
            break;
        }
        const auto segment = stream.subspan(reader.position() - length, length);
        result.insert(result.end(), segment.begin(), segment.end());
    }
    result.insert(result.end(), {0xFF, marker::eoi});
    return result;
}

}  // namespace

Result<CodedPicture> decodeExtendedJpeg(std::span<const std::uint8_t> stream, const JpegHeader& header,
                                        const PixelFormat& format) {
    CodedPicture picture;
    picture.components = header.componentCount;
    picture.precision = 12;
    picture.exactness = Exactness::Other;
    picture.colour = jpegColourSpace(header, format.photometric);
    std::vector<std::uint16_t> pixels(static_cast<std::size_t>(format.rows) *
                                      static_cast<std::size_t>(format.columns) *
                                      static_cast<std::size_t>(header.componentCount));
    std::vector<std::uint8_t> input = essentials(stream);

    const DJCodecParameter parameters(ECC_lossyYCbCr, EDC_never, EUC_never, EPC_colorByPixel);
    QuietDecoder decoder(parameters);
    OFCondition condition = decoder.init();
    if (condition.good())
        condition = decoder.decode(input.data(), static_cast<Uint32>(input.size()),
                                   reinterpret_cast<Uint8*>(pixels.data()),
                                   static_cast<Uint32>(pixels.size() * sizeof(pixels[0])), OFFalse);
    const bool bad = condition.bad() || decoder.damaged();
    // A progressive picture without its last scans would only look blurred.
    if ((bad || header.startOfFrame == marker::sof2) && !hasEnd(stream)) return cutOff();
    if (bad) return broken("12-bit JPEG data that contradict themselves");
    picture.cells = std::move(pixels);
    return picture;
}

}  // namespace cinedisc::dicom::codecs
