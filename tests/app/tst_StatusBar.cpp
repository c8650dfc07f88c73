#include "app/StatusBar.h"
#include "support/Screen.h"
#include "support/TestMain.h"
#include "tools/screen/Part.h"

#include <QLabel>
#include <QMainWindow>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTextEdit>

using namespace Qt::StringLiterals;

namespace {

// Counts how often a widget is painted.
class PaintCounter : public QObject
{
public:
    int paints = 0;

    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

} // namespace

class tst_StatusBar : public QObject
{
    Q_OBJECT

private slots:
    void the_view_button_names_the_view_that_follows()
    {
        StatusBar bar;
        const auto* button = part<QPushButton>(bar, "scopesButton");
        QCOMPARE(button->text(), u"Scopes"_s);
        bar.setNextView(Views::Scopes, Views::Spectrum);
        QCOMPARE(button->text(), u"Spectrum"_s);
        bar.setNextView(Views::Spectrum, Views::Menus);
        QCOMPARE(button->text(), u"Menu"_s);
        bar.setNextView(Views::Menus, Views::Scopes);
        QCOMPARE(button->text(), u"Scopes"_s);
    }

    void each_button_is_reported_by_its_own_signal()
    {
        StatusBar bar;
        bar.resize(800, 50);
        bar.show();
        const QSignalSpy linking(&bar, &StatusBar::linkingPressed);
        const QSignalSpy mainMenu(&bar, &StatusBar::mainMenuPressed);
        const QSignalSpy view(&bar, &StatusBar::viewPressed);
        const auto counts = [&] {
            return QList<qsizetype>{linking.size(), mainMenu.size(), view.size()};
        };
        clickOn(part<QPushButton>(bar, "linkButton"));
        QCOMPARE(counts(), (QList<qsizetype>{1, 0, 0}));
        clickOn(part<QPushButton>(bar, "mainMenuButton"));
        QCOMPARE(counts(), (QList<qsizetype>{1, 1, 0}));
        clickOn(part<QPushButton>(bar, "scopesButton"));
        QCOMPARE(counts(), (QList<qsizetype>{1, 1, 1}));
        bar.setLinkingEnabled(false);
        clickOn(part<QPushButton>(bar, "linkButton"));
        QCOMPARE(counts(), (QList<qsizetype>{1, 1, 1}));
    }

    void a_text_leaves_nothing_behind_when_another_comes()
    {
        QMainWindow window;
        auto* bar = new StatusBar(&window);
        window.setStatusBar(bar);
        window.setFixedSize(800, 480);
        window.show();
        for (const QString& text : {u"TTTT"_s, u"jjjj"_s, u"WWWW"_s, u"Ready"_s}) {
            bar->showMessage(text);
            QCoreApplication::processEvents();
            const QPixmap shown = window.screen()->grabWindow(window.winId());
            QCOMPARE(shown.toImage().convertToFormat(QImage::Format_RGB32),
                window.grab().toImage().convertToFormat(QImage::Format_RGB32));
        }
    }

    void a_new_text_is_painted_once()
    {
        QMainWindow window;
        auto* bar = barOf(window);
        QCoreApplication::processEvents();
        PaintCounter counter;
        bar->installEventFilter(&counter);
        for (int k = 1; k <= 3; ++k) {
            bar->showMessage(QString::number(k));
            QTest::qWait(0);
            QCOMPARE(counter.paints, k);
        }
    }

    void the_first_letter_is_drawn_whole_data()
    {
        QTest::addColumn<QString>("text");
        for (const char* text : {"TORVA", "TTTT", "jjjj", "JJJJ", "WWWW", "Ready"}) {
            QTest::newRow(text) << QString::fromLatin1(text);
        }
    }

    // Some letters reach out of their place to the left.
    void the_first_letter_is_drawn_whole()
    {
        QFETCH(QString, text);
        QMainWindow window;
        auto* bar = barOf(window);
        bar->showMessage(text);
        QCoreApplication::processEvents();
        const QImage shown = bar->grab().toImage().convertToFormat(QImage::Format_RGB32);
        QImage plain(shown.size(), QImage::Format_RGB32);
        plain.fill(QColor(0x91, 0x91, 0x91));
        QPainter painter(&plain);
        painter.setFont(bar->font());
        painter.setPen(bar->palette().windowText().color());
        painter.drawText(plain.rect().adjusted(6, 0, 0, 0),
            Qt::AlignLeading | Qt::AlignVCenter | Qt::TextSingleLine, text);
        painter.end();
        const QRect begin(2, 2, 60, bar->height() - 4); // inside the border
        QCOMPARE(shown.copy(begin), plain.copy(begin));
    }

    void each_message_sets_its_text()
    {
        StatusBar bar;
        QCOMPARE(bar.currentMessage(), u"TORVA QN740 - Start Up"_s);
        for (const QStringList& ignored : {QStringList(), QStringList{u"x"_s, u"Text"_s},
                 QStringList{u""_s, u"Text"_s}, QStringList{u"1.5"_s, u"Text"_s}}) {
            bar.takeText(ignored);
            QCOMPARE(bar.currentMessage(), u"TORVA QN740 - Start Up"_s);
        }
        bar.takeText({u"0"_s, u"Ready"_s});
        QCOMPARE(bar.currentMessage(), u"Ready"_s);
        bar.showMenuName(u"Tuner"_s);
        QCOMPARE(bar.currentMessage(), u"QN740 Menu - Tuner"_s);
        bar.setLinkMode(u"Diversity Mode"_s);
        QCOMPARE(part<QLabel>(bar, "statusLabel")->text(), u"Diversity Mode"_s);
        bar.takeText({u"50"_s, u"Soon gone"_s});
        QTRY_COMPARE(bar.currentMessage(), QString());
    }

