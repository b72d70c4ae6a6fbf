#pragma once

#include "dicom/DataSet.h"
#include "dicom/Tag.h"

namespace cinedisc::discmaker {

/// A data element that the disc maker writes, with the value representation that the standard gives it
/// (PS3.6).
struct Attribute {
    dicom::Tag tag;
    dicom::Vr vr;
};

namespace attribute {

using dicom::vr;

inline constexpr Attribute specificCharacterSet{{0x0008, 0x0005}, vr("CS")};
inline constexpr Attribute imageType{{0x0008, 0x0008}, vr("CS")};
inline constexpr Attribute sopClassUid{{0x0008, 0x0016}, vr("UI")};
inline constexpr Attribute sopInstanceUid{{0x0008, 0x0018}, vr("UI")};
inline constexpr Attribute studyDate{{0x0008, 0x0020}, vr("DA")};
inline constexpr Attribute seriesDate{{0x0008, 0x0021}, vr("DA")};
inline constexpr Attribute contentDate{{0x0008, 0x0023}, vr("DA")};
inline constexpr Attribute studyTime{{0x0008, 0x0030}, vr("TM")};
inline constexpr Attribute seriesTime{{0x0008, 0x0031}, vr("TM")};
inline constexpr Attribute contentTime{{0x0008, 0x0033}, vr("TM")};
inline constexpr Attribute accessionNumber{{0x0008, 0x0050}, vr("SH")};
inline constexpr Attribute modality{{0x0008, 0x0060}, vr("CS")};
inline constexpr Attribute manufacturer{{0x0008, 0x0070}, vr("LO")};
inline constexpr Attribute institutionName{{0x0008, 0x0080}, vr("LO")};
inline constexpr Attribute referringPhysicianName{{0x0008, 0x0090}, vr("PN")};
inline constexpr Attribute studyDescription{{0x0008, 0x1030}, vr("LO")};
inline constexpr Attribute seriesDescription{{0x0008, 0x103E}, vr("LO")};
inline constexpr Attribute recommendedDisplayFrameRate{{0x0008, 0x2144}, vr("IS")};
inline constexpr Attribute patientName{{0x0010, 0x0010}, vr("PN")};
inline constexpr Attribute patientId{{0x0010, 0x0020}, vr("LO")};
inline constexpr Attribute patientBirthDate{{0x0010, 0x0030}, vr("DA")};
inline constexpr Attribute patientSex{{0x0010, 0x0040}, vr("CS")};
inline constexpr Attribute contrastBolusAgent{{0x0018, 0x0010}, vr("LO")};
inline constexpr Attribute bodyPartExamined{{0x0018, 0x0015}, vr("CS")};
inline constexpr Attribute cineRate{{0x0018, 0x0040}, vr("IS")};
inline constexpr Attribute kvp{{0x0018, 0x0060}, vr("DS")};
inline constexpr Attribute frameTime{{0x0018, 0x1063}, vr("DS")};
inline constexpr Attribute distanceSourceToDetector{{0x0018, 0x1110}, vr("DS")};
inline constexpr Attribute distanceSourceToPatient{{0x0018, 0x1111}, vr("DS")};
inline constexpr Attribute exposureTime{{0x0018, 0x1150}, vr("IS")};
inline constexpr Attribute tubeCurrent{{0x0018, 0x1151}, vr("IS")};
inline constexpr Attribute radiationSetting{{0x0018, 0x1155}, vr("CS")};
inline constexpr Attribute imagerPixelSpacing{{0x0018, 0x1164}, vr("DS")};
inline constexpr Attribute positionerMotion{{0x0018, 0x1500}, vr("CS")};
inline constexpr Attribute positionerPrimaryAngle{{0x0018, 0x1510}, vr("DS")};
inline constexpr Attribute positionerSecondaryAngle{{0x0018, 0x1511}, vr("DS")};
inline constexpr Attribute shutterShape{{0x0018, 0x1600}, vr("CS")};
inline constexpr Attribute shutterLeftVerticalEdge{{0x0018, 0x1602}, vr("IS")};
inline constexpr Attribute shutterRightVerticalEdge{{0x0018, 0x1604}, vr("IS")};
inline constexpr Attribute shutterUpperHorizontalEdge{{0x0018, 0x1606}, vr("IS")};
inline constexpr Attribute shutterLowerHorizontalEdge{{0x0018, 0x1608}, vr("IS")};
inline constexpr Attribute centerOfCircularShutter{{0x0018, 0x1610}, vr("IS")};
inline constexpr Attribute radiusOfCircularShutter{{0x0018, 0x1612}, vr("IS")};
inline constexpr Attribute studyInstanceUid{{0x0020, 0x000D}, vr("UI")};
inline constexpr Attribute seriesInstanceUid{{0x0020, 0x000E}, vr("UI")};
inline constexpr Attribute studyId{{0x0020, 0x0010}, vr("SH")};
inline constexpr Attribute seriesNumber{{0x0020, 0x0011}, vr("IS")};
inline constexpr Attribute instanceNumber{{0x0020, 0x0013}, vr("IS")};
inline constexpr Attribute imageComments{{0x0020, 0x4000}, vr("LT")};
inline constexpr Attribute samplesPerPixel{{0x0028, 0x0002}, vr("US")};
inline constexpr Attribute photometricInterpretation{{0x0028, 0x0004}, vr("CS")};
inline constexpr Attribute numberOfFrames{{0x0028, 0x0008}, vr("IS")};
inline constexpr Attribute frameIncrementPointer{{0x0028, 0x0009}, vr("AT")};
inline constexpr Attribute rows{{0x0028, 0x0010}, vr("US")};
inline constexpr Attribute columns{{0x0028, 0x0011}, vr("US")};
inline constexpr Attribute bitsAllocated{{0x0028, 0x0100}, vr("US")};
inline constexpr Attribute bitsStored{{0x0028, 0x0101}, vr("US")};
inline constexpr Attribute highBit{{0x0028, 0x0102}, vr("US")};
inline constexpr Attribute pixelRepresentation{{0x0028, 0x0103}, vr("US")};
inline constexpr Attribute burnedInAnnotation{{0x0028, 0x0301}, vr("CS")};
inline constexpr Attribute pixelIntensityRelationship{{0x0028, 0x1040}, vr("CS")};
inline constexpr Attribute windowCenter{{0x0028, 0x1050}, vr("DS")};
inline constexpr Attribute windowWidth{{0x0028, 0x1051}, vr("DS")};
inline constexpr Attribute lossyImageCompression{{0x0028, 0x2110}, vr("CS")};

}  // namespace attribute

}  // namespace cinedisc::discmaker
