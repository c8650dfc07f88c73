// These tests check the step keys of a frequency, which send each value at once.
#include "popups/NumberPadRun.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

using namespace numberPadRun;
using namespace padScreen;

namespace {
QString framedMessage(const QString& body)
{
    return QChar(0x02) + body + QChar(0x04);
}
} // namespace

class tst_PopUpNumberPadSteps : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(QApplication::activeModalWidget(), nullptr); }

    void a_step_sends_the_new_value_at_once()
    {
        PopUpNumberPad pad;
        QSignalSpy sent(&pad, &Key::response_message);
        Opening opening;
        opening.type = 1;
        opening.ranges = u"70 140:200 300"_s;
        opening.current = 100.0;
        opening.command = u"RF1"_s;
        run(pad, opening, [&](QWidget* dialog) {
            QVERIFY(press(dialog, {u"Step Up"_s}));
            QCOMPARE(sent.size(), 1);
            QCOMPARE(sent.at(0).at(0).toString(), framedMessage(u"RF1100.1"_s));
            QCOMPARE(labelText(dialog, "currentValueLabel"), u"Current Value:\r\n100.1 MHz"_s);
            QVERIFY(press(dialog, {u"Step Down"_s, u"Step Down"_s}));
            QCOMPARE(sent.last().at(0).toString(), framedMessage(u"RF199.9"_s));
            QVERIFY(dialog->isVisible());
            QCOMPARE(entry(dialog), u"       MHz "_s);
        });
        QCOMPARE(sent.size(), 3);
    }

    void a_step_out_of_every_range_does_nothing()
    {
        PopUpNumberPad pad;
        QSignalSpy sent(&pad, &Key::response_message);
        Opening opening;
        opening.type = 1;
        opening.ranges = u"70 140:200 300"_s;
        opening.current = 140.0;
        run(pad, opening, [&](QWidget* dialog) {
            QVERIFY(press(dialog, {u"Step Up"_s}));
            QCOMPARE(sent.size(), 0);
            QCOMPARE(labelText(dialog, "currentValueLabel"), u"Current Value:\r\n140.0 MHz"_s);
            // A step of 100 reaches the next range.
            QVERIFY(
                press(dialog, {u"Step\r\n0.1 MHz"_s, u"Step\r\n1.0 MHz"_s, u"Step\r\n10.0 MHz"_s}));
            QVERIFY(press(dialog, {u"Step Up"_s}));
            QCOMPARE(sent.last().at(0).toString(), framedMessage(u"CMD240.0"_s));
        });
        QCOMPARE(sent.size(), 1);
    }

    void a_step_reaches_every_bound_that_can_be_typed_data()
    {
        QTest::addColumn<double>("from");
        QTest::addColumn<QString>("ranges");
        QTest::addColumn<bool>("up");
        QTest::addColumn<QString>("sent");
        QTest::newRow("up to 2399.9") << 2399.8 << "2200.5 2399.9" << true << "2399.9";
        QTest::newRow("up to 2399.5") << 2399.4 << "2200.5 2399.5" << true << "2399.5";
        QTest::newRow("down to 2200.1") << 2200.2 << "2200.1 2399.5" << false << "2200.1";
        QTest::newRow("down to 2200.3") << 2200.4 << "2200.3 2399.5" << false << "2200.3";
        QTest::newRow("down to 0.3") << 0.4 << "0.3 10" << false << "0.3";
        QTest::newRow("above the bound") << 2399.9 << "2200.5 2399.9" << true << "";
        QTest::newRow("below the bound") << 2200.1 << "2200.1 2399.5" << false << "";
    }
    void a_step_reaches_every_bound_that_can_be_typed()
    {
        QFETCH(double, from);
        QFETCH(QString, ranges);
        QFETCH(bool, up);
        QFETCH(QString, sent);
        PopUpNumberPad pad;
        QSignalSpy spy(&pad, &Key::response_message);
        Opening opening;
        opening.type = 1;
        opening.ranges = ranges;
        opening.current = from;
        run(pad, opening,
            [&](QWidget* dialog) { QVERIFY(press(dialog, {up ? u"Step Up"_s : u"Step Down"_s})); });
        QCOMPARE(spy.size(), sent.isEmpty() ? 0 : 1);
        if (!sent.isEmpty()) {
            QCOMPARE(spy.first().first().toString(), framedMessage(u"CMD"_s + sent));
        }
    }

    void steps_meet_the_bounds_all_over_a_band()
    {
        // Only every seventh tenth of a megahertz is tested, because opening a dialog takes time.
        for (int tenths = 22001; tenths < 22301; tenths += 7) {
            const QString low = QString::number((tenths - 1) / 10.0, 'f', 1);
            const QString high = QString::number((tenths + 1) / 10.0, 'f', 1);
            PopUpNumberPad pad;
            QSignalSpy sent(&pad, &Key::response_message);
            Opening opening;
            opening.type = 1;
            opening.ranges = low + u' ' + high;
            opening.current = tenths / 10.0;
            run(pad, opening, [&](QWidget*) {
                pad.up_rf();
                pad.down_rf();
                pad.down_rf();
            });
            QCOMPARE(sent.size(), 3);
            QCOMPARE(sent.at(0).first().toString(), framedMessage(u"CMD"_s + high));
            QCOMPARE(sent.at(2).first().toString(), framedMessage(u"CMD"_s + low));
        }
    }

    void steps_are_counted_in_single_precision()
    {
        PopUpNumberPad pad;
        QSignalSpy sent(&pad, &Key::response_message);
        Opening opening;
        opening.type = 1;
        opening.ranges = u"0 1e6"_s;
        opening.current = 99999.0;
        // Near 100,000, single precision can represent only multiples of 1/128.
        float expected = 99999.0F;
        for (int i = 0; i < 200; ++i) {
            expected += 0.1F;
        }
        run(pad, opening, [&](QWidget* /*dialog*/) {
            for (int i = 0; i < 200; ++i) {
                pad.up_rf();
            }
        });
        const QString text = QString::number(static_cast<double>(expected), 'f', 1);
        QVERIFY(text != u"100019.0"_s);
        QCOMPARE(sent.last().at(0).toString(), framedMessage(u"CMD"_s + text));
    }

    void the_step_key_cycles_through_the_steps()
    {
        Opening opening;
        opening.type = 1;
        run(opening, [](QWidget* dialog) {
            QVERIFY(press(dialog,
                {u"Step\r\n0.1 MHz"_s, u"Step\r\n1.0 MHz"_s, u"Step\r\n10.0 MHz"_s,
                    u"Step\r\n100.0 MHz"_s, u"Step\r\n0.1 MHz"_s}));
        });
    }

    void the_step_keys_repeat_while_they_are_held()
    {
        Opening opening;
        opening.type = 1;
        run(opening, [](QWidget* dialog) {
            for (const char* text : {"Step Up", "Step Down"}) {
                const QPushButton* key = buttonWithText(dialog, QString::fromUtf8(text));
                QVERIFY(key->autoRepeat());
                QCOMPARE(key->autoRepeatDelay(), 500);
                QCOMPARE(key->autoRepeatInterval(), 200);
            }
            QVERIFY(!buttonWithText(dialog, u"Step\r\n0.1 MHz"_s)->autoRepeat());
        });
    }

    void a_held_step_key_sends_repeatedly()
    {
        PopUpNumberPad pad;
        QSignalSpy sent(&pad, &Key::response_message);
        Opening opening;
        opening.type = 1;
        opening.ranges = u"0 1000"_s;
        run(pad, opening, [&](QWidget* dialog) {
            QPushButton* up = buttonWithText(dialog, u"Step Up"_s);
            const QPoint at = up->mapTo(dialog, up->rect().center());
            QElapsedTimer timer;
            timer.start();
            QTest::mousePress(dialog->windowHandle(), Qt::LeftButton, {}, at);
            QTRY_VERIFY(sent.size() >= 3);
            // A coarse timer may fire 5 % early.
            QVERIFY(timer.elapsed() >= (500 + 2 * 200) * 9 / 10);
            QTest::mouseRelease(dialog->windowHandle(), Qt::LeftButton, {}, at);
        });
    }

    void a_held_step_key_stops_when_something_modal_opens_over_the_pad()
    {
        PopUpNumberPad pad;
        QSignalSpy sent(&pad, &Key::response_message);
        Opening opening;
        opening.type = 1;
        opening.ranges = u"0 1000"_s;
        run(pad, opening, [&](QWidget* dialog) {
            QPushButton* up = buttonWithText(dialog, u"Step Up"_s);
            const QPoint at = up->mapTo(dialog, up->rect().center());
            QTest::mousePress(dialog->windowHandle(), Qt::LeftButton, {}, at);
            QTRY_VERIFY(sent.size() >= 2);
            PopUpNumberPad second;
            run(second, Opening(), [&](QWidget*) {
                QVERIFY(!up->isDown());
                const qsizetype before = sent.size();
                QTest::qWait(600);
                QCOMPARE(sent.size(), before);
            });
            const qsizetype before = sent.size();
            QTest::qWait(600);
            QCOMPARE(sent.size(), before);
        });
    }
};

QN740_TEST_MAIN(tst_PopUpNumberPadSteps)
#include "tst_PopUpNumberPadSteps.moc"
