#pragma once

#include "base/ServiceEndpoints.h"
#include "service/WebApi.h"
#include "service/WebCipher.h"
#include "state/MainState.h"

#include <QObject>

namespace mevo {

/// The access tokens of Baidu's speech recognition and speech synthesis. A token lives for the run; the
/// last one is kept enciphered in the settings file and used when no new one can be had, however old it
/// is. GUI thread; a fetch runs a nested event loop.
class BaiduTokens : public QObject
{
    Q_OBJECT

public:
    /// All but `endpoints` must outlive this object, which may itself end during a fetch.
    BaiduTokens(MainState &state, WebApi &api, const WebCipher &cipher, EngineEndpoints endpoints,
                QObject *parent = nullptr);

    /// Fetches a token for the account drawn last into `BaiduAccessToken`, or takes the kept one. False,
    /// with the member empty, when there is neither. What another fetch has got during the wait stays where
    /// this one gets none. When another account is drawn during the wait, the
    /// answer belongs to nobody any more and changes nothing; the result is whether the member has a token.
    bool FetchBaiduToken();
    /// The same for speech synthesis and `BaiduTtsAccessToken`.
    bool FetchBaiduTtsToken();

    int requestTimeoutMs = 5000;

private:
    /// Where one kind of token comes from and goes to.
    struct Kind
    {
        QString EngineState::*clientId;
        QString EngineState::*clientSecret;
        QString EngineState::*token;
        const char *cacheKey;
    };
    bool fetch(const Kind &kind);

    MainState &m_state;
    WebApi &m_api;
    const WebCipher &m_cipher;
    EngineEndpoints m_endpoints;
};

} // namespace mevo
