#pragma once

#include "platform/Dialogs.h"
#include "platform/TimerControl.h"

namespace cinedisc {

class ezDICOMX;

/// Writes the run that the picture shows as a film to a file that the user names. Shows how far it is, and
/// can be cancelled. The cine waits meanwhile.
class FilmCommand {
  public:
    FilmCommand(ezDICOMX& picture, TimerControl& cineClock, Dialogs& dialogs)
        : ezDicom_(picture), Timer4_(cineClock), dialogs_(dialogs) {}

    void exportFilm() const;

  private:
    void write(const QString& path) const;

    ezDICOMX& ezDicom_;
    TimerControl& Timer4_;
    Dialogs& dialogs_;
};

}  // namespace cinedisc
