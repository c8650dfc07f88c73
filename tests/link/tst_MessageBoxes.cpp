#include "link/MessageBoxes.h"

#include "support/Heap.h"
#include "support/Screen.h"
#include "support/TestMain.h"

#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTextDocument>
#include <QTextEdit>
#include <QWindow>

#include <array>
#include <memory>

#include <sys/inotify.h>
#include <unistd.h>

namespace {
const QRect Screen(0, 0, 800, 480);

qsizetype openBoxes()
{
    qsizetype count = 0;
    for (const QWidget* top : QApplication::topLevelWidgets()) {
        count += qobject_cast<const QMessageBox*>(top) != nullptr ? 1 : 0;
    }
    return count;
}

QString textOf(int number)
{
    return QStringLiteral("<font size = 6>%1</font>").arg(number);
}

QList<QMessageBox*> shownBoxes()
{
    QList<QMessageBox*> boxes;
    for (QWidget* top : QApplication::topLevelWidgets()) {
        auto* box = qobject_cast<QMessageBox*>(top);
        if (box != nullptr && box->isVisible()) {
            boxes += box;
        }
    }
    return boxes;
}

QStringList shownTexts()
{
    QStringList texts;
    for (const QMessageBox* box : shownBoxes()) {
        texts += box->text();
    }
    return texts;
}

// A file, and whether anybody has opened it.
class OpenedFiles
{
public:
    explicit OpenedFiles(const QString& path)
        : m_path(path)
        , m_notify(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        QImage(4, 4, QImage::Format_RGB32).save(path);
        inotify_add_watch(m_notify, QFile::encodeName(path).constData(), IN_OPEN);
    }
    ~OpenedFiles() { ::close(m_notify); }
    Q_DISABLE_COPY_MOVE(OpenedFiles)

    const QString& path() const { return m_path; }
    bool any() const
    {
        std::array<char, 4096> events{};
        return ::read(m_notify, events.data(), events.size()) > 0;
    }

private:
    QString m_path;
    int m_notify;
};

// Counts how often each of some windows was put over the others.
class RaiseCounter : public QObject
{
public:
    explicit RaiseCounter(const QList<QWidget*>& windows)
    {
        for (QWidget* window : windows) {
            window->installEventFilter(this);
        }
    }

    // How often since it was asked last.
    int take(QWidget* window) { return m_counts.take(window); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        m_counts[watched] += event->type() == QEvent::ZOrderChange ? 1 : 0;
        return false;
    }

private:
    QMap<QObject*, int> m_counts;
};

// Boxes that count the events of the application that they look at.
class WatchingBoxes : public MessageBoxes
{
public:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        ++events;
        return MessageBoxes::eventFilter(watched, event);
    }

    int events = 0;
};

// Closes one of the boxes and deletes it.
void closeOne()
{
    const auto boxes = shownBoxes();
    boxes.constLast()->accept();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
} // namespace

class tst_MessageBoxes : public QObject
{
    Q_OBJECT

private slots:
    void a_box_has_text_icon_sheet_and_button_data()
    {
        QTest::addColumn<bool>("ok");
        QTest::newRow("with OK") << true;
        QTest::newRow("without") << false;
    }
    void a_box_has_text_icon_sheet_and_button()
    {
        QFETCH(bool, ok);
        MessageBoxes boxes;
        const QMessageBox* box = boxes.open(QStringLiteral("50 %1 & <b>more</b>"), ok, Screen);
        QCOMPARE(box->text(), QStringLiteral("<font size = 6>50 %1 & <b>more</b></font>"));
        QVERIFY(box->isVisible());
        QVERIFY(!box->isModal());
        QVERIFY(box->parent() == nullptr);
        QCOMPARE(box->icon(), QMessageBox::Information);
        QCOMPARE(
            box->styleSheet(), QStringLiteral("background-color:darkgray; border-width: 2px;"));
        QCOMPARE(box->buttons().size(), ok ? 1 : 0);
        QCOMPARE(box->findChildren<QPushButton*>().size(), ok ? 1 : 0);
        if (ok) {
            const QAbstractButton* button = box->buttons().first();
            QCOMPARE(button->text(), QStringLiteral("OK"));
            QCOMPARE(button->styleSheet(), QStringLiteral("font: 28px"));
            QVERIFY(button->height() >= 47);
            QVERIFY(box->width() >= 600);
            const auto* grid = qobject_cast<QGridLayout*>(box->layout());
            QLayoutItem* last = grid->itemAtPosition(grid->rowCount() - 1, 0);
            QVERIFY(last != nullptr && last->spacerItem() != nullptr);
            QCOMPARE(last->spacerItem()->sizeHint().width(), 600);
        }
    }

