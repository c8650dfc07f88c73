#include "menus/MainMenus.h"

#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "support/TestMain.h"
#include "touch/KeyStyle.h"

#include <QLoggingCategory>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

// The menus and their messages, with a stack like the one in the main window.
struct Menus
{
    QWidget window;
    QStackedLayout* stack = new QStackedLayout(&window);
    MenuMessages messages{stack};
    MainMenus main{messages.book};

    MenuBook& book = messages.book;

    void key(const char* menu, const char* id, const char* label = "Label")
    {
        messages.defineKey({QLatin1String(menu), QLatin1String(id), QLatin1String(label),
            QStringLiteral("0"), QStringLiteral("C:"), QStringLiteral("u"), QStringLiteral("7"),
            QStringLiteral("o"), QStringLiteral("2.5"), QStringLiteral("1"), QStringLiteral("0")});
    }
    void keys(const char* menu, int count)
    {
        for (int i = 0; i < count; ++i) {
            key(menu, QByteArray::number(i).constData());
        }
    }
    void copy(const char* menu, const char* source, const char* id)
    {
        main.copyToMainMenu({QLatin1String(menu), QLatin1String(source), QLatin1String(id)});
    }
    void paxCopy(const char* menu, const char* source, const char* id)
    {
        main.copyToPaxMenu({QLatin1String(menu), QLatin1String(source), QLatin1String(id)});
    }
    KeyBoard* menu(const char* name) const { return messages.book.find(QLatin1String(name)); }
};

QWidget* at(const QGridLayout* grid, int row, int col)
{
    const QLayoutItem* item = grid->itemAtPosition(row, col);
    return item != nullptr ? item->widget() : nullptr;
}

} // namespace

class tst_MainMenus : public QObject
{
    Q_OBJECT

private slots:
    void CM_for_a_missing_key_creates_the_menu_without_keys_data()
    {
        QTest::addColumn<QStringList>("fields");
        QTest::newRow("no key") << QStringList{u"Main"_s, u"Tuner CH1"_s, u"nokey"_s};
        QTest::newRow("no menu") << QStringList{u"Main"_s, u"Nowhere"_s, u"0"_s};
        QTest::newRow("two fields") << QStringList{u"Main"_s, u"Tuner CH1"_s};
        QTest::newRow("one field") << QStringList{u"Main"_s};
    }
    void CM_for_a_missing_key_creates_the_menu_without_keys()
    {
        QFETCH(QStringList, fields);
        Menus menus;
        menus.key("Tuner CH1", "0");
        menus.main.copyToMainMenu(fields);
        const KeyBoard* main = menus.menu("Main");
        QVERIFY(main != nullptr);
        QVERIFY(main->mainMenu && !main->isPAXMainMenu());
        QVERIFY(main->keys.isEmpty());
        QCOMPARE(main->row, 5);
        QCOMPARE(main->col, 0);
        QCOMPARE(main->maxRow, 5);
        QCOMPARE(main->maxCol, 5);
        QCOMPARE(menus.stack->widget(main->stackIndex), main->frame);
    }

    void CM_copies_every_field_and_links_both_ways()
    {
        Menus menus;
        menus.key("Tuner CH1", "f", "RF Frequency");
        Key* source = menus.menu("Tuner CH1")->keys.first();
        source->itemIds = {1, 2};
        menus.copy("Main", "Tuner CH1", "f");
        const KeyBoard* main = menus.menu("Main");
        QCOMPARE(main->keys.size(), 1);
        Key* copy = main->keys.first();
        QCOMPARE(copy->label, QStringLiteral("RF Frequency"));
        QCOMPARE(copy->keyId, QStringLiteral("f"));
        QCOMPARE(copy->type, 0);
        QCOMPARE(copy->command, QStringLiteral("C:"));
        QCOMPARE(copy->units, QStringLiteral("u"));
        QCOMPARE(copy->param, 7);
        QCOMPARE(copy->options, QStringLiteral("o"));
        QCOMPARE(copy->value, 2.5);
        QCOMPARE(copy->tog(), true);
        QCOMPARE(copy->state, 0);
        QCOMPARE(copy->itemIds, (QList<int>{1, 2}));
        QCOMPARE(copy->linkedKeys, QList<QPointer<Key>>{source});
        QCOMPARE(source->linkedKeys, QList<QPointer<Key>>{copy});
        QCOMPARE(copy->GetKey()->styleSheet(), keyStyle::toggled(false));
    }

