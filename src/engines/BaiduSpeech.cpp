#include "engines/BaiduSpeech.h"

#include "base/ApplicationFiles.h"
#include "base/LogText.h"
#include "base/SettingsFile.h"
#include "engines/BaiduErrors.h"
#include "engines/BaiduFastVariant.h"
#include "engines/BaiduRequest.h"
#include "engines/EngineSelection.h"
#include "service/ProxyChoice.h"
#include "service/RelayHttp.h"

#include <QDebug>
#include <QEventLoop>
#include <QPointer>
#include <QTimer>

#include <utility>

using mevo::BaiduRecovery;
using mevo::SettingsFile;

namespace Relay_Speech {

BaiduSpeech::BaiduSpeech(MainState &state, RecorderState &recorder, const mevo::SystemFacts &facts,
                         mevo::EngineHost &host, mevo::EngineEndpoints endpoints, QObject *parent)
    : QObject(parent)
    , m_state(state)
    , m_recorder(recorder)
    , m_facts(facts)
    , m_host(host)
    , m_endpoints(std::move(endpoints))
{
}

QPair<bool, QString> BaiduSpeech::finish(QBuffer *RelayBuffer, const mevo::SessionContext &session)
{
    // Our own reference: the recorder clears its buffer and may record again while we wait.
    const QByteArray pcm = RelayBuffer != nullptr ? RelayBuffer->data() : QByteArray();
    const QPointer<BaiduSpeech> alive(this);
    QPair<bool, QString> result;
    if (session.engine.tencent) {
        result = m_host.recogniseWithTencent(pcm, session);
    } else if (session.engine.baidu) {
        if (m_fetchingToken) {
            m_waiting.push_back({pcm, session});
            return result;
        }
        result = askBaidu(pcm, session);
    }
    if (!alive.isNull()) {
        emit sessionEnded(session.number);
    }
    return result;
}

/// False when this object has gone in the wait. One token is for all: what is said meanwhile would draw
/// another account, and be recognised above this wait, which ends no sooner than theirs.
bool BaiduSpeech::fetchToken()
{
    const QPointer<BaiduSpeech> alive(this);
    m_fetchingToken = true;
    m_host.loadCurrentBaiduCredentials();
    m_host.fetchBaiduToken();
    if (alive.isNull()) {
        return false;
    }
    m_fetchingToken = false;
    for (const Waiting &next : std::exchange(m_waiting, {})) { // none waits for the one before it
        QTimer::singleShot(0, this, [this, next] { sendToBaidu(next.pcm, next.session); });
    }
    m_host.loadBaiduTranslateCredentials();
    return true;
}

QPair<bool, QString> BaiduSpeech::askBaidu(const QByteArray &pcm, const mevo::SessionContext &session)
{
    if (m_state.BaiduAccessToken.isEmpty() && !fetchToken()) {
        return {false, QString()};
    }
    return sendToBaidu(pcm, session);
}

QPair<bool, QString> BaiduSpeech::sendToBaidu(const QByteArray &pcm, const mevo::SessionContext &session)
{
    const QUrl url = mevo::baiduSpeechUrl(m_endpoints, session.engine.baiduFast);
    const QByteArray body = mevo::baiduRequestBody({session.engine.baiduFast, session.engine.baiduLanguage,
                                                    m_state.BaiduAccessToken, m_facts.computerId(), pcm});
    mevo::writeRecording(mevo::appFile(QStringLiteral("test.pcm")), pcm);

    relay_NetWork::HTTP http;
    http.setProxy(mevo::chosenProxy(m_state));
    http.setCertificateChecks(mevo::checksCertificate(m_endpoints, url));
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));

    // The reply is taken where it comes in: a later session may wait above this one on the stack, and this
    // one's text must not wait for that.
    QEventLoop loop;
    QPair<bool, QString> result;
    bool ended = false;
    const auto take = [&](const QByteArray &raw) {
        result = takeReply(raw, session);
        ended = true;
        loop.quit();
    };
    connect(&http, &relay_NetWork::HTTP::finished, &loop, take);
    connect(&http, &relay_NetWork::HTTP::error, &loop, [&take] { take(QByteArray()); });
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    http.post(request, body, requestTimeoutMs);
    if (!ended) {
        loop.exec();
    }
    return result;
}

