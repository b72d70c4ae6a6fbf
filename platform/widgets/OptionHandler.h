#pragma once

#include <QObject>
#include <QRadioButton>

#include <functional>

namespace cinedisc {

/// Runs an option's handler: once for every selection, whoever made it, and once more when a person clicks
/// the option that is selected already (so that the pop-up it stands in closes). Deselecting runs nothing.
///
/// Owned by the option. The handler runs under EventGuard.
class OptionHandler final : public QObject {
    Q_OBJECT

  public:
    OptionHandler(QRadioButton& option, std::function<void()> handler);

  private:
    void run();

    std::function<void()> handler_;
    bool ranForThisPress_ = false;
};

inline void connectOption(QRadioButton& option, std::function<void()> handler) {
    new OptionHandler(option, std::move(handler));
}

}  // namespace cinedisc
