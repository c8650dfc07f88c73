// These tests check that the scopes and charts of the panel show what the operator has set. Real
// clicks press the keys of the panel's window, and the real simulated unit is at the other end of
// all its lines.
#include "app/Rooms.h"
#include "link/LinkMode.h"
#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "scopes/ScopesPage.h"
#include "spectrum/SpectralCard.h"
#include "spectrum/SpectrumChart.h"
#include "spectrum/SpectrumMessages.h"
#include "support/PopUps.h"
#include "support/TestMain.h"
#include "support/UnitFixture.h"
#include "tools/screen/Part.h"

#include <QSignalSpy>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int EyeSamples = 4; // per symbol, starting at a decision

// Returns how far the worst decisions of an eye are from zero, relative to the mean one: 1 is an
// open eye, 0 a closed one. The modulation must have four points, as QPSK has.
double opening(const QVector<double>& i, int step)
{
    double worst = 1e9;
    double mean = 0.0;
    int count = 0;
    for (int k = step; k < i.size(); k += step) {
        worst = std::min(worst, std::abs(i.at(k)));
        mean += std::abs(i.at(k));
        ++count;
    }
    return worst * count / mean;
}

} // namespace

class tst_UnitReacts : public QObject, private UnitFixture
{
    Q_OBJECT

    // Presses a key of a menu and these buttons in its editor, then waits until the unit has
    // received the answer.
    void set(const char* menu, const char* id, const QStringList& buttons, const QByteArray& sent)
    {
        say("PAX,0");
        clickOn(part<QPushButton>(*m_window, "mainMenuButton")); // leaves scopes and spectrum
        say(QByteArray("SK,") + menu);
        const Key* pressed = MenuBook::findKey(
            m_window->rooms().menus->book.find(QString::fromUtf8(menu)), QString::fromUtf8(id));
        QVERIFY(pressed != nullptr && pressed->GetKey()->isVisible());
        whenModal([&buttons](QWidget* editor) {
            for (const QString& button : buttons) {
                popUps::press(editor, button);
            }
        });
        clickOn(pressed->GetKey());
        QTRY_VERIFY_WITH_TIMEOUT(m_unit->has("panel: " + sent), LongMs);
        say("PING"); // the unit's own answers come before its reply
    }

    Scope* scope(int demodulator) const { return m_window->rooms().scopes->scope(demodulator); }
    SpectrumChart* chart(int channel) const
    {
        return m_window->rooms().spectrum->card()->chart(channel);
    }

    void showScopes()
    {
        clickOn(part<QPushButton>(*m_window, "mainMenuButton"));
        clickOn(part<QPushButton>(*m_window, "scopesButton"));
    }
    void showSpectrum()
    {
        showScopes();
        clickOn(part<QPushButton>(*m_window, "scopesButton"));
        QVERIFY(m_window->rooms().spectrum->card()->isVisible());
    }

    // Returns the mean opening of the next eyes of a demodulator.
    double eyeOpening(int demodulator)
    {
        QSignalSpy blocks(scope(demodulator), &Scope::rcv_eye_msg);
        constexpr int Skipped = 2; // eyes that were already under way
        constexpr int Count = 6;
        if (!QTest::qWaitFor([&] { return blocks.size() >= Skipped + Count; }, LongMs)) {
            QTest::qFail("no eyes", __FILE__, __LINE__);
            return 0.0;
        }
        double sum = 0.0;
        for (int k = Skipped; k < Skipped + Count; ++k) {
            sum += opening(blocks.at(k).at(0).value<QVector<double>>(), EyeSamples) / Count;
        }
        return sum;
    }

