#include "tests/codecs/Encoders.h"

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dcpixseq.h>
#include <dcmtk/dcmdata/dcpxitem.h>
#include <dcmtk/dcmdata/dctk.h>
#include <dcmtk/dcmimage/diregist.h>
#include <dcmtk/dcmjpls/djencode.h>
#include <dcmtk/dcmjpls/djrparam.h>

#include <algorithm>
#include <stdexcept>

namespace cinedisc::test {

namespace {

using Bytes = std::vector<std::uint8_t>;

/// A stream of three components from one for each: its scans follow each other.
Bytes inScansApart(std::span<const std::uint16_t> samples, int rows, int columns, int bits,
                   int nearLossless) {
    Bytes result{0xFF, 0xD8, 0xFF, 0xF7, 0, 17};
    for (int c = 0; c < 3; ++c) {
        std::vector<std::uint16_t> plane;
        for (std::size_t i = static_cast<std::size_t>(c); i < samples.size(); i += 3)
            plane.push_back(samples[i]);
        const Bytes one = jpegLsEncoded(plane, rows, columns, 1, bits, LsInterleave::None, nearLossless);
        const auto find = [&](std::uint8_t code) {
            const std::uint8_t marker[] = {0xFF, code};
            return std::search(one.begin(), one.end(), marker, marker + 2);
        };
        if (c == 0) {
            result.insert(result.end(), find(0xF7) + 4, find(0xF7) + 9);
            result.insert(result.end(), {3, 1, 0x11, 0, 2, 0x11, 0, 3, 0x11, 0});
        }
        const auto scan = static_cast<std::size_t>(find(0xDA) - one.begin());
        const std::size_t at = result.size();
        result.insert(result.end(), one.begin() + static_cast<std::ptrdiff_t>(scan),
                      one.end() - (c < 2 ? 2 : 0));
        result[at + 5] = static_cast<std::uint8_t>(c + 1);
    }
    return result;
}

}  // namespace

std::vector<std::uint8_t> jpegLsEncoded(std::span<const std::uint16_t> samples, int rows, int columns,
                                        int components, int bits, LsInterleave interleave, int nearLossless) {
    if (components == 3 && interleave == LsInterleave::None)
        return inScansApart(samples, rows, columns, bits, nearLossless);
    const auto mode = interleave == LsInterleave::Line ? DJLSCodecParameter::interleaveLine
                                                       : DJLSCodecParameter::interleaveSample;
    OFLog::configure(OFLogger::ERROR_LOG_LEVEL);
    DJLSEncoderRegistration::cleanup();
    DJLSEncoderRegistration::registerCodecs(0, 0, 0, 0, OFFalse, 0, OFTrue, EJLSUC_never, OFFalse, mode,
                                            OFFalse);
    DcmDataset dataset;
    const auto put = [&](const DcmTagKey& tag, int value) {
        dataset.putAndInsertUint16(tag, static_cast<Uint16>(value));
    };
    put(DCM_SamplesPerPixel, components);
    dataset.putAndInsertString(DCM_PhotometricInterpretation, components == 3 ? "RGB" : "MONOCHROME2");
    if (components == 3) put(DCM_PlanarConfiguration, 0);
    put(DCM_Rows, rows);
    put(DCM_Columns, columns);
    put(DCM_BitsAllocated, bits > 8 ? 16 : 8);
    put(DCM_BitsStored, bits);
    put(DCM_HighBit, bits - 1);
    put(DCM_PixelRepresentation, 0);
    if (bits > 8) {
        dataset.putAndInsertUint16Array(DCM_PixelData, samples.data(),
                                        static_cast<unsigned long>(samples.size()));
    } else {
        std::vector<Uint8> bytes(samples.begin(), samples.end());
        if (bytes.size() % 2) bytes.push_back(0);
        dataset.putAndInsertUint8Array(DCM_PixelData, bytes.data(), static_cast<unsigned long>(bytes.size()));
    }

    const DJLSRepresentationParameter parameters(static_cast<Uint16>(nearLossless), nearLossless == 0);
    const E_TransferSyntax syntax = nearLossless ? EXS_JPEGLSLossy : EXS_JPEGLSLossless;
    DcmElement* element = nullptr;
    DcmPixelSequence* sequence = nullptr;
    DcmPixelItem* item = nullptr;
    Uint8* stream = nullptr;
    if (dataset.chooseRepresentation(syntax, &parameters).bad() ||
        dataset.findAndGetElement(DCM_PixelData, element).bad() ||
        static_cast<DcmPixelData*>(element)
            ->getEncapsulatedRepresentation(syntax, &parameters, sequence)
            .bad() ||
        sequence->getItem(item, 1).bad() || item->getUint8Array(stream).bad())
        throw std::runtime_error("not encoded");
    return {stream, stream + item->getLength()};
}

}  // namespace cinedisc::test
