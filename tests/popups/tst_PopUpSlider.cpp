#include "popups/PopUpSlider.h"

#include "popups/TouchSlider.h"
#include "support/PopUps.h"
#include "support/TestMain.h"

#include <QSlider>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

class tst_PopUpSlider : public QObject
{
    Q_OBJECT

    static void run(PopUpSlider& popUp, const QString& name, const QString& range, float value,
        int type, const QString& steps, const std::function<void(QWidget*, QSlider*)>& then)
    {
        whenModal([&](QWidget* modal) {
            then(modal, modal->findChild<QSlider*>());
            popUps::dialog(modal)->reject();
        });
        popUp.new_pop_slider(name, u"VOL"_s, range, value, type, steps);
    }

    static QString readout(const QWidget* modal)
    {
        return modal->findChild<QLabel*>(u"readoutLabel"_s)->text();
    }

    static QString sent(int value) { return u"\x02VOL%1\x04"_s.arg(value); }

    static QStringList texts(const QWidget* modal)
    {
        QList<QPushButton*> buttons = modal->findChildren<QPushButton*>();
        std::sort(buttons.begin(), buttons.end(), [](QPushButton* a, QPushButton* b) {
            return a->y() != b->y() ? a->y() < b->y() : a->x() < b->x();
        });
        QStringList all;
        for (const QPushButton* button : buttons) {
            all += button->text();
        }
        return all;
    }

private slots:
    void the_dialog_has_its_title_sheet_and_flags()
    {
        PopUpSlider popUp;
        run(popUp, u"Volume"_s, u"100 0"_s, 50, 0, u""_s, [](QWidget* modal, QSlider* slider) {
            QCOMPARE(modal->objectName(), u"PopUpSlider"_s);
            QCOMPARE(modal->windowTitle(), u"Set Volume Value"_s);
            QCOMPARE(readout(modal), u"50.00%"_s);
            const auto* label = modal->findChild<QLabel*>(u"readoutLabel"_s);
            QCOMPARE(label->textFormat(), Qt::PlainText);
            QCOMPARE(label->styleSheet(), u"font: 22px"_s);
            QVERIFY(label->height() >= 40);
            QCOMPARE(slider->minimum(), 0);
            QCOMPARE(slider->maximum(), 100);
            QCOMPARE(slider->value(), 50);
            QVERIFY(slider->height() >= 100);
            QCOMPARE(texts(modal), (QStringList{u"DOWN"_s, u"OK"_s, u"UP"_s}));
            QVERIFY(modal->width() >= 400);
            QVERIFY(popUps::isInsideScreen(modal) && popUps::isCentred(modal));
        });
    }

    void steps_stand_in_mirrored_order_around_ok()
    {
        PopUpSlider popUp;
        run(popUp, u"Volume"_s, u"100 0"_s, 50, 0, u"1:5:10"_s, [](QWidget* modal, QSlider*) {
            QCOMPARE(texts(modal),
                (QStringList{
                    u"< -10"_s, u"< -5"_s, u"< -1"_s, u"OK"_s, u"+1 >"_s, u"+5 >"_s, u"+10 >"_s}));
            QVERIFY(modal->width() >= 630);
            for (const QPushButton* button : modal->findChildren<QPushButton*>()) {
                const bool repeats = button->text() != u"OK"_s;
                QCOMPARE(button->autoRepeat(), repeats);
                QVERIFY(!repeats || button->autoRepeatDelay() == 500);
                QVERIFY(!repeats || button->autoRepeatInterval() == 200);
                QVERIFY(button->width() >= 47 && button->height() >= 47);
            }
            QCOMPARE(buttonWithText(modal, u"< -5"_s)->styleSheet(),
                u"QPushButton {background-color:blue; color:white;} QPushButton:pressed "_s
                u"{background-color: #4169e1;}"_s);
            QCOMPARE(buttonWithText(modal, u"+5 >"_s)->styleSheet(),
                u"QPushButton {background-color:orange; color:white;} QPushButton:pressed "_s
                u"{background-color: #4169e1;}"_s);
            QCOMPARE(buttonWithText(modal, u"OK"_s)->styleSheet(),
                u"QPushButton {background-color:green; color:white;} QPushButton:pressed "_s
                u"{background-color: #4169e1;}"_s);
        });
    }

