#include "catalogue/PatientOpener.h"

#include "platform/Paths.h"

namespace cinedisc {

void PatientOpener::TreeView1_NodeClick(int node) {
    TreeControl& tree = disc_.TreeView1;
    const int selected = tree.selectedNode();
    const QString tag = selected ? tree.tag(selected) : QString();
    if (tag.isEmpty()) return;
    tree.putExpanded(node, false);
    const QString path = findIgnoringCase(disc_.programFolder, {"Dicom", tag});
    const Folder patient = Folder::NameSpace(path);
    // A patient whose folder is missing leaves the picture that is shown; the view warns whose it is not.
    place_.enterPatient(patient,
                        patient.isSet() ? PlaceMover::MainView::Unloaded : PlaceMover::MainView::Kept);
    place_.showPatient(tree.text(selected), path);
    LoadPat();
    details_.SerDisplay(0, 0);
    // Stills may have opened at a later series.
    if (series_.isInForce() && !form_.thumb(0).FileName().isEmpty()) series_.showName();
    disc_.FraTree.putVisible(false);
}

void PatientOpener::LoadPat() {
    trapErrors([this] {
        const DiscPosition& position = place_.position();
        if (position.PatientsFolder.isSet() && position.CurrentFolder.isSet()) openCurrentPatient();
    });
}

void PatientOpener::openCurrentPatient() {
    place_.open([this] {
        strip_.clear();
        probe_.chkImage();
        if (place_.position().StillsMode) {
            openStills();
        } else {
            openRuns();
        }
        strip_.ChkThumb();
        loader_.LoadImage(0);
    });
}

void PatientOpener::openRuns() {
    form_.File1.putPath(ModeProbe::firstSeries(place_.position().CurrentFolder));
    form_.File1.Refresh();
    strip_.initialFill(FitPreview::BeforeAndAfterLoad);
}

void PatientOpener::openStills() {
    form_.sb1.putMax(stills_.seriesCount() + 1);
    form_.sb1.putValue((stills_.fillPatient() + 1).value());
}

}  // namespace cinedisc
