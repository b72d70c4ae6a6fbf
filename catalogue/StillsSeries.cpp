#include "catalogue/StillsSeries.h"

#include "viewer/WindowWords.h"

namespace cinedisc {

void StillsSeries::show(Int16 index) {
    form_.File1.putListIndex(index.value());
    disc_.lblSeries.putCaption(
        windowWords::stillPosition(form_.File1.ListIndex() + 1, form_.File1.ListCount()));
    showName();
}

void StillsSeries::showName() {
    // A step within the series must not read the whole catalogue again.
    const std::pair series(place_.position().namedFolder, form_.File1.Path());
    if (series == namedSeries_ && name_ == disc_.Label6.Caption()) return;
    trapErrors([this] { lookUpName(); });
    namedSeries_ = series;
    name_ = disc_.Label6.Caption();
}

void StillsSeries::lookUpName() {
    const DiscPosition& position = place_.position();
    disc_.showDesignSeries();
    if (position.patient != DiscPosition::Patient::Listed || !position.HasStudyFolders) return;
    Int16 study = 0;
    for (const FolderItem& studyItem : position.CurrentFolder.Items().subFolders()) {
        Int16 series = 0;
        for (const FolderItem& seriesItem : studyItem.GetFolder().Items().subFolders()) {
            if (seriesItem.Path() == form_.File1.Path()) return details_.SerDisplay(study, series);
            ++series;
        }
        ++study;
    }
}

}  // namespace cinedisc
