// Signals of the simulator on the screen: the plotted points are measured, and every modulation is
// drawn.
#include "scopes/PlotView.h"
#include "scopes/Scope.h"
#include "scopes/ScopesPage.h"
#include "scopes/StcMagPhasePlot.h"
#include "sim/scope/ScopeBytes.h"
#include "sim/scope/ScopeFaults.h"
#include "sim/scope/SignalModel.h"
#include "support/Pty.h"
#include "support/TestMain.h"

#include <QSignalSpy>

#include <cmath>

namespace {

constexpr int BlocksShown = 20;

SignalSettings settingsOf(const QString& text)
{
    QString fault;
    const SignalSettings settings = SignalSettings::fromText(text, fault);
    if (!fault.isEmpty()) {
        qFatal("%s", qPrintable(fault));
    }
    return settings;
}

QByteArray blocksOf(SignalModel& model, int count, int samplesPerSymbol)
{
    QByteArray bytes;
    for (int block = 0; block < count; ++block) {
        QVector<int> i;
        QVector<int> q;
        model.append(256, samplesPerSymbol, i, q);
        bytes += scopeBytes::block(i, q);
    }
    return bytes;
}

// How many pixels of the data area carry the line colour.
int litPixels(PlotView& view)
{
    const QImage picture = view.grab().toImage();
    const QRect area = view.dataArea();
    int lit = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            const QColor color = picture.pixelColor(x, y);
            lit += color.green() > color.red() + 40 ? 1 : 0;
        }
    }
    return lit;
}

void show(Scope& scope, const QString& signal, int plotType, int blocks = BlocksShown)
{
    SignalModel model(settingsOf(signal), 11);
    scope.setPlotType(plotType);
    for (int block = 0; block < blocks; ++block) {
        QVector<int> i;
        QVector<int> q;
        model.append(256, plotType == Scope::EyePattern ? 4 : 1, i, q);
        QVector<double> scaledI;
        QVector<double> scaledQ;
        for (int k = 0; k < 256; ++k) {
            scaledI.append(i.at(k) / 32768.0);
            scaledQ.append(q.at(k) / 32768.0);
        }
        scope.plotEyeConsData(scaledI, scaledQ);
        scope.grab(); // as the timer would have it painted
    }
}

} // namespace

class tst_ScopeSignal : public QObject
{
    Q_OBJECT

private slots:
    // Bytes of a 20 dB QPSK on the port; what is plotted is turned back into decibels.
    void the_plotted_points_of_a_20_db_qpsk_have_20_db()
    {
        DeviceDirectory devices;
        Pty& line = devices.add(QStringLiteral("ttyUSB1"));
        Scope scope(QStringLiteral("ttyUSB1"), 1, nullptr);
        scope.setPlotType(Scope::Constellation);
        QSignalSpy blocks(&scope, &Scope::rcv_eye_msg);
        SignalModel model(settingsOf(QStringLiteral("qpsk:snr=20:level=0.6")), 2024);
        double error = 0.0;
        double power = 0.0;
        for (int block = 1; block <= 20; ++block) {
            QVERIFY(line.write(blocksOf(model, 1, 1)));
            QTRY_COMPARE(blocks.size(), block);
            const QVector<QPointF> points = scope.constellation().plotted();
            QCOMPARE(points.size(), 255);
            // The level is measured, too, by the mean magnitude along each axis.
            double level = 0.0;
            for (const QPointF& point : points) {
                level += (std::abs(point.x()) + std::abs(point.y())) / (2.0 * 255.0);
            }
            for (const QPointF& point : points) {
                const double i = std::abs(point.x()) - level;
                const double q = std::abs(point.y()) - level;
                error += i * i + q * q;
                power += 2.0 * level * level;
            }
        }
        const double decibels = -10.0 * std::log10(error / power);
        QVERIFY2(std::abs(decibels - 20.0) < 1.0, qPrintable(QString::number(decibels)));
        qInfo("error vector of the plotted points: %.2f dB", decibels);
    }

