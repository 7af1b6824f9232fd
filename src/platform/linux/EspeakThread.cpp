#include "platform/linux/EspeakThread.h"

#include <QDebug>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <deque>
#include <mutex>

namespace mevo {

namespace {

// Values of the library's public header.
constexpr int outputSynchronous = 2;
constexpr int doNotExit = 0x8000; ///< without its data the library would end the program
constexpr int positionByCharacter = 1;
constexpr unsigned charactersUtf8 = 1;
constexpr int parameterRate = 1;
constexpr int parameterVolume = 2;
constexpr int normalWordsPerMinute = 175;
constexpr int slowest = 80;
constexpr int fastest = 450;

constexpr int chunkMs = 50; ///< how much is synthesised at a time, and how late a stop may be
constexpr auto longestWait = std::chrono::seconds(2);

/// Ten steps are a factor of three.
int wordsPerMinute(int rate)
{
    const double words = normalWordsPerMinute * std::pow(3.0, std::clamp(rate, -10, 10) / 10.0);
    return std::clamp(int(std::lround(words)), slowest, fastest);
}

} // namespace

struct EspeakThread::Shared
{
    Shared(const EspeakLibrary &functions, MakeSpeechSound make, Ended handler)
        : library(functions)
        , makeSound(std::move(make))
        , ended(std::move(handler))
    {
    }

    const EspeakLibrary library;
    const MakeSpeechSound makeSound;
    const Ended ended;

    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::pair<int, EspeakText>> waiting;
    int lastNumber = 0;
    bool leaving = false;
    bool finished = false;
    std::atomic<int> stoppedUpTo{0}; ///< texts up to this number are not to be heard
};

namespace {

/// The text that this thread speaks.
struct Utterance
{
    SpeechSound *sound;
    const std::atomic<int> *stoppedUpTo;
    int number;
    bool failed = false;

    bool stopped() const { return stoppedUpTo->load() >= number; }
};

thread_local Utterance *current = nullptr;

/// A long text is synthesised while it is heard: the sound takes each piece only when it has room.
int onSamples(short *samples, int count, espeak_EVENT *)
{
    if (current->stopped() || current->failed) {
        return 1;
    }
    if (samples != nullptr && count > 0 && !current->sound->write(samples, count)) {
        current->failed = true;
        return 1;
    }
    return 0;
}

/// Makes the voice ready for a language. False when there is none.
bool chooseVoice(const EspeakLibrary &library, const QString &language)
{
    // The plain voice of Mandarin reads the syllables that it has made of the characters as English words.
    const bool mandarin = language == QLatin1String("cmn");
    return library.setVoiceByName(mandarin ? "cmn-latn-pinyin" : qPrintable(language)) == 0;
}

SpeechEnd say(const EspeakLibrary &library, const MakeSpeechSound &makeSound, int sampleRate,
              const EspeakText &spoken, const std::atomic<int> &stoppedUpTo, int number)
{
    if (!chooseVoice(library, spoken.language)) {
        qWarning().noquote() << "Speech: no voice for" << spoken.language;
        return SpeechEnd::NoVoice;
    }
    const std::unique_ptr<SpeechSound> sound = makeSound(sampleRate);
    if (!sound) {
        return SpeechEnd::NoSound;
    }
    library.setParameter(parameterRate, wordsPerMinute(spoken.rate), 0);
    library.setParameter(parameterVolume, std::clamp(spoken.volume, 0, 100), 0);
    Utterance utterance{sound.get(), &stoppedUpTo, number};
    current = &utterance;
    const QByteArray utf8 = QString(spoken.text).remove(QChar(0)).toUtf8();
    const int result = library.synth(utf8.constData(), std::size_t(utf8.size()) + 1, 0, positionByCharacter,
                                     0, charactersUtf8, nullptr, nullptr);
    current = nullptr;
    if (utterance.stopped()) {
        sound->drop();
        return SpeechEnd::Spoken;
    }
    if (result != 0) {
        qWarning("Speech: the synthesis failed with %d", result);
    }
    return utterance.failed || !sound->drain() ? SpeechEnd::NoSound : SpeechEnd::Spoken;
}

} // namespace

EspeakThread::EspeakThread(const EspeakLibrary &library, MakeSpeechSound makeSound, Ended ended)
    : m_shared(std::make_shared<Shared>(library, std::move(makeSound), std::move(ended)))
{
}

EspeakThread::~EspeakThread()
{
    if (!m_thread.joinable()) {
        return;
    }
    bool finished = false;
    {
        std::unique_lock<std::mutex> lock(m_shared->mutex);
        m_shared->leaving = true;
        m_shared->stoppedUpTo = m_shared->lastNumber;
        m_shared->changed.notify_all();
        finished = m_shared->changed.wait_for(lock, longestWait, [this] { return m_shared->finished; });
    }
    if (finished) {
        m_thread.join();
    } else {
        qWarning("Speech: the sound server does not answer; its thread is left behind");
        m_thread.detach();
    }
}

int EspeakThread::speak(const EspeakText &text)
{
    int number = 0;
    {
        const std::lock_guard<std::mutex> lock(m_shared->mutex);
        number = ++m_shared->lastNumber;
        m_shared->waiting.emplace_back(number, text);
    }
    m_shared->changed.notify_all();
    if (!m_thread.joinable()) {
        m_thread = std::thread([shared = m_shared] { run(shared); });
    }
    return number;
}

void EspeakThread::stop()
{
    const std::lock_guard<std::mutex> lock(m_shared->mutex);
    m_shared->stoppedUpTo = m_shared->lastNumber;
    m_shared->waiting.clear();
}

void EspeakThread::run(const std::shared_ptr<Shared> &shared)
{
    const EspeakLibrary &library = shared->library;
    const int sampleRate = library.initialize(outputSynchronous, chunkMs, nullptr, doNotExit);
    if (sampleRate > 0) {
        library.setSynthCallback(onSamples);
    } else {
        qWarning("Speech: libespeak-ng cannot be used (%d)", sampleRate);
    }
    std::unique_lock<std::mutex> lock(shared->mutex);
    while (!shared->leaving) {
        if (shared->waiting.empty()) {
            shared->changed.wait(lock);
            continue;
        }
        const std::pair<int, EspeakText> next = shared->waiting.front();
        shared->waiting.pop_front();
        lock.unlock();
        const SpeechEnd end = sampleRate > 0 ? say(library, shared->makeSound, sampleRate, next.second,
                                                   shared->stoppedUpTo, next.first)
                                             : SpeechEnd::NoVoice;
        lock.lock();
        if (shared->stoppedUpTo < next.first) {
            shared->ended(next.first, end); // under the lock: the destructor comes before or after it
        }
    }
    shared->finished = true;
    shared->changed.notify_all();
}

} // namespace mevo
