#include "support/TestMain.h"
#include "tools/measure/Tables.h"

using namespace Qt::StringLiterals;

namespace {
MeasurementRow row(const QString& table, double trueValue, double measured)
{
    return {table, u"a signal"_s, trueValue, measured, 0.5, u"dB"_s};
}
} // namespace

class tst_Measurements : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { m_rows = tables::allRows(); }

    void each_row_is_within_its_tolerance_data()
    {
        QTest::addColumn<int>("at");
        for (qsizetype i = 0; i < m_rows.size(); ++i) {
            const MeasurementRow& one = m_rows.at(i);
            QTest::newRow(qUtf8Printable(one.table + u": "_s + one.condition)) << int(i);
        }
    }

    void each_row_is_within_its_tolerance()
    {
        QFETCH(int, at);
        const MeasurementRow& one = m_rows.at(at);
        QVERIFY2(one.isWithin(),
            qPrintable(u"true %1, measured %2, tolerance %3"_s.arg(one.trueValue)
                           .arg(one.measured)
                           .arg(one.tolerance)));
        QVERIFY(one.tolerance > 0.0 && !one.unit.isEmpty());
    }

    void the_document_has_these_tables()
    {
        QFile file(QStringLiteral(QN740_ROOT "/docs/measurements.md"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(file.readAll());
        QString fault;
        QCOMPARE(tables::filledIn(text, m_rows, fault), text);
        QCOMPARE(fault, QString());
    }

    void the_program_refuses_a_file_that_it_cannot_read()
    {
        const QTemporaryDir directory;
        QProcess program;
        program.start(QStringLiteral(QN740_MEASURE), {directory.filePath(u"absent.md"_s)});
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitCode(), 1);
        QVERIFY(program.readAllStandardError().contains("absent.md: No such file"));
        program.start(QStringLiteral(QN740_MEASURE), {u"one"_s, u"two"_s});
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitCode(), 2);
        QVERIFY(program.readAllStandardError().startsWith("usage: "));
    }

    void a_difference_above_the_tolerance_is_not_within()
    {
        QVERIFY(row(u"A"_s, 1.0, 1.5).isWithin());
        QVERIFY(row(u"A"_s, 1.0, 0.5).isWithin());
        QVERIFY(!row(u"A"_s, 1.0, 1.6).isWithin());
        QVERIFY(!row(u"A"_s, 1.0, qQNaN()).isWithin());
    }

    void tables_go_into_their_places_in_a_document()
    {
        const MeasurementRows rows{row(u"A"_s, 1.0, 1.25), row(u"B"_s, 0.0, -0.0001)};
        const QString document = u"# Title\n<!-- table: B -->\n| old |\n<!-- end -->\n"
                                 u"between\n<!-- table: A -->\n<!-- end -->\nlast\n"_s;
        QString fault;
        const QString filled = tables::filledIn(document, rows, fault);
        QCOMPARE(fault, QString());
        QVERIFY(!filled.contains(u"old"_s));
        QVERIFY(filled.contains(u"| a signal | 1.00 | 1.25 | 0.25 | ± 0.50 | dB |\n"
                                u"<!-- end -->\nlast\n"_s));
        QVERIFY(filled.contains(u"| a signal | 0.00 | 0.00 | 0.00 | ± 0.50 | dB |"_s));
        QCOMPARE(tables::filledIn(filled, rows, fault), filled);
    }

    void a_document_that_does_not_fit_is_refused_data()
    {
        QTest::addColumn<QString>("document");
        QTest::addColumn<QString>("fault");
        QTest::newRow("no place") << u"text\n"_s << u"no place for the table \"A\""_s;
        QTest::newRow("unknown table") << u"<!-- table: C -->\n<!-- end -->\n"_s
                                       << u"there is no table \"C\", or it stands there twice"_s;
        QTest::newRow("a table twice")
            << u"<!-- table: A -->\n<!-- end -->\n<!-- table: A -->\n<!-- end -->\n"_s
            << u"there is no table \"A\", or it stands there twice"_s;
        QTest::newRow("no end") << u"<!-- table: A -->\ntext\n"_s << u"a table has no end"_s;
    }

    void a_document_that_does_not_fit_is_refused()
    {
        QFETCH(QString, document);
        QString fault;
        QCOMPARE(tables::filledIn(document, {row(u"A"_s, 1.0, 1.0)}, fault), document);
        QTEST(fault, "fault");
    }

private:
    MeasurementRows m_rows;
};

QN740_TEST_MAIN(tst_Measurements)
#include "tst_Measurements.moc"
