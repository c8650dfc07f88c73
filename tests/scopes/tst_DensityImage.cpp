#include "scopes/DensityImage.h"
#include "support/TestMain.h"

class tst_DensityImage : public QObject
{
    Q_OBJECT

private slots:
    void a_dot_is_three_by_three_pixels_and_brightest_in_the_middle()
    {
        DensityImage image;
        image.resize({20, 10});
        image.addDot(5, 4);
        QVERIFY(image.density(5, 4) > image.density(4, 4));
        QVERIFY(image.density(4, 3) > 0 && image.density(6, 5) > 0);
        QCOMPARE(image.density(7, 4), 0);
        QCOMPARE(image.density(5, 6), 0);
    }

    void pixels_outside_the_picture_are_cut_off()
    {
        DensityImage image;
        image.resize({13, 7});
        for (const int far : {-1'000'000, -2, -1, 7, 13, 14, 1'000'000}) {
            image.addDot(far, far);
            image.addRun(far, 0, 6);
            image.addRun(3, far, far);
        }
        image.addDot(0, 0);
        image.addDot(12, 6);
        image.addRun(12, -1'000'000, 1'000'000);
        QVERIFY(image.density(12, 0) > 0 && image.density(12, 6) > 0);
        QCOMPARE(image.density(-1, 0), 0);
        QCOMPARE(image.density(13, 0), 0);
    }

    void a_dot_at_the_edge_is_the_part_of_a_whole_one_that_fits()
    {
        DensityImage whole;
        whole.resize({9, 9});
        whole.addDot(4, 4);
        constexpr int Size = 3;
        for (int y = -1; y <= Size; ++y) {
            for (int x = -1; x <= Size; ++x) {
                DensityImage image;
                image.resize({Size, Size});
                image.addDot(x, y);
                for (int row = 0; row < Size; ++row) {
                    for (int column = 0; column < Size; ++column) {
                        QCOMPARE(
                            image.density(column, row), whole.density(4 + column - x, 4 + row - y));
                    }
                }
            }
        }
    }

    void a_run_may_be_given_in_either_direction()
    {
        DensityImage image;
        image.resize({8, 8});
        image.addRun(2, 6, 3);
        image.addRun(3, 3, 6);
        for (int y = 0; y < 8; ++y) {
            QCOMPARE(image.density(2, y) > 0, y >= 3 && y <= 6);
            QCOMPARE(image.density(3, y), image.density(2, y));
        }
    }

    void hits_add_up_and_fade_away()
    {
        DensityImage image;
        image.resize({8, 8});
        image.addRun(1, 1, 1);
        const int once = image.density(1, 1);
        image.addRun(1, 1, 1);
        QVERIFY(image.density(1, 1) > once);
        for (int k = 0; k < 100; ++k) {
            image.addRun(1, 1, 1);
        }
        QCOMPARE(image.density(1, 1), 255);
        image.fade();
        QVERIFY(image.density(1, 1) < 255);
        for (int block = 1; block < 16; ++block) {
            image.fade();
        }
        QVERIFY(image.density(1, 1) <= 40);
        for (int block = 0; block < 40; ++block) {
            image.fade();
        }
        QCOMPARE(image.density(1, 1), 0);
    }

    void persistence_sets_how_long_a_hit_stays_data()
    {
        QTest::addColumn<DensityImage::Persistence>("persistence");
        QTest::addColumn<int>("blocks");
        QTest::addColumn<int>("least"); // of what a single dot leaves
        QTest::addColumn<int>("most");
        using Persistence = DensityImage::Persistence;
        QTest::newRow("short, 16 blocks") << Persistence::Short << 16 << 1 << 25;
        QTest::newRow("short, 60 blocks") << Persistence::Short << 60 << 0 << 0;
        QTest::newRow("long, 16 blocks") << Persistence::Long << 16 << 110 << 120;
        QTest::newRow("long, 128 blocks") << Persistence::Long << 128 << 1 << 25;
        QTest::newRow("long, 480 blocks") << Persistence::Long << 480 << 0 << 0;
        QTest::newRow("infinite, 10,000 blocks") << Persistence::Infinite << 10000 << 150 << 150;
    }

    void persistence_sets_how_long_a_hit_stays()
    {
        QFETCH(DensityImage::Persistence, persistence);
        QFETCH(int, blocks);
        QFETCH(int, least);
        QFETCH(int, most);
        DensityImage image;
        image.resize({9, 9});
        image.setPersistence(persistence);
        image.addDot(4, 4);
        for (int block = 0; block < blocks; ++block) {
            image.fade();
        }
        const int left = image.density(4, 4);
        QVERIFY2(left >= least && left <= most, qPrintable(QString::number(left)));
    }

    void infinite_persistence_tells_dense_places_from_rare_ones()
    {
        DensityImage image;
        image.resize({16, 9});
        image.setPersistence(DensityImage::Persistence::Infinite);
        image.addDot(4, 4);
        int before = image.density(4, 4);
        for (int hits = 0; hits < 40; ++hits) {
            image.addDot(4, 4);
            QVERIFY(image.density(4, 4) > before);
            before = image.density(4, 4);
        }
        image.addDot(11, 4);
        QVERIFY(image.density(4, 4) > image.density(11, 4) + 50);
    }

    void is_painted_over_the_picture_in_its_colour()
    {
        DensityImage image;
        image.resize({10, 10});
        image.setColor(Qt::green);
        image.addRun(4, 4, 4);
        QImage picture(10, 10, QImage::Format_RGB32);
        picture.fill(Qt::black);
        image.paintOver(picture);
        const QColor faint = picture.pixelColor(4, 4);
        QVERIFY(faint.green() > 80 && faint.red() == 0 && faint.blue() == 0);
        QCOMPARE(picture.pixelColor(5, 4), QColor(Qt::black));
        for (int k = 0; k < 10; ++k) {
            image.addRun(4, 4, 4);
        }
        image.paintOver(picture);
        QVERIFY(picture.pixelColor(4, 4).green() >= 250 && picture.pixelColor(4, 4).red() > 120);
    }

    void is_painted_alike_on_black_and_on_nearly_black()
    {
        DensityImage image;
        image.resize({2, 1});
        image.setColor(Qt::cyan);
        for (int hits = 0; hits < 5; ++hits) {
            image.addRun(0, 0, 0);
            image.addRun(1, 0, 0);
            QImage picture(2, 1, QImage::Format_RGB32);
            picture.setPixel(0, 0, 0xff000000);
            picture.setPixel(1, 0, 0xff010101);
            image.paintOver(picture);
            const QColor black = picture.pixelColor(0, 0);
            const QColor beside = picture.pixelColor(1, 0);
            QVERIFY(black.green() > 80);
            QVERIFY(qAbs(black.green() - beside.green()) <= 1);
            QVERIFY(qAbs(black.red() - beside.red()) <= 1);
        }
    }

    void a_picture_of_another_size_stays_as_it_is()
    {
        DensityImage image;
        image.resize({10, 10});
        image.addDot(5, 5);
        QImage picture(9, 10, QImage::Format_RGB32);
        picture.fill(Qt::blue);
        const QImage before = picture.copy();
        image.paintOver(picture);
        QCOMPARE(picture, before);
    }

    void an_image_without_pixels_is_tolerated()
    {
        DensityImage image;
        image.addDot(0, 0);
        image.fade();
        image.resize({-5, 3});
        image.addDot(0, 0);
        image.addRun(0, 0, 5);
        QCOMPARE(image.density(0, 0), 0);
    }
};

QN740_TEST_MAIN(tst_DensityImage)
#include "tst_DensityImage.moc"
