#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "support/TestMain.h"
#include "touch/KeyStyle.h"
#include "touch/TextButton.h"

#include <QSignalSpy>

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
        ak("Tuner CH1,gain,Gain,3,R1:GN,100 0,10,1:5,12.5,0,1");
        const Key* key = find("Tuner CH1", "gain");
        QVERIFY(key != nullptr);
        QCOMPARE(key->label, QString("Gain"));
        QCOMPARE(key->type, 3);
        QCOMPARE(key->command, QString("R1:GN"));
        QCOMPARE(key->units, QString("100 0"));
        QCOMPARE(key->param, 10);
        QCOMPARE(key->options, QString("1:5"));
        QCOMPARE(key->value, 12.5);
        QCOMPARE(key->state, 1);
        QVERIFY(key->linkedKeys.isEmpty());
    }

    void AK_with_too_few_fields_is_ignored_even_for_an_existing_key()
    {
        ak("M,k,Old,5,OLD,,0,,0,0,1");
        ak("M,k,New,5,NEW,,0,,0,0");
        ak("N,k,New,5,NEW,,0,,0,0");
        QCOMPARE(find("M", "k")->label, QString("Old"));
        QVERIFY(m_menus->book.find("N") == nullptr);
        m_menus->defineKey({});
    }

    void a_second_AK_updates_the_key()
    {
        ak("M,k,Old,5,OLD,u,1,o,0,0,1");
        ak("M,k,New,0,NEW,v,2,p,0,1,0");
        QCOMPARE(m_menus->book.find("M")->keys.size(), 1);
        const Key* key = find("M", "k");
        QCOMPARE(key->label, QString("New"));
        QCOMPARE(key->GetKey()->text(), QString("New"));
        QCOMPARE(key->type, 0);
        QCOMPARE(key->command, QString("NEW"));
        QCOMPARE(key->units, QString("v"));
        QCOMPARE(key->param, 2);
        QCOMPARE(key->options, QString("p"));
        QVERIFY(key->tog());
        QCOMPARE(key->state, 0);
    }

    void only_CV_changes_a_value_other_than_0()
    {
        ak("M,k,L,1,C,,0,,5,0,1");
        ak("M,k,L,1,C,,0,,7,0,1");
        QCOMPARE(find("M", "k")->value, 5.0);
        cv("M,k,7,0");
        QCOMPARE(find("M", "k")->value, 7.0);
        cv("M,k,0,0");
        ak("M,k,L,1,C,,0,,9,0,1");
        QCOMPARE(find("M", "k")->value, 9.0);
    }

    void AK_stores_the_display_state_without_showing_it()
    {
        ak("M,k,L,5,C,,0,,0,0,2");
        QPushButton* button = find("M", "k")->GetKey();
        m_area->show();
        QVERIFY(!button->isHidden());
        QVERIFY(button->isEnabled());
        QCOMPARE(button->styleSheet(), keyStyle::enabled(false));
    }

    void a_second_AK_stores_the_display_state_without_showing_it()
    {
        ak("M,k,L,5,C,,0,,0,0,1");
        ck("M,k,1");
        const Key* key = find("M", "k");
        m_area->show();
        for (const int state : {0, 2}) {
            ak(QString("M,k,L,5,C,,0,,0,0,%1").arg(state));
            QCOMPARE(key->state, state);
            QVERIFY(key->GetKey()->isEnabled());
            QVERIFY(!key->GetKey()->isHidden());
            QCOMPARE(key->GetKey()->styleSheet(), keyStyle::enabled(false));
        }
    }

    void the_toggle_of_an_AK_colours_the_key()
    {
        ak("M,k,L,0,C,,0,,0,1,1");
        QCOMPARE(find("M", "k")->GetKey()->styleSheet(), keyStyle::toggled(false));
        ak("M,k,L,0,C,,0,,0,0,1");
        QCOMPARE(find("M", "k")->GetKey()->styleSheet(), keyStyle::enabled(false));
    }

    void CV_sets_value_and_toggle()
    {
        ak("M,k,L,0,C,,0,,0,0,1");
        cv("M,k,3.5,1");
        QCOMPARE(find("M", "k")->value, 3.5);
        QVERIFY(find("M", "k")->tog());
        cv("M,k,abc,yes");
        QCOMPARE(find("M", "k")->value, 0.0);
        QVERIFY(!find("M", "k")->tog());
    }

    void missing_fields_count_as_0_and_clear()
    {
        ak("M,k,L,0,C,,0,,0,0,1");
        cv("M,k,3.5,1");
        cv("M,k");
        QCOMPARE(find("M", "k")->value, 0.0);
        QVERIFY(!find("M", "k")->tog());
        ck("M,k");
        QCOMPARE(find("M", "k")->state, 0);
        QVERIFY(!find("M", "k")->GetKey()->isEnabled());
        cv("M");
        ck("M");
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
        ak("M,k,L,5,C,,0,,0,0,1");
        m_area->show();
        ck("M,k," + field);
        const Key* key = find("M", "k");
        QTEST(key->state, "state");
        QTEST(key->GetKey()->isHidden(), "hidden");
        QTEST(key->GetKey()->isEnabled(), "enabled");
    }

    void SK_asks_for_the_menu_it_names()
    {
        ak("M,k,L,5,C,,0,,0,0,1");
        QSignalSpy asked(m_menus.get(), &MenuMessages::showMenu);
        m_menus->selectMenu({"N"});
        m_menus->selectMenu({});
        QCOMPARE(asked.count(), 0);
        m_menus->selectMenu({"M"});
        QCOMPARE(asked.count(), 1);
        QCOMPARE(asked.first().first().value<KeyBoard*>(), m_menus->book.find("M"));
    }

    void unknown_menus_and_keys_are_ignored()
    {
        ak("M,k,L,5,C,,0,,1,0,1");
        for (const char* fields : {"N,k,5,1", "M,x,5,1", "", ",,,", "M"}) {
            cv(fields);
            ck(fields);
        }
        QCOMPARE(find("M", "k")->value, 1.0);
        QCOMPARE(find("M", "k")->state, 1);
        QCOMPARE(m_menus->book.pages.size(), 1);
    }

    void a_copy_has_all_fields_of_its_source_and_both_are_linked()
    {
        ak("M,k,Label,1,CMD,units,4,options,2.5,1,1");
        m_menus->copyKey({"N", "M", "k"});
        Key* source = find("M", "k");
        Key* copy = find("N", "k");
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
        ak("M,k,Label,2,CMD,,0,0 A:1 B:2 C,0,0,1");
        m_menus->lockChoices({"M", "k", "0:2"});
        m_menus->copyKey({"N", "M", "k"});
        QCOMPARE(find("N", "k")->itemIds, (QList<int>{0, 2}));
    }

    void copying_a_missing_key_only_creates_the_target_menu_data()
    {
        QTest::addColumn<QStringList>("fields");
        QTest::newRow("no such menu") << QStringList{"N", "X", "k"};
        QTest::newRow("no such key") << QStringList{"N", "M", "x"};
        QTest::newRow("one field") << QStringList{"N"};
    }

    void copying_a_missing_key_only_creates_the_target_menu()
    {
        QFETCH(QStringList, fields);
        ak("M,k,L,5,C,,0,,0,0,1");
        m_menus->copyKey(fields);
        QVERIFY(m_menus->book.find("N") != nullptr);
        QVERIFY(m_menus->book.find("N")->keys.isEmpty());
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
        ak("M,k,L,0,C,,0,,0,0,1");
        m_menus->copyKey({"N", "M", "k"});
        cv(menu + ",k,4,1");
        ck(menu + ",k,2");
        ak(menu + ",k,New,0,D,u,3,o,9,1,2");
        for (const char* each : {"M", "N"}) {
            const Key* key = find(each, "k");
            QCOMPARE(key->value, 4.0); // not 0, so AK does not change it
            QVERIFY(key->tog());
            QCOMPARE(key->state, 2);
            QVERIFY(key->GetKey()->isHidden());
            QCOMPARE(key->label, QString("New"));
            QCOMPARE(key->GetKey()->text(), QString("New"));
            QCOMPARE(key->command, QString("D"));
        }
    }

    void a_pending_press_waits_for_a_message_about_the_key_data()
    {
        QTest::addColumn<QString>("pressed");
        QTest::addColumn<QString>("message");
        QTest::addColumn<bool>("pending");
        QTest::newRow("AK") << "M"
                            << "AK,M,k,L,0,C,,0,,0,1,1" << false;
        QTest::newRow("CV") << "M"
                            << "CV,M,k,0,1" << false;
        QTest::newRow("CV that says no") << "M"
                                         << "CV,M,k,0,0" << false;
        QTest::newRow("CK") << "M"
                            << "CK,M,k,1" << false;
        QTest::newRow("AK for the source of a copy") << "N"
                                                     << "AK,M,k,L,0,C,,0,,0,1,1" << false;
        QTest::newRow("CV for the source of a copy") << "N"
                                                     << "CV,M,k,0,1" << false;
        QTest::newRow("CK for the source of a copy") << "N"
                                                     << "CK,M,k,1" << false;
        QTest::newRow("CV for the copy of a source") << "M"
                                                     << "CV,N,k,0,1" << false;
        QTest::newRow("AK that is too short") << "M"
                                              << "AK,M,k,L,0,C,,0,,0,1" << true;
        QTest::newRow("CV for another key") << "M"
                                            << "CV,M,other,0,1" << true;
        QTest::newRow("CV for another menu") << "M"
                                             << "CV,O,k,0,1" << true;
        QTest::newRow("EI") << "M"
                            << "EI,M,k,0" << true;
        QTest::newRow("SK") << "M"
                            << "SK,M" << true;
    }
    void a_pending_press_waits_for_a_message_about_the_key()
    {
        QFETCH(QString, pressed);
        QFETCH(QString, message);
        QFETCH(bool, pending);
        ak("M,k,L,0,C,,0,,0,0,1");
        ak("M,other,L,0,C,,0,,0,0,1");
        ak("O,k,L,0,C,,0,,0,0,1");
        m_menus->copyKey({"N", "M", "k"});
        Key* key = find(pressed, "k");
        const auto* button = qobject_cast<TextButton*>(key->GetKey());
        key->GetKey()->click();
        QVERIFY(button->marks().isPending);
        QStringList fields = message.split(',');
        const QString word = fields.takeFirst();
        if (word == "AK") {
            m_menus->defineKey(fields);
        } else if (word == "CV") {
            m_menus->changeValue(fields);
        } else if (word == "CK") {
            m_menus->changeState(fields);
        } else if (word == "EI") {
            m_menus->lockChoices(fields);
        } else {
            m_menus->selectMenu(fields);
        }
        QCOMPARE(button->marks().isPending, pending);
        QCOMPARE(key->isPending(), pending);
    }

    void an_ignored_part_of_a_message_is_logged_data()
    {
        QTest::addColumn<QString>("word");
        QTest::addColumn<QString>("fields");
        QTest::addColumn<QStringList>("logged");
        QTest::newRow("a position that is no number")
            << "EI"
            << "M,k,0:x:1" << QStringList{"EI: no position x"};
        QTest::newRow("a negative position") << "EI"
                                             << "M,k,-1" << QStringList{"EI: no position -1"};
        QTest::newRow("positions that are carried out") << "EI"
                                                        << "M,k,0:1" << QStringList{};
        QTest::newRow("a state without a meaning") << "CK"
                                                   << "M,k,3" << QStringList{"CK: no state 3"};
        QTest::newRow("a state that is carried out") << "CK"
                                                     << "M,k,2" << QStringList{};
        QTest::newRow("a value that is out of range")
            << "IK"
            << "L,9,C,,0,,,1e99" << QStringList{"IK: value out of range: 1e99"};
        QTest::newRow("a value that is infinite")
            << "IK"
            << "L,9,C,,0,,,inf" << QStringList{"IK: value out of range: inf"};
    }
    void an_ignored_part_of_a_message_is_logged()
    {
        QFETCH(QString, word);
        QFETCH(QString, fields);
        QFETCH(QStringList, logged);
        ak("M,k,L,2,C,,0,0 A:1 B,0,0,1");
        static QStringList lines;
        lines.clear();
        QLoggingCategory::setFilterRules("qn740.menus.debug=true");
        const QtMessageHandler before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& text) { lines += text; });
        const QStringList list = fields.split(',');
        if (word == "EI") {
            m_menus->lockChoices(list);
        } else if (word == "CK") {
            m_menus->changeState(list);
        } else {
            m_menus->pressImmediately(list);
        }
        qInstallMessageHandler(before);
        QLoggingCategory::setFilterRules("");
        QCOMPARE(lines, logged);
    }

    void AK_sets_the_value_of_every_linked_key_whose_own_is_0()
    {
        ak("M,k,L,0,C,,0,,4,0,1");
        m_menus->copyKey({"N", "M", "k"});
        find("N", "k")->value = 0.0;
        ak("M,k,L,0,C,,0,,9,0,1");
        QCOMPARE(find("M", "k")->value, 4.0);
        QCOMPARE(find("N", "k")->value, 9.0);
    }

    void a_copy_still_changes_when_its_source_is_deleted()
    {
        ak("M,k,L,5,C,,0,,0,0,1");
        m_menus->copyKey({"N", "M", "k"});
        KeyBoard* source = m_menus->book.find("M");
        m_menus->book.pages.removeOne(source);
        delete source;
        ck("N,k,0");
        cv("N,k,3,0");
        QCOMPARE(find("N", "k")->state, 0);
        QCOMPARE(find("N", "k")->value, 3.0);
    }

    void AK_keys_of_a_main_menu_go_to_its_options()
    {
        auto* main = new KeyBoard;
        main->new_mm_keyboard("Main", 5, 5);
        main->row = 5;
        m_menus->book.add(main);
        for (int i = 0; i < 8; ++i) {
            ak(QString("Main,k%1,L,5,C,,0,,0,0,1").arg(i));
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
        pax->new_PAX_mm_keyboard("PAX", 5, 2);
        pax->row = 5;
        m_menus->book.add(pax);
        for (int i = 0; i < 3; ++i) {
            ak(QString("PAX,k%1,L,5,C,,0,,0,0,1,1").arg(i));
        }
        ak("PAX,o,L,5,C,,0,,0,0,1,0");
        QCOMPARE(pax->chan1Grid->itemAtPosition(0, 0)->widget(), pax->buttons.at(0));
        QCOMPARE(pax->chan1Grid->itemAtPosition(0, 1)->widget(), pax->buttons.at(1));
        QCOMPARE(pax->chan1Grid->itemAtPosition(1, 0)->widget(), pax->buttons.at(2));
        QCOMPARE(pax->optGrid->itemAtPosition(0, 0)->widget(), pax->buttons.at(3));
    }

    void the_normal_main_menu_ignores_the_fixed_field()
    {
        auto* main = new KeyBoard;
        main->new_mm_keyboard("Main", 5, 5);
        main->row = 5;
        m_menus->book.add(main);
        ak("Main,k,L,5,C,,0,,0,0,1,1");
        QCOMPARE(main->optGrid->itemAtPosition(0, 0)->widget(), main->buttons.at(0));
    }

private:
    void ak(const QString& fields) { m_menus->defineKey(fields.split(',')); }
    void cv(const QString& fields) { m_menus->changeValue(fields.split(',')); }
    void ck(const QString& fields) { m_menus->changeState(fields.split(',')); }
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
