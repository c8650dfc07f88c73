#pragma once

#include <QList>
#include <QString>

#include <optional>

// What a slider says and sends, without its window: its bounds out of the range text, the read-out
// of a value, the message of a position and whether a step may be taken.
class SliderValue
{
public:
    // How the read-out shows a value; any other number: as dB when the name has "dB" in it,
    // otherwise as a percentage of the maximum.
    enum Type { Hexadecimal = 9, Plain = 10 };

    // Bounds lie within ± this, so that their distance is an int too.
    static constexpr int Farthest = 1'000'000'000;
    // More steps than this do not fit on the screen; those behind are left out.
    static constexpr int MostSteps = 20;

    SliderValue() = default;
    // In: the setting's name, the prefix of its messages, "maximum minimum" as two integers (what
    // is no number counts as 0, swapped bounds are put in order), the type of the read-out.
    SliderValue(QString name, QString command, const QString& range, int type);

    int minimum() const { return m_minimum; }
    int maximum() const { return m_maximum; }
    // Out: percent for each unit of the value, 100 / maximum; 0 with a maximum of 0.
    float scale() const { return m_scale; }

    // In: any value, also no number or infinite. Out: the slider's position for it, fraction cut
    // off and within the bounds.
    int position(double value) const;
    // In: as for position(). Out: the text of the value within the bounds, such as "50.00%",
    // "12.00dB", "0xFF" (negative ones as 32 bits) or "7".
    QString readout(double value) const;
    // Out: the finished message, frame characters included.
    QString message(int position) const;
    // In: a signed step. Out: the new position, nothing when it would lie outside the bounds.
    std::optional<int> stepped(int position, int step) const;

    // In: integers separated by ":". Out: their magnitudes in the same order; what is no number or
    // 0 is left out.
    static QList<int> steps(const QString& text);

private:
    double bounded(double value) const;

    QString m_name;
    QString m_command;
    int m_type = 0;
    int m_minimum = 0;
    int m_maximum = 0;
    float m_scale = 0;
};
