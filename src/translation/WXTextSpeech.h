#pragma once

#include "platform/Notifications.h"
#include "platform/Speech.h"

#include <QObject>
#include <QString>

/// Reads texts aloud by the system's voice, one after another. GUI thread only.
class WXTextSpeech : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive this object, at whose end the voice falls silent.
    WXTextSpeech(mevo::Speech &speech, mevo::Notifications &notifications, QObject *parent = nullptr);
    ~WXTextSpeech() override;

    /// Makes the voice ready, once. False when the system has none; reading then does nothing.
    bool Init();
    bool isReady() const { return Ready; }
    bool isSpeaking() const { return Speaking; }

    /// Speaks `text`, whose language has the translation service's `code`, after those before it, and returns
    /// at once. False when there is no voice, nothing to read, or nothing that the voice can read, which a
    /// message tells.
    bool Speak(const QString &text, const QString &code = QStringLiteral("auto"));
    /// -10 to 10 and 0 to 100, of the texts from now on.
    void SetRate(int rate);
    void SetVolume(int volume);
    /// Ends what is spoken and drops what waits.
    void Stop();

public slots:
    /// An event of the voice; "EndStream(int,QVariant)" is the end of a text, others mean nothing.
    void dealeventSlot(const QString &name, int arc, void *argv);

signals:
    void speakCompleteSignal();

private:
    void onEnded(mevo::SpeechEnd end);

    mevo::Speech &m_speech;
    mevo::Notifications &m_notifications;
    bool Ready = false;    ///< the voice can speak
    bool Speaking = false; ///< from a text given to its end
};
