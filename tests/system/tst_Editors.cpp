// These tests follow every modal editor from the finger to the unit: real clicks press the keys of
// the panel's window, and the real simulated unit is at the other end of the line. They check what
// the unit has received.
#include "app/Rooms.h"
#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "support/PopUps.h"
#include "support/TestMain.h"
#include "support/UnitFixture.h"
#include "wire/Trace.h"

#include <QLabel>
#include <QLoggingCategory>
#include <QSlider>

using namespace Qt::StringLiterals;

namespace {

// This is the panel's own trace of its line, with the panel's times.
QList<wire::TraceLine> panelTrace;
QtMessageHandler otherHandler = nullptr;

void takeTrace(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (qstrcmp(context.category, "qn740.link") != 0) {
        otherHandler(type, context, text);
    } else if (const auto line = wire::TraceLine::fromText(text)) {
        panelTrace += *line;
    }
}

int milliseconds(const wire::TraceLine& line)
{
    return qRound(line.seconds * 1000);
}

} // namespace

class tst_Editors : public QObject, private UnitFixture
{
    Q_OBJECT

    Key* key(const char* menu, const char* id) const
    {
        return MenuBook::findKey(
            m_window->rooms().menus->book.find(QString::fromUtf8(menu)), QString::fromUtf8(id));
    }

    // Presses a key of a menu and, in the editor that opens, does what `then` does.
    void edit(const char* menu, const char* id, const std::function<void(QWidget*)>& then)
    {
        say(QByteArray("SK,") + menu);
        Key* pressed = key(menu, id);
        QVERIFY(pressed != nullptr && pressed->GetKey() != nullptr);
        QVERIFY(pressed->GetKey()->isVisible());
        whenModal([&then](QWidget* editor) {
            const QPointer<QWidget> guard(editor);
            then(editor);
            if (guard != nullptr && guard->isVisible()) {
                guard->close();
                QTest::qFail("the editor is still open", __FILE__, __LINE__);
            }
        });
        clickOn(pressed->GetKey());
    }

    static void press(QWidget* editor, const QStringList& buttons)
    {
        for (const QString& button : buttons) {
            popUps::press(editor, button);
        }
    }

    // Returns the messages that the unit has received and that begin with `start`, with the unit's
    // times.
    QList<wire::TraceLine> received(const QString& start)
    {
        QList<wire::TraceLine> lines;
        for (const QByteArray& text : m_unit->output().split('\n')) {
            const auto line = wire::TraceLine::fromText(QString::fromLatin1(text));
            if (text.startsWith("trace: ") && line && !line->in &&
                line->frame.startsWith(QChar(0x02) + start)) {
                lines += *line;
            }
        }
        return lines;
    }

    QStringList frames(const QString& start)
    {
        QStringList all;
        for (const wire::TraceLine& line : received(start)) {
            all += line.frame;
        }
        return all;
    }

    static QString frame(const char* body)
    {
        return QChar(0x02) + QString::fromUtf8(body) + QChar(0x04);
    }

private slots:
    void init() { start(QString::fromUtf8(QN740_SIM), {u"--trace"_s}); }

    void cleanup()
    {
        QVERIFY(QApplication::activeModalWidget() == nullptr);
        stop();
    }

    void a_frequency_that_is_typed_arrives_and_comes_back()
    {
        say("AK,Tuner CH1,freq,RF Frequency,1,R1:FREQ:,950 2150,1,,1200,0,1");
        edit("Tuner CH1", "freq", [](QWidget* pad) {
            press(pad, {u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"."_s, u"5"_s, u"MHz"_s});
        });
        QTRY_VERIFY_WITH_TIMEOUT(
            m_unit->output().contains(" out \\x02R1:FREQ:1234.500000\\x04\n"), LongMs);
        QCOMPARE(frames(u"R1:FREQ:"_s), QStringList{frame("R1:FREQ:1234.500000")});
        QTRY_COMPARE_WITH_TIMEOUT(key("Tuner CH1", "freq")->value, 1234.5, LongMs);
    }

