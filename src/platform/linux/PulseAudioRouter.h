#pragma once

#include "platform/SystemServices.h"

namespace mevo {

/// The microphones of the sound server (PulseAudio, or PipeWire in its place), by their descriptions;
/// what plays on a loudspeaker is none. Each call connects anew, so that a restart of the server does
/// not matter, and takes at most `timeoutMs`.
class PulseAudioRouter : public AudioRouter
{
public:
    explicit PulseAudioRouter(int timeoutMs = 1000);

    /// Two microphones of one description get their server's names behind it.
    QStringList inputNames() override;
    /// Takes a name that inputNames() gave, or the server's own name of the source.
    bool switchDefault(const QString &name) override;

private:
    int m_timeoutMs;
};

} // namespace mevo
