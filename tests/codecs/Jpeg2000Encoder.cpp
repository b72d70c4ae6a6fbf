#include "tests/codecs/Encoders.h"

#include <openjpeg.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace cinedisc::test {
namespace {

struct Memory {
    std::vector<std::uint8_t> bytes;
    std::size_t position = 0;
};

OPJ_SIZE_T write(void* from, OPJ_SIZE_T count, void* data) {
    auto& memory = *static_cast<Memory*>(data);
    if (memory.bytes.size() < memory.position + count) memory.bytes.resize(memory.position + count);
    std::memcpy(memory.bytes.data() + memory.position, from, count);
    memory.position += count;
    return count;
}

OPJ_OFF_T skip(OPJ_OFF_T count, void* data) {
    static_cast<Memory*>(data)->position += static_cast<std::size_t>(count);
    return count;
}

OPJ_BOOL seek(OPJ_OFF_T position, void* data) {
    static_cast<Memory*>(data)->position = static_cast<std::size_t>(position);
    return OPJ_TRUE;
}

}  // namespace

std::vector<std::uint8_t> jpeg2000Encoded(std::span<const std::int32_t> samples, int rows, int columns,
                                          int components, const Jpeg2000Making& making) {
    opj_image_cmptparm_t parts[3]{};
    for (int c = 0; c < components; ++c) {
        const OPJ_UINT32 step = making.subsampled && c > 0 ? 2 : 1;
        parts[c] = {step,
                    step,
                    (static_cast<OPJ_UINT32>(columns) + step - 1) / step,
                    (static_cast<OPJ_UINT32>(rows) + step - 1) / step,
                    0,
                    0,
                    static_cast<OPJ_UINT32>(making.precision),
                    static_cast<OPJ_UINT32>(making.precision),
                    making.isSigned ? 1u : 0u};
    }
    opj_image_t* image = opj_image_create(static_cast<OPJ_UINT32>(components), parts,
                                          components == 3 ? OPJ_CLRSPC_SRGB : OPJ_CLRSPC_GRAY);
    image->x1 = static_cast<OPJ_UINT32>(columns);
    image->y1 = static_cast<OPJ_UINT32>(rows);
    for (int c = 0; c < components; ++c) {
        const opj_image_comp_t& part = image->comps[c];
        for (OPJ_UINT32 i = 0; i < part.w * part.h; ++i) {
            const OPJ_UINT32 row = i / part.w * part.dy, column = i % part.w * part.dx;
            part.data[i] = samples[(row * static_cast<OPJ_UINT32>(columns) + column) *
                                       static_cast<OPJ_UINT32>(components) +
                                   static_cast<OPJ_UINT32>(c)];
        }
    }

    opj_cparameters_t parameters;
    opj_set_default_encoder_parameters(&parameters);
    parameters.numresolution = 3;
    parameters.irreversible = making.reversible ? 0 : 1;
    parameters.tcp_mct = making.transformComponents ? 1 : 0;
    parameters.tcp_numlayers = making.layers;
    parameters.cp_disto_alloc = 1;
    parameters.cblockw_init = parameters.cblockh_init = making.block;
    if (making.precinct > 0) {
        parameters.csty |= 1;
        parameters.res_spec = parameters.numresolution;
        std::fill_n(parameters.prcw_init, parameters.res_spec, making.precinct);
        std::fill_n(parameters.prch_init, parameters.res_spec, making.precinct);
    }
    if (making.tileSize > 0) {
        parameters.tile_size_on = OPJ_TRUE;
        parameters.cp_tdx = parameters.cp_tdy = making.tileSize;
    }
    Memory memory;
    opj_codec_t* codec = opj_create_compress(making.inFileFormat ? OPJ_CODEC_JP2 : OPJ_CODEC_J2K);
    opj_stream_t* stream = opj_stream_default_create(OPJ_STREAM_WRITE);
    opj_stream_set_write_function(stream, write);
    opj_stream_set_skip_function(stream, skip);
    opj_stream_set_seek_function(stream, seek);
    opj_stream_set_user_data(stream, &memory, nullptr);
    const bool good = opj_setup_encoder(codec, &parameters, image) &&
                      opj_start_compress(codec, image, stream) && opj_encode(codec, stream) &&
                      opj_end_compress(codec, stream);
    opj_stream_destroy(stream);
    opj_destroy_codec(codec);
    opj_image_destroy(image);
    if (!good) throw std::runtime_error("not encoded");
    return memory.bytes;
}

}  // namespace cinedisc::test
