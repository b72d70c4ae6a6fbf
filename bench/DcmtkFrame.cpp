#include "bench/DcmtkFrame.h"

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dcpixseq.h>
#include <dcmtk/dcmdata/dcpxitem.h>
#include <dcmtk/dcmdata/dcrledrg.h>
#include <dcmtk/dcmdata/dctk.h>
#include <dcmtk/dcmjpeg/djdecode.h>

#include <vector>

namespace cinedisc::bench {

DcmtkFrame::DcmtkFrame(std::span<const std::uint8_t> stream, int size, int bits, Syntax syntax)
    : dataset_(std::make_unique<DcmDataset>()) {
    DcmRLEDecoderRegistration::registerCodecs();
    DJDecoderRegistration::registerCodecs();
    const auto put = [&](const DcmTagKey& tag, int value) {
        dataset_->putAndInsertUint16(tag, static_cast<Uint16>(value));
    };
    put(DCM_SamplesPerPixel, 1);
    dataset_->putAndInsertString(DCM_PhotometricInterpretation, "MONOCHROME2");
    put(DCM_Rows, size);
    put(DCM_Columns, size);
    put(DCM_BitsAllocated, bits > 8 ? 16 : 8);
    put(DCM_BitsStored, bits);
    put(DCM_HighBit, bits - 1);
    put(DCM_PixelRepresentation, 0);

    auto* const sequence = new DcmPixelSequence(DcmTag(DCM_PixelData, EVR_OB));
    sequence->insert(new DcmPixelItem(DcmTag(DCM_Item, EVR_OB)));
    DcmOffsetList offsets;
    std::vector<Uint8> bytes(stream.begin(), stream.end());
    if (bytes.size() % 2) bytes.push_back(0);
    sequence->storeCompressedFrame(offsets, bytes.data(), static_cast<Uint32>(bytes.size()), 0);
    auto* const pixels = new DcmPixelData(DCM_PixelData);
    const E_TransferSyntax name = syntax == Syntax::Rle        ? EXS_RLELossless
                                  : syntax == Syntax::Lossless ? EXS_JPEGProcess14SV1
                                                               : EXS_JPEGProcess1;
    pixels->putOriginalRepresentation(name, nullptr, sequence);
    dataset_->insert(pixels);
}

DcmtkFrame::~DcmtkFrame() = default;

bool DcmtkFrame::decode(std::span<std::byte> into) {
    DcmElement* element = nullptr;
    if (dataset_->findAndGetElement(DCM_PixelData, element).bad()) return false;
    auto* const pixels = static_cast<DcmPixelData*>(element);
    Uint32 fragment = 1;
    OFString colours;
    return pixels
        ->getUncompressedFrame(dataset_.get(), 0, fragment, into.data(), static_cast<Uint32>(into.size()),
                               colours)
        .good();
}

}  // namespace cinedisc::bench
