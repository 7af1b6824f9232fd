#pragma once

#include "platform/Speech.h"
#include "platform/linux/EspeakThread.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace mevo {

/// Takes the ends of texts from the speaking thread to the event loop.
class EspeakEnds : public QObject
{
    Q_OBJECT

signals:
    void ended(int number, int end);
};

/// The voice of libespeak-ng, which is loaded when the voice is opened.
class EspeakSpeech : public Speech
{
public:
    using Load = std::function<std::optional<EspeakLibrary>()>;

    explicit EspeakSpeech(Load load = loadEspeakLibrary, MakeSpeechSound makeSound = makePulseSound);

    bool open() override;
    bool speak(const QString &text, const QString &language) override;
    void setRate(int rate) override { m_rate = rate; }
    void setVolume(int volume) override { m_volume = volume; }
    void stop() override;
    void whenStreamEnds(Ended handler) override { m_handler = std::move(handler); }

private:
    void onEnded(int number, SpeechEnd end);

    Load m_load;
    MakeSpeechSound m_makeSound;
    int m_rate = 0;
    int m_volume = 100;
    int m_lastNumber = 0;  ///< of the texts that were given
    int m_stoppedUpTo = 0; ///< texts up to this number were stopped
    Ended m_handler;
    EspeakEnds m_ends; ///< lives longer than the thread
    std::unique_ptr<EspeakThread> m_thread;
};

} // namespace mevo
