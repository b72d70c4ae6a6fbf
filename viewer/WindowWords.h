#pragma once

#include <QString>

/// What a window says to people besides the captions of its controls, all in one place. Every text goes
/// through the program's translation.
namespace cinedisc::windowWords {

/// Texts of the names and positions while there is nothing to tell.
QString anyPatient();
QString anySeries();
QString anyImage();
QString anyFrame();

/// The position in the strip, and that in a stills series.
QString imagePosition(int image, int images);
QString stillPosition(int image, int images);
QString framePosition(int frame);
/// What the speed bar stands at, for assistive programs.
QString framePeriod(int milliseconds);

/// Asked when there is no catalogue.
QString openFolderInstead();
QString folderDialogTitle();
QString saveDialogTitle();

QString writingFilm();
QString filmFailed();
QString cancel();

/// In place of the tree before a disc is open.
QString firstSteps();

/// What is wrong with a disc, above the tree.
QString noFirstImage();
QString catalogueUnreadable();
QString catalogueDamaged();
QString catalogueEmpty();

}  // namespace cinedisc::windowWords
