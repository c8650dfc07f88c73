// The roads of the operator from end to end: the real panel, touched through a remote screen as by
// a finger, and the real simulated unit at the other end of its lines. What counts is what the unit
// has received and what the screen shows. All roads share one start.
#include "support/Program.h"
#include "support/RfbClient.h"
#include "support/TestMain.h"

#include <QTemporaryDir>

#include <memory>

namespace {

constexpr int LongMs = 20000;

const QColor Green(0, 128, 0);
const QColor Grey(0x91, 0x91, 0x91);
const QColor Black(0, 0, 0);
const QColor TitleBlue(66, 89, 148); // of every editor

// The buttons of the status bar.
constexpr QPoint Linking(451, 455);
constexpr QPoint MainMenu(563, 455);
constexpr QPoint NextView(675, 455);
// left of the texts of the last one's neighbour: the bar itself
constexpr QPoint StatusBar(380, 474);

// A key of a menu of up to four rows of keys, and a place on it that no text reaches.
QPoint key(int row, int column)
{
    return {77 + 129 * column, 58 + 68 * row};
}
QPoint besideText(int row, int column)
{
    return key(row, column) - QPoint(54, 24);
}

// The title of an editor: beside its text, on pads and lists; on the slider's; of files and names.
constexpr QPoint Title(30, 28);
constexpr QPoint SliderTitle(220, 130);
constexpr QPoint FilesTitle(40, 76);

// Keys of the pads, by their text; "h" in front: of the hexadecimal pad, "i": of the address pad,
// "f": of the pad of a frequency with ranges on three lines.
QPoint padKey(QChar layout, const QString& text)
{
    static const QHash<QString, QPoint> Cells{{"7", {0, 0}}, {"8", {1, 0}}, {"9", {2, 0}},
        {"4", {0, 1}}, {"5", {1, 1}}, {"6", {2, 1}}, {"1", {0, 2}}, {"2", {1, 2}}, {"3", {2, 2}},
        {"0", {0, 3}}, {".", {1, 3}}, {"CE", {2, 3}}, {"Enter", {3, 3}}, {"3rd", {3, 2}},
        {"2nd", {3, 1}}, {"Back", {3, 0}}};
    static const QHash<QString, QPoint> Hex{{"A", {518, 197}}, {"B", {598, 197}}, {"C", {518, 277}},
        {"D", {598, 277}}, {"E", {518, 357}}, {"F", {598, 357}}, {"CE", {716, 277}},
        {"Enter", {716, 438}}};
    if (layout == 'h' && Hex.contains(text)) {
        return Hex.value(text);
    }
    const QPoint cell = Cells.value(text);
    if (layout == 'h') {
        return {82 + 158 * cell.x(), 197 + 80 * cell.y()};
    }
    const QPoint first = layout == 'f' ? QPoint(102, 217)
        : layout == 'i'                ? QPoint(102, 178)
                                       : QPoint(102, 197);
    const int height = layout == 'f' ? 74 : layout == 'i' ? 85 : 80;
    return first + QPoint(198 * cell.x(), height * cell.y());
}

// Keys of the keyboard of file names.
QPoint letter(QChar c)
{
    const QList<QPair<QString, QPoint>> rows{{"1234567890", {41, 199}}, {"qwertyuiop", {146, 265}},
        {"asdfghjkl", {176, 331}}, {"zxcvbnm", {341, 397}}};
    for (const auto& row : rows) {
        const auto at = row.first.indexOf(c);
        if (at >= 0) {
            return row.second + QPoint(static_cast<int>(at) * 56, 0);
        }
    }
    return {};
}
constexpr QPoint Caps(80, 331);
constexpr QPoint Return(80, 397);
constexpr QPoint Left(189, 397);
constexpr QPoint Backspace(638, 199);
constexpr QPoint Delete(746, 199);
constexpr QPoint CancelName(725, 132);

} // namespace

class tst_OperatorRoads : public QObject
{
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_parent;
    std::unique_ptr<Program> m_unit;
    std::unique_ptr<Program> m_panel;
    std::unique_ptr<RfbClient> m_screen;
    qsizetype m_seen = 0; // of the unit's output
    bool m_lost = false;

    QString devices() const { return m_parent->filePath("dev"); }

