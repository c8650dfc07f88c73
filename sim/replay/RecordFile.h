#pragma once

#include <QByteArray>
#include <QFile>
#include <QObject>
#include <QString>

/// Writes the conversation with the panel into a file, one line of wire/Trace.h for everything that
/// goes over the line. Each line is written at once. Recording reads such a file.
class RecordFile : public QObject
{
    Q_OBJECT

public:
    /// Overwrites the file \a path. Check isOpen() afterwards.
    explicit RecordFile(const QString& path, QObject* parent = nullptr);

    /// Whether the file could be opened and takes lines.
    bool isOpen() const { return m_file.isOpen(); }
    /// \return the path and what went wrong
    QString errorString() const
    {
        return m_file.fileName() + QLatin1String(": ") + m_file.errorString();
    }

    /// Writes bytes that went to the panel.
    void toPanel(const QByteArray& bytes);
    /// Writes what came from the panel. \param text a message without its frame, or text outside
    /// one
    void fromPanel(const QString& text, bool framed);

signals:
    /// Emitted once, when the file takes no more lines and was closed.
    void failed(QString reason);

private:
    void write(bool in, const QString& frame);

    QFile m_file;
};
