#include "dicom/codecs/CodecError.h"

namespace cinedisc::dicom::codecs {

DecodeError broken(const std::string& detail) {
    return {DecodeError::Kind::Broken, "The picture data are damaged (" + detail + ")"};
}

DecodeError cutOff() {
    return {DecodeError::Kind::CutOff,
            "The picture data are damaged: they are cut off before the picture's end"};
}

DecodeError unsupported(const std::string& name) {
    return {DecodeError::Kind::Unsupported,
            "The picture is stored in a way this viewer cannot read (" + name + ")"};
}

DecodeError tooLarge() { return {DecodeError::Kind::TooLarge, "The picture is too large to be shown"}; }

}  // namespace cinedisc::dicom::codecs
