// These tests check what the number pad does with entries that are not valid.
#include "popups/NumberPadRun.h"
#include "support/TestMain.h"

#include <QMessageBox>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

using namespace numberPadRun;
using namespace padScreen;

class tst_PopUpNumberPadErrors : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(QApplication::activeModalWidget(), nullptr); }

    void an_invalid_entry_shows_what_would_be_valid()
    {
        Opening opening;
        opening.type = 2;
        opening.ranges = u"10 20:1 5"_s;
        run(opening, [](QWidget* dialog) {
            bool seen = false;
            play([&seen](QWidget* top) {
                auto* box = qobject_cast<QMessageBox*>(top);
                QVERIFY(box != nullptr);
                QCOMPARE(box->windowTitle(), u"Out Of Range"_s);
                QCOMPARE(box->findChild<QLabel*>(u"titleLabel"_s)->text(), u"Out Of Range"_s);
                QCOMPARE(box->text(), u"<font size = 5>Invalid Entry       2  Kbps</font>"_s);
                QCOMPARE(box->informativeText(),
                    u"<font size = 6>Valid Range(s)</font><br><font size = 7><b>1.0 bps to 5.0 bps<br>10.0 bps to 20.0 bps</b></font>"_s);
                QCOMPARE(box->buttons().size(), 1);
                QCOMPARE(box->button(QMessageBox::Ok)->styleSheet(), u"font: 28px"_s);
                QVERIFY(!box->windowIcon().isNull());
                QVERIFY(box->width() >= 600);
                QVERIFY(ScreenArea.contains(box->frameGeometry()));
                seen = true;
                clickOn(box->button(QMessageBox::Ok));
            });
            QVERIFY(press(dialog, {u"2"_s, u"Kbps"_s}));
            QVERIFY(seen);
            QVERIFY(dialog->isVisible());
            QCOMPARE(entry(dialog), u"       bps"_s);
            QVERIFY(press(dialog, {u"3"_s}));
            QCOMPARE(entry(dialog), u"       3"_s);
        });
    }

    void the_error_box_lies_inside_the_screen_data()
    {
        QTest::addColumn<QString>("ranges");
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("digits");
        QTest::newRow("no range") << "" << 0 << 1;
        QTest::newRow("one") << "2000 3000" << 0 << 1;
        QTest::newRow("seven") << SevenRanges << 0 << 1;
        QTest::newRow("seven of a frequency") << SevenRanges << 1 << 1;
        QTest::newRow("sixty") << QStringList(QList<QString>(60, u"2000 3000"_s)).join(u":"_s) << 2
                               << 1;
        QTest::newRow("long numbers") << "1e299 1e300" << 1 << 1;
        QTest::newRow("long entry") << "2 3" << 0 << 200;
    }
    void the_error_box_lies_inside_the_screen()
    {
        QFETCH(QString, ranges);
        QFETCH(int, type);
        QFETCH(int, digits);
        Opening opening;
        opening.type = type;
        opening.ranges = ranges;
        bool seen = false;
        run(opening, [&](QWidget* dialog) {
            QVERIFY(press(dialog, QStringList(QList<QString>(digits, u"0"_s))));
            play([&seen](QWidget* top) {
                auto* box = qobject_cast<QMessageBox*>(top);
                QVERIFY(box != nullptr);
                const QRect frame = box->frameGeometry();
                QVERIFY2(ScreenArea.contains(frame),
                    qPrintable(u"%1 %2 %3 %4"_s.arg(frame.x())
                                   .arg(frame.y())
                                   .arg(frame.width())
                                   .arg(frame.height())));
                const QPoint off = frame.center() - ScreenArea.center();
                QVERIFY(qAbs(off.x()) <= 1 && qAbs(off.y()) <= 1);
                const QPushButton* ok = qobject_cast<QPushButton*>(box->button(QMessageBox::Ok));
                QVERIFY(box->rect().contains(place(box, ok)));
                QVERIFY(ok->width() >= MinKey && ok->height() >= MinKey);
                for (const QWidget* widget : shown(box)) {
                    QVERIFY(widget == ok ||
                        widget->objectName() == u"qt_msgbox_informativelabel"_s ||
                        !place(box, widget).intersects(place(box, ok)));
                }
                seen = true;
                clickOn(box->button(QMessageBox::Ok));
            });
            (type == 2 ? buttonWithText(dialog, u"bps"_s)
                       : buttonWithText(dialog, type == 1 ? u"MHz"_s : u"Enter"_s))
                ->click();
        });
        QVERIFY(seen);
    }

    void more_ranges_than_the_screen_holds_are_scrolled_with_a_finger()
    {
        Opening opening;
        opening.ranges = QStringList(QList<QString>(60, u"2000 3000"_s)).join(u":"_s);
        bool seen = false;
        run(opening, [&seen](QWidget* dialog) {
            play([&seen](QWidget* box) {
                const auto* area = box->findChild<QScrollArea*>();
                QVERIFY(area != nullptr);
                QScrollBar* bar = area->verticalScrollBar();
                QVERIFY(bar->isVisible() && bar->width() >= MinKey && bar->maximum() > 0);
                bar->setValue(bar->maximum());
                const QWidget* text = area->widget();
                QCOMPARE(text->mapTo(area, text->rect().bottomLeft()).y(),
                    area->viewport()->rect().bottom());
                seen = true;
            });
            QVERIFY(press(dialog, {u"Enter"_s}));
        });
        QVERIFY(seen);
    }

    void an_empty_entry_is_invalid()
    {
        PopUpNumberPad pad;
        QSignalSpy valid(&pad, &PopUpNumberPad::valid_entry);
        bool seen = false;
        run(pad, {}, [&](QWidget* dialog) {
            play([&seen](QWidget* box) {
                seen = qobject_cast<QMessageBox*>(box) != nullptr;
                box->close();
            });
            QVERIFY(press(dialog, {u"Enter"_s}));
        });
        QVERIFY(seen);
        QCOMPARE(valid.size(), 0);
    }
};

QN740_TEST_MAIN(tst_PopUpNumberPadErrors)
#include "tst_PopUpNumberPadErrors.moc"
