#pragma once

#include "sim/line/FrameSplitter.h"
#include "sim/line/LineFaults.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>

class PseudoTerminal;

// The unit's end of the conversation with the panel, whoever leads it (the main unit, or a
// recording that is played back).
//
// The way out: write() sends the frame through the faults and tells each piece that really goes
// over the line by wrote(). The way in: what comes is cut into messages and unframed text; each is
// told by received() and given to handle(). While busy(), more had better wait: lineFree() tells
// when the panel has taken all.
class PanelLink : public QObject
{
    Q_OBJECT

public:
    // line: the unit's end of the line, which must live longer than this.
    explicit PanelLink(
        PseudoTerminal& line, const LineFaults& faults = {}, QObject* parent = nullptr);

signals:
    // A message was sent, whatever the faults made of it; the text between STX and EOT.
    void sent(QString body);
    // Bytes went over the line, after the faults.
    void wrote(QByteArray bytes);
    // A message came in, without its frame; or, with framed false, text that stood in none.
    void received(QString text, bool framed);

protected:
    bool isOpen() const;
    // Whether the panel has not taken yet what was sent.
    bool busy() const;
    // In: bytes to send. Out: false when they were not taken: nobody has the line open, or too much
    // is held already.
    bool write(const QByteArray& bytes);

    virtual void panelCame() = 0;
    virtual void panelWent() = 0;
    // In: a message without its frame, or text that stood in none.
    virtual void handle(const QString& text, bool framed) = 0;
    virtual void lineFree() = 0;

private:
    void came();
    void went();
    void take(const QByteArray& bytes);
    void takeQuiet();
    void handOn(const FrameSplitter::Piece& piece);
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
