#include "engines/XunFeiStream.h"

#include "base/LogText.h"
#include "engines/EngineSelection.h"
#include "engines/XunFeiFrames.h"
#include "engines/XunFeiHost.h"
#include "engines/XunFeiLateAnswer.h"
#include "engines/XunFeiSigning.h"

#include <QDebug>
#include <QPointer>
#include <QTcpSocket>
#include <QWebSocket>

#include <utility>

namespace mevo {

namespace {

enum FrameStatus { First = 0, Middle = 1, Last = 2 };

} // namespace

XunFeiStream::XunFeiStream(MainState &state, const Time &time, EngineEndpoints endpoints, XunFeiHost &host,
                           QObject *parent)
    : QObject(parent)
    , m_state(state)
    , m_time(time)
    , m_endpoints(std::move(endpoints))
    , m_host(host)
{
}

XunFeiStream::~XunFeiStream()
{
    closeSocket();
}

void XunFeiStream::ConnectXFWebApi()
{
    closeSocket();
    ++m_session;
    m_receiver = m_state.dayCounts.receiver();
    m_voiceType = xunFeiLanguageInForce(m_state);
    m_dynamic = m_host.dynamicCorrection();
    m_whole = m_endpoints.XunFeiWholeUtterance.value_or(m_dynamic);
    m_punctuation = m_state.AddPunctuationWhenEnd;
    m_fragments.clear();
    m_spoken = m_lastSent = false;
    useAccountOf(m_voiceType);
    const XunFeiAccount account{m_state.XunFeiAppId, m_state.XunFeiApiKey, m_state.XunFeiApiSecret};
    const QUrl url = xunFeiUrl(m_endpoints, account, xunFeiDate(m_time.now()), xunFeiDate(m_time.now()));

    m_state.XFWebSocket = new QWebSocket(QString(), QWebSocketProtocol::Version13);
    m_state.XFWebSocket->setMaxAllowedIncomingFrameSize(largestFrame);
    m_state.XFWebSocket->setMaxAllowedIncomingMessageSize(largestFrame);
    connect(m_state.XFWebSocket, &QWebSocket::connected, this, &XunFeiStream::onXFWebApiConnected);
    connect(m_state.XFWebSocket, &QWebSocket::disconnected, this, &XunFeiStream::onXFWebApiDisconnected);
    const auto failed = QOverload<QAbstractSocket::SocketError>::of(&QWebSocket::error);
    connect(m_state.XFWebSocket, failed, this, [this, failed] {
        qWarning().noquote() << "XunFei: connection:" << logText(m_state.XFWebSocket->errorString());
        disconnect(m_state.XFWebSocket, failed, this, nullptr); // a refused handshake says it twice
    });
    m_state.XFWebSocket->open(url);
}

void XunFeiStream::useAccountOf(const QString &voiceType)
{
    if (voiceType == QLatin1String("mandarin")) {
        return;
    }
    if (m_state.XunFeiMinorAppId.isEmpty()) {
        qWarning() << "XunFei: no account for other languages; the main one is used";
        return;
    }
    // Kept until accounts are loaded again.
    m_state.XunFeiAppId = m_state.XunFeiMinorAppId;
    m_state.XunFeiApiKey = m_state.XunFeiMinorApiKey;
    m_state.XunFeiApiSecret = m_state.XunFeiMinorApiSecret;
}

void XunFeiStream::onXFWebApiConnected()
{
    if (m_state.XFWebSocket == nullptr) {
        return;
    }
    connect(m_state.XFWebSocket, &QWebSocket::textMessageReceived, this,
            &XunFeiStream::onXFWebApiMessageReceived, Qt::UniqueConnection);
    connect(m_state.XFWebSocket, &QWebSocket::binaryMessageReceived, this, &XunFeiStream::refuseBinary,
            Qt::UniqueConnection);
    // The blocks are small and nothing answers them, so that TCP would hold each back until the one before
    // it is acknowledged: some 40 ms.
    if (auto *const transport = m_state.XFWebSocket->findChild<QTcpSocket *>()) {
        transport->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    } else {
        qWarning() << "XunFei: the socket's transport is not reached; blocks may be late";
    }
    m_state.XFWebSocketConnected = true;
}

void XunFeiStream::refuseBinary(const QByteArray &frame)
{
    qWarning("XunFei: a binary frame of %d bytes is not understood", frame.size());
    // The rest of them is passed over without a line.
    disconnect(m_state.XFWebSocket, &QWebSocket::binaryMessageReceived, this, nullptr);
}

void XunFeiStream::onXFWebApiDisconnected()
{
    if (m_state.XFWebSocketConnected) {
        qWarning() << "XunFei: the service has closed the connection";
    }
    m_state.XFWebSocketConnected = false;
    if (m_whole && m_state.XFWebSocket != nullptr) {
        endSession(m_session); // nothing can come any more
    }
}

void XunFeiStream::sendFrame(const QByteArray &block, int status)
{
    if (!m_state.XFWebSocketConnected || m_state.XFWebSocket == nullptr) {
        return;
    }
    QByteArray frame;
    switch (status) {
    case First:
        m_spoken = true;
        frame = xunFeiFirstFrame({m_state.XunFeiAppId, m_voiceType, m_punctuation, m_dynamic}, block);
        break;
    case Middle:
        frame = xunFeiMiddleFrame(block);
        break;
    case Last:
        m_lastSent = true;
        frame = xunFeiLastFrame();
        break;
    default:
        return;
    }
    m_state.XFWebSocket->sendTextMessage(QString::fromLatin1(frame));
    m_state.XFWebSocket->flush(); // the block leaves now, not when the event loop comes round
}

void XunFeiStream::close()
{
    ++m_session;
    closeAndHide();
}

void XunFeiStream::closeAndHide()
{
    if (m_state.XFWebSocket == nullptr) {
        return;
    }
    closeSocket();
    if (m_dynamic) {
        m_host.hidePartialText();
    }
}

void XunFeiStream::closeSocket()
{
    QWebSocket *const socket = std::exchange(m_state.XFWebSocket, nullptr);
    m_state.XFWebSocketConnected = false;
    if (socket == nullptr) {
        return;
    }
    // First of all: closing says "disconnected" on the spot, and messages may be waiting in its buffer.
    socket->disconnect(this);
    socket->close(QWebSocketProtocol::CloseCodeNormal, QString());
    socket->deleteLater(); // one of its own signals may have brought us here
}

void XunFeiStream::onXFWebApiMessageReceived(QString message)
{
    const int session = m_session;
    m_host.xunFeiAnswered();
    m_state.XFResultText.clear();
    XunFeiMessage result;
    if (!parseXunFeiMessage(message, result)) {
        qWarning("XunFei: a message of %d characters is not understood", message.size());
        endSession(session);
        return;
    }
    if (result.code != 0) {
        qWarning().noquote() << "XunFei: error" << result.code << logText(result.message);
        if (result.code == XunFeiMessage::NotLicensed) {
            m_state.XunFeiWebApiCurrentVoiceType =
                languageAfterXunFeiRefusal(m_state.XunFeiWebApiCurrentVoiceType);
            m_host.showXunFeiLanguage();
        }
        endSession(session);
        return;
    }
    m_state.XFResultText = result.text;
    if (result.text.isEmpty() && std::exchange(m_wordlessSession, session) != session) { // once a session
        qInfo("XunFei: a message without words, status %d", result.status);
    }
    const QPointer<XunFeiStream> alive(this);
    takeResult(result, session);
    if (alive.isNull() || isOver(session)) {
        return;
    }
    if (result.status == XunFeiMessage::Last) {
        m_state.XFResultText.clear();
    }
    if (!m_whole || result.status == XunFeiMessage::Last) {
        m_host.closeXunFeiRecording();
    }
}

void XunFeiStream::takeResult(const XunFeiMessage &result, int session)
{
    if (m_dynamic) {
        applyXunFeiResult(m_state.XFPartialList, result);
    } else {
        m_fragments.append(result.text);
    }
    const QString utterance = gathered();
    if (m_state.XFPartialList.size() + m_fragments.size() > mostResults ||
        utterance.size() > longestUtterance) {
        qWarning() << "XunFei: the results of this session are too many";
        endSession(session);
        return;
    }
    const bool last = result.status == XunFeiMessage::Last;
    if (result.status == XunFeiMessage::Middle || last) {
        m_state.dayCounts.count(CountColumn::XunFei, m_receiver);
    }
    if (last) {
        closeAndHide();
    } else if (m_dynamic && result.status == XunFeiMessage::Middle && !utterance.isEmpty()) {
        m_host.showPartialText(utterance);
    }
    if ((last || !m_whole) && handOn(last && m_dynamic) && !isOver(session) && last) {
        m_host.flushXunFeiCount();
    }
}

/// All that this session's results say so far.
QString XunFeiStream::gathered() const
{
    return m_dynamic ? m_state.XFPartialList.join(QString()) : m_fragments.join(QString());
}

/// Hands the gathered text on, once. False when this object has gone meanwhile.
bool XunFeiStream::handOn(bool alsoEmpty)
{
    const QString text = gathered();
    (m_dynamic ? m_state.XFPartialList : m_fragments).clear();
    if (text.isEmpty() && !alsoEmpty) {
        return true;
    }
    const QPointer<XunFeiStream> alive(this);
    m_dynamic ? m_host.showXunFeiText(text) : m_host.handleXunFeiText(text);
    return !alive.isNull();
}

void XunFeiStream::finishEarly()
{
    ++m_session;
    closeAndHide();
    handOn(false);
}

void XunFeiStream::letGo(const std::function<void(const QString &text, bool words)> &done)
{
    ++m_session;
    const bool words = !m_dynamic;
    const QString text = gathered();
    if (!text.isEmpty() || !m_spoken || !m_state.XFWebSocketConnected || m_state.XFWebSocket == nullptr) {
        if (m_state.XFWebSocket != nullptr && text.isEmpty()) {
            qWarning() << "XunFei: the next press came before the connection; the sentence before it is lost";
        }
        (m_dynamic ? m_state.XFPartialList : m_fragments).clear();
        closeAndHide();
        done(text, words);
        return;
    }
    if (!m_lastSent) {
        sendFrame({}, Last); // the speech is over, and no block will come any more that says so
    }
    QWebSocket *const socket = std::exchange(m_state.XFWebSocket, nullptr);
    m_state.XFWebSocketConnected = false;
    socket->disconnect(this);
    new XunFeiLateAnswer(
        socket, m_dynamic, m_whole, m_state.dayCounts, m_receiver,
        [done, words](const QString &late) { done(late, words); }, this);
}

void XunFeiStream::giveUp()
{
    if (!gathered().isEmpty()) {
        qWarning() << "XunFei: no last result; what was understood so far is taken";
        finishEarly();
    }
}

/// Ends a session that has no last result. What it has gathered until then is not lost.
void XunFeiStream::endSession(int session)
{
    closeAndHide();
    if (handOn(false) && !isOver(session)) {
        m_host.closeXunFeiRecording();
    }
}

} // namespace mevo
