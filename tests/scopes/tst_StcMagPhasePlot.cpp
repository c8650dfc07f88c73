#include "scopes/StcMagPhasePlot.h"
#include "support/Contrast.h"
#include "support/TestMain.h"

#include <QLabel>
#include <QProgressBar>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

QString sheetOf(const StcMagPhasePlot& plot, int lamp)
{
    return plot.findChild<QLabel*>(QStringLiteral("phaseLabel%1").arg(lamp))->styleSheet();
}

int bar(const StcMagPhasePlot& plot, const char* name)
{
    return plot.findChild<QProgressBar*>(QLatin1String(name))->value();
}

// The contrast of the lightest colour, the letters, to the most frequent one behind them. An
// outline does not count.
double contrastIn(const QImage& picture)
{
    const QImage inside = picture.copy(picture.rect().adjusted(2, 2, -2, -2));
    QHash<QRgb, int> frequency;
    QColor letters = Qt::black;
    for (int y = 0; y < inside.height(); ++y) {
        for (int x = 0; x < inside.width(); ++x) {
            const QColor color = inside.pixelColor(x, y);
            ++frequency[color.rgb()];
            if (contrast::luminance(color) > contrast::luminance(letters)) {
                letters = color;
            }
        }
    }
    const auto most = std::max_element(frequency.cbegin(), frequency.cend());
    return contrast::ratio(letters, QColor::fromRgb(most.key()));
}

} // namespace

class tst_StcMagPhasePlot : public QObject
{
    Q_OBJECT

private slots:
    void dimmed_it_keeps_what_it_was_told_last_and_can_still_be_read()
    {
        StcMagPhasePlot plot;
        plot.resize(800, 52);
        plot.setPhaseDifHold(0.25);
        plot.setCh0MagHold(70);
        plot.setCh1MagHold(40);
        plot.updateDisplay();
        const QImage before = plot.grab().toImage();
        const QString sheet = sheetOf(plot, 2);
        plot.setDimmed(true);
        QVERIFY(plot.isDimmed());
        const QImage dimmed = plot.grab().toImage();
        QCOMPARE(bar(plot, "ch0Bar"), 70);
        QCOMPARE(bar(plot, "ch1Bar"), 40);
        QCOMPARE(sheetOf(plot, 2), sheet);
        for (const char* name : {"ch0Bar", "ch1Bar", "phaseLabel2"}) {
            const QRect area = plot.findChild<QWidget*>(QLatin1String(name))->geometry();
            const QPoint inside(area.left() + 6, area.center().y());
            const int lightness = dimmed.pixelColor(inside).lightness();
            QVERIFY2(lightness > 0 && lightness < before.pixelColor(inside).lightness(), name);
        }
        for (QWidget* text : plot.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
            const bool caption = qobject_cast<QLabel*>(text) != nullptr &&
                !qobject_cast<QLabel*>(text)->text().isEmpty();
            if (caption || qobject_cast<QProgressBar*>(text) != nullptr) {
                QVERIFY2(contrastIn(dimmed.copy(text->geometry())) >= contrast::Text,
                    qPrintable(QString::number(contrastIn(dimmed.copy(text->geometry())))));
            }
        }
        plot.setDimmed(false);
        QCOMPARE(plot.grab().toImage(), before);
    }

    void what_it_is_told_while_dimmed_is_shown_dimmed()
    {
        StcMagPhasePlot plot;
        plot.resize(800, 52);
        plot.setDimmed(true);
        plot.setCh0MagHold(100);
        plot.updateDisplay();
        const QImage full = plot.grab().toImage();
        const QRect area = plot.findChild<QWidget*>(u"ch0Bar"_s)->geometry();
        QVERIFY(full.pixelColor(area.right() - 6, area.center().y()).lightness() > 0);
        QVERIFY(full.pixelColor(area.right() - 6, area.center().y()).lightness() < 60);
        plot.resize(700, 52);
        plot.grab(); // A widget that is not shown is resized when it is painted.
        QCOMPARE(plot.findChild<QWidget*>(u"veil"_s)->size(), plot.size());
    }

    void the_sheet_of_a_window_around_does_not_cover_it()
    {
        QWidget window;
        window.setStyleSheet(u".QWidget{background-color: black;}"_s);
        StcMagPhasePlot plot(&window);
        plot.resize(800, 52);
        plot.setPhaseDifHold(0.625);
        plot.updateDisplay();
        plot.setDimmed(true);
        const QImage dimmed = window.grab(plot.geometry()).toImage();
        const QPoint lamp = plot.findChild<QLabel*>(u"phaseLabel5"_s)->geometry().center();
        QVERIFY(dimmed.pixelColor(lamp).lightness() > 0);
    }

    void a_display_is_not_dimmed_at_first()
    {
        const StcMagPhasePlot plot;
        QVERIFY(!plot.isDimmed());
    }

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
