#include "platform/widgets/QtMessageLoop.h"

#include <QCoreApplication>

namespace cinedisc {

void QtMessageLoop::doEvents() { QCoreApplication::processEvents(); }

}  // namespace cinedisc
