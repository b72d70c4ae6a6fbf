#pragma once

#include "viewer/FormControls.h"

namespace cinedisc {

/// When a preview is told to fit its picture to its size: as it is, after its file was put, or before and
/// after.
enum class FitPreview { AsItIs, AfterLoad, BeforeAndAfterLoad };

/// The strip of five previews over the files of one folder. sb1's value is one more than the list index of
/// the last file shown.
class ThumbnailStrip {
  public:
    /// `fitWhileScrolling`: the main window's previews are told to fit while scrolling, the folder viewer's
    /// are not.
    ThumbnailStrip(FormControls& controls, FitPreview fitWhileScrolling)
        : form_(controls), fitWhileScrolling_(fitWhileScrolling) {}

    /// Refreshes the borders; no picture is loaded again.
    void ChkThumb();
    /// Refills the strip for sb1's value; 5, 10, 15 ... keep the pictures that are there.
    void scrollFolder();

    /// Blanks all five previews.
    void clear();
    /// Shows the first files of a folder that File1 has just listed, at most five, in the cleared strip and
    /// moves sb1 behind them. The main view is told to fit.
    void initialFill(FitPreview fit);
    /// Puts sb1.Max for the files of File1. It comes before filling: lowering it may move the strip.
    void putRange();
    /// Puts file `index` of File1 into the preview of that number.
    void fillPreview(Int16 index, FitPreview fit);

    /// Index at which the last initial fill stopped: 4 with five files or more, otherwise their number.
    Int16 ThumbFillCount() const { return ThumbFillCount_; }

  private:
    void showFile(ViewerControl& preview, Int16 index, FitPreview fit);

    FormControls& form_;
    FitPreview fitWhileScrolling_;
    Int16 ThumbFillCount_ = 0;
};

/// True for the strip positions at which it keeps its pictures.
bool keepsPictures(int stripPosition);
/// The list index or series position at which the strip starts.
int stripStart(int stripPosition);

}  // namespace cinedisc