    void a_choice_arrives_and_its_key_shows_it()
    {
        edit("Combiner", "mode", [](QWidget* list) { press(list, {u"Pre-det"_s}); });
        QTRY_COMPARE_WITH_TIMEOUT(frames(u"C1:MODE:"_s), QStringList{frame("C1:MODE:1")}, LongMs);
        QTRY_COMPARE_WITH_TIMEOUT(
            key("Combiner", "mode")->GetKey()->text(), u"Combine Mode: Pre-det"_s, LongMs);
    }

    void a_stored_file_arrives_by_its_value()
    {
        edit("System", "load", [](QWidget* board) { press(board, {u"FLIGHT_1"_s}); });
        QTRY_COMPARE_WITH_TIMEOUT(frames(u"SYS:LOAD:"_s), QStringList{frame("SYS:LOAD:2")}, LongMs);
        QTRY_COMPARE_WITH_TIMEOUT(
            key("System", "load")->GetKey()->text(), u"Load Set-up: FLIGHT_1"_s, LongMs);
    }

    void a_new_file_arrives_by_its_name_and_is_offered_from_then_on()
    {
        edit("System", "save", [](QWidget* board) {
            whenModal([](QWidget* name) {
                press(name, {u"n"_s, u"e"_s, u"w"_s, u"7"_s, u"RETURN"_s});
            });
            press(board, {u"New File"_s});
        });
        QTRY_COMPARE_WITH_TIMEOUT(
            frames(u"SYS:SAVE:"_s), QStringList{frame("SYS:SAVE:new7")}, LongMs);
        QTRY_COMPARE_WITH_TIMEOUT(
            key("System", "save")->GetKey()->text(), u"Save Set-up: new7"_s, LongMs);
        edit("System", "save", [](QWidget* board) { press(board, {u"new7"_s}); });
        QTRY_COMPARE_WITH_TIMEOUT(frames(u"SYS:SAVE:"_s).last(), frame("SYS:SAVE:3"), LongMs);
    }

    void an_address_arrives_and_its_key_shows_it()
    {
        edit("System", "ip", [](QWidget* pad) {
            press(
                pad, {u"1"_s, u"0"_s, u"."_s, u"0"_s, u"."_s, u"0"_s, u"."_s, u"9"_s, u"Enter"_s});
        });
        QTRY_COMPARE_WITH_TIMEOUT(
            frames(u"SYS:IP:"_s), QStringList{frame("SYS:IP:10.0.0.9")}, LongMs);
        QTRY_COMPARE_WITH_TIMEOUT(
            key("System", "ip")->GetKey()->text(), u"IP Address: 10.0.0.9"_s, LongMs);
    }

    void each_step_arrives_while_the_pad_is_open()
    {
        edit("Tuner CH1", "freq", [this](QWidget* pad) {
            const QPointer<QWidget> open(pad);
            QStringList expected;
            const auto step = [&](const char* button, const char* body) {
                press(pad, {QString::fromUtf8(button)});
                expected += frame(body);
                QTRY_COMPARE_WITH_TIMEOUT(frames(u"R1:FREQ:"_s), expected, LongMs);
                QVERIFY(open != nullptr && open->isVisible());
            };
            step("Step Up", "R1:FREQ:2250.6");
            step("Step Down", "R1:FREQ:2250.5");
            press(pad, {u"Step\r\n0.1 MHz"_s});
            step("Step Down", "R1:FREQ:2249.5");
            press(pad, {u"Step\r\n1.0 MHz"_s, u"Step\r\n10.0 MHz"_s});
            step("Step Up", "R1:FREQ:2349.5");
            press(pad, {u"Step Up"_s}); // outside every range
            press(pad, {u"CE/Cancel"_s});
        });
        say("PING");
        QCOMPARE(frames(u"R1:FREQ:"_s).size(), 4);
        QCOMPARE(key("Tuner CH1", "freq")->value, 2349.5);
    }

