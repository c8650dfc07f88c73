#include "plot/NoData.h"
#include "support/Contrast.h"
#include "support/TestMain.h"

#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

QImage painted(const QSize& size, const QRect& area, const QColor& under = Qt::white)
{
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(under);
    QPainter painter(&picture);
    noData::paint(painter, area);
    return picture;
}

int count(const QImage& picture, const QColor& color)
{
    int found = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            found += picture.pixelColor(x, y) == color ? 1 : 0;
        }
    }
    return found;
}

} // namespace

class tst_NoData : public QObject
{
    Q_OBJECT

private slots:
    void the_text_is_fixed() { QCOMPARE(noData::text(), u"NO DATA"_s); }

    void the_letters_can_be_read()
    {
        QVERIFY(contrast::ratio(noData::Text, noData::Ground) >= contrast::Text);
        QVERIFY(noData::SmallestPixels >= 14);
    }

    void the_area_is_dimmed_and_nothing_beside_it()
    {
        const QImage picture = painted({300, 200}, QRect(50, 40, 200, 120));
        QCOMPARE(picture.pixelColor(10, 10), QColor(Qt::white));
        QCOMPARE(picture.pixelColor(55, 45), noData::dimmed(Qt::white));
        QVERIFY(noData::dimmed(Qt::white).lightness() < 128);
    }

    void the_text_stands_in_the_middle()
    {
        const QRect area(50, 40, 200, 120);
        const QImage picture = painted({300, 200}, area);
        const int letters = count(picture, noData::Text);
        QVERIFY2(letters > 200, qPrintable(QString::number(letters)));
        const QRect middle(area.center() - QPoint(80, 20), area.center() + QPoint(80, 20));
        QCOMPARE(count(picture.copy(middle), noData::Text), letters);
    }

    void a_narrow_area_gets_smaller_letters_that_fit()
    {
        const QImage picture = painted({100, 100}, QRect(5, 5, 90, 90));
        QVERIFY(count(picture, noData::Text) > 100);
        QCOMPARE(count(picture.copy(0, 0, 5, 100), Qt::white), 500);
        QCOMPARE(count(picture.copy(95, 0, 5, 100), Qt::white), 500);
    }

    void any_area_can_be_painted()
    {
        for (const QSize& size : {QSize(0, 0), QSize(1, 1), QSize(20, 400), QSize(800, 3)}) {
            painted({50, 50}, QRect(QPoint(3, 3), size));
        }
    }
};

QN740_TEST_MAIN(tst_NoData)
#include "tst_NoData.moc"
