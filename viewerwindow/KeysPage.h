#pragma once

#include <QFrame>
#include <QLabel>

#include <utility>
#include <vector>

namespace cinedisc {

/// The keys of the picture, as a page over it. A child of the picture, hidden at first.
class KeysPage final : public QFrame {
    Q_OBJECT

  public:
    /// Pairs of a key and what it does.
    KeysPage(const std::vector<std::pair<QString, QString>>& keys, QWidget& picture);

  protected:
    void showEvent(QShowEvent* event) override;
    void mousePressEvent(QMouseEvent*) override { hide(); }
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void place();
};

}  // namespace cinedisc
