#include "control/ViewWords.h"

#include "control/HeaderWords.h"

#include <QCoreApplication>

#include <cmath>

namespace cinedisc::viewWords {

namespace {

QString say(const char* text) { return QCoreApplication::translate("View", text); }

QString reasonOf(dicom::DecodeError::Kind kind) {
    using Kind = dicom::DecodeError::Kind;
    switch (kind) {
        case Kind::CannotRead:
            return say("the file cannot be read");
        case Kind::NotDicom:
            return say("this is no DICOM file");
        case Kind::NoPicture:
            return say("this file holds no picture");
        case Kind::Unsupported:
            return say("the picture is stored in a way that this viewer cannot read");
        case Kind::CutOff:
            return say("the file is cut off");
        case Kind::TooLarge:
            return say("the picture is too large");
        case Kind::Broken:
            break;
    }
    return say("the file is damaged");
}

QString asSentence(QString text) {
    if (text.isEmpty()) return text;
    text[0] = text[0].toUpper();
    return text.endsWith('.') ? text : text + '.';
}

QString named(const QString& what, const QString& value) {
    return value.isEmpty() ? value : what + ' ' + value;
}

QString shortNumber(double value) {
    return std::abs(value) >= 100 ? QString::number(value, 'f', 0) : QString::number(value, 'g', 4);
}

}  // namespace

QString reading() { return say("reading …"); }

QString fileNotShown() { return say("This file cannot be shown"); }

QString frameNotShown(int frame) { return say("Frame %1 cannot be shown").arg(frame); }

QString reason(const dicom::DecodeError& fault) {
    const QString said = harmless(say(fault.message.c_str()));
    return asSentence(said.isEmpty() ? reasonOf(fault.kind) : said);
}

QString headerTooLarge() { return say("The header is too large to be shown."); }

QString wrongPatient() {
    return say("WRONG PATIENT: this picture is not from the folder of the patient whose name is shown");
}

QString cutOff(int frames, int announcedFrames) {
    if (frames <= 0 || frames >= announcedFrames) return {};
    return say("The file is cut off: %1 of %2 frames can be shown").arg(frames).arg(announcedFrames);
}

QString framePosition(int frame, int frames) { return say("Frame %1 / %2").arg(frame).arg(frames); }

QString window(double center, double width) {
    return say("C %1  W %2").arg(shortNumber(center), shortNumber(width));
}

QString zoom(double scale) { return say("Zoom %1 %").arg(std::lround(scale * 100)); }

QString inverted() { return say("Inverted"); }

QString coarse() { return say("Coarse, being refined"); }

QString lossy(const QStringList& ratios) { return (say("Lossy") + ' ' + ratios.join(", ")).trimmed(); }

QString patientId(const QString& id) { return named(say("ID"), id); }

QString born(const QString& date) { return named(say("Born"), date); }

QString series(const QString& number) { return named(say("Series"), number); }

QString run(const QString& number) { return named(say("Run"), number); }

QString image(const QString& number) { return named(say("Image"), number); }

QString frameRate(double framesPerSecond) {
    return say("%1 frames/s").arg(QString::number(framesPerSecond, 'g', 3));
}

QString mainViewName() { return say("Picture"); }

QString previewName() { return say("Preview"); }

QString headerPageName() { return say("Header of the file"); }

}  // namespace cinedisc::viewWords
