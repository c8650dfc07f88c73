#pragma once

#include "sim/line/FrameSplitter.h"
#include "sim/line/LineFaults.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>

class PseudoTerminal;

/// The unit's end of the panel's line. A subclass decides what is sent: the main unit, or a
/// recording that is replayed.
///
/// write() sends a frame through the faults and announces each piece that really goes over the line
/// by wrote(). Bytes from the panel are cut into messages and unframed text; each is announced by
/// received() and then passed to handle(). While busy(), the panel has not read everything yet, and
/// more should wait until lineFree() is called.
class PanelLink : public QObject
{
    Q_OBJECT

public:
    /// \param line the unit's end of the line; must live longer than this
    /// \param faults of what is sent
    explicit PanelLink(
        PseudoTerminal& line, const LineFaults& faults = {}, QObject* parent = nullptr);

signals:
    /// Emitted when a message was sent, whatever the faults did to it. \param body without STX and
    /// EOT
    void sent(QString body);
    /// Emitted when bytes went over the line, after the faults.
    void wrote(QByteArray bytes);
    /// Emitted when a message came in, or text outside a frame. \param text without STX and EOT
    void received(QString text, bool framed);

protected:
    bool isOpen() const;
    // Whether the panel has not read yet what was sent.
    bool busy() const;
    // Sends bytes. Returns false when they were not taken, because nobody has the line open or too
    // much is held already.
    bool write(const QByteArray& bytes);
    // The same, past the faults.
    bool writeRaw(const QByteArray& bytes);

    virtual void panelCame() = 0;
    virtual void panelWent() = 0;
    // Takes a message without its frame, or text outside a frame.
    virtual void handle(const QString& text, bool framed) = 0;
    virtual void lineFree() = 0;

private:
    void came();
    void went();
    void take(const QByteArray& bytes);
    void takeQuiet();
    void handOn(const FrameSplitter::Piece& piece);
    bool takes(const QByteArray& bytes) const;
    void writePieces();
    void releaseHeld();

    PseudoTerminal& m_line;
    LineFaults m_faults;
    QList<LineFaults::Piece> m_pieces;
    FrameSplitter m_splitter;
    QTimer m_quiet;
    QTimer m_gap;
    QTimer m_hold;
};
