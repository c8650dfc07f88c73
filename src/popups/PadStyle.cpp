#include "popups/PadStyle.h"

namespace padStyle {

QString title()
{
    return QStringLiteral("QLabel{color:white; background:rgb(66,89,148); font-size: 18px;}");
}

QString entry()
{
    return QStringLiteral("background-color: white; font-size: 32px");
}

QString currentValue()
{
    return QStringLiteral("background-color: darkBlue; color:white; font-size: 18 px");
}

QString character()
{
    return QStringLiteral(
        "QPushButton {background-color: #919191;  font-size: 26px; } QPushButton:pressed {background-color: #4169e1; font-weight: 480}");
}

QString green()
{
    return QStringLiteral(
        "QPushButton {background-color:green; color:black; font-size: 26px; } QPushButton:pressed {background-color: #4169e1;} ");
}

QString seaGreen()
{
    return QStringLiteral(
        "QPushButton {background-color:#2e8b57; color:black; font-size: 26px; } QPushButton:pressed {background-color: #4169e1;} ");
}

QString lightSteelBlue()
{
    return QStringLiteral(
        "QPushButton {background-color:#b0c4de; color:black; font-size: 26px; } QPushButton:pressed {background-color: #4169e1;} ");
}

QString blue()
{
    return QStringLiteral(
        "QPushButton {background-color:blue; color:white; font-size: 26px; } QPushButton:pressed {background-color: #4169e1;} ");
}

} // namespace padStyle
