#include "tests/fidelity/ReferenceFile.h"

#include <dcmtk/dcmimage/diregist.h>
#include <dcmtk/dcmimgle/dcmimage.h>

namespace cinedisc::fidelity {

namespace {

/// The modality step leads back to beam intensity for projections of angiography and fluoroscopy.
unsigned long flagsFor(const HeaderReader& header) {
    const std::string modality = header.text(DCM_Modality);
    return modality == "XA" || modality == "RF" ? CIF_IgnoreModalityTransformation : 0ul;
}

/// DCMTK's rendering does not look into functional groups: what stands there for this frame is put where it
/// looks.
void liftFunctionalGroups(ReferenceFile& file, int frame, DcmDataset& native) {
    for (const auto& tag : {DCM_WindowCenter, DCM_WindowWidth, DCM_VOILUTFunction, DCM_RescaleSlope,
                            DCM_RescaleIntercept, DCM_RescaleType})
        for (const auto& macro : {DCM_FrameVOILUTSequence, DCM_PixelValueTransformationSequence}) {
            const std::string value = file.header().macro(macro, frame).text(tag);
            if (!value.empty()) native.putAndInsertString(tag, value.c_str());
        }
}

void chooseWindow(DicomImage& image, ReferenceFile& file, const HeaderReader& header) {
    if (header.has(DCM_VOILUTSequence) && image.setVoiLut(0)) return;
    if (header.text(DCM_VOILUTFunction) == "SIGMOID") image.setVoiLutFunction(EFV_Sigmoid);
    if (header.has(DCM_WindowCenter) && image.setWindow(0)) return;
    if (header.integer(DCM_BitsStored, 8) <= 8) {
        const double range = 1 << header.integer(DCM_BitsStored, 8);
        image.setWindow(range / 2, range);
        return;
    }
    const auto first = file.nativeFrame(0);
    DicomImage firstImage(first.get(), EXS_LittleEndianExplicit, flagsFor(header));
    double low = 0, high = 0;
    firstImage.getMinMaxValues(low, high);
    image.setWindow((low + high + 1) / 2, high - low + 1);
}

}  // namespace

QImage dcmtkPicture(ReferenceFile& file, int frame) {
    const auto native = file.nativeFrame(frame);
    if (!native || !native->tagExists(DCM_PixelData)) return {};
    liftFunctionalGroups(file, frame, *native);
    const HeaderReader header(*native);
    DicomImage image(native.get(), EXS_LittleEndianExplicit, flagsFor(header));
    if (image.getStatus() != EIS_Normal) return {};
    if (image.isMonochrome()) chooseWindow(image, file, header);
    const auto columns = static_cast<int>(image.getWidth()), rows = static_cast<int>(image.getHeight());
    const auto* bytes = static_cast<const uchar*>(image.getOutputData(8, 0, 0));
    if (!bytes) return {};
    return image.isMonochrome() ? QImage(bytes, columns, rows, columns, QImage::Format_Grayscale8).copy()
                                : QImage(bytes, columns, rows, 3 * columns, QImage::Format_RGB888).copy();
}

}  // namespace cinedisc::fidelity
