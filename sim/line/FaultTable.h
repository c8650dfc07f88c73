#pragma once

#include <QHash>
#include <QLatin1String>
#include <QList>
#include <QString>

// The faults that can be asked for by name, and how often each is to happen.
//
// Each class that carries out faults has a list of them; the table is made of all these lists. A
// rate is the part of the frames, blocks or replies that suffer the fault, 0 (never) to 1 (each).
class FaultTable
{
public:
    struct Fault
    {
        QLatin1String name; // "drop"
        QLatin1String text; // what it does, for the help
    };

    explicit FaultTable(const QList<Fault>& known = {});

    // In: "NAME=RATE", several with "," between. Out: empty, or why the text is refused; then the
    // items in front of the bad one are set.
    QString set(const QString& text);

    // Out: 0 to 1; 0 for a fault that was not set.
    double rate(QLatin1String name) const;
    // Whether every rate is 0.
    bool isEmpty() const;

    // One line a fault: its name and what it does.
    QString help() const;

private:
    bool isKnown(const QString& name) const;
    QString names() const;

    QList<Fault> m_known;
    QHash<QString, double> m_rates;
};
