#include "tests/support/RecordingWindow.h"

#include <QFileInfo>
#include <QRegularExpression>

namespace cinedisc::test {

namespace {

std::array<ViewerControl*, Previews::count> makePreviews(
    std::array<std::unique_ptr<RecordingViewer>, Previews::count>& thumb, Journal& journal) {
    std::array<ViewerControl*, Previews::count> views{};
    for (std::size_t i = 0; i < thumb.size(); ++i) {
        thumb[i] = std::make_unique<RecordingViewer>(QString("thumb(%1)").arg(i), journal);
        views[i] = thumb[i].get();
    }
    return views;
}

}  // namespace

RecordingWindow::RecordingWindow()
    : controls{.ezDicom = ezDicom,
               .thumb = Previews(makePreviews(thumb, journal)),
               .File1 = File1,
               .sb1 = sb1,
               .Slider1 = Slider1,
               .Slider2 = Slider2,
               .Option4 = Option4,
               .Option11 = Option11,
               .Option9 = Option9,
               .Option10 = Option10,
               .lblImg = lblImg,
               .lblFra = lblFra,
               .Timer1 = Timer1,
               .Timer4 = Timer4,
               .messages = messages} {
    RecordingOption::pair(Option4, Option11);
    RecordingOption::pair(Option9, Option10);
    Option4.putValue(true);
    Option9.putValue(true);
    journal.clear();
}

QStringList RecordingWindow::stripNames() const {
    QStringList names;
    for (const auto& preview : thumb) names << QFileInfo(preview->FileName()).completeBaseName();
    return names;
}

QStringList RecordingWindow::putsWithoutFolders() const {
    static const QRegularExpression folder("=/.*/");
    QStringList puts = journal.entries();
    for (QString& put : puts) put.replace(folder, "=");
    return puts;
}

}  // namespace cinedisc::test
