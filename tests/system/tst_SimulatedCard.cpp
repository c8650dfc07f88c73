// These tests run the real program with a card on its line. They check which type the panel takes
// the card for, and that a spectrum travels all the way from the line to another program that reads
// it. The simulated card of the older type is included.
#include "spectrum/CardSide.h"
#include "support/Program.h"
#include "support/RfbClient.h"
#include "support/TestMain.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalSocket>

#include <termios.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int LongMs = 40000;

using Requests = QList<QByteArray>;

Requests polls(Pty& card)
{
    Requests some;
    for (const QByteArray& request : cardSide::requests(card)) {
        if (request.startsWith("0190RFFT")) {
            some += request;
        }
    }
    return some;
}

// Returns how many points of the levels are not far below the highest one.
int width(const QJsonArray& levels)
{
    constexpr double Far = 12.0; // dB
    double highest = -1000.0;
    for (const QJsonValue& level : levels) {
        highest = qMax(highest, level.toDouble());
    }
    int count = 0;
    for (const QJsonValue& level : levels) {
        count += level.toDouble() > highest - Far ? 1 : 0;
    }
    return count;
}

speed_t speed(const Pty& pty)
{
    termios settings{};
    ::tcgetattr(pty.master(), &settings);
    return ::cfgetospeed(&settings);
}

} // namespace

class tst_SimulatedCard : public QObject
{
    Q_OBJECT

private slots:
    void the_option_decides_which_type_is_polled_data()
    {
        QTest::addColumn<bool>("older");
        QTest::newRow("-noK7150") << true;
        QTest::newRow("without it") << false;
    }

    void the_option_decides_which_type_is_polled()
    {
        QFETCH(bool, older);
        DeviceDirectory devices;
        Pty& unit = devices.add(u"ttyO1"_s);
        Pty& card = devices.add(u"ttyUSB11"_s);
        const QString socket = devices.path() + u"/spectra"_s;
        Program panel(QString::fromUtf8(QN740_PANEL),
            older ? QStringList{u"-noK7150"_s} : QStringList(),
            {u"QN740_SPECTRUM_SOCKET="_s + socket});
        QVERIFY(unit.write(framed("VER")));
        QTRY_COMPARE_WITH_TIMEOUT(unit.received(), framed("1.1.6.4"), LongMs);
        unit.takeReceived();

        // The older card is ready at once and is asked for its name. The other one is switched on
        // first.
        if (older) {
            QTRY_COMPARE_WITH_TIMEOUT(cardSide::requests(card), Requests{"0190RNME000000"}, LongMs);
        } else {
            QVERIFY(!QFileInfo::exists(socket));
            unit.write(framed("ST,1"));
            QTRY_COMPARE_WITH_TIMEOUT(
                unit.received(), QByteArray("D1:SPEN:1D2:SPEN:1D2:SPEN:1"), LongMs);
        }
        QCOMPARE(speed(card), older ? speed_t(B921600) : speed_t(B230400));
        QLocalSocket reader;
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(socket), LongMs);
        reader.connectToServer(socket);
        QVERIFY(reader.waitForConnected(LongMs));

