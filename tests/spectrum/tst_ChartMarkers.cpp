// The markers of a chart, what a finger does with them, and where they go on a trace.
#include "spectrum/CardSide.h"
#include "spectrum/ChartMarkers.h"
#include "spectrum/ChartPoints.h"
#include "spectrum/ChartSettings.h"
#include "spectrum/ChartTouch.h"
#include "support/TestMain.h"

using Average = SpectrumTrace::Average;
using Kind = ChartTouch::Kind;

namespace {

// Markers 1 to `count` at 0, 0.1 and so on; the last one is active.
ChartMarkers markersOf(int count)
{
    ChartMarkers markers;
    for (int i = 0; i < count; ++i) {
        markers = markers.with(i * 0.1);
    }
    return markers;
}

QList<int> numbersOf(const ChartMarkers& markers)
{
    QList<int> numbers;
    for (const auto& marker : markers.all()) {
        numbers += marker.number;
    }
    return numbers;
}

// A chart 400 pixels wide whose title ends at 150.
const QRect Plot(40, 22, 361, 100);

ChartTouch::Layout layoutOf(const QVector<ChartTouch::Target>& markers)
{
    return {Plot, 150, markers};
}

} // namespace

Q_DECLARE_METATYPE(ChartTouch::Kind)

class tst_ChartMarkers : public QObject
{
    Q_OBJECT

private slots:
    // the markers

    void markers_are_numbered_from_one_and_the_newest_is_active()
    {
        QCOMPARE(ChartMarkers().active(), 0);
        QVERIFY(!ChartMarkers().offset());
        const ChartMarkers markers = markersOf(3);
        QCOMPARE(numbersOf(markers), QList<int>({1, 2, 3}));
        QCOMPARE(markers.count(), 3);
        QCOMPARE(markers.active(), 3);
        QCOMPARE(*markers.offset(), 0.2);
        QCOMPARE(*markers.offset(1), 0.0);
        QVERIFY(!markers.offset(0) && !markers.offset(4) && !markers.offset(5));
    }

    void a_fifth_marker_moves_the_active_one()
    {
        const ChartMarkers markers = markersOf(4).activated(2).with(0.7);
        QCOMPARE(numbersOf(markers), QList<int>({1, 2, 3, 4}));
        QCOMPARE(markers.active(), 2);
        QCOMPARE(*markers.offset(2), 0.7);
    }

    void moving_without_a_marker_sets_the_first()
    {
        const ChartMarkers markers = ChartMarkers().moved(0.3);
        QCOMPARE(numbersOf(markers), QList<int>{1});
        QCOMPARE(*markers.offset(), 0.3);
        QCOMPARE(*markers.moved(0.4).offset(1), 0.4);
        QCOMPARE(markers.moved(0.4).count(), 1);
    }

    void a_removed_marker_leaves_its_number_free_data()
    {
        QTest::addColumn<int>("active");
        QTest::addColumn<int>("removed");
        QTest::addColumn<QList<int>>("left");
        QTest::addColumn<int>("then");
        QTest::newRow("the last") << 3 << 3 << QList<int>{1, 2} << 2;
        QTest::newRow("the middle one") << 2 << 2 << QList<int>{1, 3} << 1;
        QTest::newRow("the first") << 1 << 1 << QList<int>{2, 3} << 2;
        QTest::newRow("one that is not active") << 3 << 1 << QList<int>{2, 3} << 3;
        QTest::newRow("one that is not set") << 3 << 4 << QList<int>{1, 2, 3} << 3;
        QTest::newRow("none") << 3 << 0 << QList<int>{1, 2, 3} << 3;
    }

    void a_removed_marker_leaves_its_number_free()
    {
        QFETCH(int, active);
        QFETCH(int, removed);
        const ChartMarkers markers = markersOf(3).activated(active).without(removed);
        QTEST(numbersOf(markers), "left");
        QTEST(markers.active(), "then");
    }