    void startUnit()
    {
        m_unit = std::make_unique<Program>(QN740_SIM, QStringList{"--dir", devices()});
        m_seen = 0;
        QTRY_VERIFY_WITH_TIMEOUT(m_unit->has("sim: ready " + devices().toUtf8()), LongMs);
    }

    QColor at(QPoint point) { return m_screen->picture().pixelColor(point); }

    // Waits until the screen has this colour at this point. Out: whether it came.
    bool shows(QPoint point, const QColor& colour)
    {
        return QTest::qWaitFor([&] { return at(point) == colour; }, LongMs);
    }
    bool showsOther(QPoint point, const QColor& colour)
    {
        return QTest::qWaitFor([&] { return at(point) != colour; }, LongMs);
    }

    // Waits until this part of the screen looks other than before.
    bool changes(const QImage& before, const QRect& part)
    {
        return QTest::qWaitFor(
            [&] { return m_screen->picture().copy(part) != before.copy(part); }, LongMs);
    }

    // How many points of this part of the screen are nearly white.
    int bright(const QRect& part)
    {
        const QImage image = m_screen->picture().copy(part);
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor colour = image.pixelColor(x, y);
                count += qMin(colour.red(), colour.blue()) > 180 ? 1 : 0;
            }
        }
        return count;
    }

    void touch(QPoint point)
    {
        QVERIFY2(m_screen->click(point), qPrintable(m_screen->errorString()));
    }
    void touch(const QList<QPoint>& points)
    {
        for (const QPoint& point : points) {
            touch(point);
        }
    }

    // Lets the unit send a message and waits until the panel has carried it out.
    void say(const QByteArray& message)
    {
        const QByteArray answer("panel: PONG\n");
        const auto before = m_unit->output().count(answer);
        m_unit->write(message + "\nPING\n");
        QTRY_VERIFY_WITH_TIMEOUT(m_unit->output().count(answer) > before, LongMs);
    }

    // What the panel has sent since the last call, without what was asked for by say(). A picture
    // comes behind the touches before it, an answer behind what they have sent.
    QByteArrayList sent()
    {
        m_screen->picture();
        say("PING");
        QByteArrayList bodies;
        const QByteArrayList lines = m_unit->output().mid(m_seen).split('\n');
        for (const QByteArray& line : lines) {
            if (line.startsWith("panel: ") && line != "panel: PONG") {
                bodies += line.mid(7);
            }
        }
        m_seen = m_unit->output().size();
        return bodies;
    }

    // Waits until the panel has sent these, and nothing else.
    void expect(const QByteArrayList& bodies)
    {
        QByteArrayList all;
        QTRY_VERIFY_WITH_TIMEOUT((all += sent()).size() >= bodies.size(), LongMs);
        QCOMPARE(all, bodies);
    }

    void openMenu(const QByteArray& name) { say("SK," + name); }

    // Opens the editor of a key and waits for its title.
    void openEditor(const QByteArray& menu, QPoint keyPoint, QPoint title = Title)
    {
        openMenu(menu);
        touch(keyPoint);
        QVERIFY(shows(title, TitleBlue));
    }

