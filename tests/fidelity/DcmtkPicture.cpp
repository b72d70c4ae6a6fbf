#include "tests/fidelity/DcmtkPicture.h"

#include <dcmtk/dcmimage/diregist.h>
#include <dcmtk/dcmimgle/dcmimage.h>

namespace cinedisc::fidelity {

namespace {

void chooseWindow(DicomImage& image, const HeaderReader& header) {
    if (header.has(DCM_VOILUTSequence) && image.setVoiLut(0)) return;
    const std::string function = header.text(DCM_VOILUTFunction);
    if (function == "SIGMOID") image.setVoiLutFunction(EFV_Sigmoid);
    if (header.has(DCM_WindowCenter) && image.setWindow(0)) return;
    if (header.integer(DCM_BitsStored, 8) <= 8) {
        const double range = 1 << header.integer(DCM_BitsStored, 8);
        image.setWindow(range / 2, range);
    } else {
        image.setMinMaxWindow();
    }
}

}  // namespace

Pixels dcmtkPicture(ReferenceFile& file, int frame) {
    const auto native = file.nativeFrame(frame);
    if (!native || !native->tagExists(DCM_PixelData)) return {};
    const HeaderReader header(*native);
    const std::string modality = header.text(DCM_Modality);
    const bool isAngiogram = modality == "XA" || modality == "RF";
    DicomImage image(native.get(), EXS_LittleEndianExplicit,
                     isAngiogram ? CIF_IgnoreModalityTransformation : 0ul);
    if (image.getStatus() != EIS_Normal) return {};
    if (image.isMonochrome()) chooseWindow(image, header);
    const auto columns = static_cast<int>(image.getWidth()), rows = static_cast<int>(image.getHeight());
    const auto* bytes = static_cast<const std::uint8_t*>(image.getOutputData(8, 0, 0));
    if (!bytes) return {};
    Pixels picture{rows, columns, {}};
    const std::size_t count = static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns) * 3;
    const std::size_t perPixel = image.isMonochrome() ? 3 : 1;
    picture.rgb.resize(count);
    for (std::size_t i = 0; i < count; ++i) picture.rgb[i] = bytes[i / perPixel];
    return picture;
}

}  // namespace cinedisc::fidelity
