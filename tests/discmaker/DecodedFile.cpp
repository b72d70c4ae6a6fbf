#include "tests/discmaker/DecodedFile.h"

#include <dcmtk/dcmdata/dcistrmb.h>
#include <dcmtk/dcmdata/dcpixseq.h>
#include <dcmtk/dcmdata/dcpxitem.h>
#include <dcmtk/dcmjpeg/djdecode.h>
#include <gtest/gtest.h>

#include <cstring>

namespace cinedisc::test {

DecodedFile::DecodedFile(const std::string& bytes) {
    static const bool registered = [] {
        DJDecoderRegistration::registerCodecs();
        return true;
    }();
    EXPECT_TRUE(registered);
    DcmInputBufferStream stream;
    stream.setBuffer(bytes.data(), static_cast<offile_off_t>(bytes.size()));
    stream.setEos();
    file_.transferInit();
    EXPECT_TRUE(file_.read(stream).good());
    file_.transferEnd();
    EXPECT_TRUE(file_.loadAllDataIntoMemory().good());
}

std::string DecodedFile::text(DcmTagKey tag, unsigned long value) {
    OFString found;
    EXPECT_TRUE(file_.getDataset()->findAndGetOFString(tag, found, value).good()) << tag.toString();
    return {found.c_str(), found.size()};
}

std::vector<std::uint16_t> DecodedFile::samples() {
    auto* dataset = file_.getDataset();
    EXPECT_TRUE(dataset->chooseRepresentation(EXS_LittleEndianExplicit, nullptr).good());
    const auto frames = dataset->tagExists(DCM_NumberOfFrames) ? number(DCM_NumberOfFrames) : 1;
    const auto count = static_cast<std::size_t>(number(DCM_Rows) * number(DCM_Columns) * frames);
    std::vector<std::uint16_t> result;
    if (number(DCM_BitsAllocated) == 8) {
        const Uint8* bytes = nullptr;
        EXPECT_TRUE(dataset->findAndGetUint8Array(DCM_PixelData, bytes).good());
        if (bytes) result.assign(bytes, bytes + count);
    } else {
        const Uint16* words = nullptr;
        EXPECT_TRUE(dataset->findAndGetUint16Array(DCM_PixelData, words).good());
        if (words) result.assign(words, words + count);
    }
    return result;
}

DcmPixelSequence* DecodedFile::fragments() {
    DcmElement* element = nullptr;
    DcmPixelSequence* sequence = nullptr;
    EXPECT_TRUE(file_.getDataset()->findAndGetElement(DCM_PixelData, element).good());
    auto* pixels = dynamic_cast<DcmPixelData*>(element);
    EXPECT_TRUE(pixels &&
                pixels->getEncapsulatedRepresentation(EXS_JPEGProcess14SV1, nullptr, sequence).good());
    return sequence;
}

std::vector<std::uint32_t> DecodedFile::offsetTable() {
    DcmPixelItem* item = nullptr;
    Uint8* bytes = nullptr;
    EXPECT_TRUE(fragments()->getItem(item, 0).good() && item->getUint8Array(bytes).good());
    std::vector<std::uint32_t> result(item->getLength() / 4);
    std::memcpy(result.data(), bytes, result.size() * 4);
    return result;
}

std::vector<std::uint32_t> DecodedFile::fragmentOffsets() {
    std::vector<std::uint32_t> result;
    std::uint32_t offset = 0;
    for (unsigned long i = 1; i < fragments()->card(); ++i) {
        DcmPixelItem* item = nullptr;
        EXPECT_TRUE(fragments()->getItem(item, i).good());
        result.push_back(offset);
        offset += 8 + item->getLength();
    }
    return result;
}

}  // namespace cinedisc::test
