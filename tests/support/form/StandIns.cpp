#include "tests/support/form/StandIns.h"

#include <QFile>

namespace cinedisc::test {

void RecordingViewer::putFileName(const QString& path) {
    record("FileName", fileName_, path);
    QFile file(path);
    frameCount_ = !path.isEmpty() && file.open(QFile::ReadOnly) ? file.readAll().trimmed().toInt() : 0;
    currentFrame_ = 1;
    Polarity_ = 1;
    WindowCenter_ = 100;
    windowWidth_ = 50;
}

void RecordingViewer::putCurrentFrame(qint32 frame) {
    note("CurrentFrame", frame);
    if (frame >= 1 && frame <= frameCount_) currentFrame_ = frame;
}

void RecordingViewer::putThumbIndex(qint32 index) {
    record("ThumbIndex", thumbIndex_, index);
    if (index != -1) return;
    fileName_.clear();
    frameCount_ = 0;
    currentFrame_ = 1;
}

void RecordingViewer::putWindowWidth(double width) {
    if (width >= 1) record("WindowWidth", windowWidth_, width);
}

bool RecordingViewer::CopyToClipboard() {
    note("CopyToClipboard");
    return frameCount_ > 0;
}

bool RecordingViewer::CopyHeaderToClipboard() {
    note("CopyHeaderToClipboard");
    return frameCount_ > 0;
}

}  // namespace cinedisc::test
