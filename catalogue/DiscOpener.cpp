#include "catalogue/DiscOpener.h"

#include "platform/Paths.h"
#include "viewer/WindowWords.h"

namespace cinedisc {

void DiscOpener::Open_Click() {
    if (!catalogue_.exists()) {
        trapErrors([this] {
            if (disc_.dialogs.askYesNo(windowWords::openFolderInstead())) mnuOpen_Click();
        });
        return;
    }
    const TreeControl& tree = disc_.TreeView1;
    const bool wasEmpty = tree.nodeCount() == 0;
    QString remark = windowWords::noFirstImage();
    trapErrors([&] {
        if (probeDisc() == Outcome::NothingThere) return;
        remark = windowWords::catalogueUnreadable();
        catalogueLoader_.LoadCatalogue();
        remark = tree.nodeCount() == 0 ? windowWords::catalogueEmpty() : QString();
    });
    if (remark == windowWords::catalogueUnreadable() && tree.nodeCount() > 0)
        remark = windowWords::catalogueDamaged();
    // No message box tells what is wrong with a disc: the tree's place does.
    if (wasEmpty) disc_.TreeView1.putRemark(remark);
}

DiscOpener::Outcome DiscOpener::probeDisc() {
    const Folder patient = Folder::NameSpace(findIgnoringCase(disc_.programFolder, {"Dicom", "Patient000"}));
    if (!patient.isSet()) return Outcome::GoOn;
    const QString series = ModeProbe::firstSeries(patient);
    const QStringList files = form_.File1.filesIn(series);
    if (files.isEmpty()) return Outcome::NothingThere;
    const bool stills = probe_.isStill(joinPath(series, files.first()));
    place_.enterDisc(patient);
    place_.putStillsMode(stills);
    form_.sb1.putMax(stills ? stills_.seriesCount() + 1 : (Int16(files.size()) + 1).value());
    if (stills) trapErrors([&] { walkStills(patient); });
    form_.File1.putPath(series);
    return Outcome::GoOn;
}

void DiscOpener::walkStills(const Folder& patient) {
    for (const FolderItem& study : patient.Items().subFolders()) {
        for (const FolderItem& series : study.GetFolder().Items().subFolders()) {
            form_.File1.putPath(series.Path());
            form_.File1.Refresh();
        }
    }
}

void DiscOpener::mnuOpen_Click() {
    trapErrors([this] {
        const QString chosen = disc_.dialogs.browseForFolder(windowWords::folderDialogTitle());
        if (!chosen.isEmpty()) openFolder(Folder::NameSpace(chosen));
    });
}

void DiscOpener::openFolder(const Folder& folder) {
    const QString path = folder.Items().Item().Path();
    const QStringList files = form_.File1.filesIn(path);
    if (files.isEmpty()) {
        // The listed files' own study: series steps go on among its series.
        if (isBelow(form_.File1.Path(), path)) place_.moveAbove(folder);
        return;
    }
    const bool stills = probe_.isStill(joinPath(path, files.first()));
    place_.enterFolder(folder);
    place_.putStillsMode(stills);
    place_.open([&] {
        if (stills) {
            openStillsFolder();
        } else {
            strip_.initialFill(FitPreview::AsItIs);
            loader_.LoadImage(0);
        }
    });
}

void DiscOpener::openStillsFolder() {
    form_.sb1.putMax(stills_.seriesCount() + 1);
    stills_.fillFrom(0);
    strip_.ChkThumb();
    if (!form_.thumb(0).FileName().isEmpty()) {
        loader_.LoadImage(0);
        return;
    }
    form_.File1.putPath(place_.position().CurrentFolder.pathOrEmpty());
    form_.File1.Refresh();
    form_.ezDicom.putFileName(form_.File1.fullPath(0));
    form_.ezDicom.putBestFit(true);
    series_.show(0);
}

}  // namespace cinedisc
