#include "app/MainWindow.h"
#include "menus/KeyBoard.h"
#include "menus/MenuMessages.h"
#include "scopes/PlotView.h"
#include "scopes/ScopesPage.h"
#include "scopes/Streams.h"
#include "support/Pty.h"
#include "support/Screen.h"
#include "support/TestMain.h"
#include "wire/SerialLine.h"

#include <QGridLayout>
#include <QLabel>
#include <QLoggingCategory>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>

#include <array>

namespace {

QByteArray steady(int i, int q)
{
    return streams::block(QVector<int>(256, i), QVector<int>(256, q));
}

// Presses the button of the list with this text.
void choose(const QString& text)
{
    whenModal([text](QWidget* dialog) {
        QPushButton* button = buttonWithText(dialog, text);
        QVERIFY2(button != nullptr, qPrintable(text));
        clickOn(button);
    });
}

} // namespace

class tst_MainWindowScopes : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_devices = std::make_unique<DeviceDirectory>();
        m_pty = &m_devices->add(QStringLiteral("ttyO1"));
        for (int n = 1; n <= 3; ++n) {
            m_scopeLines[n] = &m_devices->add(QStringLiteral("ttyUSB%1").arg(n));
        }
        m_window = std::make_unique<MainWindow>();
        m_window->show();
        m_window->resize(800, 480);
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        hideSplash();
    }

    void cleanup()
    {
        m_window.reset();
        m_devices.reset();
    }

    // ---- the cycle of the views

    void without_a_spectrum_the_button_alternates_scopes_and_menus()
    {
        QPushButton* button = m_window->scopesButton;
        QWidget* menu = m_window->stack->currentWidget();
        QCOMPARE(button->text(), QStringLiteral("Scopes"));
        for (int round = 0; round < 2; ++round) {
            clickOn(button);
            QCOMPARE(m_window->stack->currentWidget(), m_window->scopes);
            QCOMPARE(button->text(), QStringLiteral("Menu"));
            QVERIFY(m_window->displayActive());
            clickOn(button);
            QCOMPARE(m_window->stack->currentWidget(), menu);
            QCOMPARE(button->text(), QStringLiteral("Scopes"));
            QVERIFY(!m_window->displayActive());
        }
    }

    void with_a_spectrum_page_the_button_cycles_scopes_spectrum_menus()
    {
        auto* spectrum = new QWidget;
        m_window->stack->addWidget(spectrum);
        m_window->views->set(&Views::spectrum, spectrum);
        m_window->spectrumAvailable = true;
        QPushButton* button = m_window->scopesButton;
        QWidget* menu = m_window->stack->currentWidget();
        for (int round = 0; round < 2; ++round) {
            clickOn(button);
            QCOMPARE(m_window->stack->currentWidget(), m_window->scopes);
            QCOMPARE(button->text(), QStringLiteral("Spectrum"));
            clickOn(button);
            QCOMPARE(m_window->stack->currentWidget(), spectrum);
            QCOMPARE(button->text(), QStringLiteral("Menu"));
            clickOn(button);
            QCOMPARE(m_window->stack->currentWidget(), menu);
            QCOMPARE(button->text(), QStringLiteral("Scopes"));
        }
    }

    void back_from_the_scopes_comes_the_menu_that_was_shown()
    {
        send("AK,First,1,One,0,,0,,0,0,0,1");
        send("AK,Second,1,Two,0,,0,,0,0,0,1");
        send("SK,Second");
        QWidget* second = m_window->stack->currentWidget();
        QVERIFY(second != m_window->menus->book.pages.constFirst()->frame);
        clickOn(m_window->scopesButton);
        clickOn(m_window->scopesButton);
        QCOMPARE(m_window->stack->currentWidget(), second);
    }

    void the_scopes_are_still_found_after_the_menus_were_cleared()
    {
        send("CLEAR");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        clickOn(m_window->scopesButton);
        QCOMPARE(m_window->stack->currentWidget(), m_window->scopes);
        // with no menu left there is nothing to go back to; the next one that comes is shown
        clickOn(m_window->scopesButton);
        QCOMPARE(m_window->stack->currentWidget(), m_window->scopes);
        QCOMPARE(m_window->scopesButton->text(), QStringLiteral("Scopes"));
        send("AK,New,1,One,0,,0,,0,0,0,1");
        send("SK,New");
        QCOMPARE(m_window->stack->currentWidget(),
            m_window->menus->book.find(QStringLiteral("New"))->frame);
    }

    // ---- the choice of a mode

    void choosing_a_mode_sets_the_scope_and_commands_the_demodulator_data()
    {
        QTest::addColumn<int>("demodulator");
        QTest::addColumn<QString>("choice");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("plotType");
        QTest::addColumn<int>("stored");
        QTest::addColumn<QByteArray>("sent");
        QTest::newRow("1 eye") << 1 << "Eye Pattern"
                               << "Demod 1 Eye Pattern" << 1 << 1 << framed("D1:DSDM:2");
        QTest::newRow("1 constellation")
            << 1 << "Constellation"
            << "Demod 1 Constellation" << 2 << 2 << framed("D1:DSDM:1");
        QTest::newRow("1 off") << 1 << "Off"
                               << "Demod 1 Off" << 1 << 0 << framed("D1:DSDM:0");
        QTest::newRow("2 eye") << 2 << "Eye Pattern"
                               << "Demod 2 Eye Pattern" << 1 << 1 << framed("D2:DSDM:2");
        QTest::newRow("2 constellation")
            << 2 << "Constellation"
            << "Demod 2 Constellation" << 2 << 2 << framed("D2:DSDM:1");
        QTest::newRow("2 off") << 2 << "Off"
                               << "Demod 2 Off" << 1 << 0 << framed("D2:DSDM:0");
        QTest::newRow("3 eye") << 3 << "Eye Pattern"
                               << "Demod 3 Eye Pattern" << 1 << 1 << framed("D3:DSDM:2");
        QTest::newRow("3 constellation")
            << 3 << "Constellation"
            << "Demod 3 Constellation" << 2 << 2 << framed("D3:DSDM:1");
        QTest::newRow("3 off") << 3 << "Off"
                               << "Demod 3 Off" << 1 << 0 << framed("D3:DSDM:0");
    }

    void choosing_a_mode_sets_the_scope_and_commands_the_demodulator()
    {
        QFETCH(int, demodulator);
        QFETCH(QString, choice);
        for (const int linkMode : {0, 1, 2}) {
            m_window->linkMode = linkMode;
            clickOnScopes();
            m_window->process_SM({QString::number(demodulator), QStringLiteral("3")});
            m_pty->takeReceived();
            choose(choice);
            clickOn(m_window->scopes->modeButton(demodulator));
            QTEST(m_window->scopes->modeButton(demodulator)->text(), "text");
            QTEST(m_window->scopes->scope(demodulator)->plotType(), "plotType");
            QTEST(m_window->scopes->storedMode(demodulator), "stored");
            QFETCH(QByteArray, sent);
            QTRY_COMPARE(m_pty->received(), sent);
            for (int other = 1; other <= 3; ++other) {
                if (other != demodulator) {
                    QCOMPARE(m_window->scopes->modeButton(other)->text(),
                        QStringLiteral("Demod %1 Off").arg(other));
                }
            }
        }
    }

    void the_list_is_titled_and_offers_three_modes()
    {
        clickOnScopes();
        QStringList texts;
        QString title;
        whenModal([&](QWidget* dialog) {
            for (const QPushButton* button : dialog->findChildren<QPushButton*>()) {
                texts.append(button->text());
            }
            title = dialog->windowTitle();
            clickOn(buttonWithText(dialog, QStringLiteral("Cancel")));
        });
        clickOn(m_window->scopes->modeButton(1));
        QCOMPARE(title, QStringLiteral("Select Scope Mode value"));
        texts.sort();
        QCOMPARE(texts,
            (QStringList{QStringLiteral("Cancel"), QStringLiteral("Constellation"),
                QStringLiteral("Eye Pattern"), QStringLiteral("Off")}));
    }

    void the_list_is_a_grid_of_3_by_3_with_texts_of_normal_size()
    {
        clickOnScopes();
        QMap<QString, QString> styles;
        QMap<QString, QPoint> cells; // column and row
        whenModal([&](QWidget* dialog) {
            const auto* grid = dialog->findChild<QGridLayout*>();
            QVERIFY(grid != nullptr);
            for (QPushButton* button : dialog->findChildren<QPushButton*>()) {
                int row = -1;
                int column = -1;
                int rows = 0;
                int columns = 0;
                grid->getItemPosition(grid->indexOf(button), &row, &column, &rows, &columns);
                cells.insert(button->text(), {column, row});
                styles.insert(button->text(), button->styleSheet());
            }
            QCOMPARE(grid->rowCount(), 3);
            QCOMPARE(grid->columnCount(), 3);
            clickOn(buttonWithText(dialog, QStringLiteral("Cancel")));
        });
        clickOn(m_window->scopes->modeButton(2));
        QCOMPARE(cells,
            (QMap<QString, QPoint>{{"Eye Pattern", {0, 0}}, {"Constellation", {1, 0}},
                {"Off", {2, 0}}, {"Cancel", {2, 2}}}));
        // texts of more than ten characters are set smaller, which a list of large ones does not do
        const QString style("QPushButton {background-color: %1; color:%2; font-size: %3px;%4} "
                            "QPushButton:pressed {background-color: #4169e1;}");
        QCOMPARE(styles.value("Eye Pattern"), style.arg("#919191", "black", "18", ""));
        QCOMPARE(styles.value("Constellation"), style.arg("#919191", "black", "18", ""));
        QCOMPARE(styles.value("Off"), style.arg("#919191", "black", "28", ""));
        QVERIFY(styles.value("Cancel").contains("font-size: 26px"));
    }

    void cancelling_the_list_sends_nothing()
    {
        clickOnScopes();
        choose(QStringLiteral("Cancel"));
        clickOn(m_window->scopes->modeButton(3));
        m_window->send_mess(QString::fromLatin1(framed("END")));
        QTRY_COMPARE(m_pty->received(), framed("END"));
        QCOMPARE(m_window->scopes->modeButton(3)->text(), QStringLiteral("Demod 3 Off"));
    }

    void a_choice_that_the_list_does_not_have_sends_an_empty_message()
    {
        m_window->applyScopeChoice(1, QStringLiteral("3"));
        QTRY_COMPARE(m_pty->received(), framed(""));
        QCOMPARE(m_window->scopes->modeButton(1)->text(), QStringLiteral("Demod 1 Off"));
        m_window->applyScopeChoice(1, QString());
        m_window->applyScopeChoice(1, QStringLiteral("-1"));
        QTRY_COMPARE(m_pty->received(), framed("") + framed(""));
    }

    void the_window_may_go_while_the_list_is_open()
    {
        clickOnScopes();
        whenModal([this](QWidget* dialog) {
            m_window.reset();
            if (QWidget* left = QApplication::activeModalWidget()) {
                left->close();
            }
            Q_UNUSED(dialog)
        });
        m_window->togglePlotType_ch1();
        QVERIFY(m_window == nullptr);
    }

    // ---- messages of the main unit

    void sm_sets_a_demodulator_s_display_data()
    {
        QTest::addColumn<int>("before");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("plotType");
        QTest::addColumn<int>("stored");
        QTest::newRow("off after SDI") << 3 << 0 << "Demod %1 Off" << 1 << 0;
        QTest::newRow("off after constellation") << 1 << 0 << "Demod %1 Off" << 1 << 0;
        QTest::newRow("constellation") << 3 << 1 << "Demod %1 Constellation" << 2 << 2;
        QTest::newRow("eye") << 1 << 2 << "Demod %1 Eye Pattern" << 1 << 1;
        QTest::newRow("SDI") << 2 << 3 << "Demod %1 SDI" << 0 << 3;
    }

    void sm_sets_a_demodulator_s_display()
    {
        QFETCH(int, before);
        QFETCH(int, mode);
        QFETCH(QString, text);
        for (const int demodulator : {1, 2, 3}) {
            for (const int each : {1, 2, 3}) {
                send("SM," + QByteArray::number(each) + ',' + QByteArray::number(before));
            }
            const QStringList displays = scopeDisplays();
            send("SM," + QByteArray::number(demodulator) + ',' + QByteArray::number(mode));
            QCOMPARE(m_window->scopes->modeButton(demodulator)->text(), text.arg(demodulator));
            QTEST(m_window->scopes->scope(demodulator)->plotType(), "plotType");
            QTEST(m_window->scopes->storedMode(demodulator), "stored");
            for (const int other : {1, 2, 3}) {
                if (other != demodulator) {
                    QCOMPARE(scopeDisplays().at(other - 1), displays.at(other - 1));
                }
            }
        }
    }

    void an_sm_of_no_demodulator_or_mode_changes_nothing_data()
    {
        QTest::addColumn<QByteArray>("message");
        for (const char* none : {"SM,4,1", "SM,0,1", "SM,-1,1", "SM,1,4", "SM,2,4", "SM,3,-1",
                 "SM,1", "SM,2", "SM,3", "SM", "SM,x,1", "SM,1,x", "SM,2,x", "SM,3,1.5", "SM,2,",
                 "SM,,", "SM,,1", "SM,99999999999,1", "SM,1,99999999999"}) {
            QTest::newRow(none) << QByteArray(none);
        }
    }

    void an_sm_of_no_demodulator_or_mode_changes_nothing()
    {
        QFETCH(QByteArray, message);
        for (const auto& modes : {std::array{3, 2, 2}, std::array{2, 3, 3}}) {
            for (const int demodulator : {1, 2, 3}) {
                m_window->scopes->setMode(
                    demodulator, *ScopeMode::ofMessage(modes.at(size_t(demodulator) - 1)));
            }
            const QStringList before = scopeDisplays();
            send(message);
            QCOMPARE(scopeDisplays(), before);
        }
    }

    void sq_hides_and_shows_a_demodulator_s_plots()
    {
        const auto shown = [this] {
            QList<bool> all;
            for (const int demodulator : {1, 2, 3}) {
                all += m_window->scopes->scope(demodulator)->plotsShown();
            }
            return all;
        };
        for (const int demodulator : {1, 2, 3}) {
            const QByteArray message = "SQ," + QByteArray::number(demodulator) + ',';
            QList<bool> expected{true, true, true};
            QCOMPARE(shown(), expected);
            send(message + '0');
            expected[demodulator - 1] = false;
            QCOMPARE(shown(), expected);
            expected[demodulator - 1] = true;
            for (const char* something : {"7", "-1", "1"}) {
                send(message + something);
                QCOMPARE(shown(), expected);
                send(message + '0');
            }
            // what it shows not, it receives all the same
            QSignalSpy blocks(m_window->scopes->scope(demodulator), &Scope::rcv_eye_msg);
            QVERIFY(m_scopeLines[demodulator]->write(steady(1, 1)));
            QTRY_COMPARE(blocks.size(), 1);
            send(message + '1');
        }
    }

    void an_sq_of_no_demodulator_or_number_changes_nothing_data()
    {
        QTest::addColumn<QByteArray>("message");
        for (const char* none : {"SQ,1", "SQ,2", "SQ,3", "SQ", "SQ,1,x", "SQ,2,x", "SQ,3,x",
                 "SQ,2,", "SQ,1,0.5", "SQ,x,1", "SQ,x,0", "SQ,,0", "SQ,4,0", "SQ,4,1", "SQ,0,0",
                 "SQ,0,1", "SQ,-1,0", "SQ,2,99999999999"}) {
            QTest::newRow(none) << QByteArray(none);
        }
    }

    void an_sq_of_no_demodulator_or_number_changes_nothing()
    {
        QFETCH(QByteArray, message);
        for (const bool shown : {true, false}) {
            for (const int demodulator : {1, 2, 3}) {
                m_window->scopes->scope(demodulator)->setPlotsShown(shown);
            }
            send(message);
            for (const int demodulator : {1, 2, 3}) {
                QCOMPARE(m_window->scopes->scope(demodulator)->plotsShown(), shown);
            }
        }
    }

    void pm_shows_phase_and_magnitudes()
    {
        send("PM,0.375,40,60");
        QCOMPARE(bar("ch0Bar"), 40);
        QCOMPARE(bar("ch1Bar"), 60);
        QCOMPARE(lamp(3), QStringLiteral("QLabel{background:yellow;}"));
        for (const char* none :
            {"PM", "PM,0", "PM,0,1", "PM,x,1,2", "PM,0,x,2", "PM,0,1,x", "PM,,,"}) {
            send(none);
            QCOMPARE(bar("ch0Bar"), 40);
            QCOMPARE(bar("ch1Bar"), 60);
            QCOMPARE(lamp(3), QStringLiteral("QLabel{background:yellow;}"));
        }
        send("PM,1e300,99999,-4,extra");
        QCOMPARE(bar("ch0Bar"), 100);
        QCOMPARE(bar("ch1Bar"), 0);
        QCOMPARE(lamp(3), QStringLiteral("QLabel{background:black;}"));
    }

    void plots_that_were_hidden_stay_so_when_the_mode_changes()
    {
        clickOnScopes();
        const auto visible = [this](int demodulator, const char* plot) {
            return m_window->scopes->scope(demodulator)
                ->findChild<PlotView*>(QLatin1String(plot))
                ->isVisible();
        };
        QVERIFY(visible(2, "plotI") && visible(2, "plotQ"));
        send("SQ,2,0");
        for (const char* mode : {"SM,2,1", "SM,2,3", "SM,2,0", "SM,2,2"}) {
            send(mode);
            QVERIFY2(!visible(2, "plotI") && !visible(2, "plotQ"), mode);
            QVERIFY(visible(1, "plotI") && visible(3, "plotQ"));
        }
        send("SQ,2,1");
        QVERIFY(visible(2, "plotI") && visible(2, "plotQ"));
    }

    // ---- scopes' data

    void each_demodulator_s_data_come_to_its_own_slot_and_to_no_other()
    {
        static QStringList noted;
        noted.clear();
        QLoggingCategory::setFilterRules(QStringLiteral("qn740.scopes.debug=true"));
        const QtMessageHandler before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& text) { noted += text; });
        const auto atEnd = qScopeGuard([before] {
            qInstallMessageHandler(before);
            QLoggingCategory::setFilterRules(QString());
        });
        for (const int demodulator : {2, 1, 3}) {
            QVERIFY(m_scopeLines[demodulator]->write(steady(demodulator, 0)));
            QTRY_COMPARE(noted.size(), 1);
            QCOMPARE(noted.takeFirst(),
                QStringLiteral("Demod %1 block of 256 I and 256 Q samples").arg(demodulator));
        }
        for (const int demodulator : {3, 1, 2}) {
            m_window->process_SM({QString::number(demodulator), QStringLiteral("3")});
            QVERIFY(m_scopeLines[demodulator]->write(QByteArray("\x00\xff"
                                                                "abcde",
                7)));
            QTRY_COMPARE(noted.size(), 1);
            QCOMPARE(noted.takeFirst(),
                QStringLiteral("Demod %1 SDI record \"61 62 63 64 65\"").arg(demodulator));
        }
    }

    void a_scope_is_available_while_a_port_is_open()
    {
        QVERIFY(m_window->scope_available());
        m_window.reset();
        m_devices = std::make_unique<DeviceDirectory>();
        m_window = std::make_unique<MainWindow>();
        QVERIFY(!m_window->scope_available());
    }

    void a_trace_s_colour_is_that_of_its_scope_data()
    {
        QTest::addColumn<QByteArray>("message");
        QTest::addColumn<int>("scope"); // 0: none
        QTest::newRow("trace 1") << QByteArray("LC,2,1") << 1;
        QTest::newRow("trace 2") << QByteArray("LC,2,2") << 2;
        QTest::newRow("trace 3") << QByteArray("LC,2,3") << 3;
        // of the spectrum alone or of nothing
        for (const char* none : {"LC,2", "LC,2,0", "LC,2,4", "LC,2,-1", "LC,2,-2147483648",
                 "LC,2,2147483647", "LC,2,x", "LC,x,1", "LC,8,1", "LC,-1,2", "LC"}) {
            QTest::newRow(none) << QByteArray(none) << 0;
        }
    }

    void a_trace_s_colour_is_that_of_its_scope()
    {
        QFETCH(QByteArray, message);
        QFETCH(int, scope);
        const QColor red(255, 0, 0);
        const QColor blue(0x60, 0x90, 0xff);
        send(message);
        for (const int demodulator : {1, 2, 3}) {
            QCOMPARE(m_window->scopes->scope(demodulator)->lineColor(),
                demodulator == scope ? blue : red);
        }
    }

    void a_colour_for_a_scope_that_is_not_there_is_none()
    {
        for (const int none : {-1, 3, 1000}) {
            m_window->setScopeLineColor(6, none);
        }
        for (const int demodulator : {1, 2, 3}) {
            QCOMPARE(m_window->scopes->scope(demodulator)->lineColor(), QColor(255, 0, 0));
        }
    }

    void plots_are_painted_only_while_the_page_is_shown()
    {
        auto* plot = m_window->scopes->scope(1)->findChild<PlotView*>(QStringLiteral("plotI"));
        QSignalSpy blocks(m_window->scopes->scope(1), &Scope::rcv_eye_msg);
        QVERIFY(m_scopeLines[1]->write(steady(1, 1) + steady(2, 2)));
        QTRY_COMPARE(blocks.size(), 2);
        QTest::qWait(100); // longer than the pause before a painting
        QCOMPARE(plot->paintCount(), 0);
        clickOnScopes();
        QTRY_VERIFY(plot->paintCount() > 0);
        const int shown = plot->paintCount();
        QVERIFY(m_scopeLines[1]->write(steady(1, 1)));
        QTRY_VERIFY(plot->paintCount() > shown);
    }

    void what_comes_in_on_the_re_send_line_goes_to_the_main_unit()
    {
        Pty& line = *newWindowWithResendLine();
        m_window->linkMode = 1;
        QVERIFY(line.write("junk\x02"
                           "D1:A"));
        QVERIFY(line.write(QByteArray("BC,1\x04\x04more\x02"
                                      "D2:DSDM:1\x04")));
        QTRY_COMPARE(m_pty->received(), framed("D1 D2 D3:ABC,1") + framed("D2:DSDM:1"));
    }

    void a_message_on_the_re_send_line_that_breaks_off_is_forgotten()
    {
        Pty* line = newWindowWithResendLine();
        // the first one says that the beginning of the second has been read as well
        QVERIFY(line->write(framed("D1:A") +
            "\x02"
            "D1:DSDM:"));
        QTRY_COMPARE(m_pty->received(), framed("D1:A"));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("was lost")));
        line->close();
        const SerialLine* resend = resendLine();
        QVERIFY(resend != nullptr);
        QTRY_VERIFY(!resend->isOpen());
        line = &m_devices->add(QStringLiteral("ttyUSB4"));
        QTRY_VERIFY_WITH_TIMEOUT(resend->isOpen(), 20000);
        QVERIFY(line->write("1\x04" + framed("D1:B")));
        QTRY_COMPARE(m_pty->received(), framed("D1:A") + framed("D1:B"));
    }

    void a_message_on_the_re_send_line_that_does_not_end_is_not_kept()
    {
        Pty* line = newWindowWithResendLine();
        const QByteArray longest = framed("D1:" + QByteArray(1000, 'A'));
        QVERIFY(line->write(longest));
        QTRY_COMPARE(m_pty->received(), longest);
        m_pty->takeReceived();
        QVERIFY(line->write(framed("D1:" + QByteArray(100'000, 'B')) + framed("D1:C")));
        QTRY_COMPARE(m_pty->received(), framed("D1:C"));
    }

    void the_pax_main_menu_takes_the_combiner_s_scope_and_gives_it_back()
    {
        Scope* scope = m_window->scopes->scope(3);
        QWidget* home = scope->parentWidget();
        send("AK,Tuner CH1,1,One,0,,0,,0,0,0,1");
        send("MS,Pax,Tuner CH1,1");
        send("PAX,1");
        QVERIFY(scope->disableFixIsize());
        QTRY_VERIFY(scope->isVisible());
        QCOMPARE(m_window->stack->currentIndex(), m_window->paxMenuIndex());
        QVERIFY(m_window->stack->currentWidget()->isAncestorOf(scope));
        QSignalSpy blocks(scope, &Scope::rcv_eye_msg);
        QVERIFY(m_scopeLines[3]->write(steady(16384, 16384)));
        QTRY_COMPARE(blocks.size(), 1);
        const QRect place(scope->mapTo(m_window.get(), QPoint()), scope->size());
        QVERIFY(m_window->rect().contains(place));
        send("PAX,0");
        QVERIFY(!scope->disableFixIsize());
        QCOMPARE(scope->parentWidget(), home);
        // a second return changes nothing
        send("PAX,0");
        QCOMPARE(scope->parentWidget(), home);
        clickOnScopes();
        QTRY_VERIFY(scope->isVisible());
    }

    void the_scope_outlives_the_pax_main_menu()
    {
        const QPointer<Scope> scope = m_window->scopes->scope(3);
        send("AK,Tuner CH1,1,One,0,,0,,0,0,0,1");
        send("MS,Pax,Tuner CH1,1");
        send("PAX,1");
        send("CLEAR");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(scope != nullptr);
        QVERIFY(m_window->scopes->isAncestorOf(scope));
    }

    void nothing_lies_outside_the_screen()
    {
        clickOnScopes();
        const QRect screen(0, 0, 800, 480);
        QCOMPARE(m_window->size(), screen.size());
        for (QWidget* widget : m_window->scopes->findChildren<QWidget*>()) {
            if (widget->isVisible()) {
                const QRect place(widget->mapTo(m_window.get(), QPoint()), widget->size());
                QVERIFY2(screen.contains(place), qPrintable(widget->objectName()));
            }
        }
    }

private:
    void send(const QByteArray& body) { m_window->process_mess(QString::fromLatin1(framed(body))); }

    void clickOnScopes()
    {
        if (m_window->stack->currentWidget() != m_window->scopes) {
            clickOn(m_window->scopesButton);
        }
        QTRY_COMPARE(m_window->stack->currentWidget(), m_window->scopes);
    }

    // What button, scope and stored mode tell of each demodulator.
    QStringList scopeDisplays() const
    {
        QStringList displays;
        for (const int demodulator : {1, 2, 3}) {
            displays += QStringLiteral("%1, type %2, mode %3")
                            .arg(m_window->scopes->modeButton(demodulator)->text())
                            .arg(m_window->scopes->scope(demodulator)->plotType())
                            .arg(m_window->scopes->storedMode(demodulator));
        }
        return displays;
    }

    void hideSplash()
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget != m_window.get()) {
                widget->hide();
            }
        }
    }

    // A window that finds a re-send line. Out: the line.
    Pty* newWindowWithResendLine()
    {
        m_window.reset();
        Pty* line = &m_devices->add(QStringLiteral("ttyUSB4"));
        m_pty = &m_devices->add(QStringLiteral("ttyO1"));
        m_window = std::make_unique<MainWindow>();
        return line;
    }

    const SerialLine* resendLine() const
    {
        for (const SerialLine* line : m_window->findChildren<SerialLine*>()) {
            if (line->name() == QLatin1String("ttyUSB4")) {
                return line;
            }
        }
        return nullptr;
    }

    int bar(const char* name) const
    {
        return m_window->scopes->findChild<QProgressBar*>(QLatin1String(name))->value();
    }

    QString lamp(int number) const
    {
        return m_window->scopes->findChild<QLabel*>(QStringLiteral("phaseLabel%1").arg(number))
            ->styleSheet();
    }

    std::unique_ptr<DeviceDirectory> m_devices;
    Pty* m_pty = nullptr;
    std::map<int, Pty*> m_scopeLines;
    std::unique_ptr<MainWindow> m_window;
};

QN740_TEST_MAIN(tst_MainWindowScopes)
#include "tst_MainWindowScopes.moc"
