#pragma once

#include <QString>

namespace cinedisc {

/// Opens a text file in the desktop's viewer, maximised where that can be asked for, and does not wait for
/// it. Raises run-time error 53 when nothing can be started. Whether the file exists is the viewer's affair.
void openTextViewer(const QString& path);

}  // namespace cinedisc
