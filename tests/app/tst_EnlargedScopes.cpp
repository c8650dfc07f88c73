// These tests touch the scopes in the whole panel: one enlarged, its keys and numbers, and what the
// main unit does meanwhile.
#include "app/ScopesFixture.h"
#include "app/StatusBar.h"
#include "scopes/FigureStrip.h"
#include "scopes/PlotView.h"
#include "sim/scope/SignalModel.h"
#include "spectrum/Clock.h"
#include "support/Contrast.h"
#include "support/TestMain.h"
#include "touch/Sizes.h"
#include "touch/TextButton.h"

#include <QRegularExpression>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

constexpr int Half = 16384;
constexpr int Quarter = 8192;

} // namespace

class tst_EnlargedScopes : public ScopesFixture
{
    Q_OBJECT

private slots:
    void init()
    {
        start();
        clickOnScopes();
    }
    void cleanup() { stop(); }

    void a_touch_on_a_plot_enlarges_its_scope_and_one_on_its_title_goes_back_data()
    {
        QTest::addColumn<int>("demodulator");
        QTest::addColumn<QByteArray>("plot");
        QTest::addColumn<int>("mode"); // as "SM" carries it
        QTest::newRow("Demod 1, eye of I") << 1 << QByteArray("plotI") << 2;
        QTest::newRow("Demod 2, eye of Q") << 2 << QByteArray("plotQ") << 2;
        QTest::newRow("Demod 3, constellation") << 3 << QByteArray("plotI") << 1;
        QTest::newRow("Demod 1, SDI") << 1 << QByteArray("plotI") << 3;
        QTest::newRow("Demod 2, off") << 2 << QByteArray("plotI") << 0;
    }

    void a_touch_on_a_plot_enlarges_its_scope_and_one_on_its_title_goes_back()
    {
        QFETCH(int, demodulator);
        QFETCH(QByteArray, plot);
        QFETCH(int, mode);
        send(u"SM,%1,%2"_s.arg(demodulator).arg(mode).toLatin1());
        processEvents();
        const QMap<QString, QRect> before = places();
        const bool fixed = scope(demodulator).fixedRange();
        clickOn(part<QWidget>(scope(demodulator), plot.constData()));
        processEvents();
        QCOMPARE(page().enlarged(), demodulator);
        QCOMPARE(scope(demodulator).fixedRange(), fixed);
        for (int n = 1; n <= 3; ++n) {
            QCOMPARE(scope(n).isVisible(), n == demodulator);
            QCOMPARE(page().modeButton(n)->isVisible(), n == demodulator);
        }
        QCOMPARE(title()->text(), u"\u25c0  Demod %1"_s.arg(demodulator));
        QVERIFY(m_window->statusBar()->isVisible());
        QVERIFY(scope(demodulator).width() > 600);
        everything_lies_apart_and_large_enough_for_a_finger();
        clickOn(title());
        processEvents();
        QCOMPARE(page().enlarged(), 0);
        QCOMPARE(places(), before);
    }

    void a_touch_on_an_enlarged_plot_changes_nothing()
    {
        enlarge(1);
        clickOn(part<QWidget>(scope(1), "plotI"));
        QCOMPARE(page().enlarged(), 1);
        QVERIFY(!scope(1).fixedRange());
    }

    void the_keys_set_range_and_persistence_and_show_what_is_on_data()
    {
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<QStringList>("others");
        QTest::addColumn<bool>("fixed");
        QTest::addColumn<int>("persistence");
        const QStringList persistences{
            u"shortPersistenceKey"_s, u"longPersistenceKey"_s, u"infinitePersistenceKey"_s};
        QTest::newRow("fixed range")
            << QByteArray("fixedRangeKey") << QStringList{u"fittedRangeKey"_s} << true << 0;
        QTest::newRow("fitted range")
            << QByteArray("fittedRangeKey") << QStringList{u"fixedRangeKey"_s} << false << 0;
        QTest::newRow("short") << QByteArray("shortPersistenceKey") << persistences << false << 0;
        QTest::newRow("long") << QByteArray("longPersistenceKey") << persistences << false << 1;
        QTest::newRow("infinite") << QByteArray("infinitePersistenceKey") << persistences << false
                                  << 2;
    }

