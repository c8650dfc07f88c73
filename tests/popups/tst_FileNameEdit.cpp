#include "popups/FileNameEdit.h"
#include "support/PopUps.h"
#include "support/TestMain.h"

#include <QLineEdit>

class tst_FileNameEdit : public QObject
{
    Q_OBJECT

    static QString run(const QString& initial, const std::function<void(QWidget*)>& then)
    {
        whenModal(then);
        const FileNameEdit edit(initial, nullptr);
        return edit.text();
    }

private slots:
    void return_ends_with_the_typed_name()
    {
        QCOMPARE(run("",
                     [](QWidget* modal) {
                         popUps::press(modal, "CAPS");
                         popUps::press(modal, "N");
                         popUps::press(modal, "CAPS");
                         popUps::press(modal, "7");
                         popUps::press(modal, "RETURN");
                     }),
            QString("N7"));
    }

    void the_initial_text_is_edited_at_its_end()
    {
        QCOMPARE(run("nigh",
                     [](QWidget* modal) {
                         popUps::press(modal, "t");
                         popUps::press(modal, "RETURN");
                     }),
            QString("night"));
    }

    void a_cancelled_name_is_empty()
    {
        QCOMPARE(run("night", [](QWidget* modal) { popUps::dialog(modal)->reject(); }), QString());
        QCOMPARE(run("night", [](QWidget* modal) { popUps::press(modal, "Cancel"); }), QString());
    }

    void a_physical_keyboard_works_too()
    {
        QCOMPARE(run("",
                     [](QWidget* modal) {
                         auto* field = modal->findChild<QLineEdit*>();
                         QTest::keyClicks(field, "ab");
                         QTest::keyClick(field, Qt::Key_F5);
                         QTest::keyClick(field, Qt::Key_Return);
                     }),
            QString("ab"));
        QCOMPARE(
            run("ab", [](QWidget* modal) { QTest::keyClick(modal, Qt::Key_Escape); }), QString());
    }

    void the_dialog_has_its_title_sheet_and_flags()
    {
        run("", [](QWidget* modal) {
            QCOMPARE(modal->objectName(), QString("FileNameEdit"));
            QCOMPARE(modal->windowTitle(), QString("Enter Store File Name"));
            QVERIFY(!modal->windowIcon().isNull());
            QVERIFY(!modal->windowIcon().pixmap(16).isNull());
            QCOMPARE(modal->styleSheet(),
                QString("background-color:darkgray; border-width: 2px; border-style: solid; "
                        "border-color: black; font-size: 16px; border-radius: 4px;"));
            QVERIFY(popUps::isInsideScreen(modal) && popUps::isCentred(modal));
            for (const QPushButton* key : modal->findChildren<QPushButton*>()) {
                QVERIFY(key->width() >= 47 && key->height() >= 47);
            }
            popUps::dialog(modal)->reject();
        });
    }

    void a_parent_deleted_meanwhile_does_not_delete_it()
    {
        auto* parent = new QWidget;
        whenModal([&](QWidget* modal) {
            delete parent;
            popUps::press(modal, "a");
            popUps::press(modal, "RETURN");
        });
        const FileNameEdit edit(QString(), parent);
        QCOMPARE(edit.text(), QString("a"));
        QVERIFY(edit.parentWidget() == nullptr);
    }

    void the_parent_owns_it_afterwards()
    {
        QWidget parent;
        whenModal([](QWidget* modal) { popUps::dialog(modal)->reject(); });
        const auto* edit = new FileNameEdit(QString(), &parent);
        QCOMPARE(edit->parentWidget(), &parent);
    }
};

QN740_TEST_MAIN(tst_FileNameEdit)
#include "tst_FileNameEdit.moc"