/// What Baidu has answered, empty on time-out and on any error of the network. `this` may be gone when it
/// returns.
QPair<bool, QString> BaiduSpeech::takeReply(const QByteArray &raw, const mevo::SessionContext &session)
{
    m_state.dayCounts.count(mevo::CountColumn::Baidu, session.receiver);
    m_host.ensureEngineTip();
    if (raw.isEmpty()) {
        onEmptyReply(session.engine.baiduFast);
        // Not when the wait for it ends: that of a later session may lie above, and its text would wait.
        emit sessionEnded(session.number);
        return {false, QString()};
    }

    mevo::BaiduFastVariant variant{m_state.FastEmptyReplies, m_state.FastGoodReplies};
    variant.goodReply();
    m_state.FastEmptyReplies = variant.emptyReplies;
    m_state.FastGoodReplies = variant.goodReplies;

    const QPointer<BaiduSpeech> alive(this);
    const mevo::BaiduReply reply = mevo::parseBaiduReply(raw);
    const bool recognised = reply.errNo == 0 && reply.text;
    if (recognised) {
        emit finishTrans(*reply.text + QStringLiteral("__over__"), session.number);
    } else if (reply.errNo == 0) {
        qWarning("Baidu: a reply of %d bytes holds no text", raw.size());
    }
    if (!alive.isNull()) {
        emit sessionEnded(
            session.number); // before what is done about an error, which may wait for the network
    }
    if (!alive.isNull() && reply.errNo != 0) {
        onError(reply);
    }
    return {recognised, recognised ? *reply.text : QString::fromUtf8(raw)};
}

void BaiduSpeech::onEmptyReply(bool fast)
{
    qWarning("Baidu: no reply from the %s variant", fast ? "fast" : "standard");
    if (!fast) {
        return;
    }
    mevo::BaiduFastVariant variant{m_state.FastEmptyReplies, m_state.FastGoodReplies};
    // The user may have chosen another language meanwhile, which stays.
    if (variant.emptyReply() && m_state.BaiDuNoStreamApi_FastVersion) {
        m_state.BaiDuNoStreamApi_FastVersion = false;
        m_state.BaiDuCurrentVoiceType = QStringLiteral("1537");
        SettingsFile().setValue(QStringLiteral("BaiDuCurrentVoiceType"), m_state.BaiDuCurrentVoiceType);
    }
    m_state.FastEmptyReplies = variant.emptyReplies;
    m_state.FastGoodReplies = variant.goodReplies;
}

void BaiduSpeech::onError(const mevo::BaiduReply &reply)
{
    const mevo::BaiduErrorRow &error = mevo::baiduError(reply.errNo, m_facts.isXpClass());
    const bool givesUpOnBaidu = error.recovery == BaiduRecovery::FallToXunFei ||
                                error.recovery == BaiduRecovery::NewAccount ||
                                error.recovery == BaiduRecovery::NewAccountFallToXunFei;
    if (givesUpOnBaidu && !m_recorder.BaiDuNoStreamApi) {
        qWarning("Baidu: error %d came after another engine was chosen and changes nothing", reply.errNo);
        return;
    }
    const QString message = mevo::baiduErrorMessage(error, reply);
    qWarning().noquote() << "Baidu: error" << reply.errNo << mevo::logText(reply.errMsg);
    m_host.showEngineTip(message, error.regardlessOfShowTipsDlg);

    switch (error.recovery) {
    case BaiduRecovery::None:
        break;
    case BaiduRecovery::SwapChannels:
        swapChannels();
        break;
    case BaiduRecovery::FallToXunFei:
        fallToXunFei();
        break;
    case BaiduRecovery::NewAccount:
    case BaiduRecovery::NewAccountFallToXunFei: {
        const QPointer<BaiduSpeech> alive(this);
        m_host.loadCurrentBaiduCredentials();
        m_host.fetchBaiduToken();
        if (!alive.isNull() && error.recovery == BaiduRecovery::NewAccountFallToXunFei &&
            m_recorder.BaiDuNoStreamApi) {
            fallToXunFei();
        }
        break;
    }
    }
}

void BaiduSpeech::swapChannels()
{
    // The stored choice stays as it is, so that the next start goes back to it.
    m_state.SimulateDoubleChannel = !m_state.SimulateDoubleChannel;
    SettingsFile().setValue(QStringLiteral("UseLeftChannelVoice"), 0);
    m_host.channelCountChanged();
}

void BaiduSpeech::fallToXunFei()
{
    const mevo::EngineChange change = mevo::fallToXunFei(m_recorder);
    {
        SettingsFile settings;
        for (const mevo::SettingWrite &write : change.writes) {
            settings.setValue(QLatin1String(write.key), write.value);
        }
    }
    m_host.buildAsrLanMenu(change.persistEngine, change.setupInputMethod);
}

} // namespace Relay_Speech
