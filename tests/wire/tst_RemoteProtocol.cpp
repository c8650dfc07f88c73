#include "support/TestMain.h"
#include "wire/RemoteProtocol.h"

#include <array>

using namespace remoteProtocol;

namespace {

// The bytes of a text in hexadecimal digits.
QByteArray bytes(const char* hex)
{
    return QByteArray::fromHex(hex);
}

// Contents of a whole message: without its length and type.
QByteArray contentsOf(const QByteArray& message)
{
    return message.mid(5);
}

} // namespace

class tst_RemoteProtocol : public QObject
{
    Q_OBJECT

private slots:
    void messages_have_the_described_bytes_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<QByteArray>("expected");
        const QByteArray name = QByteArray("QN740").toHex();
        QTest::newRow("hello") << helloMessage({{800, 480}, false})
                               << bytes("0000000e 01" + name + "0001 0320 01e0 01 00");
        QTest::newRow("hello, view only") << helloMessage({{4096, 1}, true})
                                          << bytes("0000000e 01" + name + "0001 1000 0001 01 01");
        QTest::newRow("end") << endMessage() << bytes("00000001 03");
        QTest::newRow("want a change") << wantMessage(false) << bytes("00000002 10 00");
        QTest::newRow("want all") << wantMessage(true) << bytes("00000002 10 01");
        QTest::newRow("finger up")
            << pointerMessage({{799, 479}, false}) << bytes("00000006 11 00 031f 01df");
        QTest::newRow("finger down")
            << pointerMessage({{0, 1}, true}) << bytes("00000006 11 01 0000 0001");
        QTest::newRow("finger beside")
            << pointerMessage({{-1, Beside + 1}, true}) << bytes("00000006 11 01 0000 ffff");
    }

    void messages_have_the_described_bytes()
    {
        QFETCH(QByteArray, message);
        QFETCH(QByteArray, expected);
        QCOMPARE(message.toHex(), expected.toHex());
    }

    void a_rectangle_has_its_place_and_its_pixels_line_by_line()
    {
        // Six pixels, the right ones of each line of three do not belong to it.
        const std::array<quint32, 6> picture{
            0x00010203, 0x00040506, 0xff, 0x00070809, 0x000a0b0c, 0xff};
        QByteArray message("before");
        appendRectangle(message, QRect(7, 300, 2, 2), reinterpret_cast<const uchar*>(&picture), 12);
        QCOMPARE(message.mid(6).toHex(),
            bytes("00000019 02 0007 012c 0002 0002 03020100 06050400 09080700 0c0b0a00").toHex());
        const auto read = readRectangle(message.mid(11));
        QVERIFY(read);
        QCOMPARE(read->place, QRect(7, 300, 2, 2));
        QCOMPARE(read->pixels.toHex(), bytes("03020100 06050400 09080700 0c0b0a00").toHex());
    }

    void a_hello_is_read_when_it_is_as_described_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<QSize>("size"); // empty: it is not read
        const QByteArray name = QByteArray("QN740").toHex();
        const auto row = [&name](const char* text, const char* rest, const QSize& size = {}) {
            QTest::newRow(text) << bytes(name + rest) << size;
        };
        row("the panel", "0001 0320 01e0 01 00", {800, 480});
        row("the largest", "0001 1000 1000 01 00", {4096, 4096});
        row("too wide", "0001 1001 1000 01 00");
        row("too high", "0001 1000 1001 01 00");
        row("no width", "0001 0000 01e0 01 00");
        row("no height", "0001 0320 0000 01 00");
        row("another version", "0002 0320 01e0 01 00");
        row("another order of colours", "0001 0320 01e0 02 00");
        row("too short", "0001 0320 01e0 01");
        row("too long", "0001 0320 01e0 01 00 00");
        QTest::newRow("another name") << "QN741" + bytes("0001 0320 01e0 01 00") << QSize();
        QTest::newRow("nothing") << QByteArray() << QSize();
    }

    void a_hello_is_read_when_it_is_as_described()
    {
        QFETCH(QByteArray, contents);
        const auto hello = readHello(contents);
        QTEST(hello ? hello->size : QSize(), "size");
    }

    void one_bit_of_the_flags_counts_data()
    {
        QTest::addColumn<char>("flags");
        QTest::addColumn<bool>("set");
        QTest::newRow("none") << '\0' << false;
        QTest::newRow("the first") << '\1' << true;
        QTest::newRow("another one") << '\2' << false;
        QTest::newRow("all") << '\xff' << true;
    }

    void one_bit_of_the_flags_counts()
    {
        QFETCH(char, flags);
        QFETCH(bool, set);
        QByteArray hello = contentsOf(helloMessage({{800, 480}, false}));
        hello.back() = flags;
        QCOMPARE(readHello(hello)->viewOnly, set);
        QCOMPARE(readWant(QByteArray(1, flags)), std::optional(set));
        QCOMPARE(readPointer(flags + bytes("0102 0304"))->down, set);
    }

    void a_rectangle_is_read_when_it_has_all_its_pixels_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<bool>("read");
        const auto row = [](const char* text, const char* place, int count, bool read) {
            QTest::newRow(text) << bytes(place) + QByteArray(count, 'p') << read;
        };
        row("one pixel", "0000 0000 0001 0001", 4, true);
        row("three by two", "0000 0000 0003 0002", 24, true);
        row("a byte is missing", "0000 0000 0003 0002", 23, false);
        row("a byte too many", "0000 0000 0003 0002", 25, false);
        row("no width", "0000 0000 0000 0002", 0, false);
        row("no height", "0000 0000 0003 0000", 0, false);
        row("no place", "0000 0000 0003 00", 0, false);
        // More bytes than 32 bits can count.
        row("as large as can be said", "0000 0000 ffff ffff", 4, false);
        row("2^32 bytes", "0000 0000 8000 8000", 0, false);
    }

    void a_rectangle_is_read_when_it_has_all_its_pixels()
    {
        QFETCH(QByteArray, contents);
        QTEST(readRectangle(contents).has_value(), "read");
    }

    void a_want_has_one_byte_and_a_finger_five()
    {
        QVERIFY(!readWant({}) && !readWant("\1\1"));
        const QByteArray pointer = bytes("01 031f 01df");
        const auto read = readPointer(pointer);
        QVERIFY(read);
        QCOMPARE(read->at, QPoint(799, 479));
        QVERIFY(!readPointer(pointer.chopped(1)) && !readPointer(pointer + '\0'));
    }

    void a_finger_may_be_late_by_one_repeat()
    {
        using namespace std::chrono_literals;
        QCOMPARE(MaxSilence, 3000ms);
        QVERIFY(2 * RepeatTime < MaxSilence);
    }

    void messages_are_cut_out_of_the_stream_wherever_it_is_split()
    {
        const QByteArray stream = wantMessage(true) + endMessage() + pointerMessage({{1, 2}, true});
        for (qsizetype size = 1; size <= stream.size(); ++size) {
            Cutter cutter(MaxRequestBytes);
            QByteArray types;
            QList<QByteArray> contents;
            for (qsizetype at = 0; at < stream.size(); at += size) {
                cutter.append(stream.mid(at, size));
                while (const auto message = cutter.next()) {
                    types += static_cast<char>(message->type);
                    contents += message->contents;
                }
            }
            QCOMPARE(types, QByteArray("\x10\x03\x11"));
            QCOMPARE(contents, (QList<QByteArray>{"\1", "", bytes("01 0001 0002")}));
            QVERIFY(!cutter.isBroken());
        }
    }

    void a_length_out_of_range_breaks_the_stream_data()
    {
        QTest::addColumn<QByteArray>("length");
        QTest::addColumn<bool>("broken");
        QTest::newRow("0") << bytes("00000000") << true;
        QTest::newRow("1") << bytes("00000001") << false;
        QTest::newRow("the longest") << bytes("00000010") << false;
        QTest::newRow("one more") << bytes("00000011") << true;
        QTest::newRow("no int") << bytes("ffffffff") << true;
    }

    void a_length_out_of_range_breaks_the_stream()
    {
        QFETCH(QByteArray, length);
        QFETCH(bool, broken);
        Cutter cutter(MaxRequestBytes);
        cutter.append(length);
        QVERIFY(!cutter.next()); // nothing follows yet
        QCOMPARE(cutter.isBroken(), broken);
        cutter.append(QByteArray(16, 'x'));
        QCOMPARE(cutter.next().has_value(), !broken);
    }

    void nothing_is_found_behind_a_wrong_length()
    {
        Cutter cutter(MaxRequestBytes);
        cutter.append(bytes("00000000"));
        QVERIFY(!cutter.next());
        cutter.append(endMessage());
        QVERIFY(!cutter.next());
        QVERIFY(cutter.isBroken());
    }
};

QN740_TEST_MAIN(tst_RemoteProtocol)
#include "tst_RemoteProtocol.moc"
