#include "inputmethods/Microphone.h"

#include <QAudioInput>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <cstdlib>

namespace lab {

namespace {

constexpr int lastBlocksMs = 150; ///< the sound server is that much behind at most

QAudioFormat recorderFormat()
{
    QAudioFormat format;
    format.setSampleRate(16000);
    format.setChannelCount(1);
    format.setSampleSize(16);
    format.setCodec(QStringLiteral("audio/pcm"));
    format.setByteOrder(QAudioFormat::LittleEndian);
    format.setSampleType(QAudioFormat::SignedInt);
    return format;
}

} // namespace

struct Microphone::Recording
{
    Recording()
        : input(QAudioDeviceInfo::defaultInputDevice(), recorderFormat())
        , device(input.start())
    {
    }
    ~Recording() { input.stop(); }
    void read()
    {
        if (device != nullptr) {
            pcm += device->readAll();
        }
    }

    QAudioInput input;
    QPointer<QIODevice> device; ///< goes with a sound server that ends
    QByteArray pcm;
};

bool Microphone::begin()
{
    cancel();
    if (QAudioDeviceInfo::defaultInputDevice().isNull()) {
        return false;
    }
    m_recording = std::make_shared<Recording>();
    if (m_recording->device == nullptr) {
        cancel();
        return false;
    }
    connect(m_recording->device, &QIODevice::readyRead, this,
            [recording = m_recording.get()] { recording->read(); });
    return true;
}

void Microphone::end(std::function<void(const QByteArray &)> done)
{
    // The next one may begin meanwhile.
    QTimer::singleShot(lastBlocksMs, this, [recording = std::move(m_recording), done = std::move(done)] {
        if (recording != nullptr) {
            recording->read();
            done(recording->pcm);
        }
    });
    m_recording.reset();
}

void Microphone::cancel()
{
    m_recording.reset();
}

int Microphone::peakOf(const QByteArray &pcm)
{
    int peak = 0;
    for (int i = 0; i + 1 < pcm.size(); i += 2) {
        peak = std::max(peak, std::abs(int(qint16(quint8(pcm[i]) | quint8(pcm[i + 1]) << 8))));
    }
    return peak;
}

} // namespace lab
