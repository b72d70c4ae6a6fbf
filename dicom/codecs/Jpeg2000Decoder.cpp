#include "dicom/codecs/Jpeg2000Decoder.h"

#include "dicom/codecs/Cells.h"
#include "dicom/codecs/CodecError.h"
#include "dicom/codecs/Jpeg2000Header.h"
#include "dicom/codecs/PixelCell.h"

#include <openjpeg.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>
#include <thread>

namespace cinedisc::dicom::codecs {
namespace {

/// A code stream in memory as the library's callbacks see it.
struct MemoryStream {
    std::span<const std::uint8_t> bytes;
    std::size_t position = 0;
    bool ranOut = false;
};

constexpr auto nothingLeft = static_cast<OPJ_SIZE_T>(-1);

OPJ_SIZE_T readMemory(void* into, OPJ_SIZE_T count, void* data) {
    auto& memory = *static_cast<MemoryStream*>(data);
    const std::size_t left = memory.bytes.size() - memory.position;
    if (left < count) memory.ranOut = true;
    if (left == 0) return nothingLeft;
    const std::size_t taken = std::min<std::size_t>(count, left);
    std::memcpy(into, memory.bytes.data() + memory.position, taken);
    memory.position += taken;
    return taken;
}

OPJ_OFF_T skipMemory(OPJ_OFF_T count, void* data) {
    auto& memory = *static_cast<MemoryStream*>(data);
    const std::size_t left = memory.bytes.size() - memory.position;
    if (count < 0 || left == 0) return -1;
    const std::size_t taken = std::min(static_cast<std::size_t>(count), left);
    memory.position += taken;
    return static_cast<OPJ_OFF_T>(taken);
}

OPJ_BOOL seekMemory(OPJ_OFF_T position, void* data) {
    auto& memory = *static_cast<MemoryStream*>(data);
    if (position < 0 || static_cast<std::size_t>(position) > memory.bytes.size()) return OPJ_FALSE;
    memory.position = static_cast<std::size_t>(position);
    return OPJ_TRUE;
}

void ignoreMessage(const char*, void*) {}

using Stream = std::unique_ptr<opj_stream_t, decltype(&opj_stream_destroy)>;
using Codec = std::unique_ptr<opj_codec_t, decltype(&opj_destroy_codec)>;
using Image = std::unique_ptr<opj_image_t, decltype(&opj_image_destroy)>;

Stream openStream(MemoryStream& memory) {
    Stream stream(opj_stream_default_create(OPJ_STREAM_READ), &opj_stream_destroy);
    if (!stream) return stream;
    opj_stream_set_read_function(stream.get(), readMemory);
    opj_stream_set_skip_function(stream.get(), skipMemory);
    opj_stream_set_seek_function(stream.get(), seekMemory);
    opj_stream_set_user_data(stream.get(), &memory, nullptr);
    opj_stream_set_user_data_length(stream.get(), memory.bytes.size());
    return stream;
}

struct Transforms {
    bool ofComponents = false;
    bool reversible = false;
    int levels = 0;  ///< decompositions that all components have
};

Transforms transformsOf(opj_codec_t* codec) {
    opj_codestream_info_v2_t* info = opj_get_cstr_info(codec);
    if (!info) return {};
    const opj_tile_info_v2_t& tile = info->m_default_tile_info;
    Transforms result{tile.mct != 0, tile.tccp_info && tile.tccp_info->qmfbid == 1};
    if (tile.tccp_info) {
        result.levels = INT_MAX;
        for (OPJ_UINT32 i = 0; i < info->nbcomps; ++i)
            result.levels = std::min(result.levels, static_cast<int>(tile.tccp_info[i].numresolutions) - 1);
    }
    opj_destroy_cstr_info(&info);
    return result;
}

/// Copies a component's values as patterns of its precision, repeating those of a subsampled one.
template <typename Cell>
void copyComponent(const opj_image_comp_t& component, std::span<Cell> plane, std::size_t columns) {
    const auto mask = static_cast<std::uint32_t>((std::uint64_t{1} << component.prec) - 1);
    const std::size_t rows = plane.size() / columns;
    for (std::size_t y = 0; y < rows; ++y) {
        const std::size_t sourceRow = std::min<std::size_t>(y / component.dy, component.h - 1);
        const OPJ_INT32* const from = component.data + sourceRow * component.w;
        Cell* const to = plane.data() + y * columns;
        for (std::size_t x = 0; x < columns; ++x) {
            const std::size_t sourceColumn =
                component.dx == 1 ? x : std::min<std::size_t>(x / component.dx, component.w - 1);
            to[x] = static_cast<Cell>(static_cast<std::uint32_t>(from[sourceColumn]) & mask);
        }
    }
}

bool isUsable(const opj_image_comp_t& component, const opj_image_comp_t& first, const PixelFormat& format) {
    if (!component.data || component.prec != first.prec || component.prec < 1 || component.prec > 31)
        return false;
    if (component.dx < 1 || component.dy < 1 || component.w < 1 || component.h < 1) return false;
    const bool whole = component.w == static_cast<OPJ_UINT32>(format.columns) &&
                       component.h == static_cast<OPJ_UINT32>(format.rows);
    return whole || component.dx > 1 || component.dy > 1;
}

int threadsFor(const PixelFormat& format) {
    constexpr int most = 8;
    if (!isLargeJpeg2000(format)) return 1;
    return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, most);
}

/// A picture as the library holds it, at its size divided by two so many times.
struct Decoded {
    Image image{nullptr, &opj_image_destroy};
    Transforms transforms;
    int halvings = 0;
};

Result<Decoded> decodeStream(const Jpeg2000Header& header, int mostHalvings, int threads) {
    MemoryStream memory{header.stream};
    const Codec codec(opj_create_decompress(OPJ_CODEC_J2K), &opj_destroy_codec);
    const Stream stream = openStream(memory);
    if (!codec || !stream) return tooLarge();
    opj_set_error_handler(codec.get(), ignoreMessage, nullptr);
    opj_set_warning_handler(codec.get(), ignoreMessage, nullptr);
    opj_set_info_handler(codec.get(), ignoreMessage, nullptr);
    opj_dparameters_t parameters;
    opj_set_default_decoder_parameters(&parameters);
    const auto failure = [&] {
        return memory.ranOut ? cutOff() : broken("JPEG 2000 data that contradict themselves");
    };

    Decoded decoded;
    if (!opj_setup_decoder(codec.get(), &parameters)) return failure();
    if (threads > 1) opj_codec_set_threads(codec.get(), threads);
    opj_image_t* read = nullptr;
    const bool headerRead = opj_read_header(stream.get(), codec.get(), &read);
    decoded.image.reset(read);
    if (!headerRead || !read) return failure();
    decoded.transforms = transformsOf(codec.get());
    decoded.halvings = std::min(mostHalvings, decoded.transforms.levels);
    if (decoded.halvings > 0 &&
        !opj_set_decoded_resolution_factor(codec.get(), static_cast<OPJ_UINT32>(decoded.halvings)))
        return failure();
    if (!opj_decode(codec.get(), stream.get(), read)) return failure();
    if (read->numcomps != static_cast<OPJ_UINT32>(header.components)) return failure();
    return decoded;
}

Result<CodedPicture> pictureOf(const Decoded& decoded, const PixelFormat& format) {
    const opj_image_t& image = *decoded.image;
    for (OPJ_UINT32 i = 0; i < image.numcomps; ++i)
        if (!isUsable(image.comps[i], image.comps[0], format))
            return broken("impossible JPEG 2000 components");

    const auto pixels = static_cast<std::size_t>(format.rows) * static_cast<std::size_t>(format.columns);
    CodedPicture picture;
    picture.components = static_cast<int>(image.numcomps);
    picture.precision = static_cast<int>(image.comps[0].prec);
    picture.isSigned = image.comps[0].sgnd != 0;
    picture.lossless = decoded.transforms.reversible;
    picture.arrangement = Arrangement::Planar;
    const bool namedByTransform =
        format.photometric == Photometric::YbrIct || format.photometric == Photometric::YbrRct;
    picture.colour = decoded.transforms.ofComponents || namedByTransform ? ColourSpace::Rgb
                                                                         : colourSpaceOf(format.photometric);
    picture.cells =
        makeCells(picture.precision, format.isSigned && picture.components == 1, pixels * image.numcomps);
    visitPatterns(picture.cells, [&](auto cells) {
        for (OPJ_UINT32 i = 0; i < image.numcomps; ++i)
            copyComponent(image.comps[i], cells.subspan(i * pixels, pixels),
                          static_cast<std::size_t>(format.columns));
    });
    return picture;
}

/// Means of neighbours are near them only where the samples are numbers: not indices into a palette, nor
/// values whose sign or place in the cell the header tells otherwise than the stream.
bool hasMeans(const opj_image_t& image, const PixelFormat& format) {
    if (format.photometric == Photometric::PaletteColor) return false;
    const bool isSigned = format.isSigned && image.numcomps == 1;
    return (image.comps[0].sgnd != 0) == isSigned && pixelCell(format).shift == 0;
}

/// Of whole pixel cells only the value's bits are taken later. A mean may lie a little beyond all values that
/// it was made of, and must not begin again at the other end.
void keepWithinStored(const Decoded& decoded, const PixelFormat& format) {
    const opj_image_t& image = *decoded.image;
    const PixelCell cell = pixelCell(format);
    if (!decoded.transforms.reversible || static_cast<int>(image.comps[0].prec) != cell.allocated) return;
    const std::int64_t count = std::int64_t{1} << cell.stored;
    const auto low = static_cast<OPJ_INT32>(image.comps[0].sgnd ? -count / 2 : 0);
    const auto high = static_cast<OPJ_INT32>(image.comps[0].sgnd ? count / 2 - 1 : count - 1);
    for (OPJ_UINT32 i = 0; i < image.numcomps; ++i) {
        const opj_image_comp_t& component = image.comps[i];
        if (!component.data) continue;
        const std::size_t samples = std::size_t{component.w} * component.h;
        for (std::size_t at = 0; at < samples; ++at)
            component.data[at] = std::clamp(component.data[at], low, high);
    }
}

int halved(int length, int times) { return (length + (1 << times) - 1) >> times; }

}  // namespace

