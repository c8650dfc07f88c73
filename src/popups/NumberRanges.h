#pragma once

#include <QList>
#include <QPair>
#include <QString>

// The ranges in which an entry is valid, and how they are written on the pad and in the error box.
//
// They come as one text: ranges separated by ":", each the low bound, one blank, the high bound
// ("950 2150:70 140"). They are kept by ascending low bound, however many there are; equal low
// bounds keep their order.
class NumberRanges
{
public:
    using Range = QPair<double, double>; // low, high; both inclusive

    NumberRanges() = default;
    // text: as above; an item with fewer than two fields is ignored, a field that is no number
    // reads as 0. type: how bounds are written, see entryType.
    NumberRanges(const QString& text, int type);

    const QList<Range>& ranges() const { return m_ranges; }

    // Whether the value lies in any of the ranges.
    bool contains(double value) const;

    // Three ranges a line, lines separated by "\r\n", all but the first indented by 26 blanks.
    QString padText() const;
    // The same with the heading of the type, as the pad's range line shows it. title: what a PIN
    // pad shows instead.
    QString rangeLine(const QString& title) const;
    // One range a line, separated by "\r\n".
    QString errorText() const;

    // One range as text ("70.0 MHz to 140.0 MHz", "(70.0 to 140.0)", "-10 to 10", "0 to FF").
    static QString rangeString(const Range& range, int type);

private:
    QList<Range> m_ranges;
    int m_type = 0;
};