    void OK_closes_and_deletes_the_box()
    {
        MessageBoxes boxes;
        QPointer<QMessageBox> box = boxes.open(QStringLiteral("Text"), true, Screen);
        QVERIFY(QTest::qWaitForWindowExposed(box));
        clickOn(box->buttons().first());
        QTRY_VERIFY(box == nullptr);
    }

    void accepting_deletes_a_box_without_buttons()
    {
        MessageBoxes boxes;
        QPointer<QMessageBox> box = boxes.open(QStringLiteral("Text"), false, Screen);
        box->accept();
        QVERIFY(!box->isVisible());
        QTRY_VERIFY(box == nullptr);
    }

    void nothing_else_closes_a_box_without_buttons()
    {
        MessageBoxes boxes;
        QMessageBox* box = boxes.open(QStringLiteral("Text"), false, Screen);
        QTest::keyClick(box, Qt::Key_Escape);
        QVERIFY(!box->close());
        QTest::mouseClick(box->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
        QVERIFY(box->isVisible());
    }

    void sixteen_boxes_stand_and_the_others_wait_their_turn()
    {
        MessageBoxes boxes;
        QList<QPointer<QMessageBox>> opened;
        for (int i = 0; i < 20; ++i) {
            opened += boxes.open(QString::number(i), i % 2 == 0, Screen);
        }
        for (int i = 0; i < 20; ++i) {
            QCOMPARE(opened.at(i) != nullptr, i < 16);
        }
        QCOMPARE(boxes.waiting(), 4);
        QCOMPARE(shownTexts().size(), 16);
        // Each box that is closed makes room for the one that has waited longest.
        opened.at(15)->accept();
        QVERIFY(shownTexts().contains(textOf(16)) && !shownTexts().contains(textOf(15)));
        delete opened.at(3);
        QCOMPARE(shownTexts().size(), 15);
        opened.at(0)->accept();
        QVERIFY(shownTexts().contains(textOf(17)) && shownTexts().contains(textOf(18)));
        QCOMPARE(boxes.waiting(), 1);
    }

    void none_of_a_thousand_waiting_boxes_is_lost_and_the_rest_is_logged_once()
    {
        auto owner = std::make_unique<MessageBoxes>();
        MessageBoxes& boxes = *owner;
        for (int i = 0; i < 16 + 1000; ++i) {
            boxes.open(QString::number(i), true, Screen);
        }
        QCOMPARE(boxes.waiting(), 1000);
        static QStringList logged;
        const auto before = qInstallMessageHandler(
            [](QtMsgType type, const QMessageLogContext&, const QString& text) {
                if (type == QtWarningMsg && text.contains(QLatin1String("lost"))) {
                    logged += text;
                }
            });
        const auto restore = qScopeGuard([before] { qInstallMessageHandler(before); });
        const auto overflow = [&boxes](int count) {
            for (int i = 0; i < count; ++i) {
                boxes.open(QStringLiteral("lost"), true, Screen);
            }
            return std::exchange(logged, {});
        };
        const QString warning = QStringLiteral("DB: 1000 boxes are waiting, further ones are lost");
        QCOMPARE(overflow(50), QStringList{warning});
        QCOMPARE(overflow(50), QStringList());
        closeOne();
        QCOMPARE(overflow(1), QStringList()); // there is room again
        QCOMPARE(overflow(2), QStringList()); // in the same minute
        // The boxes come in the order in which they were sent. The last one is the one for which
        // there was room again.
        for (int i = 17; i < 16 + 1000; ++i) {
            closeOne();
            QVERIFY2(shownTexts().contains(textOf(i)), QByteArray::number(i));
        }
        closeOne();
        QVERIFY(shownTexts().contains(QStringLiteral("<font size = 6>lost</font>")));
        QCOMPARE(boxes.waiting(), 0);
        owner.reset();
        QCOMPARE(logged, QStringList{warning + QStringLiteral(" (101 times)")}); // but the first
    }

    void closing_all_closes_those_that_wait_too()
    {
        MessageBoxes boxes;
        for (int i = 0; i < 40; ++i) {
            boxes.open(QString::number(i), i % 2 == 0, Screen);
        }
        boxes.closeAll();
        QCOMPARE(boxes.waiting(), 0);
        QCOMPARE(shownTexts(), QStringList());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(openBoxes(), 0);
        boxes.open(QStringLiteral("next"), true, Screen);
        QCOMPARE(shownTexts().size(), 1);
    }

    void a_box_belongs_to_the_modal_window_on_top_data()
    {
        QTest::addColumn<bool>("nested");
        QTest::newRow("under another one") << true;
        QTest::newRow("alone") << false;
    }

    // A modal window blocks all windows but its own.
    void a_box_belongs_to_the_modal_window_on_top()
    {
        QFETCH(bool, nested);
        MessageBoxes boxes;
        QPointer<QMessageBox> box = boxes.open(QStringLiteral("Text"), true, Screen);
        QPointer<QMessageBox> other = boxes.open(QStringLiteral("Other"), true, Screen);
        auto outer = std::make_unique<QDialog>();
        auto inner = std::make_unique<QDialog>();
        outer->setModal(true);
        inner->setModal(true);
        outer->show();
        QTRY_COMPARE(box->windowHandle()->transientParent(), outer->windowHandle());
        if (nested) {
            inner->show();
            QTRY_COMPARE(box->windowHandle()->transientParent(), inner->windowHandle());
            clickOn(other->buttons().first());
            QTRY_VERIFY(other == nullptr);
            inner->hide();
            QCOMPARE(box->windowHandle()->transientParent(), outer->windowHandle()); // at once
            inner.reset();
        }
        QTRY_COMPARE(box->windowHandle()->transientParent(), outer->windowHandle());
        clickOn(box->buttons().first());
        QTRY_VERIFY(box == nullptr);
        outer.reset();
        box = boxes.open(QStringLiteral("Text"), true, Screen);
        QVERIFY(box->windowHandle()->transientParent() == nullptr);
    }

    // It would keep a finger from the editor, and only the main unit closes it.
    void a_pressed_box_without_a_button_steps_aside_until_a_window_has_gone()
    {
        MessageBoxes boxes;
        QDialog editor;
        editor.setModal(true);
        editor.show();
        QMessageBox* pressed = boxes.open(QStringLiteral("Text"), false, Screen);
        QMessageBox* other = boxes.open(QStringLiteral("Other"), false, Screen);
        QCoreApplication::processEvents();
        RaiseCounter raised({&editor, pressed, other});
        QTest::mousePress(pressed, Qt::LeftButton);
        QVERIFY(pressed->windowHandle()->transientParent() == nullptr);
        QCOMPARE(other->windowHandle()->transientParent(), editor.windowHandle());
        QCOMPARE(raised.take(&editor), 1);
        QCOMPARE(raised.take(pressed), 0);
        QCOMPARE(raised.take(other), 1); // over the editor again
        {
            QDialog inner;
            inner.setModal(true);
            inner.show();
            QTRY_COMPARE(other->windowHandle()->transientParent(), inner.windowHandle());
            QVERIFY(pressed->windowHandle()->transientParent() == nullptr); // it is still aside
            QCOMPARE(raised.take(pressed), 0);
            raised.take(other);
        }
        for (QMessageBox* box : {pressed, other}) {
            QCOMPARE(box->windowHandle()->transientParent(), editor.windowHandle());
            QCOMPARE(raised.take(box), 1);
        }
    }

    void a_box_with_a_button_or_without_an_editor_does_not_step_aside_data()
    {
        QTest::addColumn<bool>("okButton");
        QTest::addColumn<bool>("isOverEditor");
        QTest::newRow("with a button") << true << true;
        QTest::newRow("without an editor") << false << false;
    }

    void a_box_with_a_button_or_without_an_editor_does_not_step_aside()
    {
        QFETCH(bool, okButton);
        QFETCH(bool, isOverEditor);
        MessageBoxes boxes;
        QDialog editor;
        editor.setModal(isOverEditor);
        editor.show();
        QMessageBox* box = boxes.open(QStringLiteral("Text"), okButton, Screen);
        QCoreApplication::processEvents();
        const QWindow* parent = box->windowHandle()->transientParent();
        QCOMPARE(parent, isOverEditor ? editor.windowHandle() : nullptr);
        RaiseCounter raised({&editor, box});
        QTest::mousePress(box, Qt::LeftButton, {}, QPoint(3, 3));
        QCOMPARE(box->windowHandle()->transientParent(), parent);
        QCOMPARE(raised.take(&editor), 0);
        QCOMPARE(raised.take(box), 0);
    }

    void ten_thousand_boxes_leave_the_memory_where_it_was()
    {
        MessageBoxes boxes;
        const auto round = [&boxes](int count) {
            for (int i = 0; i < count; ++i) {
                boxes.open(QString::number(i), i % 2 == 0, Screen);
                if (i % 40 == 39) {
                    boxes.closeAll();
                    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
                    QCoreApplication::processEvents(); // events of windows that are gone
                }
            }
        };
        round(1000);
        const qsizetype before = heapInUse();
        const auto widgets = QApplication::allWidgets().size();
        round(10'000);
        QCOMPARE(QApplication::allWidgets().size(), widgets);
        const qsizetype grown = heapInUse() - before;
        QVERIFY2(grown < 100'000, QByteArray::number(grown));
    }

    void boxes_are_deleted_with_their_owner()
    {
        auto boxes = std::make_unique<MessageBoxes>();
        boxes->open(QStringLiteral("One"), true, Screen);
        boxes->open(QStringLiteral("Two"), false, Screen);
        QCOMPARE(openBoxes(), 2);
        boxes.reset();
        QCOMPARE(openBoxes(), 0);
    }

    void boxes_that_wait_are_not_shown_when_their_owner_goes()
    {
        auto boxes = std::make_unique<MessageBoxes>();
        for (int i = 0; i < 40; ++i) {
            boxes->open(textOf(i), true, Screen);
        }
        QCOMPARE(openBoxes(), 16);
        boxes.reset();
        QCOMPARE(openBoxes(), 0);
    }

    void a_thousand_boxes_leave_no_widgets_behind()
    {
        MessageBoxes boxes;
        const auto widgets = QApplication::allWidgets().size();
        for (int i = 0; i < 1000; ++i) {
            const QString text = i % 50 == 0 ? QString(2000, QLatin1Char('x')) : QString::number(i);
            QMessageBox* box = boxes.open(text, i % 2 == 0, Screen);
            box->accept();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        QCOMPARE(QApplication::allWidgets().size(), widgets);
    }

    // Each event of the panel would take longer otherwise.
    void no_events_are_watched_without_boxes()
    {
        WatchingBoxes boxes;
        QWidget window;
        for (int round = 0; round < 2; ++round) {
            QMessageBox* box = boxes.open(QStringLiteral("Text"), true, Screen);
            boxes.events = 0;
            window.show();
            QVERIFY(boxes.events > 0);
            box->accept();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            boxes.events = 0;
            window.hide();
            QCOMPARE(boxes.events, 0);
        }
    }

    void a_long_text_is_shown_whole()
    {
        MessageBoxes boxes;
        const QString text = QStringLiteral("The receiver has lost it. ").repeated(77).left(2000);
        const QMessageBox* box = boxes.open(text, true, Screen);
        QCOMPARE(box->text(), QStringLiteral("<font size = 6>%1</font>").arg(text));
        const auto* view = box->findChild<QTextEdit*>(QStringLiteral("longText"));
        QVERIFY(view != nullptr);
        QCOMPARE(view->toPlainText().trimmed(), text.trimmed());
        QVERIFY(view->document()->size().height() <= view->height());
        QVERIFY(Screen.contains(box->frameGeometry()));
    }

    void a_text_of_a_million_characters_is_cut()
    {
        MessageBoxes boxes;
        const QMessageBox* longest = boxes.open(QString(20'000, QLatin1Char('a')), true, Screen);
        QVERIFY(!longest->text().contains(QChar(0x2026)));
        QTest::ignoreMessage(QtWarningMsg,
            QRegularExpression(
                QStringLiteral("the text of a message box is cut off after 20000 characters$")));
        const QMessageBox* box = boxes.open(QString(1'000'000, QLatin1Char('a')), true, Screen);
        QVERIFY(box->text().size() < 20'100);
        QVERIFY(box->text().contains(QChar(0x2026)));
        QVERIFY(Screen.contains(box->frameGeometry()));
    }

    void harmless_tags_are_rich_text_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("shown");
        const auto row = [](const char* text, const char* shown) {
            QTest::newRow(text) << QString::fromLatin1(text) << QString::fromLatin1(shown);
        };
        row("Antenna <b>fault</b>", "Antenna fault");
        row("Reference lost<br>Check the cable", "Reference lost\nCheck the cable");
        row("<FONT COLOR=red size='+2'>hot</FONT >", "hot");
        row("<p align=\"center\">A<hr width=50%>B<br />C<br/>", "A\n\nB\nC");
        row("<span style=\"color: #ff0000; font-size:20px;font-weight:bold\">hot</span>", "hot");
        row("<table border=1 bgcolor=#ffffff><tr><td colspan=2>A</table>", "A");
        row("1 &lt; 2 &amp; 3 > 2", "1 < 2 & 3 > 2");
    }
    void harmless_tags_are_rich_text()
    {
        QFETCH(QString, text);
        MessageBoxes boxes;
        const QMessageBox* box = boxes.open(text, true, Screen);
        QCOMPARE(box->text(), QStringLiteral("<font size = 6>%1</font>").arg(text));
        QVERIFY(box->findChild<QTextEdit*>() == nullptr);
        QCOMPARE(box->textFormat(), Qt::AutoText);
        QTextDocument document;
        document.setHtml(text);
        QTEST(
            document.toPlainText().trimmed().remove(QChar(0xfdd0)).remove(QChar(0xfdd1)), "shown");
    }

    void a_text_with_other_tags_is_shown_with_them_data()
    {
        QTest::addColumn<QString>("text"); // %1: the name of a file
        const auto row = [](const char* text) { QTest::newRow(text) << QString::fromLatin1(text); };
        row("<img src=\"%1\">");
        row("<img src='file://%1'");
        row("< IMG\tSRC=%1 >");
        row("<&#105;mg src=%1>");
        row("<b><img src=%1></b>");
        row("<b title='<img src=%1>'>");
        row("<b <img src=%1>");
        row("<!-- > --><img src=%1>");
        row("<table background=\"%1\"><tr><td>x</table>");
        row("<body background=%1>");
        row("<div style=\"background-image: url(%1)\">x</div>");
        row("<p style='color:red; background:url(%1)'>x");
        row("<ul style=\"list-style-image: url(%1)\"><li>x</ul>");
        row("<link rel=\"stylesheet\" type=\"text/css\" href=\"%1\">x");
        row("<style>@import url(%1);</style>x");
        row("<object data=%1>x");
        row("Level < 5 dBm");
        row("<p style='font-size:200%'>x");
        row("<font face=Courier>x");
        row("<td rowspan=2000000000>x");
        const auto many = [](const char* name, const char* text, int times) {
            QTest::newRow(name) << QString::fromLatin1(text).repeated(times);
        };
        many("fourteen tables in each other", "<table><tr><td>", 14);
        many("1,300 tables in each other", "<table><tr><td>", 1300);
        many("three tables", "<table>", 3);
        many("floating pictures", "<img align=left>", 300);
        many("101 cells", "<td>x", 101);
        many("201 tags", "<b>x", 201);
        many("lists in lists", "<ul><li>", 300);
    }
    // Qt opens the files that a rich text names.
    void a_text_with_other_tags_is_shown_with_them()
    {
        QFETCH(QString, text);
        const QTemporaryDir folder;
        const OpenedFiles opened(folder.filePath(QStringLiteral("picture.png")));
        text.replace(QLatin1String("%1"), opened.path());
        MessageBoxes boxes;
        QMessageBox* box = boxes.open(text, true, Screen);
        box->grab();
        QVERIFY(!opened.any());
        QCOMPARE(box->text(), QStringLiteral("<font size = 6>%1</font>").arg(text));
        const auto* view = box->findChild<QTextEdit*>(QStringLiteral("longText"));
        QVERIFY(view != nullptr && view->isVisible());
        QCOMPARE(view->toPlainText().simplified(), text.simplified());
        QVERIFY(!box->findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))->isVisible());
        QVERIFY(Screen.contains(box->frameGeometry()));
    }

    void an_opened_file_is_noticed()
    {
        const QTemporaryDir folder;
        const OpenedFiles opened(folder.filePath(QStringLiteral("picture.png")));
        QLabel label(QStringLiteral("<img src=\"%1\">").arg(opened.path()));
        label.grab();
        QVERIFY(opened.any());
    }

    void a_box_stands_in_the_middle_of_the_panel()
    {
        MessageBoxes boxes;
        for (const QRect& area : {Screen, QRect(300, 200, 800, 480)}) {
            const QMessageBox* box = boxes.open(QStringLiteral("Text"), true, area);
            const QPoint off = box->frameGeometry().center() - area.center();
            QVERIFY(qAbs(off.x()) <= 1 && qAbs(off.y()) <= 1);
        }
    }
};

QN740_TEST_MAIN(tst_MessageBoxes)
#include "tst_MessageBoxes.moc"
