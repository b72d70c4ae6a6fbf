#pragma once

#include "platform/FileListBox.h"
#include "platform/Label.h"
#include "platform/MessageLoop.h"
#include "platform/OptionButton.h"
#include "platform/RangeControl.h"
#include "platform/TimerControl.h"
#include "viewer/Previews.h"
#include "viewer/StillsPosition.h"

namespace cinedisc {

/// The controls that the main window and the folder viewer have in common, by their own names. A window owns
/// them and lends them to the behaviours it is made of.
struct FormControls {
    ViewerControl& ezDicom;
    Previews thumb;
    FileListBox& File1;
    RangeControl& sb1;       ///< position in the strip, from 1
    RangeControl& Slider1;   ///< cine speed, 0 to 10
    RangeControl& Slider2;   ///< frame, from 1
    OptionButton& Option4;   ///< loop within the file
    OptionButton& Option11;  ///< continue into the neighbouring file
    OptionButton& Option9;   ///< forward
    OptionButton& Option10;  ///< reverse
    Label& lblImg;
    Label& lblFra;
    TimerControl& Timer1;
    TimerControl& Timer4;  ///< cine clock
    MessageLoop& messages;
    StillsPosition* stills = nullptr;  ///< of the main window; the folder viewer has none

    /// Brings the window's position to the file at `index` of File1, which the main view shows: the strip's
    /// scroll bar, or the place in a stills series, whose strip counts series.
    void moveToImage(Int16 index) const;
    /// "Image : 7/20" from the position.
    void showImagePosition() const;
    /// "Frame :12" from the frame slider.
    void showFramePosition() const;
    /// Position in File1 of the file that comes `step` (1 or -1) after the one at `path`, round the ends. A
    /// file that is not listed counts as the first. File1 must not be empty.
    Int16 neighbourOf(const QString& path, Int16 step) const;
    bool isReverseContinuous() const { return Option11.Value() && Option10.Value(); }
};

}  // namespace cinedisc
