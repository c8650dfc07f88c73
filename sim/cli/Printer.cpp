#include "sim/cli/Printer.h"

#include "wire/Message.h"
#include "wire/Trace.h"

#include <cstdio>

namespace {

void print(std::FILE* stream, const QString& text)
{
    const QByteArray line = text.toUtf8() + '\n';
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stream);
    std::fflush(stream);
}

} // namespace

Printer::Printer(bool trace, QObject* parent)
    : QObject(parent)
    , m_trace(trace)
{
}

void Printer::event(const QString& text) const
{
    print(stdout, QLatin1String("sim: ") + text);
}

void Printer::fromPanel(const QString& text, bool framed) const
{
    traced(false, framed ? wire::frame(text) : text);
    print(stdout,
        (framed ? QLatin1String("panel: ") : QLatin1String("panel (unframed): ")) +
            wire::toPrintable(text));
}

void Printer::toPanel(const QByteArray& bytes) const
{
    traced(true, QString::fromLatin1(bytes));
}

void Printer::error(const QString& text)
{
    print(stderr, text);
}

void Printer::traced(bool in, const QString& frame) const
{
    if (m_trace) {
        print(stdout, QLatin1String("trace: ") + wire::TraceLine::now(in, frame).text());
    }
}
