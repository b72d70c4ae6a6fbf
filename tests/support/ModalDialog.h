#pragma once

#include <QApplication>
#include <QObject>
#include <QTimer>

#include <functional>

namespace cinedisc::test {

/// Runs `drive` once with the next modal dialog of the type that opens while this object lives.
template <typename Dialog>
class ModalDialog {
  public:
    explicit ModalDialog(std::function<void(Dialog&)> drive) : drive_(std::move(drive)) {
        QObject::connect(&poll_, &QTimer::timeout, &poll_, [this] {
            auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
            if (!dialog) return;
            poll_.stop();
            drive_(*dialog);
        });
        poll_.start(0);
    }
    bool wasShown() const { return !poll_.isActive(); }

  private:
    std::function<void(Dialog&)> drive_;
    QTimer poll_;
};

}  // namespace cinedisc::test
