#pragma once

#include <QImage>
#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dctk.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cinedisc::fidelity {

/// The bytes of OW or OB pixels; null without any.
const Uint8* pixelBytes(DcmElement& element);

/// Values of a data set as DCMTK reads them: what the project's own parser says does not count here.
class HeaderReader {
  public:
    explicit HeaderReader(DcmItem& item) : item_(&item) {}

    bool has(const DcmTagKey& tag) const { return item_->tagExists(tag); }
    /// All values, parted by backslashes.
    std::string text(const DcmTagKey& tag) const;
    /// All values of a numeric element; empty when it is not there.
    std::vector<double> numbers(const DcmTagKey& tag) const;
    double number(const DcmTagKey& tag, double otherwise) const;
    int integer(const DcmTagKey& tag, int otherwise) const;
    /// Words of 16 bits, whatever the element's value representation.
    std::vector<Uint16> words(const DcmTagKey& tag) const;
    /// An item of a sequence, counted from 0; empty when it is not there.
    std::optional<HeaderReader> item(const DcmTagKey& sequence, int index = 0) const;
    /// Where a functional group macro of a frame stands: its own item, the shared one, or the header itself.
    HeaderReader macro(const DcmTagKey& sequence, int frame) const;

  private:
    DcmItem* item_;
};

/// A sample file read and decoded without anything of the project: parsed by DCMTK, decoded by DCMTK's codecs
/// or, for JPEG 2000, by OpenJPEG.
class ReferenceFile {
  public:
    explicit ReferenceFile(const std::string& path);

    HeaderReader header() { return HeaderReader(*file_.getDataset()); }
    std::string syntaxUid() const { return syntaxUid_; }
    /// As many as the pixels suffice for; 0 without any.
    int frames();

    /// One frame, counted from 0, as a data set of its own with native pixels; null when it cannot be
    /// decoded.
    std::unique_ptr<DcmDataset> nativeFrame(int frame);

  private:
    DcmFileFormat file_;
    bool isDecoded_ = false;
    std::string syntaxUid_;
};

/// The displayed picture of a frame, counted from 0, computed pixel by pixel with the standard's formulas;
/// null when the frame cannot be decoded.
QImage plainPicture(ReferenceFile& file, int frame);
/// The same as DCMTK's own rendering shows it with the window that the file asks for; without one, over the
/// full stored range for 8 bits and the values of the frame otherwise. Null when DCMTK cannot render it.
QImage dcmtkPicture(ReferenceFile& file, int frame);

}  // namespace cinedisc::fidelity
