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
    /// All but `endpoints` must outlive this object.
    BaiduTokens(MainState &state, WebApi &api, const WebCipher &cipher, EngineEndpoints endpoints,
                QObject *parent = nullptr);

    /// Fetches a token for the account drawn last into `BaiduAccessToken`, or takes the kept one. False,
    /// with the member empty, when there is neither.
    bool FetchBaiduToken();
    /// The same for speech synthesis and `BaiduTtsAccessToken`.
    bool FetchBaiduTtsToken();

    int requestTimeoutMs = 5000;

private:
    bool fetch(const QString &clientId, const QString &clientSecret, const QString &cacheKey,
               QString EngineState::*token);

    MainState &m_state;
    WebApi &m_api;
    const WebCipher &m_cipher;
    EngineEndpoints m_endpoints;
};

} // namespace mevo
