#include "menus/Key.h"
#include "support/TestMain.h"
#include "touch/KeyStyle.h"
#include "touch/TextButton.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

class tst_Key : public QObject
{
    Q_OBJECT

private slots:
    void a_new_key_is_empty()
    {
        const Key key;
        QVERIFY(key.label.isEmpty() && key.keyId.isEmpty() && key.command.isEmpty());
        QVERIFY(key.units.isEmpty() && key.options.isEmpty() && key.padText.isEmpty());
        QVERIFY(key.linkedKeys.isEmpty() && key.itemIds.isEmpty());
        QVERIFY(!key.tog());
        QVERIFY(key.GetKey() == nullptr);
    }

    void type_numbers_are_those_of_the_main_unit()
    {
        QCOMPARE(int(Key::Toggle), 0);
        QCOMPARE(int(Key::Number), 1);
        QCOMPARE(int(Key::Selection), 2);
        QCOMPARE(int(Key::Slider), 3);
        QCOMPARE(int(Key::File), 4);
        QCOMPARE(int(Key::Command), 5);
        QCOMPARE(int(Key::Address), 6);
    }

    void styles_follow_state_and_size_data()
    {
        QTest::addColumn<bool>("large");
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("tog");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<QString>("sheet");
        const QString tail = u" QPushButton:pressed {background-color: #4169e1;}"_s;
        const QString smallGrey =
            "QPushButton {background-color: #919191; border-width: 2px; border-style: solid; "
            u"border-color: yellow; font-size: 16px; border-radius: 4px; font-weight: 480}"_s +
            tail;
        const QString largeGrey =
            "QPushButton {background-color:#919191; border-width: 2px; border-style: solid; "
            u"border-color: yellow; font-size: 22px; border-radius: 4px; font-weight: 503}"_s +
            tail;
        const QString smallGreen =
            "QPushButton {background-color: green; border-width: 2px; border-style: solid; "
            u"border-color: yellow; font-size: 16px; border-radius: 4px; font-weight: 480}"_s +
            tail;
        const QString largeGreen =
            "QPushButton {background-color: green; border-width: 2px; border-style: solid; "
            u"border-color: yellow; font-size: 22px; border-radius: 4px; font-weight: 503;}"_s +
            tail;
        const QString smallDark =
            "QPushButton {background-color: #2f4f4f; color:white; border-width: 2px; border-style: "
            u"solid; border-color: #fffacd; font-size: 16px; border-radius: 4px; font-weight: 480}"_s +
            tail;
        const QString largeDark =
            "QPushButton {background-color: #2f4f4f; color:white; border-width: 2px; border-style: "
            u"solid; border-color: #fffacd; font-size: 22px; border-radius: 4px; font-weight: 503;}"_s +
            tail;
        QTest::newRow("enabled small") << false << 1 << false << true << smallGrey;
        QTest::newRow("enabled large") << true << 1 << false << true << largeGrey;
        QTest::newRow("toggle off small") << false << 0 << false << true << smallGrey;
        QTest::newRow("toggle on small") << false << 0 << true << true << smallGreen;
        QTest::newRow("toggle on large") << true << 0 << true << true << largeGreen;
        QTest::newRow("disabled small") << false << 0 << false << false << smallDark;
        QTest::newRow("disabled large") << true << 1 << false << false << largeDark;
        QTest::newRow("disabled toggle that is on") << false << 0 << true << false << smallDark;
        QTest::newRow("a command key that is on stays grey")
            << false << 5 << true << true << smallGrey;
    }

    void styles_follow_state_and_size()
    {
        QFETCH(bool, large);
        QFETCH(int, type);
        QFETCH(bool, tog);
        QFETCH(bool, enabled);
        QPushButton button;
        Key key;
        key.Set_Key(&button, large);
        key.type = type;
        key.tog_ = tog;
        if (enabled) {
            key.setEnabled();
        } else {
            key.setDisabled();
        }
        QCOMPARE(button.isEnabled(), enabled);
        QTEST(button.styleSheet(), "sheet");
    }

