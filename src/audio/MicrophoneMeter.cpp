#include "audio/MicrophoneMeter.h"

#include "audio/DefaultMicrophone.h"
#include "audio/Samples.h"

#include <QAudioInput>
#include <QDebug>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace mevo {

namespace {
constexpr int periodBytes = CaptureRate / 10 * 2; ///< a tenth of a second
} // namespace

MicrophoneMeter::MicrophoneMeter(QObject *parent)
    : QObject(parent)
{
    const QAudioDeviceInfo microphone = defaultMicrophone();
    if (microphone.isNull() || !microphone.isFormatSupported(captureFormat(false))) {
        qInfo("Microphone level: there is none to listen to");
        return;
    }
    m_input = std::make_unique<QAudioInput>(microphone, captureFormat(false));
    m_input->setBufferSize(periodBytes);
    m_device = m_input->start();
    if (m_device) {
        connect(m_device, &QIODevice::readyRead, this, &MicrophoneMeter::read);
    }
}

MicrophoneMeter::~MicrophoneMeter()
{
    if (m_device) {
        m_device->disconnect(this);
    }
    if (m_input) {
        // Stopped first: an input that goes while it is open asks a stream that it has closed already, which
        // ends the program. And later: going, it handles events, whatever its owner is in the midst of.
        m_input->stop();
        m_input.release()->deleteLater();
    }
}

void MicrophoneMeter::read()
{
    int peak = 0;
    while (m_device) {
        const QByteArray block = m_device->read(MaxBlockBytes);
        for (int i = 0; i + 1 < block.size(); i += 2) {
            peak = std::max<int>(peak, std::abs(int(qFromLittleEndian<qint16>(block.constData() + i))));
        }
        if (block.isEmpty()) {
            break;
        }
    }
    // The root, so that quiet speech moves it as well.
    Q_EMIT heard(static_cast<int>(std::lround(highestLevel * std::sqrt(peak / 32768.0))));
}

} // namespace mevo
