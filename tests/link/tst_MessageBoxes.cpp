#include "link/MessageBoxes.h"

#include "support/Screen.h"
#include "support/TestMain.h"

#include <QGridLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTextEdit>

#include <memory>

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

    void only_the_last_boxes_stay_open()
    {
        MessageBoxes boxes;
        QList<QPointer<QMessageBox>> opened;
        for (int i = 0; i < 20; ++i) {
            opened += boxes.open(QString::number(i), i % 2 == 0, Screen);
        }
        for (int i = 0; i < 20; ++i) {
            QCOMPARE(opened.at(i) != nullptr, i >= 4);
        }
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
        const QMessageBox* box = boxes.open(QString(1'000'000, QLatin1Char('a')), true, Screen);
        QVERIFY(box->text().size() < 20'100);
        QVERIFY(box->text().contains(QChar(0x2026)));
        QVERIFY(Screen.contains(box->frameGeometry()));
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
