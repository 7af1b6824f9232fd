#include "engines/XunFeiStream.h"

#include "base/LogText.h"
#include "engines/EngineSelection.h"
#include "engines/XunFeiFrames.h"
#include "engines/XunFeiHost.h"
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
    useAccountOf(m_state.XunFeiWebApiCurrentVoiceType);
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
    if (m_endpoints.XunFeiWholeUtterance && m_state.XFWebSocket != nullptr) {
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
        frame = xunFeiFirstFrame({m_state.XunFeiAppId, m_state.XunFeiWebApiCurrentVoiceType,
                                  m_state.AddPunctuationWhenEnd, m_host.dynamicCorrection()},
                                 block);
        break;
    case Middle:
        frame = xunFeiMiddleFrame(block);
        break;
    case Last:
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
    if (m_host.dynamicCorrection()) {
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
    if (result.text.isEmpty()) {
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
    if (!m_endpoints.XunFeiWholeUtterance || result.status == XunFeiMessage::Last) {
        m_host.closeXunFeiRecording();
    }
}

void XunFeiStream::takeResult(const XunFeiMessage &result, int session)
{
    QString utterance;
    if (!m_host.dynamicCorrection()) {
        if (!result.text.isEmpty()) {
            const QPointer<XunFeiStream> alive(this);
            m_host.handleXunFeiText(result.text);
            if (alive.isNull() || isOver(session)) {
                return;
            }
        }
    } else {
        applyXunFeiResult(m_state.XFPartialList, result);
        utterance = m_state.XFPartialList.join(QString());
        if (m_state.XFPartialList.size() > mostResults || utterance.size() > longestUtterance) {
            qWarning() << "XunFei: the results of this session are too many";
            endSession(session);
            return;
        }
        if (result.status == XunFeiMessage::Middle && !utterance.isEmpty()) {
            m_host.showPartialText(utterance);
        }
    }
    if (result.status == XunFeiMessage::Middle) {
        ++m_state.XFSR1DUsedQuantity;
    } else if (result.status == XunFeiMessage::Last) {
        finishUtterance(utterance, session);
    }
}

void XunFeiStream::finishUtterance(const QString &text, int session)
{
    closeAndHide();
    ++m_state.XFSR1DUsedQuantity;
    if (m_host.dynamicCorrection()) {
        const QPointer<XunFeiStream> alive(this);
        m_host.showXunFeiText(text);
        if (alive.isNull() || isOver(session)) {
            return;
        }
    }
    m_host.flushXunFeiCount();
}

/// Ends a session that has no last result. What whole utterances have gathered until then is not lost.
void XunFeiStream::endSession(int session)
{
    const QString gathered = m_endpoints.XunFeiWholeUtterance && m_host.dynamicCorrection()
                                 ? m_state.XFPartialList.join(QString())
                                 : QString();
    const QPointer<XunFeiStream> alive(this);
    if (!gathered.isEmpty()) {
        m_state.XFPartialList.clear();
        closeAndHide();
        m_host.showXunFeiText(gathered);
    }
    if (!alive.isNull() && !isOver(session)) {
        m_host.closeXunFeiRecording();
    }
}

} // namespace mevo
