#pragma once

#include "tests/support/RecordingControls.h"
#include "tests/support/RecordingViewer.h"
#include "viewer/FormControls.h"

#include <array>
#include <memory>

namespace cinedisc::test {

/// The controls that every viewer window has, as stand-ins, with the ranges of a window that has just been
/// opened.
class RecordingWindow {
  public:
    RecordingWindow();

    Journal journal;
    RecordingViewer ezDicom{"ezDicom", journal};
    std::array<std::unique_ptr<RecordingViewer>, Previews::count> thumb;
    FileListBox File1;
    RecordingRange sb1{"sb1", journal, 1, 32767, RecordingRange::LoweringMax::RaisesChange};
    RecordingRange Slider1{"Slider1", journal, 0, 10, RecordingRange::LoweringMax::IsQuiet};
    RecordingRange Slider2{"Slider2", journal, 1, 10, RecordingRange::LoweringMax::IsQuiet};
    RecordingOption Option4{"Option4", journal};
    RecordingOption Option11{"Option11", journal};
    RecordingOption Option9{"Option9", journal};
    RecordingOption Option10{"Option10", journal};
    RecordingLabel lblImg{"lblImg", journal};
    RecordingLabel lblFra{"lblFra", journal};
    RecordingTimer Timer1{"Timer1", journal};
    RecordingTimer Timer4{"Timer4", journal};
    RecordingMessageLoop messages{journal};
    FormControls controls;

    /// Names of the files in the previews, "" for an empty one.
    QStringList stripNames() const;
    /// The entry of the journal's puts, without the folder of the files.
    QStringList putsWithoutFolders() const;
};

}  // namespace cinedisc::test
