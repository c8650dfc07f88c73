#include "touch/KeyButton.h"

#include "touch/KeyFace.h"

#include <QEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyleOptionButton>

#include <optional>

namespace {

constexpr int NoIconSize = 16; // any

// Has styles leave a widget alone for a while. They do that with the windows of a desktop.
class UnstyledScope
{
public:
    explicit UnstyledScope(QWidget& widget)
        : m_widget(widget)
        , m_flags(widget.windowFlags())
        , m_wasStyled(widget.testAttribute(Qt::WA_StyleSheet))
    {
        widget.setAttribute(Qt::WA_StyleSheet, false);
        widget.overrideWindowFlags(Qt::Desktop);
    }
    ~UnstyledScope()
    {
        m_widget.overrideWindowFlags(m_flags);
        m_widget.setAttribute(Qt::WA_StyleSheet, m_wasStyled);
    }
    UnstyledScope(const UnstyledScope&) = delete;
    UnstyledScope& operator=(const UnstyledScope&) = delete;

private:
    QWidget& m_widget;
    Qt::WindowFlags m_flags;
    bool m_wasStyled;
};

} // namespace

KeyButton::KeyButton(const QString& text, QWidget* parent)
    : TextButton(text, parent)
{
    // A key has no icon. Whoever paints it asks for the size all the same, and the style would look
    // up all its rules to answer: two fifths of the painting after a new sheet.
    setIconSize({NoIconSize, NoIconSize});
    // The first of all slots: what clicked() opens must find a button that can be painted.
    connect(this, &QAbstractButton::released, this, [this] { setUpdatesEnabled(true); });
}

// Called between the release and released(), just before the button would be painted.
void KeyButton::nextCheckState()
{
    TextButton::nextCheckState();
    if (!signalsBlocked()) {
        setUpdatesEnabled(false);
    }
}

void KeyButton::setGround(const QColor& colour)
{
    m_ground = colour;
    takeLook();
}

void KeyButton::setSheet(const QString& sheet)
{
    if (styleSheet() == sheet) {
        return;
    }
    if (styleSheet().isEmpty() || sheet.isEmpty()) {
        setStyleSheet(sheet);
    } else {
        changeSheet(sheet);
    }
}

// By itself the style would polish the button once more, which takes 10 µs and changes nothing: for
// the style there is no sheet.
void KeyButton::changeSheet(const QString& sheet)
{
    {
        const QScopedValueRollback<bool> isChanging(m_isChangingSheet, true);
        const UnstyledScope unstyled(*this);
        setStyleSheet(sheet);
    }
    takeLook();
    update();
}

QString KeyButton::faceSheet() const
{
    return styleSheet();
}

QSize KeyButton::sizeHint() const
{
    if (styleSheet().isEmpty()) {
        return TextButton::sizeHint();
    }
    return boundedHint(KeyFace::of(faceSheet()).sizeHint(text()));
}

void KeyButton::setVisible(bool visible)
{
    const QWidget* page = parentWidget();
    const QScopedValueRollback<bool> forLater(
        m_isForLater, visible && page != nullptr && !page->isVisible());
    TextButton::setVisible(visible);
}

// QWidget has it done once: too early when "CK" makes a button visible whose page is hidden.
void KeyButton::polish()
{
    if (!m_isPolished) {
        m_isPolished = true;
        std::optional<UnstyledScope> unstyled;
        if (!styleSheet().isEmpty()) {
            unstyled.emplace(*this);
        }
        QEvent request(QEvent::Polish);
        TextButton::event(&request);
        unstyled.reset();
        takeLook();
    }
}

bool KeyButton::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::PolishRequest:
        // Every widget asks for this when it is made. Showing it does the same, and much later.
        return isVisible() ? TextButton::event(event) : true;
    case QEvent::Polish:
        if (!m_isForLater) {
            polish();
        }
        return true;
    case QEvent::Show:
        polish();
        return TextButton::event(event);
    case QEvent::EnabledChange:
        // Who is not seen has nothing to tell, and a page of them is changed in one message each.
        return isVisible() || isDown() ? TextButton::event(event) : true;
    case QEvent::StyleChange:
        if (m_isChangingSheet) {
            return true;
        }
        // Another sheet, or the style of another page. The page need not be laid out anew.
        takeLook();
        update();
        return true;
    case QEvent::ApplicationFontChange:
    case QEvent::ApplicationPaletteChange: {
        const bool isTaken = TextButton::event(event);
        KeyFace::forgetAll();
        takeLook();
        return isTaken;
    }
    default:
        return TextButton::event(event);
    }
}

// Takes over from the face what other widgets and the layout see of the button.
void KeyButton::takeLook()
{
    // A style that works on the button takes the attribute away.
    setAttribute(Qt::WA_OpaquePaintEvent, m_ground.isValid());
    if (!m_isPolished || styleSheet().isEmpty()) {
        return;
    }
    const KeyFace& face = KeyFace::of(faceSheet());
    if (font() != face.font()) {
        setFont(face.font());
    }
    if (m_frame != face.frame()) {
        m_frame = face.frame();
        updateGeometry();
    }
}

void KeyButton::paintEvent(QPaintEvent* event)
{
    if (styleSheet().isEmpty()) {
        if (m_ground.isValid()) {
            QPainter(this).fillRect(rect(), m_ground);
        }
        TextButton::paintEvent(event);
        return;
    }
    polish(); // for a picture of a page that was never shown
    const KeyFace& face = KeyFace::of(faceSheet());
    QStyleOptionButton option;
    initStyleOption(&option);
    QPainter painter(this);
    face.paintFace(painter, option, marks(), m_ground);
    if (isTextFitted()) {
        paintText(painter, face.textColour(isEnabled()));
    } else {
        face.paintText(painter, option);
    }
}
