// Measures pieces of the panel beside the least that could do their work.
//
//   bench_Parts [--count] GROUP ...     "frames" and "spectrum"
//
// "--count" marks what is measured for callgrind or qemu's plugin; bench/run does that.
#include "parts/Groups.h"
#include "support/Memory.h"
#include "support/Row.h"

#include <QApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    bench::useMemoryAsThePanel();
    const QApplication application(argc, argv);
    for (const QByteArray& name : bench::readArguments(argc, argv)) {
        if (name == "frames") {
            groups::frames();
        } else if (name == "spectrum") {
            groups::spectrum();
        } else {
            std::printf("frames\nspectrum\n");
            return name == "list" ? 0 : 2;
        }
    }
    return 0;
}
