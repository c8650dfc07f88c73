// These tests show the main menus, the link mode dialog and the message boxes at 800 × 480. With
// QN740_PICTURES=DIR they save every screen there as a PNG.
#include "app/Rooms.h"
#include "support/Panel.h"
#include "support/TestMain.h"
#include "tools/screen/Part.h"
#include "touch/Sizes.h"
#include "touch/TextButton.h"

#include <QLabel>
#include <QMessageBox>
#include <QRadioButton>
#include <QScrollBar>
#include <QStatusBar>
#include <QTextEdit>

using namespace Qt::StringLiterals;

namespace {

const QRect Screen(0, 0, 800, 480);

const QList<QByteArray> Sources{
    "Tuner CH1", "Demod 1", "Tuner CH2", "Demod 2", "Combiner", "Demod 3"};

const QList<QByteArray> Labels{
    "RF Frequency", "IF Bandwidth", "AGC Mode", "Bit Rate", "Loop Bandwidth"};

QByteArray key(const QByteArray& menu, const QByteArray& id, const QByteArray& label, bool on)
{
    return "AK," + menu + ',' + id + ',' + label + ",0,X:,,0,,0," + (on ? "1" : "0") + ",1";
}

// Returns messages that put five keys on each source menu.
QList<QByteArray> sourceMenus()
{
    QList<QByteArray> messages;
    for (const QByteArray& menu : Sources) {
        for (qsizetype i = 0; i < Labels.size(); ++i) {
            messages += key(menu, QByteArray::number(i), Labels.at(i), i == 2);
        }
    }
    return messages;
}

void picture(const char* name)
{
    const QString directory = qEnvironmentVariable("QN740_PICTURES");
    if (!directory.isEmpty()) {
        grabScreen().save(
            directory + QLatin1Char('/') + QLatin1String(name) + QLatin1String(".png"));
    }
}

QRect onScreen(const QWidget* widget)
{
    return QRect(widget->mapToGlobal(QPoint()), widget->size());
}

} // namespace

class tst_MainMenuScreens : public QObject
{
    Q_OBJECT

    // Checks that every visible button is inside the screen and overlaps no other, and that no text
    // is shortened.
    static void checkButtons(const QWidget& window, qsizetype atLeast)
    {
        QList<QPushButton*> buttons;
        const auto all = window.findChildren<QPushButton*>();
        for (QPushButton* button : all) {
            if (button->isVisible()) {
                buttons += button;
            }
        }
        QVERIFY(buttons.size() >= atLeast);
        for (const QPushButton* button : buttons) {
            QVERIFY2(Screen.contains(onScreen(button)), qPrintable(button->text()));
            const bool inStatusBar = onScreen(button).top() >= 430;
            QVERIFY2(button->height() >= touch::MinTarget || inStatusBar,
                qPrintable(u"%1 is %2 pixels high"_s.arg(button->text()).arg(button->height())));
            QVERIFY2(
                onScreen(button->window()).contains(onScreen(button)), qPrintable(button->text()));
            const QString painted = TextButton::fitted(
                button->text(), button->fontMetrics(), button->width() - 8, button->height() - 8);
            QVERIFY2(!painted.contains(QChar(0x2026)), qPrintable(button->text()));
            for (const QPushButton* other : buttons) {
                QVERIFY2(other == button || !onScreen(button).intersects(onScreen(other)),
                    qPrintable(button->text() + QLatin1Char('|') + other->text()));
            }
        }
    }

private slots:
    void init() { linkMode::store(linkMode::None); }

    void a_full_main_menu_fits_the_screen()
    {
        Panel panel;
        QList<QByteArray> messages = sourceMenus();
        for (const QByteArray& menu : Sources) {
            for (qsizetype i = 0; i < Labels.size(); ++i) {
                messages += "CM,Main," + menu + ',' + QByteArray::number(i);
            }
        }
        const QList<QByteArray> options{
            "System", "Presets", "Time", "Network", "Self Test", "Lock"};
        for (const QByteArray& option : options) {
            messages += key("Main", "opt" + option, option, false);
        }
        messages += "SK,Main";
        panel.say(messages);
        QTRY_VERIFY(
            buttonWithText(panel.window.rooms().central, QStringLiteral("Self Test")) != nullptr);
        QTest::qWait(50);
        picture("main-menu");
        checkButtons(panel.window, 36 + 3);
        QCOMPARE(panel.window.size(), Screen.size());
    }

    void a_PAX_main_menu_fits_the_screen()
    {
        Panel panel;
        QList<QByteArray> messages = sourceMenus();
        for (int i = 0; i < 5; ++i) {
            messages += "MS,PAX,Tuner CH1," + QByteArray::number(i);
            messages += "MS,PAX,Demod 1," + QByteArray::number(i);
        }
        messages += key("PAX", "o1", "Presets", false);
        messages += key("PAX", "o2", "Menu", false);
        messages += "PAX,1";
        panel.say(messages);
        QTRY_VERIFY(
            buttonWithText(panel.window.rooms().central, QStringLiteral("Span")) != nullptr);
        QTest::qWait(50);
        picture("pax-menu");
        checkButtons(panel.window, 13);
        panel.say({"PAX,0"});
        QTest::qWait(50);
        picture("pax-menu-with-status-bar");
        checkButtons(panel.window, 13 + 3);
    }

