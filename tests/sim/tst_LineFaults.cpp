#include "sim/line/LineFaults.h"
#include "support/Pty.h"
#include "support/TestMain.h"

namespace {

const QByteArray Frame = framed("SB,0,Text");

LineFaults faults(const char* rates, quint32 seed = 1)
{
    FaultTable table(LineFaults::names());
    const QString fault = table.set(QString::fromUtf8(rates));
    return fault.isEmpty() ? LineFaults(table, seed) : LineFaults();
}

QByteArray joined(const QList<LineFaults::Piece>& pieces)
{
    QByteArray bytes;
    for (const LineFaults::Piece& piece : pieces) {
        bytes += piece.bytes;
    }
    return bytes;
}

// Returns how many of 10,000 frames arrive changed.
int spoiled(const char* rates)
{
    LineFaults line = faults(rates);
    int count = 0;
    for (int i = 0; i < 10000; ++i) {
        const auto pieces = line.pass(Frame);
        count += pieces.size() == 1 && pieces.first().bytes == Frame ? 0 : 1;
    }
    return count;
}

} // namespace

class tst_LineFaults : public QObject
{
    Q_OBJECT

private slots:
    void without_faults_a_frame_is_unchanged()
    {
        LineFaults line;
        const auto pieces = line.pass(Frame);
        QCOMPARE(pieces.size(), 1);
        QCOMPARE(pieces.first().bytes, Frame);
        QCOMPARE(pieces.first().pauseMs, 0);
    }

    void drop_removes_one_byte()
    {
        LineFaults line = faults("drop=1");
        QSet<QByteArray> seen;
        for (int i = 0; i < 1000; ++i) {
            const QByteArray bytes = joined(line.pass(Frame));
            QCOMPARE(bytes.size(), Frame.size() - 1);
            seen.insert(bytes);
        }
        // Any byte can be missing, including the frame characters.
        QVERIFY(seen.contains(Frame.mid(1)));
        QVERIFY(seen.contains(Frame.chopped(1)));
        QCOMPARE(seen.size(), Frame.size());
    }

    void double_repeats_one_byte()
    {
        LineFaults line = faults("double=1");
        QSet<QByteArray> seen;
        for (int i = 0; i < 1000; ++i) {
            const QByteArray bytes = joined(line.pass(Frame));
            QCOMPARE(bytes.size(), Frame.size() + 1);
            qsizetype at = 0;
            while (at < Frame.size() && bytes.at(at) == Frame.at(at)) {
                ++at;
            }
            QCOMPARE(bytes.at(at), bytes.at(at - 1));
            QCOMPARE(bytes.mid(at + 1), Frame.mid(at));
            seen.insert(bytes);
        }
        // Any byte can come twice, including the frame characters.
        QVERIFY(seen.contains(Frame.left(1) + Frame));
        QVERIFY(seen.contains(Frame + Frame.right(1)));
    }

    void noise_changes_up_to_four_bytes_and_no_length()
    {
        LineFaults line = faults("noise=1");
        QSet<int> counts;
        QSet<qsizetype> places;
        for (int i = 0; i < 5000; ++i) {
            const QByteArray bytes = joined(line.pass(Frame));
            QCOMPARE(bytes.size(), Frame.size());
            int changed = 0;
            for (qsizetype at = 0; at < Frame.size(); ++at) {
                if (bytes.at(at) != Frame.at(at)) {
                    ++changed;
                    places.insert(at);
                }
            }
            counts.insert(changed);
        }
        for (int count = 1; count <= LineFaults::MaxNoise; ++count) {
            QVERIFY2(counts.contains(count), qPrintable(QString::number(count)));
        }
        QVERIFY(!counts.contains(LineFaults::MaxNoise + 1));
        QCOMPARE(places.size(), Frame.size());
    }

    void cut_removes_the_end()
    {
        LineFaults line = faults("cut=1");
        QSet<qsizetype> lengths;
        for (int i = 0; i < 1000; ++i) {
            const QByteArray bytes = joined(line.pass(Frame));
            QVERIFY(Frame.startsWith(bytes));
            lengths.insert(bytes.size());
        }
        QCOMPARE(lengths.size(), Frame.size() - 1);
        QVERIFY(!lengths.contains(0) && !lengths.contains(Frame.size()));
    }

