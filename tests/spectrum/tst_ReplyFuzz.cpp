// Ten million bytes of noise, broken replies and good ones through the reply parser, in pieces of
// every size, compared with the simplest possible implementation of the same rules.
#include "spectrum/BusFrame.h"
#include "spectrum/CardSide.h"
#include "spectrum/PlainBuffer.h"
#include "support/TestMain.h"

#include <optional>
#include <random>

using namespace Qt::StringLiterals;

using bus::Layout;
using Found = bus::ReplyBuffer::Found;

namespace {

constexpr qsizetype Bytes = 10 * 1000 * 1000;

class Source
{
public:
    explicit Source(quint32 seed)
        : m_random(seed)
    {
    }

    int below(int limit) { return static_cast<int>(m_random() % static_cast<quint32>(limit)); }

    QByteArray noise(int size)
    {
        static const QByteArray alphabet = "[]\r0190RFFTRNME\0\xff";
        QByteArray bytes(size, '\0');
        const bool difficult = below(2) == 0;
        for (char& byte : bytes) {
            byte = difficult ? alphabet.at(below(static_cast<int>(alphabet.size())))
                             : static_cast<char>(m_random());
        }
        return bytes;
    }

    QByteArray piece()
    {
        const QByteArray points = noise(below(700));
        switch (below(9)) {
        case 0:
            return noise(1 + below(200));
        case 1:
            return cardSide::spectrum(points);
        case 2:
            return cardSide::k7150Spectrum(below(4), points);
        case 3:
            return cardSide::text("RNME", noise(below(20)));
        case 4:
            return cardSide::spectrum(points).left(below(700));
        case 5:
            return "[0190RFFT" + noise(4);
        case 6:
            return "[0190RFFT"
                   "9999";
        case 7:
            return QByteArray("[0190RFFT[0190RFFT").left(below(19));
        default:
            return "]\r";
        }
    }

private:
    std::mt19937 m_random;
};

} // namespace

class tst_ReplyFuzz : public QObject
{
    Q_OBJECT

private slots:
    void ten_million_bytes_give_the_replies_that_the_rules_give_data()
    {
        QTest::addColumn<int>("layout");
        QTest::addColumn<int>("largest");
        QTest::newRow("decimal, byte by byte") << int(Layout::Decimal) << 1;
        QTest::newRow("decimal, small pieces") << int(Layout::Decimal) << 16;
        QTest::newRow("decimal, as they come") << int(Layout::Decimal) << 2000;
        QTest::newRow("K7150, small pieces") << int(Layout::K7150) << 16;
        QTest::newRow("K7150, as they come") << int(Layout::K7150) << 2000;
    }

    void ten_million_bytes_give_the_replies_that_the_rules_give()
    {
        QFETCH(int, layout);
        QFETCH(int, largest);
        const auto form = static_cast<Layout>(layout);
        // The five rows together feed all bytes.
        const qsizetype share = Bytes / 5;
        Source source(740 + static_cast<quint32>(largest + layout));
        bus::ReplyBuffer buffer;
        PlainBuffer plain;
        qsizetype fed = 0;
        int replies = 0;
        int clears = 0;
        QByteArray waiting;
        while (fed < share) {
            waiting += source.piece();
            while (!waiting.isEmpty()) {
                const QByteArray piece = waiting.left(1 + source.below(largest));
                waiting.remove(0, piece.size());
                fed += piece.size();
                buffer.append(piece);
                CmdMsg message;
                const Found found = buffer.take(message, form);
                const auto expected = plain.add(piece, form);
                QCOMPARE(found == Found::Reply || found == Found::Spectrum, expected.has_value());
                if (expected) {
                    QCOMPARE(message.address, expected->address);
                    QCOMPARE(message.command, expected->command);
                    QCOMPARE(message.data, expected->data);
                    ++replies;
                }
                QCOMPARE(buffer.size(), plain.bytes.size());
            }
            // The reply timer does the same.
            if (source.below(20) == 0) {
                buffer.clear();
                plain.bytes.clear();
                ++clears;
            }
        }
        QVERIFY2(replies > 300, qPrintable(QString::number(replies)));
        QVERIFY(clears > 100);
    }

    void a_good_reply_after_any_garbage_is_found()
    {
        Source source(1);
        int found = 0;
        for (int i = 0; i < 5000; ++i) {
            QByteArray garbage = source.noise(source.below(400));
            // A header among the garbage starts a reply of its own.
            garbage.replace("[0190RFFT", "");
            garbage.replace("[0190RFFT", "");
            bus::ReplyBuffer buffer;
            buffer.append(garbage + cardSide::spectrum("points"));
            CmdMsg message;
            if (garbage.contains("[0190RFFT")) {
                continue;
            }
            QCOMPARE(buffer.take(message, Layout::Decimal), Found::Spectrum);
            QCOMPARE(message.data, u"points"_s);
            ++found;
        }
        QVERIFY(found > 4900);
    }

    void a_reply_whose_announced_length_never_comes_takes_bounded_memory()
    {
        bus::ReplyBuffer buffer;
        CmdMsg message;
        buffer.append("[0190RFFT9999");
        qsizetype largestSize = 0;
        int spectra = 0;
        for (int i = 0; i < 100000; ++i) {
            buffer.append(QByteArray(100, 'x'));
            spectra += buffer.take(message, Layout::Decimal) == Found::Spectrum ? 1 : 0;
            largestSize = qMax(largestSize, buffer.size());
        }
        QCOMPARE(spectra, 1);
        QVERIFY(largestSize < 300 * 1024);
    }
};

QN740_TEST_MAIN(tst_ReplyFuzz)
#include "tst_ReplyFuzz.moc"
