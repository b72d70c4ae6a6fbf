#pragma once

#include <QSplitter>

namespace cinedisc {

/// A splitter whose handle the keyboard reaches and moves by its arrow keys.
class KeySplitter final : public QSplitter {
    Q_OBJECT

  public:
    /// `handleName` is what assistive programs call a handle.
    KeySplitter(Qt::Orientation orientation, const QString& handleName, QWidget* parent = nullptr)
        : QSplitter(orientation, parent), handleName_(handleName) {}

  protected:
    QSplitterHandle* createHandle() override;

  private:
    const QString handleName_;
};

}  // namespace cinedisc
