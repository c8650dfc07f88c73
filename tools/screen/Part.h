#pragma once

#include <QObject>
#include <QString>

/// \return the part of a window with this object name; it has to be there.
template <class Widget>
Widget* part(const QObject& window, const char* objectName)
{
    auto* found = window.findChild<Widget*>(QLatin1String(objectName));
    Q_ASSERT_X(found != nullptr, "part", objectName);
    return found;
}
