#include "touch/KeyMarks.h"

#include "support/TestMain.h"

#include <QImage>
#include <QPainter>

#include <cmath>

namespace {

constexpr QRect KeyRect(0, 0, 124, 59);
constexpr QColor Grey(0x91, 0x91, 0x91);
constexpr QColor Green(0x00, 0x80, 0x00);
constexpr QColor Dark(0x2f, 0x4f, 0x4f);

QImage painted(const keyMarks::Marks& marks, const QColor& face, bool isEnabled = true)
{
    QImage image(KeyRect.size(), QImage::Format_RGB32);
    image.fill(face);
    QPainter painter(&image);
    keyMarks::paint(painter, KeyRect, marks, isEnabled);
    return image;
}

// Returns the relative luminance as the Web Content Accessibility Guidelines 2.1 define it.
double luminance(const QColor& colour)
{
    const auto linear = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
        0.0722 * linear(colour.blueF());
}

double contrast(const QColor& one, const QColor& other)
{
    const double a = luminance(one);
    const double b = luminance(other);
    return (qMax(a, b) + 0.05) / (qMin(a, b) + 0.05);
}

// Returns the number of pixels of a place that differ so much from the key's face that an outline
// counts as visible.
int visiblePixels(const QImage& image, const QRect& place, const QColor& face)
{
    int count = 0;
    for (int y = place.top(); y <= place.bottom(); ++y) {
        for (int x = place.left(); x <= place.right(); ++x) {
            count += contrast(image.pixelColor(x, y), face) >= 3.0 ? 1 : 0;
        }
    }
    return count;
}

} // namespace

class tst_KeyMarks : public QObject
{
    Q_OBJECT

private slots:
    void without_marks_nothing_is_painted()
    {
        QVERIFY(!keyMarks::Marks().any());
        QImage plain(KeyRect.size(), QImage::Format_RGB32);
        plain.fill(Grey);
        QCOMPARE(painted({}, Grey), plain);
    }

    void marks_stay_inside_their_corners_data()
    {
        QTest::addColumn<QRect>("place");
        QTest::newRow("lamp") << keyMarks::lampPlace(KeyRect);
        QTest::newRow("hourglass") << keyMarks::pendingPlace(KeyRect);
    }
    void marks_stay_inside_their_corners()
    {
        QFETCH(QRect, place);
        const int corner = keyMarks::CornerSize;
        const QRect left(0, 0, corner, corner);
        const QRect right(KeyRect.width() - corner, 0, corner, corner);
        QVERIFY(left.contains(place) || right.contains(place));
        QCOMPARE(place.size(), QSize(keyMarks::MarkSize, keyMarks::MarkSize));
        QImage image = painted({keyMarks::Lamp::On, true}, Grey);
        QPainter painter(&image);
        painter.fillRect(left, Grey);
        painter.fillRect(right, Grey);
        painter.end();
        QCOMPARE(image, painted({}, Grey));
    }

    void the_outline_of_every_mark_has_a_contrast_of_3_data()
    {
        QTest::addColumn<QColor>("face");
        QTest::addColumn<bool>("isEnabled");
        QTest::newRow("off, grey") << Grey << true;
        QTest::newRow("on, green") << Green << true;
        QTest::newRow("disabled, dark") << Dark << false;
    }
    void the_outline_of_every_mark_has_a_contrast_of_3()
    {
        QFETCH(QColor, face);
        QFETCH(bool, isEnabled);
        for (const auto lamp : {keyMarks::Lamp::Off, keyMarks::Lamp::On}) {
            const QImage image = painted({lamp, true}, face, isEnabled);
            const QRect place = keyMarks::lampPlace(KeyRect);
            // The ring is two pixels wide; these points are to the left, right, top and bottom of
            // the middle.
            const QPoint middle = place.center();
            for (const QPoint& at :
                {QPoint(place.left() + 1, middle.y()), QPoint(place.right() - 1, middle.y()),
                    QPoint(middle.x(), place.top() + 1), QPoint(middle.x(), place.bottom() - 1)}) {
                QVERIFY(contrast(image.pixelColor(at), face) >= 3.0);
            }
            QVERIFY(visiblePixels(image, keyMarks::pendingPlace(KeyRect), face) > 50);
        }
    }

    // In shades of grey, too, a lamp that is on is a disc, and a lamp that is off is an empty ring.
    void on_and_off_differ_by_shape_data()
    {
        QTest::addColumn<QColor>("faceOff");
        QTest::addColumn<QColor>("faceOn");
        QTest::addColumn<bool>("isEnabled");
        QTest::newRow("enabled") << Grey << Green << true;
        QTest::newRow("disabled") << Dark << Dark << false;
    }
    void on_and_off_differ_by_shape()
    {
        QFETCH(QColor, faceOff);
        QFETCH(QColor, faceOn);
        QFETCH(bool, isEnabled);
        const QPoint middle = keyMarks::lampPlace(KeyRect).center();
        const QImage off = painted({keyMarks::Lamp::Off, false}, faceOff, isEnabled);
        const QImage on = painted({keyMarks::Lamp::On, false}, faceOn, isEnabled);
        QCOMPARE(off.pixelColor(middle), faceOff);
        QVERIFY(contrast(on.pixelColor(middle), faceOn) >= 3.0);
    }

    void the_hourglass_is_the_same_on_and_off()
    {
        const QRect place = keyMarks::pendingPlace(KeyRect);
        QCOMPARE(painted({keyMarks::Lamp::Off, true}, Grey).copy(place),
            painted({keyMarks::Lamp::On, true}, Grey).copy(place));
        QVERIFY(painted({keyMarks::Lamp::Off, true}, Grey) !=
            painted({keyMarks::Lamp::Off, false}, Grey));
    }
};

QN740_TEST_MAIN(tst_KeyMarks)
#include "tst_KeyMarks.moc"
