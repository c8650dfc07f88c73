#include "support/InProcessPanel.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QGridLayout>
#include <QMouseEvent>
#include <QStatusBar>
#include <QWindow>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

constexpr int PageCells = 6;
constexpr int PageKeys = PageCells * PageCells;
constexpr int MaxKeyHeight = 100;
constexpr int MaxWaitMs = 600'000; // callgrind is slow
constexpr int MaxChunk = 4000;     // bytes that a pseudo-terminal takes at once

void sendMouse(QWindow* window, QEvent::Type type, const QPoint& at, Qt::MouseButtons pressed)
{
    QMouseEvent event(type, at, window->mapToGlobal(at), Qt::LeftButton, pressed, Qt::NoModifier);
    QCoreApplication::sendEvent(window, &event);
}

} // namespace

namespace bench {

void fail(const char* what)
{
    std::fprintf(stderr, "%s\n", what);
    std::exit(1);
}

void settle()
{
    for (int i = 0; i < 3; ++i) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}

void click(QWidget* widget, const std::function<void()>& onRelease)
{
    QWidget* top = widget->window();
    const QPoint at = widget->mapTo(top, widget->rect().center());
    sendMouse(top->windowHandle(), QEvent::MouseButtonPress, at, Qt::LeftButton);
    if (onRelease) {
        onRelease();
    }
    sendMouse(top->windowHandle(), QEvent::MouseButtonRelease, at, Qt::NoButton);
}

QString keySheet()
{
    return u"QPushButton {background-color: #919191; border-width: 2px; border-style: solid; border-color: yellow; font-size: 16px; border-radius: 4px; font-weight: 480} QPushButton:pressed {background-color: #4169e1;}"_s;
}

QString toggledSheet()
{
    return u"QPushButton {background-color: green; border-width: 2px; border-style: solid; border-color: yellow; font-size: 16px; border-radius: 4px; font-weight: 480} QPushButton:pressed {background-color: #4169e1;}"_s;
}

InProcessPanel::InProcessPanel()
{
    window.resize(800, 480);
    window.show();
    settle();
    say({});
}

void InProcessPanel::say(const QByteArrayList& messages)
{
    QByteArray frames;
    for (const QByteArray& message : messages) {
        frames += framed(message);
    }
    send(frames);
}

// The answer to a "PING" behind the messages shows that all of them were handled.
void InProcessPanel::send(const QByteArray& frames)
{
    const QByteArray pong = framed("PONG");
    const QByteArray bytes = frames + framed("PING");
    unit.takeReceived();
    QElapsedTimer elapsed;
    elapsed.start();
    for (qsizetype at = 0; at < bytes.size(); at += MaxChunk) {
        if (!unit.write(bytes.mid(at, MaxChunk))) {
            fail("the panel does not read");
        }
        QCoreApplication::processEvents();
    }
    while (!unit.received().endsWith(pong)) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        if (elapsed.elapsed() > MaxWaitMs) {
            fail("the panel does not answer");
        }
    }
    settle();
}

QByteArray InProcessPanel::key(const QByteArray& menu, int number, int type,
    const QByteArray& units, const QByteArray& options, int param)
{
    const QByteArray n = QByteArray::number(number);
    return framed(QByteArrayList{"AK", menu, "key" + n, "Key " + n, QByteArray::number(type),
        "R1:K" + n + ":", units, QByteArray::number(param), options, "0", "0", "1"}
                      .join(','));
}

void InProcessPanel::define(const QByteArray& menu, int count, int type)
{
    QByteArray frames;
    for (int i = 0; i < count; ++i) {
        frames += key(menu, i, type);
    }
    send(frames);
}

QPushButton* InProcessPanel::button(const QString& text) const
{
    const auto buttons = window.findChildren<QPushButton*>();
    for (QPushButton* button : buttons) {
        if (button->isVisible() && button->text() == text) {
            return button;
        }
    }
    return nullptr;
}

BareWindow::BareWindow()
    : stack(new QStackedWidget)
{
    window.setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    window.setFixedSize(800, 480);
    window.setCentralWidget(stack);
    window.statusBar()->showMessage(u"A bare window"_s);
    stack->addWidget(new QWidget);
    window.show();
    settle();
}

void BareWindow::addButtons(int count, const QString& sheet, SheetComes sheetComes)
{
    const bool isFirst = sheetComes == SheetComes::First;
    QGridLayout* grid = nullptr;
    for (int i = 0; i < count; ++i) {
        const int cell = i % PageKeys;
        if (cell == 0) {
            auto* page = new QWidget;
            grid = new QGridLayout(page);
            stack->addWidget(page);
        }
        auto* button = new QPushButton(u"Key %1"_s.arg(i));
        if (isFirst && !sheet.isEmpty()) {
            button->setStyleSheet(sheet);
        }
        button->setMaximumHeight(MaxKeyHeight);
        grid->addWidget(button, cell / PageCells, cell % PageCells);
        if (!isFirst && !sheet.isEmpty()) {
            button->setStyleSheet(sheet);
        }
    }
}

void BareWindow::clear()
{
    stack->setCurrentIndex(0);
    while (stack->count() > 1) {
        delete stack->widget(1);
    }
    settle();
}

PaintWatch::PaintWatch()
{
    qApp->installEventFilter(this);
}

PaintWatch::~PaintWatch()
{
    qApp->removeEventFilter(this);
}

bool PaintWatch::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::Paint && object->isWidgetType()) {
        auto* widget = static_cast<QWidget*>(object);
        if (only == nullptr || widget->window() == only) {
            ++widgets;
        }
    } else if (event->type() == QEvent::UpdateRequest && object->isWidgetType()) {
        windows += only == nullptr || object == only ? 1 : 0;
    }
    return false;
}

void settlePainted(PaintWatch& watch, int windowsBefore)
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (watch.windows == windowsBefore) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        if (elapsed.elapsed() > MaxWaitMs) {
            fail("nothing is painted");
        }
    }
    QCoreApplication::processEvents();
}

} // namespace bench
