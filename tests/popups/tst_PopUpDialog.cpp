#include "popups/PopUpDialog.h"
#include "support/PopUps.h"
#include "support/TestMain.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

class tst_PopUpDialog : public QObject
{
    Q_OBJECT

    // Returns how many light pixels a part of the picture has.
    static int whitePixels(const QImage& picture, const QRect& part)
    {
        int count = 0;
        for (int y = part.top(); y <= part.bottom(); ++y) {
            for (int x = part.left(); x <= part.right(); ++x) {
                count += picture.pixelColor(x, y).lightness() > 200 ? 1 : 0;
            }
        }
        return count;
    }

private slots:
    void it_has_a_title_of_45_pixels_above_its_contents()
    {
        PopUpDialog dialog(u"Name"_s, u"Mode"_s, Qt::WindowFlags(), 6);
        auto* content = new QWidget;
        dialog.column()->addWidget(content);
        const auto* label = dialog.findChild<QLabel*>(u"titleLabel"_s);
        QVERIFY(label != nullptr);
        QCOMPARE(dialog.objectName(), u"Name"_s);
        QCOMPARE(dialog.windowTitle(), u"Mode"_s);
        QCOMPARE(label->text(), u"Mode"_s);
        QCOMPARE(label->minimumHeight(), 45);
        QCOMPARE(label->maximumHeight(), 45);
        QCOMPARE(label->alignment(), Qt::AlignCenter);
        QCOMPARE(dialog.column()->itemAt(0)->widget(), label);
    }

    void a_note_stands_at_the_right_of_the_title_line()
    {
        PopUpDialog dialog(u"Name"_s, u"Select Scope Mode value"_s, Qt::WindowFlags(), 6);
        dialog.setFixedSize(795, 200);
        dialog.setNote(u"Demod 2"_s);
        dialog.show();
        const auto* title = dialog.findChild<QLabel*>(u"titleLabel"_s);
        const auto* note = dialog.findChild<QLabel*>(u"noteLabel"_s);
        QVERIFY(note != nullptr && note->isVisible());
        QCOMPARE(note->text(), u"Demod 2"_s);
        QCOMPARE(title->text(), u"Select Scope Mode value"_s);
        QCOMPARE(title->height(), 45);
        QCOMPARE(note->font().pixelSize(), 18);
        const QRect place(note->mapTo(title, QPoint()), note->size());
        QVERIFY(title->rect().contains(place));
        QVERIFY(place.left() > title->width() * 3 / 4);
    }

    void keys_that_are_held_let_go_when_something_modal_opens()
    {
        PopUpDialog dialog(u"Name"_s, u"Mode"_s, Qt::WindowFlags(), 6);
        auto* key = new QPushButton(u"Step Up"_s);
        key->setAutoRepeat(true);
        dialog.column()->addWidget(key);
        dialog.open();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QSignalSpy clicked(key, &QPushButton::clicked);
        const QPoint at = key->mapTo(&dialog, key->rect().center());
        QTest::mousePress(dialog.windowHandle(), Qt::LeftButton, {}, at);
        QTRY_VERIFY(clicked.size() >= 2);
        QDialog over;
        over.setModal(true);
        over.show();
        QVERIFY(!key->isDown());
        const qsizetype before = clicked.size();
        QTest::qWait(400);
        QCOMPARE(clicked.size(), before);
        // The release comes when the finger is over the other window.
        QTest::mouseRelease(over.windowHandle(), Qt::LeftButton, {}, QPoint(1, 1));
        over.close();
        QCOMPARE(clicked.size(), before);
    }

    void keys_that_are_held_let_go_when_another_window_becomes_active()
    {
        PopUpDialog dialog(u"Name"_s, u"Mode"_s, Qt::WindowFlags(), 6);
        auto* key = new QPushButton(u"Key"_s);
        key->setFocusPolicy(Qt::NoFocus); // like the keys of the pads
        dialog.column()->addWidget(key);
        dialog.show();
        dialog.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        const QPoint at = key->mapTo(&dialog, key->rect().center());
        QTest::mousePress(dialog.windowHandle(), Qt::LeftButton, {}, at);
        QVERIFY(key->isDown());
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QVERIFY(!key->isDown());
        QTest::mouseRelease(dialog.windowHandle(), Qt::LeftButton, {}, at);
    }

