#pragma once

#include "platform/Dialogs.h"
#include "platform/RunTimeError.h"
#include "platform/TreeControl.h"
#include "viewer/FormControls.h"

#include <QFile>
#include <QVariant>

#include <algorithm>
#include <functional>
#include <vector>

// Stand-ins for the controls of a window. They keep the rules of the real ones and write down every put, in
// order: "ezDicom.BestFit=true".
namespace cinedisc::test {

class StandIn {
  public:
    StandIn(QString name, QStringList& journal) : name_(std::move(name)), journal_(journal) {}

  protected:
    void note(const char* call) { journal_ << name_ + '.' + call; }
    void note(const char* member, const QVariant& value) {
        journal_ << QString("%1.%2=%3").arg(name_, member, value.toString());
    }
    template <typename Value>
    void record(const char* member, Value& held, const Value& value) {
        held = value;
        note(member, value);
    }

  private:
    QString name_;
    QStringList& journal_;
};

#define CINEDISC_RECORDED(Type, Parameter, Name, initial)                             \
  public:                                                                             \
    Type Name() const override { return Name##_; }                                    \
    void put##Name(Parameter value) override { record(#Name, Name##_, Type(value)); } \
                                                                                      \
  private:                                                                            \
    Type Name##_ = initial;

class RecordingLabel : public Label, StandIn {
    using StandIn::StandIn;
    CINEDISC_RECORDED(QString, const QString&, Caption, {})
};

class RecordingPanel : public Panel, StandIn {
    using StandIn::StandIn;
    CINEDISC_RECORDED(bool, bool, Visible, false)
};

class RecordingTimer : public TimerControl, StandIn {
    using StandIn::StandIn;
    CINEDISC_RECORDED(bool, bool, Enabled, false)
    CINEDISC_RECORDED(int, int, Interval, 50)
};

/// One of a group: selecting it clears its partner.
class RecordingOption : public OptionButton, StandIn {
  public:
    using StandIn::StandIn;
    static void pair(RecordingOption& a, RecordingOption& b) { a.partner_ = &b, b.partner_ = &a; }
    bool Value() const override { return value_; }
    void putValue(bool selected) override {
        note("Value", selected);
        if (std::exchange(value_, selected) == selected || !selected) return;
        if (partner_) partner_->value_ = false;
        if (onSelected) onSelected();
    }

    std::function<void()> onSelected;

  private:
    RecordingOption* partner_ = nullptr;
    bool value_ = false;
};

class RecordingRange : public RangeControl, StandIn {
  public:
    enum class LoweringMax { RaisesChange, IsQuiet };
    RecordingRange(QString name, QStringList& journal, int min, int max, LoweringMax lowering)
        : StandIn(std::move(name), journal), min_(min), max_(max), value_(min), lowering_(lowering) {}
    int Value() const override { return value_; }
    void putValue(int value) override {
        note("Value", value);
        if (value < min_ || value > max_) throw RunTimeError::invalidPropertyValue();
        if (std::exchange(value_, value) != value && onChange) onChange();
    }
    int Max() const override { return max_; }
    void putMax(int max) override {
        record("Max", max_, max);
        const int before = std::exchange(value_, std::min(value_, max));
        if (value_ != before && lowering_ == LoweringMax::RaisesChange && onChange) onChange();
    }

    std::function<void()> onChange;

  private:
    int min_, max_, value_;
    LoweringMax lowering_;
};

class RecordingTree : public TreeControl {
  public:
    struct Node {
        int parent = 0;
        QString text, tag;
        int picture = 0;
    };
    int nodeCount() const override { return int(nodes.size()); }
    int addNode(int parent, const QString& text) override {
        nodes.push_back({parent, text, {}});
        return nodeCount();
    }
    void putImage(int node, int picture) override { nodes.at(std::size_t(node - 1)).picture = picture; }
    void putTag(int node, const QString& tag) override { nodes.at(std::size_t(node - 1)).tag = tag; }
    QString tag(int node) const override { return nodes.at(std::size_t(node - 1)).tag; }
    QString text(int node) const override { return nodes.at(std::size_t(node - 1)).text; }
    void putExpanded(int node, bool on) override { expanded = on ? node : 0; }
    void putRemark(const QString& words) override { remark = words; }
    int selectedNode() const override { return selected; }

    QString remark;
    std::vector<Node> nodes;
    int selected = 0, expanded = 0;
};

/// Dialogs whose outcomes a test has laid ready.
class PreparedDialogs : public Dialogs {
  public:
    bool askYesNo(const QString& question) override { return asked << question, yes; }
    QString browseForFolder(const QString& title) override { return asked << title, folder; }
    QString saveFileName(const QString& title, const QString& filter) override {
        asked << title + " " + filter;
        if (whileSaving) whileSaving();
        return {};
    }

    QStringList asked;
    bool yes = false;
    QString folder;
    std::function<void()> whileSaving;
};

/// A viewer that shows nothing. A file's frames are the number that the file holds as text; a file that
/// cannot be read has none, and of -1 frames the disc gives no answer.
class RecordingViewer : public ViewerControl, StandIn {
  public:
    using StandIn::StandIn;
    QString FileName() const override { return fileName_; }
    void putFileName(const QString& path) override {
        record("FileName", fileName_, path);
        QFile file(path);
        frameCount_ = !path.isEmpty() && file.open(QFile::ReadOnly) ? file.readAll().trimmed().toInt() : 0;
        currentFrame_ = Polarity_ = 1;
        WindowCenter_ = 100;
        WindowWidth_ = 50;
    }
    qint32 FrameCount() const override { return std::max(frameCount_, 0); }
    bool isReading() const override { return frameCount_ < 0; }
    qint32 CurrentFrame() const override { return currentFrame_; }
    void putCurrentFrame(qint32 frame) override {
        note("CurrentFrame", frame);
        if (frame >= 1 && frame <= frameCount_) currentFrame_ = frame;
    }
    qint32 ThumbIndex() const override { return thumbIndex_; }
    void putThumbIndex(qint32 index) override {
        record("ThumbIndex", thumbIndex_, index);
        if (index == -1) fileName_ = "", frameCount_ = 0, currentFrame_ = 1;
    }
    bool CopyToClipboard() override { return note("CopyToClipboard"), frameCount_ > 0; }
    bool CopyHeaderToClipboard() override { return note("CopyHeaderToClipboard"), frameCount_ > 0; }

  private:
    QString fileName_;
    qint32 frameCount_ = 0, currentFrame_ = 1, thumbIndex_ = 0;
    CINEDISC_RECORDED(double, double, WindowCenter, 0)
    CINEDISC_RECORDED(double, double, WindowWidth, 0)
    CINEDISC_RECORDED(qint32, qint32, ZoomPercent, 100)
    CINEDISC_RECORDED(bool, bool, BestFit, false)
    CINEDISC_RECORDED(bool, bool, Smooth, false)
    CINEDISC_RECORDED(qint32, qint32, Polarity, 1)
    CINEDISC_RECORDED(qint32, qint32, MouseMode, MouseWindow)
    CINEDISC_RECORDED(bool, bool, BackgroundFill, false)
    CINEDISC_RECORDED(qint32, qint32, BackgroundColor, 0)
    CINEDISC_RECORDED(bool, bool, ShowHeader, false)
    CINEDISC_RECORDED(QString, const QString&, ExportFile, {})
    CINEDISC_RECORDED(qint32, qint32, RangeStart, 0)
    CINEDISC_RECORDED(qint32, qint32, RangeEnd, 0)
    CINEDISC_RECORDED(qint32, qint32, RangeModeA, 0)
    CINEDISC_RECORDED(qint32, qint32, RangeModeB, 0)
    CINEDISC_RECORDED(bool, bool, Option247, false)
    CINEDISC_RECORDED(bool, bool, Option256, false)
    CINEDISC_RECORDED(bool, bool, StartupFlag, true)
    CINEDISC_RECORDED(qint32, qint32, ThumbStyle, 0)
    CINEDISC_RECORDED(QString, const QString&, Tag, {})
};
#undef CINEDISC_RECORDED

}  // namespace cinedisc::test
