#pragma once

#include <QByteArray>
#include <QProcess>

namespace mevo::lab {

/// Records what the desk's speaker plays, as 16 kHz 16-bit mono PCM.
class Speaker
{
public:
    Speaker();
    ~Speaker();
    /// Waits until it records. False when it does not within the time.
    bool records(int timeoutMs);
    /// Waits until nothing has been heard for a while; false when that does not come.
    bool isQuiet(int timeoutMs);
    /// Waits for a sound that begins from now on, and for its end; the sound with the silence around it.
    /// Empty when none has come or it has not ended.
    QByteArray nextSound(int timeoutMs);

private:
    void read();

    QProcess m_recorder;
    QByteArray m_pcm;
};

} // namespace mevo::lab