    void the_keys_set_range_and_persistence_and_show_what_is_on()
    {
        QFETCH(QByteArray, key);
        QFETCH(QStringList, others);
        enlarge(2);
        press(key);
        QTEST(scope(2).fixedRange(), "fixed");
        QTEST(static_cast<int>(scope(2).persistence()), "persistence");
        QVERIFY(isLit(key));
        others.removeAll(QString::fromLatin1(key));
        for (const QString& other : others) {
            QVERIFY2(!isLit(other.toLatin1()), qPrintable(other));
        }
        press(key); // pressed again it stays on
        QVERIFY(isLit(key));
        // Only this scope has changed.
        QVERIFY(!scope(1).fixedRange());
        QCOMPARE(static_cast<int>(scope(1).persistence()), 0);
    }

    void the_text_of_a_key_can_be_read_whether_or_not_it_is_on()
    {
        enlarge(1);
        press("freezeKey");
        for (const char* key : {"freezeKey", "fittedRangeKey", "fixedRangeKey", "clearKey"}) {
            auto* button = part<TextButton>(*m_window, key);
            const QColor face = button->grab().toImage().pixelColor(8, button->height() / 2);
            QVERIFY2(contrast::ratio(button->palette().color(QPalette::ButtonText), face) >=
                    contrast::Text,
                key);
        }
    }

