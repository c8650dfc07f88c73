#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/KeyDefinition.h"
#include "menus/MoreKey.h"
#include "support/TestMain.h"
#include "touch/KeyButton.h"
#include "touch/KeyStyle.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

void addKeys(KeyBoard& menu, int count)
{
    for (int i = 1; i <= count; ++i) {
        const QString name = u"key %1"_s.arg(i);
        menu.add_keyboard_button(name, name, 5, name, u""_s, 0, u""_s, 0, false, 1, false, nullptr);
    }
}

void addFixed(KeyBoard& menu, int row, int col)
{
    menu.add_keyboard_button_fixed(
        u"fixed"_s, u"f"_s, 5, u"F"_s, u""_s, 0, u""_s, 0, false, 1, false, nullptr, row, col);
}

QGridLayout* gridOf(const KeyBoard& menu, int page)
{
    return qobject_cast<QGridLayout*>(menu.pages->widget(page)->layout());
}

QString textAt(QGridLayout* grid, int row, int col)
{
    QLayoutItem* item = grid->itemAtPosition(row, col);
    auto* button = item != nullptr ? qobject_cast<QPushButton*>(item->widget()) : nullptr;
    return button != nullptr ? button->text() : QString();
}

// Returns the texts of the keys of a sub-page, row by row, without the empty cells.
QStringList textsOf(QGridLayout* grid)
{
    QStringList texts;
    for (int row = 0; row < 6; ++row) {
        for (int col = 0; col < 6; ++col) {
            const QString text = textAt(grid, row, col);
            if (!text.isEmpty()) {
                texts += text;
            }
        }
    }
    return texts;
}

QStringList keyNames(int first, int last)
{
    QStringList names;
    for (int i = first; i <= last; ++i) {
        names += u"key %1"_s.arg(i);
    }
    return names;
}

} // namespace

class tst_KeyBoard : public QObject
{
    Q_OBJECT

private slots:
    void a_new_menu_is_empty()
    {
        const KeyBoard menu;
        QVERIFY(menu.keys.isEmpty() && menu.buttons.isEmpty() && menu.name.isEmpty());
        QVERIFY(!menu.isPAXMainMenu());
    }

    void a_plain_menu_has_its_frame_and_cell_sizes()
    {
        KeyBoard menu;
        menu.new_keyboard(u"Tuner CH1"_s, 5, 5);
        QCOMPARE(menu.name, u"Tuner CH1"_s);
        QCOMPARE(menu.frame->title(), u"Tuner CH1 Menu"_s);
        QCOMPARE(int(menu.frame->alignment()), 0x20);
        QCOMPARE(menu.frame->styleSheet(),
            u"QGroupBox {background-color: black; border-width: 2px; border-style: solid;   "_s
            u"                         border-color: white; font-size: 12px; color: yellow; "_s
            u"border-radius: 4px;}"_s);
        QCOMPARE(menu.frame->layout()->contentsMargins(), QMargins(4, 15, 4, 4));
        QCOMPARE(menu.titleLabel->text(), u"QN740 - Menu - Tuner CH1"_s);
        QCOMPARE(menu.titleLabel->objectName(), u"titleLabel"_s);
        QVERIFY(menu.titleLabel->isHidden());
        QVERIFY(!menu.mainMenu);
        QVERIFY(menu.chan1Grid == nullptr && menu.optGrid == nullptr);
        QCOMPARE(menu.pages->count(), 1);
        QCOMPARE(menu.row, 0);
        QCOMPARE(menu.col, 0);
        for (int i = 0; i <= 5; ++i) {
            QCOMPARE(menu.grid->columnMinimumWidth(i), 150);
            QCOMPARE(menu.grid->rowMinimumHeight(i), 80);
        }
        QCOMPARE(menu.grid->columnMinimumWidth(6), 0);
        QCOMPARE(menu.grid->columnCount(), 6);
        QCOMPARE(menu.grid->rowCount(), 6);
    }

