#include "catalogue/DiscOpener.h"

#include "platform/Paths.h"

namespace cinedisc {

void DiscOpener::Open_Click() {
    trapErrors([this] {
        if (!catalogue_.exists()) {
            if (disc_.dialogs.askYesNo(
                    "Patient Lists Not Available On CD,Do You Want to Select Images From CD")) {
                mnuOpen_Click();
            }
            return;
        }
        if (probeDisc() == Outcome::GoOn) catalogueLoader_.LoadCatalogue();
    });
}

DiscOpener::Outcome DiscOpener::probeDisc() {
    const Folder patient = Folder::NameSpace(findIgnoringCase(disc_.programFolder, {"Dicom", "Patient000"}));
    if (!patient.isSet()) return Outcome::GoOn;
    const Folder study = patient.Items().Item(0).GetFolder();
    const Folder series = study.Items().Item(0).GetFolder();
    if (!form_.File1.moveTo(series.Items().Item().Path())) return Outcome::NothingThere;
    probe_.probeFirstFile();
    disc_.position.PatientsFolder = patient.ParentFolder();
    disc_.position.CurrentFolder = patient;
    disc_.position.HasStudyFolders = true;
    backToFirstOpen();
    if (disc_.position.StillsMode) {
        for (const FolderItem& studyItem : patient.Items().subFolders()) {
            for (const FolderItem& seriesItem : studyItem.GetFolder().Items().subFolders()) {
                form_.File1.putPath(seriesItem.Path());
                form_.File1.Refresh();
            }
        }
        form_.File1.putPath(series.Items().Item().Path());
    }
    return Outcome::GoOn;
}

void DiscOpener::backToFirstOpen() {
    // File1 has moved: no picture may go on standing under another patient's name.
    form_.Timer4.putEnabled(false);
    form_.ezDicom.putFileName("");
    if (disc_.position.StillsMode) {
        form_.sb1.putMax(stills_.seriesCount() + 1);
    } else {
        strip_.putRange();
    }
    form_.sb1.putValue(1);
    strip_.clear();
    strip_.ChkThumb();
    disc_.resetNames();
}

void DiscOpener::mnuOpen_Click() {
    trapErrors([this] {
        const QString chosen = disc_.dialogs.browseForFolder("Dicom");
        if (chosen.isEmpty()) return;
        disc_.position.CurrentFolder = Folder::NameSpace(chosen);
        disc_.position.HasStudyFolders = false;
        openFolder(disc_.position.CurrentFolder.Items().Item().Path());
    });
}

void DiscOpener::openFolder(const QString& folder) {
    if (!form_.File1.moveTo(folder)) return;
    probe_.probeFirstFile();
    disc_.resetNames();
    strip_.clear();
    if (disc_.position.StillsMode) {
        openStillsFolder(folder);
        return;
    }
    strip_.initialFill(FitPreview::AsItIs);
    loader_.LoadImage(0);
}

void DiscOpener::openStillsFolder(const QString& folder) {
    // The panel that could stop the cine is hidden now.
    form_.Timer4.putEnabled(false);
    form_.sb1.putMax(stills_.seriesCount() + 1);
    form_.sb1.putValue(1);
    stills_.fillFrom(0);
    strip_.ChkThumb();
    if (!form_.thumb(0).FileName().isEmpty()) {
        loader_.LoadImage(0);
        return;
    }
    form_.File1.putPath(folder);
    form_.File1.Refresh();
    form_.ezDicom.putFileName(form_.File1.fullPath(0));
    form_.ezDicom.putBestFit(true);
    form_.File1.putListIndex(0);
    loader_.showStillPosition();
}

}  // namespace cinedisc
