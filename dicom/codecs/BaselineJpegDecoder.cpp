#include "dicom/codecs/BaselineJpegDecoder.h"

#include "dicom/codecs/CodecError.h"

#include <array>
#include <csetjmp>
#include <cstdio>
#include <jerror.h>
#include <jpeglib.h>

namespace cinedisc::dicom::codecs {
namespace {

enum class Outcome { Good, CutOff, Broken };

/// The library's state for one picture. Errors leave through `escape`, so nothing with a destructor may live
/// in the functions in between.
struct Session {
    jpeg_decompress_struct library{};
    jpeg_error_mgr errors{};
    jpeg_source_mgr source{};
    std::jmp_buf escape{};
    bool ranOut = false;   ///< the stream ended before its end marker
    bool damaged = false;  ///< bits were missing or made no sense
};

Session& sessionOf(j_common_ptr library) { return *static_cast<Session*>(library->client_data); }

void onError(j_common_ptr library) { std::longjmp(sessionOf(library).escape, 1); }

/// Only those warnings count that touch the picture: not those of bytes between segments, of scan headers
/// that contradict the process, or of application data.
void onMessage(j_common_ptr library, int level) {
    if (level >= 0) return;
    switch (library->err->msg_code) {
        case JWRN_HIT_MARKER:
        case JWRN_HUFF_BAD_CODE:
        case JWRN_MUST_RESYNC:
            sessionOf(library).damaged = true;
            break;
        default:
            break;
    }
}

void ignore(j_common_ptr) {}
void ignoreSource(j_decompress_ptr) {}

boolean onEndOfData(j_decompress_ptr library) {
    static const JOCTET endMarker[] = {0xFF, JPEG_EOI};
    sessionOf(reinterpret_cast<j_common_ptr>(library)).ranOut = true;
    library->src->next_input_byte = endMarker;
    library->src->bytes_in_buffer = sizeof endMarker;
    return TRUE;
}

void onSkip(j_decompress_ptr library, long count) {
    if (count <= 0) return;
    jpeg_source_mgr& source = *library->src;
    if (static_cast<std::size_t>(count) > source.bytes_in_buffer) {
        onEndOfData(library);
    } else {
        source.next_input_byte += count;
        source.bytes_in_buffer -= static_cast<std::size_t>(count);
    }
}

void open(Session& session, std::span<const std::uint8_t> stream) {
    session.library.err = jpeg_std_error(&session.errors);
    session.errors.error_exit = onError;
    session.errors.emit_message = onMessage;
    session.errors.output_message = ignore;
    session.library.client_data = &session;
    session.source = {stream.data(), stream.size(),          ignoreSource, onEndOfData,
                      onSkip,        jpeg_resync_to_restart, ignoreSource};
}

void chooseColours(jpeg_decompress_struct& library, ColourSpace colour) {
    if (library.num_components == 1) {
        library.jpeg_color_space = library.out_color_space = JCS_GRAYSCALE;
    } else {
        library.jpeg_color_space = colour == ColourSpace::Rgb ? JCS_RGB : JCS_YCbCr;
        library.out_color_space = JCS_RGB;
    }
}

/// Fills `pixels`, which has room for the whole picture.
Outcome run(Session& session, std::span<std::uint8_t> pixels, ColourSpace colour) {
    jpeg_decompress_struct& library = session.library;
    if (setjmp(session.escape) != 0) return session.ranOut ? Outcome::CutOff : Outcome::Broken;

    jpeg_create_decompress(&library);
    library.src = &session.source;
    jpeg_read_header(&library, TRUE);
    chooseColours(library, colour);
    library.dct_method = JDCT_ISLOW;
    jpeg_start_decompress(&library);
    const std::size_t rowSize =
        static_cast<std::size_t>(library.output_width) * static_cast<std::size_t>(library.output_components);
    if (rowSize * library.output_height != pixels.size()) return Outcome::Broken;
    while (library.output_scanline < library.output_height) {
        JSAMPROW rows[16];
        JDIMENSION count = 0;
        for (; count < 16 && library.output_scanline + count < library.output_height; ++count)
            rows[count] = pixels.data() + (library.output_scanline + count) * rowSize;
        jpeg_read_scanlines(&library, rows, count);
    }
    if (session.damaged || (session.ranOut && jpeg_has_multiple_scans(&library)))
        return session.ranOut ? Outcome::CutOff : Outcome::Broken;
    return Outcome::Good;
}

}  // namespace

ColourSpace jpegColourSpace(const JpegHeader& header, Photometric photometric) {
    if (header.adobeTransform) return *header.adobeTransform == 0 ? ColourSpace::Rgb : ColourSpace::YbrFull;
    if (header.hasJfif) return ColourSpace::YbrFull;
    const auto& c = header.components;
    if (c[0].id == 'R' && c[1].id == 'G' && c[2].id == 'B') return ColourSpace::Rgb;
    const bool mayBeRgb = photometric == Photometric::Rgb && !header.isSubsampled();
    return mayBeRgb ? ColourSpace::Rgb : ColourSpace::YbrFull;
}

std::optional<DecodeError> decodeBaselineJpeg(std::span<const std::uint8_t> stream, const JpegHeader& header,
                                              const PixelFormat& format, std::span<std::uint8_t> pixels) {
    Session session;
    open(session, stream);
    const Outcome outcome = run(session, pixels, jpegColourSpace(header, format.photometric));
    jpeg_destroy_decompress(&session.library);
    if (outcome == Outcome::CutOff) return cutOff();
    if (outcome == Outcome::Broken) return broken("JPEG data that contradict themselves");
    return std::nullopt;
}

}  // namespace cinedisc::dicom::codecs