    // Returns the width of the carrier in a chart in MHz, measured at the level `Above` in a
    // spectrum that is requested after this call.
    double carrierWidth(int channel)
    {
        constexpr double Above = -60.0;
        QSignalSpy spectra(m_window->rooms().spectrum->card(), &SpectralCard::specUpdate);
        const auto next = [&spectra, channel]() -> QByteArray {
            int seen = 0;
            for (const QList<QVariant>& one : spectra) {
                // The first spectrum may have been requested before this call, so the third one is
                // taken.
                if (one.at(1).toInt() == channel && ++seen == 3) {
                    return one.at(0).toByteArray();
                }
            }
            return {};
        };
        if (!QTest::qWaitFor([&] { return !next().isEmpty(); }, LongMs)) {
            QTest::qFail("no spectra", __FILE__, __LINE__);
            return 0.0;
        }
        const QByteArray points = next();
        const auto above = std::count_if(points.begin(), points.end(),
            [](char point) { return static_cast<quint8>(point) * 0.5 - 120.0 > Above; });
        return chart(channel)->spanMHz() * static_cast<double>(above) /
            static_cast<double>(points.size());
    }

private slots:
    void init()
    {
        linkMode::store(linkMode::None);
        start(QString::fromUtf8(QN740_SIM),
            {u"--signal"_s, u"qpsk:snr=22"_s, u"--card-points"_s, u"512"_s});
        for (int demodulator = 1; demodulator <= 3; ++demodulator) {
            say("SM," + QByteArray::number(demodulator) + ",2");
        }
        for (int channel = 0; channel < 3; ++channel) {
            say("SP," + QByteArray::number(channel) + ",6"); // 20 MHz
        }
    }

    void cleanup() { stop(); }

    void a_bit_rate_changes_the_eye_and_the_width_of_the_carrier()
    {
        showScopes();
        const double first = eyeOpening(1);
        const double other = eyeOpening(2);
        set("Demod 1", "rate", {u"4"_s, u"0"_s, u"Mbps"_s}, "D1:RATE:40000000.000000");
        showScopes();
        const double fast = eyeOpening(1);
        showSpectrum();
        const double wide = carrierWidth(0);
        set("Demod 1", "rate", {u"5"_s, u"0"_s, u"0"_s, u"Kbps"_s}, "D1:RATE:500000.000000");
        showScopes();
        const double slow = eyeOpening(1);
        const double otherNow = eyeOpening(2);
        showSpectrum();
        const double narrow = carrierWidth(0);
        qInfo(
            "opening of the eye at 0.5, 5, 40 Mbps: %.2f %.2f %.2f; carrier at 0.5, 40 Mbps: %.2f "
            "%.2f MHz",
            slow, first, fast, narrow, wide);
        QVERIFY(slow > first + 0.05);
        QVERIFY(fast < 0.5 * first);
        QVERIFY(std::abs(other - otherNow) < 0.15); // the other demodulator's is as it was
        QVERIFY(wide > 15.0 && narrow < 2.0);
    }

    void a_narrower_filter_closes_the_eye()
    {
        showScopes();
        const double first = eyeOpening(1);
        set("Tuner CH1", "ifbw", {u"2 MHz"_s}, "R1:IFBW:3");
        showScopes();
        const double narrow = eyeOpening(1);
        qInfo("opening of the eye at 10 and at 2 MHz: %.2f %.2f", first, narrow);
        QVERIFY(narrow < 0.6 * first);
    }

    void a_modulation_changes_the_constellation()
    {
        say("SM,1,1");
        showScopes();
        const auto largestQ = [this] {
            QSignalSpy blocks(scope(1), &Scope::rcv_eye_msg);
            if (!QTest::qWaitFor([&] { return blocks.size() >= 3; }, LongMs)) {
                return -1.0;
            }
            double largest = 0.0;
            for (const double q : blocks.at(2).at(1).value<QVector<double>>()) {
                largest = std::max(largest, std::abs(q));
            }
            return largest;
        };
        QVERIFY(largestQ() > 0.3); // of QPSK
        set("Demod 1", "mod", {u"BPSK"_s}, "D1:MODE:3");
        showScopes();
        const double bpsk = largestQ();
        QVERIFY2(bpsk >= 0.0 && bpsk < 0.2, QByteArray::number(bpsk)); // noise
        QCOMPARE(MenuBook::findKey(m_window->rooms().menus->book.find(u"Demod 1"_s), u"mod"_s)
                     ->GetKey()
                     ->text(),
            u"Modulation: BPSK"_s);
    }

