#pragma once

#include <QLabel>

namespace cinedisc {

/// The warning across the top of a view whose file is not of the patient whose name is shown. A child of the
/// view, above everything in it; the mouse goes through it, and copies and exports do not have it.
class WrongPatientBar final : public QLabel {
    Q_OBJECT

  public:
    explicit WrongPatientBar(QWidget& view);

    /// Shows or hides it for the file at `path` ("" when none is loaded) beside the name of the patient whose
    /// folder is given ("" when nobody's name is shown). Only the paths are compared.
    void judge(const QString& path, const QString& namedFolder);
    /// Takes the whole width of `area` at its top; returns how much of its height it covers, 0 while hidden.
    int layOut(const QRect& area);
};

}  // namespace cinedisc