    // So that the pages need not be polished once they have keys.
    void an_empty_menu_is_polished_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("plain") << int(KeyBoard::Kind::Plain);
        QTest::newRow("four groups") << int(KeyBoard::Kind::Main);
        QTest::newRow("large keys") << int(KeyBoard::Kind::Pax);
    }

    void an_empty_menu_is_polished()
    {
        QFETCH(int, kind);
        KeyBoard menu;
        if (kind == int(KeyBoard::Kind::Plain)) {
            menu.new_keyboard(u"M"_s, 5, 5);
            QVERIFY(menu.pages->widget(0)->testAttribute(Qt::WA_WState_Polished));
        } else if (kind == int(KeyBoard::Kind::Main)) {
            menu.new_mm_keyboard(u"M"_s, 5, 5);
        } else {
            menu.new_PAX_mm_keyboard(u"M"_s, 5, 2);
        }
        QVERIFY(menu.frame->testAttribute(Qt::WA_WState_Polished));
    }

    void an_ampersand_in_the_name_is_shown_and_marks_no_letter_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("between blanks") << u"R & D"_s;
        QTest::newRow("between letters") << u"R&D"_s;
        QTest::newRow("at the end") << u"R&"_s;
        QTest::newRow("two") << u"R && D"_s;
    }
    void an_ampersand_in_the_name_is_shown_and_marks_no_letter()
    {
        QFETCH(QString, name);
        KeyBoard menu;
        menu.new_keyboard(name, 5, 5);
        QCOMPARE(menu.name, name);
        // The style shows every "&&" of a title as one "&" and treats a single "&" as the mark of a
        // mnemonic.
        QString shown = menu.frame->title();
        QVERIFY(QKeySequence::mnemonic(shown).isEmpty());
        QCOMPARE(shown.replace(u"&&"_s, u"&"_s), name + u" Menu"_s);
        QCOMPARE(menu.titleLabel->text(), u"QN740 - Menu - "_s + name);
        QCOMPARE(menu.titleLabel->textFormat(), Qt::PlainText); // a tag in it opens no file
        QVERIFY(menu.titleLabel->buddy() == nullptr); // without a buddy a label has no mnemonic
    }

    void an_ampersand_takes_room_in_the_picture_of_the_title()
    {
        const auto inkOf = [](const QString& name) {
            KeyBoard menu;
            menu.new_keyboard(name, 0, 0);
            menu.frame->resize(300, 120);
            const QImage picture = menu.frame->grab(QRect(20, 0, 260, 15)).toImage();
            int left = picture.width();
            int right = 0;
            for (int y = 3; y < picture.height(); ++y) {
                for (int x = 0; x < picture.width(); ++x) {
                    const QColor colour = picture.pixelColor(x, y);
                    if (colour.red() > 128 && colour.blue() < 100) { // yellow letters
                        left = qMin(left, x);
                        right = qMax(right, x);
                    }
                }
            }
            return right - left;
        };
        QFont font = QApplication::font();
        font.setPixelSize(12);
        const int ampersand = QFontMetrics(font).horizontalAdvance(u'&');
        QVERIFY(inkOf(u"R D"_s) > 0);
        QVERIFY(inkOf(u"R& D"_s) >= inkOf(u"R D"_s) + ampersand - 1);
    }

    void a_key_gets_all_fields()
    {
        KeyBoard menu;
        menu.new_keyboard(u"M"_s, 5, 5);
        Key source;
        menu.add_keyboard_button(u"Label"_s, u"id"_s, 0, u"CMD"_s, u"units"_s, 3, u"options"_s, 1.5,
            true, 2, true, &source);
        const Key* key = menu.keys.first();
        QCOMPARE(key->label, u"Label"_s);
        QCOMPARE(key->keyId, u"id"_s);
        QCOMPARE(key->type, 0);
        QCOMPARE(key->command, u"CMD"_s);
        QCOMPARE(key->units, u"units"_s);
        QCOMPARE(key->param, 3);
        QCOMPARE(key->options, u"options"_s);
        QCOMPARE(key->value, 1.5);
        QVERIFY(key->tog());
        QCOMPARE(key->state, 2);
        QCOMPARE(key->linkedKeys.size(), 1);
        QCOMPARE(key->linkedKeys.first().data(), &source);
        QVERIFY(!key->large);
        QCOMPARE(menu.buttons, QList<QPushButton*>{key->GetKey()});
        QCOMPARE(key->GetKey()->text(), u"Label"_s);
        QCOMPARE(key->GetKey()->maximumHeight(), 100);
        QCOMPARE(key->GetKey()->styleSheet(), keyStyle::toggled(false));
    }

    void a_key_that_is_not_linked_has_no_linked_keys()
    {
        KeyBoard menu;
        menu.new_keyboard(u"M"_s, 5, 5);
        Key source;
        menu.add_keyboard_button(
            u""_s, u""_s, 1, u""_s, u""_s, 0, u""_s, 0, false, 1, false, &source);
        QVERIFY(menu.keys.first()->linkedKeys.isEmpty());
        QCOMPARE(menu.buttons.first()->styleSheet(), keyStyle::enabled(false));
    }

    void a_key_is_made_from_its_definition()
    {
        KeyBoard menu;
        menu.new_mm_keyboard(u"Main"_s, 5, 5);
        const KeyDefinition definition{u"ignored"_s, u"id"_s, u"Label"_s, 2, u"CMD"_s, u"units"_s,
            3, u"options"_s, 1.5, true, 2, true, {0, 2}};
        Key mirrored;
        Key* key = menu.addKey(definition, KeyBoard::Cell{1, 3}, &mirrored);
        QCOMPARE(menu.keys, QList<Key*>{key});
        QCOMPARE(key->label, u"Label"_s);
        QCOMPARE(key->keyId, u"id"_s);
        QCOMPARE(key->type, 2);
        QCOMPARE(key->command, u"CMD"_s);
        QCOMPARE(key->units, u"units"_s);
        QCOMPARE(key->param, 3);
        QCOMPARE(key->options, u"options"_s);
        QCOMPARE(key->value, 1.5);
        QVERIFY(key->tog());
        QCOMPARE(key->state, 2);
        QCOMPARE(key->itemIds, (QList<int>{0, 2}));
        QCOMPARE(key->linkedKeys, QList<QPointer<Key>>{&mirrored});
        QVERIFY(mirrored.linkedKeys.isEmpty());
        QCOMPARE(menu.chan2Grid->itemAtPosition(1, 1)->widget(), key->GetKey());
    }

    void a_key_without_a_cell_gets_the_next_free_one()
    {
        KeyBoard plain;
        plain.new_keyboard(u"M"_s, 5, 5);
        KeyBoard main;
        main.new_mm_keyboard(u"Main"_s, 5, 5);
        main.row = 5;
        KeyDefinition definition;
        for (const char* label : {"first", "second"}) {
            definition.label = QString::fromUtf8(label);
            plain.addKey(definition);
            main.addKey(definition);
        }
        QCOMPARE(textAt(plain.grid, 0, 1), u"second"_s);
        QCOMPARE(textAt(main.optGrid, 0, 1), u"second"_s);
    }

    void a_copy_and_its_source_mirror_each_other()
    {
        KeyBoard source;
        source.new_keyboard(u"M"_s, 5, 5);
        addKeys(source, 1);
        source.keys.first()->itemIds = {1};
        KeyBoard target;
        target.new_PAX_mm_keyboard(u"PAX"_s, 5, 2);
        Key* copy = target.addCopy(*source.keys.first(), KeyBoard::Cell{2, 1});
        QCOMPARE(target.keys, QList<Key*>{copy});
        QCOMPARE(copy->label, u"key 1"_s);
        QCOMPARE(copy->itemIds, QList<int>{1});
        QVERIFY(copy->large);
        QCOMPARE(copy->linkedKeys, QList<QPointer<Key>>{source.keys.first()});
        QCOMPARE(source.keys.first()->linkedKeys, QList<QPointer<Key>>{copy});
        QCOMPARE(textAt(target.chan1Grid, 2, 1), u"key 1"_s);
    }

    void the_first_key_with_an_identifier_is_found()
    {
        KeyBoard menu;
        menu.new_keyboard(u"M"_s, 5, 5);
        QVERIFY(menu.findKey(u"key 2"_s) == nullptr);
        addKeys(menu, 3);
        addKeys(menu, 3);
        QCOMPARE(menu.findKey(u"key 2"_s), menu.keys.at(1));
        QVERIFY(menu.findKey(u"Key 2"_s) == nullptr);
        menu.deleteKeys();
        QVERIFY(menu.findKey(u"key 2"_s) == nullptr);
        addKeys(menu, 2);
        QCOMPARE(menu.findKey(u"key 2"_s), menu.keys.at(1));
    }

    void the_next_key_with_an_identifier_is_found_when_the_first_has_another_one()
    {
        KeyBoard menu;
        menu.new_keyboard(u"M"_s, 5, 5);
        addKeys(menu, 3);
        addKeys(menu, 3);
        menu.keys.at(1)->keyId = u"renamed"_s;
        QCOMPARE(menu.findKey(u"key 2"_s), menu.keys.at(4));
        QCOMPARE(menu.findKey(u"renamed"_s), menu.keys.at(1));
    }

    void every_key_of_a_large_menu_is_found()
    {
        KeyBoard menu;
        menu.new_keyboard(u"M"_s, 5, 5);
        addKeys(menu, 200);
        for (int i = 0; i < 200; ++i) {
            QCOMPARE(menu.findKey(u"key %1"_s.arg(i + 1)), menu.keys.at(i));
        }
        delete menu.keys.takeAt(99);
        QVERIFY(menu.findKey(u"key 100"_s) == nullptr);
        QCOMPARE(menu.findKey(u"key 101"_s), menu.keys.at(99));
        QCOMPARE(menu.findKey(u"key 200"_s), menu.keys.at(198));
    }

    void the_kind_is_that_of_the_function_that_built_the_menu()
    {
        KeyBoard plain;
        QCOMPARE(plain.kind(), KeyBoard::Kind::Plain);
        plain.new_keyboard(u"M"_s, 5, 5);
        QCOMPARE(plain.kind(), KeyBoard::Kind::Plain);
        KeyBoard main;
        main.new_mm_keyboard(u"Main"_s, 5, 5);
        QCOMPARE(main.kind(), KeyBoard::Kind::Main);
        KeyBoard pax;
        pax.new_PAX_mm_keyboard(u"PAX"_s, 5, 2);
        QCOMPARE(pax.kind(), KeyBoard::Kind::Pax);
        QVERIFY(!plain.large && !main.large && pax.large);
    }

    void keys_flow_row_by_row()
    {
        KeyBoard menu;
        menu.new_keyboard(u"M"_s, 5, 5);
        addKeys(menu, 36);
        QCOMPARE(menu.pages->count(), 1);
        QCOMPARE(textsOf(gridOf(menu, 0)), keyNames(1, 36));
        QCOMPARE(textAt(gridOf(menu, 0), 0, 5), u"key 6"_s);
        QCOMPARE(textAt(gridOf(menu, 0), 1, 0), u"key 7"_s);
        QCOMPARE(textAt(gridOf(menu, 0), 5, 5), u"key 36"_s);
    }

    void the_37th_key_opens_a_second_page()
    {
        KeyBoard menu;
        menu.new_keyboard(u"M"_s, 5, 5);
        addKeys(menu, 37);
        QCOMPARE(menu.pages->count(), 2);
        QCOMPARE(textsOf(gridOf(menu, 0)), keyNames(1, 35) + QStringList{u"More..."_s});
        QCOMPARE(textAt(gridOf(menu, 0), 5, 5), u"More..."_s);
        QCOMPARE(textAt(gridOf(menu, 1), 0, 0), u"key 36"_s);
        QCOMPARE(textAt(gridOf(menu, 1), 0, 1), u"key 37"_s);
        QCOMPARE(textAt(gridOf(menu, 1), 5, 5), u"More..."_s);
        QCOMPARE(gridOf(menu, 1)->columnMinimumWidth(5), 150);
        QCOMPARE(gridOf(menu, 1)->rowMinimumHeight(5), 80);
    }

    void later_pages_keep_their_last_cell_free_for_the_More_key()
    {
        KeyBoard menu;
        menu.new_keyboard(u"M"_s, 5, 5);
        addKeys(menu, 35 + 35 + 35 + 1);
        QCOMPARE(menu.pages->count(), 4);
        QCOMPARE(textsOf(gridOf(menu, 1)), keyNames(36, 70) + QStringList{u"More..."_s});
        QCOMPARE(textsOf(gridOf(menu, 2)), keyNames(71, 105) + QStringList{u"More..."_s});
        QCOMPARE(textsOf(gridOf(menu, 3)), QStringList({u"key 106"_s, u"More..."_s}));
    }

    void every_More_key_says_its_page_and_how_many_there_are()
    {
        KeyBoard menu;
        menu.new_keyboard(u"M"_s, 5, 5);
        const auto pageTexts = [&menu] {
            QStringList texts;
            for (int page = 0; page < menu.pages->count(); ++page) {
                const auto* more =
                    qobject_cast<MoreKey*>(gridOf(menu, page)->itemAtPosition(5, 5)->widget());
                texts += more != nullptr ? more->text() + u' ' + more->pageText() : QString();
            }
            return texts;
        };
        addKeys(menu, 37);
        QCOMPARE(pageTexts(), (QStringList{u"More... 1/2"_s, u"More... 2/2"_s}));
        addKeys(menu, 33);
        QCOMPARE(pageTexts(), (QStringList{u"More... 1/2"_s, u"More... 2/2"_s}));
        addKeys(menu, 1);
        QCOMPARE(pageTexts(), (QStringList{u"More... 1/3"_s, u"More... 2/3"_s, u"More... 3/3"_s}));
    }

    void the_page_count_is_still_right_when_a_More_key_has_been_deleted()
    {
        KeyBoard menu;
        menu.new_keyboard(u"M"_s, 5, 5);
        addKeys(menu, 37);
        delete gridOf(menu, 0)->itemAtPosition(5, 5)->widget();
        addKeys(menu, 34);
        const auto* more = qobject_cast<MoreKey*>(gridOf(menu, 1)->itemAtPosition(5, 5)->widget());
        QCOMPARE(more->pageText(), u"2/3"_s);
    }

    // So that nothing below a key is painted.
    void every_key_has_its_height_and_paints_the_black_around_its_corners()
    {
        KeyBoard menu;
        menu.new_keyboard(u"M"_s, 5, 5);
        addKeys(menu, 37);
        const auto keys = menu.frame->findChildren<KeyButton*>();
        QCOMPARE(keys.size(), 39); // two of them are "More..."
        for (const KeyButton* key : keys) {
            QCOMPARE(key->ground(), QColor(Qt::black));
            QCOMPARE(key->maximumHeight(), 100);
        }
    }

    void the_More_key_has_its_own_style()
    {
        KeyBoard menu;
        menu.new_keyboard(u"M"_s, 5, 5);
        addKeys(menu, 37);
        for (int page = 0; page < 2; ++page) {
            const auto* more =
                qobject_cast<QPushButton*>(gridOf(menu, page)->itemAtPosition(5, 5)->widget());
            QCOMPARE(more->maximumHeight(), 100);
            QCOMPARE(more->styleSheet(),
                u"QPushButton {background-color: black; color: aliceblue; border-width: 1px; "_s
                u"border-style: solid; border-color: white; font-size: 18px; border-radius: "_s
                u"2px; font-weight: 480} QPushButton:pressed {background-color: #4169e1;}"_s);
        }
    }

    void the_More_key_opens_the_next_page_and_after_the_last_the_first()
    {
        KeyBoard menu;
        menu.new_keyboard(u"M"_s, 5, 5);
        addKeys(menu, 72);
        QList<int> shown;
        for (int i = 0; i < 4; ++i) {
            auto* grid = gridOf(menu, menu.pages->currentIndex());
            qobject_cast<QPushButton*>(grid->itemAtPosition(5, 5)->widget())->click();
            shown += menu.pages->currentIndex();
        }
        QCOMPARE(shown, (QList<int>{1, 2, 0, 1}));
    }

    void messages_of_keys_are_forwarded_unchanged()
    {
        KeyBoard menu;
        menu.new_keyboard(u"M"_s, 5, 5);
        addKeys(menu, 2);
        QSignalSpy sent(&menu, &KeyBoard::keyboard_response_message);
        menu.buttons.at(1)->click();
        menu.kb_response_message(u"D1:anything"_s);
        QCOMPARE(sent.count(), 2);
        QCOMPARE(sent.at(0).at(0).toString(), u"\x02key 21\x04"_s);
        QCOMPARE(sent.at(1).at(0).toString(), u"D1:anything"_s);
    }

    void the_main_menu_has_four_groups()
    {
        KeyBoard menu;
        menu.new_mm_keyboard(u"Main"_s, 5, 5);
        QVERIFY(menu.mainMenu);
        QVERIFY(!menu.isPAXMainMenu());
        QVERIFY(menu.frame->title().isEmpty());
        QCOMPARE(menu.chan1Box->title(), u"Channel 1"_s);
        QCOMPARE(menu.chan2Box->title(), u"Channel 2"_s);
        QCOMPARE(menu.combBox->title(), u"Combiner"_s);
        QCOMPARE(menu.optBox->title(), u"Options"_s);
        for (const QGroupBox* box : {menu.chan1Box, menu.chan2Box, menu.combBox, menu.optBox}) {
            QCOMPARE(box->styleSheet(),
                u"QGroupBox {background-color: black; border-width: 2px; border-style: "_s
                u"solid; border-color: white; font-size: 12px; color: yellow; "_s
                u"border-radius: 4px;}                           "_s);
        }
        for (const QGridLayout* grid : {menu.chan1Grid, menu.chan2Grid, menu.combGrid}) {
            QCOMPARE(grid->columnMinimumWidth(0), 150);
            QCOMPARE(grid->columnMinimumWidth(1), 150);
            for (int row = 0; row < 5; ++row) {
                QCOMPARE(grid->rowMinimumHeight(row), 80);
            }
            QCOMPARE(grid->columnCount(), 2);
            QCOMPARE(grid->rowCount(), 5);
            QCOMPARE(grid->contentsMargins(), QMargins(4, 15, 4, 4));
        }
        for (int col = 0; col < 6; ++col) {
            QCOMPARE(menu.optGrid->columnMinimumWidth(col), 150);
        }
        QCOMPARE(menu.optGrid->columnCount(), 6);
        QCOMPARE(menu.optGrid->rowMinimumHeight(0), 40);
        QCOMPARE(menu.optGrid->rowCount(), 1);
        QCOMPARE(menu.optBox->minimumHeight(), 70);
        QCOMPARE(menu.optGrid->contentsMargins(), QMargins(4, 15, 4, 4));
        QCOMPARE(menu.grid->itemAtPosition(0, 0)->widget(), menu.chan1Box);
        QCOMPARE(menu.grid->itemAtPosition(0, 1)->widget(), menu.chan2Box);
        QCOMPARE(menu.grid->itemAtPosition(0, 2)->widget(), menu.combBox);
        for (int col = 0; col < 3; ++col) {
            QCOMPARE(menu.grid->itemAtPosition(1, col)->widget(), menu.optBox);
        }
    }

    void the_PAX_main_menu_has_large_keys_and_three_groups_without_titles()
    {
        KeyBoard menu;
        menu.new_PAX_mm_keyboard(u"PAX"_s, 5, 2);
        QVERIFY(menu.mainMenu);
        QVERIFY(menu.isPAXMainMenu());
        QVERIFY(menu.combGrid == nullptr && menu.combBox == nullptr);
        for (const QGroupBox* box : {menu.chan1Box, menu.chan2Box, menu.optBox}) {
            QVERIFY(box->title().isEmpty());
            QCOMPARE(
                box->styleSheet(), u"QGroupBox {background-color: black; border-style: none;}"_s);
        }
        QCOMPARE(menu.chan1Grid->columnMinimumWidth(1), 150);
        QCOMPARE(menu.chan1Grid->columnCount(), 2);
        for (int row = 0; row < 5; ++row) {
            QCOMPARE(menu.chan1Grid->rowMinimumHeight(row), 80);
        }
        QCOMPARE(menu.chan1Grid->rowCount(), 5);
        QCOMPARE(menu.chan1Grid->columnMinimumWidth(0), 150);
        QCOMPARE(menu.chan1Grid->contentsMargins(), QMargins(2, 2, 2, 2));
        QCOMPARE(menu.chan2Grid->columnMinimumWidth(0), 330);
        QCOMPARE(menu.chan2Grid->columnCount(), 1);
        QCOMPARE(menu.optGrid->columnMinimumWidth(0), 150);
        QCOMPARE(menu.optGrid->columnCount(), 1);
        QCOMPARE(menu.optGrid->rowMinimumHeight(0), 60);
        QCOMPARE(menu.optGrid->rowCount(), 1);
        QCOMPARE(menu.optGrid->contentsMargins(), QMargins(1, 1, 1, 1));
        QCOMPARE(menu.grid->contentsMargins(), QMargins(1, 1, 1, 1));
        QCOMPARE(menu.grid->itemAtPosition(0, 0)->widget(), menu.chan1Box);
        QCOMPARE(menu.grid->itemAtPosition(0, 1)->widget(), menu.chan2Box);
        for (int col = 0; col < 2; ++col) {
            QCOMPARE(menu.grid->itemAtPosition(1, col)->widget(), menu.optBox);
        }
        QVERIFY(menu.grid->itemAtPosition(2, 0) == nullptr);
        QVERIFY(menu.grid->itemAtPosition(0, 2) == nullptr);
        addFixed(menu, 0, 0);
        QVERIFY(menu.keys.first()->large);
        QCOMPARE(menu.buttons.first()->styleSheet(), keyStyle::enabled(true));
    }

    void fixed_keys_go_to_the_group_of_their_cell_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("col");
        QTest::addColumn<QString>("group");
        QTest::addColumn<int>("groupRow");
        QTest::addColumn<int>("groupCol");
        QTest::newRow("0,0") << 0 << 0 << "Channel 1" << 0 << 0;
        QTest::newRow("4,1") << 4 << 1 << "Channel 1" << 4 << 1;
        QTest::newRow("2,2") << 2 << 2 << "Channel 2" << 2 << 0;
        QTest::newRow("3,3") << 3 << 3 << "Channel 2" << 3 << 1;
        QTest::newRow("1,4") << 1 << 4 << "Combiner" << 1 << 0;
        QTest::newRow("0,5") << 0 << 5 << "Combiner" << 0 << 1;
        QTest::newRow("5,0") << 5 << 0 << "Options" << 0 << 0;
        QTest::newRow("5,9") << 5 << 9 << "Options" << 0 << 9;
        QTest::newRow("7,1") << 7 << 1 << "Options" << 0 << 1;
        QTest::newRow("0,6 in no group") << 0 << 6 << "" << 0 << 0;
        QTest::newRow("0,-1 in no group") << 0 << -1 << "" << 0 << 0;
        QTest::newRow("-1,0 in no group") << -1 << 0 << "" << 0 << 0;
        QTest::newRow("5,-1 in no group") << 5 << -1 << "" << 0 << 0;
    }

    void fixed_keys_go_to_the_group_of_their_cell()
    {
        QFETCH(int, row);
        QFETCH(int, col);
        QFETCH(QString, group);
        QFETCH(int, groupRow);
        QFETCH(int, groupCol);
        KeyBoard menu;
        menu.new_mm_keyboard(u"Main"_s, 5, 5);
        addFixed(menu, row, col);
        QCOMPARE(menu.keys.size(), 1);
        QPushButton* button = menu.buttons.first();
        QSignalSpy sent(&menu, &KeyBoard::keyboard_response_message);
        button->click();
        QCOMPARE(sent.count(), 1);
        if (group.isEmpty()) {
            menu.frame->show();
            QVERIFY(!button->isVisible());
            button->show();
            QVERIFY(!button->isVisible());
            return;
        }
        auto* box = qobject_cast<QGroupBox*>(button->parentWidget());
        QCOMPARE(box->title(), group);
        auto* grid = qobject_cast<QGridLayout*>(box->layout());
        QCOMPARE(grid->itemAtPosition(groupRow, groupCol)->widget(), button);
    }

    void keys_for_the_combiner_are_not_shown_on_the_PAX_main_menu()
    {
        KeyBoard menu;
        menu.new_PAX_mm_keyboard(u"PAX"_s, 5, 2);
        addFixed(menu, 0, 4);
        addFixed(menu, 1, 5);
        QCOMPARE(menu.keys.size(), 2);
        menu.frame->show();
        QVERIFY(!menu.buttons.at(0)->isVisible());
        QVERIFY(!menu.buttons.at(1)->isVisible());
    }

    void a_deleted_menu_deletes_its_widgets_and_keys()
    {
        auto menu = std::make_unique<KeyBoard>();
        menu->new_mm_keyboard(u"Main"_s, 5, 5);
        addFixed(*menu, 0, 0);
        addFixed(*menu, 0, 7);
        const QPointer<QGroupBox> frame = menu->frame;
        const QPointer<QPushButton> shown = menu->buttons.at(0);
        const QPointer<QPushButton> hidden = menu->buttons.at(1);
        const QPointer<Key> key = menu->keys.at(0);
        menu.reset();
        QVERIFY(frame == nullptr && shown == nullptr && hidden == nullptr && key == nullptr);
    }

    void deleteKeys_empties_the_lists_at_once_and_deletes_later()
    {
        KeyBoard menu;
        menu.new_keyboard(u"M"_s, 5, 5);
        addKeys(menu, 3);
        const QPointer<QPushButton> button = menu.buttons.at(0);
        const QPointer<Key> key = menu.keys.at(0);
        menu.deleteKeys();
        QVERIFY(menu.keys.isEmpty() && menu.buttons.isEmpty());
        QVERIFY(button != nullptr && key != nullptr);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(button == nullptr && key == nullptr);
    }
};

QN740_TEST_MAIN(tst_KeyBoard)
#include "tst_KeyBoard.moc"