    void a_new_marker_gets_the_lowest_free_number()
    {
        const ChartMarkers markers = markersOf(3).without(2).with(0.5);
        QCOMPARE(markers.active(), 2);
        QCOMPARE(*markers.offset(2), 0.5);
        QCOMPARE(markersOf(1).without(1).active(), 0);
    }

    void only_a_marker_that_is_set_can_be_activated()
    {
        for (const int number : {-1, 0, 3, 4, 5}) {
            QCOMPARE(markersOf(2).activated(number), markersOf(2));
        }
        QCOMPARE(markersOf(2).activated(1).active(), 1);
    }

    void markers_outside_the_axis_are_removed()
    {
        const FrequencyAxis axis; // 1.2 MHz wide
        ChartMarkers markers = ChartMarkers().with(-5.0).with(0.2).with(0.65).with(qQNaN());
        markers.keepInside(axis);
        QCOMPARE(numbersOf(markers), QList<int>{2});
        QCOMPARE(markers.active(), 2);
    }

    void differences_are_read_to_marker_1()
    {
        ChartMarkers markers = markersOf(3).withDelta(true);
        QVERIFY(markers.delta());
        QVERIFY(!markers.isRelative(1) && markers.isRelative(2) && markers.isRelative(3));
        QVERIFY(!markers.isRelative(4));
        QVERIFY(!markers.without(1).isRelative(2));
        QVERIFY(!markers.withDelta(false).isRelative(2));
    }

    void a_difference_of_one_marker_begins_at_itself()
    {
        const ChartMarkers markers = ChartMarkers().with(0.3).withDelta(true);
        QCOMPARE(numbersOf(markers), QList<int>({1, 2}));
        QCOMPARE(markers.active(), 2);
        QCOMPARE(*markers.offset(2), 0.3);
        QCOMPARE(ChartMarkers().withDelta(true).count(), 0);
        QCOMPARE(ChartMarkers().with(0.3).withDelta(false).count(), 1);
        QCOMPARE(markersOf(2).withDelta(true).count(), 2);
    }

    // the finger

    void a_tap_means_what_lies_under_the_finger_data()
    {
        QTest::addColumn<QPointF>("at");
        QTest::addColumn<QVector<int>>("markers"); // columns; the last is active
        QTest::addColumn<Kind>("pressed");
        QTest::addColumn<Kind>("released");
        QTest::addColumn<int>("number");
        const auto row = [](const char* name, QPointF at, const QVector<int>& markers, Kind pressed,
                             Kind released, int number) {
            QTest::newRow(name) << at << markers << pressed << released << number;
        };
        const QPointF middle(200, 80);
        row("the plot", middle, {}, Kind::Nothing, Kind::Tap, 0);
        row("a marker", middle, {200}, Kind::Select, Kind::Nothing, 1);
        row("as far as a finger", middle, {224}, Kind::Select, Kind::Nothing, 1);
        row("farther than a finger", middle, {225}, Kind::Nothing, Kind::Tap, 0);
        row("the nearer of two", middle, {205, 190, 300}, Kind::Select, Kind::Nothing, 1);
        row("the active one of two", middle, {205, 190}, Kind::Select, Kind::Nothing, 2);
        row("two at one place", middle, {200, 200}, Kind::Select, Kind::Nothing, 2);
        row("the head", {300, 10}, {}, Kind::Nothing, Kind::Title, 0);
        row("the corner", {2, 2}, {}, Kind::Nothing, Kind::Title, 0);
        row("a marker's column in the head", {200, 10}, {200}, Kind::Nothing, Kind::Title, 0);
        row("under the title", {100, 46}, {}, Kind::Nothing, Kind::Title, 0);
        row("a marker under the title", {100, 40}, {110}, Kind::Select, Kind::Nothing, 1);
        row("lower than a finger", {100, 47}, {}, Kind::Nothing, Kind::Tap, 0);
        row("beside the title", {150, 30}, {}, Kind::Nothing, Kind::Tap, 0);
        row("left of the plot", {20, 80}, {40}, Kind::Nothing, Kind::Nothing, 0);
        row("below the plot", {200, 130}, {}, Kind::Nothing, Kind::Nothing, 0);
        row("the first column", {40, 122 - 1}, {}, Kind::Nothing, Kind::Tap, 0);
    }