    void CM_puts_a_copy_into_the_column_of_its_source_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<int>("group");
        QTest::addColumn<int>("col");
        QTest::newRow("tuner 1") << QByteArray("Tuner CH1") << 0 << 0;
        QTest::newRow("demodulator 1") << QByteArray("Demod 1") << 0 << 1;
        QTest::newRow("tuner 2") << QByteArray("Tuner CH2") << 1 << 0;
        QTest::newRow("demodulator 2") << QByteArray("Demod 2") << 1 << 1;
        QTest::newRow("combiner") << QByteArray("Combiner") << 2 << 0;
        QTest::newRow("demodulator 3") << QByteArray("Demod 3") << 2 << 1;
        QTest::newRow("unknown") << QByteArray("Clock") << 0 << 0;
    }
    void CM_puts_a_copy_into_the_column_of_its_source()
    {
        QFETCH(QByteArray, source);
        QFETCH(int, group);
        QFETCH(int, col);
        Menus menus;
        menus.keys(source.constData(), 1);
        menus.copy("Main", source.constData(), "0");
        const KeyBoard* main = menus.menu("Main");
        const QList<QGridLayout*> groups{main->chan1Grid, main->chan2Grid, main->combGrid};
        QCOMPARE(at(groups.at(group), 0, col), main->buttons.first());
    }

    void the_sixth_copy_goes_to_the_options()
    {
        for (const auto& [source, col] : {std::pair{"Tuner CH1", 0}, std::pair{"Demod 3", 5}}) {
            Menus menus;
            menus.keys(source, 6);
            for (const char* id : {"0", "1", "2", "3", "4", "5"}) {
                menus.copy("Main", source, id);
            }
            const KeyBoard* main = menus.menu("Main");
            const QGridLayout* group = col < 2 ? main->chan1Grid : main->combGrid;
            for (int row = 0; row < 5; ++row) {
                QCOMPARE(at(group, row, col % 2), main->buttons.at(row));
            }
            QCOMPARE(at(main->optGrid, 0, col), main->buttons.at(5));
        }
    }

    void AK_keys_of_a_main_menu_go_to_its_options()
    {
        Menus menus;
        menus.key("Tuner CH1", "0");
        menus.copy("Main", "Tuner CH1", "0");
        for (int i = 0; i < 8; ++i) {
            menus.key("Main", QByteArray::number(100 + i).constData());
        }
        const KeyBoard* main = menus.menu("Main");
        for (int i = 0; i < 8; ++i) {
            QCOMPARE(at(main->optGrid, 0, i), main->buttons.at(i + 1));
        }
    }

    void only_the_menu_Main_is_announced()
    {
        Menus menus;
        QSignalSpy named(&menus.main, &MainMenus::mainMenuNamed);
        menus.key("Tuner CH1", "0");
        menus.copy("Other", "Tuner CH1", "0");
        menus.copy("main", "Tuner CH1", "0");
        QCOMPARE(named.size(), 0);
        menus.copy("Main", "Nowhere", "0");
        QCOMPARE(named.size(), 1);
        QCOMPARE(named.first().first().value<KeyBoard*>(), menus.menu("Main"));
        menus.copy("Main", "Tuner CH1", "0");
        QCOMPARE(menus.messages.book.pages.size(), 4);
    }

    void a_plain_Main_takes_copies_in_its_next_free_cell()
    {
        Menus menus;
        QSignalSpy named(&menus.main, &MainMenus::mainMenuNamed);
        menus.keys("Main", 2);
        menus.keys("Combiner", 1);
        menus.copy("Main", "Combiner", "0");
        const KeyBoard* main = menus.menu("Main");
        QVERIFY(!main->mainMenu);
        QCOMPARE(named.size(), 1);
        QCOMPARE(at(main->grid, 0, 2), main->buttons.at(2));
        QCOMPARE(main->keys.at(2)->linkedKeys.size(), 1);
    }

    void a_source_key_and_its_copy_change_together()
    {
        Menus menus;
        menus.key("Demod 1", "k", "Old");
        menus.copy("Main", "Demod 1", "k");
        menus.paxCopy("PAX", "Demod 1", "k");
        Key* source = menus.menu("Demod 1")->keys.first();
        Key* copy = menus.menu("Main")->keys.first();
        Key* pax = menus.menu("PAX")->keys.first();
        const QList<Key*> all{source, copy, pax};

        menus.messages.changeValue({u"Demod 1"_s, u"k"_s, u"7"_s, u"0"_s});
        for (const Key* key : all) {
            QCOMPARE(key->value, 7.0);
            QVERIFY(!key->tog());
            QCOMPARE(key->GetKey()->styleSheet(), keyStyle::enabled(key == pax));
        }
        menus.messages.changeState({u"Demod 1"_s, u"k"_s, u"0"_s});
        for (const Key* key : all) {
            QCOMPARE(key->state, 0);
            QVERIFY(!key->GetKey()->isEnabled());
            QCOMPARE(key->GetKey()->styleSheet(), keyStyle::disabled(key == pax));
        }
        menus.messages.changeState({u"Demod 1"_s, u"k"_s, u"2"_s});
        for (const Key* key : all) {
            QVERIFY(key->GetKey()->isHidden());
        }
        menus.key("Demod 1", "k", "New");
        for (const Key* key : all) {
            QCOMPARE(key->label, QStringLiteral("New"));
            QCOMPARE(key->GetKey()->text(), QStringLiteral("New"));
            QCOMPARE(key->value, 7.0);
        }
        menus.messages.lockChoices({u"Demod 1"_s, u"k"_s, u"0:2:x:-1:5"_s});
        for (const Key* key : all) {
            QCOMPARE(key->itemIds, (QList<int>{0, 2, 5}));
        }
    }

    void a_change_of_a_copy_reaches_its_source_but_no_other_copy()
    {
        Menus menus;
        menus.key("Demod 1", "k");
        menus.copy("Main", "Demod 1", "k");
        menus.paxCopy("PAX", "Demod 1", "k");
        menus.messages.changeValue({u"Demod 1"_s, u"k"_s, u"7"_s, u"0"_s});
        menus.messages.changeValue({u"Main"_s, u"k"_s, u"9"_s, u"1"_s});
        QCOMPARE(menus.menu("Main")->keys.first()->value, 9.0);
        QCOMPARE(menus.menu("Demod 1")->keys.first()->value, 9.0);
        QVERIFY(menus.menu("Demod 1")->keys.first()->tog());
        QCOMPARE(menus.menu("PAX")->keys.first()->value, 7.0);
    }

    void a_copy_still_changes_when_its_source_is_deleted()
    {
        Menus menus;
        menus.key("Demod 1", "k");
        menus.copy("Main", "Demod 1", "k");
        delete menus.menu("Demod 1")->keys.takeFirst();
        menus.messages.changeValue({u"Main"_s, u"k"_s, u"4"_s, u"1"_s});
        menus.messages.changeState({u"Main"_s, u"k"_s, u"0"_s});
        menus.key("Main", "k", "New");
        menus.messages.lockChoices({u"Main"_s, u"k"_s, u"1"_s});
        const Key* copy = menus.menu("Main")->keys.first();
        QCOMPARE(copy->value, 4.0);
        QCOMPARE(copy->label, QStringLiteral("New"));
        QCOMPARE(copy->itemIds, QList<int>{1});
    }

    void MS_creates_the_PAX_main_menu_with_its_Span_key_first()
    {
        Menus menus;
        QSignalSpy made(&menus.main, &MainMenus::paxMenuMade);
        QSignalSpy span(&menus.main, &MainMenus::spanClicked);
        menus.key("Tuner CH1", "0");
        menus.paxCopy("PAX", "Tuner CH1", "nokey");
        const KeyBoard* pax = menus.menu("PAX");
        QVERIFY(pax->isPAXMainMenu());
        QCOMPARE(pax->maxRow, 5);
        QCOMPARE(pax->maxCol, 2);
        QCOMPARE(pax->row, 5);
        QCOMPARE(pax->col, 1);
        QVERIFY(pax->keys.isEmpty());
        QCOMPARE(made.size(), 1);
        QCOMPARE(made.first().at(1).toInt(), 1);
        auto* button = qobject_cast<QPushButton*>(at(pax->optGrid, 0, 0));
        QVERIFY(button != nullptr);
        QCOMPARE(button->text(), QStringLiteral("Span"));
        QCOMPARE(button->styleSheet(), keyStyle::enabled(true));
        QCOMPARE(button->maximumHeight(), 100);
        menus.main.enableSpan();
        button->click();
        QCOMPARE(span.size(), 1);
        menus.paxCopy("PAX", "Tuner CH1", "0");
        QCOMPARE(made.size(), 1);
        menus.key("PAX", "own");
        QCOMPARE(at(pax->optGrid, 0, 1), pax->buttons.at(1));
    }

    void Span_is_dead_until_there_is_a_spectrum()
    {
        Menus menus;
        QSignalSpy pressed(&menus.main, &MainMenus::spanClicked);
        menus.paxCopy("PAX", "Nowhere", "0");
        const auto span = [&menus](const char* menu) {
            return qobject_cast<QPushButton*>(at(menus.menu(menu)->optGrid, 0, 0));
        };
        QVERIFY(!span("PAX")->isEnabled());
        QCOMPARE(span("PAX")->styleSheet(), keyStyle::enabled(true));
        span("PAX")->resize(150, 60);
        const QColor dark(0x2f, 0x4f, 0x4f);
        QCOMPARE(span("PAX")->grab().toImage().pixelColor(8, 8), dark);
        span("PAX")->click();
        QCOMPARE(pressed.size(), 0);

        menus.main.enableSpan();
        QVERIFY(span("PAX")->isEnabled());
        QCOMPARE(span("PAX")->grab().toImage().pixelColor(8, 8), QColor(0x91, 0x91, 0x91));
        span("PAX")->click();
        QCOMPARE(pressed.size(), 1);
        menus.paxCopy("PAX 2", "Nowhere", "0");
        QVERIFY(span("PAX 2")->isEnabled());
    }

    void MS_fills_the_left_group_with_two_keys_per_row()
    {
        Menus menus;
        menus.keys("Combiner", 5);
        menus.keys("Anything", 5);
        for (const char* id : {"0", "1", "2", "3", "4"}) {
            menus.paxCopy("PAX", "Combiner", id);
            menus.paxCopy("PAX", "Anything", id);
        }
        const KeyBoard* pax = menus.menu("PAX");
        for (int i = 0; i < 10; ++i) {
            QCOMPARE(at(pax->chan1Grid, i / 2, i % 2), pax->buttons.at(i));
            QVERIFY(pax->keys.at(i)->large);
        }
        QCOMPARE(pax->keys.at(1)->linkedKeys.first(), menus.menu("Anything")->keys.first());
    }

    void fixed_keys_and_copies_share_the_fixed_cells_of_the_PAX_main_menu()
    {
        Menus menus;
        menus.key("Combiner", "0");
        menus.paxCopy("PAX", "Combiner", "0");
        menus.messages.defineKey({u"PAX"_s, u"own"_s, u"L"_s, u"0"_s, u"C"_s, u""_s, u"0"_s, u""_s,
            u"0"_s, u"0"_s, u"1"_s, u"1"_s});
        menus.paxCopy("PAX", "Combiner", "0");
        const KeyBoard* pax = menus.menu("PAX");
        QCOMPARE(at(pax->chan1Grid, 0, 0), pax->buttons.at(0));
        QCOMPARE(at(pax->chan1Grid, 0, 1), pax->buttons.at(1));
        QCOMPARE(at(pax->chan1Grid, 1, 0), pax->buttons.at(2));
    }

    void a_copy_without_a_group_on_the_PAX_main_menu_is_not_shown()
    {
        Menus menus;
        menus.keys("Combiner", 1);
        menus.keys("Demod 3", 1);
        menus.paxCopy("PAX", "Nowhere", "0");
        menus.copy("PAX", "Combiner", "0");
        menus.copy("PAX", "Demod 3", "0");
        const KeyBoard* pax = menus.menu("PAX");
        QCOMPARE(pax->keys.size(), 2);
        QVERIFY(pax->buttons.at(0)->isHidden());
        QVERIFY(pax->buttons.at(1)->isHidden());
    }

    // A key without a cell is never shown, whatever state the main unit sends for it.
    void a_copy_without_a_cell_is_shown_by_no_CK_data()
    {
        QTest::addColumn<QString>("menu");
        QTest::newRow("the copy itself") << u"PAX"_s;
        QTest::newRow("through its source") << u"Combiner"_s;
    }
    void a_copy_without_a_cell_is_shown_by_no_CK()
    {
        QFETCH(QString, menu);
        Menus menus;
        menus.keys("Combiner", 1);
        menus.paxCopy("PAX", "Nowhere", "0");
        menus.copy("PAX", "Combiner", "0");
        const KeyBoard* pax = menus.menu("PAX");
        menus.window.resize(800, 480);
        menus.stack->setCurrentIndex(pax->stackIndex);
        menus.window.show();
        const QImage before = menus.window.grab().toImage();
        for (const char* state : {"1", "0", "2", "1"}) {
            menus.messages.changeState({menu, u"0"_s, QLatin1String(state)});
            QVERIFY(!pax->buttons.first()->isVisible());
            QVERIFY(!pax->buttons.first()->parentWidget()->isVisible());
        }
        QCOMPARE(menus.window.grab().toImage(), before);
        QCOMPARE(pax->keys.first()->state, 1);
    }

    void a_main_menu_needs_a_name_data()
    {
        QTest::addColumn<QStringList>("fields");
        QTest::newRow("no field") << QStringList{};
        QTest::newRow("an empty name") << QStringList{u""_s};
        QTest::newRow("an empty name for a source that exists")
            << QStringList{u""_s, u"Combiner"_s, u"0"_s};
    }
    void a_main_menu_needs_a_name()
    {
        QFETCH(QStringList, fields);
        Menus menus;
        menus.keys("Combiner", 1);
        QSignalSpy made(&menus.main, &MainMenus::paxMenuMade);
        QSignalSpy named(&menus.main, &MainMenus::mainMenuNamed);
        menus.main.copyToMainMenu(fields);
        menus.main.copyToPaxMenu(fields);
        QCOMPARE(menus.book.pages.size(), 1);
        QCOMPARE(menus.stack->count(), 1);
        QVERIFY(menus.menu("Combiner")->keys.first()->linkedKeys.isEmpty());
        QCOMPARE(made.size() + named.size(), 0);
    }

    void a_name_alone_makes_the_PAX_main_menu()
    {
        Menus menus;
        menus.main.copyToPaxMenu({u"PAX"_s});
        QVERIFY(menus.menu("PAX") != nullptr && menus.menu("PAX")->isPAXMainMenu());
        QVERIFY(menus.menu("PAX")->keys.isEmpty());
    }

    void the_special_page_groups_keys_by_their_cells()
    {
        Menus menus;
        menus.keys("Main", 36);
        const KeyBoard* main = menus.menu("Main");
        const QList<QPushButton*> buttons = main->buttons;
        const int pages = menus.stack->count();
        QWidget* page = menus.main.regroupMain();
        QVERIFY(page != nullptr);
        QCOMPARE(menus.stack->count(), pages + 1);
        QCOMPARE(menus.stack->indexOf(page), pages);
        QCOMPARE(page->objectName(), u"specialPage"_s);

        auto* outer = qobject_cast<QGridLayout*>(page->layout());
        const QStringList titles{u"Channel 1"_s, u"Channel 2"_s, u"Combiner"_s};
        for (int group = 0; group < 3; ++group) {
            auto* box = qobject_cast<QGroupBox*>(at(outer, 0, group));
            QCOMPARE(box->title(), titles.at(group));
            QCOMPARE(box->styleSheet(),
                QStringLiteral(
                    "QGroupBox {background-color: black; border-width: 2px; border-style: solid; border-color: white; font-size: 12px; color: yellow; border-radius: 4px;}"));
            auto* grid = qobject_cast<QGridLayout*>(box->layout());
            QCOMPARE(grid->contentsMargins(), QMargins(4, 15, 4, 4));
            for (int row = 0; row < 5; ++row) {
                QCOMPARE(grid->rowMinimumHeight(row), 80);
                for (int col = 0; col < 2; ++col) {
                    QCOMPARE(grid->columnMinimumWidth(col), 150);
                    QCOMPARE(at(grid, row, col), buttons.at(row * 6 + group * 2 + col));
                }
            }
        }
    }

    void the_special_page_has_the_last_row_in_its_options()
    {
        Menus menus;
        menus.keys("Main", 36);
        const QList<QPushButton*> buttons = menus.menu("Main")->buttons;
        auto* outer = qobject_cast<QGridLayout*>(menus.main.regroupMain()->layout());
        for (int col = 0; col < 3; ++col) {
            QCOMPARE(at(outer, 1, col), at(outer, 1, 0));
        }
        auto* options = qobject_cast<QGroupBox*>(at(outer, 1, 0));
        QCOMPARE(options->title(), QStringLiteral("Options"));
        auto* grid = qobject_cast<QGridLayout*>(options->layout());
        QCOMPARE(grid->rowMinimumHeight(0), 40);
        for (int col = 0; col < 6; ++col) {
            QCOMPARE(grid->columnMinimumWidth(col), 150);
            QCOMPARE(at(grid, 0, col), buttons.at(30 + col));
        }
    }

    void a_moved_key_still_sends()
    {
        Menus menus;
        menus.key("Main", "k");
        QSignalSpy sent(&menus.book, &MenuBook::keyboard_response_message);
        QVERIFY(menus.main.regroupMain() != nullptr);
        menus.menu("Main")->buttons.first()->click();
        QCOMPARE(sent.size(), 1);
        QCOMPARE(sent.first().first().toString(),
            QStringLiteral("\x02"
                           "C:0"
                           "\x04"));
    }

    void keys_in_the_first_row_leave_the_options_empty()
    {
        Menus menus;
        menus.keys("Main", 6);
        const QWidget* page = menus.main.regroupMain();
        const auto boxes = page->findChildren<QGroupBox*>();
        for (const QGroupBox* box : boxes) {
            const int expected = box->title() == QLatin1String("Options") ? 0 : 2;
            QCOMPARE(box->findChildren<QPushButton*>().size(), expected);
        }
        QCOMPARE(boxes.size(), 4);
    }

    void the_special_page_takes_only_the_first_sub_page_with_its_More_key()
    {
        Menus menus;
        menus.keys("Main", 40);
        const QWidget* page = menus.main.regroupMain();
        const auto moved = page->findChildren<QPushButton*>();
        QCOMPARE(moved.size(), 36);
        for (const QGroupBox* box : page->findChildren<QGroupBox*>()) {
            if (box->title() == QLatin1String("Options")) {
                auto* grid = qobject_cast<QGridLayout*>(box->layout());
                auto* more = qobject_cast<QPushButton*>(at(grid, 0, 5));
                QCOMPARE(more->text(), QStringLiteral("More..."));
                more->click();
                QCOMPARE(menus.menu("Main")->pages->currentIndex(), 1);
            }
        }
        QVERIFY(!moved.contains(menus.menu("Main")->buttons.at(35)));
    }

    void a_second_special_page_is_empty()
    {
        Menus menus;
        menus.keys("Main", 6);
        QWidget* first = menus.main.regroupMain();
        QWidget* second = menus.main.regroupMain();
        QVERIFY(second != nullptr && second != first);
        QCOMPARE(first->findChildren<QPushButton*>().size(), 6);
        QCOMPARE(second->findChildren<QPushButton*>().size(), 0);
        QCOMPARE(second->findChildren<QGroupBox*>().size(), 4);
    }

    void without_a_plain_Main_there_is_no_special_page()
    {
        Menus menus;
        menus.keys("main", 3);
        QVERIFY(menus.main.regroupMain() == nullptr);
        menus.copy("Main", "main", "0");
        QVERIFY(menus.main.regroupMain() == nullptr);
        QCOMPARE(menus.menu("Main")->keys.size(), 1);
    }

    void clear_deletes_special_pages_too()
    {
        Menus menus;
        menus.keys("Main", 3);
        const QPointer<QWidget> first = menus.main.regroupMain();
        const QPointer<QWidget> second = menus.main.regroupMain();
        menus.messages.book.clear();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(first == nullptr && second == nullptr);
        QCOMPARE(menus.stack->count(), 0);
    }

    void a_source_that_does_not_exist_is_logged_data()
    {
        QTest::addColumn<QStringList>("fields");
        QTest::addColumn<QString>("text");
        QTest::newRow("main menu alone") << QStringList{u"Main"_s} << QString();
        QTest::newRow("no key named")
            << QStringList{u"Main"_s, u"M"_s} << u"CM: 2 fields, needs 3"_s;
        QTest::newRow("no menu") << QStringList{u"Main"_s, u"N"_s, u"k"_s} << u"CM: no menu N"_s;
        QTest::newRow("no key") << QStringList{u"Main"_s, u"M"_s, u"x"_s} << u"CM: no key x"_s;
        QTest::newRow("a key") << QStringList{u"Main"_s, u"M"_s, u"k"_s} << QString();
    }

    void a_source_that_does_not_exist_is_logged()
    {
        QFETCH(QStringList, fields);
        Menus menus;
        menus.key("M", "k");
        static QString lines;
        lines.clear();
        QLoggingCategory::setFilterRules(u"qn740.menus.debug=true"_s);
        const QtMessageHandler before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& text) { lines += text; });
        menus.main.copyToMainMenu(fields);
        qInstallMessageHandler(before);
        QLoggingCategory::setFilterRules(u""_s);
        QTEST(lines, "text");
    }

    void a_main_menu_is_only_made_and_filled_when_there_is_room_data()
    {
        QTest::addColumn<bool>("isPax");
        QTest::newRow("four groups") << false;
        QTest::newRow("large keys") << true;
    }

    void a_main_menu_is_only_made_and_filled_when_there_is_room()
    {
        QFETCH(bool, isPax);
        const auto copy = [isPax](Menus& menus, const char* name) {
            isPax ? menus.paxCopy(name, "M", "k") : menus.copy(name, "M", "k");
        };
        Menus menus;
        menus.key("M", "k");
        copy(menus, "Old");
        QCOMPARE(menus.menu("Old")->keys.size(), 1);
        menus.book.limits.takesChange(0, menuLimits::MaxCharacters - 100);
        while (menus.book.limits.takesChange(0, 1)) {
        }
        copy(menus, "New");
        QVERIFY(menus.menu("New") == nullptr);
        copy(menus, "Old");
        QCOMPARE(menus.menu("Old")->keys.size(), 1);
        menus.book.limits.takesChange(3, 0); // the name of a menu, without a copy
        copy(menus, "New");
        QVERIFY(menus.menu("New") != nullptr);
        QVERIFY(menus.menu("New")->keys.isEmpty());
    }
};

QN740_TEST_MAIN(tst_MainMenus)
#include "tst_MainMenus.moc"
