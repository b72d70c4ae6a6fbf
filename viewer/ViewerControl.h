#pragma once

#include <QString>

namespace cinedisc {

/// The contract with the viewer component: exactly the members that the forms use, under their own names. The
/// program never touches an image but through these.
///
/// Order of use: put FileName first, then read FrameCount or put CurrentFrame, then restore display settings.
/// Lives on the user-interface thread.
class ViewerControl {
  public:
    /// What a drag with the mouse does.
    enum Mouse : qint32 { MouseWindow = 1, MouseZoom = 2, MouseMagnify = 3, MousePan = 4, MouseLabel = 5 };

    virtual ~ViewerControl() = default;

    /// Full path of the loaded file, "" when none. Putting a path always loads, even the same one again, and
    /// shows the first frame with the file's own window and normal polarity; it never raises. A file that
    /// cannot be shown keeps its path and has FrameCount 0.
    virtual QString FileName() const = 0;
    virtual void putFileName(const QString& path) = 0;

    /// 0 also when the disc has given nothing for seconds.
    virtual qint32 FrameCount() const = 0;
    /// The disc has not given the file, or the frame shown, yet: a FrameCount of 0 means nothing then.
    virtual bool isReading() const { return false; }
    /// Counted from 1. Putting a number outside 1 ... FrameCount changes nothing.
    virtual qint32 CurrentFrame() const = 0;
    virtual void putCurrentFrame(qint32 frame) = 0;

    /// Percent; 100 is one device pixel per image pixel. In force while BestFit is False.
    virtual qint32 ZoomPercent() const = 0;
    virtual void putZoomPercent(qint32 percent) = 0;
    virtual bool BestFit() const = 0;
    virtual void putBestFit(bool on) = 0;
    virtual bool Smooth() const = 0;
    virtual void putSmooth(bool on) = 0;

    /// The sign selects normal (above 0) or inverted display (below 0).
    virtual qint32 Polarity() const = 0;
    virtual void putPolarity(qint32 polarity) = 0;
    /// The window in force, in units of the modality values.
    virtual double WindowCenter() const = 0;
    virtual void putWindowCenter(double center) = 0;
    virtual double WindowWidth() const = 0;
    virtual void putWindowWidth(double width) = 0;

    virtual qint32 MouseMode() const = 0;
    virtual void putMouseMode(qint32 mode) = 0;
    /// False: no background fill; True: fill with BackgroundColor (1 black, 0 white).
    virtual bool BackgroundFill() const = 0;
    virtual void putBackgroundFill(bool on) = 0;
    virtual qint32 BackgroundColor() const = 0;
    virtual void putBackgroundColor(qint32 color) = 0;

    /// The header as text in place of the picture.
    virtual bool ShowHeader() const = 0;
    virtual void putShowHeader(bool on) = 0;
    virtual bool CopyToClipboard() = 0;
    virtual bool CopyHeaderToClipboard() = 0;
    /// Putting a path writes the shown picture to it; a failure raises a run-time error.
    virtual QString ExportFile() const = 0;
    virtual void putExportFile(const QString& path) = 0;

    /// A frame range that the hold command sets; modes 3 while it is held, 1 otherwise.
    virtual qint32 RangeStart() const = 0;
    virtual void putRangeStart(qint32 frame) = 0;
    virtual qint32 RangeEnd() const = 0;
    virtual void putRangeEnd(qint32 frame) = 0;
    virtual qint32 RangeModeA() const = 0;
    virtual void putRangeModeA(qint32 mode) = 0;
    virtual qint32 RangeModeB() const = 0;
    virtual void putRangeModeB(qint32 mode) = 0;

    virtual bool Option247() const = 0;
    virtual void putOption247(bool on) = 0;
    virtual bool Option256() const = 0;
    virtual void putOption256(bool on) = 0;
    virtual bool StartupFlag() const = 0;
    virtual void putStartupFlag(bool on) = 0;
    /// Putting -1 blanks a preview: the file is unloaded and FileName becomes "".
    virtual qint32 ThumbIndex() const = 0;
    virtual void putThumbIndex(qint32 index) = 0;
    /// 2: sunken border, 0: none.
    virtual qint32 ThumbStyle() const = 0;
    virtual void putThumbStyle(qint32 style) = 0;
    /// The folder of the file that a preview shows, written in stills mode.
    virtual QString Tag() const = 0;
    virtual void putTag(const QString& tag) = 0;
};

}  // namespace cinedisc
