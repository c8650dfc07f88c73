#include "sim/line/FaultTable.h"

#include <QStringList>

#include <algorithm>

FaultTable::FaultTable(const QList<Fault>& known)
    : m_known(known)
{
}

QString FaultTable::set(const QString& text)
{
    const QStringList items = text.split(QLatin1Char(','));
    for (const QString& item : items) {
        const QString name = item.section(QLatin1Char('='), 0, 0);
        if (!isKnown(name)) {
            return QStringLiteral("no fault \"%1\"; there are %2").arg(name, names());
        }
        bool ok = false;
        const double rate = item.section(QLatin1Char('='), 1).toDouble(&ok);
        if (!ok || !(rate >= 0.0 && rate <= 1.0)) {
            return QStringLiteral("%1 needs a rate from 0 to 1, as in %1=0.05").arg(name);
        }
        m_rates.insert(name, rate);
    }
    return {};
}

double FaultTable::rate(QLatin1String name) const
{
    return m_rates.value(name, 0.0);
}

bool FaultTable::isEmpty() const
{
    return std::all_of(m_rates.begin(), m_rates.end(), [](double rate) { return rate <= 0.0; });
}

QString FaultTable::help() const
{
    constexpr int NameWidth = 14;
    QString lines;
    for (const Fault& fault : m_known) {
        lines += QStringLiteral("  %1 %2\n").arg(QString(fault.name), -NameWidth).arg(fault.text);
    }
    return lines;
}

bool FaultTable::isKnown(const QString& name) const
{
    return std::any_of(
        m_known.begin(), m_known.end(), [&name](const Fault& fault) { return name == fault.name; });
}

QString FaultTable::names() const
{
    QStringList all;
    for (const Fault& fault : m_known) {
        all += fault.name;
    }
    return all.join(QLatin1String(", "));
}
