#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

struct ConstellationFigures;
struct EyeFigures;

/// One number below an enlarged scope, as the operator reads it.
struct ScopeFigure
{
    QString name;  ///< What it is, without a unit.
    QString value; ///< The number with its unit; "---" when it is not known.

    /// \return whether both say the same.
    bool operator==(const ScopeFigure& other) const
    {
        return name == other.name && value == other.value;
    }
};

/// The numbers of each kind of plot. The names are always the same ones; a value that is not
/// certain is "---".
namespace scopeFigures {

/// \return the numbers of a constellation. When its order is not certain, that is "unknown", and no
/// other value is given.
QVector<ScopeFigure> ofConstellation(const ConstellationFigures& figures);
/// \return the numbers of the eyes of I and Q.
QVector<ScopeFigure> ofEyes(const EyeFigures& figures);
/// \return the bytes of an SDI record, each as a number; "---" for those that it does not have.
QVector<ScopeFigure> ofRecord(const QByteArray& record);

/// \return the same numbers without any value: nothing is received.
QVector<ScopeFigure> withoutValues(QVector<ScopeFigure> figures);

} // namespace scopeFigures
