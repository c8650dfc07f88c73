#include "app/Identity.h"
#include "support/Heap.h"
#include "support/TestMain.h"

class tst_Identity : public QObject
{
    Q_OBJECT

private slots:
    void the_application_has_its_names()
    {
        QCOMPARE(identity::version(), QString("1.1.6.4"));
        QCOMPARE(QCoreApplication::applicationVersion(), QString("1.1.6.4"));
        QCOMPARE(QCoreApplication::organizationName(), QString("TORVA"));
        QCOMPARE(QCoreApplication::organizationDomain(), QString("torva.example"));
        QCOMPARE(QCoreApplication::applicationName(), QString("QN740-Keyboard"));
    }

    void the_look_does_not_depend_on_the_platform()
    {
        QCOMPARE(QApplication::style()->objectName(), QString("fusion"));
        QCOMPARE(QApplication::font().family(), QString("DejaVu Sans"));
        QVERIFY(QApplication::font().pixelSize() > 0);
    }

    void painting_a_coloured_button_takes_no_memory_for_good()
    {
        QPushButton button("Linking");
        button.setStyleSheet("background-color: #4682b4");
        button.resize(106, 44);
        button.show();
        QVERIFY(QTest::qWaitForWindowExposed(&button));
        const auto paint = [&button](int times) {
            for (int i = 0; i < times; ++i) {
                button.repaint();
            }
        };
        paint(1000);
        const qsizetype before = heapInUse();
        paint(10000); // 2.6 MB with the pixmap cache on
        QVERIFY2(heapInUse() - before < 100 * 1024, QByteArray::number(heapInUse() - before));
    }
};

QN740_TEST_MAIN(tst_Identity)
#include "tst_Identity.moc"
