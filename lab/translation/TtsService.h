#pragma once

#include "services/LabHttpServer.h"

#include <QJsonObject>
#include <QString>
#include <QUrlQuery>

#include <functional>

namespace lab {

/// Baidu's speech synthesis: checks token and fields as the real one does, speaks by espeak-ng, and answers
/// MP3 made by lame.
class TtsService : public QObject
{
    Q_OBJECT

public:
    using Note = std::function<void(const QJsonObject &)>;
    /// Whether a token has been given out.
    using KnowsToken = std::function<bool(const QString &token)>;

    TtsService(KnowsToken knowsToken, Note note, QObject *parent = nullptr);

    static constexpr char Path[] = "/text2audio";
    void handle(const HttpRequest &request, const LabHttpServer::Reply &reply);

    /// Orders of a test: `error` a number that the next `count` requests are answered with; 1 without a
    /// count, -1 for all. False without one.
    bool control(const QUrlQuery &query);
    void reset() { m_error = m_count = 0; }

    /// What is wrong with a request, as the service numbers it; 0 when nothing is.
    int check(const QUrlQuery &query) const;

private:
    void speak(const QUrlQuery &query, const std::function<void(const QByteArray &mp3)> &done);

    KnowsToken m_knowsToken;
    Note m_note;
    int m_error = 0;
    int m_count = 0;
};

} // namespace lab
