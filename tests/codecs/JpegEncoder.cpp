#include "tests/codecs/Encoders.h"

#include <cstdio>
#include <cstdlib>
#include <jpeglib.h>

namespace cinedisc::test {

std::vector<std::uint8_t> jpegEncoded(const Raster& raster, const JpegMaking& making) {
    jpeg_compress_struct library{};
    jpeg_error_mgr errors{};
    library.err = jpeg_std_error(&errors);
    jpeg_create_compress(&library);
    unsigned char* bytes = nullptr;
    unsigned long length = 0;
    jpeg_mem_dest(&library, &bytes, &length);

    library.image_width = static_cast<JDIMENSION>(raster.columns);
    library.image_height = static_cast<JDIMENSION>(raster.rows);
    library.input_components = raster.components;
    library.in_color_space = raster.components == 3 ? JCS_RGB : JCS_GRAYSCALE;
    jpeg_set_defaults(&library);
    if (raster.components == 3) {
        jpeg_set_colorspace(&library, making.storedAsRgb ? JCS_RGB : JCS_YCbCr);
        library.write_JFIF_header = making.marker == JpegMaking::Marker::Jfif;
        library.write_Adobe_marker = making.marker == JpegMaking::Marker::Adobe;
        for (int i = 0; i < 3; ++i) {
            jpeg_component_info& component = library.comp_info[i];
            component.component_id = making.names[i];
            component.h_samp_factor = making.subsampled && i == 0 ? 2 : 1;
            component.v_samp_factor = 1;
        }
    }
    jpeg_set_quality(&library, 100, TRUE);
    if (making.progressive) jpeg_simple_progression(&library);
    library.restart_interval = static_cast<unsigned>(making.restartInterval);
    jpeg_start_compress(&library, TRUE);
    std::vector<JSAMPLE> samples(raster.samples.begin(), raster.samples.end());
    for (int row = 0; row < raster.rows; ++row) {
        JSAMPLE* from = samples.data() + row * raster.columns * raster.components;
        jpeg_write_scanlines(&library, &from, 1);
    }
    jpeg_finish_compress(&library);
    jpeg_destroy_compress(&library);
    std::vector<std::uint8_t> result(bytes, bytes + length);
    std::free(bytes);
    return result;
}

}  // namespace cinedisc::test
