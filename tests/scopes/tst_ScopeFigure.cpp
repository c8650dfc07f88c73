#include "scopes/ConstellationMeter.h"
#include "scopes/EyeMeter.h"
#include "scopes/FigureStrip.h"
#include "scopes/ScopeFigure.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(ConstellationFigures)

namespace {

QStringList names(const QVector<ScopeFigure>& figures)
{
    QStringList list;
    for (const ScopeFigure& figure : figures) {
        list += figure.name;
    }
    return list;
}

QString values(const QVector<ScopeFigure>& figures)
{
    QStringList list;
    for (const ScopeFigure& figure : figures) {
        list += figure.value;
    }
    return list.join(u" | "_s);
}

ConstellationFigures qpsk()
{
    ConstellationFigures figures;
    figures.order = ModulationOrder::Qpsk;
    figures.valid = true;
    figures.evmPercent = 10.04;
    figures.merDb = 19.96;
    figures.offsetPercent = 1.25;
    figures.offsetDb = -38.1;
    figures.imbalanceValid = true;
    figures.imbalanceDb = -0.004;
    figures.quadratureDegrees = -3.25;
    return figures;
}

} // namespace

class tst_ScopeFigure : public QObject
{
    Q_OBJECT

private slots:
    void the_numbers_of_a_constellation_have_units_and_fixed_decimals_data()
    {
        QTest::addColumn<ConstellationFigures>("figures");
        QTest::addColumn<QString>("expected");
        QTest::newRow("all") << qpsk() << u"QPSK | 10.0 % | 20.0 dB | 1.3 % | 0.00 dB | -3.3°"_s;
        ConstellationFigures bpsk = qpsk();
        bpsk.order = ModulationOrder::Bpsk;
        bpsk.imbalanceValid = false; // it has no Q of its own
        QTest::newRow("BPSK") << bpsk << u"BPSK | 10.0 % | 20.0 dB | 1.3 % | --- | ---"_s;
        ConstellationFigures uncertain = qpsk();
        uncertain.valid = false;
        QTest::newRow("not certain") << uncertain << u"unknown | --- | --- | --- | --- | ---"_s;
        QTest::newRow("nothing measured")
            << ConstellationFigures() << u"unknown | --- | --- | --- | --- | ---"_s;
    }

    void the_numbers_of_a_constellation_have_units_and_fixed_decimals()
    {
        QFETCH(ConstellationFigures, figures);
        const auto shown = scopeFigures::ofConstellation(figures);
        QTEST(values(shown), "expected");
        QCOMPARE(names(shown),
            (QStringList{u"Order"_s, u"EVM rms"_s, u"MER"_s, u"I/Q offset"_s, u"Imbalance"_s,
                u"Quadrature"_s}));
    }

    void the_numbers_of_the_eyes_are_those_that_are_certain()
    {
        EyeFigures figures;
        QCOMPARE(values(scopeFigures::ofEyes(figures)), u"--- | --- | --- | --- | ---"_s);
        figures.i = {true, 84.6, -0.004}; // of an eye that is folded by an assumed number
        QCOMPARE(values(scopeFigures::ofEyes(figures)), u"--- | --- | --- | --- | ---"_s);
        figures.symbolPeriodFound = true;
        figures.samplesPerSymbol = 4.506;
        figures.i = {true, 84.6, -0.004};
        QCOMPARE(values(scopeFigures::ofEyes(figures)), u"85 % | 0.00 symbol | --- | --- | 4.51"_s);
        figures.q = {true, 0.0, 0.25};
        QCOMPARE(values(scopeFigures::ofEyes(figures)),
            u"85 % | 0.00 symbol | 0 % | 0.25 symbol | 4.51"_s);
        QCOMPARE(names(scopeFigures::ofEyes(figures)),
            (QStringList{u"I opening"_s, u"I instant"_s, u"Q opening"_s, u"Q instant"_s,
                u"Samples/symbol"_s}));
    }

    void the_numbers_of_a_record_are_its_bytes()
    {
        QCOMPARE(values(scopeFigures::ofRecord(QByteArray("\x00\x7f\x80\xff\x01", 5))),
            u"0 | 127 | 128 | 255 | 1"_s);
        QCOMPARE(values(scopeFigures::ofRecord({})), u"--- | --- | --- | --- | ---"_s);
    }

    void without_values_only_the_names_stay()
    {
        const auto shown = scopeFigures::ofConstellation(qpsk());
        const auto none = scopeFigures::withoutValues(shown);
        QCOMPARE(names(none), names(shown));
        QCOMPARE(values(none), u"--- | --- | --- | --- | --- | ---"_s);
    }

    void the_strip_shows_all_texts_whole()
    {
        FigureStrip strip;
        strip.resize(657, FigureStrip::Height);
        for (const auto& figures :
            {scopeFigures::ofConstellation(qpsk()), scopeFigures::ofConstellation({}),
                scopeFigures::ofEyes({true, 16.0, {true, 100.0, -0.49}, {true, 100.0, -0.49}}),
                scopeFigures::ofRecord("abcde")}) {
            strip.setFigures(figures);
            QCOMPARE(strip.figures(), figures);
            const QImage picture = strip.grab().toImage();
            const auto count = static_cast<int>(figures.size());
            for (int k = 0; k <= count; ++k) { // a text that is too wide reaches its neighbour
                const int x = std::min(strip.width() - 1, k * strip.width() / count);
                for (int y = 0; y < picture.height(); ++y) {
                    QCOMPARE(picture.pixelColor(x, y), picture.pixelColor(0, 0));
                }
            }
        }
    }

    void the_strip_is_painted_only_when_a_number_changes()
    {
        FigureStrip strip;
        strip.resize(657, FigureStrip::Height);
        strip.show();
        QVERIFY(QTest::qWaitForWindowExposed(&strip));
        struct Paints : QObject
        {
            bool eventFilter(QObject* /*watched*/, QEvent* event) override
            {
                count += event->type() == QEvent::Paint ? 1 : 0;
                return false;
            }
            int count = 0;
        } paints;
        strip.installEventFilter(&paints);
        strip.setFigures(scopeFigures::ofConstellation(qpsk()));
        QTRY_COMPARE(paints.count, 1);
        strip.setFigures(scopeFigures::ofConstellation(qpsk()));
        QCoreApplication::processEvents();
        QCOMPARE(paints.count, 1);
    }
};

QN740_TEST_MAIN(tst_ScopeFigure)
#include "tst_ScopeFigure.moc"
