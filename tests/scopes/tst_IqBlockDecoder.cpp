#include "scopes/IqBlockDecoder.h"
#include "scopes/Streams.h"
#include "support/TestMain.h"

namespace {

// Feeds all bytes in pieces of at most `most` bytes (random sizes when `random` is given).
void feed(IqBlockDecoder& decoder, const QByteArray& bytes, streams::Blocks& blocks,
    std::mt19937* random = nullptr, int most = 1 << 30)
{
    qsizetype at = 0;
    while (at < bytes.size()) {
        qsizetype piece = random != nullptr ? 1 + static_cast<int>((*random)() % 5000) : most;
        piece = std::min(piece, bytes.size() - at);
        const qsizetype end = at + piece;
        while (at < end) {
            const qsizetype taken = decoder.take(bytes.constData() + at, end - at);
            QVERIFY(taken > 0 && taken <= end - at);
            at += taken;
            if (decoder.blockReady()) {
                blocks.i.append(decoder.i());
                blocks.q.append(decoder.q());
                blocks.maxI.append(decoder.maxAbsI());
                blocks.maxQ.append(decoder.maxAbsQ());
            }
        }
    }
}

streams::Blocks blocksOf(const QByteArray& bytes)
{
    IqBlockDecoder decoder;
    streams::Blocks blocks;
    feed(decoder, bytes, blocks);
    return blocks;
}

QByteArray ramp(int first)
{
    QVector<int> i(256);
    QVector<int> q(256);
    for (int k = 0; k < 256; ++k) {
        i[k] = first + k;
        q[k] = -first - k;
    }
    return streams::block(i, q);
}

} // namespace

class tst_IqBlockDecoder : public QObject
{
    Q_OBJECT

private slots:
    void a_block_is_decoded_in_order()
    {
        const streams::Blocks blocks = blocksOf(ramp(1000));
        QCOMPARE(blocks.i.size(), 1);
        for (int k = 1; k < 256; ++k) {
            QCOMPARE(blocks.i.first().at(k), (1000 + k) / 32768.0);
            QCOMPARE(blocks.q.first().at(k), -(1000 + k) / 32768.0);
        }
    }

    void the_first_i_sample_takes_the_value_of_the_second()
    {
        const streams::Blocks blocks = blocksOf(ramp(1000));
        QCOMPARE(blocks.i.first().at(0), 1001 / 32768.0);
        QCOMPARE(blocks.q.first().at(0), -1000 / 32768.0);
    }

    void samples_scale_to_full_scale_data()
    {
        QTest::addColumn<int>("sample");
        QTest::addColumn<double>("value");
        QTest::newRow("lowest") << -32768 << -1.0;
        QTest::newRow("highest") << 32767 << 0.999969482421875;
        QTest::newRow("zero") << 0 << 0.0;
        QTest::newRow("one step") << 1 << 3.0517578125e-05;
    }

    void samples_scale_to_full_scale()
    {
        QFETCH(int, sample);
        QFETCH(double, value);
        const QVector<int> samples(256, sample);
        const streams::Blocks blocks = blocksOf(streams::block(samples, samples));
        QCOMPARE(blocks.i.size(), 1);
        QVERIFY(blocks.i.first().at(17) == value);
        QVERIFY(blocks.q.first().at(255) == value);
        QVERIFY(blocks.maxI.first() == std::abs(value));
    }

    void a_stream_that_starts_mid_block_is_synchronised_at_the_next_one_data()
    {
        QTest::addColumn<int>("start");
        for (const int start : {1, 5, 6, 7, 12, 13, 700, 1530, 1535}) {
            QTest::addRow("%d bytes late", start) << start;
        }
    }

    void a_stream_that_starts_mid_block_is_synchronised_at_the_next_one()
    {
        QFETCH(int, start);
        const streams::Blocks blocks = blocksOf(ramp(10).mid(start) + ramp(2000) + ramp(3000));
        QCOMPARE(blocks.i.size(), 2);
        QCOMPARE(blocks.i.at(0).at(5), 2005 / 32768.0);
        QCOMPARE(blocks.i.at(1).at(5), 3005 / 32768.0);
    }

