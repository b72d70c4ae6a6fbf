#include "control/words/ViewWords.h"

#include "control/words/HeaderWords.h"

#include <QCoreApplication>

#include <cmath>

namespace cinedisc::viewWords {

namespace {

QString say(const char* text) { return QCoreApplication::translate("View", text); }

QString wordsForFrames(int complete, int announced) {
    return say("The file is cut off: %1 of %2 frames can be shown").arg(complete).arg(announced);
}

using Kind = dicom::DecodeError::Kind;
using Reason = dicom::DecodeError::Reason;

QString wordsFor(Kind kind) {
    switch (kind) {
        case Kind::CannotRead:
            return say("The file cannot be read");
        case Kind::NotDicom:
            return say("This is not a DICOM file");
        case Kind::NoPicture:
            return say("This file holds no picture");
        case Kind::Unsupported:
            return say("The picture is stored in a way this viewer cannot read");
        case Kind::CutOff:
            return say("The file is cut off");
        case Kind::TooLarge:
            return say("The picture is too large to be shown");
        case Kind::Broken:
            break;
    }
    return say("The file is damaged");
}

QString wordsForHeader(Kind kind) {
    if (kind == Kind::CutOff) return say("The file is cut off within its header");
    if (kind == Kind::TooLarge) return say("The file's header is too large");
    return say("The file's header is damaged");
}

QString wordsForPictureData(Kind kind, const QString& detail) {
    if (kind == Kind::CutOff)
        return say("The picture data are damaged: they are cut off before the picture's end");
    if (kind == Kind::Unsupported)
        return say("The picture is stored in a way this viewer cannot read (%1)").arg(detail);
    return say("The picture data are damaged (%1)").arg(detail);
}

QString wordsFor(const dicom::DecodeError& fault) {
    const QString detail = harmless(QString::fromStdString(fault.detail));
    switch (fault.reason) {
        case Reason::None:
            if (fault.kind == Kind::Broken && fault.frame >= 0) return say("This frame is damaged");
            return wordsFor(fault.kind);
        case Reason::Missing:
            return say("The file is missing");
        case Reason::NotRegular:
            return say("This is not a file that can be read");
        case Reason::StoppedReading:
            return say("The file cannot be read any further, the disc may be damaged");
        case Reason::Empty:
            return say("The file is empty");
        case Reason::MediaDirectory:
            return say("This file is the directory of a disc, it holds no picture");
        case Reason::IconOnly:
            return say("This file holds no picture, only an icon");
        case Reason::Compression:
            return say("The picture is compressed in a way this viewer cannot read (%1)").arg(detail);
        case Reason::Elsewhere:
            return say("The picture is not in this file but on a server that it refers to (JPIP)");
        case Reason::SamplesPerPixel:
            return say("This viewer cannot show pictures with %1 samples a pixel").arg(detail);
        case Reason::Undescribed:
            return say("The file does not say how its picture is to be read");
        case Reason::NoSuchFrame:
            return say("The file has no such frame");
        case Reason::WrongSize:
            return say("The picture does not have the size that its header says");
        case Reason::Header:
            return wordsForHeader(fault.kind);
        case Reason::Unpacking:
            if (fault.kind == Kind::TooLarge) return say("The file is too large to be unpacked");
            return say("The file is damaged: it cannot be unpacked");
        case Reason::PictureData:
            return wordsForPictureData(fault.kind, detail);
        case Reason::Frames:
            if (fault.announcedFrames <= 1) return say("The file is cut off: its picture is not complete");
            return wordsForFrames(fault.completeFrames, fault.announcedFrames);
        case Reason::Decoder:
            return say("The picture data are damaged: the decoder could not go on with them");
        case Reason::Memory:
            return say("It needs more memory than there is");
        case Reason::Unknown:
            break;
    }
    return say("The picture cannot be worked out");
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

QString reason(const dicom::DecodeError& fault) { return wordsFor(fault) + '.'; }

QString headerTooLarge() { return say("The header is too large to be shown."); }

QString wrongPatient() {
    return say("WRONG PATIENT: this picture is not from the folder of the patient whose name is shown");
}

QString cutOff(int frames, int announcedFrames) {
    if (frames <= 0 || frames >= announcedFrames) return {};
    return wordsForFrames(frames, announcedFrames);
}

QString framePosition(int frame, int frames) { return say("Frame %1 / %2").arg(frame).arg(frames); }

QString window(double center, double width) {
    return say("C %1  W %2").arg(shortNumber(center), shortNumber(width));
}

QString zoom(double scale) { return say("Zoom %1 %").arg(std::lround(scale * 100)); }

QString inverted() { return say("Inverted"); }

QString coarse() { return say("Coarse, being refined"); }

QString alsoAProgram() { return say("Warning: this file is a program as well. Do not start it"); }

QString lossy(const QStringList& ratios) { return (say("Lossy") + ' ' + ratios.join(", ")).trimmed(); }

QString patientId(const QString& id) { return named(say("ID"), id); }

QString born(const QString& date) { return named(say("Born"), date); }

QString series(const QString& number) { return named(say("Series"), number); }

QString run(const QString& number) { return named(say("Run"), number); }

QString image(const QString& number) { return named(say("Image"), number); }

QString frames(int count) { return count == 1 ? say("1 frame") : say("%1 frames").arg(count); }

QString frameRate(double framesPerSecond) {
    return say("%1 frames/s").arg(QString::number(framesPerSecond, 'g', 3));
}

QString mainViewName() { return say("Picture"); }

QString previewName() { return say("Preview"); }

QString headerPageName() { return say("Header of the file"); }

}  // namespace cinedisc::viewWords
