#pragma once

#include <QByteArray>
#include <QFile>
#include <QObject>
#include <QString>

// Writes the conversation with the panel into a file, a line of wire/Trace.h for everything that
// goes over the line, at once; Recording reads it.
class RecordFile : public QObject
{
    Q_OBJECT

public:
    // path: overwritten. isOpen() tells whether that went, errorString() why not.
    explicit RecordFile(const QString& path, QObject* parent = nullptr);

    bool isOpen() const { return m_file.isOpen(); }
    QString errorString() const
    {
        return m_file.fileName() + QLatin1String(": ") + m_file.errorString();
    }

    // Bytes that went to the panel.
    void toPanel(const QByteArray& bytes);
    // What came from it: a message without its frame, or text that stood in none.
    void fromPanel(const QString& text, bool framed);

signals:
    // The file took no more, and is closed; told once.
    void failed(QString reason);

private:
    void write(bool in, const QString& frame);

    QFile m_file;
};
