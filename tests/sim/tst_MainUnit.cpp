#include "sim/line/FaultTable.h"
#include "sim/line/PseudoTerminal.h"
#include "sim/unit/MainUnit.h"
#include "support/LineEnd.h"
#include "support/Pty.h"
#include "support/TestMain.h"

#include <QElapsedTimer>
#include <QSignalSpy>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr auto AgcKey = "AK,Tuner,agc,AGC,0,R1:AGC:,,0,,0,0,1";

MenuStep message(const QString& body)
{
    return {MenuStep::Kind::Message, body, 0};
}

MenuStep wait(int ms)
{
    return {MenuStep::Kind::Wait, {}, ms};
}

QByteArray frames(const QList<QByteArray>& bodies)
{
    QByteArray all;
    for (const QByteArray& body : bodies) {
        all += framed(body);
    }
    return all;
}

} // namespace

class tst_MainUnit : public QObject
{
    Q_OBJECT

private slots:
    void nothing_is_sent_before_the_panel_is_there()
    {
        PseudoTerminal line;
        MainUnit unit(line, {message(u"PING"_s)});
        const QSignalSpy sent(&unit, &MainUnit::sent);
        QTest::qWait(200);
        QCOMPARE(sent.size(), 0);
    }

    void the_version_is_asked_first_and_the_menus_wait_for_the_answer()
    {
        PseudoTerminal line;
        MainUnit unit(line, {message(QString::fromUtf8(AgcKey)), message(u"SK,Tuner"_s)});
        LineEnd panel(line.slavePath());
        QTRY_COMPARE(panel.received(), framed("VER"));
        QVERIFY(panel.write(framed("1.1.6.4")));
        QTRY_COMPARE(panel.received(), frames({"VER", AgcKey, "SK,Tuner"}));
        QCOMPARE(unit.panelVersion(), u"1.1.6.4"_s);
    }

    void messages_of_the_unit_s_own_are_sent_after_the_menus()
    {
        PseudoTerminal line;
        MainUnit unit(
            line, {message(QString::fromUtf8(AgcKey)), wait(100), message(u"SK,Tuner"_s)});
        unit.tell(u"SF,0,1"_s);
        LineEnd panel(line.slavePath());
        QTRY_COMPARE(panel.received(), framed("VER"));
        unit.tell(u"SF,0,2"_s);
        QVERIFY(panel.write(framed("1.1.6.4")));
        QTRY_COMPARE(panel.received(), frames({"VER", AgcKey}));
        unit.tell(u"SF,0,3"_s); // dropped, because menus are still to be sent and are newer
        QTRY_COMPARE(panel.received(), frames({"VER", AgcKey, "SK,Tuner"}));
        unit.tell(u"SF,0,4"_s);
        QTRY_COMPARE(panel.received(), frames({"VER", AgcKey, "SK,Tuner", "SF,0,4"}));
    }

    void a_panel_without_an_answer_gets_its_menus_after_a_second()
    {
        PseudoTerminal line;
        MainUnit unit(line, {message(u"PING"_s)});
        LineEnd panel(line.slavePath());
        QTRY_COMPARE(panel.received(), framed("VER"));
        QElapsedTimer elapsed;
        elapsed.start();
        QTRY_COMPARE(panel.received(), frames({"VER", "PING"}));
        QVERIFY(elapsed.elapsed() >= 800);
        QVERIFY(unit.panelVersion().isEmpty());
    }

    void an_answer_that_is_no_version_starts_nothing()
    {
        PseudoTerminal line;
        MainUnit unit(line, {message(u"PING"_s)});
        QSignalSpy received(&unit, &MainUnit::received);
        LineEnd panel(line.slavePath());
        QTRY_COMPARE(panel.received(), framed("VER"));
        QVERIFY(panel.write(framed("PONG")));
        QTRY_COMPARE(received.size(), 1);
        QCOMPARE(panel.received(), framed("VER"));
    }

    void a_wait_holds_the_menus_but_no_answer()
    {
        PseudoTerminal line;
        MainUnit unit(
            line, {message(QString::fromUtf8(AgcKey)), wait(600), message(u"SK,Tuner"_s)});
        LineEnd panel(line.slavePath());
        QTRY_COMPARE(panel.received(), framed("VER"));
        QVERIFY(panel.write(framed("1.1.6.4")));
        QTRY_COMPARE(panel.received(), frames({"VER", AgcKey}));
        QVERIFY(panel.write(framed("R1:AGC:1")));
        QTRY_COMPARE(panel.received(), frames({"VER", AgcKey, "CV,Tuner,agc,0,1", "SK,Tuner"}));
    }

