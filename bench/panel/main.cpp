// Measures the panel's window in this process, through its line and its buttons.
//
//   bench_Panel [--count] GROUP ...       the rows of these groups; "list" names them
//   bench_Panel --memory ours|peer COUNT  the resident memory of as many keys
//
// "--count" marks what is measured for callgrind or qemu's plugin; bench/run does that.
#include "panel/Groups.h"
#include "support/Memory.h"
#include "support/Row.h"

#include "app/Identity.h"

#include <QApplication>

#include <cstdio>
#include <functional>
#include <map>

namespace {

const std::map<QByteArray, std::function<void()>> Groups{
    {"define", groups::define},
    {"changes", groups::changes},
    {"fader", groups::fader},
    {"press", groups::press},
    {"editors", groups::editors},
    {"pages", groups::pages},
};

} // namespace

int main(int argc, char** argv)
{
    bench::useMemoryAsThePanel();
    qputenv("QN740_SPLASH_MS", "0");
    QApplication application(argc, argv);
    identity::apply();
    identity::applyLook(application);
    const auto arguments = bench::readArguments(argc, argv);
    if (arguments.size() == 3 && arguments[0] == "--memory") {
        groups::memory(arguments[1], arguments[2].toInt());
        return 0;
    }
    for (const QByteArray& name : arguments) {
        const auto group = Groups.find(name);
        if (group == Groups.end()) {
            for (const auto& [known, run] : Groups) {
                std::printf("%s\n", known.constData());
            }
            return name == "list" ? 0 : 2;
        }
        group->second();
    }
    return 0;
}
