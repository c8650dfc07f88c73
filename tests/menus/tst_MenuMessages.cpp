#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/Limits.h"
#include "menus/MenuMessages.h"
#include "popups/PopUpSlider.h"
#include "support/PopUps.h"
#include "support/TestMain.h"
#include "touch/KeyStyle.h"
#include "touch/TextButton.h"

#include <QElapsedTimer>
#include <QMap>
#include <QSignalSpy>
#include <QSlider>

using namespace Qt::StringLiterals;

namespace {

// Counts the paints of every widget below one.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget* top)
    {
        for (QWidget* widget : top->findChildren<QWidget*>()) {
            widget->installEventFilter(this);
        }
    }

    QMap<QObject*, int> paints;
    int layouts = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            ++paints[watched];
        }
        layouts += event->type() == QEvent::LayoutRequest ? 1 : 0;
        return false;
    }
};

} // namespace

class tst_MenuMessages : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_area = std::make_unique<QWidget>();
        m_stack = new QStackedLayout(m_area.get());
        m_menus = std::make_unique<MenuMessages>(m_stack);
    }

    void cleanup()
    {
        m_menus.reset();
        m_area.reset();
    }

    void AK_creates_menu_and_key()
    {
        ak(u"Tuner CH1,gain,Gain,3,R1:GN,100 0,10,1:5,12.5,0,1"_s);
        const Key* key = find(u"Tuner CH1"_s, u"gain"_s);
        QVERIFY(key != nullptr);
        QCOMPARE(key->label, u"Gain"_s);
        QCOMPARE(key->type, 3);
        QCOMPARE(key->command, u"R1:GN"_s);
        QCOMPARE(key->units, u"100 0"_s);
        QCOMPARE(key->param, 10);
        QCOMPARE(key->options, u"1:5"_s);
        QCOMPARE(key->value, 12.5);
        QCOMPARE(key->state, 1);
        QVERIFY(key->linkedKeys.isEmpty());
    }

    void AK_with_too_few_fields_is_ignored_even_for_an_existing_key()
    {
        ak(u"M,k,Old,5,OLD,,0,,0,0,1"_s);
        ak(u"M,k,New,5,NEW,,0,,0,0"_s);
        ak(u"N,k,New,5,NEW,,0,,0,0"_s);
        QCOMPARE(find(u"M"_s, u"k"_s)->label, u"Old"_s);
        QVERIFY(m_menus->book.find(u"N"_s) == nullptr);
        m_menus->defineKey({});
    }

    void a_second_AK_updates_the_key()
    {
        ak(u"M,k,Old,5,OLD,u,1,o,0,0,1"_s);
        ak(u"M,k,New,0,NEW,v,2,p,0,1,0"_s);
        QCOMPARE(m_menus->book.find(u"M"_s)->keys.size(), 1);
        const Key* key = find(u"M"_s, u"k"_s);
        QCOMPARE(key->label, u"New"_s);
        QCOMPARE(key->GetKey()->text(), u"New"_s);
        QCOMPARE(key->type, 0);
        QCOMPARE(key->command, u"NEW"_s);
        QCOMPARE(key->units, u"v"_s);
        QCOMPARE(key->param, 2);
        QCOMPARE(key->options, u"p"_s);
        QVERIFY(key->tog());
        QCOMPARE(key->state, 0);
    }

    void only_CV_changes_a_value_other_than_0()
    {
        ak(u"M,k,L,1,C,,0,,5,0,1"_s);
        ak(u"M,k,L,1,C,,0,,7,0,1"_s);
        QCOMPARE(find(u"M"_s, u"k"_s)->value, 5.0);
        cv(u"M,k,7,0"_s);
        QCOMPARE(find(u"M"_s, u"k"_s)->value, 7.0);
        cv(u"M,k,0,0"_s);
        ak(u"M,k,L,1,C,,0,,9,0,1"_s);
        QCOMPARE(find(u"M"_s, u"k"_s)->value, 9.0);
    }

    void AK_stores_the_display_state_without_showing_it()
    {
        ak(u"M,k,L,5,C,,0,,0,0,2"_s);
        QPushButton* button = find(u"M"_s, u"k"_s)->GetKey();
        m_area->show();
        QVERIFY(!button->isHidden());
        QVERIFY(button->isEnabled());
        QCOMPARE(button->styleSheet(), keyStyle::enabled(false));
    }

    void a_second_AK_stores_the_display_state_without_showing_it()
    {
        ak(u"M,k,L,5,C,,0,,0,0,1"_s);
        ck(u"M,k,1"_s);
        const Key* key = find(u"M"_s, u"k"_s);
        m_area->show();
        for (const int state : {0, 2}) {
            ak(u"M,k,L,5,C,,0,,0,0,%1"_s.arg(state));
            QCOMPARE(key->state, state);
            QVERIFY(key->GetKey()->isEnabled());
            QVERIFY(!key->GetKey()->isHidden());
            QCOMPARE(key->GetKey()->styleSheet(), keyStyle::enabled(false));
        }
    }

    void the_toggle_of_an_AK_colours_the_key()
    {
        ak(u"M,k,L,0,C,,0,,0,1,1"_s);
        QCOMPARE(find(u"M"_s, u"k"_s)->GetKey()->styleSheet(), keyStyle::toggled(false));
        ak(u"M,k,L,0,C,,0,,0,0,1"_s);
        QCOMPARE(find(u"M"_s, u"k"_s)->GetKey()->styleSheet(), keyStyle::enabled(false));
    }

    void CV_sets_value_and_toggle()
    {
        ak(u"M,k,L,0,C,,0,,0,0,1"_s);
        cv(u"M,k,3.5,1"_s);
        QCOMPARE(find(u"M"_s, u"k"_s)->value, 3.5);
        QVERIFY(find(u"M"_s, u"k"_s)->tog());
        cv(u"M,k,abc,yes"_s);
        QCOMPARE(find(u"M"_s, u"k"_s)->value, 0.0);
        QVERIFY(!find(u"M"_s, u"k"_s)->tog());
    }

    void missing_fields_count_as_0_and_clear()
    {
        ak(u"M,k,L,0,C,,0,,0,0,1"_s);
        cv(u"M,k,3.5,1"_s);
        cv(u"M,k"_s);
        QCOMPARE(find(u"M"_s, u"k"_s)->value, 0.0);
        QVERIFY(!find(u"M"_s, u"k"_s)->tog());
        ck(u"M,k"_s);
        QCOMPARE(find(u"M"_s, u"k"_s)->state, 0);
        QVERIFY(!find(u"M"_s, u"k"_s)->GetKey()->isEnabled());
        cv(u"M"_s);
        ck(u"M"_s);
        m_menus->changeValue({});
        m_menus->changeState({});
        m_menus->selectMenu({});
    }

    void CK_stores_and_applies_the_state_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<int>("state");
        QTest::addColumn<bool>("hidden");
        QTest::addColumn<bool>("enabled");
        QTest::newRow("0") << "0" << 0 << false << false;
        QTest::newRow("1") << "1" << 1 << false << true;
        QTest::newRow("2") << "2" << 2 << true << true;
        QTest::newRow("3") << "3" << 3 << false << true;
        QTest::newRow("not a number") << "x" << 0 << false << false;
    }

    void CK_stores_and_applies_the_state()
    {
        QFETCH(QString, field);
        ak(u"M,k,L,5,C,,0,,0,0,1"_s);
        m_area->show();
        ck(u"M,k,"_s + field);
        const Key* key = find(u"M"_s, u"k"_s);
        QTEST(key->state, "state");
        QTEST(key->GetKey()->isHidden(), "hidden");
        QTEST(key->GetKey()->isEnabled(), "enabled");
    }

    void SK_asks_for_the_menu_it_names()
    {
        ak(u"M,k,L,5,C,,0,,0,0,1"_s);
        QSignalSpy asked(m_menus.get(), &MenuMessages::showMenu);
        m_menus->selectMenu({u"N"_s});
        m_menus->selectMenu({});
        QCOMPARE(asked.count(), 0);
        m_menus->selectMenu({u"M"_s});
        QCOMPARE(asked.count(), 1);
        QCOMPARE(asked.first().first().value<KeyBoard*>(), m_menus->book.find(u"M"_s));
    }

    void unknown_menus_and_keys_are_ignored()
    {
        ak(u"M,k,L,5,C,,0,,1,0,1"_s);
        for (const char* fields : {"N,k,5,1", "M,x,5,1", "", ",,,", "M"}) {
            cv(QString::fromUtf8(fields));
            ck(QString::fromUtf8(fields));
        }
        QCOMPARE(find(u"M"_s, u"k"_s)->value, 1.0);
        QCOMPARE(find(u"M"_s, u"k"_s)->state, 1);
        QCOMPARE(m_menus->book.pages.size(), 1);
    }

    void a_copy_has_all_fields_of_its_source_and_both_are_linked()
    {
        ak(u"M,k,Label,1,CMD,units,4,options,2.5,1,1"_s);
        m_menus->copyKey({u"N"_s, u"M"_s, u"k"_s});
        Key* source = find(u"M"_s, u"k"_s);
        Key* copy = find(u"N"_s, u"k"_s);
        QVERIFY(copy != nullptr);
        QCOMPARE(copy->label, source->label);
        QCOMPARE(copy->type, source->type);
        QCOMPARE(copy->command, source->command);
        QCOMPARE(copy->units, source->units);
        QCOMPARE(copy->param, source->param);
        QCOMPARE(copy->options, source->options);
        QCOMPARE(copy->value, source->value);
        QCOMPARE(copy->tog(), source->tog());
        QCOMPARE(copy->state, source->state);
        QCOMPARE(copy->linkedKeys, QList<QPointer<Key>>{source});
        QCOMPARE(source->linkedKeys, QList<QPointer<Key>>{copy});
    }

    void a_copy_keeps_the_locked_choices_of_its_source()
    {
        ak(u"M,k,Label,2,CMD,,0,0 A:1 B:2 C,0,0,1"_s);
        m_menus->lockChoices({u"M"_s, u"k"_s, u"0:2"_s});
        m_menus->copyKey({u"N"_s, u"M"_s, u"k"_s});
        QCOMPARE(find(u"N"_s, u"k"_s)->itemIds, (QList<int>{0, 2}));
    }

    void EI_with_too_few_fields_leaves_the_locked_choices()
    {
        ak(u"M,k,L,2,C,,0,0 A:1 B,0,0,1"_s);
        m_menus->lockChoices({u"M"_s, u"k"_s, u"0"_s});
        m_menus->lockChoices({u"M"_s, u"k"_s});
        QCOMPARE(find(u"M"_s, u"k"_s)->itemIds, QList<int>{0});
        m_menus->lockChoices({u"M"_s, u"k"_s, u""_s});
        QCOMPARE(find(u"M"_s, u"k"_s)->itemIds, QList<int>{});
    }

    void copying_a_missing_key_only_creates_the_target_menu_data()
    {
        QTest::addColumn<QStringList>("fields");
        QTest::newRow("no such menu") << QStringList{u"N"_s, u"X"_s, u"k"_s};
        QTest::newRow("no such key") << QStringList{u"N"_s, u"M"_s, u"x"_s};
        QTest::newRow("one field") << QStringList{u"N"_s};
    }

    void copying_a_missing_key_only_creates_the_target_menu()
    {
        QFETCH(QStringList, fields);
        ak(u"M,k,L,5,C,,0,,0,0,1"_s);
        m_menus->copyKey(fields);
        QVERIFY(m_menus->book.find(u"N"_s) != nullptr);
        QVERIFY(m_menus->book.find(u"N"_s)->keys.isEmpty());
    }

    void changes_reach_both_source_and_copy_data()
    {
        QTest::addColumn<QString>("menu");
        QTest::newRow("from the source") << "M";
        QTest::newRow("from the copy") << "N";
    }

    void changes_reach_both_source_and_copy()
    {
        QFETCH(QString, menu);
        ak(u"M,k,L,0,C,,0,,0,0,1"_s);
        m_menus->copyKey({u"N"_s, u"M"_s, u"k"_s});
        cv(menu + u",k,4,1"_s);
        ck(menu + u",k,2"_s);
        ak(menu + u",k,New,0,D,u,3,o,9,1,2"_s);
        for (const char* each : {"M", "N"}) {
            const Key* key = find(QString::fromUtf8(each), u"k"_s);
            QCOMPARE(key->value, 4.0); // not 0, so AK does not change it
            QVERIFY(key->tog());
            QCOMPARE(key->state, 2);
            QVERIFY(key->GetKey()->isHidden());
            QCOMPARE(key->label, u"New"_s);
            QCOMPARE(key->GetKey()->text(), u"New"_s);
            QCOMPARE(key->command, u"D"_s);
        }
    }

    void a_pending_press_waits_for_a_message_about_the_key_data()
    {
        QTest::addColumn<QString>("pressed");
        QTest::addColumn<QString>("message");
        QTest::addColumn<bool>("pending");
        QTest::newRow("AK") << u"M"_s << u"AK,M,k,L,0,C,,0,,0,1,1"_s << false;
        QTest::newRow("CV") << u"M"_s << u"CV,M,k,0,1"_s << false;
        QTest::newRow("CV that says no") << u"M"_s << u"CV,M,k,0,0"_s << false;
        QTest::newRow("CK") << u"M"_s << u"CK,M,k,1"_s << false;
        QTest::newRow("AK for the source of a copy")
            << u"N"_s << u"AK,M,k,L,0,C,,0,,0,1,1"_s << false;
        QTest::newRow("CV for the source of a copy") << u"N"_s << u"CV,M,k,0,1"_s << false;
        QTest::newRow("CK for the source of a copy") << u"N"_s << u"CK,M,k,1"_s << false;
        QTest::newRow("CV for the copy of a source") << u"M"_s << u"CV,N,k,0,1"_s << false;
        QTest::newRow("AK that is too short") << u"M"_s << u"AK,M,k,L,0,C,,0,,0,1"_s << true;
        QTest::newRow("CV for another key") << u"M"_s << u"CV,M,other,0,1"_s << true;
        QTest::newRow("CV for another menu") << u"M"_s << u"CV,O,k,0,1"_s << true;
        QTest::newRow("EI") << u"M"_s << u"EI,M,k,0"_s << true;
        QTest::newRow("SK") << u"M"_s << u"SK,M"_s << true;
    }
    void a_pending_press_waits_for_a_message_about_the_key()
    {
        QFETCH(QString, pressed);
        QFETCH(QString, message);
        QFETCH(bool, pending);
        ak(u"M,k,L,0,C,,0,,0,0,1"_s);
        ak(u"M,other,L,0,C,,0,,0,0,1"_s);
        ak(u"O,k,L,0,C,,0,,0,0,1"_s);
        m_menus->copyKey({u"N"_s, u"M"_s, u"k"_s});
        Key* key = find(pressed, u"k"_s);
        const auto* button = qobject_cast<TextButton*>(key->GetKey());
        key->GetKey()->click();
        QVERIFY(button->marks().isPending);
        QStringList fields = message.split(u',');
        const QString word = fields.takeFirst();
        if (word == u"AK"_s) {
            m_menus->defineKey(fields);
        } else if (word == u"CV"_s) {
            m_menus->changeValue(fields);
        } else if (word == u"CK"_s) {
            m_menus->changeState(fields);
        } else if (word == u"EI"_s) {
            m_menus->lockChoices(fields);
        } else {
            m_menus->selectMenu(fields);
        }
        QCOMPARE(button->marks().isPending, pending);
        QCOMPARE(key->isPending(), pending);
    }

    void a_thousand_choices_can_be_locked()
    {
        ak(u"M,k,Label,2,CMD,,0,0 A:1 B:2 C,0,0,1"_s);
        QString positions;
        for (int n = 0; n < menuLimits::MaxLocked + 5; ++n) {
            positions += QString::number(n) + u':';
        }
        m_menus->lockChoices({u"M"_s, u"k"_s, positions});
        QCOMPARE(find(u"M"_s, u"k"_s)->itemIds.size(), menuLimits::MaxLocked);
    }

    void an_ignored_part_of_a_message_is_logged_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<QString>("fields");
        QTest::addColumn<QStringList>("logged");
        QTest::newRow("a position that is no number")
            << u"EI"_s << u"M,k,0:x:1"_s << QStringList{u"EI: no position x"_s};
        QTest::newRow("a negative position")
            << u"EI"_s << u"M,k,-1"_s << QStringList{u"EI: no position -1"_s};
        QTest::newRow("positions that are carried out") << u"EI"_s << u"M,k,0:1"_s << QStringList{};
        QTest::newRow("a state without a meaning")
            << u"CK"_s << u"M,k,3"_s << QStringList{u"CK: no state 3"_s};
        QTest::newRow("choices of a menu that does not exist")
            << u"EI"_s << u"N,k,0"_s << QStringList{u"EI: no menu N"_s};
        QTest::newRow("choices of a key that does not exist")
            << u"EI"_s << u"M,x,0"_s << QStringList{u"EI: no key x"_s};
        QTest::newRow("a value of a menu that does not exist")
            << u"CV"_s << u"N,k"_s << QStringList{u"CV: no menu N"_s};
        QTest::newRow("a value without a key") << u"CV"_s << u"N"_s << QStringList{};
        QTest::newRow("a menu that does not exist")
            << u"SK"_s << u"N"_s << QStringList{u"SK: no menu N"_s};
        QTest::newRow("a menu that is shown") << u"SK"_s << u"M"_s << QStringList{};
        QTest::newRow("a negative state")
            << u"CK"_s << u"M,k,-1"_s << QStringList{u"CK: no state -1"_s};
        QTest::newRow("the smallest state") << u"CK"_s << u"M,k,0"_s << QStringList{};
        QTest::newRow("a state that is carried out") << u"CK"_s << u"M,k,2"_s << QStringList{};
        QTest::newRow("a value that is out of range")
            << u"IK"_s << u"L,9,C,,0,,,1e99"_s << QStringList{u"IK: value out of range: 1e99"_s};
        QTest::newRow("a value that is infinite")
            << u"IK"_s << u"L,9,C,,0,,,inf"_s << QStringList{u"IK: value out of range: inf"_s};
    }
    void an_ignored_part_of_a_message_is_logged()
    {
        QFETCH(QString, word);
        QFETCH(QString, fields);
        QFETCH(QStringList, logged);
        ak(u"M,k,L,2,C,,0,0 A:1 B,0,0,1"_s);
        static QStringList lines;
        lines.clear();
        QLoggingCategory::setFilterRules(u"qn740.menus.debug=true"_s);
        const QtMessageHandler before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& text) { lines += text; });
        const QStringList list = fields.split(u',');
        if (word == u"EI"_s) {
            m_menus->lockChoices(list);
        } else if (word == u"CK"_s) {
            m_menus->changeState(list);
        } else if (word == u"CV"_s) {
            m_menus->changeValue(list);
        } else if (word == u"SK"_s) {
            m_menus->selectMenu(list);
        } else {
            m_menus->pressImmediately(list);
        }
        qInstallMessageHandler(before);
        QLoggingCategory::setFilterRules(u""_s);
        QCOMPARE(lines, logged);
    }

    void AK_sets_the_value_of_every_linked_key_whose_own_is_0()
    {
        ak(u"M,k,L,0,C,,0,,4,0,1"_s);
        m_menus->copyKey({u"N"_s, u"M"_s, u"k"_s});
        find(u"N"_s, u"k"_s)->value = 0.0;
        ak(u"M,k,L,0,C,,0,,9,0,1"_s);
        QCOMPARE(find(u"M"_s, u"k"_s)->value, 4.0);
        QCOMPARE(find(u"N"_s, u"k"_s)->value, 9.0);
    }

    void a_copy_still_changes_when_its_source_is_deleted()
    {
        ak(u"M,k,L,5,C,,0,,0,0,1"_s);
        m_menus->copyKey({u"N"_s, u"M"_s, u"k"_s});
        KeyBoard* source = m_menus->book.find(u"M"_s);
        m_menus->book.pages.removeOne(source);
        delete source;
        ck(u"N,k,0"_s);
        cv(u"N,k,3,0"_s);
        QCOMPARE(find(u"N"_s, u"k"_s)->state, 0);
        QCOMPARE(find(u"N"_s, u"k"_s)->value, 3.0);
    }

    void the_last_position_of_an_IK_slider_is_sent_after_OK()
    {
        QSignalSpy sent(&m_menus->book, &MenuBook::keyboard_response_message);
        whenModal([](QWidget* modal) {
            modal->findChild<QSlider*>()->setValue(30);
            modal->findChild<QSlider*>()->setValue(40);
            popUps::press(modal, u"OK"_s);
        });
        QElapsedTimer clock;
        clock.start();
        m_menus->pressImmediately({u"Gain"_s, u"3"_s, u"R1:GN"_s, u"60 0"_s, u"10"_s, u""_s});
        QCOMPARE(sent.size(), 1);
        QTRY_COMPARE(sent.size(), 2);
        QVERIFY(clock.elapsed() >= PopUpSlider::ThrottleMs - 1);
        QCOMPARE(sent.at(0).first().toString(), u"\x02R1:GN30\x04"_s);
        QCOMPARE(sent.at(1).first().toString(), u"\x02R1:GN40\x04"_s);
        QTRY_VERIFY(m_menus->findChildren<Key*>().isEmpty());
    }

    void the_key_of_an_IK_is_deleted_when_its_editor_is_closed_data()
    {
        QTest::addColumn<QStringList>("fields");
        QTest::addColumn<QString>("pressed");
        QTest::newRow("toggle") << QStringList{u"L"_s, u"0"_s, u"C"_s, u""_s, u"0"_s, u""_s} << "";
        QTest::newRow("list") << QStringList{u"L"_s, u"2"_s, u"C"_s, u""_s, u"0"_s, u"0 Off:1 On"_s}
                              << "On";
        QTest::newRow("slider that sent nothing")
            << QStringList{u"L"_s, u"3"_s, u"C"_s, u"9 0"_s, u"10"_s, u""_s} << "OK";
        QTest::newRow("box") << QStringList{u"L"_s, u"77"_s, u"C"_s, u""_s, u"0"_s, u""_s} << "OK";
    }
    void the_key_of_an_IK_is_deleted_when_its_editor_is_closed()
    {
        QFETCH(QStringList, fields);
        QFETCH(QString, pressed);
        if (!pressed.isEmpty()) {
            whenModal([&](QWidget* modal) { popUps::press(modal, pressed); });
        }
        m_menus->pressImmediately(fields);
        QTRY_VERIFY(m_menus->findChildren<Key*>().isEmpty());
    }

    void the_menus_may_be_deleted_while_an_IK_waits_to_send()
    {
        whenModal([](QWidget* modal) {
            modal->findChild<QSlider*>()->setValue(30);
            modal->findChild<QSlider*>()->setValue(40);
            popUps::press(modal, u"OK"_s);
        });
        m_menus->pressImmediately({u"Gain"_s, u"3"_s, u"R1:GN"_s, u"60 0"_s, u"10"_s, u""_s});
        m_menus.reset();
        QTRY_VERIFY(qApp->findChildren<PopUpSlider*>().isEmpty());
    }

    void CV_gives_the_value_and_a_copy_knows_it()
    {
        ak(u"M,k,L,2,C,,0,0 Off:1 On,0,0,1"_s);
        QVERIFY(!find(u"M"_s, u"k"_s)->valueGiven);
        cv(u"M,k,0,0"_s);
        QVERIFY(find(u"M"_s, u"k"_s)->valueGiven);
        m_menus->copyKey({u"N"_s, u"M"_s, u"k"_s});
        QVERIFY(find(u"N"_s, u"k"_s)->valueGiven);
    }

    void what_changes_in_one_turn_is_painted_once_and_nothing_else_is()
    {
        for (int i = 0; i < 36; ++i) {
            ak(u"M,k%1,Key,0,C,,0,,0,0,1"_s.arg(i));
        }
        m_area->resize(800, 480);
        m_area->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_area.get()));
        QCoreApplication::processEvents();
        PaintCounter counter(m_area.get());
        for (const char* tog : {"1", "0", "1"}) {
            cv(u"M,k3,0,"_s + QString::fromUtf8(tog));
            cv(u"M,k20,0,"_s + QString::fromUtf8(tog));
        }
        cv(u"M,k5,7,0"_s); // shows no other face
        ck(u"M,k6,1"_s);
        QCoreApplication::processEvents();
        QMap<QObject*, int> keys;
        for (const char* id : {"k3", "k20"}) {
            keys[find(u"M"_s, QString::fromUtf8(id))->button] = 1;
        }
        QMap<QObject*, int> painted;
        for (QPushButton* button : m_area->findChildren<QPushButton*>()) {
            if (counter.paints.contains(button)) {
                painted[button] = counter.paints.value(button);
            }
        }
        QCOMPARE(painted, keys);
        QCOMPARE(counter.layouts, 0);
    }

    void changes_on_a_hidden_page_paint_nothing()
    {
        ak(u"M,k,Key,0,C,,0,,0,0,1"_s);
        ak(u"N,k,Key,0,C,,0,,0,0,1"_s);
        m_area->resize(800, 480);
        m_area->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_area.get()));
        QCoreApplication::processEvents();
        PaintCounter counter(m_area.get());
        cv(u"N,k,0,1"_s);
        ck(u"N,k,0"_s);
        ak(u"N,k,Other,0,C,,0,,0,1,1"_s);
        ak(u"N,new,New,0,C,,0,,0,0,1"_s);
        QCoreApplication::processEvents();
        QVERIFY(counter.paints.isEmpty());
        QCOMPARE(find(u"N"_s, u"k"_s)->button->styleSheet(), keyStyle::disabled(false));
    }

    void AK_keys_of_a_main_menu_go_to_its_options()
    {
        auto* main = new KeyBoard;
        main->new_mm_keyboard(u"Main"_s, 5, 5);
        main->row = 5;
        m_menus->book.add(main);
        for (int i = 0; i < 8; ++i) {
            ak(u"Main,k%1,L,5,C,,0,,0,0,1"_s.arg(i));
        }
        for (int i = 0; i < 8; ++i) {
            QCOMPARE(main->optGrid->itemAtPosition(0, i)->widget(), main->buttons.at(i));
        }
        QCOMPARE(main->row, 5);
        QCOMPARE(main->col, 8);
    }

    void fixed_AK_keys_of_the_PAX_main_menu_fill_two_columns_row_by_row()
    {
        auto* pax = new KeyBoard;
        pax->new_PAX_mm_keyboard(u"PAX"_s, 5, 2);
        pax->row = 5;
        m_menus->book.add(pax);
        for (int i = 0; i < 3; ++i) {
            ak(u"PAX,k%1,L,5,C,,0,,0,0,1,1"_s.arg(i));
        }
        ak(u"PAX,o,L,5,C,,0,,0,0,1,0"_s);
        QCOMPARE(pax->chan1Grid->itemAtPosition(0, 0)->widget(), pax->buttons.at(0));
        QCOMPARE(pax->chan1Grid->itemAtPosition(0, 1)->widget(), pax->buttons.at(1));
        QCOMPARE(pax->chan1Grid->itemAtPosition(1, 0)->widget(), pax->buttons.at(2));
        QCOMPARE(pax->optGrid->itemAtPosition(0, 0)->widget(), pax->buttons.at(3));
    }

    void the_normal_main_menu_ignores_the_fixed_field()
    {
        auto* main = new KeyBoard;
        main->new_mm_keyboard(u"Main"_s, 5, 5);
        main->row = 5;
        m_menus->book.add(main);
        ak(u"Main,k,L,5,C,,0,,0,0,1,1"_s);
        QCOMPARE(main->optGrid->itemAtPosition(0, 0)->widget(), main->buttons.at(0));
    }

    void the_text_of_one_definition_is_limited_data()
    {
        QTest::addColumn<qsizetype>("characters");
        QTest::addColumn<bool>("isTaken");
        QTest::newRow("as long") << menuLimits::MaxKeyCharacters << true;
        QTest::newRow("longer") << menuLimits::MaxKeyCharacters + 1 << false;
    }

    void the_text_of_one_definition_is_limited()
    {
        QFETCH(qsizetype, characters);
        QFETCH(bool, isTaken);
        const QString options(characters - 6, u'a'); // without "M", "k", "L", "C:", "u"
        ak(u"M,k,L,5,C:,u,0,%1,0,0,1,0"_s.arg(options));
        QCOMPARE(m_menus->book.pages.size(), isTaken ? 1 : 0);
        ak(u"M,k,L,5,C:,u,0,o,0,0,1,0"_s);
        ak(u"M,k,L,5,C:,u,0,%1,0,0,1,0"_s.arg(options));
        QCOMPARE(find(u"M"_s, u"k"_s)->options.size(), isTaken ? options.size() : 1);
        m_menus->lockChoices({u"M"_s, u"k"_s, u"7"_s + QString(characters - 1, u':')});
        QCOMPARE(find(u"M"_s, u"k"_s)->itemIds.size(), isTaken ? 1 : 0);
        const QSignalSpy sent(&m_menus->book, &MenuBook::keyboard_response_message);
        m_menus->pressImmediately(
            {u"L"_s, u"5"_s, u"C"_s, u"u"_s, u"0"_s, QString(characters - 6, u'o'), u"0"_s});
        QCOMPARE(sent.size(), isTaken ? 1 : 0);
    }

    void a_definition_for_which_there_is_no_room_changes_nothing()
    {
        ak(u"M,k,L,5,C:,u,0,options,0,0,1,0"_s);
        m_menus->copyKey({u"Copies"_s, u"M"_s, u"k"_s});
        const QList<KeyBoard*> before = m_menus->book.pages;
        fill();
        ak(u"New,k,L,5,C:,,0,,0,0,1,0"_s);
        ak(u"M,new,L,5,C:,,0,,0,0,1,0"_s);
        m_menus->copyKey({u"New"_s, u"M"_s, u"k"_s});
        m_menus->copyKey({u"M"_s, u"M"_s, u"k"_s});
        QCOMPARE(m_menus->book.pages, before);
        QCOMPARE(before.at(0)->keys.size(), 1);
        ak(u"M,k,L,5,C:,u,0,options+,0,0,1,0"_s);
        QCOMPARE(find(u"M"_s, u"k"_s)->options, u"options"_s);
        ak(u"M,k,L,5,C:,u,0,short,0,0,1,0"_s);
        QCOMPARE(find(u"M"_s, u"k"_s)->options, u"short"_s);
        // Two of the key and two of its copy are left.
        QVERIFY(m_menus->book.limits.takesChange(0, 4));
        QVERIFY(!m_menus->book.limits.takesChange(0, 1));
    }

    void a_key_for_which_there_is_no_room_makes_no_menu()
    {
        ak(u"M,k,L,5,C:,,0,,0,0,1,0"_s);
        KeyBoard* filler = m_menus->book.findOrCreate(u"F"_s);
        filler->keys.resize(menuLimits::MaxKeys - 2); // one key is still missing
        m_menus->copyKey({u"M"_s, u"M"_s, u"k"_s});
        QCOMPARE(m_menus->book.pages.at(0)->keys.size(), 2);
        ak(u"M,k2,L,5,C:,,0,,0,0,1,0"_s);
        ak(u"New,k,L,5,C:,,0,,0,0,1,0"_s);
        m_menus->copyKey({u"M"_s, u"M"_s, u"k"_s});
        QCOMPARE(m_menus->book.pages.at(0)->keys.size(), 2);
        QCOMPARE(m_menus->book.pages.size(), 2);
        filler->keys.clear();
    }

private:
    // Takes the room for all characters.
    void fill()
    {
        m_menus->book.limits.takesChange(0, menuLimits::MaxCharacters - 100);
        while (m_menus->book.limits.takesChange(0, 1)) {
        }
    }

    void ak(const QString& fields) { m_menus->defineKey(fields.split(u',')); }
    void cv(const QString& fields) { m_menus->changeValue(fields.split(u',')); }
    void ck(const QString& fields) { m_menus->changeState(fields.split(u',')); }
    Key* find(const QString& menu, const QString& key)
    {
        return MenuBook::findKey(m_menus->book.find(menu), key);
    }

    std::unique_ptr<QWidget> m_area;
    QStackedLayout* m_stack = nullptr;
    std::unique_ptr<MenuMessages> m_menus;
};

QN740_TEST_MAIN(tst_MenuMessages)
#include "tst_MenuMessages.moc"
