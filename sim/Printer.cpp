#include "sim/Printer.h"

#include "wire/Message.h"

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
    m_since.start();
}

void Printer::event(const QString& text) const
{
    print(stdout, QLatin1String("sim: ") + text);
}

void Printer::fromPanel(const QString& text, bool framed) const
{
    traced('<', text);
    print(stdout,
        (framed ? QLatin1String("panel: ") : QLatin1String("panel (unframed): ")) +
            wire::toPrintable(text));
}

void Printer::toPanel(const QString& body) const
{
    traced('>', body);
}

void Printer::error(const QString& text)
{
    print(stderr, text);
}

void Printer::traced(char direction, const QString& text) const
{
    if (m_trace) {
        const QString seconds = QString::number(double(m_since.elapsed()) / 1000.0, 'f', 3);
        print(stdout,
            QStringLiteral("trace: %1 %2 ").arg(seconds, QString(QLatin1Char(direction))) +
                wire::toPrintable(text));
    }
}
