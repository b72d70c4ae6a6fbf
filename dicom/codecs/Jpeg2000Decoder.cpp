#include "dicom/codecs/Jpeg2000Decoder.h"

#include "dicom/codecs/Cells.h"
#include "dicom/codecs/CodecError.h"
#include "dicom/codecs/Jpeg2000Header.h"
#include "dicom/codecs/PixelCell.h"

#include <openjpeg.h>

#include <algorithm>
#include <cstring>
#include <memory>

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
};

Transforms transformsOf(opj_codec_t* codec) {
    opj_codestream_info_v2_t* info = opj_get_cstr_info(codec);
    if (!info) return {};
    const opj_tile_info_v2_t& tile = info->m_default_tile_info;
    const Transforms result{tile.mct != 0, tile.tccp_info && tile.tccp_info->qmfbid == 1};
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

/// The library's objects for one code stream, from which it decodes once.
class Decoding {
  public:
    explicit Decoding(std::span<const std::uint8_t> bytes)
        : memory_{bytes},
          codec_(opj_create_decompress(OPJ_CODEC_J2K), &opj_destroy_codec),
          stream_(openStream(memory_)) {}

    /// Null when the data do not make a picture.
    opj_image_t* decode(const Jpeg2000Grid& grid, Band band) {
        if (!codec_ || !stream_) return nullptr;
        opj_set_error_handler(codec_.get(), ignoreMessage, nullptr);
        opj_set_warning_handler(codec_.get(), ignoreMessage, nullptr);
        opj_set_info_handler(codec_.get(), ignoreMessage, nullptr);
        opj_dparameters_t parameters;
        opj_set_default_decoder_parameters(&parameters);
        if (!opj_setup_decoder(codec_.get(), &parameters)) return nullptr;
        opj_image_t* read = nullptr;
        const bool headerRead = opj_read_header(stream_.get(), codec_.get(), &read);
        image_.reset(read);
        const bool whole = band.rows == grid.bottom - grid.top;
        const auto edge = [](std::uint64_t at) { return static_cast<OPJ_INT32>(at); };
        const bool good = headerRead && image_ &&
                          (whole || opj_set_decode_area(codec_.get(), image_.get(), edge(grid.left),
                                                        edge(grid.top + band.top), edge(grid.right),
                                                        edge(grid.top + band.top + band.rows))) &&
                          opj_decode(codec_.get(), stream_.get(), image_.get());
        return good ? image_.get() : nullptr;
    }

    Transforms transforms() const { return transformsOf(codec_.get()); }
    DecodeError failure() const {
        return memory_.ranOut ? cutOff() : broken("JPEG 2000 data that contradict themselves");
    }

  private:
    MemoryStream memory_;
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

}  // namespace

bool isJpeg2000(std::span<const std::uint8_t> bytes) {
    static constexpr std::uint8_t codeStream[] = {0xFF, 0x4F, 0xFF, 0x51};
    static constexpr std::uint8_t fileFormat[] = {0, 0, 0, 12, 'j', 'P', ' ', ' '};
    const auto startsWith = [&](std::span<const std::uint8_t> start) {
        return bytes.size() >= start.size() && std::equal(start.begin(), start.end(), bytes.begin());
    };
    return startsWith(codeStream) || startsWith(fileFormat);
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
        Decoding decoding(header.stream);
        const opj_image_t* const image = decoding.decode(header.grid, band);
        if (!image || image->numcomps != static_cast<OPJ_UINT32>(header.components))
            return decoding.failure();
        const std::size_t components = image->numcomps;
        for (std::size_t i = 0; i < components; ++i)
            if (!isUsable(image->comps[i], image->comps[0], format, band.rows))
                return broken("impossible JPEG 2000 components");
        if (band.top == 0) picture = pictureLike(*image, decoding.transforms(), format);
        visitPatterns(picture.cells, [&](auto cells) {
            for (std::size_t i = 0; i < components; ++i)
                copyComponent(image->comps[i], cells.data() + band.top * columns * components + i, components,
                              band.rows, columns);
        });
    }
    return picture;
}

}  // namespace cinedisc::dicom::codecs
