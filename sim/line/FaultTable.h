#pragma once

#include <QHash>
#include <QLatin1String>
#include <QList>
#include <QString>

/// The faults that --fault knows, and the rate of each.
///
/// Each class that carries out faults has a list of them, and the table is built from all these
/// lists. A rate is the share of frames, blocks or replies with the fault, 0 (none) to 1 (all).
class FaultTable
{
public:
    /// One fault.
    struct Fault
    {
        QLatin1String name; ///< "drop"
        QLatin1String text; ///< what it does, for the help
    };

    /// A table of the \a known faults, all with the rate 0.
    explicit FaultTable(const QList<Fault>& known = {});

    /// Sets rates from "NAME=RATE" or several of these separated by ",".
    /// \return why the text is refused, empty when it is accepted; the items in front of a bad one
    /// are set all the same
    QString set(const QString& text);

    /// \return the rate of a fault, 0 to 1; 0 when it was not set
    double rate(QLatin1String name) const;
    /// Whether every rate is 0.
    bool isEmpty() const;

    /// \return one line per fault: its name and what it does
    QString help() const;

private:
    bool isKnown(const QString& name) const;
    QString names() const;

    QList<Fault> m_known;
    QHash<QString, double> m_rates;
};
