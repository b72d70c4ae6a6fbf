#include "tests/fidelity/Jpeg2000Stream.h"

#include <QTemporaryFile>
#include <openjpeg.h>

#include <memory>

namespace cinedisc::fidelity {

namespace {

bool put(const opj_image_t& image, DcmItem& into) {
    const std::size_t pixels = std::size_t{image.comps[0].w} * image.comps[0].h;
    const bool wide = image.comps[0].prec > 8;
    std::vector<Uint16> words((pixels * image.numcomps * (wide ? 2 : 1) + 1) / 2);
    auto* bytes = reinterpret_cast<Uint8*>(words.data());
    for (std::size_t at = 0; at < pixels * image.numcomps; ++at) {
        const OPJ_INT32 value = image.comps[at % image.numcomps].data[at / image.numcomps];
        if (wide) words[at] = static_cast<Uint16>(value);
        if (!wide) bytes[at] = static_cast<Uint8>(value);
    }
    into.putAndInsertUint16(DCM_BitsAllocated, wide ? 16 : 8);
    if (image.numcomps == 3) {
        into.putAndInsertUint16(DCM_PlanarConfiguration, 0);
        // OpenJPEG has undone the colour transformation.
        into.putAndInsertString(DCM_PhotometricInterpretation, "RGB");
    }
    return into.putAndInsertUint16Array(DCM_PixelData, words.data(), words.size()).good();
}

}  // namespace

bool decodeJpeg2000(const std::vector<Uint8>& stream, DcmItem& into) {
    QTemporaryFile file;
    if (!file.open()) return false;
    file.write(reinterpret_cast<const char*>(stream.data()), static_cast<qint64>(stream.size()));
    file.close();
    const std::unique_ptr<opj_stream_t, void (*)(opj_stream_t*)> opened(
        opj_stream_create_default_file_stream(qPrintable(file.fileName()), OPJ_TRUE), opj_stream_destroy);

    const bool isBoxed = stream.size() > 4 && stream[0] != 0xFF;
    const std::unique_ptr<opj_codec_t, void (*)(opj_codec_t*)> codec(
        opj_create_decompress(isBoxed ? OPJ_CODEC_JP2 : OPJ_CODEC_J2K), opj_destroy_codec);
    opj_dparameters_t parameters;
    opj_set_default_decoder_parameters(&parameters);
    opj_image_t* image = nullptr;
    const bool good = opj_setup_decoder(codec.get(), &parameters) &&
                      opj_read_header(opened.get(), codec.get(), &image) &&
                      opj_decode(codec.get(), opened.get(), image);
    const bool done = good && put(*image, into);
    opj_image_destroy(image);
    return done;
}

}  // namespace cinedisc::fidelity
