#pragma once

#include "dicom/Tag.h"

#include <cstdint>
#include <string>
#include <utility>

namespace cinedisc::dicom {

/// What is wrong with a file, as a value: it is never thrown. It has no words for people: who shows it finds
/// them.
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

    /// What is known beyond the kind.
    enum class Reason {
        None,             ///< the kind says all
        Missing,          ///< there is no such file
        NotRegular,       ///< a folder, a device
        StoppedReading,   ///< the disc gives no more of a file that was opened
        Empty,            ///< a file of no bytes
        MediaDirectory,   ///< the directory of a disc
        IconOnly,         ///< no picture but an icon
        Compression,      ///< one that is not decoded; the detail names it
        Elsewhere,        ///< the pixels lie on a server (JPIP)
        SamplesPerPixel,  ///< neither 1 nor 3; the detail says how many
        Undescribed,      ///< rows, columns or the like are missing or make no sense
        NoSuchFrame,
        WrongSize,    ///< the frame has not the size that the header says
        Header,       ///< within the header
        Unpacking,    ///< of a deflated data set
        PictureData,  ///< within the bytes of a frame; the detail says how
        Frames,       ///< `completeFrames` of `announcedFrames` are there
        Decoder,      ///< a library did not come to an end with the frame, well or badly
        Memory,       ///< the program has not got enough
        Unknown,      ///< whatever the decoder stumbled over
    };

    Kind kind = Kind::Broken;
    Reason reason = Reason::None;
    std::string detail{};      ///< a name, number or few technical words, "" when the reason needs none
    Tag tag{};                 ///< the element concerned, 0000,0000 when none
    std::uint64_t offset = 0;  ///< position in the file, bytes
    int frame = -1;            ///< frame counted from 0, -1 for the whole file
    int completeFrames = 0;
    int announcedFrames = 0;
};

}  // namespace cinedisc::dicom
