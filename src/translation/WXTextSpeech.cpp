#include "translation/WXTextSpeech.h"

#include "translation/ReadingLanguage.h"

#include <QDebug>

namespace {

constexpr int messageMs = 3000;
const QLatin1String endOfStream("EndStream(int,QVariant)");

} // namespace

WXTextSpeech::WXTextSpeech(mevo::Speech &speech, mevo::Notifications &notifications, QObject *parent)
    : QObject(parent)
    , m_speech(speech)
    , m_notifications(notifications)
{
}

WXTextSpeech::~WXTextSpeech()
{
    if (Ready) {
        m_speech.whenStreamEnds({});
        m_speech.stop();
    }
}

bool WXTextSpeech::Init()
{
    if (!Ready) {
        Ready = m_speech.open();
        if (Ready) {
            m_speech.whenStreamEnds([this](mevo::SpeechEnd end) { onEnded(end); });
        } else {
            qInfo() << "Reading aloud: this system has no voice";
        }
    }
    return Ready;
}

bool WXTextSpeech::Speak(const QString &text, const QString &code)
{
    if (!Ready) {
        return false;
    }
    const mevo::ReadingLanguage language = mevo::readingLanguage(text, code);
    if (language.unreadable) {
        m_notifications.message(QString(), tr("系统语音无法朗读日文中的汉字！"),
                                mevo::MessageIcon::Information, messageMs);
        return false;
    }
    if (language.voice.isEmpty() || !m_speech.speak(text, language.voice)) {
        return false;
    }
    Speaking = true;
    return true;
}

void WXTextSpeech::SetRate(int rate)
{
    if (Ready) {
        m_speech.setRate(rate);
    }
}

void WXTextSpeech::SetVolume(int volume)
{
    if (Ready) {
        m_speech.setVolume(volume);
    }
}

void WXTextSpeech::Stop()
{
    if (Ready) {
        m_speech.stop();
        Speaking = false;
    }
}

void WXTextSpeech::dealeventSlot(const QString &name, int, void *)
{
    if (name == endOfStream) {
        Speaking = false;
        emit speakCompleteSignal();
    }
}

void WXTextSpeech::onEnded(mevo::SpeechEnd end)
{
    if (end == mevo::SpeechEnd::NoVoice) {
        m_notifications.message(QString(), tr("系统没有这种语言的语音！"), mevo::MessageIcon::Information,
                                messageMs);
    } else if (end == mevo::SpeechEnd::NoSound) {
        m_notifications.message(QString(), tr("无法播放朗读的声音，请检查声音设备！"),
                                mevo::MessageIcon::Information, messageMs);
    }
    dealeventSlot(endOfStream, 2, nullptr);
}
