#include "popups/PushButtonKey.h"

namespace {

constexpr int Width = 50;
constexpr int Height = 62;

QString normalStyle()
{
    return QStringLiteral("color:white;border: 1px solid #000000;border-radius:6px;");
}

QString commandStyle()
{
    return QStringLiteral("background:lightgray;color:darkred;");
}

QString pressedStyle()
{
    return QStringLiteral(
        "background-color: qlineargradient(x1: 0, y1: 0, x2: 0, y2: 1,stop: 0 #8C8F8C, stop: 1 #000000);");
}

} // namespace

PushButtonKey::PushButtonKey(const QString& text, QWidget* parent)
    : QPushButton(text, parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAutoDefault(false);
    setFocusPolicy(Qt::NoFocus); // so that the field keeps its cursor
    setStyleSheet(isCommand() ? commandStyle() : normalStyle());
    connect(this, &QPushButton::pressed, this, [this] { setStyleSheet(pressedStyle()); });
    connect(this, &QPushButton::released, this,
        [this] { setStyleSheet(isCommand() ? commandStyle() : normalStyle()); });
    connect(this, &QPushButton::clicked, this, &PushButtonKey::act);
}

QSize PushButtonKey::sizeHint() const
{
    return {Width, Height};
}

QSize PushButtonKey::minimumSizeHint() const
{
    return {Width, Height};
}

void PushButtonKey::getCapLocksChanged(bool on)
{
    m_capsOn = on;
    if (!isCommand()) {
        setText(on ? text().toUpper() : text().toLower());
    }
}

void PushButtonKey::act()
{
    if (text() == QStringLiteral("CAPS")) {
        m_capsOn = !m_capsOn;
        emit capLocksChanged(m_capsOn);
    }
    emit keyPressed(text());
}