    void fixed_and_fitted_range_are_told_on_the_glass_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("enlarged");
        QTest::newRow("eyes") << 2 << false;
        QTest::newRow("constellation") << 1 << false;
        QTest::newRow("eyes, enlarged") << 2 << true;
        QTest::newRow("constellation, enlarged") << 1 << true;
    }

    void fixed_and_fitted_range_are_told_on_the_glass()
    {
        QFETCH(int, mode);
        QFETCH(bool, enlarged);
        send(u"SM,1,%1"_s.arg(mode).toLatin1());
        if (enlarged) {
            enlarge(1);
        }
        processEvents();
        auto* plot = part<PlotView>(scope(1), mode == 2 ? "plotQ" : "plotI");
        QCOMPARE(plot->content()->rangeNote(), u"Fitted range"_s);
        const QRect corner(0, plot->height() - 20, 88, 20);
        const QImage fitted = plot->grab().toImage().copy(corner);
        QVERIFY(hasText(fitted));
        scope(1).plotClickSlot();
        QCOMPARE(plot->content()->rangeNote(), u"Fixed range"_s);
        const QImage fixed = plot->grab().toImage().copy(corner);
        QVERIFY(hasText(fixed) && fixed != fitted);
        QCOMPARE(scope(1).readout().contains(u"Fixed range"_s), enlarged);
    }

    void strips_have_no_range_and_no_persistence()
    {
        send("SM,1,3");
        enlarge(1);
        for (const char* key : {"fixedRangeKey", "fittedRangeKey", "shortPersistenceKey",
                 "longPersistenceKey", "infinitePersistenceKey"}) {
            QVERIFY2(!part<QPushButton>(*m_window, key)->isEnabled(), key);
        }
        QVERIFY(part<QPushButton>(*m_window, "freezeKey")->isEnabled());
        send("SM,1,2");
        QVERIFY(part<QPushButton>(*m_window, "fixedRangeKey")->isEnabled());
    }

    void a_frozen_scope_keeps_its_picture_and_goes_on_receiving()
    {
        send("SM,1,1");
        enlarge(1);
        QSignalSpy blocks(&scope(1), &Scope::rcv_eye_msg);
        receive(1, steady(Half, Half), blocks);
        press("freezeKey");
        QVERIFY(scope(1).isFrozen() && isLit("freezeKey"));
        QVERIFY(scope(1).readout().contains(u"FROZEN"_s));
        const QImage held = picture(1);
        receive(1, steady(-Quarter, Quarter), blocks);
        QCOMPARE(blocks.size(), 2);
        QCOMPARE(picture(1), held);
        press("freezeKey");
        QVERIFY(!scope(1).isFrozen() && !isLit("freezeKey"));
        QVERIFY(!scope(1).readout().contains(u"FROZEN"_s));
        QCOMPARE(scope(1).constellation().plotted().constLast(), QPointF(-0.25, 0.25));
        QVERIFY(picture(1) != held);
    }

    void frozen_strips_show_the_newest_records_afterwards()
    {
        send("SM,1,3");
        enlarge(1);
        QSignalSpy records(&scope(1), &Scope::rcv_sdi_msg);
        press("freezeKey");
        const QImage held = picture(1);
        QVERIFY(m_scopeLines[1]->writeUntilRead(QByteArray("\x00\xff"
                                                           "abcde",
            7)));
        QCOMPARE(records.size(), 1);
        QCOMPARE(picture(1), held);
        press("freezeKey");
        QVERIFY(picture(1) != held);
        QTRY_COMPARE(strip().figures().at(4).value, QString::number('e'));
    }

    void the_numbers_of_a_frozen_scope_are_those_of_its_picture()
    {
        send("SM,1,1");
        enlarge(1);
        receiveSignal(1, u"qpsk:snr=20"_s);
        press("freezeKey");
        QVERIFY(!part<QTimer>(scope(1), "measureTimer")->isActive());
        QCOMPARE(strip().figures().constFirst().value, u"QPSK"_s);
        QCOMPARE(scope(1).constellation().idealPoints().size(), 4);
        receiveSignal(1, u"bpsk:snr=20"_s);
        clickOn(title());
        enlarge(1); // frozen as it was left
        QCOMPARE(strip().figures().constFirst().value, u"QPSK"_s);
        QCOMPARE(scope(1).constellation().idealPoints().size(), 4);
        press("freezeKey"); // what was held counts now
        auto* timer = part<QTimer>(scope(1), "measureTimer");
        testClock::expire(timer);
        QCOMPARE(scope(1).constellation().idealPoints().size(), 4); // one failure is none
        receiveSignal(1, u"bpsk:snr=20"_s);
        testClock::expire(timer);
        receiveSignal(1, u"bpsk:snr=20"_s);
        testClock::expire(timer);
        QCOMPARE(strip().figures().constFirst().value, u"BPSK"_s);
    }

    void the_numbers_of_hidden_plots_are_not_shown()
    {
        send("SM,1,1");
        enlarge(1);
        receiveSignal(1, u"qpsk:snr=20"_s);
        testClock::expire(part<QTimer>(scope(1), "measureTimer"));
        QCOMPARE(strip().figures().constFirst().value, u"QPSK"_s);
        send("SQ,1,0");
        QTRY_COMPARE(strip().figures().constFirst().value, u"---"_s);
        send("SQ,1,1");
        QTRY_COMPARE(strip().figures().constFirst().value, u"QPSK"_s);
    }

    void the_names_of_the_numbers_follow_the_plot_type_at_once()
    {
        enlarge(1);
        scope(1).setPlotType(Scope::Sdi);
        QCOMPARE(strip().figures().constFirst().name, u"Byte 1"_s);
        scope(1).togglePlotType();
        QCOMPARE(strip().figures().constFirst().name, u"I opening"_s);
    }

    void frozen_is_written_on_the_small_scope_as_well()
    {
        enlarge(1);
        press("freezeKey");
        clickOn(title());
        QVERIFY(scope(1).isFrozen());
        QCOMPARE(scope(1).readout(), u"FROZEN"_s);
        QVERIFY(part<PlotView>(scope(1), "plotI")->isFrozen());
    }

    void a_frozen_scope_that_loses_its_data_says_so()
    {
        send("SM,1,1");
        enlarge(1);
        QSignalSpy blocks(&scope(1), &Scope::rcv_eye_msg);
        receive(1, steady(32767, 0), blocks);
        press("freezeKey");
        const QImage held = picture(1);
        testClock::expire(part<QTimer>(scope(1), "silence"));
        QVERIFY(scope(1).stale());
        QVERIFY(scope(1).readout().startsWith(u"NO DATA\nFROZEN"_s));
        QVERIFY(picture(1) != held);
        receive(1, steady(Quarter, 0), blocks);
        QVERIFY(!scope(1).stale());
        QVERIFY(scope(1).readout().startsWith(u"CLIP\nFROZEN"_s)); // of the picture that is held
        QCOMPARE(picture(1), held);
    }

    void another_mode_ends_frozen_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::newRow("SDI") << QByteArray("SM,1,3");
        QTest::newRow("constellation") << QByteArray("SM,1,1");
        QTest::newRow("off") << QByteArray("SM,1,0");
    }

    void another_mode_ends_frozen()
    {
        QFETCH(QByteArray, message);
        send("SM,1,2");
        enlarge(1);
        press("freezeKey");
        send("SM,1,2"); // the same one does not
        QVERIFY(scope(1).isFrozen());
        send(message);
        QVERIFY(!scope(1).isFrozen() && !isLit("freezeKey"));
        QVERIFY(!scope(1).readout().contains(u"FROZEN"_s));
    }

    void clear_empties_the_plots()
    {
        enlarge(1);
        QSignalSpy blocks(&scope(1), &Scope::rcv_eye_msg);
        press("fixedRangeKey");
        const QImage empty = picture(1);
        receive(1, steady(Half, Half), blocks);
        QVERIFY(picture(1) != empty);
        press("clearKey");
        QCOMPARE(picture(1), empty);
    }

    void what_was_hit_once_stays_as_long_as_the_persistence_has_it_data()
    {
        QTest::addColumn<QByteArray>("key");
        QTest::addColumn<int>("blocks");
        QTest::addColumn<bool>("stays");
        QTest::newRow("short") << QByteArray("shortPersistenceKey") << 50 << false;
        QTest::newRow("long") << QByteArray("longPersistenceKey") << 50 << true;
        QTest::newRow("long, after a minute") << QByteArray("longPersistenceKey") << 450 << false;
        QTest::newRow("infinite") << QByteArray("infinitePersistenceKey") << 450 << true;
    }

    void what_was_hit_once_stays_as_long_as_the_persistence_has_it()
    {
        QFETCH(QByteArray, key);
        QFETCH(int, blocks);
        QFETCH(bool, stays);
        send("SM,1,1");
        enlarge(1);
        press("fixedRangeKey");
        press(key);
        auto* plot = part<PlotView>(scope(1), "plotI");
        QVector<double> half(256, 0.5);
        QVector<double> quarter(256, -0.25);
        scope(1).plotEyeConsData(half, half);
        plot->grab();
        const QRect area = plot->dataArea();
        const QPoint place(area.left() + qRound((area.width() - 1) * 0.75) + 1,
            area.top() + qRound((area.height() - 1) * 0.25) + 1); // beside the lines of the grid
        const auto red = [&] { return plot->grab().toImage().pixelColor(place).red(); };
        QVERIFY(red() > 150);
        for (int k = 0; k < blocks; ++k) {
            scope(1).plotEyeConsData(quarter, quarter);
            if (k % 4 == 3) {
                plot->render(&m_canvas, QPoint(), QRegion(area));
            }
        }
        QCOMPARE(red() > 50, stays);
    }

    void infinite_persistence_keeps_what_a_smaller_range_would_lose()
    {
        send("SM,1,1");
        enlarge(1);
        press("infinitePersistenceKey");
        QVector<double> spike(256, 0.9);
        QVector<double> small(256, 0.05);
        scope(1).plotEyeConsData(spike, spike);
        const QImage before = picture(1);
        for (int k = 0; k < 2 * RangeKeeper::ShrinkAfter; ++k) {
            scope(1).plotEyeConsData(small, small);
        }
        auto* plot = part<PlotView>(scope(1), "plotI");
        QCOMPARE(plot->content()->axes().xMax, 100.0);
        const QRect corner =
            QRect(QPoint(), plot->dataArea().size() / 8)
                .translated(plot->dataArea().right() - plot->dataArea().width() / 8,
                    plot->dataArea().top());
        QCOMPARE(picture(1).copy(corner), before.copy(corner));
        press("clearKey");
        scope(1).plotEyeConsData(small, small);
        QCOMPARE(plot->content()->axes().xMax, 6.0);
    }

    void the_other_scopes_go_on_receiving_and_are_not_painted()
    {
        for (int n = 1; n <= 3; ++n) {
            send(u"SM,%1,2"_s.arg(n).toLatin1());
        }
        enlarge(1);
        processEvents();
        QMap<int, int> painted;
        for (const int n : {2, 3}) {
            painted[n] = part<PlotView>(scope(n), "plotI")->paintCount();
            QSignalSpy blocks(&scope(n), &Scope::rcv_eye_msg);
            for (int k = 0; k < 5; ++k) {
                receive(n, steady(Half, Half), blocks);
            }
            QCOMPARE(blocks.size(), 5);
            QVERIFY(!part<QTimer>(scope(n), "measureTimer")->isActive());
            QVERIFY(!part<QTimer>(scope(n), "paintTimer")->isActive());
            QCOMPARE(part<PlotView>(scope(n), "plotI")->paintCount(), painted[n]);
        }
        QSignalSpy blocks(&scope(1), &Scope::rcv_eye_msg);
        const int before = part<PlotView>(scope(1), "plotI")->paintCount();
        receive(1, steady(Half, Half), blocks);
        QTRY_VERIFY(part<PlotView>(scope(1), "plotI")->paintCount() > before);
        clickOn(title());
        QTRY_VERIFY(part<PlotView>(scope(2), "plotI")->paintCount() > painted[2]);
        QCOMPARE(scope(2).readout(), QString());
    }

    void a_hidden_scope_measures_nothing()
    {
        send("SM,1,2");
        enlarge(1);
        clickOn(part<QPushButton>(*m_window, "scopesButton")); // the menus
        QSignalSpy blocks(&scope(1), &Scope::rcv_eye_msg);
        QSignalSpy figures(&scope(1), &Scope::figuresChanged);
        receive(1, steady(Half, Half), blocks);
        auto* timer = part<QTimer>(scope(1), "measureTimer");
        timer->stop(); // one that had been started before
        receive(1, steady(Half, Half), blocks);
        QVERIFY(!timer->isActive());
        QCOMPARE(page().enlarged(), 1);
        clickOnScopes(); // and back: as it was left
        QVERIFY(scope(1).isEnlarged() && scope(1).isVisible());
        QVERIFY(timer->isActive());
    }

    void the_numbers_follow_at_most_twice_a_second()
    {
        QCOMPARE(Scope::FiguresMs, 500);
        send("SM,1,3");
        enlarge(1);
        QCOMPARE(strip().figures().constFirst(), (ScopeFigure{u"Byte 1"_s, u"---"_s}));
        QSignalSpy records(&scope(1), &Scope::rcv_sdi_msg);
        auto* timer = part<QTimer>(scope(1), "measureTimer");
        QVERIFY(m_scopeLines[1]->writeUntilRead(QByteArray("\x00\xff"
                                                           "abcde",
            7)));
        QTRY_COMPARE(records.size(), 1);
        QVERIFY(timer->isActive());
        QCOMPARE(timer->interval(), 500);
        QCOMPARE(strip().figures().constFirst().value, u"---"_s); // not yet
        testClock::expire(timer);
        QCOMPARE(strip().figures().constFirst().value, u"97"_s);
        QVERIFY(!timer->isActive()); // nothing has come since
        QVERIFY(scope(1).readout().contains(u"Byte 1 97"_s));
        testClock::expire(part<QTimer>(scope(1), "silence"));
        QCOMPARE(strip().figures().constFirst().value, u"---"_s); // that was long ago
    }

    void the_numbers_of_an_eye_follow_at_most_once_a_second()
    {
        QCOMPARE(Scope::EyeFiguresMs, 1000);
        send("SM,1,2");
        enlarge(1);
        QSignalSpy blocks(&scope(1), &Scope::rcv_eye_msg);
        receive(1, steady(Half, Half), blocks);
        auto* timer = part<QTimer>(scope(1), "measureTimer");
        QVERIFY(timer->isActive());
        QCOMPARE(timer->interval(), 1000);
        send("SM,1,1");
        receive(1, steady(Half, Half), blocks);
        testClock::expire(timer); // the one that was under way
        receive(1, steady(Half, Half), blocks);
        QVERIFY(timer->isActive());
        QCOMPARE(timer->interval(), 500);
    }

    void the_numbers_of_a_real_signal_stand_below_it_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("signal");
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("value"); // as a regular expression
        QTest::newRow("BPSK") << 1 << u"bpsk:snr=20"_s << 0 << u"BPSK"_s;
        QTest::newRow("QPSK") << 1 << u"qpsk:snr=20"_s << 0 << u"QPSK"_s;
        QTest::newRow("8PSK") << 1 << u"8psk:snr=25"_s << 0 << u"8PSK"_s;
        QTest::newRow("16QAM") << 1 << u"16qam:snr=25"_s << 0 << u"16QAM"_s;
        QTest::newRow("noise") << 1 << u"qpsk:snr=0"_s << 0 << u"unknown"_s;
        QTest::newRow("EVM") << 1 << u"qpsk:snr=20"_s << 1 << u"(9\\.[5-9]|10\\.[0-5]) %"_s;
        QTest::newRow("MER") << 1 << u"qpsk:snr=20"_s << 2 << u"(19\\.[5-9]|20\\.[0-5]) dB"_s;
        QTest::newRow("imbalance")
            << 1 << u"16qam:snr=30:imbalance=1"_s << 4 << u"(0\\.9\\d|1\\.0\\d|1\\.10) dB"_s;
        QTest::newRow("quadrature")
            << 1 << u"16qam:snr=30:skew=4"_s << 5 << u"(3\\.[5-9]|4\\.[0-5])°"_s;
        QTest::newRow("samples per symbol") << 2 << u"qpsk:snr=20"_s << 4 << u"4\\.00"_s;
        QTest::newRow("fractional samples per symbol")
            << 2 << u"qpsk:snr=20:sps=5.5"_s << 4 << u"5\\.[45]\\d"_s;
        QTest::newRow("no samples per symbol") << 2 << u"qpsk:snr=-12"_s << 4 << u"---"_s;
    }

    void the_numbers_of_a_real_signal_stand_below_it()
    {
        QFETCH(int, mode);
        QFETCH(QString, signal);
        QFETCH(int, number);
        QFETCH(QString, value);
        send(u"SM,1,%1"_s.arg(mode).toLatin1());
        enlarge(1);
        receiveSignal(mode, signal);
        testClock::expire(part<QTimer>(scope(1), "measureTimer"));
        const QString shown = strip().figures().at(number).value;
        const QRegularExpression expected(QRegularExpression::anchoredPattern(value));
        QVERIFY2(expected.match(shown).hasMatch(), qPrintable(shown));
        QVERIFY(scope(1).readout().contains(strip().figures().at(number).name + ' '_L1 + shown));
        QCOMPARE(scope(1).readout().contains(u"4 samples per symbol assumed"_s),
            mode == 2 && value == u"---"_s);
    }

    void the_small_eye_is_folded_at_the_samples_per_symbol_as_well()
    {
        send("SM,1,2");
        receiveSignal(2, u"qpsk:snr=20:sps=5.5"_s);
        auto* timer = part<QTimer>(scope(1), "measureTimer");
        QCOMPARE(timer->interval(), 4000);
        const auto& eye =
            dynamic_cast<const EyePlot&>(*part<PlotView>(scope(1), "plotI")->content());
        QCOMPARE(eye.samplesPerSymbol(), 4.0);
        testClock::expire(timer);
        QVERIFY2(qAbs(eye.samplesPerSymbol() - 5.5) < 0.055,
            qPrintable(QString::number(eye.samplesPerSymbol())));
        QVERIFY(!eye.instant()); // that is for an enlarged one
        QCOMPARE(scope(1).readout(), QString());
    }

    void ideal_points_are_marked_while_the_order_is_certain()
    {
        send("SM,1,1");
        enlarge(1);
        auto* timer = part<QTimer>(scope(1), "measureTimer");
        receiveSignal(1, u"16qam:snr=25"_s);
        testClock::expire(timer);
        QCOMPARE(scope(1).constellation().idealPoints().size(), 16);
        press("clearKey");
        QCOMPARE(scope(1).constellation().idealPoints().size(), 0);
        QCOMPARE(strip().figures().constFirst().value, u"---"_s);
        receiveSignal(1, u"qpsk:snr=20"_s);
        testClock::expire(timer);
        QCOMPARE(scope(1).constellation().idealPoints().size(), 4);
        clickOn(title());
        QCOMPARE(scope(1).constellation().idealPoints().size(), 0);
    }

    void hidden_plots_and_off_work_while_enlarged()
    {
        send("SM,1,2");
        enlarge(1);
        send("SQ,1,0");
        QVERIFY(!part<QWidget>(scope(1), "plotI")->isVisible());
        QCOMPARE(scope(1).readout(), u"Hidden by the main unit"_s);
        QSignalSpy records(&scope(1), &Scope::rcv_eye_msg);
        receive(1, steady(Half, Half), records);
        QVERIFY(!part<QTimer>(scope(1), "measureTimer")->isActive()); // for nobody
        send("SQ,1,1");
        QVERIFY(part<QTimer>(scope(1), "measureTimer")->isActive());
        QVERIFY(part<QWidget>(scope(1), "plotI")->isVisible());
        testClock::expire(part<QTimer>(scope(1), "silence"));
        QVERIFY(scope(1).readout().startsWith(u"NO DATA"_s));
        send("SM,1,0");
        QCOMPARE(page().modeButton(1)->text(), u"Demod 1 Off"_s);
        QVERIFY(!scope(1).readout().contains(u"NO DATA"_s));
        QCOMPARE(page().enlarged(), 1);
        send("CLEAR");
        QCOMPARE(page().enlarged(), 1);
        QVERIFY(scope(1).isVisible());
    }

    void the_mode_button_of_an_enlarged_scope_opens_its_list()
    {
        enlarge(2);
        bool opened = false;
        whenModal(
            [&](QWidget* list) {
                opened = true;
                clickOn(buttonWithText(list, u"Constellation"_s));
            },
            [] {});
        clickOn(page().modeButton(2));
        QVERIFY(opened);
        QCOMPARE(page().modeButton(2)->text(), u"Demod 2 Constellation"_s);
        QCOMPARE(scope(2).plotType(), static_cast<int>(Scope::Constellation));
        QTRY_VERIFY(m_pty->received().contains(framed("D2:DSDM:1")));
        QCOMPARE(page().enlarged(), 2);
    }

    void a_scope_that_is_lent_is_not_enlarged_and_changes_its_range_at_a_touch()
    {
        send("AK,Tuner CH1,1,One,0,,0,,0,0,0,1");
        send("MS,Pax,Tuner CH1,1");
        enlarge(3);
        press("freezeKey");
        send("PAX,1");
        QCOMPARE(page().enlarged(), 0);
        QVERIFY(!scope(3).isEnlarged() && !scope(3).isFrozen());
        QTRY_VERIFY(scope(3).isVisible());
        clickOn(part<QWidget>(scope(3), "plotI"));
        QVERIFY(scope(3).fixedRange());
        page().enlarge(3);
        QCOMPARE(page().enlarged(), 0);
        send("PAX,0");
        clickOnScopes();
        QTRY_VERIFY(scope(3).isVisible() && scope(1).isVisible());
        enlarge(3);
        QVERIFY(scope(3).fixedRange());
    }

    void another_scope_stays_enlarged_while_the_combiners_is_lent()
    {
        send("AK,Tuner CH1,1,One,0,,0,,0,0,0,1");
        send("MS,Pax,Tuner CH1,1");
        enlarge(1);
        send("PAX,1");
        QTRY_VERIFY(scope(3).isVisible());
        QCOMPARE(page().enlarged(), 1);
        send("PAX,0");
        clickOnScopes();
        QVERIFY(scope(1).isVisible() && !scope(3).isVisible());
        clickOn(title());
        processEvents();
        QVERIFY(scope(3).isVisible());
    }