    void junk_comes_in_front()
    {
        LineFaults line = faults("junk=1");
        QSet<qsizetype> lengths;
        QSet<char> values;
        for (int i = 0; i < 5000; ++i) {
            const QByteArray bytes = joined(line.pass(Frame));
            QVERIFY(bytes.endsWith(Frame));
            lengths.insert(bytes.size() - Frame.size());
            values.insert(bytes.at(0));
        }
        QCOMPARE(lengths.size(), LineFaults::MaxJunk);
        QVERIFY(!lengths.contains(0) && lengths.contains(LineFaults::MaxJunk));
        QCOMPARE(values.size(), 256);
    }

    void split_gives_pieces_with_pauses()
    {
        LineFaults line = faults("split=1");
        QSet<qsizetype> counts;
        for (int i = 0; i < 1000; ++i) {
            const auto pieces = line.pass(Frame);
            QCOMPARE(joined(pieces), Frame);
            counts.insert(pieces.size());
            for (const LineFaults::Piece& piece : pieces) {
                QVERIFY(!piece.bytes.isEmpty());
            }
            QVERIFY(pieces.first().pauseMs >= 5 && pieces.first().pauseMs <= 20);
            QCOMPARE(pieces.last().pauseMs, 0);
        }
        QCOMPARE(counts, (QSet<qsizetype>{2, 3, 4}));
    }

    void burst_holds_32_frames_and_sends_them_together()
    {
        LineFaults line = faults("burst=1");
        QByteArray expected;
        for (int i = 1; i < LineFaults::BurstFrames; ++i) {
            const QByteArray frame = framed("SB,0," + QByteArray::number(i));
            QVERIFY(line.pass(frame).isEmpty());
            QVERIFY(line.isHolding());
            expected += frame;
        }
        const auto pieces = line.pass(Frame);
        QCOMPARE(pieces.size(), 1);
        QCOMPARE(pieces.first().bytes, expected + Frame);
        QVERIFY(!line.isHolding());
    }

    void a_burst_can_be_released_early()
    {
        LineFaults line = faults("burst=1");
        QVERIFY(line.pass(Frame).isEmpty());
        QVERIFY(line.pass(Frame).isEmpty());
        QCOMPARE(line.release(), Frame + Frame);
        QVERIFY(!line.isHolding());
        for (int i = 1; i < LineFaults::BurstFrames; ++i) {
            QVERIFY(line.pass(Frame).isEmpty()); // the count starts again at 0
        }
    }

    void faults_come_as_often_as_the_rate_says_data()
    {
        QTest::addColumn<QByteArray>("rates");
        QTest::addColumn<int>("least");
        QTest::addColumn<int>("most");
        for (const char* name : {"drop", "cut", "junk", "split"}) {
            QTest::addRow("%s never", name) << name + QByteArray("=0") << 0 << 0;
            QTest::addRow("%s at 1 %%", name) << name + QByteArray("=0.01") << 60 << 140;
            QTest::addRow("%s at 50 %%", name) << name + QByteArray("=0.5") << 4800 << 5200;
            QTest::addRow("%s always", name) << name + QByteArray("=1") << 10000 << 10000;
        }
    }

    void faults_come_as_often_as_the_rate_says()
    {
        QFETCH(QByteArray, rates);
        QFETCH(int, least);
        QFETCH(int, most);
        const int count = spoiled(rates);
        QVERIFY2(count >= least && count <= most, QByteArray::number(count));
    }

    void the_same_seed_spoils_the_same_way()
    {
        const char* all = "drop=0.2,cut=0.2,junk=0.2,split=0.2,burst=0.1";
        LineFaults first = faults(all, 7);
        LineFaults second = faults(all, 7);
        LineFaults other = faults(all, 8);
        QByteArray a;
        QByteArray b;
        QByteArray c;
        for (int i = 0; i < 200; ++i) {
            a += joined(first.pass(Frame));
            b += joined(second.pass(Frame));
            c += joined(other.pass(Frame));
        }
        QCOMPARE(a, b);
        QVERIFY(a != c);
    }

    void a_frame_of_one_byte_survives_every_fault()
    {
        LineFaults line = faults("drop=0.3,cut=1,split=1");
        for (int i = 0; i < 1000; ++i) {
            QVERIFY(joined(line.pass("x")).size() <= 1);
            QVERIFY(joined(line.pass("")).isEmpty());
        }
    }
};

QN740_TEST_MAIN(tst_LineFaults)
#include "tst_LineFaults.moc"
