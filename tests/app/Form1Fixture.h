#pragma once

#include "app/Form1.h"
#include "control/frames/ImageLibrary.h"
#include "panels/Theme.h"
#include "tests/support/DiscBuilder.h"
#include "tests/support/SampleFile.h"
#include "tests/support/WindowTest.h"
#include "viewerwindow/StripWheel.h"

namespace cinedisc::test {

/// The real window on a disc of DICOM files.
class Form1Test : public WindowTest {
  protected:
    static void SetUpTestSuite() { applyTheme(*qApp); }
    Form1Test() {
        ImageLibrary::shared().lookAhead(std::chrono::minutes(1));
        StripWheel::setMainScrollBar(&form.sb1());
        show();
    }
    QWidget& window() override { return form; }
    /// Opens the disc and its first patient, whose first run stands still then.
    void openPatient() { walk({{"click Open; node 0; click cmdStop", ""}}); }

    DiscBuilder disc{{patientOf("Cine <b>A</b> & Co", {{30, 4, 5, 6, 7, 8, 9}, {3, 3}}),
                      patientOf("Stills", {{1, 1, 1}, {1}})},
                     sampleFile};
    Form1 form{disc.path()};
};

}  // namespace cinedisc::test
