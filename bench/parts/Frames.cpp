// Cutting frames out of the line, beside a search of the same bytes and as many strings.
#include "link/FrameCutter.h"
#include "parts/Groups.h"
#include "support/Row.h"

#include <QString>

#include <cstring>

namespace {

constexpr int Bytes = 100 << 10;
constexpr qsizetype Read = 1024;
constexpr int Rounds = 101;

// The compiler cannot leave out what ends here.
volatile qsizetype seen = 0;

QByteArray frames(int size)
{
    const QByteArray frame = '\x02' + QByteArray("CV,Tuner,").leftJustified(size - 2, '7') + '\x04';
    return frame.repeated(Bytes / size);
}

void cut(const QByteArray& bytes)
{
    FrameCutter cutter;
    qsizetype characters = 0;
    for (qsizetype at = 0; at < bytes.size(); at += Read) {
        const qsizetype size = qMin(Read, bytes.size() - at);
        cutter.append(QString::fromLatin1(bytes.constData() + at, size));
        while (const auto message = cutter.next()) {
            characters += message->size();
        }
    }
    seen = characters;
}

void search(const QByteArray& bytes)
{
    const char* at = bytes.constData();
    const char* const end = at + bytes.size();
    qsizetype characters = 0;
    while (at < end) {
        const auto* eot =
            static_cast<const char*>(std::memchr(at, '\x04', static_cast<size_t>(end - at)));
        characters += QString::fromLatin1(at, eot + 1 - at).size();
        at = eot + 1;
    }
    seen = characters;
}

} // namespace

namespace groups {

void frames()
{
    for (const int size : {20, 200}) {
        const QByteArray bytes = ::frames(size);
        const double count = static_cast<double>(Bytes / size);
        bench::measure("frames." + QByteArray::number(size), Rounds,
            {{"ours", {}, [&] { cut(bytes); }, count},
                {"peer", {}, [&] { search(bytes); }, count}});
    }
}

} // namespace groups
