#include "control/JpegEncoding.h"

#include <array>
#include <csetjmp>
#include <cstdio>
#include <new>

extern "C" {
#include <jpeglib.h>
}

namespace cinedisc {

namespace {

constexpr int pictureQuality = 97, filmQuality = 92;

struct Session {
    explicit Session(QIODevice& device) : into(device) {}
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session() { jpeg_destroy_compress(&library); }

    jpeg_compress_struct library{};
    jpeg_error_mgr errors{};
    jpeg_destination_mgr destination{};
    std::jmp_buf escape{};
    QIODevice& into;
    std::array<JOCTET, 65536> buffer{};
};

template <typename Library>
Session& sessionOf(Library library) {
    return *static_cast<Session*>(library->client_data);
}

[[noreturn]] void onError(j_common_ptr library) { std::longjmp(sessionOf(library).escape, 1); }
void ignore(j_common_ptr) {}
void ignoreLevel(j_common_ptr, int) {}

void startBuffer(j_compress_ptr library) {
    Session& session = sessionOf(library);
    session.destination.next_output_byte = session.buffer.data();
    session.destination.free_in_buffer = session.buffer.size();
}

bool isWritten(Session& session, std::size_t count) {
    const auto size = static_cast<qint64>(count);
    try {
        return session.into.write(reinterpret_cast<const char*>(session.buffer.data()), size) == size;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

boolean onFullBuffer(j_compress_ptr library) {
    if (!isWritten(sessionOf(library), sessionOf(library).buffer.size()))
        onError(reinterpret_cast<j_common_ptr>(library));
    startBuffer(library);
    return TRUE;
}

void onEnd(j_compress_ptr library) {
    Session& session = sessionOf(library);
    if (!isWritten(session, session.buffer.size() - session.destination.free_in_buffer))
        onError(reinterpret_cast<j_common_ptr>(library));
}

/// No object is made in here: an error leaves it at once.
bool run(Session& session, const QImage& rows, JpegUse use) {
    const bool isGrey = rows.format() == QImage::Format_Grayscale8;
    jpeg_compress_struct& library = session.library;
    library.err = jpeg_std_error(&session.errors);
    session.errors.error_exit = onError;
    session.errors.emit_message = ignoreLevel;
    session.errors.output_message = ignore;
    library.client_data = &session;
    if (setjmp(session.escape) != 0) return false;

    jpeg_create_compress(&library);
    session.destination = {nullptr, 0, startBuffer, onFullBuffer, onEnd};
    library.dest = &session.destination;
    library.image_width = static_cast<JDIMENSION>(rows.width());
    library.image_height = static_cast<JDIMENSION>(rows.height());
    library.input_components = isGrey ? 1 : 3;
    library.in_color_space = isGrey ? JCS_GRAYSCALE : JCS_RGB;
    jpeg_set_defaults(&library);
    jpeg_set_quality(&library, use == JpegUse::Film ? filmQuality : pictureQuality, TRUE);
    if (use == JpegUse::Picture) library.comp_info[0].h_samp_factor = library.comp_info[0].v_samp_factor = 1;
    jpeg_start_compress(&library, TRUE);
    while (library.next_scanline < library.image_height) {
        auto* row = const_cast<JSAMPROW>(rows.constScanLine(static_cast<int>(library.next_scanline)));
        jpeg_write_scanlines(&library, &row, 1);
    }
    jpeg_finish_compress(&library);
    return true;
}

}  // namespace

bool encodeJpeg(const QImage& picture, QIODevice& into, JpegUse use) {
    const bool isGrey = use == JpegUse::Picture && picture.format() == QImage::Format_Grayscale8;
    const QImage rows = isGrey ? picture : picture.convertToFormat(QImage::Format_RGB888);
    Session session(into);
    return !rows.isNull() && run(session, rows, use);
}

}  // namespace cinedisc
