#pragma once

#include "tools/ExportFormatDialog.h"

#include <QDialog>
#include <QPointer>

class QRadioButton;

namespace cinedisc {

/// Asks for the format of an export. The format word is the caption of the chosen option.
class frmdicom : public QDialog {
    Q_OBJECT

  public:
    explicit frmdicom(QWidget* owner);
    /// "JPEG", "BMP", or "" when cancelled or nothing was chosen.
    QString ExportFormat() const { return ExportFormat_; }

  private:
    void CmdOk_Click();
    void CmdCancel_Click();

    QRadioButton* OptJPEG_;
    QRadioButton* optBMP_;
    QString ExportFormat_;
};

/// Shows frmdicom modally over a window, for as long as the format is being chosen.
class frmdicomChooser : public ExportFormatDialog {
  public:
    explicit frmdicomChooser(QWidget* owner) : owner_(owner) {}
    QString chooseFormat() override;

  private:
    QPointer<QWidget> owner_;
};

}  // namespace cinedisc
