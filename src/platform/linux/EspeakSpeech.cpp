#include "platform/linux/EspeakSpeech.h"

namespace mevo {

EspeakSpeech::EspeakSpeech(Load load, MakeSpeechSound makeSound)
    : m_load(std::move(load))
    , m_makeSound(std::move(makeSound))
{
    QObject::connect(
        &m_ends, &EspeakEnds::ended, &m_ends,
        [this](int number, int end) { onEnded(number, static_cast<SpeechEnd>(end)); }, Qt::QueuedConnection);
}

bool EspeakSpeech::open()
{
    if (m_thread) {
        return true;
    }
    const std::optional<EspeakLibrary> library = m_load();
    if (!library) {
        return false;
    }
    m_thread = std::make_unique<EspeakThread>(*library, m_makeSound, [this](int number, SpeechEnd end) {
        emit m_ends.ended(number, static_cast<int>(end));
    });
    return true;
}

bool EspeakSpeech::speak(const QString &text, const QString &language)
{
    if (!m_thread) {
        return false;
    }
    m_lastNumber = m_thread->speak({text, language, m_rate, m_volume});
    return true;
}

void EspeakSpeech::stop()
{
    m_stoppedUpTo = m_lastNumber;
    if (m_thread) {
        m_thread->stop();
    }
}

void EspeakSpeech::onEnded(int number, SpeechEnd end)
{
    // One that ended just before it was stopped may arrive after that.
    if (number > m_stoppedUpTo && m_handler) {
        const Ended handler = m_handler; // it may set another
        handler(end);
    }
}

} // namespace mevo
