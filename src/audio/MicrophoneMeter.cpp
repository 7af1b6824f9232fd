#include "audio/MicrophoneMeter.h"

#include "audio/Samples.h"
#include "platform/SoundInput.h"

#include <QDebug>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace mevo {

namespace {
constexpr int periodBytes = CaptureRate / 10 * 2; ///< a tenth of a second
} // namespace

MicrophoneMeter::MicrophoneMeter(SoundInputs &inputs, QObject *parent)
    : QObject(parent)
    , m_input(inputs.open({CaptureRate, 1, periodBytes}))
{
    if (m_input) {
        connect(m_input.get(), &SoundInput::readyRead, this, &MicrophoneMeter::read);
    } else {
        qInfo("Microphone level: there is none to listen to");
    }
}

MicrophoneMeter::~MicrophoneMeter()
{
    if (m_input) {
        // Later: what it has told may have brought its owner to this.
        m_input->stop(SoundInput::Afterwards::LetGo);
        m_input.release()->deleteLater();
    }
}

void MicrophoneMeter::read()
{
    int peak = 0;
    std::array<char, MaxBlockBytes> block{};
    for (int size = 0; (size = m_input->read(block.data(), MaxBlockBytes)) > 0;) {
        for (int i = 0; i + 1 < size; i += 2) {
            peak = std::max<int>(peak, std::abs(int(qFromLittleEndian<qint16>(block.data() + i))));
        }
    }
    // The root, so that quiet speech moves it as well.
    Q_EMIT heard(static_cast<int>(std::lround(highestLevel * std::sqrt(peak / 32768.0))));
}

} // namespace mevo
