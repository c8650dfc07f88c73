#include "sim/unit/UnitKeys.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

class tst_UnitKeys : public QObject
{
    Q_OBJECT

    UnitKeys m_keys;

private slots:
    void init()
    {
        m_keys = UnitKeys();
        for (const char* body : {
                 "AK,Tuner CH1,agc,AGC,0,R1:AGC:,,0,,7,0,1",
                 "AK,Tuner CH2,agc,AGC,0,R2:AGC:,,0,,0,0,1",
                 "AK,Tuner CH1,freq,Frequency,1,R1:FREQ:,2200 2400,1,,2250.5,0,1",
                 "AK,Tuner CH1,gain,Gain dB,3,R1:GAIN:,60 0,0,1:5,20,0,1",
                 "AK,Demod 1,rate,Rate,1,D1:RATE:,1 9,2,,5,0,1",
                 "AK,Demod 2,rate,Rate,1,D2:RATE:,1 9,2,,5,0,1",
                 "AK,Demod 3,rate,Rate,1,D3:RATE:,1 9,2,,5,0,1",
                 "AK,Demod 1,mod,Modulation: BPSK,2,D1:MODE:,,0,0 BPSK:1 QPSK:2 8 PSK,0,0,1",
                 "AK,Demod 1,clear,Clear,5,D1:CLR:,,0,,0,0,1",
                 "AK,System,ip,Address: 1.2.3.4,6,SYS:IP:,,0,,0,0,1",
                 "AK,System,file,Set-up,4,SYS:FILE:,,0,1 DEFAULT:2 FLIGHT,0,0,1",
                 "AK,System,other,Other,9,SYS:OTHER:,,0,,0,0,1",
                 "AK,System,mute,Nothing,0,,,0,,0,0,1",
                 "AK,Start,tuner,Tuner CH1,5,SK:Tuner CH1:,,0,,0,0,1",
                 "AK,Start,plain,Demod 1,5,SK:Demod 1,,0,,0,0,1",
                 "AK,Start,pax,PAX Menu,5,PAX:1:,,0,,0,0,1",
                 "AK,PAX,back,Start Menu,5,PAX:0:Start:,,0,,0,0,1",
                 "AK,PAX,off,Off,5,PAX:0:,,0,,0,0,1",
             }) {
            m_keys.apply(QString::fromUtf8(body));
        }
    }

