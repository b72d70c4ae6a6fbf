#include "navigation/PatientStepper.h"

#include <QRegularExpression>

namespace cinedisc {

namespace {

/// Position in the catalogue: the number in the folder's name, for a disc may lack a folder; otherwise the
/// folder's own position.
Int16 cataloguePosition(const Folder& patient, int folderPosition) {
    static const QRegularExpression numbered("^patient([0-9]+)$", QRegularExpression::CaseInsensitiveOption);
    bool isNumber = false;
    const int number = numbered.match(patient.Title()).captured(1).toInt(&isNumber);
    return isNumber ? number : folderPosition;
}

}  // namespace

void PatientStepper::step(Direction direction) {
    trapErrors([&] {
        DiscPosition& position = disc_.position;
        if (!position.PatientsFolder.isSet()) return;
        const FolderItems patients = position.PatientsFolder.Items().subFolders();
        const QString title = position.CurrentFolder.Title();
        Int16 current = 0;
        while (current < patients.Count() && patients.Item(current.value()).GetFolder().Title() != title)
            ++current;
        if (current == patients.Count()) throw RunTimeError::objectNotSet();
        const int target = wrappedStep(current.value(), patients.Count(), direction);
        position.CurrentFolder = patients.Item(target).GetFolder();
        position.HasStudyFolders = true;
        if (details_.PatDisplay(cataloguePosition(position.CurrentFolder, target)) ==
            DetailPanels::Patient::Shown) {
            details_.SerDisplay(0, 0);
        } else {
            // A folder that the catalogue does not list: the names of the patient before must not stay over
            // its pictures.
            disc_.resetNames();
        }
        opener_.openCurrentPatient();
    });
}

}  // namespace cinedisc
