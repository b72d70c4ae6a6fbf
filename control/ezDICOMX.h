#pragma once

#include "control/ViewRole.h"
#include "control/frames/ImageLibrary.h"
#include "viewer/NamedPatientView.h"
#include "viewer/ViewerControl.h"

#include <QPoint>
#include <QWidget>

#include <functional>
#include <memory>

namespace cinedisc {

class FilmExport;

/// The viewer component: shows the frames of one DICOM file at a time. Every member of the contract is a
/// property of the same name, and putting the property does what the contract's put does.
///
/// Decodes nothing that is not looked at or asked about, and paints when the message loop comes to it: many
/// puts make one drawing. On the user-interface thread.
class ezDICOMX : public QWidget, public ViewerControl, public NamedPatientView {
    Q_OBJECT
    Q_PROPERTY(QString FileName READ FileName WRITE putFileName)
    Q_PROPERTY(int FrameCount READ FrameCount)
    Q_PROPERTY(int CurrentFrame READ CurrentFrame WRITE putCurrentFrame)
    Q_PROPERTY(int ZoomPercent READ ZoomPercent WRITE putZoomPercent)
    Q_PROPERTY(bool BestFit READ BestFit WRITE putBestFit)
    Q_PROPERTY(bool Smooth READ Smooth WRITE putSmooth)
    Q_PROPERTY(int Polarity READ Polarity WRITE putPolarity)
    Q_PROPERTY(double WindowCenter READ WindowCenter WRITE putWindowCenter)
    Q_PROPERTY(double WindowWidth READ WindowWidth WRITE putWindowWidth)
    Q_PROPERTY(int MouseMode READ MouseMode WRITE putMouseMode)
    Q_PROPERTY(bool BackgroundFill READ BackgroundFill WRITE putBackgroundFill)
    Q_PROPERTY(int BackgroundColor READ BackgroundColor WRITE putBackgroundColor)
    Q_PROPERTY(bool ShowHeader READ ShowHeader WRITE putShowHeader)
    Q_PROPERTY(QString ExportFile READ ExportFile WRITE putExportFile)
    Q_PROPERTY(QString ExportFormat READ ExportFormat WRITE putExportFormat)
    Q_PROPERTY(int RangeStart READ RangeStart WRITE putRangeStart)
    Q_PROPERTY(int RangeEnd READ RangeEnd WRITE putRangeEnd)
    Q_PROPERTY(int RangeModeA READ RangeModeA WRITE putRangeModeA)
    Q_PROPERTY(int RangeModeB READ RangeModeB WRITE putRangeModeB)
    Q_PROPERTY(bool Option247 READ Option247 WRITE putOption247)
    Q_PROPERTY(bool Option256 READ Option256 WRITE putOption256)
    Q_PROPERTY(bool StartupFlag READ StartupFlag WRITE putStartupFlag)
    Q_PROPERTY(int ThumbIndex READ ThumbIndex WRITE putThumbIndex)
    Q_PROPERTY(int ThumbStyle READ ThumbStyle WRITE putThumbStyle)
    Q_PROPERTY(QString Tag READ Tag WRITE putTag)

  public:
    explicit ezDICOMX(ViewRole role, QWidget* parent = nullptr,
                      ImageLibrary& library = ImageLibrary::shared());
    explicit ezDICOMX(QWidget* parent = nullptr) : ezDICOMX(ViewRole::Main, parent) {}
    ~ezDICOMX() override;

    ViewRole role() const;

    QString FileName() const override;
    void putFileName(const QString& path) override;
    qint32 FrameCount() const override;
    qint32 CurrentFrame() const override;
    void putCurrentFrame(qint32 frame) override;

    qint32 ZoomPercent() const override;
    void putZoomPercent(qint32 percent) override;
    bool BestFit() const override;
    void putBestFit(bool on) override;
    bool Smooth() const override;
    void putSmooth(bool on) override;
    qint32 Polarity() const override;
    void putPolarity(qint32 polarity) override;
    double WindowCenter() const override;
    void putWindowCenter(double center) override;
    double WindowWidth() const override;
    void putWindowWidth(double width) override;

    qint32 MouseMode() const override;
    void putMouseMode(qint32 mode) override;
    bool BackgroundFill() const override;
    void putBackgroundFill(bool on) override;
    qint32 BackgroundColor() const override;
    void putBackgroundColor(qint32 color) override;

    bool ShowHeader() const override;
    void putShowHeader(bool on) override;
    Q_INVOKABLE bool CopyToClipboard() override;
    Q_INVOKABLE bool CopyHeaderToClipboard() override;
    /// Begins to write the whole run as a film (AVI), as it is displayed now; text that is still typed counts
    /// as set. `otherwiseRate`: frames per second of a run that does not tell its own. Deleting the result
    /// ends it.
    std::unique_ptr<FilmExport> exportFilm(const QString& path, double otherwiseRate);
    QString ExportFile() const override;
    void putExportFile(const QString& path) override;
    /// "JPEG" or "BMP": how ExportFile writes a name whose extension names neither. JPEG until it is put.
    QString ExportFormat() const;
    void putExportFormat(const QString& format);

    qint32 RangeStart() const override;
    void putRangeStart(qint32 frame) override;
    qint32 RangeEnd() const override;
    void putRangeEnd(qint32 frame) override;
    qint32 RangeModeA() const override;
    void putRangeModeA(qint32 mode) override;
    qint32 RangeModeB() const override;
    void putRangeModeB(qint32 mode) override;
    bool Option247() const override;
    void putOption247(bool on) override;
    bool Option256() const override;
    void putOption256(bool on) override;
    bool StartupFlag() const override;
    void putStartupFlag(bool on) override;
    qint32 ThumbIndex() const override;
    void putThumbIndex(qint32 index) override;
    qint32 ThumbStyle() const override;
    void putThumbStyle(qint32 style) override;
    QString Tag() const override;
    void putTag(const QString& tag) override;

    /// The main view warns across its top while its file does not lie below this folder.
    void putNamedPatientFolder(const QString& folder) override;

    /// The disc has not given the frame shown yet. Stepping on would only leave pictures out.
    bool isReading() const override;
    /// Frames per second that the run was recorded at (PS3.3 C.7.6.5); 0 when its file does not tell, or is
    /// not open.
    double recordedRate() const;
    /// A coarse picture stands for the frame shown, which is being decoded.
    bool isCoarse() const;
    /// Marks a preview as that of the file shown.
    void setMarked(bool on);
    bool isMarked() const;
    /// Who is asked which file is likely to be shown after `path`, "" for none: it is read ahead.
    using Neighbour = std::function<QString(const QString& path, PlayDirection direction)>;
    void setNeighbour(Neighbour neighbour);

    /// For assistive programs: whose file it is and which, and the frame shown; "" when there is none.
    QStringList spokenFile() const;
    QString spokenPosition() const;

    QSize sizeHint() const override;

  signals:
    /// A preview was pressed and released with the left button, or chosen with Return.
    void clicked();
    /// The main view has drawn another frame, once for each however often its picture changes.
    void frameDrawn();
    /// Another file, zoom, polarity, smoothing, background or mouse tool is in force, or the header page came
    /// or went: by whomever.
    void displayChanged();

  protected:
    bool event(QEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

  private:
    struct Parts;

    std::unique_ptr<Parts> parts_;
};

}  // namespace cinedisc
