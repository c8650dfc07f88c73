#include "scopes/StcMagPhasePlot.h"
#include "support/TestMain.h"

#include <QLabel>
#include <QProgressBar>

#include <cmath>
#include <limits>

namespace {

QString sheetOf(const StcMagPhasePlot& plot, int lamp)
{
    return plot.findChild<QLabel*>(QStringLiteral("phaseLabel%1").arg(lamp))->styleSheet();
}

int bar(const StcMagPhasePlot& plot, const char* name)
{
    return plot.findChild<QProgressBar*>(QLatin1String(name))->value();
}

} // namespace

class tst_StcMagPhasePlot : public QObject
{
    Q_OBJECT

private slots:
    void starts_without_a_lit_lamp_and_without_magnitudes()
    {
        const StcMagPhasePlot plot;
        for (int lamp = 0; lamp < 9; ++lamp) {
            QCOMPARE(sheetOf(plot, lamp), QStringLiteral("QLabel{background:black;}"));
        }
        QCOMPARE(bar(plot, "ch0Bar"), 0);
        QCOMPARE(bar(plot, "ch1Bar"), 0);
    }

    void a_phase_difference_lights_its_lamp_alone_data()
    {
        QTest::addColumn<double>("difference");
        QTest::addColumn<int>("lamp");
        QTest::addColumn<QString>("color");
        QTest::newRow("0") << 0.0 << 0 << "green";
        QTest::newRow("1/8") << 0.125 << 1 << "green";
        QTest::newRow("2/8") << 0.25 << 2 << "green";
        QTest::newRow("3/8") << 0.375 << 3 << "yellow";
        QTest::newRow("4/8, misspelt") << 0.5 << 4 << "yelow";
        QTest::newRow("5/8") << 0.625 << 5 << "yellow";
        QTest::newRow("6/8") << 0.75 << 6 << "red";
        QTest::newRow("7/8") << 0.875 << 7 << "red";
        QTest::newRow("8/8") << 1.0 << 8 << "red";
        QTest::newRow("just under a half step") << 0.0624 << 0 << "green";
        QTest::newRow("half a step") << 0.0625 << 1 << "green";
        QTest::newRow("a little below zero is cut to the first") << -0.1 << 0 << "green";
        QTest::newRow("below") << -0.2 << -1 << "";
        QTest::newRow("above") << 1.0626 << -1 << "";
        QTest::newRow("far above") << 1e30 << -1 << "";
        QTest::newRow("not a number") << std::nan("") << -1 << "";
        QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << -1 << "";
    }

    void a_phase_difference_lights_its_lamp_alone()
    {
        QFETCH(double, difference);
        QFETCH(int, lamp);
        QFETCH(QString, color);
        StcMagPhasePlot plot;
        plot.setPhaseDifHold(0.33);
        plot.updateDisplay();
        plot.setPhaseDifHold(difference);
        plot.updateDisplay();
        for (int k = 0; k < 9; ++k) {
            const QString wanted = k == lamp ? color : QStringLiteral("black");
            QCOMPARE(sheetOf(plot, k), QStringLiteral("QLabel{background:%1;}").arg(wanted));
        }
    }

    void the_bars_show_the_magnitudes_once_updated()
    {
        StcMagPhasePlot plot;
        plot.setCh0MagHold(37);
        plot.setCh1MagHold(81);
        QCOMPARE(bar(plot, "ch0Bar"), 0);
        plot.updateDisplay();
        QCOMPARE(bar(plot, "ch0Bar"), 37);
        QCOMPARE(bar(plot, "ch1Bar"), 81);
    }

    void magnitudes_out_of_range_fill_or_empty_the_bar()
    {
        StcMagPhasePlot plot;
        plot.setCh0MagHold(std::numeric_limits<int>::max());
        plot.setCh1MagHold(-5);
        plot.updateDisplay();
        QCOMPARE(bar(plot, "ch0Bar"), 100);
        QCOMPARE(bar(plot, "ch1Bar"), 0);
    }

    void a_lit_lamp_is_visible()
    {
        StcMagPhasePlot plot;
        plot.resize(800, 52);
        plot.setPhaseDifHold(0.0);
        plot.updateDisplay();
        const auto* label = plot.findChild<QLabel*>(QStringLiteral("phaseLabel0"));
        const QImage picture = plot.grab().toImage();
        QCOMPARE(picture.pixelColor(label->geometry().center()), QColor(QStringLiteral("green")));
    }
};

QN740_TEST_MAIN(tst_StcMagPhasePlot)
#include "tst_StcMagPhasePlot.moc"
