#include "tests/fidelity/table/Remarks.h"

#include <map>

namespace cinedisc::fidelity {

QString remarkOn(const QString& fileName) {
    static const std::map<QString, QString> remarks{
        {"CR-ModalitySequenceLUT.dcm",
         "Modality LUT instead of the rescale; no window, so the range of what "
         "the table makes of the frame; MONOCHROME1 is inverted after that"},
        {"CT0012.fragmented_no_bot_jpeg_lossless.57.dcm",
         "Window and rescale from the functional groups; "
         "several fragments a frame"},
        {"CT0012.not_fragmented_no_bot_rle.dcm", "Window and rescale from the functional groups"},
        {"CTImage_JPEGProcess6_8TransferSyntax_1.2.840.10008.1.2.4.53.dcm", "Retired JPEG process"},
        {"CT_small.dcm", "No window: the range of the first frame without padding"},
        {"ExplVR_BigEnd.dcm",
         "Yellow is what the file holds: three planes of single bytes, which no byte "
         "order touches; both references agree"},
        {"ExplVR_LitEndNoMeta.dcm", "A treatment plan"},
        {"GDCMJ2K_TextGBR.dcm", "A whole JP2 file instead of a bare code stream"},
        {"HTJ2KLossless_08_RGB.dcm", "Both sides decode with OpenJPEG"},
        {"HTJ2K_08_RGB.dcm", "Both sides decode with OpenJPEG"},
        {"J2K_pixelrep_mismatch.dcm",
         "Signed by the header, unsigned by the code stream: the header holds "
         "(PS3.5 section 8.2.4)"},
        {"MR_truncated.dcm", "62 bytes of the only frame are missing: a notice, not half a picture"},
        {"OutOfBoundsOverlay.dcm",
         "Shutter edges at 0 and overlay planes that reach beyond the picture: "
         "what lies inside is drawn; DCMTK draws its overlays white too"},
        {"SC_jpeg_no_color_transform.dcm",
         "No JFIF or Adobe marker, components 0, 1, 2: the header's RGB "
         "holds, no colour is transformed"},
        {"TestPattern_Palette_16.dcm", "Palette of 16-bit entries: the upper byte is the colour"},
        {"XA1_JPH.dcm", "The same picture as XA1_UNC.dcm, value for value"},
        {"XA1_UNC.dcm", "Angiogram: no modality step (PS3.3 C.8.7.1.1.2)"},
        {"badVR.dcm", "NumberOfFrames is no number (1A): the pixels suffice for 15 frames, which are shown"},
        {"chrKoreanMulti.dcm", "A header without pixels"},
        {"dx_image.dcm", "MONOCHROME1 and presentation LUT shape INVERSE say the same: inverted once"},
        {"emri_small_RLE.dcm", "No window: the range of the first frame, on all frames"},
        {"examples_overlay.dcm", "Two windows, the first one counts; one overlay plane"},
        {"liver_1frame.dcm", "One bit a pixel"},
        {"meta_missing_tsyntax.dcm", "Pixel data without rows and columns"},
        {"no_meta.dcm", "A stray byte before the first element; DCMTK cannot read it either"},
        {"parametric_map_float.dcm", "Floating point pixels, which DCMTK does not render"},
        {"rtdose.dcm", "32 bits a pixel; no window: the range of the first frame, on all frames"},
        {"sm_image_jpegls_nobot.dcm", "Pixel padding has no meaning in colour pictures (PS3.3 C.7.5.1.1.2)"},
        {"vlut_04.dcm", "VOI LUT in place of a window"},
    };
    const auto found = remarks.find(fileName);
    return found == remarks.end() ? QString() : found->second;
}

}  // namespace cinedisc::fidelity
