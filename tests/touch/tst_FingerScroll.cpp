#include "touch/FingerScroll.h"

#include "support/Screen.h"
#include "support/TestMain.h"
#include "touch/Sizes.h"

#include <QPushButton>
#include <QScrollBar>
#include <QScroller>
#include <QSignalSpy>
#include <QVBoxLayout>

// The view has 400 × 300 pixels and thirty buttons of 60 pixels, the third of which is disabled.
class tst_FingerScroll : public QObject
{
    Q_OBJECT

    static constexpr int Count = 30;
    static constexpr int Height = 60;

    void press(QPoint at) { QTest::mousePress(m_view->windowHandle(), Qt::LeftButton, {}, at); }
    void move(QPoint at) { QTest::mouseMove(m_view->windowHandle(), at); }
    void release(QPoint at) { QTest::mouseRelease(m_view->windowHandle(), Qt::LeftButton, {}, at); }
    int value() const { return m_view->verticalScrollBar()->value(); }

    // Moves a finger from one height to another over the buttons in small steps.
    void drag(int from, int to)
    {
        press({100, from});
        for (int step = 1; step <= 8; ++step) {
            move({100, from + (to - from) * step / 8});
        }
        release({100, to});
    }

    std::unique_ptr<FingerScroll> m_view;
    QList<QPushButton*> m_buttons;
    int m_clicks = 0;

private slots:
    void init()
    {
        m_view = std::make_unique<FingerScroll>();
        m_view->resize(400, 300);
        auto* contents = new QWidget;
        auto* column = new QVBoxLayout(contents);
        column->setContentsMargins(0, 0, 0, 0);
        column->setSpacing(0);
        m_buttons.clear();
        m_clicks = 0;
        for (int i = 0; i < Count; ++i) {
            m_buttons += new QPushButton(QString::number(i));
            m_buttons.last()->setFixedSize(300, Height);
            column->addWidget(m_buttons.last());
            connect(m_buttons.last(), &QPushButton::clicked, this, [this] { ++m_clicks; });
        }
        m_buttons.at(2)->setEnabled(false);
        m_view->setContents(contents);
        for (QPushButton* button : std::as_const(m_buttons)) {
            m_view->followOn(button);
        }
        m_view->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    }
    void cleanup() { m_view.reset(); }

    void the_bar_is_wide_enough_for_a_finger()
    {
        QVERIFY(m_view->verticalScrollBar()->isVisible());
        QCOMPARE(m_view->verticalScrollBar()->width(), touch::ScrollBarWidth);
        QVERIFY(!m_view->horizontalScrollBar()->isVisible());
    }

    void a_drag_scrolls_as_far_as_the_finger_goes()
    {
        drag(250, 100);
        QCOMPARE(value(), 150);
        drag(100, 180);
        QCOMPARE(value(), 70);
    }

    void a_drag_chooses_nothing()
    {
        drag(250, 100);
        drag(100, 105 + FingerScroll::DragDistance); // ends on the button where it began
        QCOMPARE(m_clicks, 0);
    }

    void a_touch_that_hardly_moves_is_a_click()
    {
        drag(100, 100 + FingerScroll::DragDistance - 1);
        QCOMPARE(m_clicks, 1);
        QCOMPARE(value(), 0);
    }

    void the_touched_button_lets_go_when_the_drag_begins()
    {
        press({100, 100});
        QVERIFY(m_buttons.at(1)->isDown());
        move({100, 90});
        QVERIFY(m_buttons.at(1)->isDown());
        move({100, 100 - FingerScroll::DragDistance});
        QVERIFY(!m_buttons.at(1)->isDown());
        move({100, 100});
        QVERIFY(!m_buttons.at(1)->isDown());
        QCOMPARE(value(), 0);
        release({100, 100});
        QCOMPARE(m_clicks, 0);
    }

    void a_drag_that_begins_on_a_disabled_button_scrolls_too()
    {
        drag(150, 50);
        QCOMPARE(value(), 100);
    }

    void the_next_touch_after_a_drag_chooses()
    {
        drag(250, 130);
        clickOn(m_buttons.at(3));
        QCOMPARE(m_clicks, 1);
    }

    void it_stops_at_the_ends_and_nothing_goes_on_afterwards()
    {
        drag(50, 290);
        QCOMPARE(value(), 0);
        for (int i = 0; i < 10; ++i) {
            drag(290, 10);
        }
        QCOMPARE(value(), m_view->verticalScrollBar()->maximum());
        QCOMPARE(value(), Count * Height - 300);
        drag(50, 100);
        const int before = value();
        QTest::qWait(100);
        QCOMPARE(value(), before);
    }

    void it_grabs_no_gesture_recogniser() { QVERIFY(!QScroller::hasScroller(m_view->viewport())); }
};

QN740_TEST_MAIN(tst_FingerScroll)
#include "tst_FingerScroll.moc"
