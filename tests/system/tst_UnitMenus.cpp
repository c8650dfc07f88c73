// These tests check the menus that the simulated unit sends at start-up, on the panel.
#include "app/Rooms.h"
#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "sim/unit/MenuFile.h"
#include "support/Panel.h"
#include "support/TestMain.h"
#include "tools/screen/Part.h"

using namespace Qt::StringLiterals;

namespace {

// Returns the bodies of the built-in messages that begin with one of these texts.
QList<QByteArray> messages(const QList<QByteArray>& beginnings = {QByteArray()})
{
    QList<QByteArray> bodies;
    const MenuFile menus = MenuFile::builtIn();
    for (const MenuStep& step : menus.steps()) {
        const QByteArray body = step.body.toLatin1();
        for (const QByteArray& beginning : beginnings) {
            if (step.kind == MenuStep::Kind::Message && body.startsWith(beginning)) {
                bodies += body;
            }
        }
    }
    return bodies;
}

const QString Green = u"background-color: green"_s;

// Returns the message with which the unit confirms that this key is set.
QByteArray confirmation(const Panel& panel, const Key* key)
{
    for (const KeyBoard* page : panel.window.rooms().menus->book.pages) {
        for (const Key* one : page->keys) {
            if (one == key) {
                return u"CV,%1,%2,0,1"_s.arg(page->name, key->keyId).toLatin1();
            }
        }
    }
    return {};
}

} // namespace

class tst_UnitMenus : public QObject
{
    Q_OBJECT

private slots:
    void init() { linkMode::store(linkMode::None); }

    void both_main_menus_consist_of_existing_keys_data()
    {
        QTest::addColumn<QString>("menu");
        QTest::addColumn<QByteArray>("word");
        QTest::newRow("main menu") << "Main" << QByteArray("CM,Main,");
        QTest::newRow("PAX main menu") << "PAX" << QByteArray("MS,PAX,");
    }
    void both_main_menus_consist_of_existing_keys()
    {
        QFETCH(QString, menu);
        QFETCH(QByteArray, word);
        Panel panel;
        panel.say(messages());
        const KeyBoard* board = panel.window.rooms().menus->book.find(menu);
        QVERIFY(board != nullptr && board->mainMenu);
        const auto copies = messages({word}).size();
        QVERIFY(copies >= 8);
        const auto own = messages({"AK," + menu.toLatin1() + ','}).size();
        QCOMPARE(board->keys.size(), copies + own);
        for (qsizetype i = 0; i < copies; ++i) {
            QCOMPARE(board->keys.at(i)->linkedKeys.size(), 1);
        }
        QCOMPARE(board->stackIndex,
            menu == QLatin1String("Main") ? panel.window.mainMenuIndex()
                                          : panel.window.paxMenuIndex());
    }

    void a_copy_follows_the_units_answer()
    {
        Panel panel;
        panel.say(messages());
        clickOn(part<QPushButton>(panel.window, "mainMenuButton"));
        QCOMPARE(panel.heard(), framed("Main"));
        const KeyBoard* main = panel.window.rooms().menus->book.find(QStringLiteral("Main"));
        Key* toggle = nullptr;
        for (Key* key : main->keys) {
            if (toggle == nullptr && key->type == Key::Toggle && !key->tog() &&
                key->GetKey()->isEnabled() && key->GetKey()->isVisible()) {
                toggle = key;
            }
        }
        QVERIFY(toggle != nullptr);
        QTRY_VERIFY(toggle->GetKey()->isVisible());
        clickOn(toggle->GetKey());
        QCOMPARE(panel.heard(), framed(toggle->command.toLatin1() + '1'));
        QCOMPARE(toggle->linkedKeys.size(), 1);
        const Key* source = toggle->linkedKeys.first();
        for (const Key* key : {static_cast<const Key*>(toggle), source}) {
            QVERIFY(!key->GetKey()->styleSheet().contains(Green)); // not before the unit says so
        }
        panel.say({confirmation(panel, source)});
        for (const Key* key : {static_cast<const Key*>(toggle), source}) {
            QVERIFY(key->tog());
            QVERIFY2(key->GetKey()->styleSheet().contains(Green),
                qPrintable(key->GetKey()->styleSheet()));
        }
    }
};

QN740_TEST_MAIN(tst_UnitMenus)
#include "tst_UnitMenus.moc"
