#pragma once

#include <QList>
#include <QPair>
#include <QString>

/// The ranges in which an entry is valid, and how they are written on the pad and in the error box.
///
/// They come as one text: ranges separated by ":", each the low bound, one blank, the high bound
/// ("950 2150:70 140"). They are kept by ascending low bound, however many there are; equal low
/// bounds keep their order.
class NumberRanges
{
public:
    /// Low and high bound, both inclusive.
    using Range = QPair<double, double>;

    /// No range: nothing is valid.
    NumberRanges() = default;
    /// Reads the ranges out of a text. An item with fewer than two fields is ignored; a field that
    /// is not a number reads as 0.
    /// \param text see the class comment
    /// \param type how bounds are written, see entryType::Type
    NumberRanges(const QString& text, int type);

    /// \return the ranges by ascending low bound.
    const QList<Range>& ranges() const { return m_ranges; }

    /// \return whether the value lies in any of the ranges.
    bool contains(double value) const;

    /// \return the ranges with three on each line, lines separated by "\r\n" and all but the first
    /// indented by 26 blanks.
    QString padText() const;
    /// \return padText() with the heading of the type, as the pad's range line shows it.
    /// \param title what a PIN pad shows instead
    QString rangeLine(const QString& title) const;
    /// \return the ranges with one on each line, lines separated by "\r\n".
    QString errorText() const;

    /// \return one range as text, such as "70.0 MHz to 140.0 MHz", "(70.0 to 140.0)", "-10 to 10"
    /// or "0 to FF".
    static QString rangeString(const Range& range, int type);

private:
    QList<Range> m_ranges;
    int m_type = 0;
};
