#pragma once

#include "app/CommandTable.h"
#include "app/Form1Behaviour.h"
#include "tests/support/DiscBuilder.h"
#include "tests/support/form/StandIns.h"
#include "viewerwindow/ViewerCommands.h"

#include <QFileInfo>
#include <QRegularExpression>

#include <array>
#include <memory>

namespace cinedisc::test {

inline CommandHandlers handlersOf(Form1Behaviour& window) {
    CommandHandlers handlers;
    handlers.add(discCommands(), window);
    handlers.add<ViewerBehaviour>(viewerCommands(), window);
    return handlers;
}

/// What every viewer window is wired of, as stand-ins, with the ranges of a window that has just been opened.
class RecordingWindow : MessageLoop, public MouseWheelHook, ExportFormatDialog {
  public:
    RecordingWindow() {
        RecordingOption::pair(Option4, Option11);
        RecordingOption::pair(Option9, Option10);
        Option4.putValue(true);
        Option9.putValue(true);
        lblImg.putCaption("Image");
        lblFra.putCaption("Frame");
        journal.clear();
    }

    QStringList journal;
    RecordingViewer ezDicom{"ezDicom", journal};
    std::array<std::unique_ptr<RecordingViewer>, Previews::count> thumb;
    FileListBox File1;
    RecordingRange sb1{"sb1", journal, 1, 32767, RecordingRange::LoweringMax::RaisesChange};
    RecordingRange Slider1{"Slider1", journal, 0, 10, RecordingRange::LoweringMax::IsQuiet};
    RecordingRange Slider2{"Slider2", journal, 1, 10, RecordingRange::LoweringMax::IsQuiet};
    RecordingOption Option1{"Option1", journal}, Option2{"Option2", journal}, Option3{"Option3", journal};
    RecordingOption Option4{"Option4", journal}, Option11{"Option11", journal};
    RecordingOption Option9{"Option9", journal}, Option10{"Option10", journal};
    RecordingLabel lblImg{"lblImg", journal}, lblFra{"lblFra", journal};
    RecordingTimer Timer1{"Timer1", journal}, Timer4{"Timer4", journal};
    RecordingPanel Frame5{"Frame5", journal}, Frame6{"Frame6", journal};
    PreparedDialogs dialogs;
    QString formatToExport;
    /// Runs when a handler yields.
    std::function<void()> pending;
    FormControls controls{ezDicom, Previews(makePreviews()),
                          File1,   sb1,
                          Slider1, Slider2,
                          Option4, Option11,
                          Option9, Option10,
                          lblImg,  lblFra,
                          Timer1,  Timer4,
                          *this};
    DisplayTools::Controls tools{ezDicom, Frame5, Frame6, Option1, Option2, Option3};
    ExportCommand::Format exportFormat{*this,
                                       [this](const QString& format) { journal << "format=" + format; }};

    /// The puts since the last call, without the folder of the files.
    QStringList puts() {
        static const QRegularExpression folder(R"(=(/|[A-Z]:).*[/\\])");
        return std::exchange(journal, {}).replaceInStrings(folder, "=");
    }
    /// Names of the files in the previews, "" for an empty one.
    QString strip() const {
        QStringList names;
        for (const auto& preview : thumb) names << QFileInfo(preview->FileName()).completeBaseName();
        return names.join(' ');
    }

  protected:
    void connect(ViewerBehaviour& behaviour) {
        sb1.onChange = [&behaviour] { behaviour.sb1_Change(); };
        Slider1.onChange = [&behaviour] { behaviour.cine.Slider1_Change(); };
        Slider2.onChange = [&behaviour] { behaviour.frames.Slider2_Change(); };
        Option4.onSelected = [&behaviour] { behaviour.cine.Option4_Click(); };
        Option1.onSelected = [&behaviour] { behaviour.tools.Option1_Click(); };
        Option2.onSelected = [&behaviour] { behaviour.tools.Option2_Click(); };
        Option3.onSelected = [&behaviour] { behaviour.tools.Option3_Click(); };
    }

