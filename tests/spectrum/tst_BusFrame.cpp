#include "spectrum/BusFrame.h"
#include "spectrum/CardSide.h"
#include "support/TestMain.h"

#include <ctime>

using namespace Qt::StringLiterals;

using bus::Layout;
using bus::ReplyBuffer;
using Found = bus::ReplyBuffer::Found;

Q_DECLARE_METATYPE(bus::Layout)

namespace {

Found feed(
    ReplyBuffer& buffer, const QByteArray& bytes, CmdMsg& message, Layout layout = Layout::Decimal)
{
    buffer.append(bytes);
    return buffer.take(message, layout);
}

// The processor time of this thread, so that other load on the machine does not count.
qint64 computingNanoseconds()
{
    timespec now{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return now.tv_sec * qint64{1000000000} + now.tv_nsec;
}

qint64 nanosecondsFor(qsizetype size, qsizetype piece)
{
    // Noise that always looks like the beginning of a header.
    QByteArray noise;
    while (noise.size() < size) {
        noise += "[0190RFF]";
    }
    ReplyBuffer buffer;
    CmdMsg message;
    const qint64 before = computingNanoseconds();
    for (qsizetype at = 0; at < size; at += piece) {
        feed(buffer, noise.mid(at, piece), message);
    }
    return computingNanoseconds() - before;
}

} // namespace

class tst_BusFrame : public QObject
{
    Q_OBJECT

private slots:
    void a_request_is_framed_with_its_checksum()
    {
        const QByteArray bytes = bus::frame(u"0190RNME"_s, '[', ']', true);
        // 0x5b + 0x30 + 0x31 + 0x39 + 0x30 + 0x52 + 0x4e + 0x4d + 0x45 + 0x5d = 0x2b4, by hand
        QCOMPARE(bytes, QByteArray("[0190RNME]\xb4"));
    }

    void the_checksum_wraps_at_eight_bits_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("sum");
        QTest::newRow("nothing") << QByteArray() << 0;
        QTest::newRow("one") << QByteArray("\xff") << 0xff;
        QTest::newRow("wraps to 0") << QByteArray("\xff\x01") << 0;
        QTest::newRow("wraps twice") << QByteArray("\xff\xff\x03") << 1;
        QTest::newRow("a thousand") << QByteArray(1000, '\x07') << (7000 & 0xff);
    }

