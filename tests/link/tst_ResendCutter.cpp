#include "link/ResendCutter.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

class tst_ResendCutter : public QObject
{
    Q_OBJECT

private slots:
    void messages_are_cut_wherever_a_read_ends()
    {
        const QString stream = u"junk\x02"_s
                               u"A,1\x04\x04more\x02"_s
                               u"B\x04\x02"_s
                               u"C"_s;
        const QStringList expected{u"\x02"_s
                                   u"A,1\x04"_s,
            u"\x02"_s
            u"B\x04"_s};
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
        QCOMPARE(cutter.take(u"\x02"_s
                             u"broken\x02"_s
                             u"whole\x04"_s),
            QStringList{u"\x02whole\x04"_s});
    }

    void clear_drops_the_unfinished_message()
    {
        ResendCutter cutter;
        QVERIFY(cutter
                    .take(u"\x02"_s
                          u"D1:DSDM:"_s)
                    .isEmpty());
        cutter.clear();
        QVERIFY(cutter.take(u"1\x04"_s).isEmpty());
        QCOMPARE(cutter.take(u"\x02"_s
                             u"D1:B\x04"_s),
            QStringList{u"\x02"_s
                        u"D1:B\x04"_s});
    }

    void a_message_of_the_longest_kept_size_is_whole_and_a_longer_one_is_lost()
    {
        const qsizetype longest = ResendCutter::MaxUnfinished - 1; // without STX
        for (const bool tooLong : {false, true}) {
            ResendCutter cutter;
            const QString text(longest + (tooLong ? 1 : 0), u'x');
            QVERIFY(cutter.take(u'\x02' + text).isEmpty());
            const QStringList messages = cutter.take(u"\x04"_s);
            QCOMPARE(messages, tooLong ? QStringList() : QStringList{u'\x02' + text + u'\x04'});
        }
    }

    void a_long_message_that_comes_at_once_is_whole()
    {
        ResendCutter cutter;
        const QString message = u'\x02' + QString(100'000, u'x') + u'\x04';
        QCOMPARE(cutter.take(message), QStringList{message});
    }
};

QN740_TEST_MAIN(tst_ResendCutter)
#include "tst_ResendCutter.moc"