    // The same by the pixels: how far the dots on the screen spread.
    void the_dots_on_the_screen_are_where_the_signal_is()
    {
        DeviceDirectory devices;
        Scope scope(QStringLiteral("ttyUSB1"), 1, nullptr);
        scope.setLineColor(1);
        scope.resize(420, 420);
        scope.plotClickSlot(); // fixed range
        scope.show();
        show(scope, QStringLiteral("qpsk:snr=20:level=0.6"), Scope::Constellation);
        const DensityImage& image = scope.constellation().image();
        const int size = image.size().width();
        const double limit = 1.0;
        double error = 0.0;
        double weight = 0.0;
        const double level = 0.6 / std::sqrt(2.0);
        for (int y = 0; y < size; ++y) {
            for (int x = 0; x < size; ++x) {
                const double i = (2.0 * x / (size - 1) - 1.0) * limit;
                const double q = (1.0 - 2.0 * y / (size - 1)) * limit;
                const double density = image.density(x, y);
                error +=
                    density * (std::pow(std::abs(i) - level, 2) + std::pow(std::abs(q) - level, 2));
                weight += density * 2.0 * level * level;
            }
        }
        // Overlapping dots count once they are fully bright, so the cloud looks wider than it is.
        const double decibels = -10.0 * std::log10(error / weight);
        QVERIFY2(decibels > 15.0 && decibels < 20.5, qPrintable(QString::number(decibels)));
    }

    void every_modulation_is_drawn_data()
    {
        QTest::addColumn<QString>("signal");
        QTest::addColumn<int>("plotType");
        const auto add = [](const char* name, const char* signal) {
            QTest::addRow("%s eye", name) << QString::fromLatin1(signal) << 1;
            QTest::addRow("%s constellation", name) << QString::fromLatin1(signal) << 2;
        };
        add("bpsk", "bpsk:snr=20");
        add("qpsk", "qpsk:snr=20");
        add("oqpsk", "oqpsk:snr=20");
        add("8psk", "8psk:snr=20");
        add("16qam", "16qam:snr=20");
        add("qpsk 8 dB", "qpsk:snr=8");
        add("qpsk offset", "qpsk:snr=20:offset=0.0003");
        add("16qam clipped", "16qam:snr=30:level=0.7:clip=0.6");
        add("16qam overdriven", "16qam:snr=30:level=1");
        add("qpsk phase noise", "qpsk:snr=30:phase=6");
        add("16qam imbalance", "16qam:snr=30:imbalance=3:skew=8");
    }

    void every_modulation_is_drawn()
    {
        QFETCH(QString, signal);
        QFETCH(int, plotType);
        DeviceDirectory devices;
        Scope scope(QStringLiteral("ttyUSB1"), 1, nullptr);
        scope.setLineColor(1);
        scope.resize(264, 316);
        scope.show();
        show(scope, signal, plotType);
        auto* view = scope.findChild<PlotView*>(QStringLiteral("plotI"));
        const int lit = litPixels(*view);
        const int pixels = view->dataArea().width() * view->dataArea().height();
        QVERIFY2(lit > 100 && lit < pixels * 9 / 10, qPrintable(QString::number(lit)));
    }

    void the_eye_is_open_at_the_decisions_and_closed_by_noise()
    {
        const auto opening = [](const QString& signal) {
            DeviceDirectory devices;
            Scope scope(QStringLiteral("ttyUSB1"), 1, nullptr);
            scope.setLineColor(1);
            scope.resize(264, 316);
            scope.show();
            show(scope, signal, Scope::EyePattern);
            auto* view = scope.findChild<PlotView*>(QStringLiteral("plotI"));
            const QImage picture = view->grab().toImage();
            const QRect area = view->dataArea();
            int empty = 0;
            for (int y = area.top(); y <= area.bottom(); ++y) {
                const QColor color = picture.pixelColor(area.center().x() - 2, y);
                const bool between = std::abs(y - area.center().y()) < area.height() / 5;
                empty += between && color.green() < color.red() + 40 ? 1 : 0;
            }
            return static_cast<double>(empty) / area.height();
        };
        QVERIFY(opening(QStringLiteral("bpsk:snr=30")) > 0.3);
        QVERIFY(opening(QStringLiteral("bpsk:snr=3")) < 0.1);
    }

