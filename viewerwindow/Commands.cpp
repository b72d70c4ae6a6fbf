#include "viewerwindow/Commands.h"

#include <stdexcept>

namespace cinedisc {

const std::function<void()>& CommandHandlers::operator()(const QString& name) const {
    const auto found = handlers_.find(name);
    if (found == handlers_.end()) throw std::logic_error("no command " + name.toStdString());
    return found->second;
}

}  // namespace cinedisc