    void a_key_is_answered_as_its_type_wants_data()
    {
        QTest::addColumn<QString>("fromPanel");
        QTest::addColumn<QStringList>("answers");
        const auto row = [](const char* name, const QString& from, const QStringList& to) {
            QTest::newRow(name) << from << to;
        };
        row("toggle on", u"R1:AGC:1"_s, {u"CV,Tuner CH1,agc,7,1"_s});
        row("toggle off", u"R1:AGC:0"_s, {u"CV,Tuner CH1,agc,7,0"_s});
        row("command", u"D1:CLR:1"_s, {u"CV,Demod 1,clear,0,1"_s});
        row("number", u"R1:FREQ:2300.500000"_s, {u"CV,Tuner CH1,freq,2300.500000,0"_s});
        row("slider", u"R1:GAIN:31"_s, {u"CV,Tuner CH1,gain,31,0"_s});
        row("selection", u"D1:MODE:1"_s,
            {u"AK,Demod 1,mod,Modulation: QPSK,2,D1:MODE:,,0,0 BPSK:1 QPSK:2 8 PSK,0,0,1"_s});
        row("selection with a blank", u"D1:MODE:2"_s,
            {u"AK,Demod 1,mod,Modulation: 8 PSK,2,D1:MODE:,,0,0 BPSK:1 QPSK:2 8 PSK,0,0,1"_s});
        row("address", u"SYS:IP:10.0.0.1"_s,
            {u"AK,System,ip,Address: 10.0.0.1,6,SYS:IP:,,0,,0,0,1"_s});
        row("file that is there", u"SYS:FILE:2"_s,
            {u"AK,System,file,Set-up: FLIGHT,4,SYS:FILE:,,0,1 DEFAULT:2 FLIGHT,0,0,1"_s});
        row("file that is new", u"SYS:FILE:NEW 1"_s,
            {u"AK,System,file,Set-up: NEW 1,4,SYS:FILE:,,0,1 DEFAULT:2 FLIGHT:3 NEW 1,0,0,1"_s});
        row("file that is there, by its name", u"SYS:FILE:FLIGHT"_s,
            {u"AK,System,file,Set-up: FLIGHT,4,SYS:FILE:,,0,1 DEFAULT:2 FLIGHT,0,0,1"_s});
        row("file with a comma and a colon", u"SYS:FILE:A,B:C"_s,
            {u"AK,System,file,Set-up: ABC,4,SYS:FILE:,,0,1 DEFAULT:2 FLIGHT:3 ABC,0,0,1"_s});
        row("menu", u"SK:Tuner CH1:1"_s, {u"SK,Tuner CH1"_s});
        row("menu, again", u"SK:Tuner CH1:0"_s, {u"SK,Tuner CH1"_s});
        row("menu without the colon", u"SK:Demod 11"_s, {u"SK,Demod 1"_s});
        row("PAX menu", u"PAX:1:1"_s, {u"PAX,1"_s});
        row("from the PAX menu to another", u"PAX:0:Start:0"_s, {u"PAX,0"_s, u"SK,Start"_s});
        row("PAX menu off", u"PAX:0:1"_s, {u"PAX,0"_s});
        row("all demodulators", u"D1 D2 D3:RATE:9.000000"_s,
            {u"CV,Demod 1,rate,9.000000,0"_s, u"CV,Demod 2,rate,9.000000,0"_s,
                u"CV,Demod 3,rate,9.000000,0"_s});
        row("both receivers", u"R1 R2:AGC:1"_s,
            {u"CV,Tuner CH1,agc,7,1"_s, u"CV,Tuner CH2,agc,0,1"_s});
        row("all, of which one has it", u"D1 D2 D3:CLR:1"_s, {u"CV,Demod 1,clear,0,1"_s});
        row("toggle that is neither 0 nor 1", u"R1:AGC:2"_s, {});
        row("not a number", u"R1:FREQ:x"_s, {});
        row("number that is not finite", u"R1:FREQ:inf"_s, {});
        row("nothing behind the command", u"R1:FREQ:"_s, {});
        row("selection with a comma", u"D1:MODE:1,2"_s, {});
        row("a file of commas", u"SYS:FILE:,,"_s, {});
        row("unknown type", u"SYS:OTHER:1"_s, {});
        row("no key", u"PONG"_s, {});
        row("a key without a command", u"1"_s, {});
        row("empty", u""_s, {});
    }

    void a_key_is_answered_as_its_type_wants()
    {
        QFETCH(QString, fromPanel);
        QFETCH(QStringList, answers);
        QCOMPARE(m_keys.answers(fromPanel), answers);
    }

    void the_longest_command_wins()
    {
        m_keys.apply(u"AK,M,short,S,1,R1:,,0,,0,0,1"_s);
        QCOMPARE(m_keys.answers(u"R1:AGC:1"_s), QStringList{u"CV,Tuner CH1,agc,7,1"_s});
        QCOMPARE(m_keys.answers(u"R1:5"_s), QStringList{u"CV,M,short,5,0"_s});
    }

    void two_keys_with_one_command_are_both_answered()
    {
        m_keys.apply(u"AK,M,agc,AGC,0,R1:AGC:,,0,,0,0,1"_s);
        QCOMPARE(m_keys.answers(u"R1:AGC:1"_s),
            (QStringList{u"CV,Tuner CH1,agc,7,1"_s, u"CV,M,agc,0,1"_s}));
    }

