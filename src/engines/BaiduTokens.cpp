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
    return fetch(m_state.BaiduClientId, m_state.BaiduClientSecret, QStringLiteral("LastBDTK"),
                 &EngineState::BaiduAccessToken);
}

bool BaiduTokens::FetchBaiduTtsToken()
{
    return fetch(m_state.BaiduTtsClientId, m_state.BaiduTtsClientSecret, QStringLiteral("LastBDTTSTK"),
                 &EngineState::BaiduTtsAccessToken);
}

bool BaiduTokens::fetch(const QString &clientId, const QString &clientSecret, const QString &cacheKey,
                        QString EngineState::*token)
{
    const QString kept = SettingsFile().value(cacheKey).toString();
    const QPointer<BaiduTokens> alive(this);
    QString reply;
    const int code = m_api.BackendPost(baiduTokenUrl(m_endpoints), requestTimeoutMs,
                                       baiduTokenBody(clientId, clientSecret), reply);
    if (alive.isNull()) {
        return false;
    }
    QString fetched = code == 200 ? baiduTokenOf(reply) : QString();
    if (!fetched.isEmpty()) {
        if (fetched.size() <= LongestKeptToken) {
            SettingsFile().setValue(cacheKey, encipherField(m_cipher, fetched));
        }
    } else {
        qWarning("Baidu: no token for %s (%d)", qPrintable(cacheKey), code);
        if (!kept.isEmpty()) {
            fetched = decipherField(m_cipher, kept).value_or(QString());
        }
    }
    m_state.*token = fetched;
    return !fetched.isEmpty();
}

} // namespace mevo
