#include "link/ResendCutter.h"
#include "support/TestMain.h"

class tst_ResendCutter : public QObject
{
    Q_OBJECT

private slots:
    void messages_are_cut_wherever_a_read_ends()
    {
        const QString stream("junk\x02"
                             "A,1\x04\x04more\x02"
                             "B\x04\x02"
                             "C");
        const QStringList expected{"\x02"
                                   "A,1\x04",
            "\x02"
            "B\x04"};
        for (int pieceSize = 1; pieceSize <= stream.size(); ++pieceSize) {
            ResendCutter cutter;
            QStringList messages;
            for (int at = 0; at < stream.size(); at += pieceSize) {
                messages += cutter.take(stream.mid(at, pieceSize));
            }
            QCOMPARE(messages, expected);
        }
    }

    void a_message_begins_at_the_last_stx_in_front_of_its_eot()
    {
        ResendCutter cutter;
        QCOMPARE(cutter.take("\x02"
                             "broken\x02"
                             "whole\x04"),
            QStringList{"\x02whole\x04"});
    }

    void a_message_is_forgotten_after_clear()
    {
        ResendCutter cutter;
        QVERIFY(cutter
                    .take("\x02"
                          "D1:DSDM:")
                    .isEmpty());
        cutter.clear();
        QVERIFY(cutter.take("1\x04").isEmpty());
        QCOMPARE(cutter.take("\x02"
                             "D1:B\x04"),
            QStringList{"\x02"
                        "D1:B\x04"});
    }

    void a_message_of_the_longest_kept_size_is_whole_and_a_longer_one_is_lost()
    {
        const qsizetype longest = ResendCutter::MaxUnfinished - 1; // without STX
        for (const bool tooLong : {false, true}) {
            ResendCutter cutter;
            const QString text(longest + (tooLong ? 1 : 0), 'x');
            QVERIFY(cutter.take('\x02' + text).isEmpty());
            const QStringList messages = cutter.take("\x04");
            QCOMPARE(messages, tooLong ? QStringList() : QStringList{'\x02' + text + '\x04'});
        }
    }

    void a_long_message_that_comes_at_once_is_whole()
    {
        ResendCutter cutter;
        const QString message = '\x02' + QString(100'000, 'x') + '\x04';
        QCOMPARE(cutter.take(message), QStringList{message});
    }
};

QN740_TEST_MAIN(tst_ResendCutter)
#include "tst_ResendCutter.moc"