    void a_refusal_gives_a_key_the_value_that_it_has_data()
    {
        QTest::addColumn<QString>("fromPanel");
        QTest::addColumn<QStringList>("answers");
        const auto row = [](const char* name, const QString& from, const QStringList& to) {
            QTest::newRow(name) << from << to;
        };
        row("toggle", u"R1:AGC:1"_s, {u"CV,Tuner CH1,agc,7,0"_s});
        row("command", u"D1:CLR:1"_s, {u"CV,Demod 1,clear,0,0"_s});
        row("number", u"R1:FREQ:2300.500000"_s, {u"CV,Tuner CH1,freq,2250.5,0"_s});
        row("slider", u"R1:GAIN:31"_s, {u"CV,Tuner CH1,gain,20,0"_s});
        row("selection", u"D1:MODE:1"_s,
            {u"AK,Demod 1,mod,Modulation: BPSK,2,D1:MODE:,,0,0 BPSK:1 QPSK:2 8 PSK,0,0,1"_s});
        row("address", u"SYS:IP:10.0.0.1"_s,
            {u"AK,System,ip,Address: 1.2.3.4,6,SYS:IP:,,0,,0,0,1"_s});
        row("file", u"SYS:FILE:NEW 1"_s,
            {u"AK,System,file,Set-up,4,SYS:FILE:,,0,1 DEFAULT:2 FLIGHT,0,0,1"_s});
        row("menu", u"SK:Tuner CH1:1"_s, {});
        row("PAX", u"PAX:1:1"_s, {});
        row("type that does not exist", u"SYS:OTHER:1"_s, {});
        row("no key", u"XX:1"_s, {});
        row("several", u"D1 D2 D3:RATE:7"_s,
            {u"CV,Demod 1,rate,5,0"_s, u"CV,Demod 2,rate,5,0"_s, u"CV,Demod 3,rate,5,0"_s});
    }

    void a_refusal_gives_a_key_the_value_that_it_has()
    {
        QFETCH(QString, fromPanel);
        QTEST(m_keys.refusals(fromPanel), "answers");
    }

    void an_answer_that_was_sent_is_remembered()
    {
        const QString sent = m_keys.answers(u"SYS:FILE:NEW"_s).value(0);
        m_keys.apply(sent);
        QCOMPARE(m_keys.answers(u"SYS:FILE:3"_s),
            QStringList{
                u"AK,System,file,Set-up: NEW,4,SYS:FILE:,,0,1 DEFAULT:2 FLIGHT:3 NEW,0,0,1"_s});
        m_keys.apply(u"CV,Tuner CH1,agc,3,1"_s);
        QCOMPARE(m_keys.answers(u"R1:AGC:0"_s), QStringList{u"CV,Tuner CH1,agc,3,0"_s});
        m_keys.apply(u"CK,Tuner CH1,agc,2"_s);
        QCOMPARE(m_keys.field(u"Tuner CH1"_s, u"agc"_s, 10), u"2"_s);
    }

    void an_AK_for_a_known_key_takes_its_place()
    {
        const auto before = m_keys.count();
        m_keys.apply(u"AK,Tuner CH1,agc,AGC,0,R9:AGC:,,0,,0,0,1"_s);
        QCOMPARE(m_keys.count(), before);
        QVERIFY(m_keys.answers(u"R1:AGC:1"_s).isEmpty());
        QCOMPARE(m_keys.answers(u"R9:AGC:1"_s), QStringList{u"CV,Tuner CH1,agc,7,1"_s});
    }

    // The panel does the same. Otherwise the unit's next CV would set a value that the operator has
    // never seen.
    void an_AK_brings_a_value_only_in_place_of_0()
    {
        m_keys.apply(u"AK,Tuner CH1,agc,AGC,0,R1:AGC:,,0,,5,0,1"_s);
        QCOMPARE(m_keys.field(u"Tuner CH1"_s, u"agc"_s, 8), u"7"_s);
        m_keys.apply(u"AK,Tuner CH2,agc,AGC,0,R2:AGC:,,0,,5,0,1"_s);
        QCOMPARE(m_keys.field(u"Tuner CH2"_s, u"agc"_s, 8), u"5"_s);
    }

    void files_stop_at_sixty()
    {
        for (int i = 0; i < 100; ++i) {
            m_keys.apply(m_keys.answers(u"SYS:FILE:F"_s + QString::number(i)).value(0));
        }
        QCOMPARE(m_keys.field(u"System"_s, u"file"_s, 7).split(u':').size(), 60);
    }

    void clear_forgets_everything()
    {
        m_keys.apply(u"CLEAR"_s);
        QCOMPARE(m_keys.count(), 0);
        QVERIFY(m_keys.answers(u"R1:AGC:1"_s).isEmpty());
    }

    void messages_for_unknown_keys_change_nothing()
    {
        const auto before = m_keys.count();
        m_keys.apply(u"CV,None,agc,1,1"_s);
        m_keys.apply(u"CK,Tuner CH1,none,1"_s);
        m_keys.apply(u"AK,short"_s);
        QCOMPARE(m_keys.count(), before);
    }
};

QN740_TEST_MAIN(tst_UnitKeys)
#include "tst_UnitKeys.moc"
