#pragma once

#include "catalogue/DiscControls.h"
#include "viewer/DiscPosition.h"
#include "viewer/FormControls.h"

#include <utility>

namespace cinedisc {

/// Takes the main window from one place on the disc to another. It alone writes the position and the
/// patient's name.
///
/// A place is left before the next is entered: names, folder, list, strip and main view never belong to two
/// patients, and a command that fails on its way leaves nothing of the former one within reach.
class PlaceMover {
  public:
    PlaceMover(FormControls& controls, DiscControls& disc) : form_(controls), disc_(disc) {}

    const DiscPosition& position() const { return position_; }

    /// The disc of which `firstPatient` is the first: no patient is open yet.
    void enterDisc(const Folder& firstPatient);
    /// A folder of images chosen by hand, which is nobody's.
    void enterFolder(const Folder& folder);
    enum class MainView { Unloaded, Kept };
    /// A patient's folder, which may be missing; File1 stands on it. Nobody's name is shown yet.
    void enterPatient(const Folder& patient, MainView mainView = MainView::Unloaded);
    /// Shows the catalogue's name of the patient whose folder lies at `path`.
    void showPatient(const QString& name, const QString& path);
    /// Puts all four names to their design texts: the catalogue does not know the open patient.
    void showNobody();
    /// Goes on with a folder above the listed files, whose sub-folders are series. What is shown stays.
    void moveAbove(const Folder& folder);

    /// Shows the panel for stills or for cine.
    void putStillsMode(bool stills);

    /// Opens what has been entered. When that fails, or ends with nothing to show, everything but the name is
    /// taken away again and File1 stands on the current folder; an error goes on to the caller.
    template <typename Handler>
    void open(Handler&& handler) {
        attempt(std::forward<Handler>(handler));
        if (form_.ezDicom.FileName().isEmpty()) withdraw(MainView::Unloaded);
    }

    /// Points File1 at another series of the patient. One that holds no file leaves nothing of the series
    /// before in the main view; one that cannot be listed leaves nothing at all.
    void listSeries(const QString& folder);

  private:
    template <typename Handler>
    void attempt(Handler&& handler) {
        try {
            std::forward<Handler>(handler)();
        } catch (...) {
            withdraw(MainView::Unloaded);
            throw;
        }
    }
    void leave(MainView mainView);
    void withdraw(MainView mainView);
    void standOn(const Folder& folder);
    void forgetImage();
    void tellNamedFolder(const QString& folder);

    FormControls& form_;
    DiscControls& disc_;
    DiscPosition position_;
};

}  // namespace cinedisc
