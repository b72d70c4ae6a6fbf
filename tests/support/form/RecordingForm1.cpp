#include "tests/support/form/RecordingForm1.h"

namespace cinedisc::test {

RecordingForm1::RecordingForm1(const QString& programFolder)
    : disc{.programFolder = programFolder,
           .TreeView1 = TreeView1,
           .FraTree = FraTree,
           .Frame8 = Frame8,
           .Frame9 = Frame9,
           .Label1 = Label1,
           .Label5 = Label5,
           .Label13 = Label13,
           .Label6 = Label6,
           .Label15 = Label15,
           .lblSeries = lblSeries,
           .ezTest = ezTest,
           .namedPatientView = *this,
           .dialogs = dialogs},
      behaviour(controls, disc,
                {.ezDicom = ezDicom,
                 .Frame5 = Frame5,
                 .Frame6 = Frame6,
                 .Option1 = Option1,
                 .Option2 = Option2,
                 .Option3 = Option3},
                {*this, [this](const QString& format) { journal.put("ezDicom", "ExportFormat", format); }},
                *this) {
    sb1.changed = [this] { behaviour.sb1_Change(); };
    Slider1.changed = [this] { behaviour.cine.Slider1_Change(); };
    Slider2.changed = [this] { behaviour.frames.Slider2_Change(); };
    Option4.selectedHandler = [this] { behaviour.cine.Option4_Click(); };
    Option1.selectedHandler = [this] { behaviour.tools.Option1_Click(); };
    Option2.selectedHandler = [this] { behaviour.tools.Option2_Click(); };
    Option3.selectedHandler = [this] { behaviour.tools.Option3_Click(); };
    disc.showDesignNames();
    lblImg.putCaption("Image");
    lblFra.putCaption("Frame");
    journal.clear();
}

void RecordingForm1::clickNode(int node) {
    TreeView1.selected = node;
    behaviour.patients.TreeView1_NodeClick(node);
}

void RecordingForm1::clickPatient(int number) {
    for (int node = 1; node <= TreeView1.nodeCount(); ++node) {
        if (TreeView1.text(node).isEmpty() || TreeView1.tag(node).isEmpty()) continue;
        if (number-- == 0) return clickNode(node);
    }
}

}  // namespace cinedisc::test
