#include "tools/DisplayTools.h"

#include <array>
#include <limits>

namespace cinedisc {

namespace {

constexpr int bestFit = 0;
constexpr std::array<qint32, 5> percentOfButton{bestFit, 100, 50, 150, 200};
constexpr std::array<qint32, 5> percentOfListEntry{bestFit, 50, 100, 150, 200};
constexpr qint32 black = 1;
constexpr qint32 white = 0;

}  // namespace

void DisplayTools::cmdFit_Click(Int16 index) {
    if (index < 0 || index >= int(percentOfButton.size())) throw RunTimeError::noArrayElement(index.value());
    if (index == 0) {
        form_.ezDicom.putBestFit(true);
    } else {
        zoomTo(percentOfButton[static_cast<std::size_t>(index.value())]);
    }
    form_.Frame5.putVisible(false);
}

void DisplayTools::zoomTo(qint32 percent) {
    form_.ezDicom.putBestFit(false);
    form_.ezDicom.putZoomPercent(percent);
}

void DisplayTools::cmdInvert_Click() {
    const qint32 polarity = form_.ezDicom.Polarity();
    if (polarity == std::numeric_limits<qint32>::min()) throw RunTimeError::overflow();
    form_.ezDicom.putPolarity(-polarity);
}

void DisplayTools::Option1_Click() {
    form_.ezDicom.putBackgroundFill(false);
    form_.Frame6.putVisible(false);
}

void DisplayTools::Option2_Click() { fillBackground(black); }

void DisplayTools::Option3_Click() { fillBackground(white); }

void DisplayTools::fillBackground(qint32 color) {
    form_.ezDicom.putBackgroundFill(true);
    form_.ezDicom.putBackgroundColor(color);
    form_.Frame6.putVisible(false);
}

void DisplayTools::mnuCopy_Click() {
    if (!form_.ezDicom.FileName().isEmpty()) form_.ezDicom.CopyToClipboard();
}

void DisplayTools::mnuCopyHeader_Click() {
    if (!form_.ezDicom.FileName().isEmpty()) form_.ezDicom.CopyHeaderToClipboard();
}

void DisplayTools::zoomFromList(Int16 listIndex) {
    if (listIndex == 0) {
        form_.ezDicom.putBestFit(true);
    } else if (listIndex > 0 && listIndex < int(percentOfListEntry.size())) {
        zoomTo(percentOfListEntry[static_cast<std::size_t>(listIndex.value())]);
    }
}

}  // namespace cinedisc
