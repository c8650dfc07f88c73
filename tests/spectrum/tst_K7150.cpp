// The page of a card of the K7150 type.
#include "spectrum/CardFixture.h"
#include "spectrum/SpectrumChart.h"
#include "support/TestMain.h"

#include <QSignalSpy>

#include <termios.h>

using namespace Qt::StringLiterals;

namespace {

using Requests = QList<QByteArray>;

speed_t speed(const Pty& pty)
{
    termios settings{};
    ::tcgetattr(pty.master(), &settings);
    return ::cfgetospeed(&settings);
}

// The messages without their frame characters.
QStringList texts(const QSignalSpy& told)
{
    QStringList list;
    for (const auto& one : told) {
        list += one.at(0).toString().mid(1).chopped(1);
    }
    return list;
}

} // namespace

class tst_K7150 : public QObject, private CardFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void cleanup() { stop(); }

    void the_k7150_arrangement_replaces_the_first_bus_and_adds_two()
    {
        Pty& first = m_devices->add(u"ttyUSB12"_s);
        Pty& second = m_devices->add(u"ttyUSB13"_s);
        Pty& third = m_devices->add(u"ttyUSB14"_s);
        QSignalSpy detected(m_card, &SpectralCard::cardDetected);
        QSignalSpy version(m_card, &SpectralCard::cardVersionUpdated);
        const QPointer<Rs422Bus> before(m_card->findChild<Rs422Bus*>());
        QVERIFY(!m_card->k7150Type());
        QCOMPARE(speed(*m_pty), speed_t(B921600));
        m_card->setK7150(u"ttyUSB12"_s, u"ttyUSB13"_s, u"ttyUSB14"_s);
        QVERIFY(m_card->k7150Type());
        QVERIFY(!before->isOpen());
        QTRY_VERIFY(before.isNull());
        QCOMPARE(detected.count(), 1);
        QCOMPARE(detected.at(0).at(0).toString(), u"K7150_Spectrum"_s);
        QCOMPARE(version.at(0).at(0).toString(), u"SDU Ver:1.23"_s);
        const auto buses = m_card->findChildren<Rs422Bus*>();
        QCOMPARE(buses.size(), 3);
        for (const Rs422Bus* bus : buses) {
            QVERIFY(bus->isOpen() && bus->getIsK7150Type() && bus->isOldProtocol());
            QCOMPARE(bus->startOfFrame(), '[');
            QCOMPARE(bus->endOFrame(), ']');
        }
        for (const Pty* pty : {&first, &second, &third}) {
            QCOMPARE(speed(*pty), speed_t(B230400));
        }
        m_card->UpdateCmds();
        QTRY_COMPARE(cardSide::requests(first), Requests{"0190RFFT000000"});
    }

    void the_k7150_arrangement_twice_keeps_second_and_third_bus()
    {
        for (const char* name : {"ttyUSB12", "ttyUSB13", "ttyUSB14", "ttyUSB15"}) {
            m_devices->add(QString::fromUtf8(name));
        }
        m_card->setK7150(u"ttyUSB12"_s, u"ttyUSB13"_s, u"ttyUSB14"_s);
        QStringList names;
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QSet<Rs422Bus*> before;
        for (Rs422Bus* bus : m_card->findChildren<Rs422Bus*>()) {
            before += bus;
        }
        m_card->setK7150(u"ttyUSB15"_s, u"other"_s, u"another"_s);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        int kept = 0;
        for (Rs422Bus* bus : m_card->findChildren<Rs422Bus*>()) {
            names += bus->portName();
            kept += before.contains(bus) ? 1 : 0;
        }
        names.sort();
        QCOMPARE(names, QStringList({u"ttyUSB13"_s, u"ttyUSB14"_s, u"ttyUSB15"_s}));
        QCOMPARE(kept, 2);
    }

    void a_k7150_spectrum_names_its_channel_data()
    {
        QTest::addColumn<int>("channel");
        QTest::addColumn<bool>("named");
        QTest::newRow("0") << 0 << true;
        QTest::newRow("1") << 1 << true;
        QTest::newRow("2") << 2 << true;
        QTest::newRow("3") << 3 << false;
        QTest::newRow("255") << 255 << false;
    }

    void a_k7150_spectrum_names_its_channel()
    {
        QFETCH(int, channel);
        QFETCH(bool, named);
        Pty& pty = switchToK7150();
        QSignalSpy spectra(m_card, &SpectralCard::specUpdate);
        m_card->SetChartAreaVisible(0, false);
        m_card->UpdateCmds(); // asks for channel 1
        const QByteArray points = cardSide::carrier(512, 5, -50);
        if (!named) {
            QTest::ignoreMessage(
                QtWarningMsg, QRegularExpression(u"the K7150 does not name the channel"_s));
        }
        pty.write(cardSide::k7150Spectrum(channel, points));
        QTRY_COMPARE(spectra.count(), 1);
        // What does not begin with a channel begins with a point, and belongs to what was asked.
        const QByteArray unnamed = static_cast<char>(channel) + points.chopped(1);
        QCOMPARE(spectra.at(0).at(0).toByteArray(), named ? points : unnamed);
        QCOMPARE(spectra.at(0).at(1).toInt(), named ? channel : 1);
        QVERIFY(m_card->chart(named ? channel : 1)->peak().valid);
    }

    void spectra_of_the_second_and_third_port_are_shown_too()
    {
        switchToK7150();
        QSignalSpy spectra(m_card, &SpectralCard::specUpdate);
        m_second->write(cardSide::k7150Spectrum(1, "ab"));
        m_third->write(cardSide::k7150Spectrum(2, "cd"));
        QTRY_COMPARE(spectra.count(), 2);
        QCOMPARE(m_card->chart(1)->trace().size(), 2);
        QCOMPARE(m_card->chart(2)->trace().size(), 2);
    }

    void a_span_change_restarts_the_average_behind_its_marker()
    {
        switchToK7150();
        m_card->chart(0)->setAveraging(16);
        m_card->CommSpectral_Command(cardSide::message('\0' + QByteArray(8, cardSide::level(-20))));
        m_card->CommSpectral_Command(cardSide::message('\0' + QByteArray(8, cardSide::level(-80))));
        QCOMPARE(m_card->chart(0)->trace().levels().first(), -23.0103F);
        m_card->SetSpan(0, 5);
        m_card->CommSpectral_Command(cardSide::message('\0' + QByteArray(8, cardSide::level(-10))));
        QCOMPARE(m_card->chart(0)->trace().size(), 0);
        testClock::expire(bus());
        m_card->CommSpectral_Command(cardSide::message('\0' + QByteArray(8, cardSide::level(-60))));
        m_card->CommSpectral_Command(cardSide::message('\0' + QByteArray(8, cardSide::level(-80))));
        QCOMPARE(m_card->chart(0)->trace().levels().first(), -62.9671F);
    }

    void a_k7150_on_the_screen_comes_back_after_a_lost_reply()
    {
        Pty& pty = switchToK7150();
        cardKnowsItsSpans(pty);
        m_window->show();
        QTRY_COMPARE(cardSide::requests(pty).size(), 1);
        testClock::expire(bus());
        QTest::qWait(120);
        QCOMPARE(cardSide::requests(pty).size(), 1);
        QCOMPARE(timer("replyDueTimer")->interval(), 2500);
        QVERIFY(timer("replyDueTimer")->isActive() && timer("replyDueTimer")->isSingleShot());
        testClock::expire(timer("replyDueTimer"));
        QTRY_COMPARE(cardSide::requests(pty).size(), 2);
    }

    void a_k7150_whose_port_comes_later_is_polled_and_its_demodulators_are_told_once()
    {
        m_card->setK7150(u"late"_s, u"absent"_s, u"absent"_s);
        QSignalSpy told(m_card, &SpectralCard::updateDemodCh);
        m_window->show();
        QTest::qWait(120);
        QCOMPARE(told.count(), 0);
        Pty& pty = m_devices->add(u"late"_s);
        const Requests first{"0190CNFT000000", "0190RFFT000000"};
        QTRY_COMPARE_WITH_TIMEOUT(cardSide::requests(pty), first, 10000);
        QCOMPARE(texts(told), QStringList({u"D1:NFFT:12"_s, u"D2:NFFT:12"_s, u"D3:NFFT:12"_s}));
    }

    void a_card_that_comes_later_is_told_what_was_chosen_before()
    {
        m_card->setK7150(u"late"_s, u"absent"_s, u"absent"_s);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_card->SetSpan(0, 7); // while the port is absent
        Rs422Bus* late = cardSide::busOn(m_card, u"late"_s);
        testClock::expire(late);
        QVERIFY(testClock::timers(late).isEmpty());
        Pty& pty = m_devices->add(u"late"_s);
        QTRY_VERIFY_WITH_TIMEOUT(m_card->isOpen(), 10000);
        m_window->show();
        const Requests first{"0190CNFT070000", "0190RFFT000000"};
        QTRY_COMPARE_WITH_TIMEOUT(cardSide::requests(pty), first, 10000);
    }

    void a_k7150_is_set_up_through_its_demodulators_and_told_its_spans()
    {
        Pty& pty = switchToK7150();
        m_card->SetSpan(2, 3);
        testClock::expire(bus());
        QTRY_COMPARE(cardSide::requests(pty), Requests{"0190CNFT230000"});
        QSignalSpy told(m_card, &SpectralCard::updateDemodCh);
        for (int i = 0; i < 100; ++i) {
            m_card->initSA();
        }
        QCOMPARE(texts(told).mid(0, 6),
            QStringList({u"D1:SPEN:1"_s, u"D1:NFFT:12"_s, u"D2:SPEN:1"_s, u"D2:NFFT:12"_s,
                u"D3:SPEN:1"_s, u"D3:NFFT:11"_s}));
        for (int i = 0; i < 3; ++i) {
            testClock::expire(bus());
        }
        QTRY_COMPARE(cardSide::requests(pty),
            Requests({"0190CNFT230000", "0190CNFT000000", "0190CNFT100000", "0190CNFT230000"}));
        QVERIFY(testClock::timers(bus()).isEmpty());
    }

private:
    Pty& switchToK7150()
    {
        Pty& pty = m_devices->add(u"ttyUSB12"_s);
        m_second = &m_devices->add(u"ttyUSB13"_s);
        m_third = &m_devices->add(u"ttyUSB14"_s);
        m_card->setK7150(u"ttyUSB12"_s, u"ttyUSB13"_s, u"ttyUSB14"_s);
        return pty;
    }

    // Tells all channels their spans and lets the requests end.
    void cardKnowsItsSpans(Pty& pty)
    {
        m_card->initSA();
        for (int channel = 0; channel < 3; ++channel) {
            QTRY_COMPARE(cardSide::requests(pty).size(), channel + 1);
            testClock::expire(bus());
        }
        QVERIFY(testClock::timers(bus()).isEmpty());
        pty.takeReceived();
    }

    Pty* m_second = nullptr;
    Pty* m_third = nullptr;
};

QN740_TEST_MAIN(tst_K7150)
#include "tst_K7150.moc"
