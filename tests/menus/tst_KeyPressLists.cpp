#include "menus/Key.h"
#include "support/PopUps.h"
#include "support/TestMain.h"

#include <QFile>
#include <QGridLayout>
#include <QSlider>

#include <cmath>
#include <unistd.h>

// Presses of the keys that open a selection list, a slider or a file board.
class tst_KeyPressLists : public QObject
{
    Q_OBJECT

    static std::unique_ptr<Key> newKey(int type, const QString& options)
    {
        auto key = std::make_unique<Key>();
        key->type = type;
        key->label = "Mode";
        key->command = "MOD ";
        key->options = options;
        return key;
    }

    // Bytes of this process that are in memory.
    static qint64 residentBytes()
    {
        QFile file("/proc/self/statm");
        return file.open(QIODevice::ReadOnly)
            ? file.readAll().split(' ').value(1).toLongLong() * ::sysconf(_SC_PAGESIZE)
            : 0;
    }

    static void openAndCancel(int type, const QString& options)
    {
        const auto key = newKey(type, options);
        key->units = "100 0";
        popUps::whenOpen([type](QWidget* modal) {
            if (type == Key::File) {
                popUps::whenOpen([](QWidget* name) { popUps::press(name, "Cancel"); });
                popUps::press(modal, "New File");
            }
            popUps::dialog(modal)->reject();
        });
        key->key_button_pushed();
    }

private slots:
    void a_chosen_value_is_sent()
    {
        const auto key = newKey(Key::Selection, "0 Off:1 On");
        QSignalSpy spy(key.get(), &Key::response_message);
        popUps::whenOpen([](QWidget* modal) {
            QCOMPARE(modal->windowTitle(), QString("Select Mode value"));
            popUps::press(modal, "On");
        });
        key->key_button_pushed();
        QCOMPARE(spy.size(), 1);
        QCOMPARE(spy.first().first().toString(), QString("\x02MOD 1\x04"));
    }

