#pragma once

#include <QByteArray>

namespace mevo {

/// Greatest scaled sample that the meter knows.
constexpr int MaxMeterPeak = 4800;
/// Longest block that the meter looks at, in samples.
constexpr int MaxMeterSamples = 2560;

/// Peak of one block of 16-bit little-endian samples, scaled by `gain` / 50 into 0..MaxMeterPeak;
/// negative samples count 0. `count` is the number of samples looked at, and is bounded by
/// MaxMeterSamples; a `count` below 1 gives 0.
///
/// The block is read as a C string: what follows its first zero byte counts as silence, so that the
/// meter follows the loud start of the block.
int meterPeak(const QByteArray &block, int count, int gain);

/// Picture level of a peak; systems of the class of Windows XP use a finer scale. The pictures end at
/// level 6, the number does not.
int meterLevel(int peak, bool xpClass);

} // namespace mevo
