#include "audio/DefaultMicrophone.h"

#include "audio/Samples.h"

namespace mevo {

QAudioDeviceInfo defaultMicrophone()
{
    const QString realm = QStringLiteral("default");
    const QAudioDeviceInfo device = QAudioDeviceInfo::defaultInputDevice();
    if (device.realm() == realm) {
        return device;
    }
    for (const QAudioDeviceInfo &other : QAudioDeviceInfo::availableDevices(QAudio::AudioInput)) {
        if (other.realm() == realm) {
            return other;
        }
    }
    return {};
}

QAudioFormat captureFormat(bool twoChannels)
{
    QAudioFormat format;
    format.setSampleRate(CaptureRate);
    format.setChannelCount(twoChannels ? 2 : 1);
    format.setSampleSize(16);
    format.setSampleType(QAudioFormat::SignedInt);
    format.setByteOrder(QAudioFormat::LittleEndian);
    format.setCodec(QStringLiteral("audio/pcm"));
    return format;
}

} // namespace mevo
