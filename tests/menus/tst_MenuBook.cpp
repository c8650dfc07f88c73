#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/KeyDefinition.h"
#include "menus/MenuBook.h"
#include "support/TestMain.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;

class tst_MenuBook : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_area = std::make_unique<QWidget>();
        m_stack = new QStackedLayout(m_area.get());
        m_book = std::make_unique<MenuBook>(m_stack);
    }

    void cleanup()
    {
        m_book.reset();
        m_area.reset();
    }

    void a_menu_is_not_found_before_it_is_created()
    {
        QVERIFY(m_book->find(u"A"_s) == nullptr);
        KeyBoard* menu = m_book->findOrCreate(u"A"_s);
        QCOMPARE(m_book->find(u"A"_s), menu);
        QCOMPARE(m_book->findOrCreate(u"A"_s), menu);
        QCOMPARE(m_book->pages, QList<KeyBoard*>{menu});
        QCOMPARE(menu->maxRow, 5);
        QCOMPARE(menu->maxCol, 5);
        QCOMPARE(m_stack->widget(menu->stackIndex), menu->frame.data());
    }

    void case_and_blanks_of_a_name_count()
    {
        m_book->findOrCreate(u"Main"_s);
        QVERIFY(m_book->find(u"main"_s) == nullptr);
        QVERIFY(m_book->find(u"Main "_s) == nullptr);
    }

    void the_first_of_two_menus_or_keys_with_the_same_name_is_found()
    {
        KeyBoard* first = m_book->findOrCreate(u"A"_s);
        auto* second = new KeyBoard;
        second->new_keyboard(u"A"_s, 5, 5);
        m_book->add(second);
        QCOMPARE(m_book->find(u"A"_s), first);
        for (int i = 0; i < 2; ++i) {
            first->add_keyboard_button(
                u""_s, u"k"_s, 5, u""_s, u""_s, 0, u""_s, 0, false, 1, false, nullptr);
        }
        QCOMPARE(MenuBook::findKey(first, u"k"_s), first->keys.at(0));
        QVERIFY(MenuBook::findKey(first, u"x"_s) == nullptr);
        QVERIFY(MenuBook::findKey(nullptr, u"k"_s) == nullptr);
        QCOMPARE(m_book->findKey(u"A"_s, u"k"_s), first->keys.at(0));
        QVERIFY(m_book->findKey(u"A"_s, u"x"_s) == nullptr);
        QVERIFY(m_book->findKey(u"B"_s, u"k"_s) == nullptr);
    }

    void a_menu_that_was_renamed_is_found_by_its_new_name_once_the_old_one_was_asked_for()
    {
        KeyBoard* menu = m_book->findOrCreate(u"A"_s);
        KeyBoard* other = m_book->findOrCreate(u"B"_s);
        menu->name = u"C"_s;
        QVERIFY(m_book->find(u"A"_s) == nullptr);
        QCOMPARE(m_book->find(u"C"_s), menu);
        QCOMPARE(m_book->find(u"B"_s), other);
    }

    void the_list_of_menus_may_be_changed_by_hand()
    {
        QList<KeyBoard*> menus;
        for (const char* name : {"A", "B", "A", "C"}) {
            menus += new KeyBoard;
            menus.last()->new_keyboard(QString::fromUtf8(name), 5, 5);
            m_book->add(menus.last());
        }
        QCOMPARE(m_book->find(u"A"_s), menus.at(0));
        m_book->pages.removeOne(menus.at(0));
        QCOMPARE(m_book->find(u"A"_s), menus.at(2));
        QCOMPARE(m_book->find(u"B"_s), menus.at(1));
        m_book->pages.swapItemsAt(0, 2); // C, A, B
        QCOMPARE(m_book->find(u"A"_s), menus.at(2));
        QCOMPARE(m_book->find(u"C"_s), menus.at(3));
        m_book->pages.clear();
        QVERIFY(m_book->find(u"C"_s) == nullptr);
        m_book->pages = {menus.at(1), menus.at(3)};
        QCOMPARE(m_book->find(u"C"_s), menus.at(3));
        QVERIFY(m_book->find(u"A"_s) == nullptr);
    }

    void menus_and_keys_that_are_gone_are_not_found_among_new_ones()
    {
        for (int round = 0; round < 3; ++round) {
            KeyBoard* menu = m_book->findOrCreate(u"A"_s);
            for (int i = 0; i < 40; ++i) {
                menu->add_keyboard_button(u""_s, u"key %1"_s.arg(i + round), 5, u""_s, u""_s, 0,
                    u""_s, 0, false, 1, false, nullptr);
            }
            for (int i = 0; i < 40; ++i) {
                QCOMPARE(m_book->findKey(u"A"_s, u"key %1"_s.arg(i + round)), menu->keys.at(i));
            }
            QVERIFY(m_book->findKey(u"A"_s, u"key %1"_s.arg(round - 1)) == nullptr);
            m_book->clear();
            QVERIFY(m_book->findKey(u"A"_s, u"key 5"_s) == nullptr);
            if (round > 0) {
                QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            }
        }
    }

    void messages_of_keys_are_forwarded()
    {
        QSignalSpy sent(m_book.get(), &MenuBook::keyboard_response_message);
        KeyBoard* menu = m_book->findOrCreate(u"A"_s);
        menu->add_keyboard_button(
            u""_s, u"k"_s, 5, u"GO"_s, u""_s, 0, u""_s, 0, false, 1, false, nullptr);
        menu->buttons.first()->click();
        QCOMPARE(sent.count(), 1);
        QCOMPARE(sent.first().first().toString(), u"\x02GO1\x04"_s);
    }

    void clear_forgets_the_menus_at_once_and_deletes_them_later()
    {
        KeyBoard* menu = m_book->findOrCreate(u"A"_s);
        const QPointer<KeyBoard> guard = menu;
        m_book->clear();
        QVERIFY(m_book->find(u"A"_s) == nullptr);
        QVERIFY(guard != nullptr);
        QCOMPARE(m_stack->count(), 1);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(guard == nullptr);
        QCOMPARE(m_stack->count(), 0);
    }

    void stack_indexes_follow_their_page_when_other_pages_go()
    {
        for (const char* name : {"A", "B", "C"}) {
            m_book->findOrCreate(QString::fromUtf8(name));
        }
        m_book->clear();
        QList<KeyBoard*> menus;
        for (const char* name : {"A", "D", "E"}) {
            menus += m_book->findOrCreate(QString::fromUtf8(name));
        }
        QCOMPARE(menus.at(0)->stackIndex, 3);
        QCOMPARE(menus.at(2)->stackIndex, 5);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(m_stack->count(), 3);
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(menus.at(i)->stackIndex, i);
            QCOMPARE(m_stack->widget(i), menus.at(i)->frame.data());
        }
    }

    void removing_a_page_keeps_the_stack_indexes_below_it()
    {
        KeyBoard* menu = m_book->findOrCreate(u"A"_s);
        auto* other = new QWidget;
        m_stack->addWidget(other);
        delete other;
        QCOMPARE(menu->stackIndex, 0);
    }

    void a_menu_whose_page_is_deleted_keeps_its_stack_index()
    {
        m_book->findOrCreate(u"A"_s);
        KeyBoard* menu = m_book->findOrCreate(u"B"_s);
        delete menu->frame;
        QCOMPARE(menu->stackIndex, 1);
    }

    void there_is_room_for_so_many_menus()
    {
        QList<KeyBoard*> menus(menuLimits::MaxMenus - 1, nullptr);
        MenuLimits limits(menus);
        QVERIFY(limits.takesMenu());
        menus += nullptr;
        QTest::ignoreMessage(QtWarningMsg, "there are 500 menus: no more are made");
        QVERIFY(!limits.takesMenu());
    }

    void there_is_room_for_so_many_keys_of_all_menus()
    {
        KeyBoard first;
        KeyBoard second;
        first.keys.resize(menuLimits::MaxKeys - 10);
        second.keys.resize(9);
        const QList<KeyBoard*> menus{&first, &second};
        MenuLimits limits(menus);
        const Key source;
        QVERIFY(limits.takesKey());
        QVERIFY(limits.takesCopy(source, u"M"_s));
        second.keys.resize(10);
        for (int times = 0; times < 2; ++times) { // the second one is logged later
            if (times == 0) {
                QTest::ignoreMessage(QtWarningMsg, "there are 15000 keys: no more are made");
            }
            QVERIFY(!limits.takesKey());
            QVERIFY(!limits.takesCopy(source, u"M"_s));
        }
    }

    void a_definition_may_have_so_many_characters()
    {
        MenuLimits limits(m_book->pages);
        QVERIFY(limits.takesDefinition(menuLimits::MaxKeyCharacters));
        QVERIFY(limits.takesText(menuLimits::MaxKeyCharacters));
        QTest::ignoreMessage(
            QtWarningMsg, "a definition of more than 262144 characters is ignored");
        QVERIFY(!limits.takesDefinition(menuLimits::MaxKeyCharacters + 1));
        QVERIFY(!limits.takesText(menuLimits::MaxKeyCharacters + 1));
    }

    void all_definitions_may_have_so_many_characters()
    {
        MenuLimits limits(m_book->pages);
        QVERIFY(limits.takesChange(0, menuLimits::MaxCharacters - 100));
        QVERIFY(limits.takesText(90));
        QTest::ignoreMessage(
            QtWarningMsg, "the definitions have 8388608 characters: no more are taken");
        QVERIFY(!limits.takesText(11));
        QVERIFY(!limits.takesChange(5, 16)); // nothing has been counted
        QVERIFY(limits.takesChange(5, 15));  // it is full to the last one
        QVERIFY(!limits.takesText(1));
        QVERIFY(limits.takesChange(1, 1));
        QVERIFY(limits.takesChange(2, 1));
        QVERIFY(limits.takesText(1));
        QVERIFY(!limits.takesText(1));
        limits.clear();
        QVERIFY(limits.takesChange(0, menuLimits::MaxCharacters));
    }

    void a_copy_counts_as_its_key_and_the_name_of_its_menu()
    {
        MenuLimits limits(m_book->pages);
        Key source;
        source.label = u"abc"_s;
        const qsizetype characters = KeyDefinition::of(source).characters() + 2;
        QVERIFY(characters > 4);
        QVERIFY(limits.takesChange(0, menuLimits::MaxCharacters - characters));
        QTest::ignoreMessage(
            QtWarningMsg, "the definitions have 8388608 characters: no more are taken");
        QVERIFY(!limits.takesCopy(source, u"MMM"_s));
        QVERIFY(limits.takesCopy(source, u"MM"_s));
    }

private:
    std::unique_ptr<QWidget> m_area;
    QStackedLayout* m_stack = nullptr;
    std::unique_ptr<MenuBook> m_book;
};

QN740_TEST_MAIN(tst_MenuBook)
#include "tst_MenuBook.moc"
