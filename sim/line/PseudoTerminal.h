#pragma once

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <QTimer>

#include <memory>

// The unit's end of one serial line: the master side of a pseudo-terminal whose other side the
// panel opens as its port.
//
// The line is raw and carries all 256 byte values both ways. While nobody has it open it is asked
// 20 times a second; opened() tells when the panel came, closed() when it went, and it may come
// again. What the panel does not take at once is held and sent on as it reads; drained() tells when
// nothing is held any more. What it sends leaves by received() in pieces as they arrive.
class PseudoTerminal : public QObject
{
    Q_OBJECT

public:
    static constexpr qsizetype DefaultLimit = 1048576;

    // limit: the most bytes that are held for a panel that does not read.
    explicit PseudoTerminal(qsizetype limit = DefaultLimit, QObject* parent = nullptr);
    ~PseudoTerminal() override;

    // Out: whether the system gave a pseudo-terminal; without one nothing ever opens it.
    bool isValid() const { return m_master >= 0; }
    // The path that the other side opens; empty without a pseudo-terminal.
    QString slavePath() const { return m_slavePath; }

    // Whether the panel has the line open.
    bool isOpen() const { return m_open; }
    // Bytes held back, 0 to the limit.
    qsizetype pendingBytes() const { return m_pending.size(); }

    // Sends the bytes, or holds what the panel does not take yet. Out: false when nothing was sent,
    // because the line is not open or more than the limit would be held; bytes are never torn.
    bool write(const QByteArray& bytes);

signals:
    void opened();
    void closed();
    void received(QByteArray bytes);
    void drained();

private:
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
