#pragma once

#include "platform/Dialogs.h"
#include "platform/Label.h"
#include "platform/MessageLoop.h"
#include "platform/OptionButton.h"
#include "platform/Panel.h"
#include "platform/RangeControl.h"
#include "platform/RunTimeError.h"
#include "platform/TimerControl.h"
#include "platform/TreeControl.h"
#include "tests/support/Journal.h"

#include <functional>
#include <vector>

// Stand-ins for the controls of a window. They keep the rules of the real ones and write down every put.
namespace cinedisc::test {

class RecordingLabel : public Label {
  public:
    RecordingLabel(QString name, Journal& journal) : name_(std::move(name)), journal_(journal) {}
    QString Caption() const override { return caption_; }
    void putCaption(const QString& text) override {
        caption_ = text;
        journal_.put(name_, "Caption", text);
    }

  private:
    QString name_;
    Journal& journal_;
    QString caption_;
};

class RecordingPanel : public Panel {
  public:
    RecordingPanel(QString name, Journal& journal, bool visible)
        : name_(std::move(name)), journal_(journal), visible_(visible) {}
    bool Visible() const override { return visible_; }
    void putVisible(bool visible) override {
        visible_ = visible;
        journal_.put(name_, "Visible", visible);
    }

  private:
    QString name_;
    Journal& journal_;
    bool visible_;
};

/// One of a group: selecting it clears its partner.
class RecordingOption : public OptionButton {
  public:
    RecordingOption(QString name, Journal& journal) : name_(std::move(name)), journal_(journal) {}
    static void pair(RecordingOption& a, RecordingOption& b) { a.partner_ = &b, b.partner_ = &a; }
    bool Value() const override { return value_; }
    void putValue(bool selected) override {
        journal_.put(name_, "Value", selected);
        if (value_ == selected) return;
        value_ = selected;
        if (selected && partner_) partner_->value_ = false;
        if (selected && selectedHandler) selectedHandler();
    }

    std::function<void()> selectedHandler;

  private:
    QString name_;
    Journal& journal_;
    RecordingOption* partner_ = nullptr;
    bool value_ = false;
};

class RecordingRange : public RangeControl {
  public:
    enum class LoweringMax { RaisesChange, IsQuiet };
    RecordingRange(QString name, Journal& journal, int min, int max, LoweringMax lowering)
        : name_(std::move(name)), journal_(journal), min_(min), max_(max), value_(min), lowering_(lowering) {}
    int Value() const override { return value_; }
    void putValue(int value) override {
        journal_.put(name_, "Value", value);
        if (value < min_ || value > max_) throw RunTimeError::invalidPropertyValue();
        change(value);
    }
    int Max() const override { return max_; }
    void putMax(int max) override {
        journal_.put(name_, "Max", max);
        max_ = max;
        if (value_ <= max) return;
        if (lowering_ == LoweringMax::RaisesChange) {
            change(max);
        } else {
            value_ = max;
        }
    }

    std::function<void()> changed;

  private:
    void change(int value) {
        if (value == value_) return;
        value_ = value;
        if (changed) changed();
    }

    QString name_;
    Journal& journal_;
    int min_, max_, value_;
    LoweringMax lowering_;
};

class RecordingTimer : public TimerControl {
  public:
    RecordingTimer(QString name, Journal& journal) : name_(std::move(name)), journal_(journal) {}
    bool Enabled() const override { return enabled_; }
    void putEnabled(bool on) override {
        enabled_ = on;
        journal_.put(name_, "Enabled", on);
    }
    int Interval() const override { return interval_; }
    void putInterval(int milliseconds) override {
        interval_ = milliseconds;
        journal_.put(name_, "Interval", milliseconds);
    }

  private:
    QString name_;
    Journal& journal_;
    bool enabled_ = false;
    int interval_ = 50;
};

/// Yields do nothing but what a test has put in.
class RecordingMessageLoop : public MessageLoop {
  public:
    explicit RecordingMessageLoop(Journal& journal) : journal_(journal) {}
    void doEvents() override {
        journal_.call("DoEvents");
        if (pending) pending();
    }
    std::function<void()> pending;

  private:
    Journal& journal_;
};

class RecordingTree : public TreeControl {
  public:
    struct Node {
        int parent = 0;
        QString text;
        QString tag;
        int picture = 0;
        bool expanded = true;
    };
    int nodeCount() const override { return int(nodes.size()); }
    int addNode(int parent, const QString& text) override {
        nodes.push_back({parent, text, {}, 0, true});
        return nodeCount();
    }
    void putImage(int node, int picture) override { at(node).picture = picture; }
    void putTag(int node, const QString& tag) override { at(node).tag = tag; }
    QString tag(int node) const override { return nodes.at(std::size_t(node - 1)).tag; }
    QString text(int node) const override { return nodes.at(std::size_t(node - 1)).text; }
    void putExpanded(int node, bool expanded) override { at(node).expanded = expanded; }
    void putRemark(const QString& words) override { remark = words; }
    int selectedNode() const override { return selected; }

    QString remark;
    std::vector<Node> nodes;
    int selected = 0;

  private:
    Node& at(int node) { return nodes.at(std::size_t(node - 1)); }
};

/// Dialogs that answer what a test has laid ready.
class AnsweringDialogs : public Dialogs {
  public:
    bool askYesNo(const QString& question) override {
        asked << question;
        return yes;
    }
    QString browseForFolder(const QString& title) override {
        asked << title;
        return folder;
    }
    QString saveFileName(const QString& title, const QString& filter) override {
        asked << title + " " + filter;
        if (whileSaving) whileSaving();
        return saveName;
    }

    QStringList asked;
    bool yes = false;
    QString folder;
    QString saveName;
    std::function<void()> whileSaving;
};

}  // namespace cinedisc::test