    void a_key_is_confirmed_with_the_values_that_the_unit_keeps()
    {
        PseudoTerminal line;
        MainUnit unit(line, {message(QString::fromUtf8(AgcKey))});
        LineEnd panel(line.slavePath());
        QVERIFY(panel.write(framed("1.1.6.4")));
        QTRY_COMPARE(panel.received(), frames({"VER", AgcKey}));
        QVERIFY(panel.write(framed("R1:AGC:1")));
        QTRY_COMPARE(panel.received(), frames({"VER", AgcKey, "CV,Tuner,agc,0,1"}));
        QCOMPARE(unit.keys().field(u"Tuner"_s, u"agc"_s, 9), u"1"_s);
    }

    void what_is_typed_before_comes_after_the_menus()
    {
        PseudoTerminal line;
        MainUnit unit(line, {message(u"CLEAR"_s), wait(50), message(u"PING"_s)});
        QVERIFY(unit.type(message(u"DB,Text"_s)));
        LineEnd panel(line.slavePath());
        QVERIFY(panel.write(framed("1.1.6.4")));
        QTRY_COMPARE(panel.received(), frames({"VER", "CLEAR", "PING", "DB,Text"}));
    }

    void typed_steps_after_the_menus_are_sent_at_once_with_their_waits()
    {
        PseudoTerminal line;
        MainUnit unit(line, {});
        LineEnd panel(line.slavePath());
        QVERIFY(panel.write(framed("1.1.6.4")));
        QTRY_COMPARE(panel.received(), framed("VER"));
        QVERIFY(unit.type(message(u"PING"_s)));
        QElapsedTimer elapsed;
        elapsed.start();
        QVERIFY(unit.type(wait(300)));
        QVERIFY(unit.type(message(u"VER"_s)));
        QTRY_COMPARE(panel.received(), frames({"VER", "PING"}));
        QTRY_COMPARE(panel.received(), frames({"VER", "PING", "VER"}));
        QVERIFY(elapsed.elapsed() >= 290);
    }

    void too_much_typing_is_refused()
    {
        PseudoTerminal line;
        MainUnit unit(line, {});
        for (int i = 0; i < MainUnit::MaxTyped; ++i) {
            QVERIFY(unit.type(message(u"PING"_s)));
        }
        QVERIFY(!unit.type(message(u"PING"_s)));
    }

    void a_panel_that_comes_again_gets_everything_again()
    {
        PseudoTerminal line;
        MainUnit unit(line, {message(QString::fromUtf8(AgcKey))});
        for (int round = 0; round < 3; ++round) {
            LineEnd panel(line.slavePath());
            QTRY_COMPARE(panel.received(), framed("VER"));
            QVERIFY(panel.write(framed("1.1.6.4")));
            QTRY_COMPARE(panel.received(), frames({"VER", AgcKey}));
            QVERIFY(panel.write(framed("R1:AGC:1")));
            QTRY_VERIFY(panel.received().endsWith(framed("CV,Tuner,agc,0,1")));
            panel.close();
            QTRY_VERIFY(!line.isOpen());
        }
    }

    void a_panel_that_closes_the_line_early_gets_no_more()
    {
        PseudoTerminal line;
        MainUnit unit(line, {message(u"CLEAR"_s), wait(200), message(u"PING"_s)});
        QSignalSpy sent(&unit, &MainUnit::sent);
        LineEnd panel(line.slavePath());
        QTRY_COMPARE(panel.received(), framed("VER"));
        QVERIFY(panel.write(framed("1.1.6.4")));
        QTRY_COMPARE(sent.size(), 2);
        panel.close();
        QTRY_VERIFY(!line.isOpen());
        QTest::qWait(400); // twice the wait in the list of menus
        QCOMPARE(sent.size(), 2);
    }

