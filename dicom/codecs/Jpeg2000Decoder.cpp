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

/// Rows of the picture, from 0; the whole picture or a part of it.
struct Band {
    std::size_t top = 0, rows = 0;
};

/// How often the library holds the samples of a part of a picture while it decodes them.
constexpr std::uint64_t copiesOfPart = 5;

/// Bytes of a row of the picture as the library holds it.
std::uint64_t bytesInRow(const Jpeg2000Header& header, const PixelFormat& format) {
    return static_cast<std::uint64_t>(format.columns) * static_cast<std::uint64_t>(header.components) *
           sizeof(OPJ_INT32);
}

/// How many rows are decoded at a time so that the library takes no more than `mostBytes` for their samples:
/// all, or else a number that begins no band within a subsampled row. 0 when that cannot be.
std::size_t rowsAtOnce(const Jpeg2000Header& header, const PixelFormat& format, std::uint64_t mostBytes) {
    constexpr std::uint64_t granule = 256;
    const auto rows = static_cast<std::uint64_t>(format.rows);
    if (rows * bytesInRow(header, format) <= mostBytes) return static_cast<std::size_t>(rows);
    const bool aligned =
        std::all_of(header.grid.components.begin(), header.grid.components.end(),
                    [&](const Jpeg2000Grid::Steps& steps) { return granule % steps.y == 0; });
    if (!aligned) return 0;
    const std::uint64_t granules = mostBytes / copiesOfPart / bytesInRow(header, format) / granule;
    return static_cast<std::size_t>(std::max<std::uint64_t>(granules, 1) * granule);
}

/// What decoding takes at most, measured for bands: besides their own samples the library holds those of code
/// blocks that reach beyond them.
std::uint64_t bytesToDecode(const Jpeg2000Header& header, const PixelFormat& format, std::size_t atOnce) {
    constexpr std::uint64_t rowsBeyond = 1024;
    const auto rows = static_cast<std::uint64_t>(format.rows);
    const std::uint64_t cellBytes = static_cast<std::uint64_t>(pixelCell(format).allocated) / 8;
    const std::uint64_t held = atOnce == rows ? rows : atOnce * copiesOfPart + rowsBeyond;
    return 2 * header.stream.size() + header.overhead + held * bytesInRow(header, format) +
           rows * bytesInRow(header, format) / sizeof(OPJ_INT32) * cellBytes;
}

/// Copies a component's values as patterns of its precision into every `step`th cell, repeating those of a
/// subsampled one.
template <typename Cell>
void copyComponent(const opj_image_comp_t& component, Cell* cells, std::size_t step, std::size_t rows,
                   std::size_t columns) {
    const auto mask = static_cast<std::uint32_t>((std::uint64_t{1} << component.prec) - 1);
    for (std::size_t y = 0; y < rows; ++y) {
        const std::size_t sourceRow = std::min<std::size_t>(y / component.dy, component.h - 1);
        const OPJ_INT32* const from = component.data + sourceRow * component.w;
        Cell* const to = cells + y * columns * step;
        for (std::size_t x = 0; x < columns; ++x) {
            const std::size_t sourceColumn =
                component.dx == 1 ? x : std::min<std::size_t>(x / component.dx, component.w - 1);
            to[x * step] = static_cast<Cell>(static_cast<std::uint32_t>(from[sourceColumn]) & mask);
        }
    }
}

bool isUsable(const opj_image_comp_t& component, const opj_image_comp_t& first, const PixelFormat& format,
              std::size_t rows) {
    if (!component.data || component.prec != first.prec || component.prec < 1 || component.prec > 31)
        return false;
    if (component.dx < 1 || component.dy < 1 || component.w < 1 || component.h < 1) return false;
    const bool whole = component.w == static_cast<OPJ_UINT32>(format.columns) && component.h == rows;
    return whole || component.dx > 1 || component.dy > 1;
}

int threadsFor(const PixelFormat& format) {
    constexpr int most = 8;
    if (!isLargeJpeg2000(format)) return 1;
    return std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, most);
}

