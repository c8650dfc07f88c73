#include "touch/MessageBox.h"

#include "support/Screen.h"
#include "support/TestMain.h"

#include <QGridLayout>
#include <QLabel>
#include <QMainWindow>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextEdit>
#include <QTextLayout>

using namespace Qt::StringLiterals;

namespace {
const QRect Screen(0, 0, 800, 480);
constexpr int MinTarget = 47;

bool isCentred(const QWidget& window, const QRect& area)
{
    const QPoint off = window.frameGeometry().center() - area.center();
    return qAbs(off.x()) <= 1 && qAbs(off.y()) <= 1;
}

QRect placeIn(const QWidget& box, const QWidget& part)
{
    return {part.mapTo(&box, QPoint()), part.size()};
}
} // namespace

class tst_MessageBox : public QObject
{
    Q_OBJECT

private slots:
    void a_box_without_OK_has_no_button()
    {
        MessageBox box;
        box.setText(u"Text"_s);
        box.show();
        QVERIFY(box.buttons().isEmpty());
        QVERIFY(box.findChildren<QPushButton*>().isEmpty());
    }

    void OK_is_large_enough_for_a_finger_and_closes_the_box()
    {
        MessageBox box;
        box.setText(u"Text"_s);
        const QPushButton* ok = box.addOk();
        box.show();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        QVERIFY(ok->width() >= 110 && ok->height() >= 50);
        clickOn(box.buttons().first());
        QVERIFY(!box.isVisible());
    }

    void it_has_a_black_edge_of_two_pixels_data()
    {
        QTest::addColumn<QString>("sheet");
        QTest::newRow("plain") << "";
        QTest::newRow("with a sheet") << "background-color:darkgray; border-width: 2px;";
    }
    void it_has_a_black_edge_of_two_pixels()
    {
        QFETCH(QString, sheet);
        MessageBox box;
        box.setStyleSheet(sheet);
        box.setText(u"Text"_s);
        box.show();
        const QImage picture = box.grab().toImage();
        const int right = picture.width() - 1;
        const int bottom = picture.height() - 1;
        for (int i = 0; i < 2; ++i) {
            for (int x = 0; x <= right; ++x) {
                QCOMPARE(picture.pixelColor(x, i), QColor(Qt::black));
                QCOMPARE(picture.pixelColor(x, bottom - i), QColor(Qt::black));
            }
            for (int y = 0; y <= bottom; ++y) {
                QCOMPARE(picture.pixelColor(i, y), QColor(Qt::black));
                QCOMPARE(picture.pixelColor(right - i, y), QColor(Qt::black));
            }
        }
        QVERIFY(picture.pixelColor(2, 2) != QColor(Qt::black));
    }

    void a_least_width_is_kept_by_a_spacer_in_the_last_row()
    {
        MessageBox box;
        box.setMinContentWidth(600); // before its parts: the order does not matter
        box.setText(u"Text"_s);
        box.addOk();
        box.show();
        QVERIFY(box.width() >= 600);
        const auto* grid = qobject_cast<QGridLayout*>(box.layout());
        QLayoutItem* last = grid->itemAtPosition(grid->rowCount() - 1, 0);
        QVERIFY(last != nullptr && last->spacerItem() != nullptr);
        QCOMPARE(last->spacerItem()->sizeHint().width(), 600);
    }

    void it_stands_in_the_middle_of_its_area()
    {
        for (const QRect& area : {Screen, QRect(300, 200, 800, 480)}) {
            MessageBox box;
            box.setText(u"Text"_s);
            box.setArea(area);
            box.show();
            QVERIFY(isCentred(box, area));
        }
    }

    void without_an_area_it_stands_in_the_middle_of_the_panel()
    {
        MessageBox onScreen;
        onScreen.setText(u"Text"_s);
        onScreen.show();
        QVERIFY(isCentred(onScreen, Screen));
        QMainWindow panel;
        panel.setGeometry(100, 40, 600, 300);
        panel.show();
        MessageBox onPanel;
        onPanel.setText(u"Text"_s);
        onPanel.show();
        QVERIFY(isCentred(onPanel, panel.geometry()));
    }

