#include "touch/Sizes.h"

QString touch::scrollBarSheet()
{
    return QStringLiteral("QScrollBar:vertical {width: %1px}").arg(ScrollBarWidth);
}
