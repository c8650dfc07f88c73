// Cutting frames out of the line, beside a search of the same bytes and as many strings.
#include "link/FrameCutter.h"
#include "parts/Groups.h"
#include "support/Row.h"

#include <QByteArrayList>
#include <QByteArrayView>
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

// The reads as the port hands them over.
QByteArrayList readsOf(const QByteArray& bytes)
{
    QByteArrayList reads;
    for (qsizetype at = 0; at < bytes.size(); at += Read) {
        reads += bytes.mid(at, Read);
    }
    return reads;
}

// A cutter takes the bytes as they are or, in older versions, as characters.
template <class Cutter>
auto append(Cutter& cutter, const QByteArray& bytes, int /*best*/)
    -> decltype(cutter.append(QByteArrayView(bytes)))
{
    cutter.append(QByteArrayView(bytes));
}
template <class Cutter>
void append(Cutter& cutter, const QByteArray& bytes, long /*second*/)
{
    cutter.append(QString::fromLatin1(bytes));
}

void cut(const QByteArrayList& reads)
{
    FrameCutter cutter;
    qsizetype characters = 0;
    for (const QByteArray& read : reads) {
        append(cutter, read, 0);
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
        const QByteArrayList reads = readsOf(bytes);
        const double count = static_cast<double>(Bytes / size);
        bench::measure("frames." + QByteArray::number(size), Rounds,
            {{"ours", {}, [&] { cut(reads); }, count},
                {"peer", {}, [&] { search(bytes); }, count}});
    }
}

} // namespace groups
