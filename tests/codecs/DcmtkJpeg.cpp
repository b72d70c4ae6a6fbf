#include "tests/codecs/DcmtkJpeg.h"

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmjpeg/djcparam.h>
#include <dcmtk/dcmjpeg/djdijg12.h>
#include <dcmtk/dcmjpeg/djdijg16.h>
#include <dcmtk/dcmjpeg/djdijg8.h>
#include <dcmtk/dcmjpeg/djeijg12.h>
#include <dcmtk/dcmjpeg/djeijg16.h>
#include <dcmtk/dcmjpeg/djeijg8.h>

namespace cinedisc::test {
namespace {

const DJCodecParameter& parameters() {
    static const DJCodecParameter shared(ECC_lossyYCbCr, EDC_never, EUC_never, EPC_colorByPixel);
    return shared;
}

std::vector<std::uint8_t> encoded(DJEncoder& encoder, const JpegSource& source) {
    Uint8* bytes = nullptr;
    Uint32 length = 0;
    const auto columns = static_cast<Uint16>(source.columns), rows = static_cast<Uint16>(source.rows);
    const auto components = static_cast<Uint16>(source.components);
    const EP_Interpretation meaning = source.components == 3 ? EPI_RGB : EPI_Monochrome2;
    if (encoder.bytesPerSample() == 1) {
        std::vector<Uint8> samples(source.samples.begin(), source.samples.end());
        encoder.encode(columns, rows, meaning, components, samples.data(), bytes, length);
    } else {
        std::vector<Uint16> samples(source.samples.begin(), source.samples.end());
        encoder.encode(columns, rows, meaning, components, samples.data(), bytes, length);
    }
    std::vector<std::uint8_t> result(bytes, bytes + length);
    delete[] bytes;
    return result;
}

bool decode(DJDecoder& decoder, std::span<const std::uint8_t> stream, void* into, std::size_t size) {
    return decoder.init().good() &&
           decoder
               .decode(const_cast<Uint8*>(stream.data()), static_cast<Uint32>(stream.size()),
                       static_cast<Uint8*>(into), static_cast<Uint32>(size), OFFalse)
               .good();
}

}  // namespace

std::vector<std::uint8_t> dcmtkLossless(const JpegSource& source, int predictor, int pointTransform) {
    if (source.bits <= 8) {
        DJCompressIJG8Bit encoder(parameters(), EJM_lossless, predictor, pointTransform);
        return encoded(encoder, source);
    }
    if (source.bits <= 12) {
        DJCompressIJG12Bit encoder(parameters(), EJM_lossless, predictor, pointTransform);
        return encoded(encoder, source);
    }
    DJCompressIJG16Bit encoder(parameters(), EJM_lossless, predictor, pointTransform);
    return encoded(encoder, source);
}

std::vector<std::uint8_t> dcmtkLossy(const JpegSource& source, LossyProcess process, int quality) {
    const EJ_Mode mode = process == LossyProcess::Baseline     ? EJM_baseline
                         : process == LossyProcess::Sequential ? EJM_sequential
                                                               : EJM_progressive;
    if (source.bits <= 8) {
        DJCompressIJG8Bit encoder(parameters(), mode, static_cast<Uint8>(quality));
        return encoded(encoder, source);
    }
    DJCompressIJG12Bit encoder(parameters(), mode, static_cast<Uint8>(quality));
    return encoded(encoder, source);
}

std::vector<std::uint16_t> dcmtkDecoded(std::span<const std::uint8_t> stream, const JpegSource& likeThis) {
    const std::size_t count = static_cast<std::size_t>(likeThis.rows) *
                              static_cast<std::size_t>(likeThis.columns) *
                              static_cast<std::size_t>(likeThis.components);
    std::vector<std::uint16_t> result(count);
    if (likeThis.bits <= 8) {
        std::vector<std::uint8_t> samples(count);
        if (!dcmtkDecode8(stream, samples)) return {};
        result.assign(samples.begin(), samples.end());
        return result;
    }
    const bool good = likeThis.bits <= 12 ? dcmtkDecode12(stream, result) : dcmtkDecode16(stream, result);
    return good ? result : std::vector<std::uint16_t>{};
}

bool dcmtkDecode8(std::span<const std::uint8_t> stream, std::span<std::uint8_t> into) {
    DJDecompressIJG8Bit decoder(parameters(), OFFalse);
    return decode(decoder, stream, into.data(), into.size());
}

bool dcmtkDecode12(std::span<const std::uint8_t> stream, std::span<std::uint16_t> into) {
    DJDecompressIJG12Bit decoder(parameters(), OFFalse);
    return decode(decoder, stream, into.data(), into.size_bytes());
}

bool dcmtkDecode16(std::span<const std::uint8_t> stream, std::span<std::uint16_t> into) {
    DJDecompressIJG16Bit decoder(parameters(), OFFalse);
    return decode(decoder, stream, into.data(), into.size_bytes());
}

}  // namespace cinedisc::test
