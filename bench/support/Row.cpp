#include "support/Row.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <time.h>
#include <unistd.h>

#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#else
#define CALLGRIND_START_INSTRUMENTATION
#define CALLGRIND_STOP_INSTRUMENTATION
#define CALLGRIND_ZERO_STATS
#define CALLGRIND_DUMP_STATS_AT(name) static_cast<void>(name)
#endif

namespace {

// Files that nobody has open: closing them does nothing, and the counting plugin of qemu sees it.
constexpr int SectionBegins = -7400001;
constexpr int SectionEnds = -7400002;

bool counting = false;
bool isShortRun = false;

void call(const std::function<void()>& function)
{
    if (function) {
        function();
    }
}

void count(const QByteArray& row, const bench::Side& side)
{
    call(side.prepare);
    const QByteArray name = row + ' ' + side.name;
    std::printf("section\t%s\t%s\t%.0f\n", row.constData(), side.name, side.units);
    std::fflush(stdout);
    CALLGRIND_START_INSTRUMENTATION;
    CALLGRIND_ZERO_STATS;
    ::close(SectionBegins);
    side.run();
    ::close(SectionEnds);
    CALLGRIND_DUMP_STATS_AT(name.constData());
    CALLGRIND_STOP_INSTRUMENTATION;
    call(side.finish);
}

double time(const bench::Side& side)
{
    call(side.prepare);
    const double begin = bench::threadMicroseconds();
    side.run();
    const double used = bench::threadMicroseconds() - begin;
    call(side.finish);
    return used / side.units;
}

} // namespace

namespace bench {

std::vector<QByteArray> readArguments(int argc, char** argv)
{
    std::vector<QByteArray> left;
    for (int i = 1; i < argc; ++i) {
        const QByteArray argument(argv[i]);
        if (argument == "--count") {
            counting = true;
        } else if (argument == "--short") {
            isShortRun = true;
        } else {
            left.push_back(argument);
        }
    }
    return left;
}

bool isCounting()
{
    return counting;
}

bool isShort()
{
    return isShortRun;
}

void measure(const QByteArray& row, int rounds, const std::vector<Side>& sides)
{
    if (counting) {
        for (const Side& side : sides) {
            count(row, side);
        }
        return;
    }
    std::vector<std::vector<double>> times(sides.size());
    for (int round = 0; round < rounds; ++round) {
        for (size_t i = 0; i < sides.size(); ++i) {
            times[i].push_back(time(sides[i]));
        }
    }
    for (size_t i = 0; i < sides.size(); ++i) {
        print(row, sides[i].name, quantile(times[i]));
    }
}

void print(const QByteArray& row, const char* side, double value)
{
    std::printf("figure\t%s\t%s\t%.6g\n", row.constData(), side, value);
    std::fflush(stdout);
}

double threadMicroseconds()
{
    timespec now{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e6 + static_cast<double>(now.tv_nsec) / 1e3;
}

double quantile(std::vector<double> values, double part)
{
    if (values.empty()) {
        return 0;
    }
    const auto last = static_cast<double>(values.size() - 1);
    const auto at = values.begin() + static_cast<std::ptrdiff_t>(last * part + 0.5);
    std::nth_element(values.begin(), at, values.end());
    return *at;
}

} // namespace bench
