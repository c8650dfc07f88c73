// qn740-measure: the tables of docs/measurements.md.
//
//   qn740-measure            prints the tables
//   qn740-measure --orders TRIALS   prints which orders are found, over many trials
//   qn740-measure FILE       puts them into FILE, in place of those that it holds
#include "tools/measure/OrderTrials.h"
#include "tools/measure/Tables.h"

#include <QFile>

#include <cstdio>

namespace {

int print()
{
    const MeasurementRows rows = tables::allRows();
    for (const QString& name : tables::names(rows)) {
        std::printf(
            "%s\n\n%s\n", qUtf8Printable(name), qUtf8Printable(tables::markdown(rows, name)));
    }
    return 0;
}

int fail(const QString& path, const QString& reason)
{
    std::fprintf(stderr, "qn740-measure: %s: %s\n", qUtf8Printable(path), qUtf8Printable(reason));
    return 1;
}

int fillIn(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return fail(path, file.errorString());
    }
    QString fault;
    const QString text =
        tables::filledIn(QString::fromUtf8(file.readAll()), tables::allRows(), fault);
    file.close();
    if (!fault.isEmpty()) {
        return fail(path, fault);
    }
    if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0) {
        return fail(path, file.errorString());
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 3 && qstrcmp(argv[1], "--orders") == 0) {
        std::printf("%s", qUtf8Printable(orderTrials::report(QByteArray(argv[2]).toInt())));
        return 0;
    }
    if (argc > 2) {
        std::fprintf(stderr, "usage: qn740-measure [FILE | --orders TRIALS]\n");
        return 2;
    }
    return argc == 2 ? fillIn(QString::fromLocal8Bit(argv[1])) : print();
}
