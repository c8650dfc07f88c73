#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>

/// Lines of output that wait until the panel has taken the message that they are about, so that
/// what the panel says about a message can be printed behind it.
///
/// The order of the lines never changes: a line goes out when all before it have gone out, and when
/// the panel has taken its message. A panel that hangs, or a message that was spoilt on the line,
/// holds lines up for HoldMs at most. Behind a message that the panel has taken there is room for
/// what the panel says about it: the next lines wait for GraceMs.
class HeldLines : public QObject
{
    Q_OBJECT

public:
    static constexpr int HoldMs = 1500;          ///< how long a line waits for the panel
    static constexpr int GraceMs = 100;          ///< after a message that the panel has taken
    static constexpr qsizetype MaxLines = 10000; ///< that wait; the first then goes out

    explicit HeldLines(QObject* parent = nullptr);

    /// Adds a line. \param text empty for a line that is not printed
    /// \param frame the message to the panel that it waits for; empty when it waits for none
    void add(const QString& text, const QString& frame = QString());

    /// Lets the line of this message go, and all before it. \return whether one has waited for it
    bool took(const QString& frame);

    /// Lets all lines go.
    void release();

signals:
    /// Emitted when a line goes out.
    void line(QString text);

private:
    struct Line
    {
        QString text;
        QString frame;
        qint64 dueMs;
    };

    void removeFirst(qsizetype count);
    void goOn();

    QList<Line> m_lines;
    QElapsedTimer m_clock;
    qint64 m_notBeforeMs = 0;
    QTimer m_timer;
};
