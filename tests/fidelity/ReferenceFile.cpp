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
#include <memory>
#include <set>

namespace cinedisc::fidelity {

namespace {

void registerDecoders() {
    static const bool once = [] {
        OFLog::configure(OFLogger::OFF_LOG_LEVEL);
        DcmRLEDecoderRegistration::registerCodecs();
        DJDecoderRegistration::registerCodecs(EDC_photometricInterpretation);
        DJLSDecoderRegistration::registerCodecs();
        return true;
    }();
    (void)once;
}

bool isJpeg2000(const std::string& uid) {
    static const std::set<std::string> uids{"1.2.840.10008.1.2.4.90", "1.2.840.10008.1.2.4.91",
                                            "1.2.840.10008.1.2.4.201", "1.2.840.10008.1.2.4.202",
                                            "1.2.840.10008.1.2.4.203"};
    return uids.contains(uid);
}

bool endsPicture(const std::vector<Uint8>& bytes) {
    std::size_t end = bytes.size();
    while (end > 0 && bytes[end - 1] == 0) --end;
    return end >= 2 && bytes[end - 2] == 0xFF && bytes[end - 1] == 0xD9;
}

bool put(const opj_image_t& image, DcmItem& into) {
    const std::size_t pixels = std::size_t{image.comps[0].w} * image.comps[0].h;
    const bool wide = image.comps[0].prec > 8;
    std::vector<Uint16> words((pixels * image.numcomps * (wide ? 2 : 1) + 1) / 2);
    auto* bytes = reinterpret_cast<Uint8*>(words.data());
    for (std::size_t at = 0; at < pixels * image.numcomps; ++at) {
        const OPJ_INT32 value = image.comps[at % image.numcomps].data[at / image.numcomps];
        if (wide) words[at] = static_cast<Uint16>(value);
        if (!wide) bytes[at] = static_cast<Uint8>(value);
    }
    into.putAndInsertUint16(DCM_BitsAllocated, wide ? 16 : 8);
    if (image.numcomps == 3) {
        into.putAndInsertUint16(DCM_PlanarConfiguration, 0);
        // OpenJPEG has undone the colour transformation.
        into.putAndInsertString(DCM_PhotometricInterpretation, "RGB");
    }
    return into.putAndInsertUint16Array(DCM_PixelData, words.data(), words.size()).good();
}

/// Decodes a JPEG 2000 code stream with OpenJPEG and puts it into a data set as native pixels, interleaved.
bool decodeJpeg2000(const std::vector<Uint8>& stream, DcmItem& into) {
    QTemporaryFile file;
    if (!file.open()) return false;
    file.write(reinterpret_cast<const char*>(stream.data()), static_cast<qint64>(stream.size()));
    file.close();
    const std::unique_ptr<opj_stream_t, void (*)(opj_stream_t*)> opened(
        opj_stream_create_default_file_stream(qPrintable(file.fileName()), OPJ_TRUE), opj_stream_destroy);

    const bool isBoxed = stream.size() > 4 && stream[0] != 0xFF;
    const std::unique_ptr<opj_codec_t, void (*)(opj_codec_t*)> codec(
        opj_create_decompress(isBoxed ? OPJ_CODEC_JP2 : OPJ_CODEC_J2K), opj_destroy_codec);
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
    item_->findAndGetOFString(tag, value);
    return value.c_str();
}

std::vector<std::string> HeaderReader::texts(const DcmTagKey& tag) const {
    std::vector<std::string> values;
    OFString value;
    for (unsigned long i = 0; item_->findAndGetOFString(tag, value, i).good(); ++i)
        values.emplace_back(value.c_str());
    return values;
}

std::vector<double> HeaderReader::numbers(const DcmTagKey& tag) const {
    std::vector<double> values;
    for (const auto& value : texts(tag)) {
        if (!value.empty()) values.push_back(std::strtod(value.c_str(), nullptr));
    }
    return values;
}

double HeaderReader::number(const DcmTagKey& tag, double otherwise) const {
    const auto values = numbers(tag);
    return values.empty() ? otherwise : values.front();
}

int HeaderReader::integer(const DcmTagKey& tag, int otherwise) const {
    return static_cast<int>(number(tag, otherwise));
}

std::vector<unsigned> HeaderReader::words(const DcmTagKey& tag) const {
    DcmElement* element = nullptr;
    if (item_->findAndGetElement(tag, element).bad() || !element) return {};
    std::vector<unsigned> values;
    Uint16* words = nullptr;
    Sint16* numbers = nullptr;
    if (element->getUint16Array(words).good() && words) {
        values.assign(words, words + element->getLength() / 2);
    } else if (element->getSint16Array(numbers).good() && numbers) {
        for (unsigned i = 0; i < element->getLength() / 2; ++i)
            values.push_back(static_cast<Uint16>(numbers[i]));
    }
    return values;
}

std::vector<HeaderReader> HeaderReader::items(const DcmTagKey& sequence) const {
    std::vector<HeaderReader> found;
    DcmSequenceOfItems* items = nullptr;
    if (item_->findAndGetSequence(sequence, items).bad() || !items) return found;
    for (unsigned long i = 0; i < items->card(); ++i) found.emplace_back(*items->getItem(i));
    return found;
}

HeaderReader HeaderReader::macro(const DcmTagKey& sequence, int frame) const {
    const auto perFrame = items(DCM_PerFrameFunctionalGroupsSequence);
    if (static_cast<std::size_t>(frame) < perFrame.size()) {
        const auto own = perFrame[static_cast<std::size_t>(frame)].items(sequence);
        if (!own.empty()) return own.front();
    }
    for (const auto& shared : items(DCM_SharedFunctionalGroupsSequence)) {
        const auto own = shared.items(sequence);
        if (!own.empty()) return own.front();
    }
    return *this;
}

ReferenceFile::ReferenceFile(const std::string& path) {
    registerDecoders();
    isDicom_ =
        file_.loadFile(path.c_str(), EXS_Unknown, EGL_noChange, DCM_MaxReadLength, ERM_autoDetect).good() &&
        file_.getDataset()->card() > 0;
    OFString uid;
    file_.getMetaInfo()->findAndGetOFString(DCM_TransferSyntaxUID, uid);
    syntaxUid_ = uid.empty() ? DcmXfer(file_.getDataset()->getOriginalXfer()).getXferID() : uid.c_str();
}

bool ReferenceFile::hasPixels() { return header().has(DCM_PixelData) || header().has(DCM_FloatPixelData); }

bool ReferenceFile::isLossless() const {
    static const std::set<std::string> lossy{"1.2.840.10008.1.2.4.50", "1.2.840.10008.1.2.4.51",
                                             "1.2.840.10008.1.2.4.53", "1.2.840.10008.1.2.4.55",
                                             "1.2.840.10008.1.2.4.81", "1.2.840.10008.1.2.4.91",
                                             "1.2.840.10008.1.2.4.203"};
    return !lossy.contains(syntaxUid_);
}

int ReferenceFile::frames() {
    const std::string stated = header().text(DCM_NumberOfFrames);
    const bool isNumber = stated.find_first_not_of("0123456789 +") == std::string::npos;
    if (isNumber) return std::max(1, header().integer(DCM_NumberOfFrames, 1));
    // Something else stands there: as many as the pixels suffice for.
    DcmElement* pixels = nullptr;
    file_.getDataset()->findAndGetElement(DCM_PixelData, pixels);
    const int frameBytes = header().integer(DCM_Rows, 1) * header().integer(DCM_Columns, 1) *
                           header().integer(DCM_BitsAllocated, 8) / 8;
    return pixels && frameBytes > 0 ? static_cast<int>(pixels->getLength()) / frameBytes : 1;
}

std::string ReferenceFile::decoderName() const { return isJpeg2000(syntaxUid_) ? "OpenJPEG" : "DCMTK"; }

std::vector<std::vector<Uint8>> ReferenceFile::encapsulatedFrames() {
    DcmElement* element = nullptr;
    file_.getDataset()->findAndGetElement(DCM_PixelData, element);
    auto* pixels = dynamic_cast<DcmPixelData*>(element);
    DcmPixelSequence* sequence = nullptr;
    E_TransferSyntax type = EXS_Unknown;
    const DcmRepresentationParameter* parameter = nullptr;
    if (!pixels) return {};
    pixels->getOriginalRepresentationKey(type, parameter);
    if (pixels->getEncapsulatedRepresentation(type, parameter, sequence).bad() || !sequence) return {};

    std::vector<std::vector<Uint8>> streams;
    const auto wanted = static_cast<std::size_t>(frames());
    const bool isWhole = sequence->card() <= wanted + 1;  // a fragment is a frame
    bool isNew = true;
    for (unsigned long i = 1; i < sequence->card(); ++i) {
        DcmPixelItem* item = nullptr;
        Uint8* bytes = nullptr;
        if (sequence->getItem(item, i).bad() || item->getUint8Array(bytes).bad() || !bytes) continue;
        if (isNew) streams.emplace_back();
        streams.back().insert(streams.back().end(), bytes, bytes + item->getLength());
        isNew = isWhole || (wanted > 1 && endsPicture(streams.back()));
    }
    return streams;
}

bool ReferenceFile::decodeNative(DcmDataset& into, int frame) {
    DcmElement* element = nullptr;
    file_.getDataset()->findAndGetElement(DCM_PixelData, element);
    const auto size = static_cast<std::size_t>(element->getLength()) / static_cast<std::size_t>(frames());
    const std::size_t from = size * static_cast<std::size_t>(frame);
    const Uint8* bytes = pixelBytes(*element);
    if (!bytes) return false;
    std::vector<Uint8> even(bytes + from, bytes + from + size);
    even.resize((size + 1) / 2 * 2);
    return into
        .putAndInsertUint16Array(DCM_PixelData, reinterpret_cast<Uint16*>(even.data()), even.size() / 2)
        .good();
}

bool ReferenceFile::decodeWithDcmtk(DcmDataset& into, const std::vector<Uint8>& stream) {
    auto* sequence = new DcmPixelSequence(DCM_PixelSequenceTag);
    sequence->insert(new DcmPixelItem(DCM_PixelItemTag));
    auto* item = new DcmPixelItem(DCM_PixelItemTag);
    item->putUint8Array(stream.data(), stream.size());
    sequence->insert(item);
    auto* pixels = new DcmPixelData(DCM_PixelData);
    pixels->putOriginalRepresentation(file_.getDataset()->getOriginalXfer(), nullptr, sequence);
    into.insert(pixels, OFTrue);
    return into.chooseRepresentation(EXS_LittleEndianExplicit, nullptr).good();
}

std::unique_ptr<DcmDataset> ReferenceFile::nativeFrame(int frame) {
    auto native = std::make_unique<DcmDataset>();
    DcmDataset& from = *file_.getDataset();
    for (unsigned long i = 0; i < from.card(); ++i) {
        DcmElement* element = from.getElement(i);
        if (element->getTag() == DCM_PixelData || element->getTag() == DCM_NumberOfFrames) continue;
        native->insert(static_cast<DcmElement*>(element->clone()), OFTrue);
    }
    if (!from.tagExists(DCM_PixelData)) return native;
    if (!DcmXfer(from.getOriginalXfer()).isEncapsulated() && !isJpeg2000(syntaxUid_))
        return decodeNative(*native, frame) ? std::move(native) : nullptr;
    const auto streams = encapsulatedFrames();
    if (static_cast<std::size_t>(frame) >= streams.size()) return nullptr;
    const auto& stream = streams[static_cast<std::size_t>(frame)];
    const bool good =
        isJpeg2000(syntaxUid_) ? decodeJpeg2000(stream, *native) : decodeWithDcmtk(*native, stream);
    return good ? std::move(native) : nullptr;
}

}  // namespace cinedisc::fidelity
