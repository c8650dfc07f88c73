// qn740-fuzz --target=NAME ...: feeds inputs that libFuzzer makes to one part of the project.
//
//     qn740-fuzz --targets      lists the targets
//     qn740-fuzz --dictionary   prints the words that inputs are made of
#include "Dictionary.h"
#include "Target.h"

#include "app/Identity.h"
#include "tools/screen/OwnScreen.h"

#include <QApplication>

#include <cstdint>
#include <cstring>
#include <random>

// The counters of all branches, which libFuzzer sets to 0 before each input.
extern "C" uint8_t __start___sancov_cntrs[]; // NOLINT: the linker's names
extern "C" uint8_t __stop___sancov_cntrs[];  // NOLINT

namespace {

const FuzzTarget* chosen = nullptr;

[[noreturn]] void listTargets()
{
    for (const FuzzTarget& target : fuzzTargets()) {
        std::printf(
            "%s %d %s\n", target.name, target.maxBytes, target.needsScreen ? "screen" : "plain");
    }
    std::exit(0);
}

[[noreturn]] void printDictionary()
{
    const QByteArray text = fuzzDictionary();
    std::fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stdout);
    std::exit(0);
}

void choose(const char* argument)
{
    constexpr char Option[] = "--target=";
    if (std::strcmp(argument, "--targets") == 0) {
        listTargets();
    }
    if (std::strcmp(argument, "--dictionary") == 0) {
        printDictionary();
    }
    if (std::strncmp(argument, Option, std::strlen(Option)) != 0) {
        return;
    }
    for (const FuzzTarget& target : fuzzTargets()) {
        if (std::strcmp(argument + std::strlen(Option), target.name) == 0) {
            chosen = &target;
        }
    }
}

// What Qt warns of is a fault of whoever called it.
void endAtWarning(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    std::fprintf(stderr, "%s: %s\n", context.category, qPrintable(text));
    const bool isOurs = QByteArray(context.category).startsWith("qn740");
    if (type == QtFatalMsg || (type != QtDebugMsg && type != QtInfoMsg && !isOurs)) {
        std::abort();
    }
}

void startScreen()
{
    qInstallMessageHandler(endAtWarning); // OwnScreen passes on to it.
    static int count = 1;
    static char name[] = "qn740-fuzz";
    static char* arguments[] = {name, nullptr};
    static const OwnScreen screen;
    qputenv("QN740_SPLASH_MS", "0");
    // Not deleted: what libFuzzer does at the end of the program comes after that.
    auto* application = new QApplication(count, arguments);
    identity::apply();
    identity::applyLook(*application);
    QApplication::setQuitOnLastWindowClosed(false);
}

// Adds a line with the numbers of the branches that an input has reached, for fuzz/run --merge.
void noteReached()
{
    static FILE* const file = [] {
        const char* path = std::getenv("QN740_FUZZ_REACHED");
        return path != nullptr ? std::fopen(path, "w") : nullptr;
    }();
    if (file == nullptr) {
        return;
    }
    for (const uint8_t* at = __start___sancov_cntrs; at != __stop___sancov_cntrs; ++at) {
        if (*at != 0) {
            std::fprintf(file, "%td ", at - __start___sancov_cntrs);
        }
    }
    std::fputc('\n', file);
    std::fflush(file);
}

} // namespace

QList<QByteArray> fuzz::pieces(const QByteArray& input, int largest)
{
    std::mt19937 random(static_cast<quint32>(qChecksum(input)));
    QList<QByteArray> list;
    for (qsizetype at = 0; at < input.size();) {
        const auto size = static_cast<qsizetype>(1 + random() % static_cast<quint32>(largest));
        list += input.mid(at, size);
        at += size;
    }
    return list;
}

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    for (int i = 1; i < *argc; ++i) {
        choose((*argv)[i]);
    }
    if (chosen == nullptr) {
        std::fputs("say what to fuzz by --target=NAME; --targets lists the names\n", stderr);
        std::exit(2);
    }
    if (chosen->needsScreen) {
        startScreen();
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    chosen->take(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    noteReached();
    return 0;
}
