#include "touch/Placement.h"

#include "support/TestMain.h"

#include <QMainWindow>

namespace {
const QRect Screen(0, 0, 800, 480);
}

class tst_Placement : public QObject
{
    Q_OBJECT

private slots:
    void without_a_panel_the_area_is_the_screen()
    {
        const QWidget window;
        QCOMPARE(touch::panelArea(&window), Screen);
        const QMainWindow hidden;
        QCOMPARE(touch::panelArea(&window), Screen);
    }

    void the_area_of_a_panel_is_its_window()
    {
        const QWidget window;
        QMainWindow panel;
        panel.setGeometry(100, 40, 600, 300);
        panel.show();
        QCOMPARE(touch::panelArea(&window), QRect(100, 40, 600, 300));
    }

    void a_window_is_moved_to_the_middle_and_kept_inside_the_screen_data()
    {
        QTest::addColumn<QRect>("panelPlace");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QPoint>("middle");
        QTest::newRow("no panel") << QRect() << QSize(300, 200) << QPoint(400, 240);
        QTest::newRow("panel") << QRect(100, 40, 600, 300) << QSize(300, 200) << QPoint(400, 190);
        QTest::newRow("panel at the right edge")
            << QRect(500, 0, 800, 480) << QSize(300, 200) << QPoint(650, 240);
        QTest::newRow("panel above the top left")
            << QRect(-500, -400, 800, 480) << QSize(300, 200) << QPoint(150, 100);
        QTest::newRow("too large") << QRect() << QSize(2000, 2000) << QPoint(400, 240);
    }
    void a_window_is_moved_to_the_middle_and_kept_inside_the_screen()
    {
        QFETCH(QRect, panelPlace);
        QFETCH(QSize, size);
        QFETCH(QPoint, middle);
        QMainWindow panel;
        if (panelPlace.isValid()) {
            panel.setGeometry(panelPlace);
            panel.show();
        }
        QWidget window(nullptr, Qt::FramelessWindowHint);
        window.resize(size);
        window.show();
        touch::centreOnPanel(&window);
        QCOMPARE(window.size(), size.boundedTo(Screen.size()));
        QVERIFY(Screen.contains(window.frameGeometry()));
        const QPoint off = window.frameGeometry().center() - middle;
        QVERIFY(qAbs(off.x()) <= 1 && qAbs(off.y()) <= 1);
    }
};

QN740_TEST_MAIN(tst_Placement)
#include "tst_Placement.moc"