    void a_frequency_moves_the_spectrum_and_the_transmitter_stays()
    {
        showSpectrum();
        QTRY_VERIFY_WITH_TIMEOUT(chart(0)->peak().valid, LongMs);
        const double before = chart(0)->peak().frequency;
        QCOMPARE(chart(0)->centre(), 2250.5);
        QVERIFY(std::abs(before - 2250.5) < 3.0);
        set("Tuner CH1", "freq", {u"2"_s, u"2"_s, u"5"_s, u"6"_s, u"MHz"_s}, "R1:FREQ:2256.000000");
        QCOMPARE(chart(0)->centre(), 2256.0);
        QCOMPARE(chart(1)->centre(), 1485.5);
        QCOMPARE(chart(2)->centre(), 2256.0); // the combiner's
        showSpectrum();
        // The peak keeps its frequency, so it stands 5.5 MHz to the left of the chart's middle.
        QTRY_VERIFY_WITH_TIMEOUT(std::abs(chart(0)->peak().frequency - 2250.5) < 3.0, LongMs);
        QVERIFY(chart(0)->peak().level > -40.0);
    }

    void off_stops_a_scope_and_no_other()
    {
        showScopes();
        QSignalSpy first(scope(1), &Scope::rcv_eye_msg);
        QSignalSpy second(scope(2), &Scope::rcv_eye_msg);
        QTRY_VERIFY_WITH_TIMEOUT(!first.isEmpty() && !second.isEmpty(), LongMs);
        whenModal([](QWidget* list) { popUps::press(list, u"Off"_s); });
        clickOn(m_window->rooms().scopes->modeButton(1));
        QTRY_VERIFY_WITH_TIMEOUT(m_unit->has("panel: D1:DSDM:0"), LongMs);
        // After the blocks that are already under way, only the second scope gets blocks.
        const auto onlySecond = [&] {
            first.clear();
            second.clear();
            return QTest::qWaitFor([&] { return second.size() >= 5; }, LongMs) && first.isEmpty();
        };
        QTRY_VERIFY_WITH_TIMEOUT(onlySecond(), LongMs);
    }

    void in_the_diversity_mode_one_rate_and_one_frequency_are_those_of_all()
    {
        say("Slave,1");
        set("Demod 2", "rate", {u"5"_s, u"0"_s, u"0"_s, u"Kbps"_s}, "D1 D2 D3:RATE:500000.000000");
        for (const char* menu : {"Demod 1", "Demod 2", "Demod 3"}) {
            QTRY_COMPARE(MenuBook::findKey(
                             m_window->rooms().menus->book.find(QString::fromUtf8(menu)), u"rate"_s)
                             ->value,
                5e5);
        }
        set("Tuner CH2", "freq", {u"2"_s, u"2"_s, u"5"_s, u"2"_s, u"MHz"_s},
            "R1 R2:FREQ:2252.000000");
        for (int channel = 0; channel < 3; ++channel) {
            QTRY_COMPARE(chart(channel)->centre(), 2252.0);
        }
        showSpectrum();
        for (int channel = 0; channel < 3; ++channel) {
            const double width = carrierWidth(channel);
            QVERIFY2(width > 0.1 && width < 1.5, QByteArray::number(width));
            // All charts see the same transmitter.
            QTRY_VERIFY_WITH_TIMEOUT(
                std::abs(chart(channel)->peak().frequency - 2250.5) < 1.5, LongMs);
        }
    }
};

QN740_TEST_MAIN(tst_UnitReacts)
#include "tst_UnitReacts.moc"
