#include "platform/widgets/DrawnFileIcons.h"

#include "platform/widgets/Icon.h"

#include <QFileInfo>

namespace cinedisc {

QIcon DrawnFileIcons::icon(IconType type) const {
    if (type == Folder || type == Desktop) return drawnIcon(Icon::Folder);
    return drawnIcon(type == File ? Icon::Document : Icon::Disc);
}

QIcon DrawnFileIcons::icon(const QFileInfo& file) const {
    if (file.isRoot()) return icon(Drive);
    return icon(file.isDir() ? Folder : File);
}

}  // namespace cinedisc
