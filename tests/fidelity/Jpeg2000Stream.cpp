#include "tests/fidelity/Jpeg2000Stream.h"

#include <openjpeg.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace cinedisc::fidelity {

namespace {

struct Memory {
    const std::vector<Uint8>& bytes;
    std::size_t at = 0;
};

OPJ_SIZE_T readFrom(void* buffer, OPJ_SIZE_T count, void* data) {
    auto& memory = *static_cast<Memory*>(data);
    const std::size_t got = std::min(count, memory.bytes.size() - memory.at);
    if (got == 0) return static_cast<OPJ_SIZE_T>(-1);
    std::memcpy(buffer, memory.bytes.data() + memory.at, got);
    memory.at += got;
    return got;
}

OPJ_OFF_T skipIn(OPJ_OFF_T count, void* data) {
    auto& memory = *static_cast<Memory*>(data);
    memory.at = std::min(memory.bytes.size(), memory.at + static_cast<std::size_t>(count));
    return count;
}

OPJ_BOOL seekIn(OPJ_OFF_T at, void* data) {
    auto& memory = *static_cast<Memory*>(data);
    memory.at = std::min(memory.bytes.size(), static_cast<std::size_t>(at));
    return OPJ_TRUE;
}

bool put(const opj_image_t& image, DcmItem& into) {
    const std::size_t pixels = std::size_t{image.comps[0].w} * image.comps[0].h;
    const bool wide = image.comps[0].prec > 8;
    std::vector<Uint16> words((pixels * image.numcomps * (wide ? 2 : 1) + 1) / 2);
    auto* bytes = reinterpret_cast<Uint8*>(words.data());
    for (OPJ_UINT32 c = 0; c < image.numcomps; ++c) {
        for (std::size_t i = 0; i < pixels; ++i) {
            const auto value = static_cast<Uint32>(image.comps[c].data[i]);
            const std::size_t at = i * image.numcomps + c;
            if (wide) {
                words[at] = static_cast<Uint16>(value);
            } else {
                bytes[at] = static_cast<Uint8>(value);
            }
        }
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
    Memory memory{stream};
    const std::unique_ptr<opj_stream_t, void (*)(opj_stream_t*)> source(opj_stream_default_create(OPJ_TRUE),
                                                                        opj_stream_destroy);
    opj_stream_set_read_function(source.get(), readFrom);
    opj_stream_set_skip_function(source.get(), skipIn);
    opj_stream_set_seek_function(source.get(), seekIn);
    opj_stream_set_user_data(source.get(), &memory, nullptr);
    opj_stream_set_user_data_length(source.get(), stream.size());

    const bool isBoxed = stream.size() > 4 && stream[0] != 0xFF;
    const std::unique_ptr<opj_codec_t, void (*)(opj_codec_t*)> codec(
        opj_create_decompress(isBoxed ? OPJ_CODEC_JP2 : OPJ_CODEC_J2K), opj_destroy_codec);
    opj_dparameters_t parameters;
    opj_set_default_decoder_parameters(&parameters);
    opj_image_t* image = nullptr;
    const bool good = opj_setup_decoder(codec.get(), &parameters) &&
                      opj_read_header(source.get(), codec.get(), &image) &&
                      opj_decode(codec.get(), source.get(), image);
    const bool done = good && put(*image, into);
    opj_image_destroy(image);
    return done;
}

}  // namespace cinedisc::fidelity
