#include "tests/codecs/Encoders.h"

#include <QTemporaryFile>
#include <openjpeg.h>

#include <algorithm>
#include <stdexcept>

namespace cinedisc::test {
namespace {

opj_image_t* imageOf(const Raster& raster, const Jpeg2000Making& making) {
    const auto count = OPJ_UINT32(raster.components), bits = OPJ_UINT32(raster.bits),
               start = OPJ_UINT32(making.offset), right = start + OPJ_UINT32(raster.columns),
               bottom = start + OPJ_UINT32(raster.rows);
    opj_image_cmptparm_t parts[3]{};
    for (OPJ_UINT32 c = 0; c < count; ++c) {
        const OPJ_UINT32 step = making.subsampled && c > 0 ? 2 : 1, first = (start + step - 1) / step;
        parts[c] = {
            step, step, (right + step - 1) / step - first, (bottom + step - 1) / step - first, start, start,
            bits, bits, raster.isSigned ? 1u : 0u};
    }
    opj_image_t* image = opj_image_create(count, parts, count == 3 ? OPJ_CLRSPC_SRGB : OPJ_CLRSPC_GRAY);
    image->x0 = image->y0 = start;
    image->x1 = right;
    image->y1 = bottom;
    for (OPJ_UINT32 c = 0; c < count; ++c) {
        const opj_image_comp_t& part = image->comps[c];
        for (OPJ_UINT32 i = 0; i < part.w * part.h; ++i) {
            const OPJ_UINT32 row = i / part.w * part.dy, column = i % part.w * part.dx;
            part.data[i] = raster.samples[(row * (right - start) + column) * count + c];
        }
    }
    return image;
}

}  // namespace

std::vector<std::uint8_t> jpeg2000Encoded(const Raster& raster, const Jpeg2000Making& making) {
    opj_image_t* image = imageOf(raster, making);
    opj_cparameters_t parameters;
    opj_set_default_encoder_parameters(&parameters);
    parameters.numresolution = making.levels + 1;
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
    QTemporaryFile file;
    if (!file.open()) throw std::runtime_error("no temporary file");
    opj_codec_t* codec = opj_create_compress(making.inFileFormat ? OPJ_CODEC_JP2 : OPJ_CODEC_J2K);
    opj_stream_t* stream = opj_stream_create_default_file_stream(qPrintable(file.fileName()), OPJ_FALSE);
    const bool good = opj_setup_encoder(codec, &parameters, image) &&
                      opj_start_compress(codec, image, stream) && opj_encode(codec, stream) &&
                      opj_end_compress(codec, stream);
    opj_stream_destroy(stream);
    opj_destroy_codec(codec);
    opj_image_destroy(image);
    if (!good) throw std::runtime_error("not encoded");
    const QByteArray written = file.readAll();
    return {written.begin(), written.end()};
}

}  // namespace cinedisc::test
