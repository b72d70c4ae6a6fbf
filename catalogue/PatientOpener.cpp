#include "catalogue/PatientOpener.h"

#include "platform/Paths.h"

namespace cinedisc {

void PatientOpener::TreeView1_NodeClick(int node) {
    TreeControl& tree = disc_.TreeView1;
    const int selected = tree.selectedNode();
    const QString tag = selected ? tree.tag(selected) : QString();
    if (tag.isEmpty()) return;
    tree.putExpanded(node, false);
    disc_.position.CurrentFolder = Folder::NameSpace(findIgnoringCase(disc_.programFolder, {"Dicom", tag}));
    // The patient's folder is a disc's, whatever folder was opened in between.
    disc_.position.HasStudyFolders = true;
    disc_.showPatient(tree.text(selected));
    LoadPat();
    details_.SerDisplay(0, 0);
    disc_.FraTree.putVisible(false);
}

void PatientOpener::LoadPat() {
    trapErrors([this] {
        if (disc_.position.PatientsFolder.isSet() && disc_.position.CurrentFolder.isSet())
            openCurrentPatient();
    });
}

void PatientOpener::openCurrentPatient() {
    strip_.clear();
    try {
        probe_.chkImage();
        if (disc_.position.StillsMode) {
            openStills();
        } else {
            openRuns();
        }
    } catch (const RunTimeError&) {
        unloadPicture();
        throw;
    }
    strip_.ChkThumb();
    if (form_.thumb(0).FileName().isEmpty()) unloadPicture();
    loader_.LoadImage(0);
}

void PatientOpener::unloadPicture() {
    // The picture of the patient before must not stand under this one's name.
    form_.Timer4.putEnabled(false);
    form_.ezDicom.putFileName("");
}

void PatientOpener::openRuns() {
    const FolderItems studies = disc_.position.CurrentFolder.Items().subFolders();
    const FolderItems series = studies.Item(0).GetFolder().Items().subFolders();
    form_.File1.putPath(series.Item(0).Path());
    form_.File1.Refresh();
    strip_.initialFill(FitPreview::BeforeAndAfterLoad);
}

void PatientOpener::openStills() {
    // The panel that could stop the cine is hidden now.
    form_.Timer4.putEnabled(false);
    form_.sb1.putMax(disc_.position.CurrentFolder.Items().subFolders().Count() + 1);
    form_.sb1.putMax(stills_.seriesCount() + 1);
    form_.sb1.putValue((stills_.fillPatient() + 1).value());
}

}  // namespace cinedisc
