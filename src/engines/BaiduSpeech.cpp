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
#include <QPointer>

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

QPair<bool, QString> BaiduSpeech::finish(QBuffer *RelayBuffer)
{
    // Our own reference: the recorder clears its buffer and may record again while we wait.
    const QByteArray pcm = RelayBuffer != nullptr ? RelayBuffer->data() : QByteArray();
    if (m_recorder.UseTXASRApi) {
        return m_host.recogniseWithTencent(pcm);
    }
    if (!m_recorder.BaiDuNoStreamApi) {
        return {false, QString()};
    }

    // The menu may change the engine while a request is open; this one ends with what it began with.
    const bool fast = m_state.BaiDuNoStreamApi_FastVersion;
    const QString voiceType = m_state.BaiDuCurrentVoiceType;
    const QPointer<BaiduSpeech> alive(this);
    if (m_state.BaiduAccessToken.isEmpty()) {
        m_host.loadCurrentBaiduCredentials();
        m_host.fetchBaiduToken();
        if (alive.isNull()) {
            return {false, QString()};
        }
        m_host.loadBaiduTranslateCredentials();
    }
    const QByteArray raw = send(pcm, fast, voiceType);
    if (alive.isNull()) {
        return {false, QString()};
    }
    ++m_state.BDSR1DUsedQuantity;
    m_host.ensureEngineTip();
    if (raw.isEmpty()) {
        onEmptyReply(fast);
        return {false, QString()};
    }

    mevo::BaiduFastVariant variant{m_state.FastEmptyReplies, m_state.FastGoodReplies};
    variant.goodReply();
    m_state.FastEmptyReplies = variant.emptyReplies;
    m_state.FastGoodReplies = variant.goodReplies;

    const mevo::BaiduReply reply = mevo::parseBaiduReply(raw);
    if (reply.errNo != 0) {
        onError(reply);
    } else if (reply.text) {
        emit finishTrans(*reply.text + QStringLiteral("__over__"));
        return {true, *reply.text};
    } else {
        qWarning("Baidu: a reply of %d bytes holds no text", raw.size());
    }
    return {false, QString::fromUtf8(raw)};
}

/// The reply, empty on time-out and on any error of the network. `this` may be gone when it returns.
QByteArray BaiduSpeech::send(const QByteArray &pcm, bool fast, const QString &voiceType)
{
    const QUrl url = mevo::baiduSpeechUrl(m_endpoints, fast);
    const QByteArray body =
        mevo::baiduRequestBody({fast, voiceType, m_state.BaiduAccessToken, m_facts.computerId(), pcm});
    mevo::writeRecording(mevo::appFile(QStringLiteral("test.pcm")), pcm);

    relay_NetWork::HTTP http;
    http.setProxy(mevo::chosenProxy(m_state));
    http.setCertificateChecks(mevo::checksCertificate(m_endpoints, url));
    QNetworkRequest request(url);
    request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArrayLiteral("application/json"));
    QByteArray reply;
    http.post(request, body, reply, requestTimeoutMs);
    return reply;
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
        if (!alive.isNull() && error.recovery == BaiduRecovery::NewAccountFallToXunFei) {
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
