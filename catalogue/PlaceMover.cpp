#include "catalogue/PlaceMover.h"

#include "platform/Paths.h"
#include "viewer/WindowWords.h"

namespace cinedisc {

void PlaceMover::enterDisc(const Folder& firstPatient) {
    leave(MainView::Unloaded);
    position_.PatientsFolder = firstPatient.ParentFolder();
    position_.CurrentFolder = firstPatient;
    position_.HasStudyFolders = true;
}

void PlaceMover::enterFolder(const Folder& folder) {
    leave(MainView::Unloaded);
    position_.CurrentFolder = folder;
    position_.HasStudyFolders = false;
    position_.patient = DiscPosition::Patient::Unlisted;
    standOn(folder);
}

void PlaceMover::enterPatient(const Folder& patient, MainView mainView) {
    leave(mainView);
    position_.CurrentFolder = patient;
    position_.HasStudyFolders = true;
    position_.patient = DiscPosition::Patient::Unlisted;
    standOn(patient);
}

void PlaceMover::showPatient(const QString& name, const QString& path) {
    disc_.Label5.putCaption(name);
    disc_.Label13.putCaption(disc_.Label5.Caption());
    position_.patient = DiscPosition::Patient::Listed;
    tellNamedFolder(path);
}

void PlaceMover::showNobody() {
    disc_.showDesignNames();
    if (position_.patient == DiscPosition::Patient::Listed) {
        position_.patient = DiscPosition::Patient::Unlisted;
    }
    tellNamedFolder({});
}

void PlaceMover::moveAbove(const Folder& folder) {
    // Above the patient's own folder lie those of others: whoever is reached from there has no name.
    const QString path = folder.pathOrEmpty();
    if (path != position_.namedFolder && !isBelow(path, position_.namedFolder)) showNobody();
    disc_.showDesignSeries();
    position_.CurrentFolder = folder;
    position_.HasStudyFolders = false;
}

void PlaceMover::putStillsMode(bool stills) {
    position_.StillsMode = stills;
    disc_.Frame8.putVisible(stills);
    disc_.Frame9.putVisible(!stills);
}

void PlaceMover::listSeries(const QString& folder) {
    attempt([&] {
        form_.File1.putPath(folder);
        form_.File1.Refresh();
    });
    if (form_.File1.ListCount() > 0) return;
    form_.Timer4.putEnabled(false);
    form_.ezDicom.putFileName("");
    forgetImage();
}

void PlaceMover::leave(MainView mainView) {
    position_.CurrentFolder = {};
    position_.patient = DiscPosition::Patient::None;
    withdraw(mainView);
    showNobody();
}

void PlaceMover::withdraw(MainView mainView) {
    // With no folder and no files the strip has nothing to read when its scroll bar moves.
    const Folder current = std::exchange(position_.CurrentFolder, {});
    form_.File1.putPath("");
    form_.sb1.putValue(1);
    form_.Timer4.putEnabled(false);
    for (ViewerControl* preview : form_.thumb) {
        preview->putThumbIndex(-1);
        preview->putThumbStyle(0);
        preview->putTag("");
    }
    if (mainView == MainView::Unloaded) {
        form_.ezDicom.putFileName("");
        form_.Slider2.putValue(1);
    }
    forgetImage();
    disc_.Label1.putCaption("");
    position_.CurrentFolder = current;
    standOn(current);
}

void PlaceMover::standOn(const Folder& folder) {
    // One that cannot be listed (the disc is taken out just now, too many files) leaves the list empty.
    trapErrors([&] { form_.File1.putPath(folder.pathOrEmpty()); });
}

void PlaceMover::forgetImage() {
    form_.lblImg.putCaption(windowWords::anyImage());
    form_.lblFra.putCaption(windowWords::anyFrame());
    disc_.lblSeries.putCaption("");
}

void PlaceMover::tellNamedFolder(const QString& folder) {
    position_.namedFolder = folder;
    disc_.namedPatientView.putNamedPatientFolder(folder);
}

}  // namespace cinedisc