    void a_wrong_index_drops_the_block_data()
    {
        QTest::addColumn<int>("record");
        QTest::addColumn<int>("index");
        QTest::newRow("100 carries 101") << 100 << 101;
        QTest::newRow("3 carries 4") << 3 << 4;
        QTest::newRow("the last carries 0") << 255 << 0;
        QTest::newRow("50 carries 50 + 256") << 50 << 306;
    }

    void a_wrong_index_drops_the_block()
    {
        QFETCH(int, record);
        QFETCH(int, index);
        QByteArray broken = ramp(10);
        qToBigEndian(static_cast<quint16>(index), broken.data() + record * 6);
        const streams::Blocks blocks = blocksOf(broken + ramp(2000));
        QCOMPARE(blocks.i.size(), 1);
        QCOMPARE(blocks.i.first().at(1), 2001 / 32768.0);
    }

    void seventeen_bytes_are_not_enough_to_synchronise()
    {
        IqBlockDecoder decoder;
        const QByteArray bytes = ramp(0);
        QCOMPARE(decoder.take(bytes.constData(), 17), 17);
        QVERIFY(!decoder.synced());
        QCOMPARE(decoder.take(bytes.constData() + 17, 1), 1);
        QVERIFY(decoder.synced());
        QVERIFY(!decoder.lostSync());
    }

    void a_dropped_byte_is_reported_by_lost_sync()
    {
        IqBlockDecoder decoder;
        const QByteArray bytes = 'x' + ramp(0).left(20);
        decoder.take(bytes.constData(), bytes.size());
        QVERIFY(decoder.synced());
        QVERIFY(decoder.lostSync());
    }

    void a_single_byte_in_front_of_a_block_is_reported_by_lost_sync()
    {
        IqBlockDecoder decoder;
        const QByteArray block = ramp(100);
        QCOMPARE(decoder.take("x", 1), 1);
        QCOMPARE(decoder.take(block.constData(), block.size()), block.size());
        QVERIFY(decoder.blockReady());
        QVERIFY(decoder.lostSync());
    }

    void a_block_of_zeros_has_a_largest_magnitude_of_0()
    {
        const streams::Blocks blocks =
            blocksOf(streams::block(QVector<int>(256, 0), QVector<int>(256, 0)));
        QCOMPARE(blocks.maxI, QVector<double>{0.0});
        QCOMPARE(blocks.maxQ, QVector<double>{0.0});
        QByteArray broken = streams::block(QVector<int>(256, 0), QVector<int>(256, 0));
        qToBigEndian(quint16{101}, broken.data() + 100 * 6);
        IqBlockDecoder decoder;
        streams::Blocks none;
        feed(decoder, broken, none);
        QCOMPARE(decoder.maxAbsI(), 0.0);
        QCOMPARE(decoder.maxAbsQ(), 0.0);
    }

    void after_a_block_the_search_starts_anew()
    {
        IqBlockDecoder decoder;
        const QByteArray bytes = ramp(0);
        QCOMPARE(decoder.take(bytes.constData(), bytes.size()), 1536);
        QVERIFY(decoder.blockReady());
        QVERIFY(!decoder.synced());
    }

    void the_largest_magnitudes_start_anew_with_each_block()
    {
        QVector<int> i(256, 100);
        QVector<int> q(256, -200);
        i[0] = -30000; // counts, though another value takes its place
        q[200] = -32768;
        const QVector<int> quiet(256, 7);
        const streams::Blocks blocks =
            blocksOf(streams::block(i, q) + streams::block(quiet, quiet));
        QCOMPARE(blocks.maxI, (QVector<double>{30000 / 32768.0, 7 / 32768.0}));
        QCOMPARE(blocks.maxQ, (QVector<double>{1.0, 7 / 32768.0}));
    }

    void the_largest_magnitudes_are_0_from_the_synchronisation_on()
    {
        IqBlockDecoder decoder;
        const QVector<int> loud(256, -30000);
        const QByteArray bytes = streams::block(loud, loud);
        decoder.take(bytes.constData(), bytes.size());
        QCOMPARE(decoder.maxAbsI(), 30000 / 32768.0);
        QCOMPARE(decoder.maxAbsQ(), 30000 / 32768.0);
        decoder.take(bytes.constData(), 17);
        QVERIFY(!decoder.synced());
        QCOMPARE(decoder.maxAbsI(), 30000 / 32768.0);
        decoder.take(bytes.constData() + 17, 1);
        QVERIFY(decoder.synced());
        QCOMPARE(decoder.maxAbsI(), 0.0);
        QCOMPARE(decoder.maxAbsQ(), 0.0);
    }

