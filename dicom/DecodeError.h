#pragma once

#include "dicom/Tag.h"

#include <cstdint>
#include <string>
#include <utility>

namespace cinedisc::dicom {

/// What is wrong with a file, as a value: it is never thrown.
struct DecodeError {
    enum class Kind {
        CannotRead,   ///< missing, not a regular file, or an error while reading
        NotDicom,     ///< the bytes are no DICOM data set
        NoPicture,    ///< a DICOM object without pixel data
        Unsupported,  ///< a legal encoding that this program does not decode
        Broken,       ///< the bytes contradict the header or themselves
        CutOff,       ///< the file ends before the data that it announces
        TooLarge,     ///< sizes beyond what the program is prepared to hold
    };

    Kind kind = Kind::Broken;
    std::string message;       ///< plain words that a clinician understands, one sentence, no final stop
    Tag tag{};                 ///< the element concerned, 0000,0000 when none
    std::uint64_t offset = 0;  ///< position in the file, bytes
    int frame = -1;            ///< frame counted from 0, -1 for the whole file
};

}  // namespace cinedisc::dicom
