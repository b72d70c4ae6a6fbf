#include "navigation/SeriesStepper.h"

namespace cinedisc {

namespace {

/// Position of the folder with this path, compared case-sensitively; -1 when there is none.
Int16 positionOf(const FolderItems& folders, const QString& path) {
    for (Int16 i = 0; i < folders.Count(); ++i) {
        if (folders.Item(i.value()).Path() == path) return i;
    }
    return -1;
}

}  // namespace

void SeriesStepper::step(Direction direction) {
    trapErrors([&] {
        const DiscPosition& position = place_.position();
        if (!position.CurrentFolder.isSet() || position.patient == DiscPosition::Patient::None) return;
        const Target target =
            position.HasStudyFolders ? targetAmongStudies(direction) : targetAmongSeries(direction);
        const QString path = target.folder.Path();
        const bool isListed = position.patient == DiscPosition::Patient::Listed;
        // A folder opened by hand is nobody's in the catalogue.
        if (position.HasStudyFolders && isListed) details_.SerDisplay(target.study, target.series);
        place_.listSeries(path);
        if (position.StillsMode) {
            openStills();
        } else {
            openRuns();
        }
    });
}

SeriesStepper::Target SeriesStepper::targetAmongSeries(Direction direction) const {
    const FolderItems series = place_.position().CurrentFolder.Items().subFolders();
    const Int16 current = positionOf(series, form_.File1.Path());
    if (current < 0) throw RunTimeError::objectNotSet();
    const Int16 target = wrappedStep(current.value(), series.Count(), direction);
    return {0, target, series.Item(target.value())};
}

SeriesStepper::Target SeriesStepper::targetAmongStudies(Direction direction) const {
    const FolderItems studies = place_.position().CurrentFolder.Items().subFolders();
    const auto seriesOf = [&](Int16 study) {
        return studies.Item(study.value()).GetFolder().Items().subFolders();
    };
    for (Int16 i = 0; i < studies.Count(); ++i) {
        const FolderItems series = seriesOf(i);
        const Int16 current = positionOf(series, form_.File1.Path());
        if (current < 0) continue;
        const Int16 target = wrappedStep(current.value(), series.Count(), direction);
        const bool staysInStudy = direction == Direction::Next ? target > current : target < current;
        if (staysInStudy) return {i, target, series.Item(target.value())};
        const Int16 study = wrappedStep(i.value(), studies.Count(), direction);
        const FolderItems others = seriesOf(study);
        const Int16 entered = direction == Direction::Next ? 0 : others.Count() - 1;
        return {study, entered, others.Item(entered.value())};
    }
    throw RunTimeError::objectNotSet();
}

void SeriesStepper::openRuns() {
    form_.ezDicom.putBestFit(true);
    // Before the filling loop, which ends at the sixth file: a continuous cine must be able to count through
    // the new list.
    strip_.putRange();
    if (form_.File1.ListCount() == 0) {
        // Nothing of the series before may stand under this one's name.
        strip_.clear();
    }
    for (Int16 i = 0; i < form_.File1.ListCount(); ++i) strip_.fillPreview(i, FitPreview::BeforeAndAfterLoad);
    strip_.putRange();
    form_.sb1.putValue(form_.File1.ListCount() + 1);
    strip_.ChkThumb();
    loader_.LoadImage(0);
}

void SeriesStepper::openStills() {
    if (form_.File1.ListCount() == 0) return;
    form_.ezDicom.putFileName(form_.File1.fullPath(0));
    form_.ezDicom.putBestFit(true);
    stills_.show(0);
}

}  // namespace cinedisc
