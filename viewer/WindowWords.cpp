#include "viewer/WindowWords.h"

#include <QCoreApplication>

namespace cinedisc::windowWords {

namespace {

QString say(const char* text) { return QCoreApplication::translate("Window", text); }

}  // namespace

QString anyPatient() { return say("Study Scroll Bar"); }

QString anySeries() { return say("Series Scroll Bar"); }

QString anyImage() { return say("Image"); }

QString anyFrame() { return say("Frame"); }

QString imagePosition(int image, int images) { return say("Image : %1/%2").arg(image).arg(images); }

QString stillPosition(int image, int images) { return say("Image :%1/%2").arg(image).arg(images); }

QString framePosition(int frame) { return say("Frame :%1").arg(frame); }

QString framePeriod(int milliseconds) { return say("%1 ms a frame").arg(milliseconds); }

QString openFolderInstead() {
    return say("Patient Lists Not Available On CD,Do You Want to Select Images From CD");
}

QString folderDialogTitle() { return say("Dicom"); }

QString saveDialogTitle() { return say("Save as"); }

QString writingFilm() { return say("Writing the film"); }

QString filmFailed() { return say("The film could not be written."); }

QString cancel() { return say("Cancel"); }

QString firstSteps() {
    return say(
        "Press the first button above to see the patients of this disc, then click one.\n\n"
        "A folder of images can be opened with File\u00a0>\u00a0Open.");
}

QString noFirstImage() {
    return say(
        "The first series of the first patient holds no images, so the patient list is not shown. A folder "
        "of "
        "images can be opened with File > Open.");
}

QString catalogueUnreadable() {
    return say(
        "The patient list of this disc (CD.xml) cannot be read. A folder of images can be opened with File > "
        "Open.");
}

QString catalogueDamaged() {
    return say(
        "The patient list of this disc (CD.xml) is damaged. The patients after the last one below are "
        "missing.");
}

QString catalogueEmpty() { return say("The patient list of this disc (CD.xml) names no patient."); }

}  // namespace cinedisc::windowWords
