#include "sim/cli/CardOptions.h"
#include "support/TestMain.h"

#include <QCommandLineParser>

using namespace Qt::StringLiterals;

class tst_CardOptions : public QObject
{
    Q_OBJECT

private slots:
    void without_options_there_is_a_good_k7150_with_the_points_of_its_span()
    {
        const CardOptions options = read({});
        QCOMPARE(options.fault, QString());
        QVERIFY(!options.ports.none);
        QCOMPARE(options.ports.type, CardPort::Type::K7150);
        QCOMPARE(options.ports.points, CardPort::PointsOfSpan);
        QCOMPARE(options.ports.level, 0.0);
    }

    void the_older_type_has_1024_points()
    {
        QCOMPARE(read({u"--card"_s, u"older"_s}).ports.points, 1024);
    }

    void good_options_are_accepted()
    {
        const CardOptions options = read({u"--card"_s, u"older"_s, u"--card-points"_s, u"9999"_s});
        QCOMPARE(options.fault, QString());
        QCOMPARE(options.ports.type, CardPort::Type::Older);
        QCOMPARE(options.ports.points, 9999);
        QVERIFY(read({u"--card"_s, u"none"_s}).ports.none);
        QCOMPARE(read({u"--card-points"_s, u"1"_s}).ports.points, 1);
        QCOMPARE(read({u"--card"_s, u"k7150"_s}).fault, QString());
        QCOMPARE(read({u"--card-level"_s, u"-80"_s}).ports.level, -80.0);
        QCOMPARE(read({u"--card-level"_s, u"12.5"_s}).ports.level, 12.5);
    }

    void invalid_options_are_refused_with_the_reason_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("reason");
        QTest::newRow("card") << QStringList{u"--card"_s, u"newer"_s} << "no card: \"newer\"";
        QTest::newRow("empty card") << QStringList{u"--card"_s, u""_s} << "no card: \"\"";
        QTest::newRow("no points")
            << QStringList{u"--card-points"_s, u"0"_s} << "no number of points: \"0\"";
        QTest::newRow("too many points")
            << QStringList{u"--card-points"_s, u"10000"_s} << "no number of points: \"10000\"";
        QTest::newRow("negative points")
            << QStringList{u"--card-points"_s, u"-1"_s} << "no number of points: \"-1\"";
        QTest::newRow("points in words")
            << QStringList{u"--card-points"_s, u"many"_s} << "no number of points: \"many\"";
        QTest::newRow("level in words")
            << QStringList{u"--card-level"_s, u"high"_s} << "no level of a card: \"high\"";
        QTest::newRow("level too high")
            << QStringList{u"--card-level"_s, u"80.5"_s} << "no level of a card: \"80.5\"";
        QTest::newRow("level that is not a number")
            << QStringList{u"--card-level"_s, u"nan"_s} << "no level of a card: \"nan\"";
        QTest::newRow("the first of two wrong options is named")
            << QStringList{u"--card"_s, u"newer"_s, u"--card-level"_s, u"high"_s}
            << "no card: \"newer\"";
    }

    void invalid_options_are_refused_with_the_reason()
    {
        QFETCH(QStringList, arguments);
        QTEST(read(arguments).fault, "reason");
    }

private:
    static CardOptions read(const QStringList& arguments)
    {
        QCommandLineParser parser;
        CardOptions::addTo(parser);
        parser.parse(QStringList{u"qn740-sim"_s} + arguments);
        return CardOptions::from(parser);
    }
};

QN740_TEST_MAIN(tst_CardOptions)
#include "tst_CardOptions.moc"
