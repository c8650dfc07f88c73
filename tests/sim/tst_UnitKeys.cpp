#include "sim/unit/UnitKeys.h"
#include "support/TestMain.h"

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
            m_keys.apply(body);
        }
    }

    void a_key_is_answered_as_its_type_wants_data()
    {
        QTest::addColumn<QString>("fromPanel");
        QTest::addColumn<QStringList>("answers");
        const auto row = [](const char* name, const QString& from, const QStringList& to) {
            QTest::newRow(name) << from << to;
        };
        row("toggle on", "R1:AGC:1", {"CV,Tuner CH1,agc,7,1"});
        row("toggle off", "R1:AGC:0", {"CV,Tuner CH1,agc,7,0"});
        row("command", "D1:CLR:1", {"CV,Demod 1,clear,0,1"});
        row("number", "R1:FREQ:2300.500000", {"CV,Tuner CH1,freq,2300.500000,0"});
        row("slider", "R1:GAIN:31", {"CV,Tuner CH1,gain,31,0"});
        row("selection", "D1:MODE:1",
            {"AK,Demod 1,mod,Modulation: QPSK,2,D1:MODE:,,0,0 BPSK:1 QPSK:2 8 PSK,0,0,1"});
        row("selection with a blank", "D1:MODE:2",
            {"AK,Demod 1,mod,Modulation: 8 PSK,2,D1:MODE:,,0,0 BPSK:1 QPSK:2 8 PSK,0,0,1"});
        row("address", "SYS:IP:10.0.0.1", {"AK,System,ip,Address: 10.0.0.1,6,SYS:IP:,,0,,0,0,1"});
        row("file that is there", "SYS:FILE:2",
            {"AK,System,file,Set-up: FLIGHT,4,SYS:FILE:,,0,1 DEFAULT:2 FLIGHT,0,0,1"});
        row("file that is new", "SYS:FILE:NEW 1",
            {"AK,System,file,Set-up: NEW 1,4,SYS:FILE:,,0,1 DEFAULT:2 FLIGHT:3 NEW 1,0,0,1"});
        row("file that is there, by its name", "SYS:FILE:FLIGHT",
            {"AK,System,file,Set-up: FLIGHT,4,SYS:FILE:,,0,1 DEFAULT:2 FLIGHT,0,0,1"});
        row("file with a comma and a colon", "SYS:FILE:A,B:C",
            {"AK,System,file,Set-up: ABC,4,SYS:FILE:,,0,1 DEFAULT:2 FLIGHT:3 ABC,0,0,1"});
        row("menu", "SK:Tuner CH1:1", {"SK,Tuner CH1"});
        row("menu, again", "SK:Tuner CH1:0", {"SK,Tuner CH1"});
        row("menu without the colon", "SK:Demod 11", {"SK,Demod 1"});
        row("PAX menu", "PAX:1:1", {"PAX,1"});
        row("from the PAX menu to another", "PAX:0:Start:0", {"PAX,0", "SK,Start"});
        row("PAX menu off", "PAX:0:1", {"PAX,0"});
        row("all demodulators", "D1 D2 D3:RATE:9.000000",
            {"CV,Demod 1,rate,9.000000,0", "CV,Demod 2,rate,9.000000,0",
                "CV,Demod 3,rate,9.000000,0"});
        row("both receivers", "R1 R2:AGC:1", {"CV,Tuner CH1,agc,7,1", "CV,Tuner CH2,agc,0,1"});
        row("all, of which one has it", "D1 D2 D3:CLR:1", {"CV,Demod 1,clear,0,1"});
        row("toggle that is none", "R1:AGC:2", {});
        row("number that is none", "R1:FREQ:x", {});
        row("number that is not finite", "R1:FREQ:inf", {});
        row("nothing behind the command", "R1:FREQ:", {});
        row("selection with a comma", "D1:MODE:1,2", {});
        row("a file of commas", "SYS:FILE:,,", {});
        row("unknown type", "SYS:OTHER:1", {});
        row("no key", "PONG", {});
        row("a key without a command", "1", {});
        row("empty", "", {});
    }

    void a_key_is_answered_as_its_type_wants()
    {
        QFETCH(QString, fromPanel);
        QFETCH(QStringList, answers);
        QCOMPARE(m_keys.answers(fromPanel), answers);
    }

    void the_longest_command_wins()
    {
        m_keys.apply("AK,M,short,S,1,R1:,,0,,0,0,1");
        QCOMPARE(m_keys.answers("R1:AGC:1"), QStringList{"CV,Tuner CH1,agc,7,1"});
        QCOMPARE(m_keys.answers("R1:5"), QStringList{"CV,M,short,5,0"});
    }

    void two_keys_with_one_command_are_both_answered()
    {
        m_keys.apply("AK,M,agc,AGC,0,R1:AGC:,,0,,0,0,1");
        QCOMPARE(m_keys.answers("R1:AGC:1"), (QStringList{"CV,Tuner CH1,agc,7,1", "CV,M,agc,0,1"}));
    }

    void an_answer_that_was_sent_is_remembered()
    {
        const QString sent = m_keys.answers("SYS:FILE:NEW").value(0);
        m_keys.apply(sent);
        QCOMPARE(m_keys.answers("SYS:FILE:3"),
            QStringList{
                "AK,System,file,Set-up: NEW,4,SYS:FILE:,,0,1 DEFAULT:2 FLIGHT:3 NEW,0,0,1"});
        m_keys.apply("CV,Tuner CH1,agc,3,1");
        QCOMPARE(m_keys.answers("R1:AGC:0"), QStringList{"CV,Tuner CH1,agc,3,0"});
        m_keys.apply("CK,Tuner CH1,agc,2");
        QCOMPARE(m_keys.field("Tuner CH1", "agc", 10), QString("2"));
    }

    void an_AK_for_a_known_key_takes_its_place()
    {
        const auto before = m_keys.count();
        m_keys.apply("AK,Tuner CH1,agc,AGC,0,R9:AGC:,,0,,0,0,1");
        QCOMPARE(m_keys.count(), before);
        QVERIFY(m_keys.answers("R1:AGC:1").isEmpty());
        QCOMPARE(m_keys.answers("R9:AGC:1"), QStringList{"CV,Tuner CH1,agc,7,1"});
    }

    // as the panel has it: else the unit's next CV would set a value that the operator never saw
    void an_AK_brings_a_value_only_in_place_of_0()
    {
        m_keys.apply("AK,Tuner CH1,agc,AGC,0,R1:AGC:,,0,,5,0,1");
        QCOMPARE(m_keys.field("Tuner CH1", "agc", 8), QString("7"));
        m_keys.apply("AK,Tuner CH2,agc,AGC,0,R2:AGC:,,0,,5,0,1");
        QCOMPARE(m_keys.field("Tuner CH2", "agc", 8), QString("5"));
    }

    void files_stop_at_sixty()
    {
        for (int i = 0; i < 100; ++i) {
            m_keys.apply(m_keys.answers("SYS:FILE:F" + QString::number(i)).value(0));
        }
        QCOMPARE(m_keys.field("System", "file", 7).split(':').size(), 60);
    }

    void clear_forgets_everything()
    {
        m_keys.apply("CLEAR");
        QCOMPARE(m_keys.count(), 0);
        QVERIFY(m_keys.answers("R1:AGC:1").isEmpty());
    }

    void messages_for_unknown_keys_change_nothing()
    {
        const auto before = m_keys.count();
        m_keys.apply("CV,None,agc,1,1");
        m_keys.apply("CK,Tuner CH1,none,1");
        m_keys.apply("AK,short");
        QCOMPARE(m_keys.count(), before);
    }
};

QN740_TEST_MAIN(tst_UnitKeys)
#include "tst_UnitKeys.moc"