bool isJpeg2000(std::span<const std::uint8_t> bytes) {
    static constexpr std::uint8_t codeStream[] = {0xFF, 0x4F, 0xFF, 0x51};
    static constexpr std::uint8_t fileFormat[] = {0, 0, 0, 12, 'j', 'P', ' ', ' '};
    const auto startsWith = [&](std::span<const std::uint8_t> start) {
        return bytes.size() >= start.size() && std::equal(start.begin(), start.end(), bytes.begin());
    };
    return startsWith(codeStream) || startsWith(fileFormat);
}

bool isLargeJpeg2000(const PixelFormat& format) {
    constexpr std::int64_t pixels = std::int64_t{4} << 20;
    return std::int64_t{format.rows} * format.columns >= pixels;
}

Result<CodedPicture> decodeJpeg2000(std::span<const std::uint8_t> bytes, const PixelFormat& format) {
    const Result<Jpeg2000Header> header = readJpeg2000Header(bytes, format);
    if (!header) return header.error();
    const auto decoded = decodeStream(header.value(), 0, threadsFor(format));
    return decoded ? pictureOf(decoded.value(), format) : decoded.error();
}

std::optional<CoarseFrame> decodeCoarseJpeg2000(std::span<const std::uint8_t> bytes,
                                                const PixelFormat& format, int leastSide) {
    int halvings = 0;
    while (std::min(format.rows, format.columns) >> (halvings + 1) >= leastSide) ++halvings;
    const Result<Jpeg2000Header> header = readJpeg2000Header(bytes, format);
    if (halvings == 0 || !header || header.value().grid.left > 0 || header.value().grid.top > 0)
        return std::nullopt;
    const auto decoded = decodeStream(header.value(), halvings, 1);
    if (!decoded || decoded.value().halvings == 0 || !hasMeans(*decoded.value().image, format))
        return std::nullopt;

    PixelFormat smaller = format;
    smaller.rows = halved(format.rows, decoded.value().halvings);
    smaller.columns = halved(format.columns, decoded.value().halvings);
    keepWithinStored(decoded.value(), format);
    Result<CodedPicture> picture = pictureOf(decoded.value(), smaller);
    if (!picture) return std::nullopt;
    Result<Frame> frame = toFrame(std::move(picture.value()), smaller);
    if (!frame) return std::nullopt;
    return CoarseFrame{std::move(frame.value()), decoded.value().halvings};
}

}  // namespace cinedisc::dicom::codecs