    void a_tap_means_what_lies_under_the_finger()
    {
        QFETCH(QPointF, at);
        QFETCH(QVector<int>, markers);
        QFETCH(Kind, pressed);
        QFETCH(Kind, released);
        QFETCH(int, number);
        QVector<ChartTouch::Target> targets;
        for (const int x : markers) {
            const int next = static_cast<int>(targets.size()) + 1;
            targets += {next, double(x), next == markers.size()};
        }
        ChartTouch finger;
        const auto press = finger.press(at, layoutOf(targets));
        QCOMPARE(press.kind, pressed);
        QCOMPARE(press.number, number);
        QCOMPARE(finger.move(at + QPointF(3, 3)).kind, Kind::Nothing);
        const auto release = finger.release(at);
        QCOMPARE(release.kind, released);
        if (released == Kind::Tap) {
            QCOMPARE(release.x, at.x());
        }
        QCOMPARE(finger.release(at).kind, Kind::Nothing); // without a press
        QCOMPARE(finger.move(at).kind, Kind::Nothing);
    }

    void a_low_plot_keeps_three_quarters_of_itself_for_taps()
    {
        const ChartTouch::Layout low{QRect(40, 22, 361, 40), 150, {}};
        QVERIFY(ChartTouch::isTitle(QPoint(100, 31), low));
        QVERIFY(!ChartTouch::isTitle(QPoint(100, 32), low));
        const ChartTouch::Layout below{QRect(40, 56, 361, 80), 150, {}};
        QVERIFY(ChartTouch::isTitle(QPoint(100, 55), below)); // high enough as it is
        QVERIFY(!ChartTouch::isTitle(QPoint(100, 56), below));
    }

    void a_drag_moves_the_marker_that_the_finger_holds()
    {
        ChartTouch finger;
        finger.press({210, 80}, layoutOf({{1, 100.0, true}, {2, 200.0, false}}));
        QCOMPARE(finger.move({216, 90}).kind, Kind::Nothing); // a finger is never quite still
        auto action = finger.move({250, 90});
        QCOMPARE(action.kind, Kind::Drag);
        QCOMPARE(action.number, 2);
        QCOMPARE(action.x, 240.0);                 // as far from the finger as at the press
        QCOMPARE(finger.move({212, 90}).x, 202.0); // back again, and still a drag
        QCOMPARE(finger.move({700, 90}).x, 400.0); // not beyond the plot
        QCOMPARE(finger.move({-50, 300}).x, 40.0);
        action = finger.release({260, 90});
        QCOMPARE(action.kind, Kind::Drag);
        QCOMPARE(action.x, 250.0);
        QCOMPARE(finger.move({300, 90}).kind, Kind::Nothing);
    }

    void a_release_ends_a_drag_that_no_move_has_told()
    {
        ChartTouch finger;
        finger.press({200, 80}, layoutOf({{1, 200.0, true}}));
        const auto action = finger.release({260, 80});
        QCOMPARE(action.kind, Kind::Drag);
        QCOMPARE(action.x, 260.0);
    }

    void a_drag_that_begins_far_from_a_marker_moves_none_data()
    {
        QTest::addColumn<QPointF>("from");
        QTest::addColumn<QPointF>("to");
        QTest::newRow("over a marker") << QPointF(100, 80) << QPointF(300, 80);
        QTest::newRow("to a marker") << QPointF(100, 80) << QPointF(200, 80);
        QTest::newRow("from the title into the plot") << QPointF(60, 10) << QPointF(60, 80);
        QTest::newRow("from the plot to the title") << QPointF(60, 80) << QPointF(60, 10);
        QTest::newRow("down") << QPointF(100, 60) << QPointF(100, 110);
        QTest::newRow("out of the plot") << QPointF(390, 80) << QPointF(410, 80);
    }