private slots:
    void initTestCase()
    {
        m_parent = std::make_unique<QTemporaryDir>();
        startUnit();
        const quint16 port = RfbClient::freePort();
        m_panel = std::make_unique<Program>(QN740_PANEL,
            QStringList{"-platform", QString("vnc:size=800x480:port=%1").arg(port)},
            QStringList{"QN740_DEV=" + devices(), "XDG_CONFIG_HOME=" + m_parent->path()});
        QTRY_VERIFY_WITH_TIMEOUT(m_unit->has("sim: menus sent"), LongMs);
        m_screen = std::make_unique<RfbClient>();
        QVERIFY2(m_screen->connectTo(port), qPrintable(m_screen->errorString()));
        // the start-up picture stands over all for its 15 seconds, whatever is touched below it
        const QPoint inPicture(200, 340);
        QVERIFY(shows(inPicture, Qt::white));
        openMenu("Outputs");
        touch(inPicture);
        sent();
        QVERIFY(!m_unit->output().contains("panel: REL"));
        QCOMPARE(at(inPicture), QColor(Qt::white));
        QTRY_COMPARE_WITH_TIMEOUT(at(inPicture), Grey, 2 * LongMs); // beside the text of a key
    }

    void cleanup()
    {
        QCOMPARE(m_panel->state(), QProcess::Running);
        if (m_lost) {
            return;
        }
        // back to the menus, whatever a road has left
        say("DB,KILLBOX");
        say("PAX,0");
        sent();
        touch(MainMenu);
        expect({"Main"});
    }

    void cleanupTestCase()
    {
        m_screen.reset();
        m_panel.reset();
        m_unit.reset();
    }

    void a_key_opens_its_menu_and_a_switch_is_confirmed()
    {
        openMenu("Start");
        touch(key(0, 0)); // "Tuner CH1"
        expect({"SK:Tuner CH1:1"});
        QVERIFY(shows(besideText(0, 3), Green)); // "AGC On"
        touch(key(0, 5));                        // "RF Atten 20 dB"
        expect({"R1:ATTN:1"});
        QVERIFY(shows(besideText(0, 5), Green));
        touch(key(0, 5));
        expect({"R1:ATTN:0"});
        QVERIFY(shows(besideText(0, 5), Grey));
    }

    void a_dead_key_and_an_empty_place_do_nothing()
    {
        openMenu("Tuner CH1");
        touch({key(2, 0), key(2, 2), key(3, 3)}); // "AFC" is dead, the others are no keys
        QCOMPARE(sent(), QByteArrayList());
    }

    void a_number_arrives_from_every_kind_of_pad_data()
    {
        QTest::addColumn<QByteArray>("menu");
        QTest::addColumn<QPoint>("place");
        QTest::addColumn<QString>("keys"); // the layout of the pad, then what is touched
        QTest::addColumn<QByteArray>("sent");
        const auto row = [](const char* kind, const char* menu, QPoint place, const char* keys,
                             const char* body) {
            QTest::newRow(kind) << QByteArray(menu) << place << QString(keys) << QByteArray(body);
        };
        row("signed", "Tuner CH1", key(1, 0), "n 4 2 . 5 3rd Enter", "R1:OFFS:-42.500000");
        row("signed, plus again", "Tuner CH1", key(1, 0), "n 4 3rd 2nd Enter", "R1:OFFS:4.000000");
        row("frequency", "Tuner CH1", key(0, 0), "f 2 2 5 0 . 5 Enter", "R1:FREQ:2250.500000");
        row("bit rate in Kbps", "Demod 1", key(0, 1), "n 2 0 0 3rd", "D1:RATE:200000.000000");
        row("bit rate in Mbps", "Demod 1", key(0, 1), "n 5 Enter", "D1:RATE:5000000.000000");
        row("hertz", "Demod 1", key(0, 2), "n 5 0 0 2nd", "D1:LOOP:500.000000");
        row("angle", "Tuner CH1", key(1, 3), "n 1 . 5 7 Enter", "R1:LOPH:1.570000");
        row("percentage", "Demod 1", key(1, 0), "n 3 5 Enter", "D1:ROLL:0.350000");
        row("special", "Demod 1", key(1, 5), "n 2nd", "D1:SWP:-1.000000");
        row("PIN", "System", key(0, 5), "n 1 2 3 4 Enter", "SYS:PIN:1234.000000");
        row("hexadecimal", "Demod 1", key(1, 1), "h F A F 3 Enter", "D1:SYNC:64243.000000");
        row("corrected", "Tuner CH1", key(1, 0), "n 4 2 Back CE 7 Enter", "R1:OFFS:7.000000");
    }

    void a_number_arrives_from_every_kind_of_pad()
    {
        QFETCH(QByteArray, menu);
        QFETCH(QPoint, place);
        QFETCH(QString, keys);
        QFETCH(QByteArray, sent);
        openEditor(menu, place);
        const QStringList names = keys.split(' ');
        for (const QString& name : names.mid(1)) {
            touch(padKey(names.first().at(0), name));
        }
        expect({sent});
        QVERIFY(showsOther(Title, TitleBlue));
    }

    void a_number_out_of_range_is_refused_and_typed_again()
    {
        openEditor("Tuner CH1", key(1, 0));
        touch({padKey('n', "9"), padKey('n', "9"), padKey('n', "Enter")});
        const QPoint ok(600, 297);             // on the box's button, left of its text
        QVERIFY(showsOther({100, 240}, Grey)); // the box stands over "7"
        QCOMPARE(sent(), QByteArrayList());
        touch(ok);
        QVERIFY(shows({100, 220}, Grey));
        touch({padKey('n', "5"), padKey('n', "Enter")});
        expect({"R1:OFFS:5.000000"});
    }

    void an_entry_is_cleared_and_a_pad_is_left_with_nothing_sent()
    {
        openEditor("Tuner CH1", key(1, 0));
        touch({padKey('n', "4"), padKey('n', "CE")});
        QCOMPARE(at(Title), TitleBlue);
        touch(padKey('n', "CE"));
        QVERIFY(showsOther(Title, TitleBlue));
        QCOMPARE(sent(), QByteArrayList());
    }

    void a_step_of_the_frequency_goes_out_at_once()
    {
        openEditor("Tuner CH2", key(0, 0));
        touch(padKey('f', "2nd")); // "Step Up"
        expect({"R2:FREQ:1485.6"});
        touch({padKey('f', "Back") + QPoint(0, 0)}); // "Step": 1 MHz
        touch(padKey('f', "3rd"));                   // "Step Down"
        expect({"R2:FREQ:1484.6"});
        touch(padKey('f', "CE"));
        QVERIFY(showsOther(Title, TitleBlue));
        QCOMPARE(sent(), QByteArrayList());
    }

    void an_address_arrives_and_a_wrong_one_is_refused()
    {
        openEditor("System", key(0, 0));
        for (const char* name : {"1", ".", "2", ".", "3", "Enter"}) {
            touch(padKey('i', name));
        }
        QVERIFY(showsOther({300, 260}, Grey)); // the box stands over "5"
        touch({484, 284});                     // "OK"
        QVERIFY(shows({260, 280}, Grey));
        for (const char* name : {".", "9", "Enter"}) {
            touch(padKey('i', name));
        }
        expect({"SYS:IP:1.2.3.9"});
    }

    void a_slider_sends_while_it_moves_by_key_and_by_finger()
    {
        openEditor("Tuner CH1", key(1, 2), SliderTitle);
        touch({529, 341}); // "UP"
        expect({"R1:SQL:36"});
        // the handle stands at 36 of 100
        const QPoint handle(356, 255);
        QVERIFY(m_screen->press(handle));
        QVERIFY(m_screen->press({560, 255}));
        QByteArrayList moved;
        QTRY_VERIFY_WITH_TIMEOUT((moved += sent()).size() >= 1, LongMs);
        QVERIFY(m_screen->release({560, 255}));
        const int value = moved.last().mid(7).toInt();
        QVERIFY2(moved.last().startsWith("R1:SQL:") && value > 80 && value <= 100, moved.last());
        touch({400, 341}); // "OK"
        QVERIFY(showsOther(SliderTitle, TitleBlue));
        QCOMPARE(sent(), QByteArrayList());
    }

    void a_choice_arrives_and_a_list_can_be_left()
    {
        openEditor("Demod 1", key(0, 5)); // "Decoder", in two columns
        touch({597, 212});                // "LDPC 4/5"
        expect({"D1:FEC:3"});
        QVERIFY(showsOther(Title, TitleBlue));
        openEditor("Demod 1", key(0, 5));
        touch({597, 422}); // "Cancel"
        QVERIFY(showsOther(Title, TitleBlue));
        QCOMPARE(sent(), QByteArrayList());
    }

    void a_file_is_chosen_named_and_left()
    {
        openEditor("System", key(0, 3), FilesTitle);
        touch({246, 142}); // "FLIGHT_1"
        expect({"SYS:LOAD:2"});
        openEditor("System", key(0, 4), FilesTitle);
        touch({554, 386}); // "New File"
        QVERIFY(shows({60, 110}, QColor(Qt::white)));
        touch(Caps);
        touch(letter('r'));
        touch(Caps);
        for (const char c : {'u', 'x', 'n', '7'}) {
            touch(letter(QLatin1Char(c)));
        }
        touch({Left, Left, Backspace, Left, Delete}); // of "Ruxn7" remains "Rn7"
        touch(Return);
        expect({"SYS:SAVE:Rn7"});
        openEditor("System", key(0, 4), FilesTitle);
        touch({554, 386});
        QVERIFY(shows({60, 110}, QColor(Qt::white)));
        touch(CancelName);
        QVERIFY(showsOther({60, 110}, QColor(Qt::white)));
        QVERIFY(shows(FilesTitle, TitleBlue));
        touch({708, 386}); // "Cancel"
        QVERIFY(showsOther(FilesTitle, TitleBlue));
        QCOMPARE(sent(), QByteArrayList());
    }

    void the_main_menu_has_copies_that_send_and_follow()
    {
        touch(MainMenu);
        expect({"Main"});
        const QPoint agc(77, 184);
        const QPoint besideAgc(25, 165);
        QVERIFY(shows(besideAgc, Green));
        touch(agc);
        expect({"R1:AGC:0"});
        QVERIFY(shows(besideAgc, Grey));
        openMenu("Tuner CH1");
        QVERIFY(shows(besideText(0, 3), Grey)); // the source key follows
        touch(key(0, 3));
        expect({"R1:AGC:1"});
        touch(MainMenu);
        expect({"Main"});
        QVERIFY(shows(besideAgc, Green));
        touch({77, 388}); // "All Menus"
        expect({"SK:Start:1"});
    }

    void more_pages_through_a_menu_and_round_again()
    {
        const QPoint more(723, 386);
        openMenu("Outputs");
        QVERIFY(shows({25, 300}, Green)); // "Relay 1"
        touch(more);
        QVERIFY(shows({25, 300}, Black));
        touch(key(0, 0)); // "Relay 12" of the second page
        expect({"REL12:1"});
        touch(more);
        QVERIFY(shows({25, 300}, Green));
    }

    void link_modes_act_on_all_demodulators_and_both_tuners()
    {
        openMenu("Demod 2");
        touch(Linking);
        expect({"Slave,0"});
        QVERIFY(showsOther({600, 350}, Black));
        touch({400, 223}); // "Diversity Linking"
        expect({"Slave,1"});
        touch({400, 352}); // "Close"
        QVERIFY(shows({600, 350}, Black));
        touch(key(0, 3)); // "Data Invert", which is set in Demod 2 alone
        expect({"D1 D2 D3:INV:0"});
        touch(key(0, 3));
        expect({"D1 D2 D3:INV:1"});
        for (const char* menu : {"Demod 1", "Demod 2", "Demod 3"}) {
            openMenu(menu);
            QVERIFY2(shows(besideText(0, 3), Green), menu);
        }
        openMenu("Tuner CH2");
        touch(key(0, 5)); // "RF Atten 20 dB"
        expect({"R1 R2:ATTN:1"});
        openMenu("Tuner CH1");
        QVERIFY(shows(besideText(0, 5), Green));
        touch(Linking);
        expect({"Slave,1"});
        touch({400, 157}); // "No Linking"
        expect({"Slave,0"});
        touch({400, 352});
        QVERIFY(shows({600, 350}, Black));
    }

    void a_message_waits_for_the_operator_or_for_the_unit()
    {
        openMenu("Start");
        say("DB,Antenna fault,1");
        QVERIFY(showsOther({300, 270}, Black));
        touch({660, 262}); // "OK"
        QVERIFY(shows({300, 270}, Black));
        say("DB,Please wait");
        QVERIFY(showsOther({500, 250}, Black));
        touch({500, 250}); // nothing to be touched
        QVERIFY(at({500, 250}) != Black);
        say("DB,KILLBOX");
        QVERIFY(shows({500, 250}, Black));
        QCOMPARE(sent(), QByteArrayList());
    }

    void the_unit_opens_an_editor_and_gets_its_entry()
    {
        openMenu("Start");
        m_unit->write("IK,Unlock,1,SYS:PIN:,0 9999,7,\n");
        QVERIFY(shows(Title, TitleBlue));
        for (const char* name : {"1", "2", "3", "4", "Enter"}) {
            touch(padKey('n', name));
        }
        expect({"SYS:PIN:1234.000000"});
    }

    void scopes_move_and_stop_and_can_be_hidden()
    {
        const QRect first(60, 10, 190, 260);
        const QRect third(540, 10, 250, 260);
        const QPoint list(30, 28);
        openMenu("Start");
        touch(NextView);
        QImage before = m_screen->picture();
        QVERIFY(changes(before, first));
        QVERIFY(changes(before, third));
        touch({132, 350}); // "Demod 1 Eye Pattern"
        QVERIFY(shows(list, TitleBlue));
        touch({662, 108}); // "Off"
        expect({"D1:DSDM:0"});
        // what is under way comes to its end; from then on one stands still and another moves
        const auto standsStill = [&] {
            before = m_screen->picture();
            return changes(before, third) && m_screen->picture().copy(first) == before.copy(first);
        };
        QVERIFY(QTest::qWaitFor(standsStill, LongMs));
        touch({132, 350}); // "Demod 1 Off"
        QVERIFY(shows(list, TitleBlue));
        touch({400, 108}); // "Constellation"
        expect({"D1:DSDM:1"});
        before = m_screen->picture();
        QVERIFY(changes(before, first));
        touch({132, 350});
        QVERIFY(shows(list, TitleBlue));
        touch({662, 422}); // "Cancel"
        QVERIFY(showsOther(list, TitleBlue));
        QCOMPARE(sent(), QByteArrayList());
        say("SQ,3,0");
        const auto isBlack = [&] {
            const QImage part = m_screen->picture().copy(third);
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

    void the_spectrum_moves_and_takes_span_average_and_marker()
    {
        openMenu("Start");
        touch({NextView, NextView}); // over the scopes
        const QPoint average(662, 79);
        QVERIFY(shows({625, 70}, Grey));
        const QRect chart(45, 25, 550, 90);
        QImage before = m_screen->picture();
        QVERIFY(changes(before, chart));
        touch(average);
        QVERIFY(showsOther({625, 70}, Grey));
        touch(average);
        QVERIFY(shows({625, 70}, Grey));
        // a tap sets a marker, a dotted line through the chart; a tap on it takes it away
        const auto hasMarker = [this] { return bright(QRect(196, 65, 9, 45)) > 8; };
        QVERIFY(!hasMarker());
        touch({200, 80});
        QVERIFY(QTest::qWaitFor(hasMarker, LongMs));
        touch({200, 80});
        QVERIFY(QTest::qWaitFor([&] { return !hasMarker(); }, LongMs));
        sent();
        touch({690, 25}); // the span
        QVERIFY(changes(before, QRect(610, 55, 180, 60)));
        touch({690, 120});
        QByteArrayList spans;
        QTRY_VERIFY_WITH_TIMEOUT((spans += sent()).size() >= 1, LongMs);
        QVERIFY2(spans.first().startsWith("D1:NFFT:"), spans.first());
    }

    void the_pax_menu_comes_and_goes_with_its_displays()
    {
        openMenu("Start");
        touch(key(1, 2)); // "PAX Menu"
        expect({"PAX:1:1"});
        QVERIFY(showsOther(StatusBar, Grey));
        QImage before = m_screen->picture();
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

    // The last one: the main unit's line is not opened again.
    void with_the_unit_gone_the_panel_lives_and_the_scopes_come_back()
    {
        openMenu("Start");
        touch(NextView);
        const QRect third(540, 10, 250, 260);
        QImage before = m_screen->picture();
        QVERIFY(changes(before, third));
        m_lost = true;
        m_unit.reset();
        QTRY_VERIFY_WITH_TIMEOUT(m_panel->errors().contains("ttyO1 was lost"), LongMs);
        m_unit = std::make_unique<Program>(
            QN740_SIM, QStringList{"--dir", devices(), "--scope-mode", "1"});
        QTRY_VERIFY_WITH_TIMEOUT(m_unit->has("sim: ready " + devices().toUtf8()), LongMs);
        // two changes: the first may be what was under way
        for (int i = 0; i < 2; ++i) {
            before = m_screen->picture();
            QVERIFY(changes(before, third));
        }
        QCOMPARE(m_panel->state(), QProcess::Running);
        touch(NextView); // it still takes a touch
        QVERIFY(changes(before, QRect(610, 0, 180, 60)));
    }
};

QN740_TEST_MAIN(tst_OperatorRoads)
#include "tst_OperatorRoads.moc"
