#pragma once

#include <QAudioFormat>

namespace mevo {

/// What is recorded: 16 kHz, 16 bit, one channel or two.
QAudioFormat captureFormat(bool twoChannels);

} // namespace mevo
