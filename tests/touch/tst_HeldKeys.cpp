#include "touch/HeldKeys.h"

#include "support/Screen.h"
#include "support/TestMain.h"

#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSlider>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

// A finger presses a widget of a window that is then told to release its keys.
class tst_HeldKeys : public QObject
{
    Q_OBJECT

    template <class Widget>
    Widget* add(Widget* widget)
    {
        widget->setMinimumSize(200, 60);
        m_window->layout()->addWidget(widget);
        return widget;
    }

    void show()
    {
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }

    QPoint centre(const QWidget* widget) const
    {
        return widget->mapTo(m_window.get(), widget->rect().center());
    }

    void press(QPoint at) { QTest::mousePress(m_window->windowHandle(), Qt::LeftButton, {}, at); }
    void move(QPoint at) { QTest::mouseMove(m_window->windowHandle(), at); }
    void release(QPoint at)
    {
        QTest::mouseRelease(m_window->windowHandle(), Qt::LeftButton, {}, at);
    }

    std::unique_ptr<QWidget> m_window;

private slots:
    void init()
    {
        m_window = std::make_unique<QWidget>();
        new QVBoxLayout(m_window.get());
    }
    void cleanup() { m_window.reset(); }

    void a_held_button_is_released_and_not_clicked()
    {
        auto* button = add(new QPushButton(u"Key"_s));
        show();
        QSignalSpy released(button, &QPushButton::released);
        QSignalSpy clicked(button, &QPushButton::clicked);
        press(centre(button));
        QVERIFY(button->isDown());
        touch::letGo(m_window.get());
        QVERIFY(!button->isDown());
        QCOMPARE(released.size(), 1);
        QVERIFY(clicked.isEmpty());
    }

    void a_finger_that_is_still_there_has_no_effect_until_it_touches_anew()
    {
        auto* button = add(new QPushButton(u"Key"_s));
        show();
        QSignalSpy clicked(button, &QPushButton::clicked);
        press(centre(button));
        touch::letGo(m_window.get());
        move(centre(button) + QPoint(3, 3));
        QVERIFY(!button->isDown());
        release(centre(button));
        QVERIFY(clicked.isEmpty());
        press(centre(button));
        release(centre(button));
        QCOMPARE(clicked.size(), 1);
    }

    void a_key_that_repeats_stops()
    {
        auto* button = add(new QPushButton(u"Step"_s));
        button->setAutoRepeat(true);
        button->setAutoRepeatDelay(20);
        button->setAutoRepeatInterval(20);
        show();
        QSignalSpy clicked(button, &QPushButton::clicked);
        press(centre(button));
        QTRY_VERIFY(clicked.size() >= 2);
        touch::letGo(m_window.get());
        const qsizetype before = clicked.size();
        QTest::qWait(200);
        QCOMPARE(clicked.size(), before);
    }

    void a_slider_no_longer_follows_the_finger()
    {
        auto* slider = add(new QSlider(Qt::Horizontal));
        slider->setRange(0, 1000);
        slider->setValue(500);
        show();
        press(centre(slider));
        move(centre(slider) + QPoint(30, 0));
        QVERIFY(slider->isSliderDown());
        touch::letGo(m_window.get());
        QVERIFY(!slider->isSliderDown());
        const int value = slider->value();
        move(centre(slider) + QPoint(80, 0));
        QCOMPARE(slider->value(), value);
    }

    void a_bar_that_pages_stops()
    {
        auto* bar = add(new QScrollBar(Qt::Vertical));
        bar->setMinimumHeight(300);
        bar->setRange(0, 100'000);
        show();
        press(centre(bar) + QPoint(0, 100));
        QTRY_VERIFY(bar->value() > 10);
        touch::letGo(m_window.get());
        const int value = bar->value();
        QTest::qWait(300);
        QCOMPARE(bar->value(), value);
    }

    void what_nobody_holds_stays_as_it_is()
    {
        auto* button = add(new QPushButton(u"Key"_s));
        auto* slider = add(new QSlider(Qt::Horizontal));
        slider->setValue(50);
        show();
        QSignalSpy released(button, &QPushButton::released);
        QSignalSpy moved(slider, &QSlider::valueChanged);
        touch::letGo(m_window.get());
        QVERIFY(released.isEmpty());
        QVERIFY(moved.isEmpty());
    }

    void a_receiver_may_delete_the_button()
    {
        auto* button = add(new QPushButton(u"Key"_s));
        auto* other = add(new QPushButton(u"Other"_s));
        other->setDown(true);
        show();
        connect(button, &QPushButton::released, this, [button] { delete button; });
        press(centre(button));
        touch::letGo(m_window.get());
        QVERIFY(!other->isDown());
    }
};

QN740_TEST_MAIN(tst_HeldKeys)
#include "tst_HeldKeys.moc"