    void the_checksum_wraps_at_eight_bits()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, sum);
        QCOMPARE(int(static_cast<quint8>(bus::checksum(bytes))), sum);
    }

    void a_request_of_the_new_protocol_has_no_checksum()
    {
        QCOMPARE(bus::frame(u"0190RNME"_s, '<', '>', false), QByteArray("<0190RNME>"));
    }

    void characters_go_as_latin_1()
    {
        QCOMPARE(bus::frame(QString(QChar(0xe9)) + QChar(0x20ac), '[', ']', false),
            QByteArray("[\xe9?]"));
    }

    void a_request_is_recovered_from_its_frame()
    {
        QCOMPARE(bus::requestOf(bus::frame(u"0190RFFT000000"_s, '[', ']', true), true),
            u"0190RFFT000000"_s);
        QCOMPARE(bus::requestOf(bus::frame(u"0190RFFT"_s, '[', ']', false), false), u"0190RFFT"_s);
        QCOMPARE(bus::requestOf("", true), QString());
        QCOMPARE(bus::requestOf("[]", true), QString());
    }

    void a_spectrum_is_complete_at_its_last_byte_data()
    {
        QTest::addColumn<Layout>("layout");
        QTest::addColumn<QByteArray>("reply");
        QTest::addColumn<QByteArray>("data");
        const QByteArray points = QByteArray("\x00]\r[\xff", 5) + QByteArray(507, 'x');
        QTest::newRow("decimal, 0 points")
            << Layout::Decimal << cardSide::spectrum("") << QByteArray();
        QTest::newRow("decimal, 1 point")
            << Layout::Decimal << cardSide::spectrum("a") << QByteArray("a");
        QTest::newRow("decimal, 512 points of any value")
            << Layout::Decimal << cardSide::spectrum(points) << points;
        QTest::newRow("decimal, 9999 points")
            << Layout::Decimal << cardSide::spectrum(QByteArray(9999, 'p'))
            << QByteArray(9999, 'p');
        QTest::newRow("decimal, a length that is not a number counts as 0")
            << Layout::Decimal << QByteArray("[0190RFFTabcd") << QByteArray();
        QTest::newRow("decimal, a negative length counts as 0")
            << Layout::Decimal << QByteArray("[0190RFFT-001") << QByteArray();
        QTest::newRow("K7150, length 0 has one character")
            << Layout::K7150 << cardSide::k7150Spectrum(2, "") << QByteArray("\x02");
        QTest::newRow("K7150, 512 points and the channel")
            << Layout::K7150 << cardSide::k7150Spectrum(1, points) << '\x01' + points;
        QTest::newRow("K7150, the longest")
            << Layout::K7150 << cardSide::k7150Spectrum(0, QByteArray(65535, 'p'))
            << QByteArray(1, '\0') + QByteArray(65535, 'p');
    }

    void a_spectrum_is_complete_at_its_last_byte()
    {
        QFETCH(Layout, layout);
        QFETCH(QByteArray, reply);
        QFETCH(QByteArray, data);
        ReplyBuffer buffer;
        CmdMsg message;
        if (reply.size() < 2000) {
            for (qsizetype i = 0; i + 1 < reply.size(); ++i) {
                QCOMPARE(feed(buffer, reply.mid(i, 1), message, layout), Found::NeedMore);
            }
        } else {
            QCOMPARE(feed(buffer, reply.chopped(1), message, layout), Found::NeedMore);
        }
        QCOMPARE(feed(buffer, reply.right(1), message, layout), Found::Spectrum);
        QCOMPARE(message.address, u"0190"_s);
        QCOMPARE(message.command, u"RFFT"_s);
        QCOMPARE(message.data, QString::fromLatin1(data));
        QCOMPARE(buffer.size(), 0);
    }

    void noise_before_a_spectrum_is_dropped_data()
    {
        QTest::addColumn<QByteArray>("noise");
        QTest::newRow("ten bytes") << QByteArray("0123456789");
        QTest::newRow("frame characters") << QByteArray("[[[[");
        QTest::newRow("half a header") << QByteArray("[0190RFF");
        QTest::newRow("a whole text reply") << QByteArray("[0190RNMEab]\r");
        QTest::newRow("other address") << QByteArray("[0180RFFT");
        QTest::newRow("zeros") << QByteArray(300, '\0');
    }

    void noise_before_a_spectrum_is_dropped()
    {
        QFETCH(QByteArray, noise);
        ReplyBuffer buffer;
        CmdMsg message;
        QCOMPARE(feed(buffer, noise + cardSide::spectrum("points"), message), Found::Spectrum);
        QCOMPARE(message.data, u"points"_s);
    }

    void a_header_that_is_cut_anywhere_is_found()
    {
        const QByteArray reply = "noise" + cardSide::spectrum("points");
        for (qsizetype cut = 1; cut < reply.size(); ++cut) {
            ReplyBuffer buffer;
            CmdMsg message;
            QCOMPARE(feed(buffer, reply.left(cut), message), Found::NeedMore);
            QCOMPARE(feed(buffer, reply.mid(cut), message), Found::Spectrum);
            QCOMPARE(message.data, u"points"_s);
        }
    }

    void what_follows_a_spectrum_in_the_same_read_is_dropped()
    {
        ReplyBuffer buffer;
        CmdMsg message;
        QCOMPARE(feed(buffer, cardSide::spectrum("one") + cardSide::spectrum("two"), message),
            Found::Spectrum);
        QCOMPARE(message.data, u"one"_s);
        QCOMPARE(buffer.size(), 0);
    }

    void a_text_reply_is_parsed_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("address");
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("data");
        QTest::newRow("plain") << QByteArray("[0190RNMESweep]\r") << "0190"
                               << "RNME"
                               << "Sweep";
        QTest::newRow("no data") << QByteArray("[0190RNME]\r") << "0190"
                                 << "RNME"
                                 << "";
        QTest::newRow("other address") << QByteArray("[AB90RVER1.0]\r") << "AB90"
                                       << "RVER"
                                       << "1.0";
        QTest::newRow("spectrum of another address") << QByteArray("[0180RFFT0002ab]\r") << "0180"
                                                     << "RFFT"
                                                     << "0002ab";
        QTest::newRow("noise before it") << QByteArray("xyz[0190RNMEa]\r") << "0190"
                                         << "RNME"
                                         << "a";
        QTest::newRow("a bracket in the data") << QByteArray("[0190RNMEa]b]\r") << "0190"
                                               << "RNME"
                                               << "a]b";
        QTest::newRow("Latin-1") << QByteArray("[0190RNME\xe9]\r") << "0190"
                                 << "RNME" << QString(QChar(0xe9));
        QTest::newRow("a second reply is lost")
            << QByteArray("[0190RNMEa]\r[0190RVERb]\r") << "0190"
            << "RNME"
            << "a";
        QTest::newRow("an end before the start runs to the end")
            << QByteArray("]\r[0190RNMEab]\r") << "0190"
            << "RNME"
            << "ab]\r";
        QTest::newRow("too short for its fields runs to the end")
            << QByteArray("[0190]\rmore and more") << "0190"
            << "]\rmo"
            << "re and more";
        QTest::newRow("shorter than its fields") << QByteArray("[]\r") << "]\r"
                                                 << ""
                                                 << "";
    }

    void a_text_reply_is_parsed()
    {
        QFETCH(QByteArray, bytes);
        ReplyBuffer buffer;
        CmdMsg message;
        QCOMPARE(feed(buffer, bytes, message), Found::Reply);
        QTEST(message.address, "address");
        QTEST(message.command, "command");
        QTEST(message.data, "data");
        QCOMPARE(buffer.size(), 0);
    }

    void a_text_reply_that_is_cut_anywhere_is_assembled()
    {
        const QByteArray reply = "[0190RNMESweep]\r";
        for (qsizetype cut = 1; cut < reply.size(); ++cut) {
            ReplyBuffer buffer;
            CmdMsg message;
            QCOMPARE(feed(buffer, reply.left(cut), message), Found::NeedMore);
            QCOMPARE(feed(buffer, reply.mid(cut), message), Found::Reply);
            QCOMPARE(message.data, u"Sweep"_s);
        }
    }

    void bytes_without_a_reply_give_none()
    {
        ReplyBuffer buffer;
        CmdMsg message;
        QCOMPARE(feed(buffer, "", message), Found::NeedMore);
        QCOMPARE(feed(buffer, "noise ] \r [", message), Found::NeedMore);
    }

    void endless_garbage_is_dropped_and_a_reply_behind_it_found()
    {
        ReplyBuffer buffer;
        CmdMsg message;
        bool dropped = false;
        qsizetype largestSize = 0;
        for (int i = 0; i < 1000; ++i) {
            dropped = feed(buffer, QByteArray(1000, '['), message) == Found::Garbage || dropped;
            largestSize = qMax(largestSize, buffer.size());
        }
        QVERIFY(dropped);
        QVERIFY2(largestSize < 300 * 1024, qPrintable(QString::number(largestSize)));
        QCOMPARE(feed(buffer, cardSide::spectrum("ab"), message), Found::Spectrum);
    }

    void a_header_on_the_edge_of_dropped_garbage_is_found()
    {
        ReplyBuffer buffer;
        CmdMsg message;
        const QByteArray reply = cardSide::spectrum("points");
        QCOMPARE(
            feed(buffer, QByteArray(300 * 1024, 'x') + reply.left(8), message), Found::Garbage);
        QCOMPARE(feed(buffer, reply.mid(8), message), Found::Spectrum);
        QCOMPARE(message.data, u"points"_s);
    }

    void the_search_is_linear_in_the_bytes()
    {
        // Byte by byte, eight times the bytes must not take much more than eight times as long. A
        // search from the start each time would take sixty-four times as long.
        nanosecondsFor(20000, 1);
        const auto shortest = [](qsizetype size) {
            return std::min(
                {nanosecondsFor(size, 1), nanosecondsFor(size, 1), nanosecondsFor(size, 1)});
        };
        const qint64 small = shortest(25000);
        const qint64 large = shortest(200000);
        QVERIFY2(large < 24 * small, qPrintable(u"%1 ns and %2 ns"_s.arg(small).arg(large)));
    }
};

QN740_TEST_MAIN(tst_BusFrame)
#include "tst_BusFrame.moc"
