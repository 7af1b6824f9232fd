#pragma once

#include <QByteArray>
#include <QObject>

#include <functional>
#include <memory>

namespace lab {

/// Records the default microphone: 16 kHz, 16 bits, mono.
class Microphone : public QObject
{
public:
    /// False when there is none.
    bool begin();
    /// Gives what was said until now, once the last of it is in; nothing is recorded any more.
    void end(std::function<void(const QByteArray &pcm)> done);
    /// Forgets what is being recorded.
    void cancel();

    /// Loudest sample.
    static int peakOf(const QByteArray &pcm);

private:
    struct Recording;
    std::shared_ptr<Recording> m_recording; ///< that has not been ended
};

} // namespace lab
