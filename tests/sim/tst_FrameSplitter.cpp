#include "sim/line/FrameSplitter.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

namespace {
QStringList shown(const QList<FrameSplitter::Piece>& pieces)
{
    QStringList texts;
    for (const auto& piece : pieces) {
        texts.append((piece.framed ? u"framed "_s : u"unframed "_s) + piece.text);
    }
    return texts;
}
} // namespace

class tst_FrameSplitter : public QObject
{
    Q_OBJECT

private slots:
    void pieces_come_out_in_order_however_the_bytes_are_cut_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("pieces");
        QTest::newRow("one message") << QByteArray("\x02PONG\x04") << QStringList{u"framed PONG"_s};
        QTest::newRow("two messages") << QByteArray("\x02"
                                                    "A\x04\x02"
                                                    "B\x04")
                                      << QStringList{u"framed A"_s, u"framed B"_s};
        QTest::newRow("empty message") << QByteArray("\x02\x04") << QStringList{u"framed "_s};
        QTest::newRow("text before a frame") << QByteArray("D1:SPEN:1\x02"
                                                           "A\x04")
                                             << QStringList{u"unframed D1:SPEN:1"_s, u"framed A"_s};
        QTest::newRow("a frame broken off by the next") << QByteArray("\x02"
                                                                      "AB\x02"
                                                                      "C\x04")
                                                        << QStringList{u"unframed \x02"_s
                                                                       u"AB"_s,
                                                               u"framed C"_s};
        QTest::newRow("an end without a start") << QByteArray("\x04\x02"
                                                              "A\x04")
                                                << QStringList{u"unframed \x04"_s, u"framed A"_s};
        QTest::newRow("a line break inside") << QByteArray("\x02"
                                                           "A\nB\x04")
                                             << QStringList{u"framed A\nB"_s};
        QTest::newRow("no end yet") << QByteArray("\x02"
                                                  "ABC")
                                    << QStringList{};
    }

    void pieces_come_out_in_order_however_the_bytes_are_cut()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, pieces);
        for (int size = 1; size <= bytes.size(); ++size) {
            FrameSplitter splitter;
            QList<FrameSplitter::Piece> all;
            for (int at = 0; at < bytes.size(); at += size) {
                all += splitter.take(bytes.mid(at, size));
            }
            QCOMPARE(shown(all), pieces);
        }
    }

    void every_byte_but_the_frame_characters_passes()
    {
        QByteArray body;
        for (int byte = 0; byte < 256; ++byte) {
            if (byte != 2 && byte != 4) {
                body += char(byte);
            }
        }
        FrameSplitter splitter;
        const auto pieces = splitter.take('\x02' + body + '\x04');
        QCOMPARE(pieces.size(), 1);
        QCOMPARE(pieces.first().text.toLatin1(), body);
    }

    void loose_text_is_given_on_demand_and_once()
    {
        FrameSplitter splitter;
        QVERIFY(splitter.take("D1:SPEN:1").isEmpty());
        const auto loose = splitter.takeLoose();
        QVERIFY(loose.has_value());
        QCOMPARE(loose->text, u"D1:SPEN:1"_s);
        QVERIFY(!loose->framed);
        QVERIFY(!splitter.takeLoose().has_value());
    }

    void a_frame_under_way_is_not_loose()
    {
        FrameSplitter splitter;
        splitter.take("\x02PO");
        QVERIFY(!splitter.takeLoose().has_value());
        QCOMPARE(shown(splitter.take("NG\x04")), QStringList{u"framed PONG"_s});
    }

    void an_endless_frame_does_not_grow()
    {
        FrameSplitter splitter;
        const auto pieces = splitter.take('\x02' + QByteArray(200000, 'x'));
        QCOMPARE(pieces.size(), 3);
        QVERIFY(!pieces.first().framed);
        QCOMPARE(pieces.first().text.size(), FrameSplitter::MaxTextLength + 1);
        QCOMPARE(splitter.takeLoose()->text.size(), 200000 - 3 * FrameSplitter::MaxTextLength);
    }
};

QN740_TEST_MAIN(tst_FrameSplitter)
#include "tst_FrameSplitter.moc"
