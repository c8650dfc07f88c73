#include "sim/cli/CardOptions.h"
#include "support/TestMain.h"

#include <QCommandLineParser>

class tst_CardOptions : public QObject
{
    Q_OBJECT

private slots:
    void without_options_there_is_a_good_k7150_with_1024_points()
    {
        const CardOptions options = read({});
        QCOMPARE(options.fault, QString());
        QVERIFY(!options.ports.none);
        QCOMPARE(options.ports.type, CardPort::Type::K7150);
        QCOMPARE(options.ports.points, 1024);
    }

    void good_options_are_taken()
    {
        const CardOptions options = read({"--card", "older", "--card-points", "9999"});
        QCOMPARE(options.fault, QString());
        QCOMPARE(options.ports.type, CardPort::Type::Older);
        QCOMPARE(options.ports.points, 9999);
        QVERIFY(read({"--card", "none"}).ports.none);
        QCOMPARE(read({"--card-points", "1"}).ports.points, 1);
        QCOMPARE(read({"--card", "k7150"}).fault, QString());
    }

    void what_cannot_be_is_refused_with_its_reason_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("reason");
        QTest::newRow("card") << QStringList{"--card", "newer"} << "no card: \"newer\"";
        QTest::newRow("empty card") << QStringList{"--card", ""} << "no card: \"\"";
        QTest::newRow("no points")
            << QStringList{"--card-points", "0"} << "no number of points: \"0\"";
        QTest::newRow("too many points")
            << QStringList{"--card-points", "10000"} << "no number of points: \"10000\"";
        QTest::newRow("negative points")
            << QStringList{"--card-points", "-1"} << "no number of points: \"-1\"";
        QTest::newRow("points in words")
            << QStringList{"--card-points", "many"} << "no number of points: \"many\"";
    }

    void what_cannot_be_is_refused_with_its_reason()
    {
        QFETCH(QStringList, arguments);
        QTEST(read(arguments).fault, "reason");
    }

private:
    static CardOptions read(const QStringList& arguments)
    {
        QCommandLineParser parser;
        CardOptions::addTo(parser);
        parser.parse(QStringList{"qn740-sim"} + arguments);
        return CardOptions::from(parser);
    }
};

QN740_TEST_MAIN(tst_CardOptions)
#include "tst_CardOptions.moc"
