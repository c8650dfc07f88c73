// These tests follow the operator's workflows with scopes, spectrum and PAX menu from end to end.
// They check what the unit has received and what the screen shows. All tests share one start.
#include "support/PanelDriver.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

namespace {

// These places are on the scopes page: the plots of Demod 1 and 3, the numbers beside the upper
// plot of Demod 1, a point of that plot, and the mode button of Demod 1.
constexpr QRect First(60, 10, 190, 260);
constexpr QRect Third(540, 10, 250, 260);
constexpr QRect FirstLevels(0, 0, 66, 140);
constexpr QPoint FirstPlot(160, 70);
constexpr QPoint FirstMode(132, 350);

// These places are on the page of an enlarged scope: a point of its title beside the text, the
// numbers beside its upper plot, that plot, and the keys of its range.
constexpr QPoint ScopeTitle(60, 25);
constexpr QRect EnlargedLevels(38, 56, 30, 134);
constexpr QRect EnlargedPlot(74, 66, 560, 112);
constexpr QPoint FittedRange(730, 78);
constexpr QPoint FixedRange(730, 133);

// These places are on the spectrum page: the uppermost chart and its keys, each with a point that
// no text covers.
constexpr QRect FirstChart(45, 25, 550, 90);
constexpr QPoint Average(639, 97);
constexpr QPoint BesideAverage(616, 66);
constexpr QPoint MaxHold(706, 97);
constexpr QPoint BesideMaxHold(684, 70);
constexpr QPoint Tools(769, 97);

// These places are beside an enlarged chart: the title of its keys beside the text, "Markers" of
// the first page, "Off" of the page of markers, and the lowest key, which is "Back" or "Close".
constexpr QPoint KeysTitle(620, 75);
constexpr QPoint MarkerKeys(656, 298);
constexpr QPoint MarkerOff(747, 298);
constexpr QPoint LowestKey(702, 382);

const QColor BadgeYellow(0xff, 0xd0, 0x00);

} // namespace

class tst_DisplayWorkflows : public QObject, private PanelDriver
{
    Q_OBJECT

    bool m_lost = false;

    // Whether the active marker is here: a dotted line through a chart of either size.
    bool hasLine(int x) { return bright(QRect(x - 4, 60, 9, 32)) > 8; }

public:
    tst_DisplayWorkflows()
        : PanelDriver(QString::fromUtf8(QN740_SIM), QString::fromUtf8(QN740_PANEL))
    {
    }

private slots:
    void initTestCase() { start(); }
    void cleanup()
    {
        QCOMPARE(panel().state(), QProcess::Running);
        if (!m_lost) {
            showMenus();
        }
    }
    void cleanupTestCase() { stop(); }

    void scopes_move_and_stop_and_can_be_hidden()
    {
        openMenu("Start");
        touch(NextView);
        QImage before = screen().picture();
        QVERIFY(changes(before, First));
        QVERIFY(changes(before, Third));
        touch(FirstMode); // "Demod 1 Eye Pattern"
        QVERIFY(shows(Title, TitleBlue));
        touch({662, 108}); // "Off"
        expect({"D1:DSDM:0"});
        // Data that is already under way may still arrive. After that, the first scope stands still
        // while the third one moves.
        const auto standsStill = [&] {
            before = screen().picture();
            return changes(before, Third) && screen().picture().copy(First) == before.copy(First);
        };
        QVERIFY(QTest::qWaitFor(standsStill, LongMs));
        touch(FirstMode); // "Demod 1 Off"
        QVERIFY(shows(Title, TitleBlue));
        touch({400, 108}); // "Constellation"
        expect({"D1:DSDM:1"});
        before = screen().picture();
        QVERIFY(changes(before, First));
        touch(FirstMode);
        QVERIFY(shows(Title, TitleBlue));
        touch({662, 422}); // "Cancel"
        QVERIFY(showsOther(Title, TitleBlue));
        QCOMPARE(sent(), QByteArrayList());
        say("SQ,3,0");
        // The scope is black except for a note in its middle.
        const auto isBlack = [&] {
            const QImage part = screen().picture().copy(Third.adjusted(0, 0, 0, -130));
            return part == [&part] {
                QImage black(part.size(), part.format());
                black.fill(Qt::black);
                return black;
            }();
        };
        QVERIFY(QTest::qWaitFor(isBlack, LongMs));
        say("SQ,3,1");
        QVERIFY(QTest::qWaitFor([&] { return !isBlack(); }, LongMs));
    }