    void a_text_that_fits_is_drawn_whole_and_a_longer_one_is_elided_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("elided");
        QTest::newRow("empty") << "" << false;
        QTest::newRow("short") << "Ready" << false;
        QTest::newRow("menu") << "QN740 Menu - Tuner CH1" << false;
        QTest::newRow("long") << u"The receiver is looking for a carrier. "_s.repeated(3) << true;
        QTest::newRow("one word") << QString(500, u'w') << true;
        QTest::newRow("a million characters") << QString(1'000'000, u'x') << true;
    }

    void a_text_that_fits_is_drawn_whole_and_a_longer_one_is_elided()
    {
        QFETCH(QString, text);
        QFETCH(bool, elided);
        QMainWindow window;
        auto* bar = barOf(window);
        bar->takeText({u"0"_s, text});
        QTest::qWait(0);
        QCOMPARE(bar->currentMessage(), text);
        QVERIFY(bar->fontInfo().pixelSize() >= 14);
        // No part of the text reaches the widgets at the right or the edge of the screen.
        const auto* linking = part<QPushButton>(*bar, "linkButton");
        QVERIFY(bar->rect().contains(
            part<QLabel>(*bar, "versionLabel")
                ->mapTo(bar, part<QLabel>(*bar, "versionLabel")->rect().bottomRight())));
        const int left = linking->mapTo(bar, QPoint()).x();
        const QImage gap = bar->grab(QRect(left - 12, 5, 3, 40)).toImage();
        for (int y = 0; y < gap.height(); ++y) {
            QCOMPARE(gap.pixelColor(1, y), QColor(0x91, 0x91, 0x91));
        }
        // A touch shows the whole text if it was shortened, and nothing otherwise.
        touchText(*bar);
        auto* box = window.findChild<QMessageBox*>(u"statusTextBox"_s);
        QCOMPARE(box != nullptr, elided);
        if (box != nullptr) {
            QVERIFY(box->isVisible());
            QCOMPARE(box->text(), text);
            QVERIFY(QRect(0, 0, 800, 480).contains(box->frameGeometry()));
            QPointer<QMessageBox> guard(box);
            clickOn(box->buttons().first());
            QTRY_VERIFY(guard == nullptr);
        }
    }

    void the_whole_text_is_plain_and_can_be_read()
    {
        QMainWindow window;
        auto* bar = barOf(window);
        const QString text = u"<b>R & D</b> says: "_s + u"look at the antenna. "_s.repeated(40);
        bar->takeText({u"0"_s, text});
        touchText(*bar);
        touchText(*bar); // one box at a time
        const auto all = window.findChildren<QMessageBox*>(u"statusTextBox"_s);
        QCOMPARE(all.size(), 1);
        QCOMPARE(all.first()->textFormat(), Qt::PlainText);
        const auto* label = all.first()->findChild<QLabel*>(u"qt_msgbox_label"_s);
        const auto* view = all.first()->findChild<QTextEdit*>(u"longText"_s);
        QVERIFY(label->isVisible() || view != nullptr);
        if (view != nullptr) {
            QCOMPARE(view->toPlainText(), text);
            QVERIFY(view->document()->defaultFont().pixelSize() >= 14);
        } else {
            QVERIFY(label->fontInfo().pixelSize() >= 14);
        }
    }

    void a_touch_that_begins_or_ends_elsewhere_shows_nothing()
    {
        QMainWindow window;
        auto* bar = barOf(window);
        bar->takeText({u"0"_s, QString(300, u'w')});
        const QPoint onText = bar->mapTo(&window, QPoint(60, 25));
        const QPoint onPage(60, 100);
        for (const auto& way : {std::pair(onText, onPage), std::pair(onPage, onText)}) {
            QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, way.first);
            QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, way.second);
            QVERIFY(window.findChild<QMessageBox*>(u"statusTextBox"_s) == nullptr);
        }
    }

    void the_notice_comes_first_and_the_text_behind_it()
    {
        QMainWindow window;
        auto* bar = barOf(window);
        auto* notice = part<QLabel>(window, "noticeLabel");
        const QString text = u"QN740 Menu - Tuner CH1, all of it"_s;
        bar->takeText({u"0"_s, text});
        touchText(*bar);
        QVERIFY(window.findChild<QMessageBox*>(u"statusTextBox"_s) == nullptr);
        bar->setLinkState(LinkState::Closed);
        QVERIFY(notice->isVisible());
        QVERIFY(bar->rect().contains(notice->geometry()));
        touchText(*bar, notice->geometry().right() + 20);
        QVERIFY(window.findChild<QMessageBox*>(u"statusTextBox"_s) != nullptr);
        delete window.findChild<QMessageBox*>(u"statusTextBox"_s);
        bar->hide();
        QCOMPARE(notice->parentWidget(), &window);
        QVERIFY(notice->isVisible());
        bar->show();
        QCOMPARE(notice->parentWidget(), bar);
        bar->setLinkState(LinkState::Alive);
        QVERIFY(!notice->isVisible());
        touchText(*bar);
        QVERIFY(window.findChild<QMessageBox*>(u"statusTextBox"_s) == nullptr);
    }

private:
    static StatusBar* barOf(QMainWindow& window)
    {
        auto* bar = new StatusBar;
        window.setStatusBar(bar);
        window.setFixedSize(800, 480);
        window.show();
        QTest::qWait(0);
        return bar;
    }

    static void touchText(const StatusBar& bar, int x = 60)
    {
        QWidget* window = bar.window();
        QTest::mouseClick(
            window->windowHandle(), Qt::LeftButton, {}, bar.mapTo(window, QPoint(x, 25)));
    }
};

QN740_TEST_MAIN(tst_StatusBar)
#include "tst_StatusBar.moc"
