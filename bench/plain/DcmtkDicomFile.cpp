// Takes the place of dicom/DicomFile.cpp in the plain twin of the window: frames are decoded by DCMTK.
#include "dicom/DicomFile.h"
#include "dicom/FileByteSource.h"
#include "dicom/FileHeader.h"
#include "dicom/OpenedFile.h"

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dcfcache.h>
#include <dcmtk/dcmdata/dctk.h>
#include <dcmtk/dcmjpeg/djdecode.h>

#include <mutex>

namespace cinedisc::dicom {

namespace {

class DcmtkDicomFile : public OpenedFile {
  public:
    DcmtkDicomFile(FileHeader header, const std::string& path) : OpenedFile(std::move(header)) {
        static const bool registered = (DJDecoderRegistration::registerCodecs(), true);
        (void)registered;
        // Values longer than 4 KB stay in the file until they are asked for.
        (void)file_.loadFile(path.c_str());
    }

    Result<FrameBytes> readFrame(int) const override { return FrameBytes(); }

    Result<Frame> decodeRead(int number, const FrameBytes&) const override {
        const std::lock_guard lock(mutex_);
        const auto& format = pixelFormat();
        Frame frame;
        frame.rows = format.rows;
        frame.columns = format.columns;
        DcmElement* element = nullptr;
        if (file_.getDataset()->findAndGetElement(DCM_PixelData, element).bad()) return refused(number);
        if (number != nextFrame_) fragment_ = 0;
        OFString colours;
        const auto decodeInto = [&](auto samples) {
            samples.resize(frame.pixelCount());
            const auto bytes = static_cast<Uint32>(samples.size() * sizeof(samples[0]));
            const auto done = static_cast<DcmPixelData*>(element)->getUncompressedFrame(
                file_.getDataset(), static_cast<Uint32>(number), fragment_, samples.data(), bytes, colours,
                &cache_);
            frame.samples = std::move(samples);
            return done.good();
        };
        const bool good = format.bitsAllocated > 8 ? decodeInto(std::vector<std::uint16_t>())
                                                   : decodeInto(std::vector<std::uint8_t>());
        nextFrame_ = number + 1;
        if (!good) return refused(number);
        return frame;
    }

  private:
    static DecodeError refused(int number) {
        DecodeError error;
        error.reason = DecodeError::Reason::Unknown;
        error.frame = number;
        return error;
    }

    mutable std::mutex mutex_;
    mutable DcmFileFormat file_;
    mutable DcmFileCache cache_;
    mutable Uint32 fragment_ = 0;  ///< where the next frame begins
    mutable int nextFrame_ = 0;
};

}  // namespace

Result<std::shared_ptr<const DicomFile>> DicomFile::open(const std::string& path) {
    auto source = FileByteSource::open(path);
    if (!source) return source.error();
    auto header = readFileHeader(std::move(source.value()));
    if (!header) return header.error();
    return std::shared_ptr<const DicomFile>(
        std::make_shared<DcmtkDicomFile>(std::move(header.value()), path));
}

Result<std::shared_ptr<const DicomFile>> DicomFile::open(std::shared_ptr<const ByteSource> source) {
    auto header = readFileHeader(std::move(source));
    if (!header) return header.error();
    return std::shared_ptr<const DicomFile>(std::make_shared<OpenedFile>(std::move(header.value())));
}

}  // namespace cinedisc::dicom
