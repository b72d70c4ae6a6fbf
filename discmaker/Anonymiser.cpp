#include "discmaker/Anonymiser.h"

#include "dicom/DicomFile.h"
#include "discmaker/ConfidentialityProfile.h"
#include "discmaker/DiscError.h"
#include "discmaker/LosslessFile.h"

#include <QRegularExpression>
#include <QString>
#include <QStringList>
#include <QUuid>
#include <dcmtk/dcmdata/dctk.h>
#include <dcmtk/oflog/oflog.h>

#include <algorithm>
#include <set>

namespace cinedisc::discmaker {

namespace fs = std::filesystem;

namespace {

constexpr const char* standardRoot = "1.2.840.10008.";

std::string valueOf(DcmElement& element) {
    OFString value;
    return element.getOFStringArray(value).good() ? std::string(value.c_str(), value.size()) : std::string();
}

bool isText(DcmEVR representation) {
    switch (representation) {
        case EVR_AE:
        case EVR_CS:
        case EVR_LO:
        case EVR_LT:
        case EVR_SH:
        case EVR_ST:
        case EVR_UC:
        case EVR_UR:
        case EVR_UT:
            return true;
        default:
            return false;
    }
}

/// Unknown representations may hide anything.
bool isOpaque(DcmEVR representation) { return representation == EVR_UN || representation == EVR_UNKNOWN; }

bool namesPerson(const DcmTagKey& tag) {
    for (const auto& known : {DCM_PatientID, DCM_RETIRED_OtherPatientIDs, DCM_AccessionNumber, DCM_StudyID,
                              DCM_AdmissionID, DCM_InstitutionName, DCM_StationName})
        if (tag == known) return true;
    return false;
}

/// What tells who the patient is, to be found again in texts that should not hold it.
class Identity {
  public:
    void collect(DcmItem& item) {
        for (unsigned long i = 0; i < item.card(); ++i) {
            auto* element = item.getElement(i);
            const auto representation = element->ident();
            if (auto* sequence = dynamic_cast<DcmSequenceOfItems*>(element);
                sequence && representation == EVR_SQ) {
                for (unsigned long n = 0; n < sequence->card(); ++n) collect(*sequence->getItem(n));
            } else if (representation == EVR_PN) {
                for (const auto& part : QString::fromLatin1(valueOf(*element).c_str())
                                            .split(QRegularExpression("[\\^= \\\\,]"), Qt::SkipEmptyParts))
                    add(part);
            } else if (representation == EVR_DA || representation == EVR_DT) {
                add(QString::fromLatin1(valueOf(*element).c_str()).left(8));
            } else if (representation == EVR_UI || namesPerson(element->getTag())) {
                for (const auto& part : QString::fromLatin1(valueOf(*element).c_str()).split('\\'))
                    if (!part.startsWith(standardRoot)) add(part);
            }
        }
    }
    bool isIn(const std::string& text) const {
        const auto letters = QString::fromLatin1(text.c_str());
        return std::any_of(words_.begin(), words_.end(),
                           [&](const QString& word) { return letters.contains(word, Qt::CaseInsensitive); });
    }

  private:
    void add(const QString& text) {
        constexpr qsizetype leastLetters = 4;  // shorter ones are in many texts by chance
        const auto word = text.trimmed();
        if (word.size() >= leastLetters) words_.insert(word);
    }

    std::set<QString> words_;
};

class Cleaning {
  public:
    Cleaning(const Identity& identity, const std::string& key) : identity_(identity), key_(key) {}

    void clean(DcmItem& item) const {
        for (unsigned long i = item.card(); i-- > 0;) {
            auto* element = item.getElement(i);
            if (!keeps(*element)) delete item.remove(i);
        }
    }

  private:
    bool keeps(DcmElement& element) const {
        const auto representation = element.ident();
        switch (profileAction(element.getTag())) {
            case ProfileAction::Remove:
                return false;
            case ProfileAction::Empty:
                element.clear();
                return true;
            case ProfileAction::Dummy:
                putDummy(element);
                return true;
            case ProfileAction::NewUid:
            case ProfileAction::Keep:
                break;
        }
        if (representation == EVR_SQ) {
            auto& sequence = static_cast<DcmSequenceOfItems&>(element);
            for (unsigned long i = 0; i < sequence.card(); ++i) clean(*sequence.getItem(i));
            return true;
        }
        if (representation == EVR_UI) {
            replaceIdentifiers(element);
            return true;
        }
        if (representation == EVR_PN || representation == EVR_DA || representation == EVR_TM ||
            representation == EVR_DT) {
            putDummy(element);
            return true;
        }
        return !isOpaque(representation) && !(isText(representation) && identity_.isIn(valueOf(element)));
    }

