#include "menus/Key.h"
#include "support/Screen.h"
#include "support/TestMain.h"
#include "touch/TextButton.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

// A key with its button and the messages that it has sent.
struct Pressed
{
    explicit Pressed(int type)
        : button(new TextButton(u"Button"_s))
        , key(new Key)
        , sent(key, &Key::response_message)
    {
        key->type = type;
        key->command = u"CMD "_s;
        key->label = u"Label"_s;
        key->Set_Key(button.get(), false);
        QObject::connect(button.get(), &QPushButton::clicked, key, &Key::key_button_pushed);
    }
    ~Pressed() { delete key; }
    Pressed(const Pressed&) = delete;
    Pressed& operator=(const Pressed&) = delete;

    // Presses the key and runs the script in the modal editor that opens. An editor that is still
    // open afterwards is closed.
    void press(const std::function<void(QWidget*)>& script)
    {
        whenModal([script](QWidget* dialog) {
            const QPointer<QWidget> guard(dialog);
            script(dialog);
            if (guard != nullptr && guard->isVisible()) {
                guard->close();
            }
        });
        button->click();
    }
    QStringList messages() const
    {
        QStringList list;
        for (const QList<QVariant>& arguments : sent) {
            list += arguments.at(0).toString();
        }
        return list;
    }

    std::unique_ptr<QPushButton> button;
    QPointer<Key> key;
    QSignalSpy sent;
};

void click(const QWidget* dialog, const QStringList& keys)
{
    for (const QString& key : keys) {
        QPushButton* button = buttonWithText(dialog, key);
        QVERIFY2(button != nullptr, qPrintable(key));
        clickOn(button);
    }
}

QString labelText(const QWidget* dialog, const char* name)
{
    const auto* label = dialog->findChild<QLabel*>(QString::fromUtf8(name));
    return label != nullptr ? label->text() : u"(no label)"_s;
}

} // namespace

