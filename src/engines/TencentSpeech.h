#pragma once

#include "base/ServiceEndpoints.h"
#include "engines/EngineHost.h"
#include "engines/RandomInRange.h"
#include "engines/TencentReply.h"
#include "platform/Processes.h"
#include "platform/SystemServices.h"
#include "state/MainState.h"
#include "state/SessionContext.h"

#include <QByteArray>
#include <QPair>
#include <QString>

#include <functional>

namespace mevo {

/// Turns a whole recording into text with Tencent's sentence recognition. GUI thread, which it blocks until
/// the service has answered.
class TencentSpeech
{
public:
    /// Takes a recognised text, which ends in "__over__", of the session of this number; called before the
    /// transfer is over.
    using OnText = std::function<void(const QString &text, int session)>;

    /// The references must outlive this object.
    TencentSpeech(MainState &state, EngineHost &host, const Time &time, Processes &processes,
                  EngineEndpoints endpoints, OnText onText, DrawNumber draw = RandomInRange);

    /// Sends the samples of a session in the language of its press. False when the transfer failed, which an
    /// error of the service makes it do; the text as well, where there was one.
    QPair<bool, QString> recognise(const QByteArray &pcm, const SessionContext &session);

    /// What a reply may have in all; a transfer beyond it is ended.
    static constexpr int MaxReplyBytes = 1024 * 1024;

private:
    void onError(const TencentReply &reply);

    MainState &m_state;
    EngineHost &m_host;
    const Time &m_time;
    Processes &m_processes;
    EngineEndpoints m_endpoints;
    OnText m_onText;
    DrawNumber m_draw;
};

} // namespace mevo
