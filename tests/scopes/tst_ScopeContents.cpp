#include "scopes/ScopeContents.h"
#include "support/TestMain.h"

using namespace Qt::StringLiterals;

using View = ScopeContents::View;

namespace {

const QVector<double> Full(256, 1.0);
const QVector<double> Half(256, 0.5);
const QVector<double> Tenth(256, 0.1);

} // namespace

class tst_ScopeContents : public QObject
{
    Q_OBJECT

private slots:
    void each_view_has_its_content()
    {
        ScopeContents contents;
        QCOMPARE(contents.view(), View::Eyes);
        PlotContent* const eye = contents.upper();
        QVERIFY(contents.lower() != eye);
        QCOMPARE(eye->axes().yLabel, u"I (% FS)"_s);
        QCOMPARE(contents.lower()->axes().yLabel, u"Q (% FS)"_s);
        contents.setView(View::Constellation);
        QVERIFY(contents.upper() == &contents.constellation());
        contents.setView(View::Strips);
        QVERIFY(contents.upper() == &contents.strips());
        contents.setView(View::Eyes);
        QCOMPARE(contents.upper(), eye);
    }

    void a_block_goes_to_the_current_view()
    {
        ScopeContents contents;
        contents.addBlock(Half, Half);
        QVERIFY(contents.constellation().plotted().isEmpty());
        contents.setView(View::Constellation);
        contents.addBlock(Half, Half);
        QCOMPARE(contents.constellation().plotted().size(), 255); // without the first pair
        QCOMPARE(contents.constellation().plotted().first(), QPointF(0.5, 0.5));
    }

    void the_clipped_eye_alone_is_marked()
    {
        ScopeContents contents;
        contents.addBlock(Full, Half);
        QCOMPARE(contents.upper()->badge(), u"CLIP"_s);
        QCOMPARE(contents.lower()->badge(), QString());
        contents.addBlock(Half, Full);
        QCOMPARE(contents.upper()->badge(), QString());
        QCOMPARE(contents.lower()->badge(), u"CLIP"_s);
    }

    void a_constellation_is_marked_when_i_or_q_is_clipped_data()
    {
        QTest::addColumn<double>("i");
        QTest::addColumn<double>("q");
        QTest::addColumn<QString>("badge");
        QTest::newRow("i") << 1.0 << 0.5 << "CLIP";
        QTest::newRow("q") << 0.5 << -1.0 << "CLIP";
        QTest::newRow("the largest sample") << 32767.0 / 32768.0 << 0.0 << "CLIP";
        QTest::newRow("one step below it") << 32766.0 / 32768.0 << 0.0 << "";
    }

    void a_constellation_is_marked_when_i_or_q_is_clipped()
    {
        QFETCH(double, i);
        QFETCH(double, q);
        ScopeContents contents;
        contents.setView(View::Constellation);
        contents.addBlock(QVector<double>(256, i), QVector<double>(256, q));
        QTEST(contents.upper()->badge(), "badge");
    }

    void the_range_follows_the_larger_of_i_and_q_unless_it_is_fixed()
    {
        ScopeContents contents;
        QVERIFY(!contents.rangeFixed());
        for (int block = 0; block < RangeKeeper::ShrinkAfter; ++block) {
            contents.addBlock(Tenth, Half);
        }
        QCOMPARE(contents.upper()->axes().yMax, 60.0);
        QCOMPARE(contents.lower()->axes().yMax, 60.0);
        contents.setRangeFixed(true);
        QVERIFY(contents.rangeFixed());
        QCOMPARE(contents.upper()->axes().yMax, 100.0);
        contents.setView(View::Constellation);
        QCOMPARE(contents.upper()->axes().yMax, 100.0);
        contents.setRangeFixed(false);
        QCOMPARE(contents.upper()->axes().yMax, 60.0);
    }

    void a_record_goes_to_the_strips_and_ends_their_badge()
    {
        ScopeContents contents;
        contents.setBadge(u"NO DATA"_s);
        contents.addRecord("abcde");
        QCOMPARE(contents.strips().records().size(), size_t(1));
        QCOMPARE(contents.strips().badge(), QString());
        QCOMPARE(contents.constellation().badge(), u"NO DATA"_s);
    }

    void a_badge_and_its_end_reach_all_views()
    {
        ScopeContents contents;
        contents.setBadge(u"NO DATA"_s);
        for (const View view : {View::Eyes, View::Constellation, View::Strips}) {
            contents.setView(view);
            QCOMPARE(contents.upper()->badge(), u"NO DATA"_s);
        }
        QCOMPARE(contents.lower()->badge(), u"NO DATA"_s);
        contents.clear();
        for (const View view : {View::Eyes, View::Constellation, View::Strips}) {
            contents.setView(view);
            QCOMPARE(contents.upper()->badge(), QString());
        }
    }

    void clearing_empties_all_views()
    {
        ScopeContents contents;
        contents.setView(View::Constellation);
        contents.addBlock(Half, Half);
        contents.addRecord("abcde");
        contents.clear();
        QVERIFY(contents.constellation().plotted().isEmpty());
        QVERIFY(contents.strips().records().empty());
    }

    void only_the_label_of_the_upper_eye_s_time_axis_can_be_hidden()
    {
        ScopeContents contents;
        contents.setUpperTimeLabel(false);
        QCOMPARE(contents.upper()->axes().xLabel, QString());
        QVERIFY(!contents.lower()->axes().xLabel.isEmpty());
    }

    void the_line_colour_reaches_all_views()
    {
        ScopeContents contents;
        contents.setLineColor(Qt::green);
        QImage picture(50, 50, QImage::Format_RGB32);
        contents.setView(View::Constellation);
        contents.addBlock(Half, Half);
        picture.fill(Qt::black);
        contents.upper()->resize(picture.size());
        contents.upper()->paint(picture);
        int green = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QColor color = picture.pixelColor(x, y);
                green += color.green() > color.red() + 40 ? 1 : 0;
            }
        }
        QVERIFY(green > 0);
    }
};

QN740_TEST_MAIN(tst_ScopeContents)
#include "tst_ScopeContents.moc"
