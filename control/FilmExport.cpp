#include "control/FilmExport.h"

#include "control/JpegEncoding.h"
#include "control/Notice.h"
#include "control/RunTiming.h"
#include "control/ViewPainter.h"
#include "control/picture/DisplayedPicture.h"

#include <QBuffer>
#include <QPainter>
#include <QTimerEvent>

#include <exception>

namespace cinedisc {

FilmExport::FilmExport(const ViewState& shown, ImageLibrary& library, const QString& path,
                       double otherwiseRate)
    : film_(library), otherwiseRate_(otherwiseRate), file_(path) {
    film_.picture.load(shown.picture.path());
    film_.picture.putWindowChoice(shown.picture.windowChoice());
    film_.picture.polarity = shown.picture.polarity;
    film_.labels = shown.labels;
    arrivals_ = std::make_unique<QObject>();
    connect(&library.arrivals(), &FrameArrivals::arrived, arrivals_.get(), [this] {
        if (!next_.isActive()) next_.start(0, this);
    });
    next_.start(0, this);
}

void FilmExport::timerEvent(QTimerEvent*) {
    Step done = Step::Failed;
    try {
        done = step();
    } catch (const std::exception&) {
        // Memory has run out.
    }
    if (done == Step::Next) return emit written(writer_->frameCount());
    next_.stop();
    if (done == Step::Wait) return;
    arrivals_.reset();
    emit finished(done == Step::Done && file_.commit());
}

FilmExport::Step FilmExport::step() {
    LoadedPicture& picture = film_.picture;
    if (picture.settle(Patience::Glance) == LoadedPicture::Settled::NotYet) return Step::Wait;
    if (!writer_ && !start()) return Step::Failed;
    if (writer_->frameCount() == picture.frameCount()) return writer_->finish() ? Step::Done : Step::Failed;

    picture.show(writer_->frameCount() + 1);
    if (picture.isAwaited() || (picture.coarse() && !picture.refine())) return Step::Wait;
    const QImage shown = displayedPicture(film_);
    if (!write(shown.isNull() ? noticePicture() : shown)) return Step::Failed;
    picture.lookAhead(PlayDirection::Forward, {});
    return Step::Next;
}

bool FilmExport::start() {
    if (frameCount() == 0 || !file_.open(QIODevice::WriteOnly)) return false;
    const double recorded = recordedFrameRate(film_.picture.file()->dicom());
    writer_.emplace(file_, evenSize(), recorded > 0 ? recorded : otherwiseRate_);
    return true;
}

/// Decoders of such films take pictures in blocks of two by two pixels.
QSize FilmExport::evenSize() const {
    const QSize size = film_.renderer.squareSize();
    return {size.width() + size.width() % 2, size.height() + size.height() % 2};
}

bool FilmExport::write(const QImage& picture) {
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    return encodeJpeg(picture.copy(QRect({0, 0}, evenSize())), buffer, JpegUse::Film) && writer_->add(jpeg);
}

/// What stands for a frame that cannot be shown, so that the others keep their time.
QImage FilmExport::noticePicture() const {
    QImage result(evenSize(), QImage::Format_RGB32);
    result.fill(Qt::black);
    QPainter painter(&result);
    if (const auto notice = noticeFor(film_.picture)) notice->paint(painter, result.rect(), Qt::lightGray);
    return result;
}

}  // namespace cinedisc
