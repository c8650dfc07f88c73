#include "touch/PopUpStyle.h"

namespace popUpStyle {

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

QString cancel()
{
    return QStringLiteral(
        "QPushButton {background-color:red; color:white; font-size: 26px; } QPushButton:pressed {background-color: #4169e1;}");
}

QString plainGreen()
{
    return QStringLiteral(
        "QPushButton {background-color:green; color:white;} QPushButton:pressed {background-color: #4169e1;}");
}

QString choice()
{
    return QStringLiteral(
        "QPushButton {background-color: #919191; color:black; font-size: 28px;} QPushButton:pressed {background-color: #4169e1;}");
}

QString longChoice()
{
    return QStringLiteral(
        "QPushButton {background-color: #919191; color:black; font-size: 18px;} QPushButton:pressed {background-color: #4169e1;}");
}

QString deadChoice()
{
    return QStringLiteral(
        "QPushButton {background-color: #2f4f4f; color:#808080; font-size: 28px;} QPushButton:pressed {background-color: #4169e1;}");
}

QString fileChoice()
{
    return QStringLiteral(
        "QPushButton {background-color: #919191; color:black;} QPushButton:pressed {background-color: #4169e1;}");
}

QString listWindow()
{
    return QStringLiteral(
        "background-color:LightGray; border-width: 2px; border-style: solid; border-color: black; font-size: 16px; border-radius: 4px;");
}

QString filesWindow()
{
    return QStringLiteral(
        "background-color:darkgray; border-width: 2px; border-style: solid; border-color: black; font-size: 16px; border-radius: 4px;");
}

} // namespace popUpStyle
