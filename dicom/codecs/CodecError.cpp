#include "dicom/codecs/CodecError.h"

namespace cinedisc::dicom::codecs {

DecodeError broken(const std::string& detail) {
    return {DecodeError::Kind::Broken, DecodeError::Reason::PictureData, detail};
}

DecodeError cutOff() { return {DecodeError::Kind::CutOff, DecodeError::Reason::PictureData}; }

DecodeError unsupported(const std::string& name) {
    return {DecodeError::Kind::Unsupported, DecodeError::Reason::PictureData, name};
}

DecodeError tooLarge() { return {DecodeError::Kind::TooLarge}; }

}  // namespace cinedisc::dicom::codecs
