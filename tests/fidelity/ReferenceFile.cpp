#include "tests/fidelity/ReferenceFile.h"

#include "tests/fidelity/Jpeg2000Stream.h"

#include <dcmtk/dcmdata/dcpixseq.h>
#include <dcmtk/dcmdata/dcpxitem.h>
#include <dcmtk/dcmdata/dcrledrg.h>
#include <dcmtk/dcmjpeg/djdecode.h>
#include <dcmtk/dcmjpls/djdecode.h>

#include <algorithm>
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

}  // namespace

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
    Uint8* bytes = nullptr;
    Uint16* words = nullptr;
    const auto size = static_cast<std::size_t>(element->getLength()) / static_cast<std::size_t>(frames());
    const std::size_t from = size * static_cast<std::size_t>(frame);
    if (element->getVR() == EVR_OW || header().integer(DCM_BitsAllocated, 8) > 8) {
        if (element->getUint16Array(words).bad() || !words) return false;
        bytes = reinterpret_cast<Uint8*>(words);
    } else if (element->getUint8Array(bytes).bad() || !bytes) {
        return false;
    }
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
