#include "inputmethods/Microphone.h"

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

bool Microphone::begin()
{
    cancel();
    const QAudioDeviceInfo device = QAudioDeviceInfo::defaultInputDevice();
    if (device.isNull()) {
        return false;
    }
    m_input = std::make_unique<QAudioInput>(device, recorderFormat());
    m_device = m_input->start();
    if (m_device.isNull()) {
        m_input.reset();
        return false;
    }
    connect(m_device, &QIODevice::readyRead, this, [this] { m_pcm += m_device->readAll(); });
    return true;
}

void Microphone::end(std::function<void(const QByteArray &)> done)
{
    QTimer::singleShot(lastBlocksMs, this, [this, input = m_input.get(), done = std::move(done)] {
        if (input != nullptr && input == m_input.get()) { // no new dictation has begun meanwhile
            done(take());
        }
    });
}

QByteArray Microphone::take()
{
    if (m_device != nullptr) {
        m_pcm += m_device->readAll();
    }
    const QByteArray pcm = m_pcm;
    cancel();
    return pcm;
}

void Microphone::cancel()
{
    if (m_input != nullptr) {
        m_input->stop();
    }
    m_input.reset();
    m_pcm.clear();
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