    void replaced_menus_come_after_CLEAR_and_lead_back_to_what_was_shown_data()
    {
        QTest::addColumn<QList<QByteArray>>("said"); // by the unit, before
        QTest::addColumn<QByteArray>("pressed");
        QTest::addColumn<QList<QByteArray>>("menus");
        QTest::addColumn<QList<QByteArray>>("back");
        using Bodies = QList<QByteArray>;
        const Bodies both{AgcKey, "AK,Demod,a,A,0,D1:A:,,0,,0,0,1"};
        const Bodies withPax = both + Bodies{"MS,PAX,Tuner,agc"};
        QTest::newRow("nothing was shown") << Bodies() << QByteArray() << both << Bodies();
        QTest::newRow("a menu") << Bodies{"SK,Demod", "SK,Tuner"} << QByteArray() << both
                                << Bodies{"SK,Tuner"};
        QTest::newRow("a menu that is gone")
            << Bodies{"SK,Old"} << QByteArray() << both << Bodies();
        QTest::newRow("a menu whose name another's begins with")
            << Bodies{"SK,Tun"} << QByteArray() << both << Bodies();
        QTest::newRow("the main menu") << Bodies{"SK,Tuner"} << framed("Main")
                                       << Bodies{AgcKey, "CM,Main,Tuner,agc"} << Bodies{"SK,Main"};
        QTest::newRow("the PAX main menu") << Bodies{"SK,Demod", "PAX,1"} << QByteArray() << withPax
                                           << Bodies{"SK,Demod", "PAX,1"};
        QTest::newRow("a PAX main menu that is gone")
            << Bodies{"PAX,1"} << QByteArray() << both << Bodies{"PAX,0"};
        QTest::newRow("a PAX main menu that was left")
            << Bodies{"PAX,1", "PAX,0"} << QByteArray() << withPax << Bodies();
        QTest::newRow("no menus at all")
            << Bodies{"SK,Tuner"} << QByteArray() << Bodies() << Bodies();
    }

    void replaced_menus_come_after_CLEAR_and_lead_back_to_what_was_shown()
    {
        QFETCH(QList<QByteArray>, said);
        QFETCH(QByteArray, pressed);
        QFETCH(QList<QByteArray>, menus);
        QFETCH(QList<QByteArray>, back);
        PseudoTerminal line;
        MainUnit unit(line, {message(u"PING"_s)});
        QSignalSpy received(&unit, &MainUnit::received);
        QSignalSpy done(&unit, &MainUnit::menusSent);
        LineEnd panel(line.slavePath());
        QVERIFY(panel.write(framed("1.1.6.4")));
        QTRY_COMPARE(received.size(), 1);
        for (const QByteArray& body : said) {
            QVERIFY(unit.type(message(QString::fromLatin1(body))));
        }
        if (!pressed.isEmpty()) {
            QVERIFY(panel.write(pressed));
            QTRY_COMPARE(received.size(), 2);
        }
        const QByteArray before = frames(QList<QByteArray>{"VER", "PING"} + said);
        QTRY_COMPARE(panel.received(), before);
        QList<MenuStep> steps;
        for (const QByteArray& body : menus) {
            steps.append(message(QString::fromLatin1(body)));
        }
        unit.replaceMenus(steps);
        QTRY_COMPARE(panel.received(), before + frames(QList<QByteArray>{"CLEAR"} + menus + back));
        QCOMPARE(done.size(), 2);
        QCOMPARE(unit.keys().count(),
            std::count_if(menus.begin(), menus.end(),
                [](const QByteArray& body) { return body.startsWith("AK"); }));
    }

    void menus_that_are_replaced_while_they_are_sent_begin_anew()
    {
        PseudoTerminal line;
        MainUnit unit(line, {message(u"SB,0,Old"_s), wait(600000), message(u"SB,0,Never"_s)});
        LineEnd panel(line.slavePath());
        QVERIFY(panel.write(framed("1.1.6.4")));
        QTRY_COMPARE(panel.received(), frames({"VER", "SB,0,Old"}));
        unit.replaceMenus({message(u"SB,0,New"_s)});
        QTRY_COMPARE(panel.received(), frames({"VER", "SB,0,Old", "CLEAR", "SB,0,New"}));
    }

    void menus_that_are_replaced_without_a_panel_are_sent_to_the_next()
    {
        PseudoTerminal line;
        MainUnit unit(line, {message(u"SB,0,Old"_s)});
        unit.replaceMenus({message(u"SB,0,New"_s)});
        for (int round = 0; round < 2; ++round) {
            LineEnd panel(line.slavePath());
            QVERIFY(panel.write(framed("1.1.6.4")));
            QTRY_COMPARE(panel.received(), frames({"VER", "SB,0,New"}));
            panel.close();
            QTRY_VERIFY(!line.isOpen());
        }
    }

