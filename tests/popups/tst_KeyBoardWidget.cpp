#include "popups/KeyBoardWidget.h"
#include "popups/PushButtonKey.h"
#include "support/Screen.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

class tst_KeyBoardWidget : public QObject
{
    Q_OBJECT

    QWidget* m_window = nullptr;
    QLineEdit* m_field = nullptr;
    KeyBoardWidget* m_keys = nullptr;

    void press(const QString& text)
    {
        QPushButton* key = buttonWithText(m_keys, text);
        QVERIFY2(key != nullptr, qPrintable(text));
        clickOn(key);
    }

private slots:
    void init()
    {
        m_window = new QWidget;
        auto* layout = new QVBoxLayout(m_window);
        m_field = new QLineEdit;
        m_keys = new KeyBoardWidget(m_field, true, nullptr);
        layout->addWidget(m_field);
        layout->addWidget(m_keys);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window));
    }
    void cleanup() { delete m_window; }

    void the_keys_stand_in_four_rows()
    {
        const QStringList rows{u"1 2 3 4 5 6 7 8 9 0 BACKSPACE DEL"_s, u"q w e r t y u i o p"_s,
            u"CAPS a s d f g h j k l - _"_s, u"RETURN <<- ->> z x c v b n m ."_s};
        QList<PushButtonKey*> keys = m_keys->findChildren<PushButtonKey*>();
        std::sort(keys.begin(), keys.end(), [](PushButtonKey* a, PushButtonKey* b) {
            return a->y() != b->y() ? a->y() < b->y() : a->x() < b->x();
        });
        QMap<int, QStringList> found;
        for (const PushButtonKey* key : keys) {
            found[key->y()] += key->text();
            QVERIFY(key->width() >= 47 && key->height() >= 47);
        }
        QCOMPARE(found.size(), 4);
        QStringList lines;
        for (const QStringList& row : found) {
            lines += row.join(u' ');
        }
        QCOMPARE(lines, rows);
        QVERIFY(m_window->width() <= 795);
    }

    void the_name_of_a_stored_setup_can_be_typed()
    {
        press(u"CAPS"_s);
        for (const char* key : {"F", "L", "I", "G", "H", "T", "_", "1", "-", "B", ".", "S"}) {
            press(QString::fromUtf8(key));
        }
        QCOMPARE(m_field->text(), u"FLIGHT_1-B.S"_s);
    }

    void typing_inserts_at_the_cursor_and_selects_the_character()
    {
        press(u"a"_s);
        press(u"b"_s);
        QCOMPARE(m_field->text(), u"ab"_s);
        QCOMPARE(m_field->selectedText(), u"b"_s);
        QCOMPARE(m_field->cursorPosition(), 2);
        press(u"<<-"_s);
        press(u"7"_s);
        QCOMPARE(m_field->text(), u"a7b"_s);
        QCOMPARE(m_field->cursorPosition(), 2);
    }

    void the_command_keys_edit_and_move()
    {
        m_field->setText(u"abcd"_s);
        m_field->setCursorPosition(2);
        press(u"BACKSPACE"_s);
        QCOMPARE(m_field->text(), u"acd"_s);
        QCOMPARE(m_field->cursorPosition(), 1);
        press(u"DEL"_s);
        QCOMPARE(m_field->text(), u"ad"_s);
        QCOMPARE(m_field->cursorPosition(), 1);
        press(u"->>"_s);
        QCOMPARE(m_field->cursorPosition(), 2);
        press(u"->>"_s);
        QCOMPARE(m_field->cursorPosition(), 2);
    }

    void backspace_removes_the_character_just_typed()
    {
        press(u"a"_s);
        press(u"b"_s);
        press(u"BACKSPACE"_s);
        QCOMPARE(m_field->text(), u"a"_s);
    }

    void return_is_announced_and_changes_nothing()
    {
        QSignalSpy spy(m_keys, &KeyBoardWidget::ret_pushed);
        m_field->setText(u"abc"_s);
        press(u"RETURN"_s);
        QCOMPARE(spy.size(), 1);
        QCOMPARE(m_field->text(), u"abc"_s);
    }

    void caps_changes_all_letters_and_what_they_type()
    {
        QSignalSpy spy(m_keys, &KeyBoardWidget::capsPushed);
        press(u"CAPS"_s);
        QCOMPARE(spy.size(), 1);
        QCOMPARE(spy.first().first().toBool(), true);
        press(u"Q"_s);
        press(u"CAPS"_s);
        press(u"q"_s);
        QCOMPARE(m_field->text(), u"Qq"_s);
    }

    void the_field_has_the_focus_after_a_key()
    {
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window));
        m_field->clearFocus();
        press(u"a"_s);
        QVERIFY(m_field->hasFocus());
    }

    void a_new_key_belongs_to_the_keyboard()
    {
        PushButtonKey* key = m_keys->newKey(u"x"_s);
        emit key->keyPressed(u"x"_s);
        QCOMPARE(m_field->text(), u"x"_s);
        emit m_keys->capsPushed(true);
        QCOMPARE(key->text(), u"X"_s);
        QSignalSpy spy(m_keys, &KeyBoardWidget::capsPushed);
        emit key->capLocksChanged(false);
        QCOMPARE(spy.size(), 1);
        QCOMPARE(key->text(), u"x"_s);
    }

    void without_a_field_nothing_happens()
    {
        QSignalSpy spy(m_keys, &KeyBoardWidget::ret_pushed);
        delete m_field;
        QVERIFY(m_keys->textEdit() == nullptr);
        press(u"a"_s);
        press(u"RETURN"_s);
        QVERIFY(spy.isEmpty());
        QLineEdit other;
        m_keys->setTextEdit(other);
        press(u"b"_s);
        QCOMPARE(other.text(), u"b"_s);
        const KeyBoardWidget bare(nullptr, false, nullptr);
        QVERIFY(bare.textEdit() == nullptr);
    }

    void a_full_field_takes_no_more_characters()
    {
        m_field->setMaxLength(2);
        m_field->setText(u"ab"_s);
        m_field->setCursorPosition(0);
        press(u"x"_s);
        QCOMPARE(m_field->text(), u"ab"_s);
    }
};

QN740_TEST_MAIN(tst_KeyBoardWidget)
#include "tst_KeyBoardWidget.moc"
