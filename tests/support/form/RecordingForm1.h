#pragma once

#include "app/Form1Behaviour.h"
#include "tests/support/DiscBuilder.h"
#include "tests/support/RecordingWindow.h"

namespace cinedisc::test {

/// The main window's behaviour with every control a stand-in, wired as the window wires them.
class RecordingForm1 : public RecordingWindow,
                       private MouseWheelHook,
                       private ExportFormatDialog,
                       private NamedPatientView {
  public:
    explicit RecordingForm1(const QString& programFolder);

    RecordingTree TreeView1;
    RecordingPanel FraTree{"FraTree", journal, true};
    RecordingPanel Frame5{"Frame5", journal, false};
    RecordingPanel Frame6{"Frame6", journal, false};
    RecordingPanel Frame8{"Frame8", journal, false};
    RecordingPanel Frame9{"Frame9", journal, true};
    RecordingLabel Label1{"Label1", journal};
    RecordingLabel Label5{"Label5", journal};
    RecordingLabel Label13{"Label13", journal};
    RecordingLabel Label6{"Label6", journal};
    RecordingLabel Label15{"Label15", journal};
    RecordingLabel lblSeries{"lblSeries", journal};
    RecordingViewer ezTest{"ezTest", journal};
    RecordingOption Option1{"Option1", journal};
    RecordingOption Option2{"Option2", journal};
    RecordingOption Option3{"Option3", journal};
    AnsweringDialogs dialogs;
    DiscControls disc;
    QString exportFormat;
    QString namedPatientFolder;
    Form1Behaviour behaviour;

    /// Whether a view that is told so would warn that its picture is not the named patient's.
    bool warns() const {
        const QString shown = ezDicom.FileName();
        return !namedPatientFolder.isEmpty() && !shown.isEmpty() &&
               !shown.startsWith(namedPatientFolder + '/');
    }
    /// Selects a node of the tree as a click does and runs the click handler.
    void clickNode(int node);
    /// Clicks the patient of this number, counted from 0.
    void clickPatient(int number);

  private:
    void MouseHook() override { journal.call("MouseHook"); }
    void MouseUnhook() override { journal.call("MouseUnhook"); }
    QString chooseFormat() override { return exportFormat; }
    void putNamedPatientFolder(const QString& folder) override { namedPatientFolder = folder; }
};

}  // namespace cinedisc::test
