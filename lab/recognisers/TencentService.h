#pragma once

#include "services/LabHttpServer.h"

#include <QJsonObject>
#include <QStringList>

#include <functional>

namespace lab {

/// Tencent's sentence recognition, as strict as the real one about signature, clock and fields. English is
/// really recognised; for the other languages the texts are the ones that a test has set.
class TencentService : public QObject
{
    Q_OBJECT

public:
    using Note = std::function<void(const QJsonObject &)>;
    /// Recognises English speech and hands the words on.
    using Recogniser =
        std::function<void(const QByteArray &pcm, const std::function<void(const QString &)> &done)>;
    /// An error as the service names it; no code is no error.
    struct Error
    {
        QString code;
        QString message;
    };

    TencentService(QByteArray secretId, QByteArray secretKey, Recogniser recogniser, Note note,
                   QObject *parent = nullptr);

    void handle(const HttpRequest &request, const LabHttpServer::Reply &reply);

    /// Texts for the next requests, in order; the last one stays.
    void setTexts(const QStringList &texts) { m_texts = texts; }
    /// An error that the next `count` requests are answered with; -1 for all, 0 ends it. Without a message
    /// of its own it gets the service's.
    void setError(const Error &error, int count);
    /// Seconds by which the service's clock is ahead of this computer's.
    void setClockOffset(int seconds) { m_clockOffset = seconds; }

    /// What is wrong with a request's headers and signature.
    Error checkSignature(const HttpRequest &request) const;
    /// What is wrong with a body; fills the audio of the WAV file in it.
    static Error checkBody(const QJsonObject &body, QByteArray &pcm);

    static constexpr int ClockTolerance = 300; ///< seconds

private:
    void answer(const LabHttpServer::Reply &reply, QJsonObject note, const Error &error, const QString &text);

    QByteArray m_secretId;
    QByteArray m_secretKey;
    Recogniser m_recogniser;
    Note m_note;
    QStringList m_texts;
    Error m_error;
    int m_errorCount = 0;
    int m_clockOffset = 0;
};

} // namespace lab
