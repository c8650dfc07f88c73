#include "app/Identity.h"
#include "app/PictureMemory.h"
#include "support/Heap.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

class tst_Identity : public QObject
{
    Q_OBJECT

private slots:
    void the_application_has_its_names()
    {
        QCOMPARE(identity::version(), u"1.1.6.4"_s);
        QCOMPARE(QCoreApplication::applicationVersion(), u"1.1.6.4"_s);
        QCOMPARE(QCoreApplication::organizationName(), u"TORVA"_s);
        QCOMPARE(QCoreApplication::organizationDomain(), u"torva.example"_s);
        QCOMPARE(QCoreApplication::applicationName(), u"QN740-Keyboard"_s);
    }

    void the_look_does_not_depend_on_the_platform()
    {
        QCOMPARE(QApplication::style()->objectName(), u"fusion"_s);
        QCOMPARE(QApplication::font().family(), u"DejaVu Sans"_s);
        QVERIFY(QApplication::font().pixelSize() > 0);
    }

    void pictures_have_memory_apart_from_other_things()
    {
#if defined(QN740_SANITIZED)
        QSKIP("a sanitizer has an allocator of its own");
#else
        QImage(
            400, 400, QImage::Format_RGB32); // the limit grows with what is freed, if it is not set
        pictureMemory::keepApart();
        const auto apart = ::mallinfo2().hblks;
        const QImage picture(200, 100, QImage::Format_RGB32); // 80,000 bytes
        QVERIFY(!picture.isNull());
        QCOMPARE(::mallinfo2().hblks, apart + 1);
#endif
    }

    void painting_a_coloured_button_does_not_leak()
    {
        QPushButton button(u"Linking"_s);
        button.setStyleSheet(u"background-color: #4682b4"_s);
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
        paint(10000); // would leave 2.6 MB if the pixmap cache were on
        QVERIFY2(heapInUse() - before < 100 * 1024, QByteArray::number(heapInUse() - before));
    }
};

QN740_TEST_MAIN(tst_Identity)
#include "tst_Identity.moc"
