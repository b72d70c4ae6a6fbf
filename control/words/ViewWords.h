#pragma once

#include "dicom/DecodeError.h"

#include <QString>
#include <QStringList>

/// What a view says to people, all in one place. Every text goes through the program's translation. Words of
/// a file must have been made harmless.
namespace cinedisc::viewWords {

/// In place of a picture: what cannot be shown, and why.
QString reading();
QString fileNotShown();
QString frameNotShown(int frame);
/// What is wrong with the file or the frame; one sentence with its stop.
QString reason(const dicom::DecodeError& fault);

QString headerTooLarge();
QString wrongPatient();
/// Of a run that ends before its header says; "" of any other.
QString cutOff(int frames, int announcedFrames);

/// In the corners of the main view.
QString framePosition(int frame, int frames);
QString window(double center, double width);
QString zoom(double scale);
QString inverted();
QString coarse();
QString lossy(const QStringList& ratios);
/// Of a file that a system would run.
QString alsoAProgram();
/// With a word before the value; "" without a value.
QString patientId(const QString& id);
QString born(const QString& date);
QString series(const QString& number);
QString run(const QString& number);
QString image(const QString& number);
QString frameRate(double framesPerSecond);
/// How many a file has.
QString frames(int count);

/// Names for assistive programs.
QString mainViewName();
QString previewName();
QString headerPageName();

}  // namespace cinedisc::viewWords
