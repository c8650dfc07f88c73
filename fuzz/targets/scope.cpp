// The bytes of the scope ports: I/Q blocks and SDI records, and what is measured on them.
#include "Target.h"

#include "scopes/IqBlockDecoder.h"
#include "scopes/ScopeContents.h"
#include "scopes/ScopeRemote.h"
#include "scopes/SdiDecoder.h"

#include <cmath>

namespace {

using Blocks = QList<QPair<QVector<double>, QVector<double>>>;

Blocks decode(const QList<QByteArray>& reads)
{
    IqBlockDecoder decoder;
    Blocks blocks;
    for (const QByteArray& read : reads) {
        for (qsizetype at = 0; at < read.size();) {
            const qsizetype taken = decoder.take(read.constData() + at, read.size() - at);
            FUZZ_CHECK(taken > 0 && taken <= read.size() - at);
            at += taken;
            if (decoder.blockReady()) {
                blocks += {decoder.i(), decoder.q()};
            }
        }
    }
    return blocks;
}

QByteArray goodBlock()
{
    QByteArray bytes;
    for (int i = 0; i < IqBlockDecoder::Records; ++i) {
        bytes += '\0';
        bytes += static_cast<char>(i);
        bytes += QByteArray("\x10\x20\xf0\x40", 4);
    }
    return bytes;
}

void measure(const Blocks& blocks, ScopeContents::View view)
{
    ScopeContents contents;
    contents.setView(view);
    contents.setMarksShown(true);
    for (const auto& block : blocks) {
        for (qsizetype k = 0; k < block.first.size(); ++k) {
            FUZZ_CHECK(std::abs(block.first.at(k)) <= 1.0 && std::abs(block.second.at(k)) <= 1.0);
        }
        contents.addBlock(block.first, block.second);
    }
    contents.measure();
    for (const ScopeFigure& figure : contents.figures()) {
        FUZZ_CHECK(!figure.value.contains(QLatin1String("nan")));
        FUZZ_CHECK(!figure.value.contains(QLatin1String("inf")));
    }
}

// The rules of SDI records, without any state but the record that has begun.
struct PlainSdi
{
    QByteArray record;
    bool started = false;

    QByteArray read(const QByteArray& bytes)
    {
        const QByteArray all = bytes + '\0';
        for (qsizetype i = 1; i < all.size(); ++i) {
            if (!started) {
                started = all.at(i) == SdiDecoder::StartByte;
                record.clear();
                continue;
            }
            record += all.at(i);
            if (record.size() == SdiDecoder::RecordBytes) {
                started = false;
                return record;
            }
        }
        return {};
    }
};

void decodeSdi(const QList<QByteArray>& reads)
{
    SdiDecoder decoder;
    PlainSdi plain;
    ScopeContents contents;
    contents.setView(ScopeContents::View::Strips);
    for (const QByteArray& read : reads) {
        const QByteArray record = decoder.read(read);
        FUZZ_CHECK(record == plain.read(read));
        FUZZ_CHECK(decoder.started() == plain.started);
        if (!record.isEmpty()) {
            FUZZ_CHECK(record.size() == SdiDecoder::RecordBytes);
            contents.addRecord(record);
            FUZZ_CHECK(ScopeRemote::record(1, record).endsWith('\n'));
        }
    }
}

} // namespace

void fuzz::takeIq(const QByteArray& input)
{
    const Blocks blocks = decode({input});
    FUZZ_CHECK(blocks == decode(pieces(input, 1)));
    FUZZ_CHECK(blocks == decode(pieces(input, 1000)));
    // Of three good blocks behind any garbage one is found.
    const QByteArray good = goodBlock();
    FUZZ_CHECK(decode({input + good + good + good}).size() > blocks.size());
    if (!blocks.isEmpty()) {
        measure(blocks, ScopeContents::View::Eyes);
        measure(blocks, ScopeContents::View::Constellation);
        const QByteArray lines = ScopeRemote::block(1, blocks.first().first, blocks.first().second);
        FUZZ_CHECK(lines.count('\n') == 2);
    }
}

void fuzz::takeSdi(const QByteArray& input)
{
    decodeSdi({input});
    decodeSdi(pieces(input, 1));
    decodeSdi(pieces(input, 20));
}
