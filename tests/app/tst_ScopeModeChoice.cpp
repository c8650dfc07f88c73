// The operator chooses what a scope shows.
#include "app/ScopesFixture.h"
#include "link/LinkControl.h"
#include "support/TestMain.h"
#include "touch/PresentMark.h"

#include <QGridLayout>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace {

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

class tst_ScopeModeChoice : public ScopesFixture
{
    Q_OBJECT

private slots:
    void init() { start(); }
    void cleanup() { stop(); }

    void the_list_names_its_demodulator_and_marks_its_mode_data()
    {
        QTest::addColumn<int>("demodulator");
        QTest::addColumn<QString>("mode"); // of "SM"
        QTest::addColumn<QString>("marked");
        for (const int demodulator : {1, 2, 3}) {
            QTest::addRow("%d off", demodulator) << demodulator << "0"
                                                 << "Off";
            QTest::addRow("%d eye", demodulator) << demodulator << "2"
                                                 << "Eye Pattern";
            QTest::addRow("%d constellation", demodulator) << demodulator << "1"
                                                           << "Constellation";
            QTest::addRow("%d SDI", demodulator) << demodulator << "3"
                                                 << "";
        }
    }
    void the_list_names_its_demodulator_and_marks_its_mode()
    {
        QFETCH(int, demodulator);
        QFETCH(QString, mode);
        QFETCH(QString, marked);
        clickOnScopes();
        m_window->process_SM({QString::number(demodulator), mode});
        whenModal([&](QWidget* dialog) {
            const auto* note = dialog->findChild<QLabel*>(u"noteLabel"_s);
            QVERIFY(note != nullptr && note->isVisible());
            QCOMPARE(note->text(), u"Demod %1"_s.arg(demodulator));
            QCOMPARE(
                dialog->findChild<QLabel*>(u"titleLabel"_s)->text(), u"Select Scope Mode value"_s);
            const auto marks = dialog->findChildren<PresentMark*>();
            QCOMPARE(marks.size(), marked.isEmpty() ? 0 : 1);
            if (!marks.isEmpty()) {
                QCOMPARE(marks.first()->parentWidget(), buttonWithText(dialog, marked));
            }
            clickOn(buttonWithText(dialog, u"Cancel"_s));
        });
        clickOn(m_window->rooms().scopes->modeButton(demodulator));
    }

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
            m_window->rooms().link->setMode(linkMode);
            clickOnScopes();
            m_window->process_SM({QString::number(demodulator), QStringLiteral("3")});
            m_pty->takeReceived();
            choose(choice);
            clickOn(m_window->rooms().scopes->modeButton(demodulator));
            QTEST(m_window->rooms().scopes->modeButton(demodulator)->text(), "text");
            QTEST(m_window->rooms().scopes->scope(demodulator)->plotType(), "plotType");
            QTEST(m_window->rooms().scopes->storedMode(demodulator), "stored");
            QFETCH(QByteArray, sent);
            QTRY_COMPARE(m_pty->received(), sent);
            for (int other = 1; other <= 3; ++other) {
                if (other != demodulator) {
                    QCOMPARE(m_window->rooms().scopes->modeButton(other)->text(),
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
        clickOn(m_window->rooms().scopes->modeButton(1));
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
        clickOn(m_window->rooms().scopes->modeButton(2));
        QCOMPARE(cells,
            (QMap<QString, QPoint>{{u"Eye Pattern"_s, {0, 0}}, {u"Constellation"_s, {1, 0}},
                {u"Off"_s, {2, 0}}, {u"Cancel"_s, {2, 2}}}));
        // Here texts of more than ten characters get a smaller font, whereas a list with large
        // fonts keeps its fonts.
        const QString style = u"QPushButton {background-color: %1; color:%2; font-size: %3px;%4} "_s
                              u"QPushButton:pressed {background-color: #4169e1;}"_s;
        QCOMPARE(
            styles.value(u"Eye Pattern"_s), style.arg(u"#919191"_s, u"black"_s, u"18"_s, u""_s));
        QCOMPARE(
            styles.value(u"Constellation"_s), style.arg(u"#919191"_s, u"black"_s, u"18"_s, u""_s));
        QCOMPARE(styles.value(u"Off"_s), style.arg(u"#919191"_s, u"black"_s, u"28"_s, u""_s));
        QVERIFY(styles.value(u"Cancel"_s).contains(u"font-size: 26px"_s));
    }

    void cancelling_the_list_sends_nothing()
    {
        clickOnScopes();
        choose(QStringLiteral("Cancel"));
        clickOn(m_window->rooms().scopes->modeButton(3));
        m_window->send_mess(QString::fromLatin1(framed("END")));
        QTRY_COMPARE(m_pty->received(), framed("END"));
        QCOMPARE(m_window->rooms().scopes->modeButton(3)->text(), QStringLiteral("Demod 3 Off"));
    }

    void a_choice_that_the_list_does_not_have_sends_an_empty_message()
    {
        m_window->applyScopeChoice(1, QStringLiteral("3"));
        QTRY_COMPARE(m_pty->received(), framed(""));
        QCOMPARE(m_window->rooms().scopes->modeButton(1)->text(), QStringLiteral("Demod 1 Off"));
        m_window->applyScopeChoice(1, QString());
        m_window->applyScopeChoice(1, QStringLiteral("-1"));
        QTRY_COMPARE(m_pty->received(), framed("") + framed(""));
    }

    void the_window_can_be_deleted_while_the_list_is_open()
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
};

QN740_TEST_MAIN(tst_ScopeModeChoice)
#include "tst_ScopeModeChoice.moc"
