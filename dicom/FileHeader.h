#pragma once

#include "dicom/ByteSource.h"
#include "dicom/DataSet.h"
#include "dicom/PixelElement.h"
#include "dicom/Result.h"
#include "dicom/TransferSyntax.h"

#include <memory>
#include <optional>
#include <string>

namespace cinedisc::dicom {

/// The header of a file and where its pixels are.
struct FileHeader {
    DataSet elements;                        ///< file meta information first
    std::string syntaxUid;                   ///< as the file says, or the one found where it says none
    const TransferSyntax* syntax = nullptr;  ///< null when the UID is not known
    Encoding encoding;                       ///< that the data set really has
    std::optional<PixelElement> pixels;
    bool beginsAsProgram = false;            ///< the preamble is that of a program or script
    std::optional<DecodeError> brokenOff;    ///< why the header ends early
    std::shared_ptr<const ByteSource> body;  ///< what offsets refer to: the file, or the inflated data set

    bool hasBigEndianPixels() const {
        return encoding.order == ByteOrder::Big ||
               (syntax && syntax->bigEndianPixels && !encoding.explicitVr);
    }
};

/// Reads the header of a file, with or without preamble and meta information, in whatever encoding it shows.
/// NotDicom when the bytes are no data set; all other faults are told in the header itself.
Result<FileHeader> readFileHeader(std::shared_ptr<const ByteSource> source);

}  // namespace cinedisc::dicom
