#include "link/FrameCutter.h"
#include "link/Limits.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

namespace {
const QString S = u"\x02"_s;
const QString E = u"\x04"_s;

// Returns all messages of one read, in the way in which the link takes them.
QStringList readAll(FrameCutter& cutter, const QString& text)
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
            << QStringList{S + u"AK,1"_s + E} << QStringList{S + u"AK,1"_s + E} << QString();
        QTest::newRow("two frames in one read")
            << QStringList{S + u"A"_s + E + S + u"B"_s + E}
            << QStringList{S + u"A"_s + E, S + u"B"_s + E} << QString();
        QTest::newRow("a frame in two reads")
            << QStringList{S + u"PI"_s, u"NG"_s + E} << QStringList{S + u"PING"_s + E} << QString();
        QTest::newRow("one junk character is dropped")
            << QStringList{u"x"_s + S + u"PING"_s + E} << QStringList{S + u"PING"_s + E}
            << QString();
        QTest::newRow("one of two junk characters stays in front")
            << QStringList{u"xy"_s + S + u"PING"_s + E} << QStringList{u"y"_s + S + u"PING"_s + E}
            << QString();
        QTest::newRow("the last two of three junk characters stay in front")
            << QStringList{u"xyz"_s + S + u"PING"_s + E} << QStringList{u"yz"_s + S + u"PING"_s + E}
            << QString();
        QTest::newRow("every read drops one more")
            << QStringList{u"xyz"_s + S + u"PI"_s, u"NG"_s, E} << QStringList{S + u"PING"_s + E}
            << QString();
        QTest::newRow("text without STX is discarded at once")
            << QStringList{u"hello"_s, S + u"A"_s + E} << QStringList{S + u"A"_s + E} << QString();
        QTest::newRow("an EOT alone is discarded")
            << QStringList{E, S + u"A"_s + E} << QStringList{S + u"A"_s + E} << QString();
        QTest::newRow("a frame without EOT waits")
            << QStringList{S + u"PING"_s} << QStringList{} << QString(S + u"PING"_s);
        QTest::newRow("junk between two frames in one read stays in front of the second")
            << QStringList{S + u"A"_s + E + u"x"_s + S + u"B"_s + E}
            << QStringList{S + u"A"_s + E, u"x"_s + S + u"B"_s + E} << QString();
        QTest::newRow("what follows the last EOT is lost when it has no STX")
            << QStringList{S + u"A"_s + E + u"xy"_s, S + u"B"_s + E}
            << QStringList{S + u"A"_s + E, S + u"B"_s + E} << QString();
        QTest::newRow("an EOT in front of an STX ends a message of junk")
            << QStringList{u"xy"_s + E + S + u"A"_s + E} << QStringList{u"y"_s + E, S + u"A"_s + E}
            << QString();
        QTest::newRow("an STX inside a message is part of it")
            << QStringList{S + u"A"_s + S + u"B"_s + E} << QStringList{S + u"A"_s + S + u"B"_s + E}
            << QString();
        QTest::newRow("a junk character, a frame and half of the next one")
            << QStringList{u"x"_s + S + u"A"_s + E + S + u"B"_s, E}
            << QStringList{S + u"A"_s + E, S + u"B"_s + E} << QString();
        QTest::newRow("an empty read changes nothing")
            << QStringList{u""_s} << QStringList{} << QString();
    }

    void messages_are_cut_out_of_reads()
    {
        QFETCH(QStringList, reads);
        FrameCutter cutter;
        QStringList messages;
        for (const QString& read : reads) {
            messages += readAll(cutter, read);
        }
        QTEST(messages, "messages");
        QTEST(cutter.rest(), "rest");
    }

    void bytes_are_characters_of_the_same_code()
    {
        QByteArray bytes;
        for (int code = 0; code < 256; ++code) {
            bytes += code == 4 ? 'x' : static_cast<char>(code);
        }
        FrameCutter cutter;
        cutter.append("\x02" + bytes);
        QCOMPARE(cutter.rest(), S + QString::fromLatin1(bytes));
        cutter.append(QByteArray("\x04"));
        QCOMPARE(cutter.next(), S + QString::fromLatin1(bytes) + E);
    }

    void a_message_cut_anywhere_is_the_same_message()
    {
        const QString text = S + u"AK,Tuner CH1,f,Frequency"_s + E + S + u"PING"_s + E;
        for (int at = 1; at < text.size(); ++at) {
            FrameCutter cutter;
            QStringList messages = readAll(cutter, text.left(at));
            messages += readAll(cutter, text.mid(at));
            QCOMPARE(
                messages, (QStringList{S + u"AK,Tuner CH1,f,Frequency"_s + E, S + u"PING"_s + E}));
        }
    }

    void a_message_is_removed_before_it_is_handed_on()
    {
        FrameCutter cutter;
        cutter.append(S + u"A"_s + E + S + u"B"_s + E);
        QCOMPARE(cutter.next().value(), S + u"A"_s + E);
        QCOMPARE(cutter.rest(), E + S + u"B"_s + E);
    }

    void a_message_that_grows_past_its_limit_is_dropped_with_a_warning()
    {
        FrameCutter cutter;
        cutter.append(S + QString(linkLimits::MaxMessage - 1, u'a'));
        QVERIFY(!cutter.next());
        QCOMPARE(cutter.rest().size(), linkLimits::MaxMessage);
        QTest::ignoreMessage(
            QtWarningMsg, "16777216 characters without the end of a message were dropped");
        cutter.append(u"a"_s);
        QVERIFY(!cutter.next());
        QCOMPARE(cutter.rest(), QString());
    }
};

QN740_TEST_MAIN(tst_FrameCutter)
#include "tst_FrameCutter.moc"
