#include "dicom/codecs/JpegLsDecoder.h"

#include "dicom/codecs/Cells.h"
#include "dicom/codecs/CodecError.h"

#include <charls/charls.h>

namespace cinedisc::dicom::codecs {
namespace {

DecodeError errorOf(const std::system_error& error) {
    if (error.code() == make_error_code(charls::jpegls_errc::source_buffer_too_small)) return cutOff();
    return broken("JPEG-LS data that contradict themselves");
}

}  // namespace

Result<CodedPicture> decodeJpegLs(std::span<const std::uint8_t> stream, const PixelFormat& format) {
    try {
        charls::jpegls_decoder decoder;
        decoder.source(stream.data(), stream.size());

        (void)decoder.read_spiff_header();
        decoder.read_header();
        const charls::frame_info info = decoder.frame_info();
        if (info.width != static_cast<std::uint32_t>(format.columns) ||
            info.height != static_cast<std::uint32_t>(format.rows))
            return broken("the picture has another size than its header says");
        if (info.component_count != 1 && info.component_count != 3)
            return unsupported("JPEG-LS with " + std::to_string(info.component_count) + " components");

        CodedPicture picture;
        picture.components = info.component_count;
        picture.precision = info.bits_per_sample;
        picture.lossless = decoder.near_lossless() == 0;
        picture.colour = colourSpaceOf(format.photometric);
        if (decoder.interleave_mode() == charls::interleave_mode::none)
            picture.arrangement = Arrangement::Planar;
        picture.cells = makeCells(info.bits_per_sample, format.isSigned && info.component_count == 1,
                                  static_cast<std::size_t>(info.width) * info.height *
                                      static_cast<std::size_t>(info.component_count));
        std::visit([&](auto& cells) { decoder.decode(cells); }, picture.cells);
        return picture;
    } catch (const charls::jpegls_error& error) {
        return errorOf(error);
    }
}

}  // namespace cinedisc::dicom::codecs
