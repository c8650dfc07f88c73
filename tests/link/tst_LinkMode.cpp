#include "link/LinkMode.h"
#include "support/TestMain.h"

#include <QSettings>

namespace {
const QStringList LocalCommands{":DSDM", ":NFFT", ":SCBE", ":SRT0", ":B0LB", ":FCS0", ":MFS0",
    ":DC0E", ":AG0E", ":CF0E", ":MF0E", ":SEI0", ":HI0Z", ":BTEN", ":BTMO", ":BTTL", ":REST",
    ":BMUX"};
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
        QTest::newRow("no mode") << 7 << "";
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
        for (const QString d : {"D1:", "D2:", "D3:"}) {
            const QString message = "\x02" + d + "FREQ:70\x04";
            const QString all = "\x02"
                                "D1 D2 D3:FREQ:70\x04";
            QTest::addRow("%s none", qPrintable(d)) << 0 << message << message;
            QTest::addRow("%s diversity", qPrintable(d)) << 1 << message << all;
            QTest::addRow("%s frequency diversity", qPrintable(d)) << 2 << message << all;
        }
        for (const QString r : {"R1:", "R2:"}) {
            const QString message = "\x02" + r + "FREQ:70\x04";
            QTest::addRow("%s none", qPrintable(r)) << 0 << message << message;
            QTest::addRow("%s diversity", qPrintable(r))
                << 1 << message << QString("\x02R1 R2:FREQ:70\x04");
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
        QTest::newRow("a mode that is none") << 7 << "D1:A R1:B"
                                             << "D1:A R1:B";
        QTest::newRow("case matters") << 1 << "d1:A"
                                      << "d1:A";
        for (const QString& local : LocalCommands) {
            for (const int mode : {0, 1, 2}) {
                const QString message = "D2" + local + ":1";
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

    void the_mode_is_stored_under_its_own_names()
    {
        QSettings file("TORVA", "QN740KB");
        file.remove("Slave");
        file.sync();
        QCOMPARE(linkMode::stored(), 0);
        linkMode::store(2);
        QCOMPARE(linkMode::stored(), 2);
        QCOMPARE(QSettings("TORVA", "QN740KB").value("Slave").toInt(), 2);
        QVERIFY(QFile::exists(file.fileName()));
    }
};

QN740_TEST_MAIN(tst_LinkMode)
#include "tst_LinkMode.moc"
