#pragma once

#include "sim/line/Chance.h"
#include "sim/line/FaultTable.h"

#include <QByteArray>
#include <QList>

/// Damages what a scope port sends, at the rates of a table. The same seed damages the same bytes.
///
///     scope-index     a block has a wrong index
///     scope-loss      one byte of a block or record is lost
///     scope-noise     up to 400 random bytes come in the middle of it
///     scope-silence   nothing comes for two seconds from here on
class ScopeFaults
{
public:
    static constexpr int MaxBurst = 400;      ///< random bytes of scope-noise
    static constexpr qint64 SilenceMs = 2000; ///< of scope-silence

    /// A port without faults.
    ScopeFaults() = default;
    /// Faults at the \a rates of a table.
    ScopeFaults(const FaultTable& rates, quint32 seed);

    /// \return the faults of this class, for a table
    static QList<FaultTable::Fault> names();

    /// \return what the port sends in place of \a bytes, a block or a record
    /// \param ms time since the port began
    QByteArray pass(QByteArray bytes, qint64 ms);

private:
    double m_index = 0.0;
    double m_loss = 0.0;
    double m_noise = 0.0;
    double m_silence = 0.0;
    qint64 m_silentUntil = 0;
    Chance m_chance;
};
