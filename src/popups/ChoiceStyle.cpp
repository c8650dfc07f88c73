#include "popups/ChoiceStyle.h"

namespace choiceStyle {

QString large()
{
    return QStringLiteral(
        "QPushButton {background-color: #919191; color:black; font-size: 28px;} QPushButton:pressed {background-color: #4169e1;}");
}

QString small()
{
    return QStringLiteral(
        "QPushButton {background-color: #919191; color:black; font-size: 18px;} QPushButton:pressed {background-color: #4169e1;}");
}

QString disabled()
{
    return QStringLiteral(
        "QPushButton {background-color: #2f4f4f; color:#808080; font-size: 28px;} QPushButton:pressed {background-color: #4169e1;}");
}

QString cancel()
{
    return QStringLiteral(
        "QPushButton {background-color:red; color:white; font-size: 26px; } QPushButton:pressed {background-color: #4169e1;}");
}

QString file()
{
    return QStringLiteral(
        "QPushButton {background-color: #919191; color:black;} QPushButton:pressed {background-color: #4169e1;}");
}

QString newFile()
{
    return QStringLiteral(
        "QPushButton {background-color:green; color:white;} QPushButton:pressed {background-color: #4169e1;}");
}

QString title()
{
    return QStringLiteral("QLabel{color:white; background:rgb(66,89,148); font-size: 18px;}");
}

QString listDialog()
{
    return QStringLiteral(
        "background-color:LightGray; border-width: 2px; border-style: solid; border-color: black; font-size: 16px; border-radius: 4px;");
}

QString fileDialog()
{
    return QStringLiteral(
        "background-color:darkgray; border-width: 2px; border-style: solid; border-color: black; font-size: 16px; border-radius: 4px;");
}

} // namespace choiceStyle
