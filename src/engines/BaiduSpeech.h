#pragma once

#include "base/ServiceEndpoints.h"
#include "engines/BaiduReply.h"
#include "engines/EngineHost.h"
#include "platform/SystemServices.h"
#include "state/MainState.h"
#include "state/RecorderState.h"
#include "state/SessionContext.h"

#include <QBuffer>
#include <QObject>
#include <QPair>
#include <QString>

#include <deque>

namespace Relay_Speech {

/// Turns a whole recording into text with Baidu's short speech service, or hands it to Tencent.
/// GUI thread; a request runs a nested event loop, in which this object may be deleted.
class BaiduSpeech : public QObject
{
    Q_OBJECT

public:
    /// All but `endpoints` must outlive this object.
    BaiduSpeech(MainState &state, RecorderState &recorder, const mevo::SystemFacts &facts,
                mevo::EngineHost &host, mevo::EngineEndpoints endpoints, QObject *parent = nullptr);

    int requestTimeoutMs = 5000;

    /// A sentence waits for a token, in an event loop: whoever waits above it keeps it from going on.
    bool waitsForToken() const { return m_fetchingToken; }

signals:
    /// A recognised text, ending in "__over__", of the session of this number.
    void finishTrans(QString text, int session);
    /// Nothing more comes from this session.
    void sessionEnded(int session);
    void connected();
    void readyRead();

public slots:
    /// Always true: the token is fetched when a recording needs it.
    bool refreshToken() { return true; }

    /// Recognises the samples in `RelayBuffer` with the engine of the session, and waits. True with the text
    /// when it was recognised, else false with the raw reply. The text also goes out by finishTrans(), as
    /// soon as the reply is there; an error is shown, and what can be done about it is done. While an earlier
    /// one waits for a token it only takes the samples: they are recognised once that token is there.
    QPair<bool, QString> finish(QBuffer *RelayBuffer, const mevo::SessionContext &session);

private:
    bool fetchToken();
    QPair<bool, QString> askBaidu(const QByteArray &pcm, const mevo::SessionContext &session);
    QPair<bool, QString> sendToBaidu(const QByteArray &pcm, const mevo::SessionContext &session);
    QPair<bool, QString> takeReply(const QByteArray &raw, const mevo::SessionContext &session);
    void onEmptyReply(bool fast);
    void onError(const mevo::BaiduReply &reply);
    void swapChannels();
    void fallToXunFei();

    MainState &m_state;
    RecorderState &m_recorder;
    const mevo::SystemFacts &m_facts;
    mevo::EngineHost &m_host;
    mevo::EngineEndpoints m_endpoints;
    struct Waiting
    {
        QByteArray pcm;
        mevo::SessionContext session;
    };
    bool m_fetchingToken = false;
    std::deque<Waiting> m_waiting; ///< for the token that is being fetched, in the order of their presses
};

} // namespace Relay_Speech
