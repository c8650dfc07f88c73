#include "sim/line/PanelLink.h"

#include "sim/line/PseudoTerminal.h"

namespace {

constexpr int QuietMs = 50; // after which unframed text counts as complete
constexpr int HoldMs = 100; // after which a burst goes out, complete or not

} // namespace

PanelLink::PanelLink(PseudoTerminal& line, const LineFaults& faults, QObject* parent)
    : QObject(parent)
    , m_line(line)
    , m_faults(faults)
{
    for (QTimer* timer : {&m_quiet, &m_gap, &m_hold}) {
        timer->setSingleShot(true);
        timer->setTimerType(Qt::PreciseTimer);
    }
    m_quiet.setInterval(QuietMs);
    m_hold.setInterval(HoldMs);
    connect(&m_quiet, &QTimer::timeout, this, &PanelLink::takeQuiet);
    connect(&m_gap, &QTimer::timeout, this, [this] {
        writePieces();
        lineFree();
    });
    connect(&m_hold, &QTimer::timeout, this, &PanelLink::releaseHeld);
    connect(&line, &PseudoTerminal::opened, this, &PanelLink::came);
    connect(&line, &PseudoTerminal::closed, this, &PanelLink::went);
    connect(&line, &PseudoTerminal::received, this, &PanelLink::take);
    connect(&line, &PseudoTerminal::drained, this, [this] { lineFree(); });
}

bool PanelLink::isOpen() const
{
    return m_line.isOpen();
}

bool PanelLink::busy() const
{
    return m_line.pendingBytes() > 0 || !m_pieces.isEmpty() || m_gap.isActive();
}

bool PanelLink::write(const QByteArray& bytes)
{
    if (!takes(bytes)) {
        return false;
    }
    m_pieces += m_faults.pass(bytes);
    if (!m_faults.isHolding()) {
        m_hold.stop();
    } else if (!m_hold.isActive()) {
        m_hold.start();
    }
    writePieces();
    return true;
}

bool PanelLink::writeRaw(const QByteArray& bytes)
{
    if (!takes(bytes)) {
        return false;
    }
    m_pieces.append({bytes, 0});
    writePieces();
    return true;
}

bool PanelLink::takes(const QByteArray& bytes) const
{
    return m_line.isOpen() && bytes.size() <= PseudoTerminal::DefaultLimit - m_line.pendingBytes();
}

void PanelLink::came()
{
    m_splitter.clear();
    panelCame();
}

void PanelLink::went()
{
    takeQuiet();
    m_pieces.clear();
    m_gap.stop();
    m_hold.stop();
    m_faults.release();
    panelWent();
}

void PanelLink::take(const QByteArray& bytes)
{
    const auto pieces = m_splitter.take(bytes);
    for (const FrameSplitter::Piece& piece : pieces) {
        handOn(piece);
    }
    m_quiet.start();
}

void PanelLink::takeQuiet()
{
    m_quiet.stop();
    if (const auto piece = m_splitter.takeLoose()) {
        handOn(*piece);
    }
}

void PanelLink::handOn(const FrameSplitter::Piece& piece)
{
    emit received(piece.text, piece.framed);
    handle(piece.text, piece.framed);
}

void PanelLink::writePieces()
{
    while (!m_pieces.isEmpty() && !m_gap.isActive()) {
        const LineFaults::Piece piece = m_pieces.takeFirst();
        if (!piece.bytes.isEmpty() && m_line.write(piece.bytes)) {
            emit wrote(piece.bytes);
        }
        if (piece.pauseMs > 0) {
            m_gap.start(piece.pauseMs);
        }
    }
}

void PanelLink::releaseHeld()
{
    m_pieces.append({m_faults.release(), 0});
    writePieces();
}
