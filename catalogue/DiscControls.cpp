#include "catalogue/DiscControls.h"

namespace cinedisc {

void DiscControls::showPatient(const QString& text) const {
    Label5.putCaption(text);
    Label13.putCaption(Label5.Caption());
}

void DiscControls::showSeries(const QString& text) const {
    Label6.putCaption(text);
    Label15.putCaption(Label6.Caption());
}

void DiscControls::resetNames() const {
    showPatient("Study Scroll Bar");
    showSeries("Series Scroll Bar");
}

}  // namespace cinedisc