private:
    QImage m_canvas{4, 4, QImage::Format_RGB32}; // what is painted there nobody sees

    ScopesPage& page() { return *m_window->rooms().scopes; }
    Scope& scope(int demodulator) { return *page().scope(demodulator); }
    QPushButton* title() { return part<QPushButton>(*m_window, "scopeTitle"); }
    FigureStrip& strip() { return *part<FigureStrip>(*m_window, "scopeFigures"); }
    static void processEvents() { QCoreApplication::processEvents(); }

    void enlarge(int demodulator)
    {
        clickOn(part<QWidget>(scope(demodulator), "plotI"));
        processEvents();
        QCOMPARE(page().enlarged(), demodulator);
    }

    void press(const QByteArray& key)
    {
        clickOn(part<QPushButton>(*m_window, key.constData()));
        processEvents();
    }

    bool isLit(const QByteArray& key)
    {
        return part<TextButton>(*m_window, key.constData())->marks().lamp == keyMarks::Lamp::On;
    }

    void receive(int demodulator, const QByteArray& block, QSignalSpy& blocks)
    {
        const auto before = blocks.size();
        QVERIFY(m_scopeLines[demodulator]->write(block));
        QTRY_COMPARE(blocks.size(), before + 1);
    }

    // Sixteen blocks, all that is measured, from the line of Demod 1.
    void receiveSignal(int mode, const QString& signal)
    {
        QString fault;
        SignalModel model(SignalSettings::fromText(signal, fault), 5);
        QCOMPARE(fault, QString());
        QSignalSpy blocks(&scope(1), &Scope::rcv_eye_msg);
        for (int k = 0; k < 16; ++k) {
            QVector<int> i;
            QVector<int> q;
            model.append(256, mode == 2 ? 4 : 1, i, q);
            receive(1, streams::block(i, q), blocks);
        }
    }

    QImage picture(int demodulator)
    {
        return part<PlotView>(scope(demodulator), "plotI")->grab().toImage();
    }

    static bool hasText(const QImage& picture)
    {
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.pixelColor(x, y).red() > 200) {
                    return true;
                }
            }
        }
        return false;
    }

    // All visible parts of the page with a name, where they are in the window.
    QMap<QString, QRect> places()
    {
        QMap<QString, QRect> found;
        for (QWidget* widget : page().findChildren<QWidget*>()) {
            if (widget->isVisible() && !widget->objectName().isEmpty()) {
                found[widget->objectName() + widget->parentWidget()->objectName()] =
                    QRect(widget->mapTo(m_window.get(), QPoint()), widget->size());
            }
        }
        return found;
    }

    void everything_lies_apart_and_large_enough_for_a_finger()
    {
        const QRect screen(0, 0, 800, 430);
        QVector<QRect> parts{QRect(strip().mapTo(m_window.get(), QPoint()), strip().size())};
        for (auto* key : page().findChildren<QPushButton*>()) {
            if (key->isVisible()) {
                QVERIFY2(key->height() >= touch::MinTarget && key->width() >= touch::MinTarget,
                    qPrintable(key->objectName()));
                parts += QRect(key->mapTo(m_window.get(), QPoint()), key->size());
            }
        }
        QCOMPARE(parts.size(), 10); // title, mode and seven keys
        Scope& shown = scope(page().enlarged());
        parts += QRect(shown.mapTo(m_window.get(), QPoint()), shown.size());
        for (qsizetype a = 0; a < parts.size(); ++a) {
            QVERIFY(screen.contains(parts.at(a)));
            for (qsizetype b = 0; b < a; ++b) {
                QVERIFY(!parts.at(a).intersects(parts.at(b)));
            }
        }
    }
};

QN740_TEST_MAIN(tst_EnlargedScopes)
#include "tst_EnlargedScopes.moc"
