// What a byte costs in the search for a reply that does not come. The figure must not grow with the
// bytes that wait already: the last line is the cost of a byte at 160 kB divided by that at 10 kB.
//
//   bench_ReplyBuffer                 times
//   bench_ReplyBuffer --count BYTES   takes BYTES bytes, one at a time, to be counted by callgrind;
//                                     bench/run --pieces does that
#include "spectrum/BusFrame.h"

#include <benchmark/benchmark.h>

#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

// Always looks like the beginning of a reply.
QByteArray noise(qsizetype size)
{
    QByteArray bytes;
    while (bytes.size() < size) {
        bytes += "[0190RFF]";
    }
    return bytes;
}

void feed(const QByteArray& bytes, qsizetype piece)
{
    bus::ReplyBuffer buffer;
    CmdMsg message;
    for (qsizetype at = 0; at < bytes.size(); at += piece) {
        buffer.append(bytes.mid(at, piece));
        benchmark::DoNotOptimize(buffer.take(message, bus::Layout::Decimal));
    }
}

void waitingForAHeader(benchmark::State& state)
{
    const QByteArray bytes = noise(state.range(0));
    for (auto _ : state) {
        feed(bytes, state.range(1));
    }
    state.SetBytesProcessed(state.iterations() * bytes.size());
}
BENCHMARK(waitingForAHeader)->ArgsProduct({{10000, 40000, 160000}, {1, 64}});

double nanosecondsAByte(qsizetype size)
{
    const QByteArray bytes = noise(size);
    std::vector<double> runs; // The best counts: other load on the machine only adds time.
    for (int i = 0; i < 11; ++i) {
        QElapsedTimer elapsed;
        elapsed.start();
        feed(bytes, 1);
        runs.push_back(static_cast<double>(elapsed.nsecsElapsed()) / static_cast<double>(size));
    }
    return *std::min_element(runs.begin(), runs.end());
}

} // namespace

int main(int argc, char** argv)
{
    if (argc == 3 && qstrcmp(argv[1], "--count") == 0) {
        feed(noise(atoi(argv[2])), 1);
        return 0;
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    const double small = nanosecondsAByte(10000);
    const double large = nanosecondsAByte(160000);
    std::printf("per byte, one at a time: %.1f ns at 10 kB, %.1f ns at 160 kB, ratio %.2f\n", small,
        large, large / small);
}
