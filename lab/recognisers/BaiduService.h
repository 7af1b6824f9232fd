#pragma once

#include "services/LabHttpServer.h"

#include <QJsonObject>
#include <QSet>
#include <QStringList>
#include <QThreadPool>

#include <memory>

namespace lab {

class SpeechDecoder;

/// Baidu's token endpoint and its short speech service, as strict as the real ones. English is really
/// recognised; for the Chinese languages the texts are the ones that a test has set.
class BaiduService : public QObject
{
    Q_OBJECT

public:
    using Note = std::function<void(const QJsonObject &)>;

    BaiduService(QString clientId, QString clientSecret, Note note, QObject *parent = nullptr);
    ~BaiduService() override;

    void handleToken(const HttpRequest &request, const LabHttpServer::Reply &reply);
    void handleSpeech(const HttpRequest &request, const LabHttpServer::Reply &reply);

    /// Whether the token endpoint has given this token out.
    bool knowsToken(const QString &token) const { return m_tokens.contains(token); }

    /// Recognises English, away from the thread that answers everybody; `done` is called on that one.
    void recognise(const QByteArray &pcm, const std::function<void(const QString &)> &done);

    /// Texts for the next Chinese requests, in order; the last one stays.
    void setTexts(const QStringList &texts) { m_texts = texts; }
    /// An error number that the next `count` speech requests are answered with; -1 for all, 0 ends it.
    void setError(int number, int count);

    /// What is wrong with a request, as the service numbers it; 0 when nothing is.
    static int checkSpeech(const QJsonObject &request, bool fast, const QSet<QString> &tokens,
                           QByteArray &pcm);

private:
    void answer(const LabHttpServer::Reply &reply, const QJsonObject &note, int error, const QString &text);

    QString m_clientId;
    QString m_clientSecret;
    Note m_note;
    QSet<QString> m_tokens;
    QStringList m_texts;
    int m_error = 0;
    int m_errorCount = 0;
    QThreadPool m_worker;
    std::shared_ptr<SpeechDecoder> m_decoder;
};

} // namespace lab
