#pragma once

#include <QList>
#include <QObject>
#include <QPropertyNotifier>

#include <functional>
#include <span>
#include <vector>

class QAction;
class QPushButton;
class QWidget;

namespace cinedisc {

class StateButton;
class ViewerPanels;

/// Shows on buttons, menu items and previews what is in force, whoever put it: how the run plays, mouse tool,
/// zoom, polarity, smoothing, header page, background, and which preview is the shown file's. What would do
/// nothing looks so.
class StateMarks final : public QObject {
    Q_OBJECT

  public:
    struct Window {
        QWidget& widget;
        const ViewerPanels& panels;
        std::function<bool()> isStills;
        /// Whether there are series and patients to step to.
        std::function<bool()> hasPlace;
    };
    explicit StateMarks(Window window);

  private:
    struct Mark {
        StateButton* button;
        QAction* item;
        std::function<bool()> isInForce;
    };
    void add(const char* button, const char* item, std::function<bool()> isInForce);
    void refresh();
    void markPreviews();

    /// Buttons and menu items that can be used in the same state.
    class Commands {
      public:
        Commands(const QWidget& window, std::span<const char* const> names);
        void setEnabled(bool on) const;

      private:
        QList<QPushButton*> buttons_;
        QList<QAction*> items_;
    };

    Window window_;
    std::vector<Mark> marks_;
    Commands needingFile_;   ///< do nothing without a file
    Commands needingPlace_;  ///< do nothing before a disc or folder is open
    QPropertyNotifier clockNotice_;
};

}  // namespace cinedisc
