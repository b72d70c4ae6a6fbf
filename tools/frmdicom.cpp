#include "tools/frmdicom.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace cinedisc {

namespace {

// The title is to be read beside the buttons of its bar.
constexpr int widthInLetters = 36;

}  // namespace

frmdicom::frmdicom(QWidget* owner) : QDialog(owner) {
    setObjectName("frmdicom");
    setWindowTitle(tr(" Export"));
    auto* choices = new QGroupBox(tr("CHOOSE FORMAT"), this);
    OptJPEG_ = new QRadioButton("JPEG", choices);
    OptJPEG_->setObjectName("OptJPEG");
    optBMP_ = new QRadioButton("BMP", choices);
    optBMP_->setObjectName("optBMP");
    auto* choiceRows = new QVBoxLayout(choices);
    choiceRows->addWidget(OptJPEG_);
    choiceRows->addWidget(optBMP_);

    auto* ok = new QPushButton(tr("OK"), this);
    ok->setObjectName("CmdOk");
    ok->setDefault(true);
    auto* cancel = new QPushButton(tr("Cancel"), this);
    cancel->setObjectName("CmdCancel");
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);

    auto* rows = new QVBoxLayout(this);
    rows->addWidget(choices);
    rows->addLayout(buttons);
    rows->setSizeConstraint(QLayout::SetFixedSize);
    choices->setMinimumWidth(fontMetrics().averageCharWidth() * widthInLetters);

    connect(ok, &QPushButton::clicked, this, &frmdicom::CmdOk_Click);
    connect(cancel, &QPushButton::clicked, this, &frmdicom::CmdCancel_Click);
}

void frmdicom::CmdOk_Click() {
    if (OptJPEG_->isChecked()) {
        ExportFormat_ = OptJPEG_->text();
    } else if (optBMP_->isChecked()) {
        ExportFormat_ = optBMP_->text();
    }
    accept();
}

void frmdicom::CmdCancel_Click() {
    ExportFormat_.clear();
    reject();
}

QString frmdicomChooser::chooseFormat() {
    frmdicom dialog(owner_);
    dialog.exec();
    return dialog.ExportFormat();
}

}  // namespace cinedisc
