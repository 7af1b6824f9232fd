#pragma once

#include <QByteArray>

namespace mevo {

constexpr int CaptureRate = 16000;  ///< Hz
constexpr int MaxBlockBytes = 2560; ///< most that one pass of the recorder takes, 80 ms of mono

/// The left channel of `size` bytes of interleaved 16-bit stereo, `size` / 2 bytes long. Frames are
/// copied while two more bytes fit before the last byte of the result, so that its last frame, whole
/// or broken, is zero.
QByteArray leftChannel(const char *interleaved, int size);

} // namespace mevo
