#pragma once

#include <QAudioDeviceInfo>
#include <QAudioFormat>

namespace mevo {

/// The default input of the sound server. Other back ends list the same hardware once more and hold it
/// for themselves alone, so their devices are left out. Null when there is none.
QAudioDeviceInfo defaultMicrophone();

/// What is recorded: 16 kHz, 16 bit, one channel or two.
QAudioFormat captureFormat(bool twoChannels);

} // namespace mevo
