#include "tests/codecs/Encoders.h"

#include "dicom/codecs/FrameDecoder.h"

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dcpixseq.h>
#include <dcmtk/dcmdata/dcpxitem.h>
#include <dcmtk/dcmdata/dcrleerg.h>
#include <dcmtk/dcmdata/dctk.h>
#include <dcmtk/dcmimage/diregist.h>
#include <dcmtk/dcmjpeg/djcparam.h>
#include <dcmtk/dcmjpeg/djeijg12.h>
#include <dcmtk/dcmjpeg/djeijg16.h>
#include <dcmtk/dcmjpeg/djeijg8.h>
#include <dcmtk/dcmjpls/djencode.h>
#include <dcmtk/dcmjpls/djrparam.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <stdexcept>

namespace cinedisc::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// One of the library's three builds, for 8, 12 and 16 bits, encodes.
template <typename For8, typename For12, typename For16, typename... Options>
Bytes encodedBy(const Raster& raster, JpegColours colours, Options... options) {
    const DJCodecParameter parameters(colours == JpegColours::Rgb ? ECC_lossyRGB : ECC_lossyYCbCr, EDC_never,
                                      EUC_never, EPC_colorByPixel, OFFalse, OFFalse, OFFalse, OFFalse, 0, 0,
                                      0, OFTrue, colours == JpegColours::Subsampled ? ESS_422 : ESS_444);
    std::unique_ptr<DJEncoder> encoder;
    if (raster.bits <= 8)
        encoder = std::make_unique<For8>(parameters, options...);
    else if (raster.bits <= 12)
        encoder = std::make_unique<For12>(parameters, options...);
    else
        encoder = std::make_unique<For16>(parameters, options...);
    Uint8* bytes = nullptr;
    Uint32 length = 0;
    const auto encode = [&](auto samples) {
        encoder->encode(static_cast<Uint16>(raster.columns), static_cast<Uint16>(raster.rows),
                        raster.components == 3 ? EPI_RGB : EPI_Monochrome2,
                        static_cast<Uint16>(raster.components), samples.data(), bytes, length);
    };
    if (raster.bits <= 8) encode(std::vector<Uint8>(raster.samples.begin(), raster.samples.end()));
    if (raster.bits > 8) encode(std::vector<Uint16>(raster.samples.begin(), raster.samples.end()));
    const std::unique_ptr<Uint8[]> owned(bytes);
    return {bytes, bytes + length};
}

/// The cells of a data set that is encoded as a whole.
Bytes frameIn(E_TransferSyntax syntax, const DcmRepresentationParameter* options, const Raster& raster,
              bool planar = false) {
    const dicom::PixelFormat format = formatOf(raster);
    DcmDataset dataset;
    const std::pair<DcmTagKey, int> header[] = {{DCM_SamplesPerPixel, raster.components},
                                                {DCM_PlanarConfiguration, planar},
                                                {DCM_Rows, raster.rows},
                                                {DCM_Columns, raster.columns},
                                                {DCM_BitsAllocated, format.bitsAllocated},
                                                {DCM_BitsStored, raster.bits},
                                                {DCM_HighBit, raster.bits - 1},
                                                {DCM_PixelRepresentation, 0}};
    for (const auto& [tag, value] : header) dataset.putAndInsertUint16(tag, static_cast<Uint16>(value));
    dataset.putAndInsertString(DCM_PhotometricInterpretation, raster.components == 3 ? "RGB" : "MONOCHROME2");
    const auto cell = static_cast<std::size_t>(format.bitsAllocated / 8);
    std::vector<Uint16> words((raster.size() * cell + 1) / 2);
    for (std::size_t i = 0; i < raster.size(); ++i) {
        const std::size_t at = planar ? i % 3 * raster.size() / 3 + i / 3 : i;
        std::memcpy(reinterpret_cast<Uint8*>(words.data()) + at * cell, &raster.samples[i], cell);
    }
    dataset.putAndInsertUint16Array(DCM_PixelData, words.data(), static_cast<unsigned long>(words.size()));

    DcmElement* element = nullptr;
    DcmPixelSequence* sequence = nullptr;
    DcmPixelItem* item = nullptr;
    Uint8* stream = nullptr;
    if (dataset.chooseRepresentation(syntax, options).bad() ||
        dataset.findAndGetElement(DCM_PixelData, element).bad() ||
        static_cast<DcmPixelData*>(element)->getEncapsulatedRepresentation(syntax, options, sequence).bad() ||
        sequence->getItem(item, 1).bad() || item->getUint8Array(stream).bad())
        throw std::runtime_error("not encoded");
    return {stream, stream + item->getLength()};
}

