#include "popups/PopUpIpPad.h"

#include "popups/PadScreen.h"
#include "support/TestMain.h"

#include <QDialog>
#include <QMessageBox>

using namespace Qt::StringLiterals;

using namespace padScreen;

namespace {

QString run(PopUpIpPad& pad, const std::function<void(QWidget*)>& script,
    const QString& title = u"Address"_s, const QString& current = u"10.0.0.1"_s)
{
    play(script);
    return pad.new_pop_IP_NumberPad(title, current);
}

QString run(const std::function<void(QWidget*)>& script)
{
    PopUpIpPad pad;
    return run(pad, script);
}

// Clicks on keys of one character each and returns whether all of them exist.
bool type(const QWidget* dialog, const QString& keys)
{
    return press(dialog, keys.split(QString(), Qt::SkipEmptyParts));
}

void press(const QWidget* dialog, const char* key)
{
    QVERIFY2(padScreen::press(dialog, {QString::fromUtf8(key)}), key);
}

} // namespace

class tst_PopUpIpPad : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QCOMPARE(QApplication::activeModalWidget(), nullptr); }

    void the_dialog_has_a_frame_with_the_current_address()
    {
        run([](QWidget* dialog) {
            QCOMPARE(dialog->objectName(), u"PopUpIpPad"_s);
            QCOMPARE(dialog->windowTitle(), u"IPv4: 10.0.0.1"_s);
            QVERIFY(!(dialog->windowFlags() & Qt::FramelessWindowHint));
            QVERIFY(dialog->windowFlags() & Qt::CustomizeWindowHint);
            QVERIFY(dialog->windowFlags() & Qt::WindowTitleHint);
            QCOMPARE(
                dialog->styleSheet(), u"QMenuBar {background-color: #F5F5F5; font-size: 12px;}"_s);
            QCOMPARE(dialog->findChild<QLabel*>(u"titleLabel"_s)->text(), u"Address"_s);
            QCOMPARE(
                dialog->findChild<QLabel*>(u"currentValueLabel"_s)->text(), u"IPv4: 10.0.0.1"_s);
            QVERIFY(ScreenArea.contains(dialog->frameGeometry()));
        });
    }

    void nothing_overlaps_and_every_key_can_be_touched_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("current");
        QTest::newRow("plain") << "Address"
                               << "10.0.0.1";
        QTest::newRow("long") << QString(60, u'W') << QString(60, u'W');
        QTest::newRow("endless") << QString(1000, u'W') << QString(1000, u'W');
    }
    void nothing_overlaps_and_every_key_can_be_touched()
    {
        QFETCH(QString, title);
        QFETCH(QString, current);
        PopUpIpPad pad;
        bool ran = false;
        run(
            pad,
            [&ran](QWidget* dialog) {
                QVERIFY(ScreenArea.contains(dialog->frameGeometry()));
                const auto keys = dialog->findChildren<QPushButton*>();
                QCOMPARE(keys.size(), 14);
                QList<QWidget*> widgets(keys.cbegin(), keys.cend());
                const auto labels = dialog->findChildren<QLabel*>();
                for (QLabel* label : labels) {
                    if (label->isVisible()) {
                        widgets += label;
                    }
                }
                QCOMPARE(widgets.size(), 17);
                for (const QWidget* widget : widgets) {
                    const QRect its = place(dialog, widget);
                    QVERIFY(dialog->rect().contains(its));
                    for (const QWidget* other : widgets) {
                        QVERIFY(other == widget || !its.intersects(place(dialog, other)));
                    }
                }
                for (const QPushButton* key : keys) {
                    QVERIFY(key->width() >= MinKey && key->height() >= MinKey);
                    QCOMPARE(dialog->childAt(place(dialog, key).center()), key);
                }
                ran = true;
            },
            title, current);
        QVERIFY(ran);
    }

    void the_keys_stand_as_on_a_calculator()
    {
        run([](QWidget* dialog) {
            const auto at = [dialog](const char* key) {
                return place(dialog, buttonWithText(dialog, QString::fromUtf8(key))).center();
            };
            const QList<QList<const char*>> rows{{"7", "8", "9", "BackSpace"}, {"4", "5", "6"},
                {"1", "2", "3"}, {"0", ".", "CE/Cancel", "Enter"}};
            for (int row = 0; row < rows.size(); ++row) {
                for (int column = 0; column < rows.at(row).size(); ++column) {
                    const QPoint its = at(rows.at(row).at(column));
                    QCOMPARE(its.y(), at(rows.at(row).at(0)).y());
                    QCOMPARE(its.x(), at(rows.at(column < 3 ? 0 : 3).at(column)).x());
                    QVERIFY(row == 0 || its.y() > at(rows.at(row - 1).at(0)).y());
                    QVERIFY(column == 0 || its.x() > at(rows.at(row).at(column - 1)).x());
                }
            }
            QVERIFY(dialog->findChild<QLabel*>(u"entryLabel"_s)->width() >= 250);
        });
    }

    void the_style_sheets_are_exact()
    {
        run([](QWidget* dialog) {
            const auto sheet = [dialog](const char* key) {
                return buttonWithText(dialog, QString::fromUtf8(key))->styleSheet();
            };
            QCOMPARE(sheet("1"),
                u"QPushButton {background-color: #919191;  font-size: 26px; } QPushButton:pressed {background-color: #4169e1; font-weight: 480}"_s);
            QCOMPARE(sheet("."), sheet("1"));
            QCOMPARE(sheet("CE/Cancel"),
                u"QPushButton {background-color:red; color:white; font-size: 26px;  } QPushButton:pressed {background-color: #4169e1;}"_s);
            QCOMPARE(sheet("BackSpace"),
                u"QPushButton {background-color:#b0c4de; color:black;} QPushButton:pressed {background-color: #4169e1;} "_s);
            QCOMPARE(sheet("Enter"),
                u"QPushButton {background-color:green; color:black;} QPushButton:pressed {background-color: #4169e1;} "_s);
            QCOMPARE(dialog->findChild<QLabel*>(u"entryLabel"_s)->styleSheet(),
                u"background-color: white; font-size: 32px"_s);
            QCOMPARE(buttonWithText(dialog, u"1"_s)->maximumHeight(), 100);
            // The text is readable, although its style sheet sets no size.
            QCOMPARE(QFontInfo(buttonWithText(dialog, u"Enter"_s)->font()).pixelSize(), 26);
        });
    }

    void an_address_is_returned_as_it_was_typed()
    {
        QCOMPARE(run([](QWidget* dialog) {
            QVERIFY(type(dialog, u"192168001"_s));
            QCOMPARE(entry(dialog), u"192.168.001"_s);
            QVERIFY(type(dialog, u".2"_s));
            press(dialog, "Enter");
            QVERIFY(!dialog->isVisible());
        }),
            u"192.168.001.2"_s);
    }

    void backspace_removes_the_last_character()
    {
        run([](QWidget* dialog) {
            QVERIFY(type(dialog, u"1234"_s));
            press(dialog, "BackSpace");
            QCOMPARE(entry(dialog), u"123."_s);
        });
    }

    void clear_first_clears_and_then_cancels()
    {
        QCOMPARE(run([](QWidget* dialog) {
            QVERIFY(type(dialog, u"1.2.3.4"_s));
            press(dialog, "CE/Cancel");
            QCOMPARE(entry(dialog), u""_s);
            QVERIFY(dialog->isVisible());
            press(dialog, "CE/Cancel");
            QVERIFY(!dialog->isVisible());
        }),
            u""_s);
    }

    void an_invalid_address_is_explained_and_stays()
    {
        QCOMPARE(run([](QWidget* dialog) {
            bool seen = false;
            play([&seen](QWidget* top) {
                auto* box = qobject_cast<QMessageBox*>(top);
                QVERIFY(box != nullptr);
                QCOMPARE(box->text(), u"Invalid Entry"_s);
                QCOMPARE(
                    box->informativeText(), u"Expected Format #.#.#.# \n[# is from 0 to 255]"_s);
                QCOMPARE(box->windowTitle(), u"IPv4 Format"_s);
                const auto* title = box->findChild<QLabel*>(u"titleLabel"_s);
                QVERIFY(title != nullptr && title->isVisible());
                QCOMPARE(title->text(), u"IPv4 Format"_s);
                QCOMPARE(title->geometry(), QRect(2, 2, 296, 36));
                QCOMPARE(box->width(), 300);
                QVERIFY(!box->windowIcon().isNull());
                QVERIFY(ScreenArea.contains(box->frameGeometry()));
                seen = true;
                clickOn(box->button(QMessageBox::Ok));
            });
            QVERIFY(type(dialog, u"256.1.1.1"_s));
            press(dialog, "Enter");
            QVERIFY(seen);
            QVERIFY(dialog->isVisible());
            QCOMPARE(entry(dialog), u"256.1.1.1"_s);
        }),
            u""_s);
    }

    void an_address_that_was_refused_is_not_returned_by_cancelling()
    {
        QCOMPARE(run([](QWidget* dialog) {
            play([](QWidget* box) { box->close(); });
            QVERIFY(type(dialog, u"1.2.3"_s));
            press(dialog, "Enter");
            press(dialog, "CE/Cancel");
            press(dialog, "CE/Cancel");
        }),
            u""_s);
    }

    void every_opening_starts_empty()
    {
        PopUpIpPad pad;
        run(pad, [](QWidget* dialog) { QVERIFY(type(dialog, u"1.2"_s)); });
        run(pad, [](QWidget* dialog) { QCOMPARE(entry(dialog), u""_s); });
    }

    void a_pad_that_is_open_is_not_opened_twice()
    {
        PopUpIpPad pad;
        run(pad, [&pad](QWidget* dialog) {
            QCOMPARE(pad.new_pop_IP_NumberPad(u"b"_s, u""_s), u""_s);
            QCOMPARE(QApplication::activeModalWidget(), dialog);
        });
    }

    void a_pad_deleted_while_it_is_open_is_cancelled()
    {
        const int before = topLevels();
        auto* pad = new PopUpIpPad;
        play([pad](QWidget* /*dialog*/) { delete pad; });
        QCOMPARE(pad->new_pop_IP_NumberPad(u"a"_s, u"b"_s), u""_s);
        QCOMPARE(topLevels(), before);
    }

    void a_pad_deleted_under_its_error_box_is_cancelled()
    {
        const int before = topLevels();
        auto* pad = new PopUpIpPad;
        play([pad](QWidget* dialog) {
            play([pad](QWidget* box) {
                QVERIFY(qobject_cast<QMessageBox*>(box) != nullptr);
                delete pad;
            });
            buttonWithText(dialog, u"Enter"_s)->click();
        });
        QCOMPARE(pad->new_pop_IP_NumberPad(u"a"_s, u"b"_s), u""_s);
        QCOMPARE(topLevels(), before);
    }

    void slots_of_a_closed_pad_do_nothing()
    {
        PopUpIpPad pad;
        pad.num_button_clicked(u"1"_s);
        pad.backspace();
        pad.clear_entry();
    }

    void opening_and_cancelling_leaves_nothing_behind()
    {
        PopUpIpPad pad;
        const auto openAndCancel = [&pad] {
            run(pad, [](QWidget* dialog) { press(dialog, "CE/Cancel"); });
        };
        openAndCancel();
        const int before = topLevels();
        for (int i = 0; i < 200; ++i) {
            openAndCancel();
        }
        QCOMPARE(topLevels(), before);
        QCOMPARE(pad.findChildren<QObject*>().size(), 0);
    }
};

QN740_TEST_MAIN(tst_PopUpIpPad)
#include "tst_PopUpIpPad.moc"
