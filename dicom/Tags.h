#pragma once

#include "dicom/Tag.h"

#include <cstddef>

/// The elements that the program itself reads, by their keywords (PS3.6).
namespace cinedisc::dicom::tags {

constexpr Tag MediaStorageSOPClassUID{0x0002, 0x0002};
constexpr Tag TransferSyntaxUID{0x0002, 0x0010};
constexpr Tag SpecificCharacterSet{0x0008, 0x0005};
constexpr Tag SOPClassUID{0x0008, 0x0016};
constexpr Tag StudyDate{0x0008, 0x0020};
constexpr Tag SeriesDate{0x0008, 0x0021};
constexpr Tag AcquisitionDate{0x0008, 0x0022};
constexpr Tag ContentDate{0x0008, 0x0023};
constexpr Tag AcquisitionDateTime{0x0008, 0x002A};
constexpr Tag StudyTime{0x0008, 0x0030};
constexpr Tag SeriesTime{0x0008, 0x0031};
constexpr Tag AcquisitionTime{0x0008, 0x0032};
constexpr Tag ContentTime{0x0008, 0x0033};
constexpr Tag Modality{0x0008, 0x0060};
constexpr Tag SeriesDescription{0x0008, 0x103E};
constexpr Tag RecommendedDisplayFrameRate{0x0008, 0x2144};
constexpr Tag PatientName{0x0010, 0x0010};
constexpr Tag PatientID{0x0010, 0x0020};
constexpr Tag PatientBirthDate{0x0010, 0x0030};
constexpr Tag CineRate{0x0018, 0x0040};
constexpr Tag FrameTime{0x0018, 0x1063};
constexpr Tag FrameTimeVector{0x0018, 0x1065};
constexpr Tag ImagerPixelSpacing{0x0018, 0x1164};
constexpr Tag PositionerPrimaryAngle{0x0018, 0x1510};
constexpr Tag PositionerSecondaryAngle{0x0018, 0x1511};
constexpr Tag ShutterShape{0x0018, 0x1600};
constexpr Tag ShutterLeftVerticalEdge{0x0018, 0x1602};
constexpr Tag ShutterRightVerticalEdge{0x0018, 0x1604};
constexpr Tag ShutterUpperHorizontalEdge{0x0018, 0x1606};
constexpr Tag ShutterLowerHorizontalEdge{0x0018, 0x1608};
constexpr Tag CenterOfCircularShutter{0x0018, 0x1610};
constexpr Tag RadiusOfCircularShutter{0x0018, 0x1612};
constexpr Tag VerticesOfThePolygonalShutter{0x0018, 0x1620};
constexpr Tag ShutterPresentationValue{0x0018, 0x1622};
constexpr Tag ShutterOverlayGroup{0x0018, 0x1623};
constexpr Tag NominalScannedPixelSpacing{0x0018, 0x2010};
constexpr Tag FrameDisplayShutterSequence{0x0018, 0x9472};
constexpr Tag SeriesNumber{0x0020, 0x0011};
constexpr Tag InstanceNumber{0x0020, 0x0013};
constexpr Tag SamplesPerPixel{0x0028, 0x0002};
constexpr Tag PhotometricInterpretation{0x0028, 0x0004};
constexpr Tag PlanarConfiguration{0x0028, 0x0006};
constexpr Tag NumberOfFrames{0x0028, 0x0008};
constexpr Tag Rows{0x0028, 0x0010};
constexpr Tag Columns{0x0028, 0x0011};
constexpr Tag PixelSpacing{0x0028, 0x0030};
constexpr Tag PixelAspectRatio{0x0028, 0x0034};
constexpr Tag BitsAllocated{0x0028, 0x0100};
constexpr Tag BitsStored{0x0028, 0x0101};
constexpr Tag HighBit{0x0028, 0x0102};
constexpr Tag PixelRepresentation{0x0028, 0x0103};
constexpr Tag PixelPaddingValue{0x0028, 0x0120};
constexpr Tag PixelPaddingRangeLimit{0x0028, 0x0121};
constexpr Tag WindowCenter{0x0028, 0x1050};
constexpr Tag WindowWidth{0x0028, 0x1051};
constexpr Tag RescaleIntercept{0x0028, 0x1052};
constexpr Tag RescaleSlope{0x0028, 0x1053};
constexpr Tag VOILUTFunction{0x0028, 0x1056};
constexpr Tag RedPaletteDescriptor{0x0028, 0x1101};
constexpr Tag RedPaletteData{0x0028, 0x1201};
constexpr Tag SegmentedRedPaletteData{0x0028, 0x1221};
constexpr Tag LossyImageCompression{0x0028, 0x2110};
constexpr Tag LossyImageCompressionRatio{0x0028, 0x2112};
constexpr Tag ModalityLUTSequence{0x0028, 0x3000};
constexpr Tag LUTDescriptor{0x0028, 0x3002};
constexpr Tag LUTData{0x0028, 0x3006};
constexpr Tag VOILUTSequence{0x0028, 0x3010};
constexpr Tag RepresentativeFrameNumber{0x0028, 0x6010};
constexpr Tag PixelMeasuresSequence{0x0028, 0x9110};
constexpr Tag FrameVOILUTSequence{0x0028, 0x9132};
constexpr Tag PixelValueTransformationSequence{0x0028, 0x9145};
constexpr Tag FramePixelDataPropertiesSequence{0x0028, 0x9443};
constexpr Tag IconImageSequence{0x0088, 0x0200};
constexpr Tag PresentationLUTShape{0x2050, 0x0020};
constexpr Tag SharedFunctionalGroups{0x5200, 0x9229};
constexpr Tag PerFrameFunctionalGroups{0x5200, 0x9230};
constexpr Tag ExtendedOffsetTable{0x7FE0, 0x0001};
constexpr Tag FloatPixelData{0x7FE0, 0x0008};
constexpr Tag DoubleFloatPixelData{0x7FE0, 0x0009};
constexpr Tag PixelData{0x7FE0, 0x0010};
constexpr Tag Item{0xFFFE, 0xE000};
constexpr Tag ItemDelimitation{0xFFFE, 0xE00D};
constexpr Tag SequenceDelimitation{0xFFFE, 0xE0DD};

/// The element of a palette's colour, 0 to 2 for red, green and blue: their tags follow each other.
constexpr Tag forColour(Tag red, std::size_t colour) {
    return {red.group, static_cast<std::uint16_t>(red.element + colour)};
}

/// Overlay planes use the even groups 6000 to 601E (PS3.3 C.9.2).
constexpr bool isOverlayGroup(int group) { return group >= 0x6000 && group <= 0x601E && group % 2 == 0; }

constexpr bool isPixelData(Tag tag) {
    return tag == PixelData || tag == FloatPixelData || tag == DoubleFloatPixelData;
}

}  // namespace cinedisc::dicom::tags
