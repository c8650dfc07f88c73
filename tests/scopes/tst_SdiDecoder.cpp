#include "scopes/SdiDecoder.h"
#include "scopes/Streams.h"
#include "support/TestMain.h"

class tst_SdiDecoder : public QObject
{
    Q_OBJECT

private slots:
    void one_read_data()
    {
        QTest::addColumn<QByteArray>("read");
        QTest::addColumn<QByteArray>("record");
        QTest::newRow("a byte in front, start byte, five bytes") << QByteArray("\x00\xff"
                                                                               "abcde",
                                                                        7)
                                                                 << QByteArray("abcde");
        QTest::newRow("the first byte is never looked at") << QByteArray("\xff"
                                                                         "abcde")
                                                           << QByteArray();
        QTest::newRow("what follows the record is discarded") << QByteArray("x\xff"
                                                                            "abcde\xff"
                                                                            "fghij")
                                                              << QByteArray("abcde");
        QTest::newRow("junk before the start byte is passed over") << QByteArray("xyz\xff"
                                                                                 "abcde")
                                                                   << QByteArray("abcde");
        QTest::newRow("a start byte inside a record is data") << QByteArray("x\xff\xff"
                                                                            "bcde")
                                                              << QByteArray("\xff"
                                                                            "bcde");
        QTest::newRow("behind the last byte a zero is seen") << QByteArray("x\xff"
                                                                           "abcd")
                                                             << QByteArray("abcd\0", 5);
        QTest::newRow("three bytes and the zero are too few") << QByteArray("x\xff"
                                                                            "abc")
                                                              << QByteArray();
        QTest::newRow("one byte") << QByteArray("\xff") << QByteArray();
        QTest::newRow("nothing") << QByteArray() << QByteArray();
    }

    void one_read()
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

    void after_a_record_a_new_start_byte_is_wanted()
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

    void ten_million_bytes_in_random_reads_give_what_the_plain_receiver_gives()
    {
        std::mt19937 random(99);
        SdiDecoder decoder;
        bool started = false;
        QByteArray buffer;
        QVector<QByteArray> expected;
        qsizetype fed = 0;
        qsizetype records = 0;
        while (fed < 10'000'000) {
            // mostly as short as the line gives them
            const int most = random() % 50 == 0 ? 4096 : 24;
            QByteArray read(
                1 + static_cast<qsizetype>(random() % static_cast<unsigned>(most)), '\0');
            for (char& byte : read) {
                byte = random() % 6 == 0 ? '\xff' : static_cast<char>(random());
            }
            expected.clear();
            streams::plainSdiRead(read, started, buffer, expected);
            const QByteArray record = decoder.read(read);
            QCOMPARE(record.isEmpty(), expected.isEmpty());
            if (!expected.isEmpty()) {
                QCOMPARE(expected.size(), 1);
                QCOMPARE(record, expected.first());
                ++records;
            }
            fed += read.size();
        }
        QVERIFY(records > 10'000);
    }
};

QN740_TEST_MAIN(tst_SdiDecoder)
#include "tst_SdiDecoder.moc"