    void every_layout_lies_inside_the_screen_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::newRow("none") << "";
        QTest::newRow("one") << "5";
        QTest::newRow("four") << "1:10:100:1000";
        QTest::newRow("twenty") << u"1000000:"_s.repeated(20);
        QTest::newRow("hundred") << u"1:"_s.repeated(100);
    }
    void every_layout_lies_inside_the_screen()
    {
        QFETCH(QString, steps);
        PopUpSlider popUp;
        run(popUp, QString(60, u'W'), u"9000000 0"_s, 50, 10, steps, [](QWidget* modal, QSlider*) {
            QVERIFY(popUps::isInsideScreen(modal) && popUps::isCentred(modal));
            for (const QPushButton* button : modal->findChildren<QPushButton*>()) {
                QVERIFY(button->width() >= 47 && button->height() >= 47);
            }
        });
    }

    void a_change_is_shown_and_sent_at_once()
    {
        PopUpSlider popUp;
        QSignalSpy spy(&popUp, &Key::response_message);
        run(popUp, u"Volume"_s, u"100 0"_s, 50, 0, u""_s, [&](QWidget* modal, QSlider*) {
            QVERIFY(spy.isEmpty());
            popUps::press(modal, u"UP"_s);
            QCOMPARE(readout(modal), u"51.00%"_s);
            QCOMPARE(spy.size(), 1);
            QCOMPARE(spy.first().first().toString(), sent(51));
        });
    }

    void of_ten_changes_the_first_and_the_last_are_sent()
    {
        PopUpSlider popUp;
        QSignalSpy spy(&popUp, &Key::response_message);
        run(popUp, u"Volume"_s, u"100 0"_s, 50, 0, u""_s, [&](QWidget*, QSlider* slider) {
            for (int value = 51; value <= 60; ++value) {
                slider->setValue(value);
            }
            QCOMPARE(spy.size(), 1);
            QTRY_COMPARE(spy.size(), 2);
            QCOMPARE(spy.at(0).first().toString(), sent(51));
            QCOMPARE(spy.at(1).first().toString(), sent(60));
        });
    }

    void messages_are_never_closer_than_the_throttle_time()
    {
        PopUpSlider popUp;
        QElapsedTimer clock;
        QList<qint64> times;
        clock.start();
        connect(&popUp, &Key::response_message, this, [&] { times += clock.elapsed(); });
        run(popUp, u"Volume"_s, u"1000 0"_s, 0, 10, u""_s, [&](QWidget*, QSlider* slider) {
            int value = 0;
            const QDeadlineTimer limit(60'000);
            while (times.size() < 4 && !limit.hasExpired()) {
                slider->setValue(++value % 1000);
                QTest::qWait(5);
            }
        });
        QVERIFY(times.size() >= 4);
        for (int i = 1; i < times.size(); ++i) {
            // Both times are cut to whole milliseconds.
            QVERIFY2(times.at(i) - times.at(i - 1) >= PopUpSlider::ThrottleMs - 1,
                qPrintable(QString::number(times.at(i) - times.at(i - 1))));
        }
    }

    void a_tap_on_the_groove_goes_where_it_is_tapped_and_is_sent()
    {
        PopUpSlider popUp;
        QSignalSpy spy(&popUp, &Key::response_message);
        run(popUp, u"Volume"_s, u"2000000000 0"_s, 0, 10, u""_s,
            [&](QWidget* modal, QSlider* slider) {
                const QPoint middle = slider->mapTo(modal, slider->rect().center());
                QTest::mouseClick(modal->windowHandle(), Qt::LeftButton, {}, middle);
                QVERIFY(qAbs(slider->value() - 1'000'000'000) < 10'000'000);
                QCOMPARE(spy.size(), 1);
                QCOMPARE(spy.first().first().toString(), sent(slider->value()));
                QCOMPARE(readout(modal), QString::number(slider->value()));
            });
    }

    void a_range_of_an_int_is_kept()
    {
        PopUpSlider popUp;
        run(popUp, u"Volume"_s, u"2147483647 -2147483648"_s, 0, 10, u"2000000000"_s,
            [](QWidget* modal, QSlider* slider) {
                QCOMPARE(slider->maximum(), std::numeric_limits<int>::max());
                QCOMPARE(slider->minimum(), std::numeric_limits<int>::min());
                popUps::press(modal, u"+2000000000 >"_s);
                QCOMPARE(slider->value(), 2'000'000'000);
                popUps::press(modal, u"+2000000000 >"_s);
                QCOMPARE(slider->value(), 2'000'000'000);
            });
    }

    void the_handle_is_large_enough_for_a_finger()
    {
        PopUpSlider popUp;
        run(popUp, u"Volume"_s, u"100 0"_s, 50, 0, u""_s, [](QWidget*, QSlider* slider) {
            const QRect handle = qobject_cast<TouchSlider*>(slider)->handle();
            QVERIFY(handle.width() >= 47);
            QVERIFY(slider->height() >= 47); // can be grabbed at every height
        });
    }

    void a_held_button_stops_when_something_modal_opens()
    {
        PopUpSlider popUp;
        run(popUp, u"Volume"_s, u"1000 0"_s, 50, 10, u""_s, [&](QWidget* modal, QSlider* slider) {
            QPushButton* up = buttonWithText(modal, u"UP"_s);
            const QPoint at = up->mapTo(modal, up->rect().center());
            QTest::mousePress(modal->windowHandle(), Qt::LeftButton, {}, at);
            QTRY_VERIFY(slider->value() > 50);
            PopUpSlider second;
            run(second, u"Second"_s, u"1 0"_s, 0, 10, u""_s, [&](QWidget*, QSlider*) {
                const int before = slider->value();
                QTest::qWait(500);
                QCOMPARE(slider->value(), before);
            });
            QVERIFY(!up->isDown());
        });
    }

    void a_step_past_the_end_is_ignored()
    {
        PopUpSlider popUp;
        run(popUp, u"Volume"_s, u"100 0"_s, 97, 0, u"5"_s, [](QWidget* modal, QSlider* slider) {
            popUps::press(modal, u"+5 >"_s);
            QCOMPARE(slider->value(), 97);
            popUps::press(modal, u"< -5"_s);
            QCOMPARE(slider->value(), 92);
            popUps::press(modal, u"+5 >"_s);
            QCOMPARE(slider->value(), 97);
        });
    }

    void up_and_down_stop_at_the_ends()
    {
        PopUpSlider popUp;
        run(popUp, u"Volume"_s, u"2 1"_s, 1, 10, u""_s, [](QWidget* modal, QSlider* slider) {
            popUps::press(modal, u"DOWN"_s);
            QCOMPARE(slider->value(), 1);
            popUps::press(modal, u"UP"_s);
            popUps::press(modal, u"UP"_s);
            QCOMPARE(slider->value(), 2);
            popUps::press(modal, u"DOWN"_s);
            QCOMPARE(slider->value(), 1);
        });
    }

    void malformed_ranges_and_values_are_limited_data()
    {
        QTest::addColumn<QString>("range");
        QTest::addColumn<float>("value");
        QTest::newRow("empty") << "" << 5.0F;
        QTest::newRow("zero") << "0 0" << 5.0F;
        QTest::newRow("equal") << "4 4" << 5.0F;
        QTest::newRow("swapped") << "0 100" << 5.0F;
        QTest::newRow("junk") << "a b c" << 5.0F;
        QTest::newRow("no number") << "100 0" << std::nanf("");
        QTest::newRow("infinite") << "100 0" << HUGE_VALF;
        QTest::newRow("far") << "1e300 -1e300" << 1e30F;
    }
    void malformed_ranges_and_values_are_limited()
    {
        QFETCH(QString, range);
        QFETCH(float, value);
        for (const int type : {0, 9, 10}) {
            PopUpSlider popUp;
            run(popUp, u"Volume"_s, range, value, type, u"7"_s,
                [&](QWidget* modal, QSlider* slider) {
                    QVERIFY(slider->value() >= slider->minimum());
                    QVERIFY(slider->value() <= slider->maximum());
                    popUps::press(modal, u"+7 >"_s);
                    popUps::press(modal, u"< -7"_s);
                    QVERIFY(
                        !readout(modal).contains(u"inf"_s) && !readout(modal).contains(u"nan"_s));
                });
        }
    }

    void ok_closes_by_reject_and_sends_nothing()
    {
        PopUpSlider popUp;
        QSignalSpy spy(&popUp, &Key::response_message);
        whenModal([](QWidget* modal) { popUps::press(modal, u"OK"_s); });
        popUp.new_pop_slider(u"Volume"_s, u"VOL"_s, u"100 0"_s, 50, 0, u""_s);
        QCOMPARE(popUp.result(), static_cast<int>(QDialog::Rejected));
        QVERIFY(spy.isEmpty());
    }

    void the_last_position_is_sent_after_the_dialog_has_closed()
    {
        QPointer<PopUpSlider> popUp = new PopUpSlider(qApp);
        QSignalSpy spy(popUp, &Key::response_message);
        run(*popUp, u"Volume"_s, u"100 0"_s, 50, 0, u""_s, [](QWidget*, QSlider* slider) {
            slider->setValue(51);
            slider->setValue(60);
        });
        popUp->deleteWhenSent();
        QCOMPARE(spy.size(), 1);
        QTRY_COMPARE(spy.size(), 2);
        QCOMPARE(spy.at(1).first().toString(), sent(60));
        QTRY_VERIFY(popUp == nullptr);
    }

    void it_is_deleted_at_once_when_no_position_waits()
    {
        QPointer<PopUpSlider> popUp = new PopUpSlider(qApp);
        run(*popUp, u"Volume"_s, u"100 0"_s, 50, 0, u""_s, [](QWidget*, QSlider*) {});
        popUp->deleteWhenSent();
        QCoreApplication::sendPostedEvents(popUp, QEvent::DeferredDelete);
        QVERIFY(popUp == nullptr);
    }

    void slots_do_nothing_without_a_dialog()
    {
        PopUpSlider popUp;
        QSignalSpy spy(&popUp, &Key::response_message);
        popUp.send_message();
        popUp.timerDone();
        popUp.increament_slider();
        popUp.decreament_slider();
        popUp.change_slide(5);
        QVERIFY(spy.isEmpty());
    }

    void a_receiver_of_a_message_may_delete_the_slider()
    {
        auto* popUp = new PopUpSlider;
        connect(popUp, &Key::response_message, qApp, [popUp] { delete popUp; });
        whenModal([](QWidget* modal) {
            modal->findChild<QSlider*>()->setValue(51);
            popUps::dialog(modal)->reject();
        });
        popUp->new_pop_slider(u"Volume"_s, u"VOL"_s, u"100 0"_s, 50, 0, u""_s);
    }
};

QN740_TEST_MAIN(tst_PopUpSlider)
#include "tst_PopUpSlider.moc"