class tst_KeyPress : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(QApplication::activeModalWidget(), nullptr); }

    void a_toggle_sends_its_new_state_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("toggle") << 0;
        QTest::newRow("command") << 5;
    }
    void a_toggle_sends_its_new_state()
    {
        QFETCH(int, type);
        Pressed it(type);
        it.key->setEnabled();
        const QString grey = it.button->styleSheet();
        it.button->click();
        QVERIFY(it.key->tog());
        it.button->click();
        QVERIFY(!it.key->tog());
        QCOMPARE(it.messages(),
            (QStringList{u"\x02"_s
                         u"CMD 1\x04"_s,
                u"\x02"_s
                u"CMD 0\x04"_s}));
        it.button->click();
        QCOMPARE(it.button->styleSheet(), grey);
    }

    void a_number_is_sent_with_six_decimals()
    {
        Pressed it(Key::Number);
        it.key->units = u"950 2150"_s;
        it.key->param = 1;
        it.press([](QWidget* pad) {
            click(pad, {u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"."_s, u"5"_s, u"MHz"_s});
        });
        QCOMPARE(it.messages(),
            (QStringList{u"\x02"_s
                         u"CMD 1234.500000\x04"_s}));
    }

    void a_zero_is_sent()
    {
        Pressed it(Key::Number);
        it.key->units = u"0 1"_s;
        it.press([](QWidget* pad) { click(pad, {u"0"_s, u"Enter"_s}); });
        QCOMPARE(it.messages(),
            (QStringList{u"\x02"_s
                         u"CMD 0.000000\x04"_s}));
    }

    void a_cancelled_number_sends_nothing()
    {
        for (const int type : {0, 5}) {
            Pressed it(Key::Number);
            it.key->units = u"0 1"_s;
            it.key->param = type;
            bool open = false;
            it.press([&open](QWidget* pad) {
                open = pad->objectName() == u"PopUpNumberPad"_s;
                click(pad, {u"CE/Cancel"_s});
            });
            QVERIFY(open);
            QVERIFY(it.messages().isEmpty());
        }
    }

    void a_special_value_at_the_cancel_bound_sends_nothing_data()
    {
        QTest::addColumn<QString>("special");
        QTest::addColumn<QStringList>("sent");
        QTest::newRow("at") << "-8000000000 Off" << QStringList();
        QTest::newRow("above") << "-7999999999 Off"
                               << QStringList{u"\x02"_s
                                              u"CMD -7999999999.000000\x04"_s};
    }
    void a_special_value_at_the_cancel_bound_sends_nothing()
    {
        QFETCH(QString, special);
        Pressed it(Key::Number);
        it.key->param = 6;
        it.key->options = special;
        it.press([](QWidget* pad) { click(pad, {u"Off"_s}); });
        QTEST(it.messages(), "sent");
    }

    void the_number_pad_gets_the_fields_of_the_key()
    {
        Pressed it(Key::Number);
        it.key->units = u"5 6"_s;
        it.key->value = 5.5;
        it.key->param = 6;
        it.key->options = u"-1 Auto"_s;
        it.press([](QWidget* pad) {
            QCOMPARE(pad->windowTitle(), u"Label"_s);
            QCOMPARE(labelText(pad, "rangeLabel"), u"Valid Range(s): 5 to 6"_s);
            QCOMPARE(labelText(pad, "currentValueLabel"), u"      Current Value: 5.50      "_s);
            QVERIFY(buttonWithText(pad, u"7"_s)->y() < buttonWithText(pad, u"1"_s)->y());
            click(pad, {u"Auto"_s});
        });
        QCOMPARE(it.messages(),
            (QStringList{u"\x02"_s
                         u"CMD -1.000000\x04"_s}));
    }

    void a_large_key_opens_its_pad_mirrored_and_with_its_text()
    {
        Pressed it(Key::Number);
        it.key->large = true;
        it.key->padText = u"Locked"_s;
        it.press([](QWidget* pad) {
            QCOMPARE(labelText(pad, "currentValueLabel"), u"Locked"_s);
            QVERIFY(buttonWithText(pad, u"7"_s)->y() > buttonWithText(pad, u"1"_s)->y());
        });
    }

    void live_steps_are_sent_by_the_key()
    {
        Pressed it(Key::Number);
        it.key->units = u"70 140"_s;
        it.key->param = 1;
        it.key->value = 100.0;
        it.press([](QWidget* pad) { click(pad, {u"Step Up"_s, u"CE/Cancel"_s}); });
        QCOMPARE(it.messages(),
            (QStringList{u"\x02"_s
                         u"CMD 100.1\x04"_s}));
    }

    void an_address_is_sent_as_it_was_typed()
    {
        Pressed it(Key::Address);
        it.press([](QWidget* pad) {
            QCOMPARE(pad->objectName(), u"PopUpIpPad"_s);
            QCOMPARE(labelText(pad, "titleLabel"), u"Label"_s);
            QCOMPARE(pad->windowTitle(), u"IPv4: Button"_s);
            click(
                pad, {u"1"_s, u"9"_s, u"2"_s, u"1"_s, u"."_s, u"2"_s, u"."_s, u"3"_s, u"Enter"_s});
        });
        QCOMPARE(it.messages(),
            (QStringList{u"\x02"_s
                         u"CMD 192.1.2.3\x04"_s}));
    }

    void a_cancelled_address_sends_nothing()
    {
        Pressed it(Key::Address);
        it.press([](QWidget* pad) { click(pad, {u"1"_s, u"CE/Cancel"_s, u"CE/Cancel"_s}); });
        QVERIFY(it.messages().isEmpty());
    }

    void nothing_is_sent_for_a_key_deleted_while_its_editor_is_open_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QStringList>("keys");
        QTest::newRow("number") << 1 << QStringList{u"1"_s, u"Enter"_s};
        QTest::newRow("address") << 6
                                 << QStringList{u"1"_s, u"."_s, u"2"_s, u"."_s, u"3"_s, u"."_s,
                                        u"4"_s, u"Enter"_s};
    }
    void nothing_is_sent_for_a_key_deleted_while_its_editor_is_open()
    {
        QFETCH(int, type);
        QFETCH(QStringList, keys);
        Pressed it(type);
        it.key->units = u"0 10"_s;
        bool closed = false;
        it.press([&](QWidget* pad) {
            delete it.key;
            click(pad, keys);
            closed = !pad->isVisible();
        });
        QVERIFY(closed);
        QVERIFY(it.messages().isEmpty());
    }

    void a_live_step_after_the_key_was_deleted_is_not_sent()
    {
        Pressed it(Key::Number);
        it.key->units = u"70 140"_s;
        it.key->param = 1;
        it.key->value = 100.0;
        it.press([&it](QWidget* pad) {
            delete it.key;
            click(pad, {u"Step Up"_s});
            QCOMPARE(labelText(pad, "currentValueLabel"), u"Current Value:\r\n100.1 MHz"_s);
        });
        QVERIFY(it.messages().isEmpty());
    }

    void the_result_goes_to_a_key_that_was_changed_meanwhile()
    {
        Pressed it(Key::Number);
        it.key->units = u"0 10"_s;
        it.press([&it](QWidget* pad) {
            it.key->command = u"NEW "_s;
            it.key->units = u"20 30"_s;
            it.button.reset();
            click(pad, {u"7"_s, u"Enter"_s});
        });
        QCOMPARE(it.messages(),
            (QStringList{u"\x02"_s
                         u"NEW 7.000000\x04"_s}));
    }

    void an_unknown_type_only_reports_itself_data()
    {
        QTest::addColumn<int>("type");
        QTest::newRow("7") << 7;
        QTest::newRow("-1") << -1;
    }
    void an_unknown_type_only_reports_itself()
    {
        QFETCH(int, type);
        Pressed it(type);
        bool seen = false;
        it.press([&seen](QWidget* top) {
            auto* box = qobject_cast<QMessageBox*>(top);
            QVERIFY(box != nullptr);
            QCOMPARE(box->text(), u"A key_button was pushed Button CMD "_s);
            seen = true;
        });
        QVERIFY(seen);
        QVERIFY(it.messages().isEmpty());
    }

    void the_report_of_an_unknown_type_lies_inside_the_screen_data()
    {
        QTest::addColumn<QString>("command");
        QTest::newRow("usual") << QString(60, u'M');
        QTest::newRow("a long word") << QString(300, u'M');
        QTest::newRow("many words") << u"COMMAND "_s.repeated(500);
        QTest::newRow("200 kB of lines") << u"COMMAND\n"_s.repeated(25000);
    }
    void the_report_of_an_unknown_type_lies_inside_the_screen()
    {
        QFETCH(QString, command);
        Pressed it(99);
        it.button->setText(QString(60, u'W'));
        it.key->command = command;
        QRect frame;
        it.press([&](QWidget* box) {
            frame = box->frameGeometry();
            QVERIFY(qobject_cast<QMessageBox*>(box)->text().endsWith(command));
            const QPushButton* ok = buttonWithText(box, u"OK"_s);
            QVERIFY(ok != nullptr);
            QVERIFY2(ok->width() >= 110 && ok->height() >= 50, "too small for a finger");
            QVERIFY(box->rect().contains(QRect(ok->mapTo(box, QPoint()), ok->size())));
            const auto labels = box->findChildren<QLabel*>();
            for (const QLabel* label : labels) {
                QVERIFY(!label->isVisible() || box->rect().contains(label->geometry()));
            }
            const QString directory = qEnvironmentVariable("QN740_PICTURES");
            if (!directory.isEmpty()) {
                grabScreen().save(directory + u"/report-"_s +
                    QString::fromUtf8(QTest::currentDataTag()) + u".png"_s);
            }
        });
        QVERIFY(!frame.isEmpty());
        QVERIFY2(QRect(0, 0, 800, 480).contains(frame),
            qPrintable(u"%1 x %2"_s.arg(frame.width()).arg(frame.height())));
    }

    void markup_in_the_report_of_an_unknown_type_is_text()
    {
        Pressed it(99);
        it.button->setText(u"<b>x</b>"_s);
        it.press([](QWidget* box) {
            QCOMPARE(qobject_cast<QMessageBox*>(box)->textFormat(), Qt::PlainText);
        });
    }
};

QN740_TEST_MAIN(tst_KeyPress)
#include "tst_KeyPress.moc"
