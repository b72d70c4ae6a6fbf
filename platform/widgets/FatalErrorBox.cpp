#include "platform/widgets/FatalErrorBox.h"

#include "platform/widgets/EndProgram.h"
#include "platform/widgets/ProgramTitle.h"

#include <QApplication>
#include <QMessageBox>

namespace cinedisc {

void tellErrorAndEnd(const RunTimeError& error) {
    QMessageBox box(QMessageBox::Critical, programTitle,
                    QApplication::translate("FatalErrorBox", "Run-time error '%1':\n\n%2")
                        .arg(error.number())
                        .arg(error.text()),
                    QMessageBox::Ok, QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    box.exec();
    endProcess(ExitStatus::Failure);
}

}  // namespace cinedisc
