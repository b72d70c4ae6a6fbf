#include "catalogue/DiscControls.h"

namespace cinedisc {

void DiscControls::showSeries(const QString& text) const {
    Label6.putCaption(text);
    Label15.putCaption(Label6.Caption());
}

void DiscControls::showDesignSeries() const { showSeries("Series Scroll Bar"); }

void DiscControls::showDesignNames() const {
    Label5.putCaption("Study Scroll Bar");
    Label13.putCaption(Label5.Caption());
    showDesignSeries();
}

}  // namespace cinedisc
