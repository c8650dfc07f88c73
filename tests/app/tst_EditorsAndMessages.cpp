// These tests check messages that the main unit sends while the operator has an editor open, over a
// real line and with real clicks on the real window. The key that opened the editor sends its
// result; nothing is sent when the key was deleted.
#include "app/Rooms.h"
#include "menus/Key.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "support/Panel.h"
#include "support/PopUps.h"
#include "support/TestMain.h"

#include <QSlider>

using namespace Qt::StringLiterals;

namespace {

constexpr int LongMs = 20000;

// This describes one way of entering a value.
struct Editor
{
    const char* name;
    const char* fields;      // of its key, from the type to the value
    QStringList buttons;     // that are pressed in the editor
    QStringList buttonsOver; // that are pressed in the dialog that the last of these opens
    const char* sent;
};

const QList<Editor>& editors()
{
    static const QList<Editor> all{
        {"number", "1,CMD ,0 100,0,,7", {u"4"_s, u"2"_s, u"Enter"_s}, {}, "CMD 42.000000"},
        {"selection", "2,CMD ,,0,0 Off:1 On,0", {u"On"_s}, {}, "CMD 1"},
        {"slider", "3,CMD ,100 0,10,1:5,50", {u"+5 >"_s, u"OK"_s}, {}, "CMD 55"},
        {"file board", "4,CMD ,,0,s1 Night:s2 Day,0", {u"Day"_s}, {}, "CMD s2"},
        {"file name", "4,CMD ,,0,s1 Night:s2 Day,0", {u"New File"_s}, {u"x"_s, u"7"_s, u"RETURN"_s},
            "CMD x7"},
        {"address", "6,CMD ,,0,,0",
            {u"1"_s, u"."_s, u"2"_s, u"."_s, u"3"_s, u"."_s, u"4"_s, u"Enter"_s}, {},
            "CMD 1.2.3.4"},
    };
    return all;
}

QByteArray definition(const Editor& editor, const QByteArray& label)
{
    return "AK,Test,k," + label + ',' + editor.fields + ",0,1";
}

void pressAll(QWidget* dialog, const QStringList& buttons)
{
    const QPointer<QWidget> open(dialog);
    for (const QString& button : buttons) {
        QVERIFY(open != nullptr);
        popUps::press(dialog, button);
    }
}

// Opens the editor of the key, calls `meanwhile` with the dialog in which the value is entered,
// then enters the value.
void use(Panel& panel, const Editor& editor, const std::function<void(QWidget*)>& meanwhile)
{
    const Key* key = MenuBook::findKey(panel.window.rooms().menus->book.find(u"Test"_s), u"k"_s);
    QVERIFY(key != nullptr && key->GetKey() != nullptr && key->GetKey()->isVisible());
    whenModal([&](QWidget* dialog) {
        if (!editor.buttonsOver.isEmpty()) {
            whenModal([&](QWidget* over) {
                meanwhile(over);
                pressAll(over, editor.buttonsOver);
            });
        } else {
            meanwhile(dialog);
        }
        pressAll(dialog, editor.buttons);
    });
    clickOn(key->GetKey());
    QVERIFY(QApplication::activeModalWidget() == nullptr);
}

void addEditors()
{
    for (const Editor& editor : editors()) {
        QTest::newRow(editor.name) << int(&editor - editors().constData());
    }
}

} // namespace

class tst_EditorsAndMessages : public QObject
{
    Q_OBJECT

    void open(const Editor& editor)
    {
        m_panel = std::make_unique<Panel>();
        QCOMPARE(m_panel->say({definition(editor, "Setting"), "SK,Test"}), QByteArray());
    }

private slots:
    void init()
    {
        linkMode::store(linkMode::None);
        m_windows = QApplication::topLevelWidgets().size();
    }

    void cleanup()
    {
        m_panel.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(QApplication::topLevelWidgets().size(), m_windows);
    }

