#include "platform/widgets/IconPath.h"

#include <sstream>

namespace cinedisc {

QPainterPath iconPath(const char* drawing) {
    QPainterPath path;
    std::istringstream input(drawing);
    const auto number = [&] {
        qreal value = 0;
        input >> value;
        return value;
    };
    const auto point = [&] {
        const qreal x = number();
        return QPointF(x, number());
    };
    for (char command = 0; input >> command;) {
        if (command == 'M') path.moveTo(point());
        if (command == 'L') path.lineTo(point());
        if (command == 'Z') path.closeSubpath();
        if (command == 'C') {
            const QPointF first = point();
            const QPointF second = point();
            path.cubicTo(first, second, point());
        }
        if (command == 'O') {
            const QPointF center = point();
            const qreal radius = number();
            path.addEllipse(center, radius, radius);
        }
    }
    return path;
}

}  // namespace cinedisc
