#pragma once

/// The I/Q block on a scope port's line, as numbers: what the panel, the simulator and the tests
/// have to agree on.
namespace iqBlock {

constexpr int Records = 256;                 ///< records per block
constexpr int RecordBytes = 6;               ///< 16-bit index, I and Q, big-endian
constexpr int Bytes = Records * RecordBytes; ///< bytes per block
constexpr int FullScale = 32768;             ///< the sample that stands for 1.0

/// Samples per symbol of an eye pattern, whose first sample is at a decision. A constellation block
/// has one sample per symbol, at its decision.
constexpr int EyeSamplesPerSymbol = 4;

} // namespace iqBlock
