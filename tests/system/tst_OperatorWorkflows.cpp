// These tests follow the operator's workflows through menus, editors and windows from end to end.
// They check what the unit has received and what the screen shows. All tests share one start.
#include "support/PanelDriver.h"
#include "support/TestMain.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace {

// These points are beside the text in the title bar of an editor: of the slider, and of the file
// list.
constexpr QPoint SliderTitle(220, 130);
constexpr QPoint FilesTitle(40, 76);

// Returns the place of a pad's key by its text. The layout is 'h' for the hexadecimal pad, 'i' for
// the address pad, and 'f' for the pad of a frequency with ranges on three lines.
QPoint padKey(QChar layout, const QString& text)
{
    static const QHash<QString, QPoint> Cells{{u"7"_s, {0, 0}}, {u"8"_s, {1, 0}}, {u"9"_s, {2, 0}},
        {u"4"_s, {0, 1}}, {u"5"_s, {1, 1}}, {u"6"_s, {2, 1}}, {u"1"_s, {0, 2}}, {u"2"_s, {1, 2}},
        {u"3"_s, {2, 2}}, {u"0"_s, {0, 3}}, {u"."_s, {1, 3}}, {u"CE"_s, {2, 3}},
        {u"Enter"_s, {3, 3}}, {u"3rd"_s, {3, 2}}, {u"2nd"_s, {3, 1}}, {u"Back"_s, {3, 0}}};
    static const QHash<QString, QPoint> Hex{{u"A"_s, {518, 197}}, {u"B"_s, {598, 197}},
        {u"C"_s, {518, 277}}, {u"D"_s, {598, 277}}, {u"E"_s, {518, 357}}, {u"F"_s, {598, 357}},
        {u"CE"_s, {716, 277}}, {u"Enter"_s, {716, 438}}};
    if (layout == u'h' && Hex.contains(text)) {
        return Hex.value(text);
    }
    const QPoint cell = Cells.value(text);
    if (layout == u'h') {
        return {82 + 158 * cell.x(), 197 + 80 * cell.y()};
    }
    const QPoint first = layout == u'f' ? QPoint(102, 217)
        : layout == u'i'                ? QPoint(102, 178)
                                        : QPoint(102, 197);
    const int height = layout == u'f' ? 74 : layout == u'i' ? 85 : 80;
    return first + QPoint(198 * cell.x(), height * cell.y());
}

