#include "tests/fidelity/ReferenceFile.h"

#include <QTemporaryFile>
#include <dcmtk/dcmdata/dcpixseq.h>
#include <dcmtk/dcmdata/dcpxitem.h>
#include <dcmtk/dcmdata/dcrledrg.h>
#include <dcmtk/dcmjpeg/djdecode.h>
#include <dcmtk/dcmjpls/djdecode.h>
#include <openjpeg.h>

#include <algorithm>
#include <cstdlib>

namespace cinedisc::fidelity {

namespace {

bool isJpeg2000(const std::string& uid) {
    return uid.starts_with("1.2.840.10008.1.2.4.9") || uid.starts_with("1.2.840.10008.1.2.4.20");
}

bool put(const opj_image_t& image, DcmItem& into) {
    const std::size_t pixels = std::size_t{image.comps[0].w} * image.comps[0].h;
    std::vector<Uint16> words;
    for (std::size_t at = 0; at < pixels * image.numcomps; ++at)
        words.push_back(static_cast<Uint16>(image.comps[at % image.numcomps].data[at / image.numcomps]));
    into.putAndInsertUint16(DCM_BitsAllocated, 16);
    into.putAndInsertUint16(DCM_PlanarConfiguration, 0);
    // OpenJPEG has undone the colour transformation.
    if (image.numcomps == 3) into.putAndInsertString(DCM_PhotometricInterpretation, "RGB");
    return into.putAndInsertUint16Array(DCM_PixelData, words.data(), words.size()).good();
}

/// Replaces the JPEG 2000 code stream of the only frame by native pixels, interleaved, as OpenJPEG decodes
/// it.
bool decodeJpeg2000(DcmItem& into) {
    DcmElement* element = nullptr;
    into.findAndGetElement(DCM_PixelData, element);
    auto* pixels = dynamic_cast<DcmPixelData*>(element);
    DcmPixelSequence* sequence = nullptr;
    E_TransferSyntax type = EXS_Unknown;
    const DcmRepresentationParameter* parameter = nullptr;
    QTemporaryFile file;
    if (!pixels || !file.open()) return false;
    pixels->getOriginalRepresentationKey(type, parameter);
    if (pixels->getEncapsulatedRepresentation(type, parameter, sequence).bad()) return false;
    char first = 0;
    DcmPixelItem* item = nullptr;
    for (unsigned long i = 1; sequence->getItem(item, i).good(); ++i) {
        Uint8* bytes = nullptr;
        if (item->getUint8Array(bytes).bad() || !bytes) continue;
        if (i == 1) first = static_cast<char>(bytes[0]);
        file.write(reinterpret_cast<const char*>(bytes), static_cast<qint64>(item->getLength()));
    }
    file.close();
    const std::unique_ptr<opj_stream_t, void (*)(opj_stream_t*)> opened(
        opj_stream_create_default_file_stream(qPrintable(file.fileName()), OPJ_TRUE), opj_stream_destroy);

    const std::unique_ptr<opj_codec_t, void (*)(opj_codec_t*)> codec(
        opj_create_decompress(first == 0 ? OPJ_CODEC_JP2 : OPJ_CODEC_J2K), opj_destroy_codec);
    opj_dparameters_t parameters;
    opj_set_default_decoder_parameters(&parameters);
    opj_image_t* image = nullptr;
    const bool good = opj_setup_decoder(codec.get(), &parameters) &&
                      opj_read_header(opened.get(), codec.get(), &image) &&
                      opj_decode(codec.get(), opened.get(), image);
    const bool done = good && put(*image, into);
    opj_image_destroy(image);
    return done;
}

}  // namespace

const Uint8* pixelBytes(DcmElement& element) {
    Uint16* words = nullptr;
    Uint8* bytes = nullptr;
    if (element.getUint16Array(words).good() && words) return reinterpret_cast<const Uint8*>(words);
    return element.getUint8Array(bytes).good() ? bytes : nullptr;
}

std::string HeaderReader::text(const DcmTagKey& tag) const {
    OFString value;
    item_->findAndGetOFStringArray(tag, value);
    return value.c_str();
}

std::vector<double> HeaderReader::numbers(const DcmTagKey& tag) const {
    std::vector<double> values;
    OFString value;
    for (unsigned long i = 0; item_->findAndGetOFString(tag, value, i).good(); ++i)
        if (!value.empty()) values.push_back(std::strtod(value.c_str(), nullptr));
    return values;
}

double HeaderReader::number(const DcmTagKey& tag, double otherwise) const {
    const auto values = numbers(tag);
    return values.empty() ? otherwise : values.front();
}

int HeaderReader::integer(const DcmTagKey& tag, int otherwise) const {
    return static_cast<int>(number(tag, otherwise));
}

std::vector<Uint16> HeaderReader::words(const DcmTagKey& tag) const {
    const Uint16* words = nullptr;
    const Sint16* numbers = nullptr;
    unsigned long count = 0;
    if (item_->findAndGetUint16Array(tag, words, &count).good() && words) return {words, words + count};
    if (item_->findAndGetSint16Array(tag, numbers, &count).good() && numbers)
        return {numbers, numbers + count};
    return {};
}

std::optional<HeaderReader> HeaderReader::item(const DcmTagKey& sequence, int index) const {
    DcmItem* found = nullptr;
    const bool isThere = item_->findAndGetSequenceItem(sequence, found, index).good();
    return isThere ? std::optional(HeaderReader(*found)) : std::nullopt;
}

HeaderReader HeaderReader::macro(const DcmTagKey& sequence, int frame) const {
    for (const auto& [groups, index] :
         {std::pair(DCM_PerFrameFunctionalGroupsSequence, frame), {DCM_SharedFunctionalGroupsSequence, 0}})
        if (const auto group = item(groups, index))
            if (const auto own = group->item(sequence)) return *own;
    return *this;
}

ReferenceFile::ReferenceFile(const std::string& path) {
    OFLog::configure(OFLogger::OFF_LOG_LEVEL);
    DcmRLEDecoderRegistration::registerCodecs();
    DJDecoderRegistration::registerCodecs(EDC_photometricInterpretation);
    DJLSDecoderRegistration::registerCodecs();
    DcmDataset& dataset = *file_.getDataset();
    file_.loadFile(path.c_str(), EXS_Unknown, EGL_noChange, DCM_MaxReadLength, ERM_autoDetect);
    OFString uid;
    file_.getMetaInfo()->findAndGetOFString(DCM_TransferSyntaxUID, uid);
    syntaxUid_ = uid.empty() ? DcmXfer(dataset.getOriginalXfer()).getXferID() : uid.c_str();
    isDecoded_ = isJpeg2000(syntaxUid_)
                     ? decodeJpeg2000(dataset)
                     : dataset.chooseRepresentation(EXS_LittleEndianExplicit, nullptr).good();
}

int ReferenceFile::frames() {
    DcmElement* pixels = nullptr;
    if (file_.getDataset()->findAndGetElement(DCM_PixelData, pixels).bad())
        return header().has(DCM_FloatPixelData);
    const int frameBits = header().integer(DCM_Rows, 1) * header().integer(DCM_Columns, 1) *
                          header().integer(DCM_SamplesPerPixel, 1) * header().integer(DCM_BitsAllocated, 8);
    return isDecoded_ ? std::max(1, static_cast<int>(pixels->getLength() * 8.0 / frameBits)) : 1;
}

std::unique_ptr<DcmDataset> ReferenceFile::nativeFrame(int frame) {
    DcmElement* pixels = nullptr;
    auto native = std::make_unique<DcmDataset>(*file_.getDataset());
    delete native->remove(DCM_NumberOfFrames);
    if (native->findAndGetElement(DCM_PixelData, pixels).bad()) return native;
    const Uint8* bytes = isDecoded_ ? pixelBytes(*pixels) : nullptr;
    if (!bytes) return nullptr;
    const auto size = static_cast<std::size_t>(pixels->getLength()) / static_cast<std::size_t>(frames());
    const Uint8* const from = bytes + size * static_cast<std::size_t>(frame);
    std::vector<Uint8> even(from, from + size);
    even.resize((size + 1) / 2 * 2);
    native->putAndInsertUint16Array(DCM_PixelData, reinterpret_cast<Uint16*>(even.data()), even.size() / 2);
    return native;
}

}  // namespace cinedisc::fidelity
