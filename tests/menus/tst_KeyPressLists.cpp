#include "menus/Key.h"
#include "support/PopUps.h"
#include "support/TestMain.h"

#include <QGridLayout>
#include <QSlider>

#include <cmath>

using namespace Qt::StringLiterals;

// Presses of the keys that open a selection list, a slider or a file board.
class tst_KeyPressLists : public QObject
{
    Q_OBJECT

    static std::unique_ptr<Key> newKey(int type, const QString& options)
    {
        auto key = std::make_unique<Key>();
        key->type = type;
        key->label = u"Mode"_s;
        key->command = u"MOD "_s;
        key->options = options;
        return key;
    }

private slots:
    void a_chosen_value_is_sent()
    {
        const auto key = newKey(Key::Selection, u"0 Off:1 On"_s);
        QSignalSpy spy(key.get(), &Key::response_message);
        whenModal([](QWidget* modal) {
            QCOMPARE(modal->windowTitle(), u"Select Mode value"_s);
            popUps::press(modal, u"On"_s);
        });
        key->key_button_pushed();
        QCOMPARE(spy.size(), 1);
        QCOMPARE(spy.first().first().toString(), u"\x02MOD 1\x04"_s);
    }

    void a_cancelled_list_sends_nothing()
    {
        const auto key = newKey(Key::Selection, u"0 Off:1 On"_s);
        QSignalSpy spy(key.get(), &Key::response_message);
        whenModal([](QWidget* modal) { popUps::press(modal, u"Cancel"_s); });
        key->key_button_pushed();
        QVERIFY(spy.isEmpty());
    }

    void the_list_has_the_grid_of_its_count_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("param");
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("column");
        QTest::newRow("17") << 17 << 0 << 3 << 4;
        QTest::newRow("17, 3 columns") << 17 << 3 << 3 << 2;
        QTest::newRow("60") << 60 << 0 << 8 << 5;
    }
    void the_list_has_the_grid_of_its_count()
    {
        QFETCH(int, count);
        QFETCH(int, param);
        QFETCH(int, row);
        QFETCH(int, column);
        const auto key = newKey(Key::Selection, popUps::list(count, u"c"_s));
        key->param = param;
        whenModal([&](QWidget* modal) {
            const auto* grid = modal->findChild<QGridLayout*>();
            const QLayoutItem* at = grid->itemAtPosition(row, column);
            QVERIFY(at != nullptr);
            const int index = grid->indexOf(buttonWithText(modal, u"Cancel"_s));
            int foundRow = -1;
            int foundColumn = -1;
            int span = 0;
            grid->getItemPosition(index, &foundRow, &foundColumn, &span, &span);
            QCOMPARE(foundRow, row);
            QCOMPARE(foundColumn, column);
            popUps::dialog(modal)->reject();
        });
        key->key_button_pushed();
    }

    void item_ids_are_disabled_and_a_large_key_keeps_the_large_font()
    {
        const auto key = newKey(Key::Selection, u"0 Off:1 Sixteen charact."_s);
        key->itemIds = {0};
        key->large = true;
        whenModal([](QWidget* modal) {
            QVERIFY(!buttonWithText(modal, u"Off"_s)->isEnabled());
            QVERIFY(buttonWithText(modal, u"Sixteen charact."_s)->styleSheet().contains(u"28px"_s));
            popUps::dialog(modal)->reject();
        });
        key->key_button_pushed();
    }

    void a_file_is_sent_by_its_value_and_a_new_one_by_its_name()
    {
        const auto key = newKey(Key::File, u"s1 Night:s2 Day"_s);
        QSignalSpy spy(key.get(), &Key::response_message);
        whenModal([](QWidget* modal) { popUps::press(modal, u"Day"_s); });
        key->key_button_pushed();
        whenModal([](QWidget* modal) {
            whenModal([](QWidget* name) {
                popUps::press(name, u"x"_s);
                popUps::press(name, u"RETURN"_s);
            });
            popUps::press(modal, u"New File"_s);
        });
        key->key_button_pushed();
        whenModal([](QWidget* modal) { popUps::press(modal, u"Cancel"_s); });
        key->key_button_pushed();
        QCOMPARE(spy.size(), 2);
        QCOMPARE(spy.at(0).first().toString(), u"\x02MOD s2\x04"_s);
        QCOMPARE(spy.at(1).first().toString(), u"\x02MOD x\x04"_s);
    }

    void only_the_slider_sends_not_the_key()
    {
        const auto key = newKey(Key::Slider, u"1:5"_s);
        key->units = u"100 0"_s;
        key->param = 10;
        key->value = 42.0;
        QSignalSpy spy(key.get(), &Key::response_message);
        whenModal([&](QWidget* modal) {
            QCOMPARE(modal->windowTitle(), u"Set Mode Value"_s);
            QCOMPARE(modal->findChild<QLabel*>(u"readoutLabel"_s)->text(), u"42"_s);
            popUps::press(modal, u"+5 >"_s);
            QCOMPARE(spy.size(), 1);
            popUps::press(modal, u"OK"_s);
        });
        key->key_button_pushed();
        QCOMPARE(spy.size(), 1);
        QCOMPARE(spy.first().first().toString(), u"\x02MOD 47\x04"_s);
    }

    void the_last_position_is_sent_after_ok()
    {
        const auto key = newKey(Key::Slider, u""_s);
        key->units = u"100 0"_s;
        QSignalSpy spy(key.get(), &Key::response_message);
        whenModal([&](QWidget* modal) {
            modal->findChild<QSlider*>()->setValue(10);
            modal->findChild<QSlider*>()->setValue(20);
            popUps::press(modal, u"OK"_s);
        });
        key->key_button_pushed();
        QTRY_COMPARE(spy.size(), 2);
        QCOMPARE(spy.last().first().toString(), u"\x02MOD 20\x04"_s);
        QTRY_VERIFY(qApp->findChildren<Key*>().isEmpty());
    }

    void a_slider_opens_with_any_value()
    {
        for (const double value : {std::nan(""), HUGE_VAL, -1e300}) {
            const auto key = newKey(Key::Slider, u""_s);
            key->units = u"100 0"_s;
            key->value = value;
            whenModal([](QWidget* modal) { popUps::dialog(modal)->reject(); });
            key->key_button_pushed();
        }
    }

    void a_key_deleted_while_its_editor_is_open_sends_nothing_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("selection") << int{Key::Selection};
        QTest::newRow("slider") << int{Key::Slider};
        QTest::newRow("file") << int{Key::File};
    }
    void a_key_deleted_while_its_editor_is_open_sends_nothing()
    {
        QFETCH(int, type);
        auto key = newKey(type, type == Key::Slider ? QString() : u"0 Off:1 On"_s);
        key->units = u"100 0"_s;
        QSignalSpy spy(key.get(), &Key::response_message);
        whenModal([&](QWidget* modal) {
            key.reset();
            if (type == Key::Slider) {
                modal->findChild<QSlider*>()->setValue(10);
                modal->findChild<QSlider*>()->setValue(20);
                popUps::press(modal, u"OK"_s);
            } else {
                popUps::press(modal, u"On"_s);
            }
        });
        key->key_button_pushed();
        QVERIFY(key == nullptr);
        QTRY_VERIFY(qApp->findChildren<Key*>().isEmpty());
        QVERIFY(spy.isEmpty());
    }
};

QN740_TEST_MAIN(tst_KeyPressLists)
#include "tst_KeyPressLists.moc"
