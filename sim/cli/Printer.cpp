#include "sim/cli/Printer.h"

#include "sim/cli/PanelLog.h"
#include "wire/Message.h"
#include "wire/Trace.h"

#include <cstdio>

namespace {

void printTo(std::FILE* stream, const QString& text)
{
    const QByteArray line = text.toUtf8() + '\n';
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stream);
    std::fflush(stream);
}

} // namespace

Printer::Printer(const Trace& trace, QObject* parent)
    : QObject(parent)
    , m_trace(trace)
{
    connect(&m_held, &HeldLines::line, this, [](const QString& line) { printTo(stdout, line); });
}

Printer::~Printer()
{
    m_held.release();
}

void Printer::follow(const PanelLog& log)
{
    m_followsPanel = true;
    connect(&log, &PanelLog::took, this, &Printer::took);
    connect(&log, &PanelLog::ignored, this, &Printer::ignored);
    connect(&log, &PanelLog::other, this, &Printer::error);
}

void Printer::event(const QString& text)
{
    print(QLatin1String("sim: ") + text);
}

void Printer::fromPanel(const QString& text, bool framed)
{
    const QString frame = framed ? wire::frame(text) : text;
    if (m_trace.on && m_trace.words.show(frame)) {
        print(QLatin1String("trace: ") + wire::TraceLine::now(false, frame).text());
    }
    print((framed ? QLatin1String("panel: ") : QLatin1String("panel (unframed): ")) +
        wire::toPrintable(text));
}

void Printer::toPanel(const QByteArray& bytes)
{
    const QString frame = QString::fromLatin1(bytes);
    if (m_trace.on && m_trace.words.show(frame)) {
        print(QLatin1String("trace: ") + wire::TraceLine::now(true, frame).text(), frame);
    }
}

void Printer::error(const QString& text)
{
    printTo(stderr, text);
}

void Printer::print(const QString& line, const QString& frame)
{
    m_held.add(line, m_followsPanel ? frame : QString());
}

void Printer::took(const QString& frame)
{
    m_taken = frame;
    m_isBehind = !m_held.took(frame);
}

void Printer::ignored(const QString& reason)
{
    if (!m_trace.on) {
        printTo(stdout, QLatin1String("ignored: ") + reason);
    } else if (m_trace.words.show(m_taken)) {
        const QString of = QLatin1String(" (") + wire::toPrintable(m_taken) + QLatin1Char(')');
        printTo(stdout, QLatin1String("ignored: ") + reason + (m_isBehind ? of : QString()));
    }
}
