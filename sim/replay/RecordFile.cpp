#include "sim/replay/RecordFile.h"

#include "wire/Message.h"
#include "wire/Trace.h"

RecordFile::RecordFile(const QString& path, QObject* parent)
    : QObject(parent)
    , m_file(path)
{
    m_file.open(QIODevice::WriteOnly | QIODevice::Truncate);
}

void RecordFile::toPanel(const QByteArray& bytes)
{
    write(true, QString::fromLatin1(bytes));
}

void RecordFile::fromPanel(const QString& text, bool framed)
{
    write(false, framed ? wire::frame(text) : text);
}

void RecordFile::write(bool in, const QString& frame)
{
    if (!m_file.isOpen()) {
        return;
    }
    const QByteArray line = wire::TraceLine::now(in, frame).text().toLatin1() + '\n';
    if (m_file.write(line) != line.size() || !m_file.flush()) {
        const QString reason = errorString();
        m_file.close();
        emit failed(reason);
    }
}