/// The library's objects for one code stream, from which it decodes once.
class Decoding {
  public:
    Decoding(std::span<const std::uint8_t> bytes, int threads)
        : memory_{bytes},
          threads_(threads),
          codec_(opj_create_decompress(OPJ_CODEC_J2K), &opj_destroy_codec),
          stream_(openStream(memory_)) {}

    /// Null when the data do not make a picture.
    opj_image_t* decode(const Jpeg2000Grid& grid, Band band, int mostHalvings = 0) {
        if (!codec_ || !stream_) return nullptr;
        opj_set_error_handler(codec_.get(), ignoreMessage, nullptr);
        opj_set_warning_handler(codec_.get(), ignoreMessage, nullptr);
        opj_set_info_handler(codec_.get(), ignoreMessage, nullptr);
        opj_dparameters_t parameters;
        opj_set_default_decoder_parameters(&parameters);
        if (!opj_setup_decoder(codec_.get(), &parameters)) return nullptr;
        if (threads_ > 1) opj_codec_set_threads(codec_.get(), threads_);
        opj_image_t* read = nullptr;
        const bool headerRead = opj_read_header(stream_.get(), codec_.get(), &read);
        image_.reset(read);
        const bool whole = band.rows == grid.bottom - grid.top;
        const auto edge = [](std::uint64_t at) { return static_cast<OPJ_INT32>(at); };
        const bool good = headerRead && image_ && halve(mostHalvings) &&
                          (whole || opj_set_decode_area(codec_.get(), image_.get(), edge(grid.left),
                                                        edge(grid.top + band.top), edge(grid.right),
                                                        edge(grid.top + band.top + band.rows))) &&
                          opj_decode(codec_.get(), stream_.get(), image_.get());
        return good ? image_.get() : nullptr;
    }
    /// How often its size was halved: as often as was wanted, or as the stream has levels.
    int halvings() const { return halvings_; }

    Transforms transforms() const { return transformsOf(codec_.get()); }
    DecodeError failure() const {
        return memory_.ranOut ? cutOff() : broken("JPEG 2000 data that contradict themselves");
    }

  private:
    bool halve(int most) {
        if (most == 0) return true;
        halvings_ = std::min(most, transforms().levels);
        return opj_set_decoded_resolution_factor(codec_.get(), static_cast<OPJ_UINT32>(halvings_));
    }

    MemoryStream memory_;
    int threads_;
    int halvings_ = 0;
    Codec codec_;
    Stream stream_;
    Image image_{nullptr, &opj_image_destroy};
};

/// A picture like those in the stream, its cells still empty.
CodedPicture pictureLike(const opj_image_t& image, Transforms transforms, const PixelFormat& format) {
    CodedPicture picture;
    picture.components = static_cast<int>(image.numcomps);
    picture.precision = static_cast<int>(image.comps[0].prec);
    picture.isSigned = image.comps[0].sgnd != 0;
    // Reversible transforms lose nothing unless the stream was cut down afterwards, which it does not tell.
    picture.exactness = transforms.reversible && !format.mayBeLossy ? Exactness::Same : Exactness::Near;
    const bool namedByTransform =
        format.photometric == Photometric::YbrIct || format.photometric == Photometric::YbrRct;
    picture.colour =
        transforms.ofComponents || namedByTransform ? ColourSpace::Rgb : colourSpaceOf(format.photometric);
    picture.cells = makeCells(
        picture.precision, format.isSigned && picture.components == 1,
        static_cast<std::size_t>(format.rows) * static_cast<std::size_t>(format.columns) * image.numcomps);
    return picture;
}

void copySamples(const opj_image_t& image, std::size_t rows, std::size_t columns, std::size_t from,
                 Frame::Samples& into) {
    const std::size_t components = image.numcomps;
    visitPatterns(into, [&](auto cells) {
        for (std::size_t i = 0; i < components; ++i)
            copyComponent(image.comps[i], cells.data() + from * columns * components + i, components, rows,
                          columns);
    });
}