    void a_drag_that_begins_far_from_a_marker_moves_none()
    {
        QFETCH(QPointF, from);
        QFETCH(QPointF, to);
        ChartTouch finger;
        QCOMPARE(finger.press(from, layoutOf({{1, 200.0, true}})).kind, Kind::Nothing);
        for (int step = 1; step <= 10; ++step) {
            QCOMPARE(finger.move(from + (to - from) * step / 10).kind, Kind::Nothing);
        }
        QCOMPARE(finger.release(to).kind, Kind::Nothing);
    }

    void an_action_becomes_markers()
    {
        const ChartMarkers markers = markersOf(2);
        using Action = ChartTouch::Action;
        const auto applied = [&markers](const Action& action) {
            return ChartTouch::applied(action, markers, 0.5);
        };
        QCOMPARE(applied({Kind::Select, 1, 0.0}), markers.activated(1));
        QCOMPARE(applied({Kind::Drag, 1, 0.0}), markers.activated(1).moved(0.5));
        QCOMPARE(applied({Kind::Tap, 0, 0.0}), markers.with(0.5));
        QCOMPARE(applied({Kind::Title, 0, 0.0}), markers);
        QCOMPARE(applied({}), markers);
    }

    void the_layout_of_a_chart_has_its_markers_in_columns()
    {
        const FrequencyAxis axis;
        const ChartGeometry geometry{Plot, axis.scale(Plot.left(), Plot.right()), {}};
        const auto layout = ChartTouch::layout(
            geometry, 110, ChartMarkers().with(0.0).with(axis.width() / 4), axis.centre());
        QCOMPARE(layout.plot, Plot);
        QCOMPARE(layout.titleEnd, 150);
        QCOMPARE(layout.markers.size(), 2);
        QCOMPARE(layout.markers.at(0).x, 220.0);
        QCOMPARE(layout.markers.at(1).x, 310.0);
        QVERIFY(layout.markers.at(1).active && !layout.markers.at(0).active);
    }

    // the points

    void without_points_nothing_is_read_and_no_marker_goes_anywhere()
    {
        const FrequencyAxis axis;
        const SpectrumTrace trace;
        const ChartPoints points(axis, trace);
        const ChartMarkers markers = markersOf(2);
        QVERIFY(!points.peak().valid && !points.at(0.0).valid);
        QVERIFY(!points.at(markers).at(0).reading.valid);
        QCOMPARE(points.onPeak(markers), markers);
        QCOMPARE(points.onNextPeak(markers), markers);
        QCOMPARE(points.stepped(markers, 1), markers);
        QCOMPARE(points.onNextPeak({}).count(), 0);
    }

    void the_peak_lies_between_its_points_data()
    {
        QTest::addColumn<QByteArray>("levels"); // around the middle of 100 points, bytes
        QTest::addColumn<double>("bin");        // from the middle
        QTest::addColumn<double>("level");
        const auto bytes = [](std::initializer_list<double> levels) {
            QByteArray points;
            for (const double level : levels) {
                points += cardSide::level(level);
            }
            return points;
        };
        QTest::newRow("alone") << bytes({-40}) << 0.0 << -40.0;
        QTest::newRow("two, a plateau") << bytes({-40, -40}) << 0.5 << -40.0;
        QTest::newRow("three, a plateau") << bytes({-40, -40, -40}) << 1.0 << -40.0;
        // (-46, -40, -43): the parabola's top by its formula, 0.5 * (6 - 3) / (6 + 3) to the right
        QTest::newRow("a parabola") << bytes({-46, -40, -43}) << 1.0 + 1.0 / 6.0 << -39.875;
    }

