#include "link/LinkMode.h"
#include "support/TestMain.h"

#include <QSettings>

using namespace Qt::StringLiterals;

namespace {
const QStringList LocalCommands{u":DSDM"_s, u":NFFT"_s, u":SCBE"_s, u":SRT0"_s, u":B0LB"_s,
    u":FCS0"_s, u":MFS0"_s, u":DC0E"_s, u":AG0E"_s, u":CF0E"_s, u":MF0E"_s, u":SEI0"_s, u":HI0Z"_s,
    u":BTEN"_s, u":BTMO"_s, u":BTTL"_s, u":REST"_s, u":BMUX"_s};
} // namespace

class tst_LinkMode : public QObject
{
    Q_OBJECT

private slots:
    void each_mode_has_its_label_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("label");
        QTest::newRow("none") << 0 << "";
        QTest::newRow("diversity") << 1 << "Diversity Mode";
        QTest::newRow("frequency diversity") << 2 << "Frequency Diversity Mode";
        QTest::newRow("unknown mode") << 7 << "";
    }

    void each_mode_has_its_label()
    {
        QFETCH(int, mode);
        QTEST(linkMode::label(mode), "label");
        QCOMPARE(linkMode::isKnown(mode), mode <= 2);
    }

    void outgoing_prefixes_are_widened_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("sent");
        for (const QString& d : {u"D1:"_s, u"D2:"_s, u"D3:"_s}) {
            const QString message = u"\x02"_s + d + u"FREQ:70\x04"_s;
            const QString all = u"\x02"_s
                                u"D1 D2 D3:FREQ:70\x04"_s;
            QTest::addRow("%s none", qPrintable(d)) << 0 << message << message;
            QTest::addRow("%s diversity", qPrintable(d)) << 1 << message << all;
            QTest::addRow("%s frequency diversity", qPrintable(d)) << 2 << message << all;
        }
        for (const QString& r : {u"R1:"_s, u"R2:"_s}) {
            const QString message = u"\x02"_s + r + u"FREQ:70\x04"_s;
            QTest::addRow("%s none", qPrintable(r)) << 0 << message << message;
            QTest::addRow("%s diversity", qPrintable(r))
                << 1 << message << u"\x02R1 R2:FREQ:70\x04"_s;
            QTest::addRow("%s frequency diversity", qPrintable(r)) << 2 << message << message;
        }
        QTest::newRow("both prefixes") << 1 << "D1:A R2:B"
                                       << "D1 D2 D3:A R1 R2:B";
        QTest::newRow("every occurrence") << 2 << "D2:A D2:B"
                                          << "D1 D2 D3:A D1 D2 D3:B";
        QTest::newRow("only the first prefix that occurs") << 2 << "D3:A D1:B"
                                                           << "D3:A D1 D2 D3:B";
        QTest::newRow("first receiver prefix only") << 1 << "R2:A R1:B"
                                                    << "R2:A R1 R2:B";
        QTest::newRow("no prefix") << 1 << "Main"
                                   << "Main";
        QTest::newRow("unknown mode") << 7 << "D1:A R1:B"
                                      << "D1:A R1:B";
        QTest::newRow("case matters") << 1 << "d1:A"
                                      << "d1:A";
        for (const QString& local : LocalCommands) {
            for (const int mode : {0, 1, 2}) {
                const QString message = u"D2"_s + local + u":1"_s;
                QTest::addRow("%s in mode %d", qPrintable(local), mode)
                    << mode << message << message;
            }
        }
        QTest::newRow("a local command leaves receivers to be widened") << 1 << "D1:DSDM:1 R1:A"
                                                                        << "D1:DSDM:1 R1 R2:A";
        QTest::newRow("case of a local command matters") << 1 << "D1:dsdm:1"
                                                         << "D1 D2 D3:dsdm:1";
    }

    void outgoing_prefixes_are_widened()
    {
        QFETCH(int, mode);
        QFETCH(QString, message);
        QTEST(linkMode::widened(message, mode), "sent");
    }

    void the_mode_is_stored_in_the_settings()
    {
        QSettings file(u"TORVA"_s, u"QN740KB"_s);
        file.remove("Slave");
        file.sync();
        QCOMPARE(linkMode::stored(), 0);
        linkMode::store(2);
        QCOMPARE(linkMode::stored(), 2);
        QCOMPARE(QSettings(u"TORVA"_s, u"QN740KB"_s).value("Slave").toInt(), 2);
        QVERIFY(QFile::exists(file.fileName()));
    }

    void every_change_is_seen_by_other_settings()
    {
        for (int i = 0; i < 30; ++i) { // within one step of the clock of files
            linkMode::store(i % 3);
            QCOMPARE(QSettings(u"TORVA"_s, u"QN740KB"_s).value("Slave").toInt(), i % 3);
        }
    }

    void the_mode_goes_among_the_other_settings_data()
    {
        QTest::addColumn<QByteArray>("settings");
        QTest::addColumn<QByteArray>("with");
        const auto row = [](const char* name, const char* settings, const char* with) {
            QTest::newRow(name) << QByteArray(settings) << QByteArray(with);
        };
        row("none", "", "[General]\nSlave=2\n");
        row("an older mode", "[General]\nSlave=1\n", "[General]\nSlave=2\n");
        row("other entries", "[General]\nA=1\nSlave=0\nB=2\n", "[General]\nSlave=2\nA=1\nB=2\n");
        row("twice", "[General]\nSlave=0\nSlave=1\n", "[General]\nSlave=2\n");
        row("no group", "Slave=1\nA=1\n", "[General]\nSlave=2\nA=1\n");
        row("in front of the group", "Slave=1\n[general]\n", "[general]\nSlave=2\n");
        row("other groups only", "[Net]\nSlave=1\n", "[General]\nSlave=2\n[Net]\nSlave=1\n");
        row("damaged lines", "\xff\nSla\n[Net\nA=1\n", "[General]\nSlave=2\nA=1\n");
        row("a comment", "; by hand\n[Net]\n", "[General]\nSlave=2\n; by hand\n[Net]\n");
        row("no line end", "[General]\nA=1", "[General]\nSlave=2\nA=1\n");
        row("group comes last", "[Net]\nA=1\n[General]\n",
            "[General]\nSlave=2\n[Net]\nA=1\n[General]\n");
        row("blanks and line ends", "[General]\r\n Slave = 1\r\n", "[General]\r\nSlave=2\n");
        row("longer name", "[General]\nSlaves=1\n", "[General]\nSlave=2\nSlaves=1\n");
    }

    void the_mode_goes_among_the_other_settings()
    {
        QFETCH(QByteArray, settings);
        QTEST(linkMode::withMode(settings, 2), "with");
    }
};

QN740_TEST_MAIN(tst_LinkMode)
#include "tst_LinkMode.moc"