    void the_largest_magnitudes_of_a_broken_block_are_those_before_its_wrong_index_data()
    {
        QTest::addColumn<int>("most");
        QTest::newRow("in one piece") << 1536;
        QTest::newRow("in pieces") << 184;
    }

    void the_largest_magnitudes_of_a_broken_block_are_those_before_its_wrong_index()
    {
        QFETCH(int, most);
        QVector<int> i(256, 100);
        QVector<int> q(256, 200);
        i[99] = -3000;
        q[40] = 4000;
        i[100] = q[100] = i[200] = q[200] = 30000; // not looked at any more
        QByteArray broken = streams::block(i, q);
        qToBigEndian(quint16{101}, broken.data() + 100 * 6);
        IqBlockDecoder decoder;
        streams::Blocks blocks;
        feed(decoder, ramp(20000) + broken, blocks, nullptr, most);
        QCOMPARE(blocks.i.size(), 1);
        QCOMPARE(decoder.maxAbsI(), 3000 / 32768.0);
        QCOMPARE(decoder.maxAbsQ(), 4000 / 32768.0);
    }

    void the_first_sample_counts_for_the_largest_magnitudes_data()
    {
        QTest::addColumn<bool>("isBroken");
        QTest::newRow("of a good block") << false;
        QTest::newRow("of a broken block") << true;
    }

    void the_first_sample_counts_for_the_largest_magnitudes()
    {
        QFETCH(bool, isBroken);
        QVector<int> i(256, 100);
        QVector<int> q(256, 200);
        i[0] = -3000;
        q[0] = 4000;
        QByteArray block = streams::block(i, q);
        if (isBroken) {
            qToBigEndian(quint16{101}, block.data() + 100 * 6);
        }
        IqBlockDecoder decoder;
        streams::Blocks blocks;
        feed(decoder, block, blocks);
        QCOMPARE(blocks.i.size(), isBroken ? 0 : 1);
        QCOMPARE(decoder.maxAbsI(), 3000 / 32768.0);
        QCOMPARE(decoder.maxAbsQ(), 4000 / 32768.0);
    }

    void the_samples_are_those_of_the_last_good_block()
    {
        IqBlockDecoder decoder;
        QVERIFY(decoder.i().isEmpty() && decoder.q().isEmpty());
        QByteArray broken = ramp(10);
        qToBigEndian(quint16{101}, broken.data() + 100 * 6);
        decoder.take(broken.constData(), broken.size());
        QVERIFY(!decoder.blockReady());
        QVERIFY(decoder.i().isEmpty() && decoder.q().isEmpty());
        const QByteArray good = ramp(1000);
        decoder.take(good.constData(), good.size());
        QVERIFY(decoder.blockReady());
        decoder.take(broken.constData(), broken.size());
        QVERIFY(!decoder.blockReady());
        QCOMPARE(decoder.i().at(5), 1005 / 32768.0);
        QCOMPARE(decoder.q().at(99), -1099 / 32768.0);
        QCOMPARE(decoder.q().at(255), -1255 / 32768.0);
    }

    void a_block_that_a_caller_holds_does_not_change()
    {
        IqBlockDecoder decoder;
        const QByteArray first = ramp(1000);
        const QByteArray second = ramp(2000);
        decoder.take(first.constData(), first.size());
        const QVector<double> keptI = decoder.i();
        const QVector<double> keptQ = decoder.q();
        decoder.take(second.constData(), second.size());
        QCOMPARE(keptI.at(7), 1007 / 32768.0);
        QCOMPARE(keptQ.at(7), -1007 / 32768.0);
        QCOMPARE(decoder.i().at(7), 2007 / 32768.0);
        QCOMPARE(decoder.q().at(7), -2007 / 32768.0);
    }