    void the_peak_lies_between_its_points()
    {
        QFETCH(QByteArray, levels);
        QFETCH(double, bin);
        const FrequencyAxis axis;
        SpectrumTrace trace;
        QByteArray points(100, cardSide::level(-100));
        points.replace(50, levels.size(), levels);
        trace.add(points);
        const SpectrumReading peak = ChartPoints(axis, trace).peak();
        QVERIFY(peak.valid);
        QCOMPARE(peak.frequency, 70.0 + bin * axis.width() / 100);
        QTEST(peak.level, "level");
    }

    void a_marker_reads_its_point_or_the_difference_to_marker_1()
    {
        const FrequencyAxis axis;
        SpectrumTrace trace;
        QByteArray points = cardSide::carrier(100, 50, -40);
        points[75] = cardSide::level(-52.5);
        trace.add(points);
        const double quarter = axis.width() / 4;
        const ChartMarkers markers = ChartMarkers().with(0.0).with(quarter);
        auto readings = ChartPoints(axis, trace).at(markers);
        QCOMPARE(readings.size(), 2);
        QCOMPARE(readings.at(1).reading.frequency, 70.0 + quarter);
        QCOMPARE(readings.at(1).reading.level, -52.5);
        QVERIFY(!readings.at(1).relative && readings.at(1).active && !readings.at(0).active);
        readings = ChartPoints(axis, trace).at(markers.withDelta(true));
        QCOMPARE(readings.at(0).reading.level, -40.0);
        QVERIFY(readings.at(1).relative && readings.at(1).reading.valid);
        QVERIFY(std::abs(readings.at(1).reading.frequency - quarter) < 1e-9);
        QCOMPARE(readings.at(1).reading.level, -12.5);
    }

    void peak_and_next_peak_walk_down_the_signals()
    {
        const FrequencyAxis axis;
        SpectrumTrace trace;
        QByteArray points = cardSide::carrier(100, 20, -60);
        points[70] = cardSide::level(-40);
        points[90] = cardSide::level(-50);
        trace.add(points);
        const ChartPoints view(axis, trace);
        const auto bin = [&axis](const ChartMarkers& markers) {
            return qRound(*markers.offset() / axis.width() * 100) + 50;
        };
        ChartMarkers markers = view.onNextPeak({}); // without a marker, as onPeak()
        QCOMPARE(bin(markers), 70);
        QCOMPARE(markers.count(), 1);
        for (const int expected : {90, 20, 20}) { // the last has no lower one
            markers = view.onNextPeak(markers);
            QCOMPARE(bin(markers), expected);
        }
        QCOMPARE(bin(view.onPeak(markers)), 70);
    }

