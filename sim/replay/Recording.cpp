#include "sim/replay/Recording.h"

#include "wire/Message.h"

#include <QFile>
#include <QStringDecoder>

namespace {

// A line is UTF-8 or Latin-1 text, as in a menu file.
QString decoded(const QByteArray& line)
{
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString text = utf8.decode(line);
    return utf8.hasError() ? QString::fromLatin1(line) : text;
}

} // namespace

Recording Recording::parse(const QByteArray& text)
{
    Recording recording;
    qsizetype from = 0;
    while (from < text.size()) {
        const qsizetype found = text.indexOf('\n', from);
        const qsizetype end = found < 0 ? text.size() : found;
        QString line = decoded(text.mid(from, end - from));
        if (line.endsWith(QLatin1Char('\r'))) {
            line.chop(1);
        }
        if (const auto trace = wire::TraceLine::fromText(line)) {
            recording.add(*trace);
        }
        from = end + 1;
    }
    return recording;
}

Recording Recording::load(const QString& path)
{
    Recording recording;
    QFile input(path);
    const bool isOpen = input.open(QIODevice::ReadOnly);
    const QByteArray text = isOpen ? input.read(MaxFileBytes + 1) : QByteArray();
    if (!isOpen || input.error() != QFileDevice::NoError) {
        recording.m_fault = QStringLiteral("%1: %2").arg(path, input.errorString());
        return recording;
    }
    if (text.size() > MaxFileBytes) {
        recording.m_fault = QStringLiteral("%1: larger than 64 MB").arg(path);
        return recording;
    }
    recording = parse(text);
    if (recording.m_lines.isEmpty()) {
        recording.m_fault =
            QStringLiteral("%1: no line as \"12.345 in \\x02PING\\x04\" in it").arg(path);
    }
    return recording;
}

bool Recording::isFramed(const QString& frame)
{
    return frame.size() >= 2 && frame.front() == wire::Stx && frame.back() == wire::Eot;
}

void Recording::add(const wire::TraceLine& line)
{
    const bool follows = !m_lines.isEmpty() && !line.in && !m_lines.constLast().in;
    if (follows && !isFramed(line.frame) && !isFramed(m_lines.constLast().frame)) {
        m_lines.last().frame += line.frame;
    } else {
        m_lines.append(line);
    }
}