    static void putDummy(DcmElement& element) {
        const auto representation = element.ident();
        if (representation == EVR_DA) {
            element.putString("19110101");
        } else if (representation == EVR_TM) {
            element.putString("000000");
        } else if (representation == EVR_DT) {
            element.putString("19110101000000");
        } else if (representation == EVR_PN || isText(representation)) {
            element.putString("ANONYMOUS");
        } else {
            element.clear();
        }
    }

    void replaceIdentifiers(DcmElement& element) const {
        QStringList uids;
        for (const auto& uid : QString::fromLatin1(valueOf(element).c_str()).split('\\')) {
            const auto plain = uid.trimmed();
            uids << (plain.isEmpty() || plain.startsWith(standardRoot)
                         ? plain
                         : QString::fromStdString(uidFor(key_ + plain.toStdString())));
        }
        element.putString(uids.join('\\').toLatin1().constData());
    }

    const Identity& identity_;
    const std::string& key_;
};

void putAnswer(DcmItem& data, const DcmTagKey& tag, DcmEVR representation, const std::string& text) {
    const auto outcome = data.putAndInsertString(DcmTag(tag, representation), text.c_str());
    if (outcome.bad()) throw DiscError(std::string("cannot anonymise: ") + outcome.text());
}

/// PS3.15 section E.3 and PS3.3 section C.7.1.1: who the patient is now, and what was done.
void putWhatWasDone(DcmItem& data, std::size_t patient) {
    const auto number = std::to_string(patient);
    const std::string profile = "Basic Application Confidentiality Profile";
    putAnswer(data, DCM_PatientName, EVR_PN, "Case " + number);
    putAnswer(data, DCM_PatientID, EVR_LO, "C" + number);
    putAnswer(data, DCM_PatientIdentityRemoved, EVR_CS, "YES");
    putAnswer(data, DCM_DeidentificationMethod, EVR_LO, profile);
    putAnswer(data, DCM_LongitudinalTemporalInformationModified, EVR_CS, "REMOVED");
    DcmItem* code = nullptr;
    delete data.remove(DCM_DeidentificationMethodCodeSequence);
    if (data.findOrCreateSequenceItem(DCM_DeidentificationMethodCodeSequence, code).bad())
        throw DiscError("cannot anonymise");
    putAnswer(*code, DCM_CodeValue, EVR_SH, "113100");
    putAnswer(*code, DCM_CodingSchemeDesignator, EVR_SH, "DCM");
    putAnswer(*code, DCM_CodeMeaning, EVR_LO, profile);
}

}  // namespace

Anonymiser::Anonymiser() : key_(QUuid::createUuid().toString().toStdString()) {
    if (!dcmDataDict.isDictionaryLoaded())
        throw DiscError("--anonymise needs the data dictionary of DCMTK, which is not installed");
    // What it says about a file is told with the file's name.
    OFLog::configure(OFLogger::OFF_LOG_LEVEL);
}

std::string Anonymiser::rewrite(const fs::path& path, std::size_t patient) const {
    DcmFileFormat file;
    auto outcome = file.loadFile(path.c_str());
    const auto syntax = file.getDataset()->getOriginalXfer();
    auto& data = *file.getDataset();
    // A syntax that DCMTK does not know is taken for another one.
    OFString named;
    file.getMetaInfo()->findAndGetOFString(DCM_TransferSyntaxUID, named);
    const bool isKnown = named.empty() || named == DcmXfer(syntax).getXferID();
    if (outcome.good() && !(isKnown && data.canWriteXfer(syntax, syntax))) outcome = EC_UnsupportedEncoding;
    if (outcome.bad()) return std::string("it cannot be anonymised: ") + outcome.text();
    Identity identity;
    identity.collect(data);
    Cleaning(identity, key_).clean(data);
    putWhatWasDone(data, patient);

    // A file of its own: nothing of the old one's preamble and meta information stays.
    auto clean = path;
    clean += ".new";
    DcmFileFormat result(file.getAndRemoveDataset(), OFFalse);
    outcome = result.saveFile(clean.c_str(), syntax, EET_ExplicitLength, EGL_withoutGL, EPD_withoutPadding);
    if (outcome.bad()) throw DiscError("cannot write " + clean.string() + ": " + outcome.text());
    fs::rename(clean, path);
    return {};
}

bool mayShowNames(const fs::path& path) {
    const auto opened = dicom::DicomFile::open(path.string());
    if (!opened) return true;
    const auto text = [&](const DcmTagKey& tag) {
        return opened.value()->header().string({tag.getGroup(), tag.getElement()});
    };
    const auto says = text(DCM_BurnedInAnnotation);
    if (!says.empty()) return says != "NO";
    constexpr const char* secondaryCapture = "1.2.840.10008.5.1.4.1.1.7";
    return text(DCM_Modality) == "US" || text(DCM_Modality) == "IVUS" || !text(DCM_ConversionType).empty() ||
           text(DCM_SOPClassUID).starts_with(secondaryCapture);
}

}  // namespace cinedisc::discmaker