// Returns the place of a letter on the keyboard for file names.
QPoint letter(QChar c)
{
    const QList<QPair<QString, QPoint>> rows{{u"1234567890"_s, {41, 199}},
        {u"qwertyuiop"_s, {146, 265}}, {u"asdfghjkl"_s, {176, 331}}, {u"zxcvbnm"_s, {341, 397}}};
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

class tst_OperatorWorkflows : public QObject, private PanelDriver
{
    Q_OBJECT

public:
    tst_OperatorWorkflows()
        : PanelDriver(QString::fromUtf8(QN740_SIM), QString::fromUtf8(QN740_PANEL))
    {
    }

private slots:
    void initTestCase() { start(); }
    void cleanup()
    {
        QCOMPARE(panel().state(), QProcess::Running);
        showMenus();
    }
    void cleanupTestCase() { stop(); }

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
        touch({key(2, 0), key(2, 2), key(3, 3)}); // "AFC" is disabled, the others are empty places
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
            QTest::newRow(kind) << QByteArray(menu) << place << QString::fromUtf8(keys)
                                << QByteArray(body);
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
        const QStringList names = keys.split(u' ');
        for (const QString& name : names.mid(1)) {
            touch(padKey(names.first().at(0), name));
        }
        expect({sent});
        QVERIFY(showsOther(Title, TitleBlue));
    }

    void a_number_out_of_range_is_refused_and_typed_again()
    {
        openEditor("Tuner CH1", key(1, 0));
        touch({padKey(u'n', u"9"_s), padKey(u'n', u"9"_s), padKey(u'n', u"Enter"_s)});
        const QPoint ok(600, 297);             // on the box's button, left of its text
        QVERIFY(showsOther({100, 240}, Grey)); // the box stands over "7"
        QCOMPARE(sent(), QByteArrayList());
        touch(ok);
        QVERIFY(shows({100, 220}, Grey));
        touch({padKey(u'n', u"5"_s), padKey(u'n', u"Enter"_s)});
        expect({"R1:OFFS:5.000000"});
    }

    void an_entry_is_cleared_and_a_pad_is_left_with_nothing_sent()
    {
        openEditor("Tuner CH1", key(1, 0));
        touch({padKey(u'n', u"4"_s), padKey(u'n', u"CE"_s)});
        QCOMPARE(at(Title), TitleBlue);
        touch(padKey(u'n', u"CE"_s));
        QVERIFY(showsOther(Title, TitleBlue));
        QCOMPARE(sent(), QByteArrayList());
    }

    void a_step_of_the_frequency_is_sent_at_once()
    {
        openEditor("Tuner CH2", key(0, 0));
        touch(padKey(u'f', u"2nd"_s)); // "Step Up"
        expect({"R2:FREQ:1485.6"});
        touch({padKey(u'f', u"Back"_s) + QPoint(0, 0)}); // "Step": 1 MHz
        touch(padKey(u'f', u"3rd"_s));                   // "Step Down"
        expect({"R2:FREQ:1484.6"});
        touch(padKey(u'f', u"CE"_s));
        QVERIFY(showsOther(Title, TitleBlue));
        QCOMPARE(sent(), QByteArrayList());
    }

    void an_address_arrives_and_a_wrong_one_is_refused()
    {
        openEditor("System", key(0, 0));
        for (const char* name : {"1", ".", "2", ".", "3", "Enter"}) {
            touch(padKey(u'i', QString::fromUtf8(name)));
        }
        QVERIFY(showsOther({300, 260}, Grey)); // the box stands over "5"
        touch({484, 284});                     // "OK"
        QVERIFY(shows({260, 280}, Grey));
        for (const char* name : {".", "9", "Enter"}) {
            touch(padKey(u'i', QString::fromUtf8(name)));
        }
        expect({"SYS:IP:1.2.3.9"});
    }

    void a_slider_sends_while_it_moves_by_key_and_by_finger()
    {
        openEditor("Tuner CH1", key(1, 2), SliderTitle);
        touch({529, 341}); // "UP"
        expect({"R1:SQL:36"});
        // The handle stands at 36 of 100.
        const QPoint handle(356, 255);
        QVERIFY(screen().press(handle));
        QVERIFY(screen().press({560, 255}));
        QByteArrayList moved;
        QTRY_VERIFY_WITH_TIMEOUT((moved += sent()).size() >= 1, LongMs);
        QVERIFY(screen().release({560, 255}));
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

    void a_locked_choice_cannot_be_taken()
    {
        say("EI,Demod 1,fec,1:3");
        openEditor("Demod 1", key(0, 5));
        touch({{597, 212}, {597, 108}}); // "LDPC 4/5" and "Viterbi 1/2", wherever they stand
        QCOMPARE(sent(), QByteArrayList());
        QCOMPARE(at(Title), TitleBlue);
        touch({203, 212}); // "LDPC 2/3"
        expect({"D1:FEC:2"});
        QVERIFY(showsOther(Title, TitleBlue));
        say("EI,Demod 1,fec,");
        openEditor("Demod 1", key(0, 5));
        touch({597, 212});
        expect({"D1:FEC:3"});
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
        touch(letter(u'r'));
        touch(Caps);
        for (const char c : {'u', 'x', 'n', '7'}) {
            touch(letter(QLatin1Char(c)));
        }
        touch({Left, Left, Backspace, Left, Delete}); // leaves "Rn7" of "Ruxn7"
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

    void frequency_diversity_acts_on_all_demodulators_and_one_tuner()
    {
        openMenu("Demod 2");
        touch(Linking);
        expect({"Slave,0"});
        QVERIFY(showsOther({600, 350}, Black));
        touch({400, 289}); // "Frequency Diversity Linking"
        expect({"Slave,2"});
        touch({400, 352}); // "Close"
        QVERIFY(shows({600, 350}, Black));
        touch(key(0, 4)); // "Derandom", which is set in all demodulators
        expect({"D1 D2 D3:DRND:0"});
        for (const char* menu : {"Demod 1", "Demod 2", "Demod 3"}) {
            openMenu(menu);
            QVERIFY2(shows(besideText(0, 4), Grey), menu);
        }
        touch(key(0, 4)); // of Demod 3
        expect({"D1 D2 D3:DRND:1"});
        openMenu("Tuner CH2");
        QVERIFY(shows(besideText(0, 3), Green)); // "AGC On"
        touch(key(0, 3));
        expect({"R2:AGC:0"});
        QVERIFY(shows(besideText(0, 3), Grey));
        openMenu("Tuner CH1");
        QVERIFY(shows(besideText(0, 3), Green));
        openMenu("Tuner CH2");
        touch(key(0, 3));
        expect({"R2:AGC:1"});
        touch(Linking);
        expect({"Slave,2"});
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
        touch({500, 250}); // has no button
        QVERIFY(at({500, 250}) != Black);
        say("DB,KILLBOX");
        QVERIFY(shows({500, 250}, Black));
        QCOMPARE(sent(), QByteArrayList());
    }

    void the_unit_opens_an_editor_and_gets_its_entry()
    {
        openMenu("Start");
        unit().write("IK,Unlock,1,SYS:PIN:,0 9999,7,\n");
        QVERIFY(shows(Title, TitleBlue));
        for (const char* name : {"1", "2", "3", "4", "Enter"}) {
            touch(padKey(u'n', QString::fromUtf8(name)));
        }
        expect({"SYS:PIN:1234.000000"});
    }
};

QN740_TEST_MAIN(tst_OperatorWorkflows)
#include "tst_OperatorWorkflows.moc"
