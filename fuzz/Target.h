#pragma once

#include <QByteArray>
#include <QList>

#include <cstdio>
#include <cstdlib>

/// What is fuzzed: a part of the project that takes bytes from outside.
struct FuzzTarget
{
    const char* name;                      ///< as --target=NAME says it
    bool needsScreen;                      ///< whether it has widgets
    int maxBytes;                          ///< the longest input that is worth while
    void (*take)(const QByteArray& input); ///< takes one input; ends the program at a fault
};

/// \return all targets, in the order in which they are listed.
const QList<FuzzTarget>& fuzzTargets();

/// What the targets do, each in the file of its name in targets/.
namespace fuzz {

/// Takes one input.
///@{
void takeLink(const QByteArray& input);
void takeKey(const QByteArray& input);
void takeEntry(const QByteArray& input);
void takeMenuFile(const QByteArray& input);
void takeJson(const QByteArray& input);
void takeRecording(const QByteArray& input);
void takeIq(const QByteArray& input);
void takeSdi(const QByteArray& input);
void takeBus(const QByteArray& input);
void takeScenario(const QByteArray& input);
void takeFrames(const QByteArray& input);
void takeReaders(const QByteArray& input);
///@}

/// \return the input in pieces of 1 to \a largest bytes. The same input is always cut alike.
QList<QByteArray> pieces(const QByteArray& input, int largest);

} // namespace fuzz

/// Ends the program as a finding of the fuzzer when a condition does not hold.
#define FUZZ_CHECK(condition)                                                                      \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            std::fprintf(stderr, "%s:%d: not so: %s\n", __FILE__, __LINE__, #condition);           \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)
