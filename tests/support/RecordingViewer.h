#pragma once

#include "tests/support/Journal.h"
#include "viewer/ViewerControl.h"

#include <algorithm>

namespace cinedisc::test {

/// A viewer that shows nothing and writes down every put. A file's frames are the number that the file holds
/// as text; a file that cannot be read has none, and of -1 frames the disc gives no answer.
class RecordingViewer : public ViewerControl {
  public:
    RecordingViewer(QString name, Journal& journal) : name_(std::move(name)), journal_(journal) {}

    QString FileName() const override { return fileName_; }
    void putFileName(const QString& path) override;
    qint32 FrameCount() const override { return std::max(frameCount_, 0); }
    bool isReading() const override { return frameCount_ < 0; }
    qint32 CurrentFrame() const override { return currentFrame_; }
    void putCurrentFrame(qint32 frame) override;
    qint32 ThumbIndex() const override { return thumbIndex_; }
    void putThumbIndex(qint32 index) override;
    double WindowCenter() const override { return windowCenter_; }
    void putWindowCenter(double center) override { record("WindowCenter", windowCenter_, center); }
    double WindowWidth() const override { return windowWidth_; }
    void putWindowWidth(double width) override;

#define CINEDISC_RECORDED_MEMBER(Type, Parameter, Name, initial)                      \
  public:                                                                             \
    Type Name() const override { return Name##_; }                                    \
    void put##Name(Parameter value) override { record(#Name, Name##_, Type(value)); } \
                                                                                      \
  private:                                                                            \
    Type Name##_ = initial;

    CINEDISC_RECORDED_MEMBER(qint32, qint32, ZoomPercent, 100)
    CINEDISC_RECORDED_MEMBER(bool, bool, BestFit, false)
    CINEDISC_RECORDED_MEMBER(bool, bool, Smooth, false)
    CINEDISC_RECORDED_MEMBER(qint32, qint32, Polarity, 1)
    CINEDISC_RECORDED_MEMBER(qint32, qint32, MouseMode, MouseWindow)
    CINEDISC_RECORDED_MEMBER(bool, bool, BackgroundFill, false)
    CINEDISC_RECORDED_MEMBER(qint32, qint32, BackgroundColor, 0)
    CINEDISC_RECORDED_MEMBER(bool, bool, ShowHeader, false)
    CINEDISC_RECORDED_MEMBER(QString, const QString&, ExportFile, {})
    CINEDISC_RECORDED_MEMBER(qint32, qint32, RangeStart, 0)
    CINEDISC_RECORDED_MEMBER(qint32, qint32, RangeEnd, 0)
    CINEDISC_RECORDED_MEMBER(qint32, qint32, RangeModeA, 0)
    CINEDISC_RECORDED_MEMBER(qint32, qint32, RangeModeB, 0)
    CINEDISC_RECORDED_MEMBER(bool, bool, Option247, false)
    CINEDISC_RECORDED_MEMBER(bool, bool, Option256, false)
    CINEDISC_RECORDED_MEMBER(bool, bool, StartupFlag, true)
    CINEDISC_RECORDED_MEMBER(qint32, qint32, ThumbStyle, 0)
    CINEDISC_RECORDED_MEMBER(QString, const QString&, Tag, {})
#undef CINEDISC_RECORDED_MEMBER

  public:
    bool CopyToClipboard() override;
    bool CopyHeaderToClipboard() override;

  private:
    template <typename Value>
    void record(const char* member, Value& held, const Value& value) {
        held = value;
        journal_.put(name_, member, value);
    }

    QString name_;
    Journal& journal_;
    QString fileName_;
    qint32 frameCount_ = 0;
    qint32 currentFrame_ = 1;
    qint32 thumbIndex_ = 0;
    double windowCenter_ = 0;
    double windowWidth_ = 0;
};

}  // namespace cinedisc::test
