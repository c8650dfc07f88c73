#include "scopes/SdiDecoder.h"
#include "scopes/Streams.h"
#include "support/TestMain.h"

class tst_SdiDecoder : public QObject
{
    Q_OBJECT

private slots:
    void a_read_of_the_port_yields_at_most_one_record_data()
    {
        QTest::addColumn<QByteArray>("read");
        QTest::addColumn<QByteArray>("record");
        QTest::newRow("a byte in front, start byte, five bytes") << QByteArray("\x00\xff"
                                                                               "abcde",
                                                                        7)
                                                                 << QByteArray("abcde");
        QTest::newRow("the first byte is skipped") << QByteArray("\xff"
                                                                 "abcde")
                                                   << QByteArray();
        QTest::newRow("what follows the record is discarded") << QByteArray("x\xff"
                                                                            "abcde\xff"
                                                                            "fghij")
                                                              << QByteArray("abcde");
        QTest::newRow("bytes before the start byte are skipped") << QByteArray("xyz\xff"
                                                                               "abcde")
                                                                 << QByteArray("abcde");
        QTest::newRow("a start byte inside a record is data") << QByteArray("x\xff\xff"
                                                                            "bcde")
                                                              << QByteArray("\xff"
                                                                            "bcde");
        QTest::newRow("a zero is assumed after the last byte") << QByteArray("x\xff"
                                                                             "abcd")
                                                               << QByteArray("abcd\0", 5);
        QTest::newRow("three bytes and the zero are too few") << QByteArray("x\xff"
                                                                            "abc")
                                                              << QByteArray();
        QTest::newRow("one byte") << QByteArray("\xff") << QByteArray();
        QTest::newRow("nothing") << QByteArray() << QByteArray();
    }

    void a_read_of_the_port_yields_at_most_one_record()
    {
        QFETCH(QByteArray, read);
        QFETCH(QByteArray, record);
        SdiDecoder decoder;
        QCOMPARE(decoder.read(read), record);
    }

    void a_record_over_two_reads_has_a_zero_for_the_byte_that_begins_the_second()
    {
        SdiDecoder decoder;
        QVERIFY(decoder
                    .read("x\xff"
                          "ab")
                    .isEmpty());
        QVERIFY(decoder.started());
        QCOMPARE(decoder.read("cde"), QByteArray("ab\0de", 5));
        QVERIFY(!decoder.started());
    }

    void after_a_record_a_new_start_byte_is_required()
    {
        SdiDecoder decoder;
        QVERIFY(!decoder
                     .read("x\xff"
                           "abcde")
                     .isEmpty());
        QVERIFY(decoder.read("xfghijk").isEmpty());
        QCOMPARE(decoder.read("x\xff"
                              "12345"),
            QByteArray("12345"));
    }

    void a_fuzzed_stream_gives_the_same_result_as_the_plain_receiver_data()
    {
        QTest::addColumn<bool>("mutated");
        QTest::newRow("random bytes") << false;
        QTest::newRow("good records with flipped, lost and doubled bytes") << true;
    }

    void a_fuzzed_stream_gives_the_same_result_as_the_plain_receiver()
    {
        QFETCH(bool, mutated);
        std::mt19937 random(99);
        SdiDecoder decoder;
        bool started = false;
        QByteArray buffer;
        qsizetype fed = 0;
        qsizetype records = 0;
        while (fed < streams::FuzzBytes) {
            const QByteArray stream = mutated
                ? streams::mutated(random, streams::sdiStream(random, 2000), 5 + random() % 200)
                : streams::noise(random, 14'000);
            for (qsizetype at = 0; at < stream.size();) {
                const QByteArray read = stream.mid(at, readSize(random));
                at += read.size();
                QVector<QByteArray> expected;
                streams::plainSdiRead(read, started, buffer, expected);
                const QByteArray record = decoder.read(read);
                QCOMPARE(expected.size(), record.isEmpty() ? 0 : 1);
                if (!expected.isEmpty()) {
                    QCOMPARE(record, expected.first());
                    ++records;
                }
            }
            fed += stream.size();
        }
        QVERIFY(records > fed / 1000);
        // The decoder still works., once what was begun is at its end
        const QByteArray good("\x00\xff"
                              "abcde",
            7);
        decoder.read(good);
        decoder.read(good);
        QCOMPARE(decoder.read(good), QByteArray("abcde"));
    }

private:
    // Usually one record per read or a part of one, as on the line; sometimes many.
    static qsizetype readSize(std::mt19937& random)
    {
        switch (random() % 8) {
        case 0:
            return 1 + static_cast<qsizetype>(random() % 24);
        case 1:
            return random() % 8 == 0 ? 4096 : 14;
        default:
            return 7;
        }
    }
};

QN740_TEST_MAIN(tst_SdiDecoder)
#include "tst_SdiDecoder.moc"