    void a_special_menu_fits_the_screen()
    {
        Panel panel;
        QList<QByteArray> messages;
        for (int i = 0; i < 36; ++i) {
            const QByteArray label = i < 30 ? Labels.at(i % 5) : QByteArray("Option ");
            messages +=
                key("Main", QByteArray::number(i), label + ' ' + QByteArray::number(i), i % 7 == 0);
        }
        panel.say(messages);
        panel.window.process_special_menu();
        QTest::qWait(50);
        picture("special-menu");
        checkButtons(panel.window, 36 + 3);
    }

    void the_link_mode_dialog_fits_the_screen_data()
    {
        QTest::addColumn<int>("mode");
        QTest::newRow("link-none") << 0;
        QTest::newRow("link-diversity") << 1;
        QTest::newRow("link-frequency-diversity") << 2;
    }
    void the_link_mode_dialog_fits_the_screen()
    {
        QFETCH(int, mode);
        linkMode::store(mode);
        Panel panel;
        clickOn(part<QPushButton>(panel.window, "linkButton"));
        QWidget* dialog = Panel::shownWindow("linkDialog");
        QVERIFY(dialog != nullptr);
        QTest::qWait(50);
        picture(QTest::currentDataTag());
        QVERIFY(Screen.contains(dialog->frameGeometry()));
        const QPoint off = dialog->frameGeometry().center() - Screen.center();
        QVERIFY(qAbs(off.x()) <= 1 && qAbs(off.y()) <= 1);
        checkButtons(*dialog, 1);
        const auto modes = dialog->findChildren<QRadioButton*>();
        QCOMPARE(modes.size(), 3);
        for (const QRadioButton* radio : modes) {
            QVERIFY(onScreen(dialog).contains(onScreen(radio)));
            QVERIFY(radio->width() >= radio->sizeHint().width());
            QVERIFY(radio->height() >= 47);
        }
    }

    void message_boxes_fit_the_screen_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("ok");
        QTest::addColumn<bool>("fits"); // without scrolling
        const QByteArray words = QByteArray("The receiver has lost its reference. ").repeated(60);
        for (const bool ok : {false, true}) {
            const QByteArray end = ok ? "-ok" : "-bare";
            const auto row = [&](const char* name, const QByteArray& text, bool fits = true) {
                QTest::newRow(QByteArray("box-" + QByteArray(name) + end).constData())
                    << text << ok << fits;
            };
            row("empty", "");
            row("short", "Please wait");
            row("two-lines", "Reference lost<br>Check the cable at the rear panel");
            row("sentence", words.left(110));
            row("200", words.left(200));
            row("500", words.left(500));
            row("1000", words.left(1000));
            row("2000", words.left(2000));
            row("2000-wide", QByteArray("WWWW MMMMMM ").repeated(200).left(2000), false);
            row("2000-no-blank", QByteArray(2000, 'x'));
            row("60-no-blank", QByteArray(60, 'W'));
            row("60000", words.repeated(30).left(60000), false);
        }
    }
    void message_boxes_fit_the_screen()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, ok);
        QFETCH(bool, fits);
        Panel panel;
        panel.say({"DB," + text + (ok ? ",1" : "")});
        QTRY_VERIFY(Panel::shownWindow("messageBox") != nullptr);
        auto* box = qobject_cast<QMessageBox*>(Panel::shownWindow("messageBox"));
        QTest::qWait(50);
        picture(QTest::currentDataTag());
        QVERIFY(Screen.contains(box->frameGeometry()));
        const QPoint off = box->frameGeometry().center() - Screen.center();
        QVERIFY(qAbs(off.x()) <= 1 && qAbs(off.y()) <= 1);
        checkButtons(*box, ok ? 1 : 0);
        QCOMPARE(box->buttons().size(), ok ? 1 : 0);

        const auto* label = box->findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
        const auto* view = box->findChild<QTextEdit*>(QStringLiteral("longText"));
        if (view == nullptr) {
            QVERIFY(label->isVisible());
            QVERIFY(onScreen(box).contains(onScreen(label)));
            QVERIFY(label->height() >= label->heightForWidth(label->width()));
            QVERIFY(label->minimumSizeHint().width() <= label->width());
        } else {
            QVERIFY(!label->isVisible());
            QVERIFY(onScreen(box).contains(onScreen(view)));
            QVERIFY(view->document()->idealWidth() <= view->viewport()->width());
            const bool isWhole = view->document()->size().height() <= view->height();
            QCOMPARE(isWhole, fits);
            QVERIFY(isWhole || view->verticalScrollBar()->isVisible());
        }
        if (text.size() <= 2000) {
            QVERIFY(box->text().contains(QLatin1String(text)));
        }
    }
};

QN740_TEST_MAIN(tst_MainMenuScreens)
#include "tst_MainMenuScreens.moc"
