#pragma once

#include "platform/Speech.h"
#include "platform/linux/EspeakLibrary.h"
#include "platform/linux/SpeechSound.h"

#include <QString>

#include <functional>
#include <memory>
#include <thread>

namespace mevo {

/// One text for the voice.
struct EspeakText
{
    QString text;
    QString language; ///< BCP 47 tag
    int rate = 0;     ///< -10 to 10
    int volume = 100; ///< 0 to 100
};

/// Speaks texts one after another with libespeak-ng, on a thread of its own that begins with the first of
/// them. All but the constructor's functions is called by one thread.
class EspeakThread
{
public:
    /// How the text of this number has ended.
    using Ended = std::function<void(int number, SpeechEnd end)>;

    /// `makeSound` and `ended` are called on the speaking thread, `ended` for each text that is not stopped
    /// and never after the destructor has begun.
    EspeakThread(const EspeakLibrary &library, MakeSpeechSound makeSound, Ended ended);
    /// Falls silent. Waits for the thread, but not for a sound server that hangs: after 2 s it is left to
    /// itself.
    ~EspeakThread();
    EspeakThread(const EspeakThread &) = delete;
    EspeakThread &operator=(const EspeakThread &) = delete;

    /// Number of the text, counted from 1.
    int speak(const EspeakText &text);
    /// Ends the text that is spoken and drops those that wait.
    void stop();

private:
    struct Shared;
    static void run(const std::shared_ptr<Shared> &shared);

    std::shared_ptr<Shared> m_shared; ///< outlives this object where the thread does
    std::thread m_thread;
};

} // namespace mevo