    void every_text_is_inside_the_screen_and_readable_to_its_end_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("rich");
        QTest::addColumn<bool>("scrolled");
        const QString words = u"The receiver has lost it. "_s;
        for (const bool rich : {false, true}) {
            const auto row = [rich](const char* name, const QString& text, bool scrolled) {
                QTest::addRow("%s, %s", name, rich ? "rich" : "plain") << text << rich << scrolled;
            };
            row("short", u"Text"_s, false);
            row("empty", QString(), false);
            row("a word wider than the screen", QString(300, u'M'), false);
            row("2,000 characters", words.repeated(77).left(2000), false);
            row("19,000 characters", words.repeated(731).left(19'000), true);
            row("1,000,000 characters", words.repeated(38'462), true);
        }
    }
    void every_text_is_inside_the_screen_and_readable_to_its_end()
    {
        QFETCH(QString, text);
        QFETCH(bool, rich);
        QFETCH(bool, scrolled);
        if (rich && text.size() > 20'000) {
            text.truncate(20'000); // as callers cut rich text, perhaps inside its markup
        }
        MessageBox box;
        box.setTextFormat(rich ? Qt::RichText : Qt::PlainText);
        box.setText(text);
        const QPushButton* ok = box.addOk();
        box.setArea(Screen);
        box.setWindowFlag(Qt::FramelessWindowHint);
        box.show();
        QCOMPARE(box.text(), text);
        QVERIFY(Screen.contains(box.frameGeometry()));
        QVERIFY(box.rect().contains(placeIn(box, *ok)));
        const auto* view = box.findChild<QTextEdit*>(u"longText"_s);
        const auto* label = box.findChild<QLabel*>(u"qt_msgbox_label"_s);
        QCOMPARE(label->isVisible(), view == nullptr);
        if (view == nullptr) {
            QVERIFY(!scrolled);
            QVERIFY(box.rect().contains(placeIn(box, *label)));
            return;
        }
        QVERIFY(box.rect().contains(placeIn(box, *view)));
        QVERIFY(!placeIn(box, *view).intersects(placeIn(box, *ok)));
        QVERIFY(view->document()->idealWidth() <= view->viewport()->width());
        QCOMPARE(view->verticalScrollBar()->isVisible(), scrolled);
        if (scrolled) {
            QVERIFY(view->verticalScrollBar()->width() >= MinTarget);
        } else {
            QCOMPARE(view->toPlainText().trimmed(), text.trimmed());
        }
    }

    void no_plain_text_is_lower_than_14_pixels_and_no_scrolled_one_data()
    {
        QTest::addColumn<QString>("form");
        QTest::addColumn<bool>("rich");
        QTest::addColumn<int>("length");
        for (const int length : {300, 2000, 4000, 19'000}) {
            QTest::addRow("plain, %d", length) << "%1" << false << length;
        }
        for (const int length : {300, 8000, 19'000}) {
            QTest::addRow("of the main unit, %d", length)
                << "<font size = 6>%1</font>" << true << length;
        }
    }
    void no_plain_text_is_lower_than_14_pixels_and_no_scrolled_one()
    {
        QFETCH(QString, form);
        QFETCH(bool, rich);
        QFETCH(int, length);
        MessageBox box;
        box.setTextFormat(rich ? Qt::RichText : Qt::PlainText);
        box.setText(form.arg(u"The receiver has lost it. "_s.repeated(800).left(length)));
        box.setArea(Screen);
        box.show();
        if (const auto* view = box.findChild<QTextEdit*>(u"longText"_s)) {
            const QTextBlock block = view->document()->firstBlock();
            const QTextLine line = block.layout()->lineAt(0);
            QVERIFY(block.begin() != block.end());
            // This is the height of a line of 14 pixels in the box's own font.
            QFont smallest = view->font();
            smallest.setPixelSize(14);
            QVERIFY2(line.height() >= QFontMetricsF(smallest).height() - 1.0,
                qPrintable(QString::number(line.height())));
        }
    }

    void an_informative_text_that_is_too_high_is_scrolled_with_a_finger()
    {
        MessageBox box;
        box.setText(u"Invalid Entry"_s);
        box.setInformativeText(u"<b>"_s + u"10 to 20<br>"_s.repeated(100) + u"</b>"_s);
        const QPushButton* ok = box.addOk();
        box.show();
        QVERIFY(Screen.contains(box.frameGeometry()));
        QVERIFY(box.rect().contains(placeIn(box, *ok)));
        const auto* area = box.findChild<QScrollArea*>();
        QVERIFY(area != nullptr && area->isVisible());
        QVERIFY(area->verticalScrollBar()->width() >= MinTarget);
        QVERIFY(area->verticalScrollBar()->maximum() > 0);
    }

    void an_informative_text_that_fits_is_not_scrolled()
    {
        MessageBox box;
        box.setText(u"Invalid Entry"_s);
        box.setInformativeText(u"10 to 20"_s);
        box.show();
        QVERIFY(box.findChild<QScrollArea*>() == nullptr);
        QVERIFY(box.findChild<QLabel*>(u"qt_msgbox_informativelabel"_s)->isVisible());
    }

    void a_box_that_is_shown_again_is_not_laid_out_twice()
    {
        MessageBox box;
        box.setMinContentWidth(600);
        box.setText(QString(300, u'M'));
        box.show();
        const QSize size = box.size();
        box.hide();
        box.show();
        QCOMPARE(box.size(), size);
        QCOMPARE(box.findChildren<QTextEdit*>(u"longText"_s).size(), 1);
    }

    void a_report_shows_markup_as_text_until_OK()
    {
        bool seen = false;
        whenModal([&seen](QWidget* window) {
            const QPointer<MessageBox> box = qobject_cast<MessageBox*>(window);
            QVERIFY(box != nullptr);
            QCOMPARE(box->text(), u"<b>x</b> & 50 %1"_s);
            QCOMPARE(box->textFormat(), Qt::PlainText);
            QCOMPARE(box->buttons().size(), 1);
            seen = true;
            clickOn(box->buttons().first());
        });
        MessageBox::report(u"<b>x</b> & 50 %1"_s);
        QVERIFY(seen);
        QVERIFY(QApplication::activeModalWidget() == nullptr);
    }
};

QN740_TEST_MAIN(tst_MessageBox)
#include "tst_MessageBox.moc"