    void a_step_is_one_point_and_ends_at_the_ends_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("step");
        QTest::addColumn<int>("to");
        QTest::newRow("right") << 50 << 1 << 51;
        QTest::newRow("left") << 50 << -1 << 49;
        QTest::newRow("ten") << 50 << 10 << 60;
        QTest::newRow("at the left end") << 0 << -1 << 0;
        QTest::newRow("at the right end") << 99 << 1 << 99;
        QTest::newRow("far") << 50 << 1000 << 99;
    }

    void a_step_is_one_point_and_ends_at_the_ends()
    {
        QFETCH(int, from);
        QFETCH(int, step);
        QFETCH(int, to);
        const FrequencyAxis axis;
        SpectrumTrace trace;
        trace.add(QByteArray(100, '\x20'));
        const auto offset = [&axis](int index) { return axis.frequencyAt(index, 100) - 70.0; };
        const ChartMarkers markers = ChartMarkers().with(0.1).with(offset(from));
        const ChartMarkers stepped = ChartPoints(axis, trace).stepped(markers, step);
        QVERIFY(std::abs(*stepped.offset() - offset(to)) < 1e-9);
        QCOMPARE(*stepped.offset(1), 0.1);
        QVERIFY(axis.covers(*stepped.offset()));
    }

    void a_peak_at_the_edge_keeps_its_marker_data()
    {
        QTest::addColumn<int>("bin");
        QTest::newRow("left") << 0;
        QTest::newRow("right") << 99;
    }

    void a_peak_at_the_edge_keeps_its_marker()
    {
        QFETCH(int, bin);
        for (const SpanInfo& span : spanTable()) {
            for (const double centre : {70.0, 2250.5, 4321.987}) {
                FrequencyAxis axis;
                axis.setSpan(span);
                axis.setCentre(centre);
                SpectrumTrace trace;
                trace.add(cardSide::carrier(100, bin, -20));
                ChartMarkers markers = ChartPoints(axis, trace).onPeak({});
                markers.keepInside(axis);
                QCOMPARE(markers.count(), 1);
                QCOMPARE(ChartPoints(axis, trace).at(*markers.offset()).level, -20.0);
            }
        }
    }

    void the_floor_is_below_nine_tenths_of_the_points()
    {
        const FrequencyAxis axis;
        SpectrumTrace trace;
        QCOMPARE(ChartPoints(axis, trace).floorLevel(), 0.0);
        QByteArray points(1000, cardSide::level(-30));
        points.replace(0, 150, QByteArray(150, cardSide::level(-95)));
        points[500] = 0; // one deep hole
        trace.add(points);
        QCOMPARE(ChartPoints(axis, trace).floorLevel(), -95.0);
    }

    // the settings

    void settings_switch_a_trace_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<int>("depth");
        QTest::addColumn<bool>("maxHold");
        QTest::addColumn<bool>("minHold");
        QTest::addColumn<int>("averaging");
        QTest::newRow("as new") << int(Average::Off) << 16 << false << false << 1;
        QTest::newRow("power") << int(Average::Power) << 4 << false << true << 4;
        QTest::newRow("log") << int(Average::Log) << 64 << true << false << 64;
        QTest::newRow("off with a depth") << int(Average::Off) << 64 << true << true << 1;
        QTest::newRow("over one spectrum") << int(Average::Power) << 1 << false << false << 1;
    }

    void settings_switch_a_trace()
    {
        QFETCH(int, kind);
        QFETCH(int, depth);
        QFETCH(bool, maxHold);
        QFETCH(bool, minHold);
        QFETCH(int, averaging);
        SpectrumTrace trace;
        ChartSettings settings;
        settings.averageKind = static_cast<Average>(kind);
        settings.depth = depth;
        settings.maxHold = maxHold;
        settings.minHold = minHold;
        settings.applyTo(trace);
        QCOMPARE(trace.averaging(), averaging);
        QCOMPARE(int(trace.averageKind()), averaging > 1 ? kind : int(Average::Off));
        QCOMPARE(trace.maxHold(), maxHold);
        QCOMPARE(trace.minHold(), minHold);
    }

    void settings_that_are_the_same_go_on()
    {
        SpectrumTrace trace;
        ChartSettings settings;
        settings.averageKind = Average::Power;
        settings.maxHold = true;
        settings.applyTo(trace);
        trace.add(QByteArray(10, cardSide::level(-20)));
        trace.add(QByteArray(10, cardSide::level(-80)));
        const double mean = trace.levels().first();
        QVERIFY(mean > -24.0);
        settings.minHold = true;
        settings.applyTo(trace);
        QCOMPARE(double(trace.levels().first()), mean);
        trace.add(QByteArray(10, cardSide::level(-80)));
        QVERIFY(trace.levels().first() > -26.0F); // a third of the power, still
        QCOMPARE(trace.held().first(), -20.0F);
        settings.depth = 64;
        settings.applyTo(trace);
        trace.add(QByteArray(10, cardSide::level(-80)));
        QCOMPARE(trace.levels().first(), -80.0F); // anew
        QCOMPARE(trace.held().first(), -20.0F);
    }
};

QN740_TEST_MAIN(tst_ChartMarkers)
#include "tst_ChartMarkers.moc"
