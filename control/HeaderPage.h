#pragma once

#include <QPlainTextEdit>

namespace cinedisc {

/// The header of the file as text over the picture: to be read, scrolled, selected and copied, never changed.
/// A child of the view.
class HeaderPage : public QPlainTextEdit {
    Q_OBJECT

  public:
    explicit HeaderPage(QWidget& view);

  protected:
    bool event(QEvent* event) override;
};

}  // namespace cinedisc
