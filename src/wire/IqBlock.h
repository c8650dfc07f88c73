#pragma once

// The I/Q block on a scope port's line, as numbers: what the panel, the simulator and the tests
// have to agree on.
namespace iqBlock {

constexpr int Records = 256;
constexpr int RecordBytes = 6; // 16-bit index, I and Q, big-endian
constexpr int Bytes = Records * RecordBytes;
constexpr int FullScale = 32768; // the sample that stands for 1.0

// How a demodulator samples: in an eye block from the first sample on at a decision; in a
// constellation block one sample a symbol, at its decision.
constexpr int EyeSamplesPerSymbol = 4;

} // namespace iqBlock
