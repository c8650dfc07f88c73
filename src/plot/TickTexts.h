#pragma once

#include <QStringList>
#include <QVector>

/// Texts of an axis' ticks, all with the same number of decimals.
namespace tickTexts {

/// The most decimals that a tick is written with.
constexpr int MaxDecimals = 4;

/// \return the smallest number of decimals that writes all \a positions exactly, at most
/// MaxDecimals.
int decimals(const QVector<double>& positions);

/// \return one text for each of \a positions, in their order, with decimals() decimals.
QStringList texts(const QVector<double>& positions);

} // namespace tickTexts
