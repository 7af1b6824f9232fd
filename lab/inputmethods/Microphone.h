#pragma once

#include <QAudioInput>
#include <QByteArray>
#include <QObject>
#include <QPointer>

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
    QByteArray take();

    std::unique_ptr<QAudioInput> m_input;
    QPointer<QIODevice> m_device;
    QByteArray m_pcm;
};

} // namespace lab
