#pragma once

#include <QString>

#include <complex>
#include <vector>

/// The constellations that the panel tells apart, or Unknown.
enum class ModulationOrder {
    Unknown, ///< Another one, or too few or too noisy points to be certain.
    Bpsk,    ///< Two points on a line.
    Qpsk,    ///< Four points on a circle; OQPSK taken at its own decisions looks the same.
    Psk8,    ///< Eight points on a circle.
    Qam16    ///< A square of four by four points.
};

/// What is known beforehand of each constellation.
namespace modulationOrder {

/// \return the name that the operator reads: "BPSK", "QPSK", "8PSK", "16QAM" or "unknown".
QString name(ModulationOrder order);

/// \return the ideal points with a mean energy of 1; none for Unknown. BPSK lies on the I axis;
/// the points of the others lie off both axes, symmetrically to them.
const std::vector<std::complex<double>>& points(ModulationOrder order);

} // namespace modulationOrder
