#include "discmaker/LosslessFile.h"

#include "discmaker/DiscError.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QUuid>
#include <dcmtk/dcmdata/dcpixseq.h>
#include <dcmtk/dcmdata/dcpxitem.h>
#include <dcmtk/dcmjpeg/djcparam.h>
#include <dcmtk/dcmjpeg/djeijg12.h>
#include <dcmtk/dcmjpeg/djeijg8.h>

#include <memory>

namespace cinedisc::discmaker {

namespace {

void require(const OFCondition& outcome, const std::string& what) {
    if (outcome.bad()) throw DiscError("cannot write " + what + ": " + outcome.text());
}

}  // namespace

LosslessFile::LosslessFile(const Format& format) {
    put(DCM_SpecificCharacterSet, EVR_CS, "ISO_IR 192");
    put(DCM_SOPClassUID, EVR_UI, UID_XRayAngiographicImageStorage);
    put(DCM_SamplesPerPixel, EVR_US, "1");
    put(DCM_PhotometricInterpretation, EVR_CS, "MONOCHROME2");
    put(DCM_Rows, EVR_US, std::to_string(format.rows));
    put(DCM_Columns, EVR_US, std::to_string(format.columns));
    put(DCM_BitsAllocated, EVR_US, format.bits > 8 ? "16" : "8");
    put(DCM_BitsStored, EVR_US, std::to_string(format.bits));
    put(DCM_HighBit, EVR_US, std::to_string(format.bits - 1));
    put(DCM_PixelRepresentation, EVR_US, "0");
}

void LosslessFile::put(const DcmTagKey& tag, DcmEVR representation, const std::string& text) {
    require(file_.getDataset()->putAndInsertString(DcmTag(tag, representation), text.c_str()),
            tag.toString().c_str());
}

void LosslessFile::put(const DcmTagKey& tag, DcmEVR representation, std::initializer_list<double> numbers) {
    QByteArrayList texts;
    for (const double number : numbers) texts << QByteArray::number(number, 'g', 9);
    put(tag, representation, texts.join('\\').toStdString());
}

/// DCMTK fills in the values, but would take the representations from its dictionary.
void LosslessFile::putMetaInformation() {
    auto* meta = file_.getMetaInfo();
    const Uint8 version[]{0, 1};
    require(meta->putAndInsertUint32(DcmTag(DCM_FileMetaInformationGroupLength, EVR_UL), 0), "the length");
    require(meta->putAndInsertUint8Array(DcmTag(DCM_FileMetaInformationVersion, EVR_OB), version, 2),
            "the version");
    for (const auto& uid : {DCM_MediaStorageSOPClassUID, DCM_MediaStorageSOPInstanceUID,
                            DCM_TransferSyntaxUID, DCM_ImplementationClassUID})
        require(meta->putAndInsertString(DcmTag(uid, EVR_UI), ""), "an identifier");
    require(meta->putAndInsertString(DcmTag(DCM_ImplementationVersionName, EVR_SH), ""), "the version");
}

void LosslessFile::addFrame(Bytes codeStream) { frames_.push_back(std::move(codeStream)); }

void LosslessFile::write(const std::filesystem::path& path, E_TransferSyntax syntax) {
    auto sequence = std::make_unique<DcmPixelSequence>(DcmTag(DCM_PixelData, EVR_OB));
    auto* table = new DcmPixelItem(DCM_PixelItemTag);
    require(sequence->insert(table), "the offset table");
    DcmOffsetList offsets;
    for (auto& frame : frames_)
        require(sequence->storeCompressedFrame(offsets, frame.data(), static_cast<Uint32>(frame.size()), 0),
                "a frame");
    require(table->createOffsetTable(offsets), "the offset table");
    auto pixels = std::make_unique<DcmPixelData>(DcmTag(DCM_PixelData, EVR_OB));
    pixels->putOriginalRepresentation(syntax, nullptr, sequence.release());
    require(file_.getDataset()->insert(pixels.release(), OFTrue), "the pixels");
    putMetaInformation();
    require(file_.saveFile(path.c_str(), syntax, EET_ExplicitLength, EGL_recalcGL, EPD_noChange, 0, 0,
                           EWM_updateMeta),
            path.string());
}

LosslessFile::Bytes LosslessFile::encoded(const Format& format, std::span<const std::uint16_t> samples) {
    static const DJCodecParameter parameters(ECC_lossyYCbCr, EDC_never, EUC_never, EPC_colorByPixel);
    const auto rows = static_cast<Uint16>(format.rows), columns = static_cast<Uint16>(format.columns);
    Uint8* bytes = nullptr;
    Uint32 length = 0;
    const auto encode = [&](DJEncoder&& encoder, auto copy) {
        require(encoder.encode(columns, rows, EPI_Monochrome2, 1, copy.data(), bytes, length), "a frame");
    };
    if (format.bits <= 8) {
        encode(DJCompressIJG8Bit(parameters, EJM_lossless, 1, 0), Bytes(samples.begin(), samples.end()));
    } else {
        encode(DJCompressIJG12Bit(parameters, EJM_lossless, 1, 0),
               std::vector<Uint16>(samples.begin(), samples.end()));
    }
    const std::unique_ptr<Uint8[]> owned(bytes);
    return {bytes, bytes + length};
}

std::string uidFor(std::string_view name) {
    static const QUuid ours("{5a1c0d1e-8c1f-5d4b-9a55-63696e656469}");
    auto bytes =
        QUuid::createUuidV5(ours, QByteArray(name.data(), static_cast<qsizetype>(name.size()))).toRfc4122();
    std::string digits;
    // The 128 bits as a decimal number, its last digit first.
    for (int digit = 0; digit < 39; ++digit) {
        unsigned rest = 0;
        for (char& byte : bytes) {
            const unsigned value = rest << 8 | static_cast<unsigned char>(byte);
            byte = static_cast<char>(value / 10);
            rest = value % 10;
        }
        digits.insert(digits.begin(), static_cast<char>('0' + rest));
    }
    return "2.25." + digits.substr(digits.find_first_not_of('0'));
}

}  // namespace cinedisc::discmaker