    void the_spectrum_moves_and_takes_span_and_average()
    {
        openMenu("Start");
        touch({NextView, NextView}); // past the scopes page
        QVERIFY(shows(BesideAverage, Grey));
        QImage before = screen().picture();
        QVERIFY(changes(before, FirstChart));
        touch(Average);
        QVERIFY(showsOther(BesideAverage, Grey));
        touch(Average);
        QVERIFY(shows(BesideAverage, Grey));
        sent();
        before = screen().picture();
        touch({690, 25}); // the span
        QVERIFY(changes(before, QRect(610, 55, 180, 60)));
        touch({690, 120});
        QByteArrayList spans;
        QTRY_VERIFY_WITH_TIMEOUT((spans += sent()).size() >= 1, LongMs);
        QVERIFY2(spans.first().startsWith("D1:NFFT:"), spans.first());
    }

    void a_tap_sets_and_selects_a_marker_and_a_key_removes_it()
    {
        openMenu("Start");
        touch({NextView, NextView});
        QVERIFY(shows(BesideAverage, Grey));
        QVERIFY(!hasLine(100));
        touch({100, 80});
        QVERIFY(QTest::qWaitFor([this] { return hasLine(100); }, LongMs));
        touch({500, 80}); // a second marker, which is the active one
        QVERIFY(QTest::qWaitFor([this] { return hasLine(500) && !hasLine(100); }, LongMs));
        touch({105, 80}); // near the first one, which is selected where it is
        QVERIFY(QTest::qWaitFor([this] { return hasLine(100) && !hasLine(500); }, LongMs));
        touch({100, 80});
        touch(Tools);
        QVERIFY(shows(KeysTitle, TitleBlue));
        QVERIFY(hasLine(100) && !hasLine(500)); // a tap on a marker does not remove it
        touch({MarkerKeys, MarkerOff});
        QVERIFY(QTest::qWaitFor([this] { return hasLine(500) && !hasLine(100); }, LongMs));
        touch({MarkerOff, LowestKey, LowestKey}); // "Back" and "Close"
        QVERIFY(shows(BesideAverage, Grey));
        QVERIFY(QTest::qWaitFor([this] { return !hasLine(100) && !hasLine(500); }, LongMs));
        QCOMPARE(sent(), QByteArrayList());
    }

    void the_pax_menu_shows_its_displays_and_is_left_again()
    {
        openMenu("Start");
        touch(key(1, 2)); // "PAX Menu"
        expect({"PAX:1:1"});
        QVERIFY(showsOther(StatusBar, Grey));
        QImage before = screen().picture();
        QVERIFY(changes(before, QRect(500, 20, 220, 180))); // the scope
        QVERIFY(changes(before, QRect(450, 285, 320, 90))); // the chart
        touch({102, 211});                                  // "Combine"
        expect({"C1:COMB:0"});
        QVERIFY(shows({15, 185}, Grey));
        touch({134, 445}); // "Span"
        QVERIFY(shows({30, 64}, TitleBlue));
        touch({300, 178}); // "3 MHz"
        QByteArrayList spans;
        QTRY_VERIFY_WITH_TIMEOUT((spans += sent()).size() >= 1, LongMs);
        QVERIFY2(spans.first().startsWith("D1:NFFT:"), spans.first());
        touch({665, 445}); // "Start Menu"
        expect({"PAX:0:Start:1"});
        QVERIFY(shows(StatusBar, Grey));
        QVERIFY(shows(besideText(0, 0), Grey));
    }

    void a_touch_on_a_plot_enlarges_it_and_keys_fix_its_range_and_fit_it_again()
    {
        openMenu("Start");
        say("SM,1,2");
        touch(NextView);
        const auto levels = [this] { return screen().picture().copy(EnlargedLevels); };
        QVERIFY(changes(screen().picture(), First)); // there is a signal to fit to
        touch(FirstPlot);
        QVERIFY(shows(ScopeTitle, Grey));
        QImage before = screen().picture();
        QVERIFY(changes(before, EnlargedPlot));
        before = screen().picture();
        touch(FixedRange);
        QVERIFY(changes(before, EnlargedLevels));
        const QImage fixed = levels();
        before = screen().picture();
        touch(FittedRange);
        QVERIFY(changes(before, EnlargedLevels));
        touch(FixedRange);
        // Full scale is the same for every signal.
        QVERIFY(QTest::qWaitFor([&] { return levels() == fixed; }, LongMs));
        touch(FittedRange);
        QVERIFY(QTest::qWaitFor([&] { return levels() != fixed; }, LongMs));
        touch(ScopeTitle);
        QVERIFY(showsOther(ScopeTitle, Grey));
        before = screen().picture();
        QVERIFY(changes(before, Third));
        QCOMPARE(sent(), QByteArrayList());
    }