    void a_cancelled_list_sends_nothing()
    {
        const auto key = newKey(Key::Selection, "0 Off:1 On");
        QSignalSpy spy(key.get(), &Key::response_message);
        popUps::whenOpen([](QWidget* modal) { popUps::press(modal, "Cancel"); });
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
        const auto key = newKey(Key::Selection, popUps::list(count, "c"));
        key->param = param;
        popUps::whenOpen([&](QWidget* modal) {
            const auto* grid = modal->findChild<QGridLayout*>();
            const QLayoutItem* at = grid->itemAtPosition(row, column);
            QVERIFY(at != nullptr);
            const int index = grid->indexOf(buttonWithText(modal, "Cancel"));
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
        const auto key = newKey(Key::Selection, "0 Off:1 Sixteen charact.");
        key->itemIds = {0};
        key->large = true;
        popUps::whenOpen([](QWidget* modal) {
            QVERIFY(!buttonWithText(modal, "Off")->isEnabled());
            QVERIFY(buttonWithText(modal, "Sixteen charact.")->styleSheet().contains("28px"));
            popUps::dialog(modal)->reject();
        });
        key->key_button_pushed();
    }

    void a_file_is_sent_by_its_value_and_a_new_one_by_its_name()
    {
        const auto key = newKey(Key::File, "s1 Night:s2 Day");
        QSignalSpy spy(key.get(), &Key::response_message);
        popUps::whenOpen([](QWidget* modal) { popUps::press(modal, "Day"); });
        key->key_button_pushed();
        popUps::whenOpen([](QWidget* modal) {
            popUps::whenOpen([](QWidget* name) {
                popUps::press(name, "x");
                popUps::press(name, "RETURN");
            });
            popUps::press(modal, "New File");
        });
        key->key_button_pushed();
        popUps::whenOpen([](QWidget* modal) { popUps::press(modal, "Cancel"); });
        key->key_button_pushed();
        QCOMPARE(spy.size(), 2);
        QCOMPARE(spy.at(0).first().toString(), QString("\x02MOD s2\x04"));
        QCOMPARE(spy.at(1).first().toString(), QString("\x02MOD x\x04"));
    }

    void a_slider_sends_live_and_the_key_nothing_itself()
    {
        const auto key = newKey(Key::Slider, "1:5");
        key->units = "100 0";
        key->param = 10;
        key->value = 42.0;
        QSignalSpy spy(key.get(), &Key::response_message);
        popUps::whenOpen([&](QWidget* modal) {
            QCOMPARE(modal->windowTitle(), QString("Set Mode Value"));
            QCOMPARE(modal->findChild<QLabel*>("readoutLabel")->text(), QString("42"));
            popUps::press(modal, "+5 >");
            QCOMPARE(spy.size(), 1);
            popUps::press(modal, "OK");
        });
        key->key_button_pushed();
        QCOMPARE(spy.size(), 1);
        QCOMPARE(spy.first().first().toString(), QString("\x02MOD 47\x04"));
    }

    void the_last_position_comes_after_ok()
    {
        const auto key = newKey(Key::Slider, "");
        key->units = "100 0";
        QSignalSpy spy(key.get(), &Key::response_message);
        popUps::whenOpen([&](QWidget* modal) {
            modal->findChild<QSlider*>()->setValue(10);
            modal->findChild<QSlider*>()->setValue(20);
            popUps::press(modal, "OK");
        });
        key->key_button_pushed();
        QTRY_COMPARE(spy.size(), 2);
        QCOMPARE(spy.last().first().toString(), QString("\x02MOD 20\x04"));
        QTRY_VERIFY(qApp->findChildren<Key*>().isEmpty());
    }

    void no_value_is_too_odd_for_a_slider()
    {
        for (const double value : {std::nan(""), HUGE_VAL, -1e300}) {
            const auto key = newKey(Key::Slider, "");
            key->units = "100 0";
            key->value = value;
            popUps::whenOpen([](QWidget* modal) { popUps::dialog(modal)->reject(); });
            key->key_button_pushed();
        }
    }

    void a_key_that_goes_while_its_editor_is_open_sends_nothing_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("selection") << int{Key::Selection};
        QTest::newRow("slider") << int{Key::Slider};
        QTest::newRow("file") << int{Key::File};
    }
    void a_key_that_goes_while_its_editor_is_open_sends_nothing()
    {
        QFETCH(int, type);
        auto key = newKey(type, type == Key::Slider ? QString() : QString("0 Off:1 On"));
        key->units = "100 0";
        QSignalSpy spy(key.get(), &Key::response_message);
        popUps::whenOpen([&](QWidget* modal) {
            key.reset();
            if (type == Key::Slider) {
                modal->findChild<QSlider*>()->setValue(10);
                modal->findChild<QSlider*>()->setValue(20);
                popUps::press(modal, "OK");
            } else {
                popUps::press(modal, "On");
            }
        });
        key->key_button_pushed();
        QVERIFY(key == nullptr);
        QTRY_VERIFY(qApp->findChildren<Key*>().isEmpty());
        QVERIFY(spy.isEmpty());
    }

    // QN740_CYCLES sets how often; the memory is checked only where there are enough cycles for
    // a leak to show
    void many_cancelled_editors_leave_nothing_behind()
    {
        const int wanted = qEnvironmentVariableIntValue("QN740_CYCLES");
        const int cycles = wanted > 0 ? wanted : 300;
        const QString choices = popUps::list(17, "c");
        const auto cycle = [&](int i) {
            const int types[] = {Key::Selection, Key::Slider, Key::File};
            openAndCancel(types[i % 3], i % 3 == 1 ? QString("1:5") : choices);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        };
        for (int i = 0; i < 60; ++i) {
            cycle(i);
        }
        const auto windows = QApplication::topLevelWidgets().size();
        const qint64 before = residentBytes();
        for (int i = 0; i < cycles; ++i) {
            cycle(i);
        }
        QCOMPARE(QApplication::topLevelWidgets().size(), windows);
        QVERIFY(qApp->findChildren<Key*>().isEmpty());
        const qint64 grown = residentBytes() - before;
        qInfo() << cycles << "cycles, resident bytes before" << before << "grown by" << grown;
        QVERIFY(grown < qint64{8} * 1024 * 1024 || cycles < 1000);
    }
};

QN740_TEST_MAIN(tst_KeyPressLists)
#include "tst_KeyPressLists.moc"