/// A lossless stream of three components from one for each: its scans follow each other.
Bytes inScansApart(const Raster& raster, const LosslessMaking& making) {
    Bytes result{0xFF, 0xD8, 0xFF, 0xC3, 0, 17};
    for (std::size_t c = 0; c < 3; ++c) {
        Raster plane{raster.rows, raster.columns, 1, raster.bits, {}};
        for (std::size_t i = c; i < raster.size(); i += 3) plane.samples.push_back(raster.samples[i]);
        Bytes one = losslessEncoded(plane, making);
        while (one.back() != 0xD9) one.pop_back();
        const auto header = one.begin() + static_cast<std::ptrdiff_t>(placeOf(one, 0xC3));
        if (c == 0) {
            result.insert(result.end(), header + 4, header + 9);
            result.insert(result.end(), {3, 1, 0x11, 0, 2, 0x11, 0, 3, 0x11, 0});
        }
        one[placeOf(one, 0xDA) + 5] = static_cast<std::uint8_t>(c + 1);
        result.insert(result.end(), header + 13, one.end() - (c < 2 ? 2 : 0));
    }
    return result;
}

}  // namespace

Raster raster(int rows, int columns, int components, int bits, Texture texture, unsigned seed) {
    std::mt19937 engine(seed);
    Raster result{rows, columns, components, bits, {}};
    const auto top = static_cast<std::int64_t>((std::uint64_t{1} << bits) - 1);
    std::int64_t value = top / 2;
    while (result.samples.size() < result.size()) {
        const std::int64_t random = engine();
        if (texture == Texture::Noise) value = random & top;
        if (texture == Texture::Smooth) value = std::clamp<std::int64_t>(value + random % 15 - 7, 0, top);
        result.samples.push_back(static_cast<std::int32_t>(value));
    }
    return result;
}

dicom::PixelFormat formatOf(const Raster& raster) {
    dicom::PixelFormat format;
    format.rows = raster.rows;
    format.columns = raster.columns;
    format.samplesPerPixel = raster.components;
    if (raster.components == 3) format.photometric = dicom::Photometric::Rgb;
    format.bitsAllocated = raster.bits > 16 ? 32 : raster.bits > 8 ? 16 : 8;
    format.bitsStored = raster.bits;
    format.highBit = raster.bits - 1;
    format.isSigned = raster.isSigned;
    return format;
}

dicom::PixelFormat greyFormat(int rows, int columns, int bits) {
    return formatOf({rows, columns, 1, bits, {}});
}

dicom::PixelFormat colourFormat(int rows, int columns, dicom::Photometric photometric) {
    dicom::PixelFormat format = formatOf({rows, columns, 3, 8, {}});
    format.photometric = photometric;
    return format;
}

dicom::Result<dicom::Frame> decoded(const std::vector<std::uint8_t>& bytes, const dicom::PixelFormat& format,
                                    dicom::Compression compression) {
    return dicom::decodeFrame(std::as_bytes(std::span(bytes)), format, compression);
}

std::vector<std::int64_t> samplesOf(const dicom::Result<dicom::Frame>& frame) {
    if (!frame) throw std::runtime_error(frame.error().detail);
    return std::visit([](const auto& v) { return std::vector<std::int64_t>(v.begin(), v.end()); },
                      frame.value().samples);
}

std::vector<std::int64_t> shown(const Raster& raster) {
    std::vector<std::int64_t> result(raster.samples.begin(), raster.samples.end());
    for (auto& sample : result) {
        if (!raster.isSigned) sample &= 0xFFFF'FFFF;
        if (raster.components == 1) continue;
        sample = raster.bits < 8 ? sample * 255 / ((1 << raster.bits) - 1) : sample >> (raster.bits - 8);
    }
    return result;
}

