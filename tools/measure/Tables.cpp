#include "tools/measure/Tables.h"

#include "tools/measure/ScopeTables.h"
#include "tools/measure/SpectrumTables.h"

namespace {

const QString Begin = QStringLiteral("<!-- table: ");
const QString BeginEnd = QStringLiteral(" -->");
const QString End = QStringLiteral("<!-- end -->");

QString number(double value, int decimals)
{
    const QString text = QString::number(value, 'f', decimals);
    // Not "-0.00", which depends on the last bit of the value.
    return text.toDouble() == 0.0 ? QString::number(0.0, 'f', decimals) : text;
}

} // namespace

MeasurementRows tables::allRows()
{
    return spectrumTables::rows() + scopeTables::rows();
}

QStringList tables::names(const MeasurementRows& rows)
{
    QStringList names;
    for (const MeasurementRow& row : rows) {
        if (!names.contains(row.table)) {
            names += row.table;
        }
    }
    return names;
}

QString tables::markdown(const MeasurementRows& rows, const QString& name)
{
    QString text =
        QStringLiteral("| condition | true | measured | difference | tolerance | unit |\n"
                       "| --- | ---: | ---: | ---: | ---: | --- |\n");
    for (const MeasurementRow& row : rows) {
        if (row.table == name) {
            text += QStringLiteral("| %1 | %2 | %3 | %4 | ± %5 | %6 |\n")
                        .arg(row.condition, number(row.trueValue, row.decimals),
                            number(row.measured, row.decimals),
                            number(row.measured - row.trueValue, row.decimals),
                            number(row.tolerance, row.decimals), row.unit);
        }
    }
    return text;
}

QString tables::filledIn(const QString& document, const MeasurementRows& rows, QString& fault)
{
    fault.clear();
    QStringList missing = names(rows);
    QString filled;
    bool inTable = false;
    for (const QString& line : document.split(QLatin1Char('\n'))) {
        inTable = inTable && line != End;
        if (inTable) {
            continue;
        }
        filled += line + QLatin1Char('\n');
        if (line.startsWith(Begin) && line.endsWith(BeginEnd)) {
            inTable = true;
            const QString name =
                line.mid(Begin.size(), line.size() - Begin.size() - BeginEnd.size());
            if (missing.removeAll(name) == 0) {
                fault =
                    QStringLiteral("there is no table \"%1\", or it stands there twice").arg(name);
                return document;
            }
            filled += markdown(rows, name);
        }
    }
    filled.chop(1); // The line feed of the empty last line.
    if (inTable) {
        fault = QStringLiteral("a table has no end");
    } else if (!missing.isEmpty()) {
        fault = QStringLiteral("no place for the table \"%1\"").arg(missing.first());
    }
    return fault.isEmpty() ? filled : document;
}
