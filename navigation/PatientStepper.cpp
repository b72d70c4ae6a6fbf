#include "navigation/PatientStepper.h"

#include "catalogue/CatalogueLoader.h"

namespace cinedisc {

namespace {

/// The catalogue position of which this is the folder's name, as the tree's tags are written; nothing for any
/// other name.
std::optional<Int16> cataloguePosition(const QString& title) {
    bool isNumber = false;
    const short number = title.mid(QLatin1String("Patient").size()).toShort(&isNumber);
    if (!isNumber || number < 0) return std::nullopt;
    const bool isTag = CatalogueLoader::tagOf(number).compare(title, Qt::CaseInsensitive) == 0;
    return isTag ? std::optional<Int16>(number) : std::nullopt;
}

}  // namespace

void PatientStepper::step(Direction direction) {
    trapErrors([&] {
        const DiscPosition& position = place_.position();
        if (!position.PatientsFolder.isSet()) return;
        const FolderItems patients = position.PatientsFolder.Items().subFolders();
        const QString title = position.CurrentFolder.Title();
        Int16 current = 0;
        while (current < patients.Count() && patients.Item(current.value()).GetFolder().Title() != title)
            ++current;
        if (current == patients.Count()) throw RunTimeError::objectNotSet();
        const Folder target =
            patients.Item(wrappedStep(current.value(), patients.Count(), direction)).GetFolder();
        if (!target.isSet()) throw RunTimeError::objectNotSet();
        place_.enterPatient(target);
        showNames(target);
        opener_.openCurrentPatient();
    });
}

void PatientStepper::showNames(const Folder& patient) {
    try {
        const auto number = cataloguePosition(patient.Title());
        if (number) details_.PatDisplay(*number, patient.pathOrEmpty());
        if (place_.position().patient == DiscPosition::Patient::Listed) details_.SerDisplay(0, 0);
    } catch (const RunTimeError&) {
        place_.showNobody();
    }
}

}  // namespace cinedisc