        // This menu shows the first chart.
        unit.write(framed("AK,Tuner,freq,Frequency,5,X:,,0,,0,0,1") + framed("MS,Pax,Tuner,freq") +
            framed("PAX,1"));
        QTRY_COMPARE_WITH_TIMEOUT(polls(card), Requests{"0190RFFT000000"}, LongMs);
        QCOMPARE(cardSide::requests(card).contains("0190CNFT000000"), !older);
        const QByteArray points = cardSide::carrier(512, 100, -20);
        card.write(older ? cardSide::spectrum(points) : cardSide::k7150Spectrum(0, points));
        QTRY_COMPARE_WITH_TIMEOUT(
            polls(card), Requests({"0190RFFT000000", "0190RFFT010000"}), LongMs);
        QTRY_VERIFY_WITH_TIMEOUT(reader.canReadLine(), LongMs);
        const QJsonObject spectrum = QJsonDocument::fromJson(reader.readLine()).object();
        const QJsonArray levels = spectrum.value(u"levels"_s).toArray();
        QCOMPARE(spectrum.value(u"channel"_s).toInt(-1), 0);
        QCOMPARE(levels.size(), 512);
        QCOMPARE(levels.at(100).toDouble(), -20.0);
        QCOMPARE(levels.at(101).toDouble(), -100.0);
        if (older) {
            QCOMPARE(unit.received(), QByteArray()); // nothing is sent to a demodulator
        } else {
            QVERIFY(unit.received().endsWith(framed("D3:NFFT:12")));
        }
    }

    void the_older_card_of_the_unit_shows_the_span_that_the_operator_chose()
    {
        const QTemporaryDir parent;
        const QString devices = parent.filePath(u"dev"_s);
        const QString socket = parent.filePath(u"spectra"_s);
        Program unit(QString::fromUtf8(QN740_SIM), {u"--dir"_s, devices, u"--card"_s, u"older"_s});
        QTRY_VERIFY_WITH_TIMEOUT(unit.has("sim: ready " + devices.toUtf8()), LongMs);
        const quint16 port = RfbClient::freePort();
        Program panel(QString::fromUtf8(QN740_PANEL),
            {u"-noK7150"_s, u"-platform"_s, u"vnc:size=800x480:port=%1"_s.arg(port)},
            {u"QN740_DEV="_s + devices, u"QN740_SPECTRUM_SOCKET="_s + socket});
        QTRY_VERIFY_WITH_TIMEOUT(unit.has("sim: menus sent"), LongMs);
        unit.write("PAX,1\n"); // this menu shows the first chart
        QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(socket), LongMs);
        QLocalSocket reader;
        reader.connectToServer(socket);
        QVERIFY(reader.waitForConnected(LongMs));

        // The menus have set 20 MHz.
        QJsonObject last;
        const auto has = [&](double span) {
            while (reader.canReadLine()) {
                last = QJsonDocument::fromJson(reader.readLine()).object();
            }
            return last.value(u"channel"_s).toInt(-1) == 0 &&
                last.value(u"span"_s).toDouble() == span;
        };
        QTRY_VERIFY_WITH_TIMEOUT(has(21.447264), LongMs);
        QCOMPARE(last.value(u"levels"_s).toArray().size(), 1024);
        QCOMPARE(last.value(u"centre"_s).toDouble(), 2250.5);
        const int before = width(last.value(u"levels"_s).toArray());
        QVERIFY2(before > 10, qPrintable(QString::number(before)));

        // The start-up picture takes every touch for a while, so the clicks are repeated.
        RfbClient screen;
        QVERIFY2(screen.connectTo(port), qPrintable(screen.errorString()));
        const auto listIsOpen = [&] {
            return screen.picture().pixelColor(30, 64) == QColor(66, 89, 148); // its title
        };
        QTRY_VERIFY_WITH_TIMEOUT(
            listIsOpen() || (screen.click({134, 445}) && listIsOpen()), LongMs); // "Span"
        QTRY_VERIFY_WITH_TIMEOUT(
            !listIsOpen() || (screen.click({300, 178}) && !listIsOpen()), LongMs); // "3 MHz"

        // The card can have learned the span from its own line only, because the unit receives no
        // message about it.
        const auto isWide = [&] {
            return has(3.235677106) && width(last.value(u"levels"_s).toArray()) > 3 * before;
        };
        QTRY_VERIFY_WITH_TIMEOUT(isWide(), LongMs);
        QVERIFY(!unit.output().contains(":NFFT:"));
        QCOMPARE(panel.state(), QProcess::Running);
    }
};

QN740_TEST_MAIN(tst_SimulatedCard)
#include "tst_SimulatedCard.moc"
