// What a character costs on its way into a message that has no end yet. The figure must not grow
// with the length of the message: the last line is the cost per character at 2 MB divided by that
// at 20 kB.
#include "link/FrameCutter.h"

#include <benchmark/benchmark.h>

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr int ReadSize = 1024;

void feed(int characters)
{
    FrameCutter cutter;
    cutter.append(QStringLiteral("\x02"));
    const QString read(ReadSize, QLatin1Char('x'));
    for (int done = 0; done < characters; done += ReadSize) {
        cutter.append(read);
        benchmark::DoNotOptimize(cutter.next());
    }
}

void unfinishedMessage(benchmark::State& state)
{
    const auto characters = static_cast<int>(state.range(0));
    for (auto _ : state) {
        feed(characters);
    }
    state.SetItemsProcessed(state.iterations() * characters);
}
BENCHMARK(unfinishedMessage)->Arg(20 << 10)->Arg(200 << 10)->Arg(2 << 20);

double nanosecondsACharacter(int characters)
{
    std::vector<double> runs;
    for (int i = 0; i < 21; ++i) {
        QElapsedTimer elapsed;
        elapsed.start();
        feed(characters);
        runs.push_back(static_cast<double>(elapsed.nsecsElapsed()) / characters);
    }
    std::nth_element(runs.begin(), runs.begin() + 10, runs.end());
    return runs[10];
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    const double small = nanosecondsACharacter(20 << 10);
    const double large = nanosecondsACharacter(2 << 20);
    std::printf(
        "ns a character: %.2f at 20 kB, %.2f at 2 MB, ratio %.2f\n", small, large, large / small);
    return 0;
}