  private:
    std::array<ViewerControl*, Previews::count> makePreviews() {
        std::array<ViewerControl*, Previews::count> views{};
        for (std::size_t i = 0; i < thumb.size(); ++i) {
            thumb[i] = std::make_unique<RecordingViewer>(QString("thumb(%1)").arg(i), journal);
            views[i] = thumb[i].get();
        }
        return views;
    }
    void doEvents() override {
        journal << "DoEvents";
        if (pending) pending();
    }
    void MouseHook() override { journal << "MouseHook"; }
    void MouseUnhook() override { journal << "MouseUnhook"; }
    QString chooseFormat() override { return formatToExport; }
};

/// The main window's behaviour on a disc, with every control a stand-in, wired as the window wires them.
class RecordingForm1 : NamedPatientView, public RecordingWindow {
  public:
    explicit RecordingForm1(const QString& folder) : programFolder(folder) {
        connect(behaviour);
        FraTree.putVisible(true);
        Frame9.putVisible(true);
        disc.showDesignNames();
        journal.clear();
    }

    const QString programFolder;
    RecordingTree TreeView1;
    RecordingPanel FraTree{"FraTree", journal}, Frame8{"Frame8", journal}, Frame9{"Frame9", journal};
    RecordingLabel Label1{"Label1", journal}, Label5{"Label5", journal}, Label6{"Label6", journal};
    RecordingLabel Label13{"Label13", journal}, Label15{"Label15", journal}, lblSeries{"lblSeries", journal};
    RecordingViewer ezTest{"ezTest", journal};
    DiscControls disc{programFolder, TreeView1, FraTree, Frame8,    Frame9, Label1, Label5,
                      Label13,       Label6,    Label15, lblSeries, ezTest, *this,  dialogs};
    QString namedPatientFolder;
    Form1Behaviour behaviour{controls, disc, tools, exportFormat, *this};

    const DiscPosition& place() const { return behaviour.place.position(); }
    /// Whether a view that is told so would warn that its picture is not the named patient's.
    bool warns() const {
        const QString shown = ezDicom.FileName();
        return !namedPatientFolder.isEmpty() && !shown.isEmpty() &&
               !shown.startsWith(joinPath(namedPatientFolder, {}));
    }
    /// "Patient's name | series' name".
    QString names() const { return Label5.Caption() + " | " + Label6.Caption(); }
    /// What the three labels of positions show.
    QString images() const {
        return lblImg.Caption() + " | " + lblFra.Caption() + " | " + lblSeries.Caption();
    }
    /// A path on the disc below the patients' folder, "Patient000/Study1/Series1/1".
    QString below(const QString& path) const {
        return QDir(joinPath(programFolder, "Dicom")).relativeFilePath(path).remove(".dcm");
    }

    /// Runs the command of a button or menu item.
    void press(const QString& command) { handlersOf(behaviour)(command)(); }
    void openFolder(const QString& folder) {
        dialogs.folder = folder;
        press("mnuOpen");
    }
    /// Selects a node of the tree as a click does and runs the click handler.
    void clickNode(int node) {
        TreeView1.selected = node;
        behaviour.patients.TreeView1_NodeClick(node);
    }
    /// Clicks the patient of this number, counted from 0.
    void clickPatient(int number) {
        for (int node = 1; node <= TreeView1.nodeCount(); ++node)
            if (!TreeView1.tag(node).isEmpty() && number-- == 0) return clickNode(node);
    }

  private:
    void putNamedPatientFolder(const QString& folder) override { namedPatientFolder = folder; }
};

/// The same on a disc of its own, which is open.
struct DiscForm {
    explicit DiscForm(const QList<PatientPlan>& patients) : disc(patients), form(disc.path()) {
        form.press("Open");
        form.journal.clear();
    }
    QString folder(const QString& below) const { return folderPath(disc.path({"Dicom"}) + "/" + below); }

    DiscBuilder disc;
    RecordingForm1 form;
};

}  // namespace cinedisc::test
