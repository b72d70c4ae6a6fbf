#pragma once

#include <QString>

namespace cinedisc::fidelity {

/// What a reader of the table should know about a sample file; "" for most.
QString remarkOn(const QString& fileName);

}  // namespace cinedisc::fidelity
