#include "sim/card/CardPort.h"
#include "sim/line/PseudoTerminal.h"
#include "sim/line/UnitDevices.h"
#include "spectrum/BusFrame.h"
#include "spectrum/Clock.h"
#include "spectrum/SpectralCard.h"
#include "spectrum/SpectrumChart.h"
#include "support/TestMain.h"

#include <QSerialPort>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

using Type = CardPort::Type;

namespace {

FaultTable rates(const QString& text)
{
    FaultTable table(CardFaults::names());
    const QString fault = table.set(text);
    if (!fault.isEmpty()) {
        qFatal("%s", qPrintable(fault));
    }
    return table;
}

} // namespace

class tst_CardPort : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_devices = std::make_unique<UnitDevices>();
        m_line = m_devices->add(u"ttyUSB11"_s);
        m_spectrum = std::make_unique<CardSpectrum>(1);
        m_heard.clear();
        qputenv("QN740_DEV", m_devices->path().toLocal8Bit());
    }

    void cleanup()
    {
        m_port.reset();
        m_card.reset();
        m_devices.reset();
        qunsetenv("QN740_DEV");
    }

    void requests_are_answered_data()
    {
        QTest::addColumn<QByteArray>("request");
        QTest::addColumn<QByteArray>("reply");
        QTest::newRow("name") << QByteArray("0190RNME000000")
                              << QByteArray("[0190RNMESpectralSweep]\r");
        QTest::newRow("version") << QByteArray("0190RVER000000") << QByteArray("[0190RVER1.23]\r");
        QTest::newRow("spans") << QByteArray("0190RNFT000000") << QByteArray("[0190RNFT000]\r");
        QTest::newRow("trims") << QByteArray("0190RTRM000000") << QByteArray("[0190RTRM000]\r");
        QTest::newRow("set span") << QByteArray("0190CNFT290000") << QByteArray("[0190CNFT29]\r");
        QTest::newRow("set trim") << QByteArray("0190CTRM140000") << QByteArray("[0190CTRM14]\r");
    }

    void requests_are_answered()
    {
        QFETCH(QByteArray, request);
        QFETCH(QByteArray, reply);
        start(Type::Older);
        m_port->write(bus::frame(QString::fromLatin1(request), '[', ']', true));
        QTRY_COMPARE(heard(), reply);
        QCOMPARE(m_card->answered(), 1);
    }

    void what_is_set_is_read_back()
    {
        start(Type::Older);
        for (const char* request : {"0190CNFT290000", "0190CTRM140000"}) {
            m_port->write(bus::frame(QString::fromUtf8(request), '[', ']', true));
        }
        QTRY_COMPARE(m_card->answered(), 2);
        QCOMPARE(m_spectrum->span(2), 9);
        QCOMPARE(m_spectrum->trim(1), 4);
        QTRY_COMPARE(heard().size(), 26);
        m_heard.clear();
        m_port->write(bus::frame(u"0190RNFT000000"_s, '[', ']', true));
        QTRY_COMPARE(heard(), QByteArray("[0190RNFT009]\r"));
    }

    void a_k7150_has_the_points_of_its_span_data()
    {
        QTest::addColumn<int>("span");
        QTest::addColumn<int>("points");
        QTest::newRow("1 MHz") << 0 << 106;
        QTest::newRow("15 MHz") << 5 << 710;
        QTest::newRow("40 MHz") << 9 << 958;
    }

    void a_k7150_has_the_points_of_its_span()
    {
        QFETCH(int, span);
        QFETCH(int, points);
        start(Type::K7150, CardPort::PointsOfSpan);
        m_spectrum->setSpan(1, span);
        m_port->write(bus::frame(u"0190RFFT100000"_s, '[', ']', true));
        QTRY_COMPARE(heard().size(), 12 + points);
        QCOMPARE(heard().left(12),
            "[0190RFFT" + QByteArray(1, char(points >> 8)) + QByteArray(1, char(points & 0xff)) +
                '\1');
    }

    void what_is_no_request_is_not_answered_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("refused");
        QTest::newRow("wrong checksum") << QByteArray("[0190RNME000000]x") << 1;
        QTest::newRow("no checksum") << QByteArray("[0190RNME000000]") << 0;
        QTest::newRow("another address") << bus::frame(u"0180RNME000000"_s, '[', ']', true) << 0;
        QTest::newRow("unknown command") << bus::frame(u"0190ABCD000000"_s, '[', ']', true) << 0;
        QTest::newRow("no such channel") << bus::frame(u"0190RFFT700000"_s, '[', ']', true) << 0;
        QTest::newRow("no such span") << bus::frame(u"0190CNFT9x0000"_s, '[', ']', true) << 0;
        QTest::newRow("too short") << bus::frame(u"01"_s, '[', ']', true) << 0;
        QTest::newRow("one character less") << bus::frame(u"0190RNME00000"_s, '[', ']', true) << 0;
        QTest::newRow("one character more")
            << bus::frame(u"0190RNME0000000"_s, '[', ']', true) << 0;
        QTest::newRow("not filled up") << bus::frame(u"0190RNME"_s, '[', ']', true) << 0;
        QTest::newRow("noise") << QByteArray(1000, 'x') << 0;
    }

    void what_is_no_request_is_not_answered()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, refused);
        start(Type::Older);
        m_port->write(bytes);
        QTest::qWait(50);
        QCOMPARE(m_card->answered(), 0);
        QCOMPARE(m_card->refused(), refused);
        QCOMPARE(heard(), QByteArray());
        // The next correct request is answered.
        m_port->write(QByteArray(300, 'x') + bus::frame(u"0190RVER000000"_s, '[', ']', true));
        m_port->flush();
        m_port->write(bus::frame(u"0190RVER000000"_s, '[', ']', true));
        QTRY_VERIFY(heard().startsWith("[0190RVER1.23]\r"));
    }

    void a_spectrum_has_the_layout_of_its_type()
    {
        start(Type::Older, 512);
        m_port->write(bus::frame(u"0190RFFT100000"_s, '[', ']', true));
        QTRY_COMPARE(heard().size(), 13 + 512);
        QVERIFY(heard().startsWith("[0190RFFT0512"));
        m_heard.clear();

        start(Type::K7150, 4096);
        m_port->write(bus::frame(u"0190RFFT200000"_s, '[', ']', true));
        QTRY_COMPARE(heard().size(), 12 + 4096);
        QCOMPARE(heard().left(12), QByteArray("[0190RFFT\x10\x00\x02", 12));
    }

    void each_fault_spoils_a_reply_in_its_way()
    {
        const QByteArray reply = "[0190RFFT0064" + QByteArray(64, 'p');
        const auto spoilt = [&reply](CardFaults::Fault fault) {
            CardFaults faults(rates(CardFaults::names().at(fault).name + u"=1"_s), 3);
            return faults.pass(reply);
        };
        QVERIFY(spoilt(CardFaults::NoReply).bytes.isEmpty());
        QCOMPARE(spoilt(CardFaults::Late).bytes, reply);
        QVERIFY(spoilt(CardFaults::Late).delayMs > 2000);
        QVERIFY(spoilt(CardFaults::Cut).bytes.size() < reply.size());
        QVERIFY(spoilt(CardFaults::Noise).bytes.endsWith(reply));
        QVERIFY(spoilt(CardFaults::Noise).bytes.size() > reply.size());
        QVERIFY(spoilt(CardFaults::WrongAddress).bytes.startsWith("[0180RFFT0064"));
        QVERIFY(spoilt(CardFaults::WrongLength).bytes.startsWith("[0190RFFT9064"));
        CardFaults none;
        QCOMPARE(none.pass(reply).bytes, reply);
    }

    void a_wrong_length_is_wrong_whatever_the_right_one_is_data()
    {
        QTest::addColumn<QByteArray>("start");
        QTest::addColumn<int>("points");
        QTest::addColumn<QByteArray>("spoilt");
        QTest::newRow("64") << QByteArray("[0190RFFT0064") << 64 << QByteArray("[0190RFFT9064");
        QTest::newRow("9000") << QByteArray("[0190RFFT9000") << 9000 << QByteArray("[0190RFFT8000");
        QTest::newRow("9999") << QByteArray("[0190RFFT9999") << 9999 << QByteArray("[0190RFFT8999");
        QTest::newRow("K7150, 9000")
            << QByteArray("[0190RFFT\x23\x28") << 9000 << QByteArray("[0190RFFT9\x28");
    }

    void a_wrong_length_is_wrong_whatever_the_right_one_is()
    {
        QFETCH(QByteArray, start);
        QFETCH(int, points);
        QFETCH(QByteArray, spoilt);
        CardFaults faults(rates(u"card-length=1"_s), 3);
        const QByteArray tail(points, 'p');
        QCOMPARE(faults.pass(start + tail).bytes, spoilt + tail);
    }

    void the_panel_reads_on_after_a_wrong_length_of_9000_points()
    {
        const CardFaults faults(rates(u"card-length=0.5"_s), 11);
        m_card = std::make_unique<CardPort>(Type::Older, *m_line, *m_spectrum, faults, 9000);
        SpectralCard page(nullptr, 0, u"ttyUSB11"_s);
        int right = 0;
        int wrong = 0;
        connect(&page, &SpectralCard::specUpdate, this, [&](const QByteArray& points) {
            ++(points.size() == 9000 ? right : wrong);
            QVERIFY(points.size() == 9000 || points.size() == 8000);
        });
        page.show();
        QTRY_VERIFY_WITH_TIMEOUT(right > 1 && wrong > 1, 60000);
    }

    void the_same_seed_spoils_the_same_replies()
    {
        const FaultTable table = rates(u"card-cut=0.4,card-noise=0.4,card-no-reply=0.3"_s);
        CardFaults one(table, 5);
        CardFaults same(table, 5);
        for (int i = 0; i < 200; ++i) {
            QCOMPARE(one.pass("[0190RNMEname]\r").bytes, same.pass("[0190RNMEname]\r").bytes);
        }
        QVERIFY(one.times(CardFaults::Cut) > 30 && one.times(CardFaults::Noise) > 30);
    }

    // In the following tests the panel's own page is at the other end of the line.

    void the_page_shows_the_older_card()
    {
        m_card = std::make_unique<CardPort>(Type::Older, *m_line, *m_spectrum, CardFaults());
        SpectralCard page(nullptr, 0, u"ttyUSB11"_s);
        QSignalSpy version(&page, &SpectralCard::cardVersionUpdated);
        QSignalSpy spectra(&page, &SpectralCard::specUpdate);
        page.show();
        QTRY_COMPARE(version.count(), 1);
        QCOMPARE(version.at(0).at(0).toString(), u"SpectralSweep Ver:1.23"_s);
        page.SetSpan(2, 9);
        QTRY_COMPARE(m_spectrum->span(2), 9);
        QTRY_VERIFY(spectra.count() >= 6);
        for (int channel = 0; channel < 3; ++channel) {
            QTRY_VERIFY(page.chart(channel)->peak().level > -40.0);
        }
    }

    void the_page_shows_the_k7150()
    {
        PseudoTerminal* second = m_devices->add(u"ttyUSB12"_s);
        PseudoTerminal* third = m_devices->add(u"ttyUSB13"_s);
        const CardFaults none;
        const CardPort first(Type::K7150, *m_line, *m_spectrum, none, 512);
        const CardPort two(Type::K7150, *second, *m_spectrum, none, 512);
        const CardPort three(Type::K7150, *third, *m_spectrum, none, 512);
        SpectralCard page(nullptr, 0, u"ttyUSB11"_s);
        connect(&page, &SpectralCard::updateDemodCh, this,
            [this](const QString& message) { m_spectrum->takeCommand(message.mid(1).chopped(1)); });
        page.setK7150(u"ttyUSB11"_s, u"ttyUSB12"_s, u"ttyUSB13"_s);
        page.show();
        for (int channel = 0; channel < 3; ++channel) {
            QTRY_VERIFY(page.chart(channel)->peak().valid);
        }
        // The spans 6 to 9 have the same FFT parameter, so the demodulator's command alone does not
        // tell which one is meant.
        for (const int span : {6, 9, 7, 8}) {
            page.SetSpan(1, span);
            QTRY_COMPARE(m_spectrum->span(1), span);
        }
    }

    // A chart never shows a spectrum that was measured with a span other than its own.
    void every_shown_spectrum_has_the_chart_s_span_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("older type") << int(Type::Older);
        QTest::newRow("K7150") << int(Type::K7150);
    }

    void every_shown_spectrum_has_the_chart_s_span()
    {
        QFETCH(int, type);
        m_card = std::make_unique<CardPort>(
            static_cast<Type>(type), *m_line, *m_spectrum, CardFaults(), 64);
        SpectralCard page(nullptr, 0, u"ttyUSB11"_s);
        if (static_cast<Type>(type) == Type::K7150) {
            page.setK7150(u"ttyUSB11"_s, u"absent"_s, u"missing"_s);
        }
        page.SetChartAreaVisible(1, false);
        page.SetChartAreaVisible(2, false);
        int shown = 0;
        connect(&page, &SpectralCard::specUpdate, this, [&](const QByteArray&, int channel) {
            QCOMPARE(m_spectrum->span(channel), page.getSpan(channel));
            ++shown;
        });
        page.show();
        QTRY_VERIFY(shown > 0);
        for (int i = 1; i < 5; ++i) {
            page.SetSpan(0, i);
            QTest::qWait(i * 30 - 30); // during the previous change and after it
            page.SetSpan(0, i + 5);
            const int before = shown;
            QTRY_VERIFY(shown > before + 1);
        }
    }

    void the_page_survives_every_fault()
    {
        const FaultTable table = rates(u"card-no-reply=0.05,card-late=0.05,card-cut=0.05,"_s
                                       u"card-noise=0.1,card-address=0.05,card-length=0.05"_s);
        m_card = std::make_unique<CardPort>(
            Type::Older, *m_line, *m_spectrum, CardFaults(table, 11), 64);
        SpectralCard page(nullptr, 0, u"ttyUSB11"_s);
        QSignalSpy spectra(&page, &SpectralCard::specUpdate);
        page.show();
        const auto enough = [&] {
            bool all = spectra.count() > 60;
            for (int fault = 0; fault < CardFaults::Count; ++fault) {
                all = all && m_card->faults().times(static_cast<CardFaults::Fault>(fault)) > 1;
            }
            return all;
        };
        // To save time, the test ends the wait for a missing spectrum early.
        constexpr int StepMs = 20;
        constexpr int PatienceSteps = 6;
        auto* bus = page.findChild<Rs422Bus*>();
        QElapsedTimer elapsed;
        elapsed.start();
        for (int quiet = 0; !enough() && elapsed.elapsed() < 60000;) {
            const auto before = spectra.count();
            QTest::qWait(StepMs);
            quiet = spectra.count() > before ? 0 : quiet + 1;
            if (quiet > PatienceSteps) {
                testClock::expire(bus);
                quiet = 0;
            }
        }
        QVERIFY2(enough(), qPrintable(QString::number(spectra.count())));
    }

private:
    void start(Type type, int points = 64)
    {
        m_port.reset();
        m_card = std::make_unique<CardPort>(type, *m_line, *m_spectrum, CardFaults(), points);
        m_port = std::make_unique<QSerialPort>();
        m_port->setPortName(m_devices->path() + u"/ttyUSB11"_s);
        m_port->setBaudRate(921600);
        QVERIFY(m_port->open(QIODevice::ReadWrite));
        QTRY_VERIFY(m_line->isOpen());
    }

    QByteArray heard()
    {
        m_heard += m_port->readAll();
        return m_heard;
    }

    std::unique_ptr<UnitDevices> m_devices;
    PseudoTerminal* m_line = nullptr;
    std::unique_ptr<CardSpectrum> m_spectrum;
    std::unique_ptr<CardPort> m_card;
    std::unique_ptr<QSerialPort> m_port;
    QByteArray m_heard;
};

QN740_TEST_MAIN(tst_CardPort)
#include "tst_CardPort.moc"
