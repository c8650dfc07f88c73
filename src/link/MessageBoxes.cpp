#include "link/MessageBoxes.h"

#include "link/BoxMarkup.h"
#include "touch/MessageBox.h"
#include "wire/Commands.h"
#include "wire/Log.h"

#include <QApplication>
#include <QEvent>
#include <QPushButton>
#include <QWindow>

#include <algorithm>

namespace {

constexpr int MinContentWidth = 600; // of a box with a button
constexpr QSize MinOk(0, 48);        // its large letters make it wide

// Makes the box one of the windows of an editor; nullptr: of none. A modal editor blocks all other
// windows, but not its own.
void makeWindowOf(const QMessageBox& box, const QWidget* editor)
{
    if (QWindow* window = box.windowHandle()) {
        window->setTransientParent(editor != nullptr ? editor->window()->windowHandle() : nullptr);
    }
}

// A text whose tags could do harm is shown with them, letter for letter.
void setTextOf(MessageBox& box, const QString& text)
{
    const QString letters = QStringLiteral("<font size = 6>%1</font>");
    if (boxMarkup::isHarmless(text)) {
        box.setText(letters.arg(text));
    } else {
        box.setTextShownAs(letters.arg(text), letters.arg(text.toHtmlEscaped()));
    }
}

} // namespace

MessageBoxes::MessageBoxes(QObject* parent)
    : QObject(parent)
    , m_lost(&logLink,
          QStringLiteral("%1: %2 boxes are waiting, further ones are lost")
              .arg(wire::word::DB)
              .arg(MaxWaiting))
    , m_tooLong(&logLink,
          QStringLiteral("the text of a message box is cut off after %1 characters")
              .arg(linkLimits::MaxBoxCharacters))
{
}

MessageBoxes::~MessageBoxes()
{
    for (const QPointer<QObject>& box : std::as_const(m_boxes)) {
        if (box != nullptr) {
            box->disconnect(this);
            delete box;
        }
    }
}

QMessageBox* MessageBoxes::open(const QString& text, bool okButton, const QRect& area)
{
    const Order order{cut(text).toUtf8(), okButton, area};
    m_boxes.removeAll(nullptr);
    if (m_boxes.size() < MaxOpen) {
        return show(order);
    }
    addToWaiting(order);
    return nullptr;
}

QString MessageBoxes::cut(const QString& text)
{
    if (text.size() <= linkLimits::MaxBoxCharacters) {
        return text;
    }
    m_tooLong.add();
    return text.left(linkLimits::MaxBoxCharacters) + QChar(0x2026);
}

void MessageBoxes::addToWaiting(const Order& order)
{
    if (m_waiting.size() < MaxWaiting) {
        m_waiting.enqueue(order);
    } else {
        m_lost.add();
    }
}

QMessageBox* MessageBoxes::show(const Order& order)
{
    auto* box = new MessageBox;
    box->setObjectName(QStringLiteral("messageBox"));
    box->setNonBlocking(QStringLiteral("border-width: 2px;"));
    setTextOf(*box, QString::fromUtf8(order.text));
    box->setIcon(QMessageBox::Information);
    if (order.okButton) {
        box->addOk(MinOk)->setStyleSheet(QStringLiteral("font: 28px"));
        box->setMinContentWidth(MinContentWidth);
    }
    box->setArea(order.area);
    m_boxes += QPointer<QObject>(box);
    connect(box, &QDialog::finished, this, [this, box] {
        m_boxes.removeAll(QPointer<QObject>(box));
        showWaiting();
    });
    watchWindows();
    box->winId(); // creates the native window
    makeWindowOf(*box, QApplication::activeModalWidget());
    box->show();
    return box;
}

void MessageBoxes::showWaiting()
{
    m_boxes.removeAll(nullptr);
    while (!m_waiting.isEmpty() && m_boxes.size() < MaxOpen) {
        show(m_waiting.dequeue());
    }
    watchWindows();
}

void MessageBoxes::closeAll()
{
    m_waiting.clear();
    const auto boxes = m_boxes;
    for (const QPointer<QObject>& object : boxes) {
        if (auto* box = qobject_cast<QMessageBox*>(object.data())) {
            box->accept();
        }
    }
}

void MessageBoxes::watchWindows()
{
    const bool wanted = !m_boxes.isEmpty();
    if (wanted == m_watching) {
        return;
    }
    m_watching = wanted;
    if (wanted) {
        qApp->installEventFilter(this);
    } else {
        qApp->removeEventFilter(this);
    }
}

bool MessageBoxes::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::MouseButtonPress && watched->isWidgetType()) {
        stepAside(static_cast<QWidget*>(watched)->window());
        return false;
    }
    const bool isChange = event->type() == QEvent::Show || event->type() == QEvent::Hide;
    if (!isChange || !watched->isWidgetType()) {
        return false;
    }
    const auto* widget = static_cast<QWidget*>(watched);
    const bool isOther = widget->isWindow() && widget->windowType() != Qt::Popup &&
        std::none_of(m_boxes.cbegin(), m_boxes.cend(),
            [watched](const QPointer<QObject>& box) { return box.data() == watched; });
    if (!isOther) {
        return false;
    }
    // A window gets these events before it comes up, and after it has gone.
    if (event->type() == QEvent::Hide) {
        m_aside.clear();
        lift();
    } else if (!m_liftQueued) {
        m_liftQueued = true;
        QMetaObject::invokeMethod(
            this,
            [this] {
                m_liftQueued = false;
                lift();
            },
            Qt::QueuedConnection);
    }
    return false;
}

// Only "KILLBOX" closes a box without a button, and an editor that the unit has opened holds that
// message up until the operator closes the editor. So such a box must not keep a finger from it.
void MessageBoxes::stepAside(QWidget* window)
{
    auto* box = qobject_cast<QMessageBox*>(window);
    QWidget* editor = QApplication::activeModalWidget();
    if (box == nullptr || editor == nullptr || !m_boxes.contains(QPointer<QObject>(box)) ||
        !box->buttons().isEmpty()) {
        return;
    }
    m_aside += QPointer<QObject>(box);
    makeWindowOf(*box, nullptr);
    editor->window()->raise();
    lift();
}

// Puts the boxes over all other windows, but for those that have stepped aside.
void MessageBoxes::lift()
{
    const QWidget* editor = QApplication::activeModalWidget();
    for (const QPointer<QObject>& object : std::as_const(m_boxes)) {
        auto* box = qobject_cast<QMessageBox*>(object.data());
        if (box != nullptr && box->isVisible() && !m_aside.contains(object)) {
            makeWindowOf(*box, editor);
            box->raise();
        }
    }
}
