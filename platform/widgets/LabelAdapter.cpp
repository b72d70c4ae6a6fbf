#include "platform/widgets/LabelAdapter.h"

namespace cinedisc {

LabelAdapter::LabelAdapter(QLabel& label) : label_(label) { label_.setTextFormat(Qt::PlainText); }

QString LabelAdapter::Caption() const { return label_.text(); }

void LabelAdapter::putCaption(const QString& text) { label_.setText(text); }

}  // namespace cinedisc
