#include "thumbnails/StillsStrip.h"

#include "thumbnails/ThumbnailStrip.h"

namespace cinedisc {

void StillsStrip::scroll() {
    trapErrors([&] {
        const int position = form_.sb1.Value();
        if (!keepsPictures(position)) fillFrom(stripStart(position));
    });
}

void StillsStrip::fillFrom(int start) {
    Int16 k = 0;
    const auto show = [&](const QString& seriesFolder) {
        if (!showSeries(seriesFolder, k, TagPut::AfterFile)) return true;
        Label1_.putCaption(form_.File1.Path());
        return ++k < Previews::count;
    };
    if (position_.HasStudyFolders) {
        Int16 p = 1;
        walkSeries([&](const QString& seriesFolder) {
            const bool more = p < start || show(seriesFolder);
            ++p;
            return more;
        });
    } else {
        // Here the position is the item's own index, one less than in the count above.
        const FolderItems items = position_.CurrentFolder.Items();
        for (Int16 i = start; i < items.Count(); ++i) {
            const FolderItem item = items.Item(i.value());
            if (item.IsFolder() && !show(item.Path())) break;
        }
    }
    if (k == Previews::count) return;
    // Only the preview after the last filled one is cleared; those behind it keep what they showed.
    for (Int16 j = k - 1; j < Previews::count; ++j) {
        ViewerControl& preview = form_.thumb(k);
        preview.putThumbIndex(-1);
        preview.putFileName("");
        preview.putTag("");
    }
}

Int16 StillsStrip::fillPatient() {
    Int16 k = 0;
    walkSeries([&](const QString& seriesFolder) {
        return !showSeries(seriesFolder, k, TagPut::BeforeFile) || ++k < Previews::count;
    });
    return k;
}

int StillsStrip::seriesCount() const {
    if (!position_.HasStudyFolders) return position_.CurrentFolder.Items().subFolders().Count();
    Int16 count = 0;
    walkSeries([&](const QString&) {
        ++count;
        return true;
    });
    return count.value();
}

bool StillsStrip::showSeries(const QString& seriesFolder, Int16 k, TagPut tagPut) {
    form_.File1.putPath(seriesFolder);
    if (form_.File1.ListCount() < 1) return false;
    ViewerControl& preview = form_.thumb(k);
    preview.putBackgroundFill(false);
    if (tagPut == TagPut::BeforeFile) preview.putTag(form_.File1.Path());
    preview.putFileName(form_.File1.fullPath(0));
    preview.putBestFit(true);
    if (tagPut == TagPut::AfterFile) preview.putTag(form_.File1.Path());
    return true;
}

void StillsStrip::walkSeries(const std::function<bool(const QString&)>& visit) const {
    for (const FolderItem& study : position_.CurrentFolder.Items().subFolders()) {
        for (const FolderItem& series : study.GetFolder().Items().subFolders()) {
            if (!visit(series.Path())) return;
        }
    }
}

}  // namespace cinedisc
