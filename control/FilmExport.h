#pragma once

#include "control/AviWriter.h"
#include "control/picture/ViewState.h"
#include "platform/io/FileSizeLimit.h"

#include <QBasicTimer>
#include <QObject>
#include <QSaveFile>

#include <memory>
#include <optional>

namespace cinedisc {

/// Writes a run as a film, every frame as the view displays it: window, polarity, shutter, overlays and
/// labels. Works by itself while the message loop runs, a frame at a time; whoever ends it early leaves
/// nothing behind. On the user-interface thread.
class FilmExport final : public QObject {
    Q_OBJECT

  public:
    /// Of the file that `shown` shows. `otherwiseRate`: frames per second of a run that does not tell its
    /// own.
    FilmExport(const ViewState& shown, ImageLibrary& library, const QString& path, double otherwiseRate);

    int frameCount() const { return film_.picture.frameCount(); }

  signals:
    void written(int frames);
    /// The last signal. Without `isWhole` there is no film.
    void finished(bool isWhole);

  protected:
    void timerEvent(QTimerEvent* event) override;

  private:
    enum class Step { Next, Wait, Done, Failed };
    Step step();
    bool start();
    bool write(const QImage& picture);
    QImage noticePicture() const;
    QSize evenSize() const;

    ViewState film_;  ///< a view of its own, which nobody sees
    double otherwiseRate_;
    FileSizeLimit mayBeMet_;  ///< until the file is closed
    QSaveFile file_;
    std::optional<AviWriter> writer_;
    QBasicTimer next_;
    std::unique_ptr<QObject> arrivals_;  ///< listens until the film is finished
};

}  // namespace cinedisc