bool areUsable(const opj_image_t& image, const PixelFormat& format, std::size_t rows) {
    return std::all_of(image.comps, image.comps + image.numcomps, [&](const opj_image_comp_t& component) {
        return isUsable(component, image.comps[0], format, rows);
    });
}

/// Means of neighbours are near them only where the samples are numbers: not indices into a palette, nor
/// values whose sign or place in the cell the header tells otherwise than the stream.
bool hasMeans(const opj_image_t& image, const PixelFormat& format) {
    if (format.photometric == Photometric::PaletteColor) return false;
    const bool isSigned = format.isSigned && image.numcomps == 1;
    return (image.comps[0].sgnd != 0) == isSigned && pixelCell(format).shift == 0;
}

}  // namespace

PixelFormat halved(PixelFormat format, int times) {
    for (int* const side : {&format.rows, &format.columns}) *side = (*side + (1 << times) - 1) >> times;
    return format;
}

bool isLargeJpeg2000(const PixelFormat& format) {
    constexpr std::int64_t pixels = std::int64_t{4} << 20;
    return std::int64_t{format.rows} * format.columns >= pixels;
}

Result<CodedPicture> decodeJpeg2000(std::span<const std::uint8_t> bytes, const PixelFormat& format,
                                    std::uint64_t mostSampleBytes) {
    const Result<Jpeg2000Header> read = readJpeg2000Header(bytes, format);
    if (!read) return read.error();
    const Jpeg2000Header& header = read.value();
    const auto rows = static_cast<std::size_t>(format.rows),
               columns = static_cast<std::size_t>(format.columns);
    const std::size_t atOnce = rowsAtOnce(header, format, mostSampleBytes);
    if (atOnce == 0 || bytesToDecode(header, format, atOnce) > maximumDecodingBytes) return tooLarge();

    CodedPicture picture;
    for (Band band{0, atOnce}; band.top < rows; band.top += band.rows) {
        band.rows = std::min(band.rows, rows - band.top);
        Decoding decoding(header.stream, threadsFor(format));
        const opj_image_t* const image = decoding.decode(header.grid, band);
        if (!image || image->numcomps != static_cast<OPJ_UINT32>(header.components))
            return decoding.failure();
        if (!areUsable(*image, format, band.rows)) return broken("impossible JPEG 2000 components");
        if (band.top == 0) picture = pictureLike(*image, decoding.transforms(), format);
        copySamples(*image, band.rows, columns, band.top, picture.cells);
    }
    return picture;
}

std::optional<CoarsePicture> decodeCoarseJpeg2000(std::span<const std::uint8_t> bytes,
                                                  const PixelFormat& format, int leastSide) {
    int halvings = 0;
    while (std::min(format.rows, format.columns) >> (halvings + 1) >= leastSide) ++halvings;
    const Result<Jpeg2000Header> read = readJpeg2000Header(bytes, format);
    if (halvings == 0 || !read) return std::nullopt;
    const Jpeg2000Header& header = read.value();
    const auto rows = static_cast<std::size_t>(format.rows);
    if (header.grid.left > 0 || header.grid.top > 0 ||
        2 * header.stream.size() + header.overhead > maximumDecodingBytes / 2)
        return std::nullopt;

    Decoding decoding(header.stream, 1);
    const opj_image_t* const image = decoding.decode(header.grid, {0, rows}, halvings);
    if (!image || decoding.halvings() == 0 || image->numcomps != static_cast<OPJ_UINT32>(header.components) ||
        !hasMeans(*image, format))
        return std::nullopt;
    const PixelFormat smaller = halved(format, decoding.halvings());
    const auto smallerRows = static_cast<std::size_t>(smaller.rows);
    if (!areUsable(*image, smaller, smallerRows)) return std::nullopt;
    CodedPicture picture = pictureLike(*image, decoding.transforms(), smaller);
    if (picture.exactness == Exactness::Same) picture.exactness = Exactness::Near;
    copySamples(*image, smallerRows, static_cast<std::size_t>(smaller.columns), 0, picture.cells);
    return CoarsePicture{std::move(picture), decoding.halvings()};
}

}  // namespace cinedisc::dicom::codecs
