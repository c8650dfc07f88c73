#include "menus/Key.h"
#include "support/Screen.h"
#include "support/TestMain.h"

#include <QMessageBox>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

class tst_KeyUnknown : public QObject
{
    Q_OBJECT

private slots:
    void a_key_of_unknown_type_reports_itself_and_sends_nothing_data()
    {
        QTest::addColumn<int>("type");
        for (const int type : {7, -1, 99}) {
            QTest::addRow("%d", type) << type;
        }
    }

    void a_key_of_unknown_type_reports_itself_and_sends_nothing()
    {
        QFETCH(int, type);
        QPushButton button(u"Antenna"_s);
        Key key;
        key.Set_Key(&button, false);
        key.type = type;
        key.command = u"R1:ANT"_s;
        QSignalSpy sent(&key, &Key::response_message);
        QString text;
        whenModal([&](QWidget* dialog) {
            text = qobject_cast<QMessageBox*>(dialog)->text();
            dialog->close();
        });
        key.key_button_pushed();
        QCOMPARE(text, u"A key_button was pushed Antenna R1:ANT"_s);
        QCOMPARE(sent.count(), 0);
    }

    void a_key_may_be_deleted_while_its_box_is_open()
    {
        auto* button = new QPushButton(u"Antenna"_s);
        auto* key = new Key;
        key->Set_Key(button, false);
        key->type = 7;
        whenModal([&](QWidget* dialog) {
            delete key;
            delete button;
            dialog->close();
        });
        key->key_button_pushed();
        QVERIFY(QApplication::activeModalWidget() == nullptr);
    }

    void texts_with_place_markers_are_shown_as_they_are()
    {
        QPushButton button(u"50 %2"_s);
        Key key;
        key.Set_Key(&button, false);
        key.type = 7;
        key.command = u"X"_s;
        QString text;
        whenModal([&](QWidget* dialog) {
            text = qobject_cast<QMessageBox*>(dialog)->text();
            dialog->close();
        });
        key.key_button_pushed();
        QCOMPARE(text, u"A key_button was pushed 50 %2 X"_s);
    }
};

QN740_TEST_MAIN(tst_KeyUnknown)
#include "tst_KeyUnknown.moc"
