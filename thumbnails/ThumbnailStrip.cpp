#include "thumbnails/ThumbnailStrip.h"

namespace cinedisc {

bool keepsPictures(int stripPosition) { return stripPosition % Previews::count == 0; }

int stripStart(int stripPosition) {
    return stripPosition > Previews::count ? stripPosition - Previews::count : 0;
}

void ThumbnailStrip::ChkThumb() {
    for (ViewerControl* preview : form_.thumb) {
        if (preview->FileName().isEmpty()) {
            preview->putThumbStyle(0);
        } else {
            preview->putThumbStyle(2);
            preview->putBestFit(true);
        }
    }
}

void ThumbnailStrip::scrollFolder() {
    if (form_.File1.ListCount() < 1) {
        ChkThumb();
        return;
    }
    const int position = form_.sb1.Value();
    if (keepsPictures(position)) return;
    Int16 index = stripStart(position);
    for (Int16 k = 0; k < Previews::count; ++k, ++index) {
        ViewerControl& preview = form_.thumb(k);
        if (index < form_.File1.ListCount()) {
            showFile(preview, index, fitWhileScrolling_);
        } else {
            preview.putThumbIndex(-1);
            preview.putFileName("");
        }
    }
    ChkThumb();
}

void ThumbnailStrip::clear() {
    for (ViewerControl* preview : form_.thumb) preview->putThumbIndex(-1);
}

void ThumbnailStrip::initialFill(FitPreview fit) {
    putRange();
    form_.ezDicom.putBestFit(true);
    Int16 i = 0;
    for (; i < form_.File1.ListCount(); ++i) {
        fillPreview(i, fit);
        if (i == Previews::count - 1) break;
    }
    ThumbFillCount_ = i;
    form_.sb1.putValue((ThumbFillCount_ + 1).value());
}

void ThumbnailStrip::putRange() { form_.sb1.putMax((Int16(form_.File1.ListCount()) + 1).value()); }

void ThumbnailStrip::fillPreview(Int16 index, FitPreview fit) { showFile(form_.thumb(index), index, fit); }

void ThumbnailStrip::showFile(ViewerControl& preview, Int16 index, FitPreview fit) {
    preview.putBackgroundFill(false);
    if (fit == FitPreview::BeforeAndAfterLoad) preview.putBestFit(true);
    preview.putFileName(form_.File1.fullPath(index));
    if (fit != FitPreview::AsItIs) preview.putBestFit(true);
}

}  // namespace cinedisc