    void it_is_a_customised_window_with_a_title()
    {
        const PopUpDialog framed(u"Name"_s, u"Mode"_s, Qt::WindowFlags(), 6);
        QVERIFY(framed.windowFlags().testFlag(Qt::CustomizeWindowHint));
        QVERIFY(framed.windowFlags().testFlag(Qt::WindowTitleHint));
        QVERIFY(!framed.windowFlags().testFlag(Qt::FramelessWindowHint));
        const PopUpDialog frameless(u"Name"_s, u"Mode"_s, Qt::FramelessWindowHint, 6);
        QVERIFY(frameless.windowFlags().testFlag(Qt::FramelessWindowHint));
    }

    void a_long_title_does_not_widen_the_dialog()
    {
        const PopUpDialog dialog(u"Name"_s, QString(500, u'W'), Qt::WindowFlags(), 6);
        QVERIFY(dialog.sizeHint().width() < 20);
    }

    void it_is_as_large_as_its_contents_and_in_the_middle_of_the_screen_data()
    {
        QTest::addColumn<QSize>("contents");
        QTest::addColumn<QSize>("size");
        QTest::newRow("small") << QSize(300, 100) << QSize(312, 157 + 6);
        QTest::newRow("too large") << QSize(2000, 2000) << QSize(795, 476);
    }
    void it_is_as_large_as_its_contents_and_in_the_middle_of_the_screen()
    {
        QFETCH(QSize, contents);
        QFETCH(QSize, size);
        PopUpDialog dialog(u"Name"_s, u"Mode"_s, Qt::WindowFlags(), 6);
        auto* content = new QWidget;
        content->setMinimumSize(contents);
        dialog.column()->setSpacing(6);
        dialog.column()->addWidget(content);
        dialog.show();
        QCOMPARE(dialog.size(), size);
        QVERIFY(popUps::isCentred(&dialog));
        QVERIFY(QRect(0, 0, 800, 480).contains(dialog.frameGeometry()));
    }

    void every_title_is_painted_inside_data()
    {
        QTest::addColumn<QString>("title");
        QTest::newRow("short") << "Mode";
        QTest::newRow("73 wide characters") << QString(73, u'W');
        QTest::newRow("endless") << QString(2000, u'W');
        QTest::newRow("markup") << "<b>Mode</b> & more";
    }
    void every_title_is_painted_inside()
    {
        QFETCH(QString, title);
        PopUpDialog dialog(u"Name"_s, title, Qt::WindowFlags(), 6);
        dialog.setFixedWidth(795);
        dialog.show();
        auto* label = dialog.findChild<QLabel*>(u"titleLabel"_s);
        QCOMPARE(label->size(), QSize(783, 45));
        const QImage picture = label->grab().toImage();
        QCOMPARE(label->text(), title);
        QVERIFY(whitePixels(picture, QRect(2, 2, 779, 41)) > 20);
        QCOMPARE(whitePixels(picture, QRect(0, 0, 783, 1)), 0);
        QCOMPARE(whitePixels(picture, QRect(0, 44, 783, 1)), 0);
    }

    void an_ampersand_is_shown()
    {
        PopUpDialog with(u"Name"_s, u"& & & &"_s, Qt::WindowFlags(), 6);
        PopUpDialog without(u"Name"_s, u"       "_s, Qt::WindowFlags(), 6);
        QList<int> white;
        for (PopUpDialog* dialog : {&with, &without}) {
            dialog->setFixedWidth(300);
            dialog->show();
            auto* label = dialog->findChild<QLabel*>(u"titleLabel"_s);
            white += whitePixels(label->grab().toImage(), QRect(0, 0, 288, 45));
        }
        QVERIFY(white.first() > 40);
        QCOMPARE(white.last(), 0);
    }
};

QN740_TEST_MAIN(tst_PopUpDialog)
#include "tst_PopUpDialog.moc"