    void a_slider_sends_live_and_its_key_nothing()
    {
        edit("Tuner CH1", "squelch", [this](QWidget* slider) {
            press(slider, {u"UP"_s});
            QTRY_COMPARE_WITH_TIMEOUT(
                frames(u"R1:SQL:"_s), QStringList{frame("R1:SQL:36")}, LongMs);
            press(slider, {u"OK"_s});
        });
        say("PING");
        QCOMPARE(frames(u"R1:SQL:"_s).size(), 1);
        QCOMPARE(key("Tuner CH1", "squelch")->value, 36.0);
    }

    // A finger drags for some seconds, then lifts and closes the editor within the 400 ms.
    void a_dragged_slider_sends_no_two_messages_nearer_than_400_ms_and_the_last_position()
    {
        constexpr int ThrottleMs = 400;
        constexpr int RoundingMs = 1; // both ends of a gap are cut to whole milliseconds
        panelTrace.clear();
        QLoggingCategory::setFilterRules(u"qn740.link.debug=true"_s);
        otherHandler = qInstallMessageHandler(takeTrace);
        int last = -1;
        edit("Tuner CH1", "squelch", [&last](QWidget* dialog) {
            auto* slider = dialog->findChild<QSlider*>();
            QWindow* window = dialog->windowHandle();
            // The handle stands at its value of 35 of 100.
            const int handleWidth = 50;
            const int y = slider->height() / 2;
            const auto at = [&](int value) {
                const int x = handleWidth / 2 + (slider->width() - handleWidth) * value / 100;
                return slider->mapTo(dialog, QPoint(x, y));
            };
            QTest::mousePress(window, Qt::LeftButton, Qt::NoModifier, at(35));
            QElapsedTimer drag;
            drag.start();
            for (int i = 0; drag.elapsed() < 3300; ++i) {
                QTest::mouseMove(window, at(20 + i * 7 % 70));
                QTest::qWait(15);
            }
            QTest::mouseMove(window, at(95));
            QTest::mouseRelease(window, Qt::LeftButton, Qt::NoModifier, at(95));
            last = slider->value();
            press(dialog, {u"OK"_s});
        });
        QVERIFY2(last > 85, QByteArray::number(last));
        const QString final = frame(("R1:SQL:" + QByteArray::number(last)).constData());
        QTRY_COMPARE_WITH_TIMEOUT(
            frames(u"R1:SQL:"_s).value(frames(u"R1:SQL:"_s).size() - 1), final, LongMs);
        say("PING");
        qInstallMessageHandler(otherHandler);
        QLoggingCategory::setFilterRules(QString());

        QList<wire::TraceLine> out;
        QList<int> answered; // when the unit's CV came back
        for (const wire::TraceLine& line : qAsConst(panelTrace)) {
            if (!line.in && line.frame.contains(u"R1:SQL:"_s)) {
                out += line;
            } else if (line.in && line.frame.contains(u"CV,Tuner CH1,squelch,"_s)) {
                answered += milliseconds(line);
            }
        }
        const QList<wire::TraceLine> wire = received(u"R1:SQL:"_s);
        QVERIFY2(out.size() >= 6, QByteArray::number(out.size()));
        QCOMPARE(wire.size(), out.size());
        QCOMPARE(answered.size(), out.size());
        QStringList gaps;
        for (int i = 1; i < out.size(); ++i) {
            QCOMPARE(wire.at(i).frame, out.at(i).frame);
            const int written = milliseconds(out.at(i)) - milliseconds(out.at(i - 1));
            const int seen = milliseconds(wire.at(i)) - milliseconds(wire.at(i - 1));
            gaps += u"%1/%2"_s.arg(written).arg(seen);
            QVERIFY2(written >= ThrottleMs - RoundingMs, qPrintable(gaps.last()));
            // The unit may take a message late, so that the gap to the next one looks too short. It
            // is too short by at most the time that the unit's answer took.
            const int late = answered.at(i - 1) - milliseconds(out.at(i - 1)) + RoundingMs;
            QVERIFY2(seen >= ThrottleMs - RoundingMs - late, qPrintable(gaps.last()));
        }
        qInfo("%d messages in a drag of 3.3 s; gaps in ms as written/as received: %s",
            int(out.size()), qPrintable(gaps.join(u' ')));
    }

private:
};

QN740_TEST_MAIN(tst_Editors)
#include "tst_Editors.moc"
