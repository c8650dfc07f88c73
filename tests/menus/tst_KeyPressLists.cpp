#include "menus/Key.h"
#include "support/PopUps.h"
#include "support/TestMain.h"
#include "touch/PresentMark.h"

#include <QGridLayout>
#include <QSlider>

#include <cmath>

using namespace Qt::StringLiterals;

// Tests the presses of keys that open a selection list, a slider or a file board.
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

    void a_press_is_finished_when_the_slider_has_sent_its_last_position()
    {
        const auto key = newKey(Key::Slider, u""_s);
        key->units = u"100 0"_s;
        QSignalSpy spy(key.get(), &Key::response_message);
        QSignalSpy finished(key.get(), &Key::pressFinished);
        whenModal([&](QWidget* modal) {
            modal->findChild<QSlider*>()->setValue(10);
            modal->findChild<QSlider*>()->setValue(20);
            popUps::press(modal, u"OK"_s);
        });
        key->key_button_pushed();
        QVERIFY(finished.isEmpty());
        QTRY_COMPARE(finished.size(), 1);
        QCOMPARE(spy.size(), 2);
    }

    void a_press_without_a_slider_is_finished_at_its_end()
    {
        for (const int type : {Key::Toggle, Key::Selection}) {
            const auto key = newKey(type, u"0 Off:1 On"_s);
            QSignalSpy finished(key.get(), &Key::pressFinished);
            if (type == Key::Selection) {
                whenModal([&](QWidget* modal) {
                    QVERIFY(finished.isEmpty());
                    popUps::press(modal, u"On"_s);
                });
            }
            key->key_button_pushed();
            QCOMPARE(finished.size(), 1);
        }
    }

    void a_slider_that_is_opened_again_at_once_keeps_the_order_and_the_pause()
    {
        const auto key = newKey(Key::Slider, u""_s);
        key->units = u"100 0"_s;
        QElapsedTimer clock;
        clock.start();
        QList<qint64> times;
        QStringList sent;
        connect(key.get(), &Key::response_message, this, [&](const QString& message) {
            times += clock.elapsed();
            sent += message.mid(1, message.size() - 2);
        });
        for (const int last : {20, 30}) {
            whenModal([&](QWidget* modal) {
                modal->findChild<QSlider*>()->setValue(last - 1);
                modal->findChild<QSlider*>()->setValue(last);
                popUps::press(modal, u"OK"_s);
            });
            key->key_button_pushed();
        }
        QTRY_VERIFY(qApp->findChildren<Key*>().isEmpty());
        QCOMPARE(sent.last(), u"MOD 30"_s);
        QCOMPARE(sent.count(u"MOD 20"_s) + sent.count(u"MOD 29"_s) + sent.count(u"MOD 30"_s),
            qsizetype{sent.size()} - 1);
        for (int i = 1; i < times.size(); ++i) {
            QVERIFY(times.at(i) - times.at(i - 1) >= 399); // both are rounded down to whole ms
        }
    }

    void the_choice_that_the_main_unit_has_named_is_marked_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("button");
        QTest::addColumn<double>("value");
        QTest::addColumn<bool>("given");
        QTest::addColumn<QString>("marked");
        for (const int type : {int{Key::Selection}, int{Key::File}}) {
            const char* name = type == Key::File ? "file" : "selection";
            QTest::addRow("%s, nothing", name) << type << "Mode" << 0.0 << false << "";
            QTest::addRow("%s, value", name) << type << "Mode" << 1.0 << false << "On";
            QTest::addRow("%s, 0 of AK", name) << type << "Mode" << 0.0 << false << "";
            QTest::addRow("%s, 0 of CV", name) << type << "Mode" << 0.0 << true << "Off";
            QTest::addRow("%s, label", name) << type << "On" << 0.0 << true << "On";
        }
    }
    void the_choice_that_the_main_unit_has_named_is_marked()
    {
        QFETCH(int, type);
        QFETCH(QString, button);
        QFETCH(QString, marked);
        const auto key = newKey(type, u"0 Off:1 On"_s);
        QPushButton onScreen(button);
        key->Set_Key(&onScreen, false);
        QFETCH(double, value);
        key->value = value;
        QFETCH(bool, given);
        key->valueGiven = given;
        whenModal([&](QWidget* modal) {
            const auto marks = modal->findChildren<PresentMark*>();
            QCOMPARE(marks.size(), marked.isEmpty() ? 0 : 1);
            if (!marks.isEmpty()) {
                QCOMPARE(marks.first()->parentWidget(), buttonWithText(modal, marked));
            }
            popUps::dialog(modal)->reject();
        });
        key->key_button_pushed();
    }

    void the_special_value_of_a_pad_is_marked_when_it_is_in_effect_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<bool>("given");
        QTest::addColumn<QString>("options");
        QTest::addColumn<int>("marks");
        QTest::newRow("in effect") << -1.0 << false << "-1 Auto" << 1;
        QTest::newRow("another value") << 50.0 << true << "-1 Auto" << 0;
        QTest::newRow("0 not given") << 0.0 << false << "0 Auto" << 0;
        QTest::newRow("0 given") << 0.0 << true << "0 Auto" << 1;
    }
    void the_special_value_of_a_pad_is_marked_when_it_is_in_effect()
    {
        QFETCH(double, value);
        QFETCH(bool, given);
        QFETCH(QString, options);
        QFETCH(int, marks);
        const auto key = newKey(Key::Number, options);
        key->units = u"1 500"_s;
        key->param = 6;
        key->value = value;
        key->valueGiven = given;
        whenModal([&](QWidget* modal) {
            const auto found = modal->findChildren<PresentMark*>();
            QCOMPARE(found.size(), marks);
            if (marks > 0) {
                QCOMPARE(found.first()->parentWidget(), buttonWithText(modal, u"Auto"_s));
            }
            popUps::dialog(modal)->reject();
        });
        key->key_button_pushed();
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
