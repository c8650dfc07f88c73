// What cuts messages out of a line: the simulator's splitter, and those of the panel.
#include "Target.h"

#include "link/FrameCutter.h"
#include "link/LinkMode.h"
#include "link/ResendCutter.h"
#include "sim/line/FrameSplitter.h"
#include "spectrum/QueueEntry.h"
#include "wire/Commands.h"
#include "wire/Message.h"

using namespace Qt::StringLiterals;

namespace {

using Pieces = QList<FrameSplitter::Piece>;

Pieces split(const QList<QByteArray>& reads)
{
    FrameSplitter splitter;
    Pieces all;
    for (const QByteArray& read : reads) {
        all += splitter.take(read);
    }
    if (const auto loose = splitter.takeLoose()) {
        all += *loose;
    }
    return all;
}

void checkSame(const Pieces& a, const Pieces& b)
{
    FUZZ_CHECK(a.size() == b.size());
    for (qsizetype i = 0; i < a.size(); ++i) {
        FUZZ_CHECK(a.at(i).text == b.at(i).text && a.at(i).framed == b.at(i).framed);
    }
}

QStringList resent(const QList<QByteArray>& reads)
{
    ResendCutter cutter;
    QStringList all;
    for (const QByteArray& read : reads) {
        all += cutter.take(QString::fromLatin1(read));
    }
    return all;
}

void look(const QString& message)
{
    const QStringList fields = wire::fields(message);
    FUZZ_CHECK(!fields.isEmpty());
    static_cast<void>(wire::whyIgnored(fields.first(), fields.mid(1)));
    static_cast<void>(wire::commandFromPanel(fields));
    for (int mode = 0; mode < 4; ++mode) {
        static_cast<void>(linkMode::widened(message, mode));
    }
    static_cast<void>(bus::QueueEntry::fromText(message));
    const auto entry = bus::QueueEntry::requestFromText(message);
    FUZZ_CHECK(entry.timeoutMs() >= 0 && entry.timeoutMs() <= bus::MaxReplyMs);
}

void cut(const QList<QByteArray>& reads)
{
    FrameCutter cutter;
    for (const QByteArray& read : reads) {
        cutter.append(QString::fromLatin1(read));
        while (const auto message = cutter.next()) {
            FUZZ_CHECK(message->endsWith(wire::Eot));
            look(*message);
        }
    }
    // A good message behind any garbage is found, when an EOT ends the garbage.
    cutter.append(u"\x04"_s);
    while (cutter.next()) {
    }
    cutter.append(u"\x02PING\x04"_s);
    FUZZ_CHECK(cutter.next() == u"\x02PING\x04"_s);
}

} // namespace

void fuzz::takeFrames(const QByteArray& input)
{
    const QList<QByteArray> whole{input};
    const QList<QByteArray> bytes = pieces(input, 1);
    const QList<QByteArray> some = pieces(input, 64);
    checkSame(split(whole), split(bytes));
    checkSame(split(whole), split(some));
    if (input.size() <= ResendCutter::MaxUnfinished) {
        FUZZ_CHECK(resent(whole) == resent(bytes));
        FUZZ_CHECK(resent(whole) == resent(some));
    }
    cut(whole);
    cut(bytes);
    cut(some);
}
