#pragma once

#include "wire/DropLog.h"

#include <QString>

#include <optional>

/// Cuts the messages of the front-panel link out of the characters that arrive.
///
/// Characters go in by append(); after each append the owner calls next() until it answers nothing.
/// A message reaches from the first character that is left to the first EOT. The work per character
/// does not grow with the length of an unfinished message. One that is longer than
/// linkLimits::MaxMessage is dropped, up to the next STX.
///
/// Quirk: what stands before an STX goes away one character per call, however far the STX lies, and
/// all of it when there is no STX at all; the EOT of a message stays in front of what follows it,
/// to be dropped the same way. Main units know the panel so. See "Quirks" in docs/architecture.md.
class FrameCutter
{
public:
    /// Makes a cutter that has no characters.
    FrameCutter();

    /// Adds characters (codes 0 to 255) behind those that are left.
    void append(const QString& characters);

    /// \return the next message with everything in front of it that was not dropped, its EOT
    /// included; nothing when no EOT is there yet.
    std::optional<QString> next();

    /// \return the characters that are left.
    QString rest() const { return m_buffer.mid(m_begin); }

    /// Drops the characters that are left.
    void clear();

private:
    qsizetype size() const { return m_buffer.size() - m_begin; }

    QString m_buffer;
    qsizetype m_begin = 0;    // of what is left in m_buffer
    qsizetype m_searched = 0; // no EOT from m_begin up to here
    DropLog m_tooLong;
};