std::size_t placeOf(std::span<const std::uint8_t> stream, std::uint8_t code) {
    const std::uint8_t marker[] = {0xFF, code};
    return static_cast<std::size_t>(
        std::search(stream.begin(), stream.end(), std::begin(marker), std::end(marker)) - stream.begin());
}

Bytes losslessEncoded(const Raster& raster, const LosslessMaking& making) {
    if (raster.components == 3 && !making.interleaved) return inScansApart(raster, making);
    Raster coded = raster;
    coded.bits = making.codedBits ? making.codedBits : raster.bits <= 8 ? 8 : raster.bits <= 12 ? 12 : 16;
    for (auto& sample : coded.samples) sample += (1 << (coded.bits - 1)) - (1 << (raster.bits - 1));
    Bytes stream = encodedBy<DJCompressIJG8Bit, DJCompressIJG12Bit, DJCompressIJG16Bit>(
        coded, JpegColours::Ycbcr, EJM_lossless, making.predictor, making.pointTransform);
    stream[placeOf(stream, 0xC3) + 4] = static_cast<std::uint8_t>(raster.bits);
    return stream;
}

Bytes repeated(Bytes stream, int times) {
    while (stream.back() != 0xD9) stream.pop_back();
    std::uint8_t* const size = &stream[placeOf(stream, 0xC3) + 5];
    const int rows = size[0] << 8 | size[1], interval = rows * (size[2] << 8 | size[3]);
    size[0] = static_cast<std::uint8_t>(times * rows >> 8);
    size[1] = static_cast<std::uint8_t>(times * rows);
    const auto scan = static_cast<std::ptrdiff_t>(placeOf(stream, 0xDA));
    const Bytes data(stream.begin() + scan + 10, stream.end() - 2);
    stream.resize(stream.size() - 2);
    for (int i = 0; i + 1 < times; ++i) {
        stream.insert(stream.end(), {0xFF, static_cast<std::uint8_t>(0xD0 + i % 8)});
        stream.insert(stream.end(), data.begin(), data.end());
    }
    stream.insert(stream.end(), {0xFF, 0xD9});
    stream.insert(stream.begin() + scan, {0xFF, 0xDD, 0, 4, static_cast<std::uint8_t>(interval >> 8),
                                          static_cast<std::uint8_t>(interval)});
    return stream;
}

Bytes dcmtkLossy(const Raster& raster, LossyProcess process, int quality, JpegColours colours) {
    const EJ_Mode modes[] = {EJM_baseline, EJM_sequential, EJM_progressive};
    return encodedBy<DJCompressIJG8Bit, DJCompressIJG12Bit, DJCompressIJG12Bit>(
        raster, colours, modes[static_cast<int>(process)], static_cast<Uint8>(quality));
}

Bytes jpegLsEncoded(const Raster& raster, int nearLossless, LsInterleave interleave) {
    constexpr DJLSCodecParameter::interleaveMode modes[] = {DJLSCodecParameter::interleaveDefault,
                                                            DJLSCodecParameter::interleaveLine,
                                                            DJLSCodecParameter::interleaveSample};
    OFLog::configure(OFLogger::ERROR_LOG_LEVEL);
    DJLSEncoderRegistration::cleanup();
    DJLSEncoderRegistration::registerCodecs(0, 0, 0, 0, OFFalse, 0, OFTrue, EJLSUC_never, OFFalse,
                                            modes[static_cast<int>(interleave)], OFFalse);
    const DJLSRepresentationParameter options(static_cast<Uint16>(nearLossless), nearLossless == 0);
    return frameIn(nearLossless ? EXS_JPEGLSLossy : EXS_JPEGLSLossless, &options, raster,
                   raster.components == 3 && interleave == LsInterleave::None);
}

Bytes rleEncoded(const Raster& raster) {
    DcmRLEEncoderRegistration::registerCodecs();
    return frameIn(EXS_RLELossless, nullptr, raster);
}

}  // namespace cinedisc::test
