#include "translation/Parser.h"

#include "engines/BaiduRequest.h"
#include "service/CountWrites.h"
#include "translation/TranslationAllowance.h"
#include "translation/TranslationReply.h"
#include "translation/TranslationRequest.h"

#include <QPointer>

#include <limits>

Parser::Parser(MainState &state, mevo::WebApi &api, mevo::TranslationHost &host,
               mevo::EngineEndpoints endpoints, QObject *parent)
    : QObject(parent)
    , m_state(state)
    , m_api(api)
    , m_host(host)
    , m_endpoints(std::move(endpoints))
    , m_url(mevo::translationAddress(m_endpoints))
{
    takeAccount();
}

void Parser::takeAccount()
{
    m_appid = m_state.BaiduTranslateAppId;
    m_secret = m_state.BaiduTranslateKey;
    m_accountChanges = m_state.ownAccountChanges;
}

QPair<bool, QString> Parser::request(const QString &text, const QString &from, const QString &to)
{
    if (m_appid.isEmpty() || m_accountChanges != m_state.ownAccountChanges) {
        takeAccount();
    }
    m_salt = drawSalt(0, std::numeric_limits<qint32>::max());
    const mevo::TranslationRequest request{m_appid, m_secret, m_salt, text, from, to};
    m_sign = mevo::translationSign(request);
    const QUrl url = QUrl::fromEncoded(m_url.toEncoded() + '?' + mevo::translationQuery(request, m_sign));

    const QPointer<Parser> alive(this);
    const int receiver = m_state.dayCounts.receiver();
    QString reply;
    m_api.BackendGet(url, requestTimeoutMs, reply, mevo::checksCertificate(m_endpoints, url));
    if (!alive.isNull()) {
        count(receiver);
    }
    return mevo::translationResult(reply, text);
}

void Parser::count(int receiver)
{
    const mevo::TranslationCount count = mevo::countTranslation(m_state, receiver);
    if (count.written) {
        m_api.WriteCount(mevo::countWrite(mevo::CountColumn::Translation, m_state));
    }
    if (count.limitReached) {
        const QString text =
            tr("已超出该接口每月限制使用次数(1万字符），请尝试重启软件或错开时间重启软件！(f001)(");
        m_host.translationLimitReached(tr("超出限量"), text + m_state.DongleID + QLatin1Char(')'));
    }
}