    void setting_the_toggle_colours_an_enabled_toggle_key_only_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("enabled");
        QTest::addColumn<QString>("sheet");
        QTest::newRow("enabled toggle") << 0 << true << keyStyle::toggled(false);
        QTest::newRow("disabled toggle keeps the dark style")
            << 0 << false << keyStyle::disabled(false);
        QTest::newRow("command key") << 5 << true << keyStyle::enabled(false);
        QTest::newRow("number key") << 1 << true << keyStyle::enabled(false);
    }

    void setting_the_toggle_colours_an_enabled_toggle_key_only()
    {
        QFETCH(int, type);
        QFETCH(bool, enabled);
        QPushButton button;
        Key key;
        key.Set_Key(&button, false);
        key.type = type;
        if (enabled) {
            key.setEnabled();
        } else {
            key.setDisabled();
        }
        key.setTog(true);
        QVERIFY(key.tog());
        QTEST(button.styleSheet(), "sheet");
    }

    void setting_the_toggle_off_gives_the_grey_style_back()
    {
        QPushButton button;
        Key key;
        key.Set_Key(&button, true);
        key.setTog(true);
        QCOMPARE(button.styleSheet(), keyStyle::toggled(true));
        key.setTog(false);
        QCOMPARE(button.styleSheet(), keyStyle::enabled(true));
    }

    void a_key_shows_and_hides_its_button()
    {
        QPushButton button;
        Key key;
        key.Set_Key(&button, false);
        key.show();
        QVERIFY(button.isVisible());
        key.hide();
        QVERIFY(!button.isVisible());
    }

    void a_key_that_was_disabled_in_a_disabled_page_stays_so()
    {
        QWidget page;
        QPushButton button(&page);
        Key key;
        key.Set_Key(&button, false);
        page.setEnabled(false);
        QVERIFY(!button.isEnabled());
        key.setDisabled();
        page.setEnabled(true);
        QVERIFY(!button.isEnabled());
        key.setEnabled();
        QVERIFY(button.isEnabled());
    }

    void a_key_that_was_hidden_before_its_page_was_shown_stays_so()
    {
        QWidget page;
        QPushButton hidden(&page);
        QPushButton shown(&page);
        Key key;
        key.Set_Key(&hidden, false);
        key.hide();
        Key other;
        other.Set_Key(&shown, false);
        other.show();
        QVERIFY(shown.testAttribute(Qt::WA_WState_ExplicitShowHide));
        page.show();
        QVERIFY(hidden.isHidden());
        QVERIFY(shown.isVisible());
    }

    void a_key_without_a_button_ignores_every_call()
    {
        Key key;
        {
            QPushButton button;
            key.Set_Key(&button, false);
        }
        QVERIFY(key.GetKey() == nullptr);
        key.setEnabled();
        key.setDisabled();
        key.show();
        key.hide();
        key.setTog(true);
        QVERIFY(key.tog());
    }

    void the_display_state_is_applied_data()
    {
        QTest::addColumn<int>("state");
        QTest::addColumn<bool>("visible");
        QTest::addColumn<bool>("enabled");
        QTest::newRow("0 disabled and shown") << 0 << true << false;
        QTest::newRow("1 enabled and shown") << 1 << true << true;
        QTest::newRow("2 hidden") << 2 << false << true;
        QTest::newRow("3 changes nothing") << 3 << true << true;
        QTest::newRow("-1 changes nothing") << -1 << true << true;
    }

    void the_display_state_is_applied()
    {
        QFETCH(int, state);
        QPushButton button;
        Key key;
        key.Set_Key(&button, false);
        key.setEnabled();
        key.show();
        key.state = state;
        key.applyState();
        QTEST(button.isVisible(), "visible");
        QTEST(button.isEnabled(), "enabled");
    }

    void a_hidden_key_appears_with_its_display_state_data()
    {
        QTest::addColumn<int>("state");
        QTest::addColumn<bool>("visible");
        QTest::newRow("disabled") << int(Key::Disabled) << true;
        QTest::newRow("enabled") << int(Key::Enabled) << true;
        QTest::newRow("hidden") << int(Key::Hidden) << false;
        QTest::newRow("none of them") << 3 << false;
    }

    void a_hidden_key_appears_with_its_display_state()
    {
        QFETCH(int, state);
        QPushButton button;
        button.hide();
        Key key;
        key.Set_Key(&button, false);
        key.state = state;
        key.applyState();
        QTEST(!button.isHidden(), "visible");
    }

    void toggle_and_command_keys_send_their_new_state_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("toggle") << 0;
        QTest::newRow("command") << 5;
    }

    void toggle_and_command_keys_send_their_new_state()
    {
        QFETCH(int, type);
        QPushButton button;
        Key key;
        key.Set_Key(&button, false);
        key.setEnabled();
        key.type = type;
        key.command = u"R1:AGC:"_s;
        QSignalSpy sent(&key, &Key::response_message);
        key.key_button_pushed();
        key.key_button_pushed();
        QCOMPARE(sent.count(), 2);
        QCOMPARE(sent.at(0).at(0).toString(), u"\x02R1:AGC:1\x04"_s);
        QCOMPARE(sent.at(1).at(0).toString(), u"\x02R1:AGC:0\x04"_s);
    }

    void a_press_does_not_change_the_colour()
    {
        QPushButton button;
        Key key;
        key.Set_Key(&button, false);
        key.setEnabled();
        key.key_button_pushed();
        QVERIFY(key.tog());
        QCOMPARE(button.styleSheet(), keyStyle::enabled(false));
    }

    void a_press_of_a_toggle_is_pending_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("pending");
        QTest::newRow("toggle") << 0 << true;
        QTest::newRow("command") << 5 << false;
    }
    void a_press_of_a_toggle_is_pending()
    {
        QFETCH(int, type);
        QFETCH(bool, pending);
        TextButton button(u"AGC"_s);
        Key key;
        key.Set_Key(&button, false);
        key.type = type;
        key.setTog(false);
        QVERIFY(!key.isPending());
        key.key_button_pushed();
        QCOMPARE(key.isPending(), pending);
        QCOMPARE(button.marks().isPending, pending);
        key.key_button_pushed();
        QCOMPARE(key.isPending(), pending);
        QCOMPARE(button.marks().isPending, pending);
    }

    void a_press_is_pending_before_its_message_is_sent()
    {
        Key key;
        key.type = Key::Toggle;
        connect(&key, &Key::response_message, &key, [&key] {
            QVERIFY(key.isPending());
            key.setTog(key.tog()); // the answer comes at once
        });
        key.key_button_pushed();
        QVERIFY(!key.isPending());
    }

    void what_the_main_unit_tells_ends_a_pending_press_data()
    {
        QTest::addColumn<int>("state"); // -1: the main unit sends the toggle instead
        QTest::newRow("toggle") << -1;
        QTest::newRow("disabled") << 0;
        QTest::newRow("enabled") << 1;
        QTest::newRow("hidden") << 2;
        QTest::newRow("unknown state") << 3;
    }
    void what_the_main_unit_tells_ends_a_pending_press()
    {
        QFETCH(int, state);
        TextButton button(u"AGC"_s);
        Key key;
        key.Set_Key(&button, false);
        key.setTog(false);
        key.key_button_pushed();
        QVERIFY(button.marks().isPending);
        if (state < 0) {
            key.setTog(false);
        } else {
            key.state = state;
            key.applyState();
        }
        QVERIFY(!key.isPending());
        QVERIFY(!button.marks().isPending);
    }

    void the_lamp_follows_the_main_unit_and_not_the_press_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<bool>("tog");
        QTest::addColumn<keyMarks::Lamp>("lamp");
        QTest::newRow("toggle off") << 0 << false << keyMarks::Lamp::Off;
        QTest::newRow("toggle on") << 0 << true << keyMarks::Lamp::On;
        QTest::newRow("command off") << 5 << false << keyMarks::Lamp::None;
        QTest::newRow("command on") << 5 << true << keyMarks::Lamp::None;
        QTest::newRow("number") << 1 << true << keyMarks::Lamp::None;
        QTest::newRow("unknown") << 9 << true << keyMarks::Lamp::None;
    }
    void the_lamp_follows_the_main_unit_and_not_the_press()
    {
        QFETCH(int, type);
        QFETCH(bool, tog);
        QFETCH(keyMarks::Lamp, lamp);
        TextButton button(u"AGC"_s);
        Key key;
        key.Set_Key(&button, false);
        key.type = type;
        key.setTog(tog);
        QCOMPARE(button.marks().lamp, lamp);
        key.setDisabled();
        QCOMPARE(button.marks().lamp, lamp);
        key.setEnabled();
        QCOMPARE(button.marks().lamp, lamp);
        if (type == Key::Toggle || type == Key::Command) {
            key.key_button_pushed();
            QCOMPARE(button.marks().lamp, lamp);
        }
    }

    void a_key_that_becomes_a_toggle_gets_its_lamp_with_its_state_data()
    {
        QTest::addColumn<int>("state");
        QTest::newRow("enabled") << int(Key::Enabled);
        QTest::newRow("disabled") << int(Key::Disabled);
    }

    void a_key_that_becomes_a_toggle_gets_its_lamp_with_its_state()
    {
        TextButton button(u"AGC"_s);
        Key key;
        key.Set_Key(&button, false);
        key.type = Key::Number;
        key.setTog(true);
        key.type = Key::Toggle;
        QFETCH(int, state);
        key.state = state;
        key.applyState();
        QCOMPARE(button.marks().lamp, keyMarks::Lamp::On);
    }

    void a_key_that_is_no_toggle_any_more_loses_its_lamp()
    {
        TextButton button(u"AGC"_s);
        Key key;
        key.Set_Key(&button, false);
        key.setTog(true);
        key.key_button_pushed();
        key.type = Key::Number;
        key.setTog(true);
        QVERIFY(!button.marks().any());
    }

    void a_message_has_no_separator_between_command_and_value()
    {
        Key key;
        key.command = u"D1:BR "_s;
        QCOMPARE(key.message(u"5"_s),
            u"\x02"_s
            u"D1:BR 5\x04"_s);
    }
};

QN740_TEST_MAIN(tst_Key)
#include "tst_Key.moc"
