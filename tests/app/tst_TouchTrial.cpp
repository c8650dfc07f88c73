#include "app/TouchTrial.h"
#include "support/TestMain.h"

#include <QPushButton>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class tst_TouchTrial : public QObject
{
    Q_OBJECT

private slots:
    void the_page_fills_the_screen_and_says_what_to_do()
    {
        TouchTrial page;
        QCOMPARE(page.size(), QSize(800, 480));
        QCOMPARE(page.readout(), u"Touch the middle of each cross"_s);
        QCOMPARE(page.crosses().size(), 5);
        for (const QPoint cross : page.crosses()) {
            QVERIFY(page.rect().contains(cross));
        }
    }

    void a_cross_is_hit_within_the_tolerance_only()
    {
        TouchTrial page;
        page.show();
        constexpr int Far = TouchTrial::ToleranceInPx + 1;
        const QPoint cross = page.crosses().constFirst();
        QTest::mouseClick(&page, Qt::LeftButton, {}, cross + QPoint(Far, 0));
        QTest::mouseClick(&page, Qt::LeftButton, {}, cross + QPoint(0, -Far));
        QCOMPARE(page.hits(), 0);
        QTest::mouseClick(&page, Qt::LeftButton, {}, cross + QPoint(Far - 1, 1 - Far));
        QCOMPARE(page.hits(), 1);
        QTest::mouseClick(&page, Qt::LeftButton, {}, cross); // the same one
        QCOMPARE(page.hits(), 1);
        QTest::mouseClick(&page, Qt::LeftButton, {}, page.crosses().constLast());
        QCOMPARE(page.hits(), 2);
    }

    void a_touch_is_drawn_where_it_is_and_its_place_is_told()
    {
        TouchTrial page;
        page.show();
        const QPoint point = page.crosses().constFirst() + QPoint(3, -2);
        QTest::mousePress(&page, Qt::LeftButton, {}, point);
        QCOMPARE(page.readout(), u"x 43, y 38\n3 right of and -2 below the nearest cross"_s);
        QCOMPARE(page.grab().toImage().pixelColor(point), QColor(Qt::yellow));
        QTest::mouseMove(&page, QPoint(200, 300));
        QTest::mouseRelease(&page, Qt::LeftButton, {}, QPoint(200, 300));
    }

    void a_cross_that_was_hit_is_green()
    {
        TouchTrial page;
        page.show();
        const QPoint arm = page.crosses().constLast() + QPoint(10, 0);
        QCOMPARE(page.grab().toImage().pixelColor(arm), QColor(Qt::white));
        QTest::mouseClick(&page, Qt::LeftButton, {}, page.crosses().constLast());
        QCOMPARE(page.grab().toImage().pixelColor(arm), QColor(Qt::green));
    }

    void end_is_told()
    {
        TouchTrial page;
        page.show();
        const QSignalSpy ended(&page, &TouchTrial::ended);
        QTest::mouseClick(page.findChild<QPushButton*>(), Qt::LeftButton);
        QCOMPARE(ended.size(), 1);
    }
};

QN740_TEST_MAIN(tst_TouchTrial)
#include "tst_TouchTrial.moc"
