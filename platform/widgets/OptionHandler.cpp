#include "platform/widgets/OptionHandler.h"

#include "platform/widgets/EventGuard.h"

#include <utility>

namespace cinedisc {

OptionHandler::OptionHandler(QRadioButton& option, std::function<void()> handler)
    : QObject(&option), handler_(std::move(handler)) {
    // A click is pressed, then toggled when the selection changes, then clicked.
    connect(&option, &QRadioButton::pressed, this, [this] { ranForThisPress_ = false; });
    connect(&option, &QRadioButton::toggled, this, [this](bool selected) {
        if (selected) run();
    });
    connect(&option, &QRadioButton::clicked, this, [this] {
        if (!ranForThisPress_) run();
        ranForThisPress_ = false;
    });
}

void OptionHandler::run() {
    ranForThisPress_ = true;
    EventGuard::run(handler_);
}

}  // namespace cinedisc