    void take_stops_after_a_block()
    {
        IqBlockDecoder decoder;
        const QByteArray bytes = ramp(0) + ramp(1);
        QCOMPARE(decoder.take(bytes.constData(), bytes.size()), 1536);
        QCOMPARE(decoder.take(bytes.constData() + 1536, 1536), 1536);
        QVERIFY(decoder.blockReady());
        QCOMPARE(decoder.take(nullptr, 0), 0);
        QVERIFY(!decoder.blockReady());
    }

    void any_split_gives_the_same_result_as_byte_by_byte_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 40; ++seed) {
            QTest::addRow("seed %u", seed) << seed;
        }
    }

    void any_split_gives_the_same_result_as_byte_by_byte()
    {
        QFETCH(quint32, seed);
        std::mt19937 random(seed);
        const QByteArray bytes = streams::faulty(random, 60000);
        streams::PlainReceiver plain;
        for (const char byte : bytes) {
            plain.take(byte);
        }
        QVERIFY(plain.blocks.i.size() >= 1);
        for (const int most : {1, 2, 17, 18, 19, 1024, 1535, 1536, 1537, 1 << 30}) {
            IqBlockDecoder decoder;
            streams::Blocks blocks;
            feed(decoder, bytes, blocks, nullptr, most);
            QVERIFY2(blocks == plain.blocks, qPrintable(QString::number(most)));
        }
        for (int round = 0; round < 5; ++round) {
            IqBlockDecoder decoder;
            streams::Blocks blocks;
            feed(decoder, bytes, blocks, &random);
            QVERIFY(blocks == plain.blocks);
        }
    }

    void a_stream_that_loses_a_byte_every_ten_thousand_still_gives_most_blocks()
    {
        std::mt19937 random(5);
        QByteArray bytes;
        for (int k = 0; k < 200; ++k) {
            bytes += streams::randomBlock(random);
        }
        bytes.remove(0, 777);
        int lost = 0;
        for (qsizetype at = 9999; at < bytes.size(); at += 9999) {
            bytes.remove(at, 1);
            ++lost;
        }
        // The first block is cut; each lost byte costs its block and the one decoded together with
        // it.
        const streams::Blocks blocks = blocksOf(bytes);
        QVERIFY2(blocks.i.size() >= 199 - 2 * lost, qPrintable(QString::number(blocks.i.size())));
        QVERIFY(blocks.i.size() < 200 - lost);
    }

    void a_fuzzed_stream_gives_the_same_result_as_the_plain_receiver_data()
    {
        QTest::addColumn<bool>("mutated");
        QTest::newRow("random bytes") << false;
        QTest::newRow("good blocks with flipped, lost and doubled bytes") << true;
    }

    void a_fuzzed_stream_gives_the_same_result_as_the_plain_receiver()
    {
        QFETCH(bool, mutated);
        std::mt19937 random(12345);
        IqBlockDecoder decoder;
        streams::PlainReceiver plain;
        qsizetype fed = 0;
        qsizetype blocks = 0;
        while (fed < streams::FuzzBytes) {
            QByteArray bytes;
            if (!mutated) {
                bytes = streams::noise(random, 100'000);
            } else if (random() % 2 == 0) {
                bytes = streams::faulty(random, 100'000);
            } else {
                for (int k = 0; k < 60; ++k) {
                    bytes += streams::randomBlock(random);
                }
                bytes = streams::mutated(random, bytes, 200 + random() % 10'000);
            }
            streams::Blocks found;
            feed(decoder, bytes, found, &random);
            for (const char byte : std::as_const(bytes)) {
                plain.take(byte);
            }
            QVERIFY(found == plain.blocks);
            plain.blocks = streams::Blocks();
            fed += bytes.size();
            blocks += found.i.size();
        }
        // Random bytes do not form a block.
        QVERIFY(mutated ? blocks > fed / 10'000 : blocks == 0);
        // The decoder still works.
        streams::Blocks after;
        feed(decoder,
            streams::randomBlock(random) + streams::randomBlock(random) +
                streams::randomBlock(random),
            after);
        QVERIFY(after.i.size() >= 2);
    }
};

QN740_TEST_MAIN(tst_IqBlockDecoder)
#include "tst_IqBlockDecoder.moc"
