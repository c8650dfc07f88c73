#include "popups/TitleLabel.h"
#include "support/TestMain.h"

class tst_TitleLabel : public QObject
{
    Q_OBJECT

    // How many light pixels a part of the picture has.
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
    void it_is_a_title_of_45_pixels()
    {
        const TitleLabel label("Mode");
        QCOMPARE(label.objectName(), QString("titleLabel"));
        QCOMPARE(label.minimumHeight(), 45);
        QCOMPARE(label.maximumHeight(), 45);
        QCOMPARE(label.alignment(), Qt::AlignCenter);
    }

    void it_asks_for_no_width() { QVERIFY(TitleLabel(QString(500, 'W')).sizeHint().width() < 10); }

    void every_title_is_painted_inside_data()
    {
        QTest::addColumn<QString>("title");
        QTest::newRow("short") << "Mode";
        QTest::newRow("73 wide characters") << QString(73, 'W');
        QTest::newRow("endless") << QString(2000, 'W');
        QTest::newRow("markup") << "<b>Mode</b> & more";
    }
    void every_title_is_painted_inside()
    {
        QFETCH(QString, title);
        TitleLabel label(title);
        label.setStyleSheet("QLabel{color:white; background:rgb(66,89,148); font-size: 18px;}");
        label.resize(783, 45);
        const QImage picture = label.grab().toImage();
        QCOMPARE(label.text(), title);
        QVERIFY(whitePixels(picture, QRect(2, 2, 779, 41)) > 20);
        QCOMPARE(whitePixels(picture, QRect(0, 0, 783, 1)), 0);
        QCOMPARE(whitePixels(picture, QRect(0, 44, 783, 1)), 0);
    }

    void an_ampersand_is_shown()
    {
        TitleLabel with("& & & &");
        TitleLabel without("       ");
        for (TitleLabel* label : {&with, &without}) {
            label->setStyleSheet("QLabel{color:white; background:black; font-size: 18px;}");
            label->resize(300, 45);
        }
        const QRect all(0, 0, 300, 45);
        QVERIFY(whitePixels(with.grab().toImage(), all) > 40);
        QCOMPARE(whitePixels(without.grab().toImage(), all), 0);
    }
};

QN740_TEST_MAIN(tst_TitleLabel)
#include "tst_TitleLabel.moc"
