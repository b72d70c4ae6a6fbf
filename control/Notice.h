#pragma once

#include "dicom/DecodeError.h"

#include <QPainter>
#include <QRectF>
#include <QString>

namespace cinedisc {

/// The words that stand in place of a picture that cannot be shown.
struct Notice {
    QString heading;  ///< "This file cannot be shown"
    QString reason;   ///< empty while the disc is being read

    /// The notice for a picture that the disc has not given yet.
    static Notice ofReading();
    bool isOfReading() const { return reason.isEmpty(); }
    static Notice of(const dicom::DecodeError& fault, int shownFrame, bool wholeFile);

    QString words() const;
    /// Centred and wrapped, as plain text; smaller in small views.
    void paint(QPainter& painter, const QRectF& area, const QColor& color) const;
};

}  // namespace cinedisc
