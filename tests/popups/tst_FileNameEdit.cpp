#include "popups/FileNameEdit.h"
#include "support/PopUps.h"
#include "support/TestMain.h"

#include <QLineEdit>

using namespace Qt::StringLiterals;

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
        QCOMPARE(run(u""_s,
                     [](QWidget* modal) {
                         popUps::press(modal, u"CAPS"_s);
                         popUps::press(modal, u"N"_s);
                         popUps::press(modal, u"CAPS"_s);
                         popUps::press(modal, u"7"_s);
                         popUps::press(modal, u"RETURN"_s);
                     }),
            u"N7"_s);
    }

    void the_initial_text_is_edited_at_its_end()
    {
        QCOMPARE(run(u"nigh"_s,
                     [](QWidget* modal) {
                         popUps::press(modal, u"t"_s);
                         popUps::press(modal, u"RETURN"_s);
                     }),
            u"night"_s);
    }

    void a_cancelled_name_is_empty()
    {
        QCOMPARE(
            run(u"night"_s, [](QWidget* modal) { popUps::dialog(modal)->reject(); }), QString());
        QCOMPARE(
            run(u"night"_s, [](QWidget* modal) { popUps::press(modal, u"Cancel"_s); }), QString());
    }

    void a_physical_keyboard_works_too()
    {
        QCOMPARE(run(u""_s,
                     [](QWidget* modal) {
                         auto* field = modal->findChild<QLineEdit*>();
                         QTest::keyClicks(field, u"ab"_s);
                         QTest::keyClick(field, Qt::Key_F5);
                         QTest::keyClick(field, Qt::Key_Return);
                     }),
            u"ab"_s);
        QCOMPARE(run(u"ab"_s, [](QWidget* modal) { QTest::keyClick(modal, Qt::Key_Escape); }),
            QString());
    }

    void the_dialog_has_its_title_sheet_and_flags()
    {
        run(u""_s, [](QWidget* modal) {
            QCOMPARE(modal->objectName(), u"FileNameEdit"_s);
            QCOMPARE(modal->windowTitle(), u"Enter Store File Name"_s);
            QVERIFY(!modal->windowIcon().isNull());
            QVERIFY(!modal->windowIcon().pixmap(16).isNull());
            QCOMPARE(modal->styleSheet(),
                u"background-color:darkgray; border-width: 2px; border-style: solid; "_s
                u"border-color: black; font-size: 16px; border-radius: 4px;"_s);
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
            popUps::press(modal, u"a"_s);
            popUps::press(modal, u"RETURN"_s);
        });
        const FileNameEdit edit(QString(), parent);
        QCOMPARE(edit.text(), u"a"_s);
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
