#pragma once

#include <QByteArray>

#include <functional>
#include <vector>

/// How the programs of bench/ measure and what they print for bench/run.
///
/// A row sets one side, ours, beside another, the peer. Measured by time, the two sides take turns,
/// so that other load on the machine affects both alike, and the median of the thread's processor
/// time is printed. With the option "--count" each side runs once, and what runs inside is marked
/// for callgrind or for the counting plugin of qemu: the figure is a number of instructions.
///
/// What is printed, one line per figure, with tabs between the fields:
///   figure  ROW  SIDE  VALUE      microseconds per unit of work, or what the row measures
///   section ROW  SIDE  UNITS      the next section that was counted
namespace bench {

/// One side of a row.
struct Side
{
    const char* name;               ///< "ours", "peer", or what else is measured
    std::function<void()> prepare;  ///< Not measured; may be empty.
    std::function<void()> run;      ///< What is measured.
    double units = 1;               ///< How many units of work run() does.
    std::function<void()> finish{}; ///< Not measured; may be empty.
};

/// Reads "--count" and "--short" from the command line. \return the arguments that are left
std::vector<QByteArray> readArguments(int argc, char** argv);

/// \return whether instructions are counted instead of time.
bool isCounting();

/// \return whether what takes long is left out, for slow machines ("--short").
bool isShort();

/// Measures the sides of a row, \a rounds times each by turns; counted, each once.
void measure(const QByteArray& row, int rounds, const std::vector<Side>& sides);

/// Prints a figure that the caller has measured itself.
void print(const QByteArray& row, const char* side, double value);

/// \return the processor time of this thread so far, in microseconds.
double threadMicroseconds();

/// \return the value in the middle, or at another part of the sorted values. \a part 0 to 1
double quantile(std::vector<double> values, double part = 0.5);

} // namespace bench
