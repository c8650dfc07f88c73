#include "link/FrameCutter.h"
#include "support/TestMain.h"

namespace {
const QString S = "\x02";
const QString E = "\x04";

// All messages of one turn: what the link does with each read.
QStringList turn(FrameCutter& cutter, const QString& text)
{
    cutter.append(text);
    QStringList messages;
    while (const auto message = cutter.next()) {
        messages += *message;
    }
    return messages;
}
} // namespace

class tst_FrameCutter : public QObject
{
    Q_OBJECT

private slots:
    void messages_are_cut_out_of_reads_data()
    {
        QTest::addColumn<QStringList>("reads");
        QTest::addColumn<QStringList>("messages");
        QTest::addColumn<QString>("rest");
        QTest::newRow("one frame")
            << QStringList{S + "AK,1" + E} << QStringList{S + "AK,1" + E} << QString();
        QTest::newRow("two frames in one read")
            << QStringList{S + "A" + E + S + "B" + E} << QStringList{S + "A" + E, S + "B" + E}
            << QString();
        QTest::newRow("a frame in two reads")
            << QStringList{S + "PI", "NG" + E} << QStringList{S + "PING" + E} << QString();
        QTest::newRow("one junk character is dropped")
            << QStringList{"x" + S + "PING" + E} << QStringList{S + "PING" + E} << QString();
        QTest::newRow("of two junk characters one stays in front")
            << QStringList{"xy" + S + "PING" + E} << QStringList{"y" + S + "PING" + E} << QString();
        QTest::newRow("of three the last two stay")
            << QStringList{"xyz" + S + "PING" + E} << QStringList{"yz" + S + "PING" + E}
            << QString();
        QTest::newRow("every read drops one more")
            << QStringList{"xyz" + S + "PI", "NG", E} << QStringList{S + "PING" + E} << QString();
        QTest::newRow("text without STX is discarded at once")
            << QStringList{"hello", S + "A" + E} << QStringList{S + "A" + E} << QString();
        QTest::newRow("an EOT alone is discarded")
            << QStringList{E, S + "A" + E} << QStringList{S + "A" + E} << QString();
        QTest::newRow("a frame without EOT waits")
            << QStringList{S + "PING"} << QStringList{} << QString(S + "PING");
        QTest::newRow("junk between two frames in one read stays in front of the second")
            << QStringList{S + "A" + E + "x" + S + "B" + E}
            << QStringList{S + "A" + E, "x" + S + "B" + E} << QString();
        QTest::newRow("what follows the last EOT is lost when it has no STX")
            << QStringList{S + "A" + E + "xy", S + "B" + E} << QStringList{S + "A" + E, S + "B" + E}
            << QString();
        QTest::newRow("an EOT in front of an STX ends a message of junk")
            << QStringList{"xy" + E + S + "A" + E} << QStringList{"y" + E, S + "A" + E}
            << QString();
        QTest::newRow("an STX inside a message is part of it")
            << QStringList{S + "A" + S + "B" + E} << QStringList{S + "A" + S + "B" + E}
            << QString();
        QTest::newRow("an empty read changes nothing")
            << QStringList{""} << QStringList{} << QString();
    }

    void messages_are_cut_out_of_reads()
    {
        QFETCH(QStringList, reads);
        FrameCutter cutter;
        QStringList messages;
        for (const QString& read : reads) {
            messages += turn(cutter, read);
        }
        QTEST(messages, "messages");
        QTEST(cutter.rest(), "rest");
    }

    void a_message_cut_anywhere_is_the_same_message()
    {
        const QString text = S + "AK,Tuner CH1,f,Frequency" + E + S + "PING" + E;
        for (int at = 1; at < text.size(); ++at) {
            FrameCutter cutter;
            QStringList messages = turn(cutter, text.left(at));
            messages += turn(cutter, text.mid(at));
            QCOMPARE(messages, (QStringList{S + "AK,Tuner CH1,f,Frequency" + E, S + "PING" + E}));
        }
    }

    void a_message_is_gone_from_the_rest_when_it_is_handed_out()
    {
        FrameCutter cutter;
        cutter.append(S + "A" + E + S + "B" + E);
        QCOMPARE(cutter.next().value(), S + "A" + E);
        QCOMPARE(cutter.rest(), E + S + "B" + E);
    }
};

QN740_TEST_MAIN(tst_FrameCutter)
#include "tst_FrameCutter.moc"
