#include "audio/CaptureFormat.h"

#include "audio/Samples.h"

namespace mevo {

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
