#include "tests/support/form/RecordingForm1.h"

#include "app/CommandTable.h"
#include "viewerwindow/ViewerCommands.h"

#include <QFileInfo>
#include <QRegularExpression>

namespace cinedisc::test {

namespace {

std::array<ViewerControl*, Previews::count> makePreviews(
    std::array<std::unique_ptr<RecordingViewer>, Previews::count>& thumb, QStringList& journal) {
    std::array<ViewerControl*, Previews::count> views{};
    for (std::size_t i = 0; i < thumb.size(); ++i) {
        thumb[i] = std::make_unique<RecordingViewer>(QString("thumb(%1)").arg(i), journal);
        views[i] = thumb[i].get();
    }
    return views;
}

}  // namespace

RecordingWindow::RecordingWindow()
    : controls{ezDicom, Previews(makePreviews(thumb, journal)),
               File1,   sb1,
               Slider1, Slider2,
               Option4, Option11,
               Option9, Option10,
               lblImg,  lblFra,
               Timer1,  Timer4,
               *this} {
    RecordingOption::pair(Option4, Option11);
    RecordingOption::pair(Option9, Option10);
    Option4.putValue(true);
    Option9.putValue(true);
    lblImg.putCaption("Image");
    lblFra.putCaption("Frame");
    journal.clear();
}

void RecordingWindow::connect(ViewerBehaviour& behaviour) {
    sb1.onChange = [&behaviour] { behaviour.sb1_Change(); };
    Slider1.onChange = [&behaviour] { behaviour.cine.Slider1_Change(); };
    Slider2.onChange = [&behaviour] { behaviour.frames.Slider2_Change(); };
    Option4.onSelected = [&behaviour] { behaviour.cine.Option4_Click(); };
    Option1.onSelected = [&behaviour] { behaviour.tools.Option1_Click(); };
    Option2.onSelected = [&behaviour] { behaviour.tools.Option2_Click(); };
    Option3.onSelected = [&behaviour] { behaviour.tools.Option3_Click(); };
}

QStringList RecordingWindow::puts() {
    static const QRegularExpression folder("=/.*/");
    QStringList puts = std::exchange(journal, {});
    return puts.replaceInStrings(folder, "=");
}

QString RecordingWindow::strip() const {
    QStringList names;
    for (const auto& preview : thumb) names << QFileInfo(preview->FileName()).completeBaseName();
    return names.join(' ');
}

void RecordingWindow::doEvents() {
    journal << "DoEvents";
    if (pending) pending();
}

RecordingForm1::RecordingForm1(const QString& folder) : programFolder(folder) {
    connect(behaviour);
    FraTree.putVisible(true);
    Frame9.putVisible(true);
    disc.showDesignNames();
    journal.clear();
}

bool RecordingForm1::warns() const {
    const QString shown = ezDicom.FileName();
    return !namedPatientFolder.isEmpty() && !shown.isEmpty() && !shown.startsWith(namedPatientFolder + '/');
}

QString RecordingForm1::images() const {
    return lblImg.Caption() + " | " + lblFra.Caption() + " | " + lblSeries.Caption();
}

QString RecordingForm1::below(const QString& path) const {
    return path.section('/', programFolder.count('/') + 2).remove(".dcm");
}

void RecordingForm1::press(const QString& command) {
    CommandHandlers handlers;
    handlers.add(discCommands(), behaviour);
    handlers.add<ViewerBehaviour>(viewerCommands(), behaviour);
    handlers(command)();
}

void RecordingForm1::openFolder(const QString& folder) {
    dialogs.folder = folder;
    press("mnuOpen");
}

void RecordingForm1::clickNode(int node) {
    TreeView1.selected = node;
    behaviour.patients.TreeView1_NodeClick(node);
}

void RecordingForm1::clickPatient(int number) {
    for (int node = 1; node <= TreeView1.nodeCount(); ++node) {
        if (!TreeView1.tag(node).isEmpty() && number-- == 0) return clickNode(node);
    }
}

}  // namespace cinedisc::test