    void confirmations_come_as_they_are_steered()
    {
        PseudoTerminal line;
        MainUnit unit(line, {message(QString::fromUtf8(AgcKey))});
        unit.confirmations().refuse(u"R1:AGC:0"_s);
        LineEnd panel(line.slavePath());
        QVERIFY(panel.write(framed("1.1.6.4")));
        QByteArray all = frames({"VER", AgcKey});
        QTRY_COMPARE(panel.received(), all);
        QVERIFY(panel.write(framed("R1:AGC:1") + framed("R1:AGC:0")));
        all += frames({"CV,Tuner,agc,0,1", "CV,Tuner,agc,0,1"});
        QTRY_COMPARE(panel.received(), all);
        unit.confirmations().silence(u"R1:AGC:1"_s);
        QVERIFY(panel.write(framed("R1:AGC:1") + framed("R1:AGC:0")));
        all += framed("CV,Tuner,agc,0,1"); // of the second
        QTRY_COMPARE(panel.received(), all);
        unit.confirmations().clear();
        unit.confirmations().delay(u"300:*:0"_s);
        QElapsedTimer elapsed;
        elapsed.start();
        QVERIFY(panel.write(framed("R1:AGC:0") + framed("R1:AGC:1")));
        all += framed("CV,Tuner,agc,0,1");
        QTRY_COMPARE(panel.received(), all);
        QVERIFY(elapsed.elapsed() < 300);
        QTRY_COMPARE(panel.received(), all + framed("CV,Tuner,agc,0,0"));
        QVERIFY(elapsed.elapsed() >= 300);
    }

    void a_delayed_confirmation_ends_with_the_panel_s_visit()
    {
        PseudoTerminal line;
        MainUnit unit(line, {message(QString::fromUtf8(AgcKey))});
        unit.confirmations().delay(u"300"_s);
        QSignalSpy received(&unit, &MainUnit::received);
        {
            LineEnd panel(line.slavePath());
            QVERIFY(panel.write(framed("1.1.6.4") + framed("R1:AGC:1")));
            QTRY_COMPARE(received.size(), 2);
        }
        QTRY_VERIFY(!line.isOpen());
        LineEnd panel(line.slavePath());
        QVERIFY(panel.write(framed("1.1.6.4")));
        QTRY_COMPARE(panel.received(), frames({"VER", AgcKey}));
        QTest::qWait(400);
        QCOMPARE(panel.received(), frames({"VER", AgcKey}));
    }

    void raw_bytes_go_out_as_they_are_past_the_faults_and_the_keys()
    {
        FaultTable faults(LineFaults::names());
        faults.set(u"drop=1"_s);
        PseudoTerminal line;
        MainUnit unit(line, {}, LineFaults(faults, 1));
        QSignalSpy sent(&unit, &MainUnit::sent);
        LineEnd panel(line.slavePath());
        QVERIFY(panel.write(framed("1.1.6.4")));
        QTRY_COMPARE(unit.panelVersion(), u"1.1.6.4"_s);
        panel.received();
        const auto before = panel.received().size();
        const QByteArray bytes = QByteArray("\x04\xff\x00x", 4) + framed(AgcKey);
        QVERIFY(unit.type({MenuStep::Kind::Raw, QString::fromLatin1(bytes), 0}));
        QTRY_COMPARE(panel.received().mid(before), bytes);
        QCOMPARE(unit.keys().count(), 0);
        QCOMPARE(sent.size(), 1); // VER
    }

    void the_link_mode_is_remembered()
    {
        PseudoTerminal line;
        MainUnit unit(line, {});
        LineEnd panel(line.slavePath());
        QVERIFY(panel.write(framed("Slave,2")));
        QTRY_COMPARE(unit.linkMode(), 2);
        QVERIFY(panel.write(framed("Slave,7") + framed("Slave,x") + framed("Slave,1")));
        QTRY_COMPARE(unit.linkMode(), 1);
    }

    void everything_received_is_announced_framed_or_not()
    {
        PseudoTerminal line;
        MainUnit unit(line, {});
        QSignalSpy received(&unit, &MainUnit::received);
        LineEnd panel(line.slavePath());
        QVERIFY(panel.write(framed("Main") + "D1:SPEN:1"));
        QTRY_COMPARE(received.size(), 2);
        QCOMPARE(received.at(0), (QVariantList{u"Main"_s, true}));
        QCOMPARE(received.at(1), (QVariantList{u"D1:SPEN:1"_s, false}));
    }

    void ten_thousand_messages_arrive_in_order_at_a_slow_reader()
    {
        QList<MenuStep> menus;
        QByteArray expected = framed("VER");
        for (int i = 0; i < 10000; ++i) {
            menus.append(message(u"SB,0,Number "_s + QString::number(i)));
            expected += framed("SB,0,Number " + QByteArray::number(i));
        }
        PseudoTerminal line;
        MainUnit unit(line, menus);
        QSignalSpy done(&unit, &MainUnit::menusSent);
        LineEnd panel(line.slavePath());
        QVERIFY(panel.write(framed("1.1.6.4")));
        QTRY_VERIFY(line.pendingBytes() > 0);
        QCOMPARE(done.size(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(panel.received().size(), expected.size(), 60000);
        QCOMPARE(panel.received(), expected);
        QCOMPARE(done.size(), 1);
    }
};

QN740_TEST_MAIN(tst_MainUnit)
#include "tst_MainUnit.moc"
