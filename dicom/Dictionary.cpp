#include "dicom/Dictionary.h"

#include "dicom/ValueRepresentation.h"

#include <dcmtk/config/osconfig.h>
#include <dcmtk/dcmdata/dcdicent.h>
#include <dcmtk/dcmdata/dcdict.h>

namespace cinedisc::dicom {

namespace {

/// Read access to the library's dictionary, which is shared by all threads.
class Access {
  public:
    Access() : dictionary_(dcmDataDict.rdlock()) {}
    ~Access() { dcmDataDict.rdunlock(); }
    Access(const Access&) = delete;
    Access& operator=(const Access&) = delete;

    const DcmDictEntry* find(Tag tag, const std::string& creator) const {
        return dictionary_.findEntry(DcmTagKey(tag.group, tag.element),
                                     creator.empty() ? nullptr : creator.c_str());
    }

  private:
    const DcmDataDictionary& dictionary_;
};

}  // namespace

Dictionary::Entry Dictionary::find(Tag tag, const std::string& creator) const {
    const Access access;
    const DcmDictEntry* entry = access.find(tag, creator);
    if (!entry) return {};
    const char* name = entry->getVR().getVRName();
    const Vr letters = vr({name[0], name[0] ? name[1] : '\0', '\0'});
    return {entry->getTagName(), isKnownVr(letters) ? letters : usualVr(tag)};
}

}  // namespace cinedisc::dicom
