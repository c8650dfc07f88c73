#include "touch/KeyStyle.h"

#include <QColor>
#include <QPainter>

namespace {

// As in the sheets of a disabled key.
constexpr QColor DisabledFace(0x2f, 0x4f, 0x4f);
constexpr QColor DisabledBorder(0xff, 0xfa, 0xcd);
constexpr double BorderWidth = 2.0;
constexpr double BorderRadius = 4.0;

} // namespace

namespace keyStyle {

QString enabled(bool largeFont)
{
    return largeFont
        ? QStringLiteral(
              "QPushButton {background-color:#919191; border-width: 2px; border-style: solid; border-color: yellow; font-size: 22px; border-radius: 4px; font-weight: 503} QPushButton:pressed {background-color: #4169e1;}")
        : QStringLiteral(
              "QPushButton {background-color: #919191; border-width: 2px; border-style: solid; border-color: yellow; font-size: 16px; border-radius: 4px; font-weight: 480} QPushButton:pressed {background-color: #4169e1;}");
}

QString toggled(bool largeFont)
{
    return largeFont
        ? QStringLiteral(
              "QPushButton {background-color: green; border-width: 2px; border-style: solid; border-color: yellow; font-size: 22px; border-radius: 4px; font-weight: 503;} QPushButton:pressed {background-color: #4169e1;}")
        : QStringLiteral(
              "QPushButton {background-color: green; border-width: 2px; border-style: solid; border-color: yellow; font-size: 16px; border-radius: 4px; font-weight: 480} QPushButton:pressed {background-color: #4169e1;}");
}

QString onFace()
{
    return QStringLiteral("#2e8b57");
}

QString on()
{
    return enabled(false).replace(QStringLiteral("#919191"), onFace());
}

QString disabled(bool largeFont)
{
    return largeFont
        ? QStringLiteral(
              "QPushButton {background-color: #2f4f4f; color:white; border-width: 2px; border-style: solid; border-color: #fffacd; font-size: 22px; border-radius: 4px; font-weight: 503;} QPushButton:pressed {background-color: #4169e1;}")
        : QStringLiteral(
              "QPushButton {background-color: #2f4f4f; color:white; border-width: 2px; border-style: solid; border-color: #fffacd; font-size: 16px; border-radius: 4px; font-weight: 480} QPushButton:pressed {background-color: #4169e1;}");
}

void paintDisabledFace(QPainter& painter, const QRect& button)
{
    const double half = BorderWidth / 2.0;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(DisabledBorder, BorderWidth));
    painter.setBrush(DisabledFace);
    painter.drawRoundedRect(QRectF(button).adjusted(half, half, -half, -half), BorderRadius - half,
        BorderRadius - half);
    painter.restore();
}

QString more()
{
    return QStringLiteral(
        "QPushButton {background-color: black; color: aliceblue; border-width: 1px; border-style: solid; border-color: white; font-size: 18px; border-radius: 2px; font-weight: 480} QPushButton:pressed {background-color: #4169e1;}");
}

} // namespace keyStyle
