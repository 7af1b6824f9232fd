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
constexpr int lookAgainMs = 1000;
} // namespace

MicrophoneMeter::MicrophoneMeter(SoundInputs &inputs, QObject *parent)
    : QObject(parent)
    , m_inputs(inputs)
{
    m_again.setSingleShot(true);
    m_again.setInterval(lookAgainMs);
    connect(&m_again, &QTimer::timeout, this, &MicrophoneMeter::open);
    open();
}

MicrophoneMeter::~MicrophoneMeter()
{
    close();
}

void MicrophoneMeter::open()
{
    m_input = m_inputs.open({CaptureRate, 1, periodBytes});
    if (!m_input) {
        lookAgain();
        return;
    }
    connect(m_input.get(), &SoundInput::readyRead, this, &MicrophoneMeter::read);
    connect(m_input.get(), &SoundInput::ended, this, [this] {
        close();
        lookAgain();
        Q_EMIT heard(0); // last: who hears it may have us go
    });
}

void MicrophoneMeter::close()
{
    if (m_input) {
        // Later: what it has told may have brought us, or our owner, to this.
        m_input->disconnect(this);
        m_input->stop(SoundInput::Afterwards::LetGo);
        m_input.release()->deleteLater();
    }
}

void MicrophoneMeter::lookAgain()
{
    if (!m_told) {
        qInfo("Microphone level: there is none to listen to");
        m_told = true;
    }
    m_again.start();
}

void MicrophoneMeter::read()
{
    m_told = false;
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
