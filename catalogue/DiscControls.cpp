#include "catalogue/DiscControls.h"

#include "viewer/WindowWords.h"

namespace cinedisc {

void DiscControls::showSeries(const QString& text) const {
    Label6.putCaption(text);
    Label15.putCaption(Label6.Caption());
}

void DiscControls::showDesignSeries() const { showSeries(windowWords::anySeries()); }

void DiscControls::showDesignNames() const {
    Label5.putCaption(windowWords::anyPatient());
    Label13.putCaption(Label5.Caption());
    showDesignSeries();
}

}  // namespace cinedisc