    void messages_do_not_change_the_result_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QByteArrayList>("messages");
        QTest::addColumn<QByteArray>("answer");
        for (const Editor& editor : editors()) {
            const auto row = [&](const char* name, const QByteArrayList& messages,
                                 const QByteArray& answer = {}) {
                QTest::addRow("%s, %s", editor.name, name)
                    << int(&editor - editors().constData()) << messages << answer;
            };
            row("no message", {});
            row("AK", {definition(editor, "Another label")});
            row("AK of another type", {"AK,Test,k,Label,5,CMD ,,0,,0,1,1"});
            row("CV", {"CV,Test,k,12.5,1"});
            row("CK disabled", {"CK,Test,k,0"});
            row("CK hidden", {"CK,Test,k,2"});
            row("SK", {"AK,Other,x,X,5,X,,0,,0,0,1", "SK,Other"});
            row("DB with a button", {"DB,Antenna fault,1"});
            row("DB and KILLBOX", {"DB,Antenna fault", "DB,KILLBOX"});
            row("KILLBOX", {"DB,KILLBOX"});
            row("PING", {"PING"}, framed("PONG"));
            row("VER", {"VER"}, framed("1.1.6.4"));
            row("a thousand messages",
                QByteArrayList(500, "CV,Test,k,3,0") + QByteArrayList(500, "DB,KILLBOX"));
        }
    }
    void messages_do_not_change_the_result()
    {
        QFETCH(int, index);
        QFETCH(QByteArrayList, messages);
        QFETCH(QByteArray, answer);
        const Editor& editor = editors().at(index);
        open(editor);
        use(*m_panel, editor, [&](QWidget* dialog) {
            // The function say() returns when a "PING" after the messages was answered.
            QCOMPARE(m_panel->say(messages), answer);
            QVERIFY(dialog->isVisible());
        });
        QCOMPARE(m_panel->heard(), framed(editor.sent));
    }

    void a_command_changed_meanwhile_is_sent_data()
    {
        QTest::addColumn<int>("index");
        addEditors();
    }
    void a_command_changed_meanwhile_is_sent()
    {
        QFETCH(int, index);
        const Editor& editor = editors().at(index);
        open(editor);
        use(*m_panel, editor, [&](QWidget*) {
            m_panel->say({definition(editor, "Setting").replace("CMD ", "OTHER ")});
        });
        // A slider uses the command that it was opened with.
        const bool live = QByteArray(editor.name) == "slider";
        QCOMPARE(m_panel->heard(),
            framed(
                live ? QByteArray(editor.sent) : QByteArray(editor.sent).replace("CMD", "OTHER")));
    }

    void the_result_of_a_deleted_key_is_not_sent_data()
    {
        QTest::addColumn<int>("index");
        addEditors();
    }
    void the_result_of_a_deleted_key_is_not_sent()
    {
        QFETCH(int, index);
        const Editor& editor = editors().at(index);
        open(editor);
        const QPointer<Key> key =
            MenuBook::findKey(m_panel->window.rooms().menus->book.find(u"Test"_s), u"k"_s);
        use(*m_panel, editor, [&](QWidget* dialog) {
            m_panel->say({"CLEAR"});
            QTRY_VERIFY(key == nullptr);
            // A new key with the same name is a different key.
            m_panel->say({definition(editor, "Setting"), "SK,Test"});
            QVERIFY(dialog->isVisible());
        });
        QCOMPARE(m_panel->heard(), QByteArray());
        // The new key works.
        use(*m_panel, editor, [](QWidget*) {});
        QCOMPARE(m_panel->heard(), framed(editor.sent));
    }

    void a_second_editor_opens_over_the_first_and_both_results_are_sent_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("second");
        for (const Editor& editor : editors()) {
            for (const Editor& other : editors()) {
                QTest::addRow("%s, then %s", editor.name, other.name)
                    << int(&editor - editors().constData()) << int(&other - editors().constData());
            }
        }
    }
    void a_second_editor_opens_over_the_first_and_both_results_are_sent()
    {
        QFETCH(int, index);
        QFETCH(int, second);
        const Editor& editor = editors().at(index);
        const Editor& other = editors().at(second);
        open(editor);
        // Label, type, command and so on; the value follows the text of the pad.
        QByteArrayList fields = QByteArray(other.fields).split(',');
        fields.insert(fields.size() - 1, QByteArray());
        const QByteArray message = "IK,Second," + fields.join(',').replace("CMD ", "SEC ");
        use(*m_panel, editor, [&](QWidget* dialog) {
            bool done = false;
            whenModal([&](QWidget* over) {
                if (!other.buttonsOver.isEmpty()) {
                    whenModal([&](QWidget* top) { pressAll(top, other.buttonsOver); });
                }
                pressAll(over, other.buttons);
                done = true;
            });
            QVERIFY(m_panel->unit.write(framed(message)));
            QTRY_VERIFY_WITH_TIMEOUT(done, LongMs);
            QTRY_COMPARE_WITH_TIMEOUT(QApplication::activeModalWidget(), dialog, LongMs);
        });
        QCOMPARE(m_panel->heard(),
            framed(QByteArray(other.sent).replace("CMD", "SEC")) + framed(editor.sent));
    }

    void the_key_can_be_deleted_under_two_editors_data()
    {
        QTest::addColumn<int>("index");
        addEditors();
    }
    // While an editor is open that the unit has opened itself, messages wait. They are carried out
    // when it is closed.
    void the_key_can_be_deleted_under_two_editors()
    {
        QFETCH(int, index);
        const Editor& editor = editors().at(index);
        open(editor);
        use(*m_panel, editor, [&](QWidget*) {
            bool done = false;
            whenModal([&](QWidget* over) {
                QVERIFY(m_panel->unit.write(framed("CLEAR")));
                popUps::press(over, u"On"_s);
                done = true;
            });
            QVERIFY(m_panel->unit.write(framed("IK,Second,2,SEC ,,0,0 Off:1 On")));
            QTRY_VERIFY_WITH_TIMEOUT(done, LongMs);
            QTRY_VERIFY_WITH_TIMEOUT(
                m_panel->window.rooms().menus->book.find(u"Test"_s) == nullptr, LongMs);
        });
        QCOMPARE(m_panel->heard(), framed("SEC 1"));
    }

private:
    std::unique_ptr<Panel> m_panel;
    qsizetype m_windows = 0;
};

QN740_TEST_MAIN(tst_EditorsAndMessages)
#include "tst_EditorsAndMessages.moc"
