#include "engines/BaiduTokens.h"

#include "base/SettingsFile.h"
#include "engines/BaiduRequest.h"
#include "engines/BaiduToken.h"

#include <QDebug>
#include <QPointer>

namespace mevo {

namespace {

/// Longer tokens do not fit the three digits of an enciphered field.
constexpr int LongestKeptToken = 999;

} // namespace

BaiduTokens::BaiduTokens(MainState &state, WebApi &api, const WebCipher &cipher, EngineEndpoints endpoints,
                         QObject *parent)
    : QObject(parent)
    , m_state(state)
    , m_api(api)
    , m_cipher(cipher)
    , m_endpoints(std::move(endpoints))
{
}

bool BaiduTokens::FetchBaiduToken()
{
    static constexpr Kind speech{&EngineState::BaiduClientId, &EngineState::BaiduClientSecret,
                                 &EngineState::BaiduAccessToken, "LastBDTK"};
    return fetch(speech);
}

bool BaiduTokens::FetchBaiduTtsToken()
{
    static constexpr Kind synthesis{&EngineState::BaiduTtsClientId, &EngineState::BaiduTtsClientSecret,
                                    &EngineState::BaiduTtsAccessToken, "LastBDTTSTK"};
    return fetch(synthesis);
}

bool BaiduTokens::fetch(const Kind &kind)
{
    const QString cacheKey = QLatin1String(kind.cacheKey);
    const QString kept = SettingsFile().value(cacheKey).toString();
    const QString clientId = m_state.*kind.clientId;
    const QString before = m_state.*kind.token;
    const QPointer<BaiduTokens> alive(this);
    QString reply;
    const int code = m_api.BackendPost(baiduTokenUrl(m_endpoints), requestTimeoutMs,
                                       baiduTokenBody(clientId, m_state.*kind.clientSecret), reply);
    if (alive.isNull()) {
        return false;
    }
    QString &token = m_state.*kind.token;
    if (m_state.*kind.clientId != clientId) {
        return !token.isEmpty(); // whoever drew the other account has asked for its token
    }
    QString fetched = code == 200 ? baiduTokenOf(reply) : QString();
    if (!fetched.isEmpty()) {
        if (fetched.size() <= LongestKeptToken) {
            SettingsFile().setValue(cacheKey, encipherField(m_cipher, fetched));
        }
    } else {
        qWarning("Baidu: no token for %s (%d)", kind.cacheKey, code);
        if (token != before && !token.isEmpty()) {
            return true; // another fetch has got one during this wait
        }
        if (!kept.isEmpty()) {
            fetched = decipherField(m_cipher, kept).value_or(QString());
        }
    }
    token = fetched;
    return !fetched.isEmpty();
}

} // namespace mevo
