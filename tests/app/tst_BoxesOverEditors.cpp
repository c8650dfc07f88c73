// These tests check message boxes of the main unit that are open when another window opens. They
// use a real line and touch the windows.
#include "link/LinkModeDialog.h"
#include "support/Panel.h"
#include "support/PopUps.h"
#include "support/TestMain.h"
#include "tools/screen/Part.h"

#include <QMessageBox>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

QList<QMessageBox*> boxes()
{
    QList<QMessageBox*> found;
    for (QWidget* top : QApplication::topLevelWidgets()) {
        if (top->isVisible() && top->objectName() == QLatin1String("messageBox")) {
            found += qobject_cast<QMessageBox*>(top);
        }
    }
    return found;
}

} // namespace

class tst_BoxesOverEditors : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        linkMode::store(linkMode::None);
        m_panel = std::make_unique<Panel>();
    }
    void cleanup() { m_panel.reset(); }

    void OK_can_be_pressed_over_an_editor_that_was_opened_later_data()
    {
        QTest::addColumn<QByteArray>("fields");
        QTest::newRow("number") << QByteArray("1,CMD ,0 100,0,,7");
        QTest::newRow("selection") << QByteArray("2,CMD ,,0,0 Off:1 On,0");
        QTest::newRow("slider") << QByteArray("3,CMD ,100 0,10,1:5,50");
        QTest::newRow("files") << QByteArray("4,CMD ,,0,s1 Night:s2 Day,0");
        QTest::newRow("address") << QByteArray("6,CMD ,,0,,0");
        QTest::newRow("report of an unknown key") << QByteArray("9,CMD ,,0,,0");
    }
    void OK_can_be_pressed_over_an_editor_that_was_opened_later()
    {
        QFETCH(QByteArray, fields);
        m_panel->say({"AK,Test,k,Setting," + fields + ",0,1", "SK,Test", "DB,Look,1", "DB,Too,1"});
        QCOMPARE(boxes().size(), 2);
        bool done = false;
        whenModal([&](QWidget* editor) {
            for (QMessageBox* box : boxes()) {
                const QPointer<QMessageBox> guard = box;
                clickOn(box->buttons().first());
                QTRY_VERIFY(guard == nullptr);
            }
            QVERIFY(editor->isVisible());
            done = true;
            editor->close();
        });
        clickOn(buttonWithText(&m_panel->window, u"Setting"_s));
        QVERIFY(done);
        QCOMPARE(m_panel->heard(), QByteArray());
    }

    void OK_can_be_pressed_over_an_error_box_and_afterwards_over_its_pad()
    {
        m_panel->say(
            {"AK,Test,k,Setting,1,CMD ,0 100,0,,7,0,1", "SK,Test", "DB,A,1", "DB,B,1", "DB,C,1"});
        const auto closeOne = [] {
            const auto standing = boxes();
            const QPointer<QMessageBox> box = standing.constFirst();
            clickOn(box->buttons().first());
            QTRY_VERIFY(box == nullptr);
            QCOMPARE(boxes().size(), standing.size() - 1);
        };
        bool done = false;
        whenModal([&](QWidget* pad) {
            whenModal([&](QWidget* error) {
                closeOne();
                popUps::press(error, u"OK"_s);
            });
            for (const char* key : {"9", "9", "9", "Enter"}) {
                popUps::press(pad, QString::fromUtf8(key));
            }
            QCOMPARE(QApplication::activeModalWidget(), pad);
            closeOne();
            done = true;
            pad->close();
        });
        clickOn(buttonWithText(&m_panel->window, u"Setting"_s));
        QVERIFY(done);
        closeOne();
        QCOMPARE(boxes().size(), 0);
    }

    void OK_can_be_pressed_over_an_editor_that_the_unit_opens_over_another()
    {
        m_panel->say({"AK,Test,k,Setting,1,CMD ,0 100,0,,7,0,1", "SK,Test", "DB,A,1", "DB,B,1"});
        bool done = false;
        whenModal([&](QWidget* pad) {
            whenModal([&](QWidget* list) {
                clickOn(boxes().constFirst()->buttons().first());
                QTRY_COMPARE(boxes().size(), 1);
                done = true;
                list->close();
            });
            QVERIFY(m_panel->unit.write(framed("IK,Second,2,SEC ,,0,0 Off:1 On")));
            QTRY_VERIFY(done && QApplication::activeModalWidget() == pad);
            clickOn(boxes().constFirst()->buttons().first());
            QTRY_COMPARE(boxes().size(), 0);
            pad->close();
        });
        clickOn(buttonWithText(&m_panel->window, u"Setting"_s));
        QVERIFY(done);
    }

    void a_box_does_not_let_touches_through_to_what_the_editor_blocks()
    {
        m_panel->say({"AK,Test,k,Setting,1,CMD ,0 100,0,,7,0,1", "AK,Test,b,Blocked,5,B:,,0,,0,0,1",
            "SK,Test", "DB,A,1"});
        whenModal([&](QWidget* pad) {
            clickOn(buttonWithText(&m_panel->window, u"Blocked"_s));
            popUps::press(pad, u"5"_s);
            popUps::press(pad, u"Enter"_s);
        });
        clickOn(buttonWithText(&m_panel->window, u"Setting"_s));
        QCOMPARE(m_panel->heard(), framed("CMD 5.000000"));
        QCOMPARE(boxes().size(), 1);
    }

    void KILLBOX_closes_the_boxes_that_wait_too()
    {
        QList<QByteArray> messages;
        for (int i = 0; i < 30; ++i) {
            messages += "DB,Text,1";
        }
        m_panel->say(messages);
        QCOMPARE(boxes().size(), 16);
        m_panel->say({"DB,KILLBOX"});
        QCOMPARE(boxes().size(), 0);
        m_panel->say({"DB,Next"});
        QCOMPARE(boxes().size(), 1);
    }

    void seventeen_boxes_are_all_seen()
    {
        QSet<QString> seen;
        QList<QByteArray> messages;
        for (int i = 0; i < 17; ++i) {
            messages += "DB,Number " + QByteArray::number(i) + ",1";
        }
        m_panel->say(messages);
        for (int i = 0; i < 17; ++i) {
            QVERIFY(!boxes().isEmpty());
            const QPointer<QMessageBox> box = boxes().constFirst();
            seen += box->text();
            clickOn(box->buttons().first());
            QTRY_VERIFY(box == nullptr);
        }
        QCOMPARE(seen.size(), 17);
        QCOMPARE(boxes().size(), 0);
    }

private:
    std::unique_ptr<Panel> m_panel;
};

QN740_TEST_MAIN(tst_BoxesOverEditors)
#include "tst_BoxesOverEditors.moc"