    void the_unit_turns_a_scope_to_sdi_and_back()
    {
        const QRect button(20, 325, 230, 50);
        openMenu("Start");
        touch(NextView);
        say("SM,1,2");
        QImage before = screen().picture();
        say("SM,1,3");
        QVERIFY(changes(before, button));
        QVERIFY(changes(before, FirstLevels));
        for (int i = 0; i < 2; ++i) { // the first change may come from older data
            before = screen().picture();
            QVERIFY(changes(before, First));
        }
        QCOMPARE(sent(), QByteArrayList());
        say("SM,1,2");
        before = screen().picture();
        QVERIFY(changes(before, First));
    }

    void the_highest_levels_are_held_on_demand()
    {
        const QColor held(127, 127, 0);
        constexpr int Some = 50;
        openMenu("Start");
        touch({NextView, NextView}); // past the scopes page
        QVERIFY(shows(BesideMaxHold, Grey));
        QCOMPARE(count(FirstChart, held), 0);
        touch(MaxHold);
        QVERIFY(showsOther(BesideMaxHold, Grey));
        QVERIFY(QTest::qWaitFor([&] { return count(FirstChart, held) > Some; }, LongMs));
        touch(MaxHold);
        QVERIFY(shows(BesideMaxHold, Grey));
        QVERIFY(QTest::qWaitFor([&] { return count(FirstChart, held) == 0; }, LongMs));
        QCOMPARE(sent(), QByteArrayList());
    }

    void a_number_is_typed_as_on_a_telephone_in_the_pax_menu()
    {
        say("PAX,1");
        touch({299, 47}); // "Bit Rate"
        QVERIFY(shows(Title, TitleBlue));
        // These are "1" and "2" in the first row, "5" under "2", "." at the bottom, and "Mbps".
        touch({{102, 197}, {300, 197}, {300, 438}, {300, 277}, {696, 438}});
        expect({"D3:RATE:12500000.000000"});
        QVERIFY(showsOther(Title, TitleBlue));
    }

    // "KILLBOX", which alone closes such boxes, waits behind the editor that the unit has opened.
    void boxes_without_OK_go_behind_the_editor_of_the_unit_at_a_touch()
    {
        const QByteArray pong("panel: PONG\n");
        const QByteArray box =
            "DB," + QByteArray(60, 'm') + QByteArray(" wait").repeated(60) + '\n';
        openMenu("Start");
        const auto before = unit().output().count(pong);
        unit().write(box.repeated(3) + "IK,Gain,3,R1:GAIN:,60 0,10,,\nPING\n");
        const auto touchOk = [&] {
            touch({399, 340}); // the boxes, and at last the slider's "OK"
            screen().picture();
            return unit().output().count(pong) > before;
        };
        QVERIFY(QTest::qWaitFor(touchOk, LongMs));
        say("DB,KILLBOX");
        QCOMPARE(sent(), QByteArrayList());
    }

    // This test is the last one, because the panel does not open the main unit's line again.
    void without_the_unit_the_panel_keeps_running_and_the_scopes_come_back()
    {
        openMenu("Start");
        touch(NextView);
        QImage before = screen().picture();
        QVERIFY(changes(before, Third));
        const auto saysNoData = [this] { return count(Third, BadgeYellow) > 3; };
        QVERIFY(!saysNoData());
        m_lost = true;
        stopUnit();
        QTRY_VERIFY_WITH_TIMEOUT(panel().errors().contains("ttyO1 was lost"), LongMs);
        QVERIFY(QTest::qWaitFor(saysNoData, LongMs));
        startUnit({u"--scope-mode"_s, u"1"_s});
        QVERIFY(QTest::qWaitFor([&] { return !saysNoData(); }, LongMs));
        before = screen().picture();
        QVERIFY(changes(before, Third));
        QCOMPARE(panel().state(), QProcess::Running);
        touch(NextView); // still reacts to a touch
        QVERIFY(changes(before, QRect(610, 0, 180, 60)));
    }
};

QN740_TEST_MAIN(tst_DisplayWorkflows)
#include "tst_DisplayWorkflows.moc"