    void the_page_shows_three_scopes_at_once()
    {
        DeviceDirectory devices;
        ScopesPage page;
        page.setStyleSheet(QStringLiteral(".QWidget{background-color: black;}"));
        page.setFixedSize(800, 428);
        page.show();
        page.setMode(1, *ScopeMode::ofMessage(2));
        page.setMode(2, *ScopeMode::ofMessage(1));
        page.setMode(3, *ScopeMode::ofMessage(3));
        show(*page.scope(1), QStringLiteral("qpsk:snr=20"), Scope::EyePattern);
        show(*page.scope(2), QStringLiteral("16qam:snr=25"), Scope::Constellation);
        for (quint32 number = 0; number < 90; ++number) {
            QByteArray record = scopeBytes::sdiRecord(number).mid(2);
            page.scope(3)->plotSdiData(record);
        }
        page.magPhasePlot()->setPhaseDifHold(0.4);
        page.magPhasePlot()->setCh0MagHold(72);
        page.magPhasePlot()->setCh1MagHold(55);
        page.magPhasePlot()->updateDisplay();
        page.grab();
        for (int n = 1; n <= 3; ++n) {
            QVERIFY(page.scope(n)->findChild<PlotView*>(QStringLiteral("plotI"))->paintCount() > 0);
        }
    }

    // Signals whose noise peaks differ from block to block, at levels that lie between two ranges.
    void the_range_of_a_steady_signal_does_not_jump_data()
    {
        QTest::addColumn<QString>("signal");
        for (const char* signal : {"qpsk:snr=14:level=0.25", "qpsk:snr=8:level=0.5",
                 "oqpsk:snr=8:level=0.2", "16qam:snr=20:level=0.35", "bpsk:snr=14:level=0.3"}) {
            QTest::newRow(signal) << QString::fromLatin1(signal);
        }
    }

    void the_range_of_a_steady_signal_does_not_jump()
    {
        QFETCH(QString, signal);
        constexpr int BlocksUntilFitted = 2 * RangeKeeper::ShrinkAfter;
        constexpr int Blocks = BlocksUntilFitted + 200;
        SignalModel model(settingsOf(signal), 7);
        RangeKeeper range;
        int changes = 0;
        for (int block = 0; block < Blocks; ++block) {
            QVector<int> i;
            QVector<int> q;
            model.append(256, 4, i, q);
            int peak = 0;
            for (const int sample : i + q) {
                peak = std::max(peak, std::abs(sample));
            }
            const double before = range.limit();
            range.addPeak(peak / 32768.0);
            changes += block >= BlocksUntilFitted && range.limit() != before ? 1 : 0;
        }
        QVERIFY2(changes <= 1, qPrintable(QString::number(changes)));
    }

    void the_picture_is_the_same_with_faults_on_the_line()
    {
        DeviceDirectory devices;
        Pty& line = devices.add(QStringLiteral("ttyUSB1"));
        Scope scope(QStringLiteral("ttyUSB1"), 1, nullptr);
        scope.setPlotType(Scope::Constellation);
        scope.setLineColor(1);
        scope.resize(264, 316);
        scope.show();
        QVERIFY(QTest::qWaitForWindowExposed(&scope));
        QSignalSpy blocks(&scope, &Scope::rcv_eye_msg);
        SignalModel model(settingsOf(QStringLiteral("qpsk:snr=25")), 9);
        FaultTable rates(ScopeFaults::names());
        QCOMPARE(rates.set(QStringLiteral("scope-index=0.25,scope-loss=0.15,scope-noise=0.1")),
            QString());
        ScopeFaults faults(rates, 9);
        QByteArray bytes;
        for (int block = 0; block < 100; ++block) {
            bytes += faults.pass(blocksOf(model, 1, 1), 0);
        }
        QVERIFY(line.write(bytes.mid(700)));
        QTRY_VERIFY(blocks.size() >= 40);
        QTRY_VERIFY(scope.findChild<PlotView*>(QStringLiteral("plotI"))->paintCount() > 0);
        const QVector<QPointF> points = scope.constellation().plotted();
        const double level = 0.5 / std::sqrt(2.0);
        int near = 0;
        for (const QPointF& point : points) {
            near += std::abs(std::abs(point.x()) - level) < 0.1 &&
                    std::abs(std::abs(point.y()) - level) < 0.1
                ? 1
                : 0;
        }
        QVERIFY(near > 240);
    }
};

QN740_TEST_MAIN(tst_ScopeSignal)
#include "tst_ScopeSignal.moc"
