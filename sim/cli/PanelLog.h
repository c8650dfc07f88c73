#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>

class InputLines;

/// What the panel writes on its standard error, through a named pipe that the panel was started
/// with:
///
///     mkfifo log
///     QT_LOGGING_RULES="qn740-ignored.debug=true;qn740.link.debug=true" qn740-panel 2>log
///
/// Of its lines, those about a message that it has taken and about one that it ignores are
/// announced as such. The pipe is held open for writing, too: a panel may end and another one
/// begin.
class PanelLog : public QObject
{
    Q_OBJECT

public:
    /// Opens the pipe. Check fault() afterwards.
    explicit PanelLog(const QString& path, QObject* parent = nullptr);
    ~PanelLog() override;

    /// \return why the pipe cannot be used; empty when it can
    const QString& fault() const { return m_fault; }

signals:
    /// Emitted when the panel has taken a message, before it handles it. \param frame with STX and
    /// EOT
    void took(QString frame);
    /// Emitted when the panel ignores the message that it took last. \param reason as
    /// "SK: no menu Nowhere"
    void ignored(QString reason);
    /// Emitted for every other line.
    void other(QString line);

private:
    void take(const QByteArray& line);

    int m_fd = -1;
    QString m_fault;
    std::unique_ptr<InputLines> m_lines;
};
