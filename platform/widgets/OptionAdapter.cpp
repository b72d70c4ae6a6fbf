#include "platform/widgets/OptionAdapter.h"

namespace cinedisc {

void OptionAdapter::putValue(bool selected) {
    if (selected) {
        button_.setChecked(true);
        return;
    }
    // A member of an exclusive group refuses to be deselected.
    button_.setAutoExclusive(false);
    button_.setChecked(false);
    button_.setAutoExclusive(true);
}

}  // namespace cinedisc
