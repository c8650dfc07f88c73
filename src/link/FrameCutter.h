#pragma once

#include "wire/DropLog.h"

#include <QByteArray>
#include <QByteArrayView>
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

    /// Adds characters, one byte each, behind those that are left.
    void append(QByteArrayView bytes);
    /// The same.
    void append(const QByteArray& bytes) { append(QByteArrayView(bytes)); }

    /// The same with the characters (codes 0 to 255) of a string.
    void append(const QString& characters) { append(characters.toLatin1()); }

    /// \return the next message with everything in front of it that was not dropped, its EOT
    /// included; nothing when no EOT is there yet.
    std::optional<QString> next();

    /// \return the characters that are left.
    QString rest() const { return QString::fromLatin1(m_buffer.mid(m_begin)); }

    /// Drops the characters that are left.
    void clear();

private:
    qsizetype size() const { return m_buffer.size() - m_begin; }
    qsizetype find(QChar character, qsizetype from) const;

    QByteArray m_buffer;      // as they come: half as large as a string, and searched faster
    qsizetype m_begin = 0;    // of what is left in m_buffer
    qsizetype m_searched = 0; // no EOT from m_begin up to here
    DropLog m_tooLong;
};
