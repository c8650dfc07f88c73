#include "popups/TouchSlider.h"

#include "support/Screen.h"
#include "support/TestMain.h"

#include <QSignalSpy>

#include <limits>

using namespace Qt::StringLiterals;

class tst_TouchSlider : public QObject
{
    Q_OBJECT

    static constexpr int Width = 600;

    void press(QPoint at) { QTest::mousePress(m_slider->windowHandle(), Qt::LeftButton, {}, at); }
    void move(QPoint at) { QTest::mouseMove(m_slider->windowHandle(), at); }
    void release(QPoint at)
    {
        QTest::mouseRelease(m_slider->windowHandle(), Qt::LeftButton, {}, at);
    }
    void tap(QPoint at)
    {
        press(at);
        release(at);
    }

    std::unique_ptr<TouchSlider> m_slider;

private slots:
    void init()
    {
        m_slider = std::make_unique<TouchSlider>();
        m_slider->setRange(0, 1000);
        m_slider->setFixedSize(Width, 100);
        m_slider->setStyleSheet(
            u"QSlider::groove:horizontal { border: 10px solid #00008B; height: 8px; "_s
            u"background: #4682b4; margin: 2px 0;} QSlider::handle:horizontal { background: "_s
            u"#919191; border: 6px black; width: 50px; margin: -24px 0; border-radius: 25px;}"_s);
        m_slider->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_slider.get()));
    }
    void cleanup() { m_slider.reset(); }

    void only_a_finger_moves_the_handle()
    {
        const QPoint beside(Width - 60, 50);
        QTest::mousePress(m_slider->windowHandle(), Qt::RightButton, {}, beside);
        QCOMPARE(m_slider->value(), 0);
        QTest::mouseRelease(m_slider->windowHandle(), Qt::RightButton, {}, beside);
        move({Width / 2, 50});
        move(beside);
        QVERIFY(!m_slider->isSliderDown());
        QCOMPARE(m_slider->value(), 0);
        tap(beside);
        QVERIFY(m_slider->value() > 0);
    }

    void a_tap_beside_the_handle_brings_the_handle_there_data()
    {
        QTest::addColumn<int>("minimum");
        QTest::addColumn<int>("maximum");
        QTest::addColumn<int>("y");
        QTest::newRow("small range") << 0 << 100 << 50;
        QTest::newRow("at the top") << 0 << 100 << 1;
        QTest::newRow("at the bottom") << 0 << 100 << 98;
        QTest::newRow("negative") << -500 << 500 << 50;
        QTest::newRow("above a thousand million") << 0 << 2'000'000'000 << 50;
        QTest::newRow("all of an int")
            << std::numeric_limits<int>::min() << std::numeric_limits<int>::max() << 50;
    }
    void a_tap_beside_the_handle_brings_the_handle_there()
    {
        QFETCH(int, minimum);
        QFETCH(int, maximum);
        QFETCH(int, y);
        m_slider->setRange(minimum, maximum);
        for (const int x : {45, 100, 200, 300, 444, 555}) {
            m_slider->setValue(x < Width / 2 ? maximum : minimum);
            tap({x, y});
            QVERIFY2(qAbs(m_slider->handle().center().x() - x) <= 3,
                qPrintable(u"%1: %2"_s.arg(x).arg(m_slider->handle().center().x())));
        }
    }

    void a_tap_at_an_end_gives_the_end_data()
    {
        QTest::addColumn<int>("minimum");
        QTest::addColumn<int>("maximum");
        QTest::newRow("small") << -3 << 7;
        QTest::newRow("all of an int")
            << std::numeric_limits<int>::min() << std::numeric_limits<int>::max();
    }
    void a_tap_at_an_end_gives_the_end()
    {
        QFETCH(int, minimum);
        QFETCH(int, maximum);
        m_slider->setRange(minimum, maximum);
        m_slider->setValue(0);
        tap({Width - 1, 50});
        QCOMPARE(m_slider->value(), maximum);
        tap({0, 50});
        QCOMPARE(m_slider->value(), minimum);
    }

    void a_tap_moves_once_and_does_not_repeat()
    {
        QSignalSpy moved(m_slider.get(), &QSlider::valueChanged);
        press({500, 50});
        QTest::qWait(700);
        QCOMPARE(moved.size(), 1);
        release({500, 50});
        QCOMPARE(moved.size(), 1);
    }

    void a_touch_on_the_handle_does_not_move_it_at_any_height_data()
    {
        QTest::addColumn<int>("x");
        QTest::addColumn<int>("y");
        for (const int x : {-24, -10, 0, 10, 24}) {
            for (const int y : {0, 20, 50, 80, 99}) {
                QTest::addRow("%d, %d", x, y) << x << y;
            }
        }
    }
    void a_touch_on_the_handle_does_not_move_it_at_any_height()
    {
        QFETCH(int, x);
        QFETCH(int, y);
        m_slider->setValue(400);
        QSignalSpy moved(m_slider.get(), &QSlider::valueChanged);
        tap({m_slider->handle().center().x() + x, y});
        QVERIFY(moved.isEmpty());
    }

    void the_handle_is_large_enough_for_a_finger()
    {
        QVERIFY(m_slider->handle().width() >= 47);
        QVERIFY(m_slider->height() >= 47);
    }

    void the_handle_follows_the_finger_after_a_tap_as_after_a_touch_on_it()
    {
        m_slider->setValue(0);
        press({300, 10});
        const int before = m_slider->value();
        move({400, 10});
        QVERIFY(m_slider->isSliderDown());
        QVERIFY(m_slider->value() > before);
        QVERIFY(qAbs(m_slider->handle().center().x() - 400) <= 3);
        release({400, 10});
        QVERIFY(!m_slider->isSliderDown());
    }

    void a_finger_that_trembles_on_the_handle_does_not_move_it_data()
    {
        QTest::addColumn<int>("value");
        for (const int value : {1, 77, 500, 933, 999}) {
            QTest::addRow("%d", value) << value;
        }
    }
    void a_finger_that_trembles_on_the_handle_does_not_move_it()
    {
        QFETCH(int, value);
        m_slider->setValue(value);
        const QPoint at = m_slider->handle().center();
        QSignalSpy moved(m_slider.get(), &QSlider::valueChanged);
        press(at);
        for (const int x : {1, -2, 3, 0, -3}) {
            move(at + QPoint(x, 0));
        }
        release(at);
        QVERIFY(moved.isEmpty());
    }

    void the_handle_follows_the_finger_over_the_whole_groove()
    {
        m_slider->setValue(0);
        const QPoint from = m_slider->handle().center();
        press(from + QPoint(10, 0));
        for (int x = from.x() + 20; x < Width - 60; x += 20) {
            move({x + 10, from.y()});
            QVERIFY(qAbs(m_slider->handle().center().x() - x) <= 2);
        }
        move({Width - 1, from.y()});
        QCOMPARE(m_slider->value(), 1000);
    }
};

QN740_TEST_MAIN(tst_TouchSlider)
#include "tst_TouchSlider.moc"
