#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <QTimer>

#include <memory>

/// The unit's end of one serial line: the master side of a pseudo-terminal whose slave side the
/// panel opens as its port.
///
/// The line is raw and carries all 256 byte values in both directions. While nobody has it open it
/// is checked 20 times a second: the panel may open and close it any number of times. What the
/// panel does not read at once is held and sent on as it reads.
///
/// A serial adapter that is unplugged and plugged in again is another device at the same place. So
/// unplug() gives the pseudo-terminal back, and plug() takes a new one, with a path of its own.
class PseudoTerminal : public QObject
{
    Q_OBJECT

public:
    /// Bytes that are held at most.
    static constexpr qsizetype DefaultLimit = 1048576;

    /// \param limit how many bytes are held at most for a panel that does not read
    explicit PseudoTerminal(qsizetype limit = DefaultLimit, QObject* parent = nullptr);
    ~PseudoTerminal() override;

    /// Whether the system gave a pseudo-terminal; without one nothing can open it.
    bool isValid() const { return m_master >= 0; }
    /// \return the path that the panel opens; empty without a pseudo-terminal
    QString slavePath() const { return m_slavePath; }

    /// Whether the panel has the line open.
    bool isOpen() const { return m_open; }
    /// \return how many bytes are held, 0 to the limit
    qsizetype pendingBytes() const { return m_pending.size(); }

    /// Hangs up, as a plug that is pulled: the panel's reads and writes fail, and the path is gone.
    /// What is held is dropped. Announced by closed() when the panel had the line open.
    void unplug();
    /// Takes a new pseudo-terminal after unplug(). \return whether the system gave one
    bool plug();

    /// Sends the bytes, or holds what the panel does not read yet.
    /// \return false when none of them was taken, because the line is not open or more than the
    /// limit would be held
    bool write(const QByteArray& bytes);

signals:
    /// Emitted when the panel has opened the line.
    void opened();
    /// Emitted when the panel has closed the line.
    void closed();
    /// Emitted for what the panel sends, in pieces as they arrive.
    void received(QByteArray bytes);
    /// Emitted when nothing is held any more.
    void drained();

private:
    void giveBack();
    void poll();
    void readAll();
    void writePending();
    void setOpen(bool open);

    int m_master = -1;
    QString m_slavePath;
    qsizetype m_limit;
    bool m_open = false;
    QByteArray m_pending;
    QTimer m_poll;
    std::unique_ptr<QSocketNotifier> m_readable;
    std::unique_ptr<QSocketNotifier> m_writable;
};
