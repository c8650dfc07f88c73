#include "menus/MoreKey.h"

#include "support/TestMain.h"
#include "touch/KeyStyle.h"

#include <QFontMetrics>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize MenuKeySize(124, 59);

QImage picture(int page, int pages, const QSize& size = MenuKeySize)
{
    MoreKey key(page);
    key.setPageCount(pages);
    key.setStyleSheet(keyStyle::more());
    key.resize(size);
    return key.grab().toImage();
}

// Returns the smallest rectangle that contains everything that is painted inside the border.
QRect ink(const QImage& image)
{
    QRect found;
    for (int y = 2; y < image.height() - 2; ++y) {
        for (int x = 2; x < image.width() - 2; ++x) {
            if (image.pixelColor(x, y).lightness() > 60) {
                found |= QRect(x, y, 1, 1);
            }
        }
    }
    return found;
}

} // namespace

class tst_MoreKey : public QObject
{
    Q_OBJECT

private slots:
    void the_text_is_fixed_and_the_page_beside_it()
    {
        MoreKey key(2);
        QCOMPARE(key.text(), u"More..."_s);
        QCOMPARE(key.pageText(), u"2/2"_s);
        key.setPageCount(3);
        QCOMPARE(key.pageText(), u"2/3"_s);
        QCOMPARE(key.text(), u"More..."_s);
    }

    void the_page_is_painted_and_follows_the_number_of_pages()
    {
        QVERIFY(picture(1, 2) != picture(2, 2));
        QVERIFY(picture(1, 2) != picture(1, 3));
        QCOMPARE(picture(1, 3), picture(1, 3));
        QVERIFY(MoreKey::PagePixels >= 14);
    }

    void nothing_is_cut_data()
    {
        QTest::addColumn<int>("pages");
        QTest::addColumn<QSize>("size");
        QTest::newRow("3 pages") << 3 << MenuKeySize;
        QTest::newRow("28 pages") << 28 << MenuKeySize;
        QTest::newRow("1000 pages") << 1000 << MenuKeySize;
        QTest::newRow("low key") << 3 << QSize(124, 40);
    }
    void nothing_is_cut()
    {
        QFETCH(int, pages);
        QFETCH(QSize, size);
        const QRect whole = QRect(QPoint(0, 0), size).adjusted(3, 3, -3, -3);
        const QRect found = ink(picture(pages, pages, size));
        QVERIFY(whole.contains(found));
        // Both texts are shown, either side by side or one below the other.
        QFont font = QApplication::font();
        font.setPixelSize(18);
        const int textWidth = QFontMetrics(font).horizontalAdvance(u"More..."_s);
        QVERIFY(found.width() > textWidth + 10 || found.height() > 25);
    }

    void a_key_that_is_pressed_says_the_same()
    {
        MoreKey key(1);
        key.setStyleSheet(keyStyle::more());
        key.resize(MenuKeySize);
        key.setDown(true);
        const QImage down = key.grab().toImage();
        QCOMPARE(down.pixelColor(4, 4), QColor(0x41, 0x69, 0xe1));
        int letters = 0;
        for (int y = 0; y < down.height(); ++y) {
            for (int x = 0; x < down.width(); ++x) {
                letters += down.pixelColor(x, y) == QColor(u"aliceblue"_s) ? 1 : 0;
            }
        }
        QVERIFY(letters > 50);
    }
};

QN740_TEST_MAIN(tst_MoreKey)
#include "tst_MoreKey.moc"
