#include "spectrum/QueueEntry.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

using bus::QueueEntry;
using Kind = QueueEntry::Kind;

Q_DECLARE_METATYPE(bus::QueueEntry::Kind)

class tst_QueueEntry : public QObject
{
    Q_OBJECT

private slots:
    void times_are_those_of_the_bus()
    {
        QCOMPARE(bus::DefaultReplyMs, 450);
        QCOMPARE(bus::MaxReplyMs, 10000);
    }

    void a_request_waits_the_usual_time_and_keeps_its_text()
    {
        const QueueEntry entry = QueueEntry::request(u"\x07 a\x08"_s);
        QCOMPARE(entry.kind(), Kind::Request);
        QCOMPARE(entry.text(), u"\x07 a\x08"_s);
        QCOMPARE(entry.timeoutMs(), 450);
    }

    void a_marker_keeps_its_flag()
    {
        const QueueEntry entry = QueueEntry::marker(u"ClrAvg1"_s);
        QCOMPARE(entry.kind(), Kind::Marker);
        QCOMPARE(entry.text(), u"ClrAvg1"_s);
    }

    void a_timeout_is_bounded_data()
    {
        QTest::addColumn<int>("asked");
        QTest::addColumn<int>("ms");
        QTest::newRow("inside") << 2000 << 2000;
        QTest::newRow("zero") << 0 << 0;
        QTest::newRow("negative") << -1 << 0;
        QTest::newRow("at the maximum") << 10000 << 10000;
        QTest::newRow("above the maximum") << 10001 << 10000;
    }

    void a_timeout_is_bounded()
    {
        QFETCH(int, asked);
        const QueueEntry entry = QueueEntry::timedRequest(u"a"_s, asked);
        QCOMPARE(entry.kind(), Kind::TimedRequest);
        QCOMPARE(entry.text(), u"a"_s);
        QTEST(entry.timeoutMs(), "ms");
    }

    void control_characters_are_read_data()
    {
        QTest::addColumn<QString>("queued");
        QTest::addColumn<Kind>("kind");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("ms");
        const QString timed(QChar(0x08));
        const QString marker(QChar(0x07));
        QTest::newRow("plain") << "0190RNME" << Kind::Request << "0190RNME" << 450;
        QTest::newRow("empty") << "" << Kind::Request << "" << 450;
        QTest::newRow("control character inside")
            << u"a"_s + marker + timed << Kind::Request << u"a"_s + marker + timed << 450;
        QTest::newRow("timeout") << timed + u"70 a"_s << Kind::TimedRequest << "a" << 70;
        QTest::newRow("blanks belong to the request")
            << timed + u"70 a b  c"_s << Kind::TimedRequest << "a b  c" << 70;
        QTest::newRow("no blank") << timed + u"70"_s << Kind::TimedRequest << "" << 70;
        QTest::newRow("no timeout") << timed + u" a"_s << Kind::TimedRequest << "a" << 0;
        QTest::newRow("timeout that is not a number")
            << timed + u"soon a"_s << Kind::TimedRequest << "a" << 0;
        QTest::newRow("timeout above the maximum")
            << timed + u"20000 a"_s << Kind::TimedRequest << "a" << 10000;
        QTest::newRow("a marker behind a timeout is text")
            << timed + u"70 "_s + marker + u"a"_s << Kind::TimedRequest << marker + u"a"_s << 70;
        QTest::newRow("marker") << marker + u"ClrAvg0"_s << Kind::Marker << "ClrAvg0" << 0;
        QTest::newRow("empty marker") << marker << Kind::Marker << "" << 0;
        QTest::newRow("a timeout behind a marker is its flag")
            << marker + timed + u"70 a"_s << Kind::Marker << timed + u"70 a"_s << 0;
    }

    void control_characters_are_read()
    {
        QFETCH(QString, queued);
        const QueueEntry entry = QueueEntry::fromText(queued);
        QTEST(entry.kind(), "kind");
        QTEST(entry.text(), "text");
        QTEST(entry.timeoutMs(), "ms");
    }

    void text_that_can_only_be_a_request_is_never_a_marker()
    {
        const QString text = QChar(0x07) + u"flag"_s;
        const QueueEntry plain = QueueEntry::requestFromText(text);
        QCOMPARE(plain.kind(), Kind::Request);
        QCOMPARE(plain.text(), text);
        const QueueEntry timed = QueueEntry::requestFromText(QChar(0x08) + u"70 a"_s);
        QCOMPARE(timed.kind(), Kind::TimedRequest);
        QCOMPARE(timed.timeoutMs(), 70);
    }
};

QN740_TEST_MAIN(tst_QueueEntry)
#include "tst_QueueEntry.moc"
