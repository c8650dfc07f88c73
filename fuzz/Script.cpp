#include "Script.h"

#include "tools/screen/Screen.h"
#include "tools/try/Finger.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QScopedValueRollback>
#include <QThread>

#include <algorithm>
#include <utility>

namespace {

constexpr int Width = 800;
constexpr int Height = 480;
constexpr int MaxWaitMs = 60;

// Those of a window in reading order.
QList<QAbstractButton*> buttonsOf(const QWidget& window)
{
    QList<QAbstractButton*> list;
    const auto all = window.findChildren<QAbstractButton*>();
    for (QAbstractButton* button : all) {
        if (button->isVisible() && button->isEnabled()) {
            list += button;
        }
    }
    const auto place = [](const QAbstractButton* button) {
        const QPoint corner = button->mapToGlobal(QPoint());
        return std::make_pair(corner.y(), corner.x());
    };
    std::stable_sort(list.begin(), list.end(),
        [&place](const auto* a, const auto* b) { return place(a) < place(b); });
    return list;
}

// Those that a touch reaches, in the window on top first.
QList<QAbstractButton*> buttons()
{
    QList<QAbstractButton*> list;
    QWidgetList windows = visibleWindows();
    std::reverse(windows.begin(), windows.end());
    for (const QWidget* window : std::as_const(windows)) {
        if (!isBlocked(window)) {
            list += buttonsOf(*window);
        }
    }
    return list;
}

} // namespace

void Script::run(const QByteArray& input)
{
    m_input = input;
    m_at = 0;
    m_waitedMs = 0;
    m_finished = false;
    ++m_run;
    post();
    m_loop.exec();
}

int Script::next()
{
    return atEnd() ? 0 : static_cast<quint8>(m_input.at(m_at++));
}

void Script::post()
{
    QMetaObject::invokeMethod(
        this, [this, run = m_run] { turn(run); }, Qt::QueuedConnection);
}

void Script::turn(int run)
{
    if (m_finished || run != m_run) {
        return;
    }
    post();
    const int level = QThread::currentThread()->loopLevel();
    // A touch lets pending events be handled, this one included: that is no editor.
    if (level > m_busyLevel) {
        const QScopedValueRollback<int> busy(m_busyLevel, level);
        step();
    }
}

void Script::step()
{
    if (!atEnd()) {
        proceed();
        return;
    }
    finger::up(m_finger);
    if (!closeEditor() && finish()) {
        m_finished = true;
        m_loop.quit();
    }
}

bool Script::closeEditor()
{
    if (QWidget* list = QApplication::activePopupWidget()) {
        list->close();
        return true;
    }
    if (QWidget* editor = QApplication::activeModalWidget()) {
        auto* dialog = qobject_cast<QDialog*>(editor);
        dialog != nullptr ? dialog->reject() : static_cast<void>(editor->close());
        return true;
    }
    return QThread::currentThread()->loopLevel() > 1; // it is about to end
}

void Script::press(int number)
{
    const auto all = buttons();
    if (!all.isEmpty()) {
        const QAbstractButton* button = all.at(number % all.size());
        finger::tap(button->mapToGlobal(button->rect().center()));
    }
}

QPoint Script::point()
{
    const int x = next();
    return {x * Width / 256, next() * Height / 256};
}

void Script::operate()
{
    const char what = static_cast<char>(next());
    switch (what) {
    case 'B':
        press(next());
        break;
    case 'P':
        finger::tap(point());
        break;
    case 'D':
        finger::up(m_finger);
        m_finger = point();
        finger::down(m_finger);
        break;
    case 'M':
        m_finger = point();
        finger::move(m_finger);
        break;
    case 'U':
        finger::up(m_finger);
        break;
    case 'C':
        closeEditor();
        break;
    case 'W': {
        const int ms = qMin(next() % 32, MaxWaitMs - m_waitedMs);
        m_waitedMs += ms;
        QThread::msleep(static_cast<unsigned long>(ms));
        break;
    }
    default:
        proceedWith(what);
    }
}
