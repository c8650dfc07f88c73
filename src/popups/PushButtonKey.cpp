#include "popups/PushButtonKey.h"

#include <QEvent>

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

// A sheet without selectors, which is for what the selector names.
QString asRule(const QString& selector, const QString& sheet)
{
    return sheet.isEmpty() || sheet.contains(QLatin1Char('{'))
        ? sheet
        : selector + QStringLiteral(" {") + sheet + QStringLiteral("}\n");
}

} // namespace

PushButtonKey::PushButtonKey(const QString& text, QWidget* parent)
    : KeyButton(text, parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAutoDefault(false);
    setFocusPolicy(Qt::NoFocus); // so that the field keeps its cursor
    setSheet(isCommand() ? commandStyle() : normalStyle());
    connect(this, &QPushButton::pressed, this, [this] { setSheet(pressedStyle()); });
    connect(this, &QPushButton::released, this,
        [this] { setSheet(isCommand() ? commandStyle() : normalStyle()); });
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

bool PushButtonKey::event(QEvent* event)
{
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::Polish ||
        event->type() == QEvent::ParentChange) {
        m_faceSheet.clear();
    }
    return KeyButton::event(event);
}

// As the style puts them together: the nearer a sheet, the more it counts.
QString PushButtonKey::faceSheet() const
{
    if (m_faceSheet.isEmpty()) {
        const QString model = QStringLiteral("QPushButton");
        m_faceSheet = asRule(model, styleSheet());
        for (const QWidget* around = parentWidget(); around != nullptr;
             around = around->parentWidget()) {
            m_faceSheet.prepend(asRule(QStringLiteral("*"), around->styleSheet()));
        }
        m_faceSheet.replace(QLatin1String(staticMetaObject.className()), model);
    }
    return m_faceSheet;
}

void PushButtonKey::act()
{
    if (text() == QStringLiteral("CAPS")) {
        m_capsOn = !m_capsOn;
        emit capLocksChanged(m_capsOn);
    }
    emit keyPressed(text());
}
