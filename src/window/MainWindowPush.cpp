// The notices that the service pushes: the socket that they come by, and their windows.

#include "window/MainWindow.h"

#include "service/ProxyChoice.h"
#include "service/PushChannel.h"
#include "service/PushFrame.h"
#include "ui/CADShowDlg.h"
#include "ui/NoticePage.h"
#include "ui/NoticePlace.h"

#include <QDebug>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <QWebSocket>

#include <utility>

namespace {

/// More notices than this are not open at once: a newer one closes the oldest.
constexpr int mostNotices = 5;
constexpr int noticePauseMs = 500;
/// For room on the screen; then the oldest one that stands gives way.
constexpr int longestNoticeWaitMs = 60000;

} // namespace

void MainWindow::openPushSocket()
{
    if (!BackendReachable || isLeaving()) {
        return;
    }
    const QUrl address(PushSocketUrl);
    if (address.scheme() != QLatin1String("ws") && address.scheme() != QLatin1String("wss")) {
        qInfo("Push: no address of a web socket, no notices");
        return;
    }
    if (PushSocket == nullptr) {
        PushSocket = new QWebSocket(QString(), QWebSocketProtocol::Version13, this);
        PushSocket->setMaxAllowedIncomingFrameSize(mevo::longestPushFrame);
        PushSocket->setMaxAllowedIncomingMessageSize(mevo::longestPushFrame);
        connect(PushSocket, &QWebSocket::connected, this, &MainWindow::onOrvWebSocketConnected);
        m_push = std::make_unique<mevo::PushChannel>(*PushSocket);
    }
    if (const auto proxy = mevo::chosenProxy(*this)) {
        PushSocket->setProxy(*proxy);
    }
    m_push->setOnline(IsOnline);
    m_push->open(address);
}

void MainWindow::pushNetworkChanged()
{
    if (m_push) {
        m_push->setOnline(IsOnline);
    }
}

void MainWindow::keepNoticesBelow()
{
    const auto notices = findChildren<CADShowDlg *>(QString(), Qt::FindDirectChildrenOnly);
    for (CADShowDlg *notice : notices) {
        if (notice->isVisible()) {
            m_platform.windowSystem->stackBelow(notice->winId(), winId());
        }
    }
}

void MainWindow::closePushSocket()
{
    m_push.reset();
    if (PushSocket != nullptr) {
        PushSocket->disconnect(this);
        PushSocket->deleteLater(); // its message may be what has ended the program
        PushSocket = nullptr;
    }
    const auto notices = findChildren<CADShowDlg *>();
    for (CADShowDlg *notice : notices) {
        notice->close();
    }
}

void MainWindow::onOrvWebSocketConnected()
{
    connect(PushSocket, &QWebSocket::textMessageReceived, this,
            &MainWindow::onOrvWebSocketTextMessageReceived, Qt::UniqueConnection);
    PushSocket->sendTextMessage(QStringLiteral("Hello, world! connected!"));
}

void MainWindow::onOrvWebSocketTextMessageReceived(QString message)
{
    m_waitingNotices.append(message);
    if (m_waitingNotices.size() > mostNotices) {
        m_waitingNotices.removeFirst();
    }
    showNotices();
}

void MainWindow::showNotices()
{
    if (m_waitingNotices.isEmpty() || !m_cipher || isLeaving()) {
        return;
    }
    // A picture or the web engine may hold the program for a moment, and somebody is speaking or a text is on
    // its way.
    if (isNoTimeForNotices()) {
        m_noticesLater.start(noticePauseMs);
        return;
    }
    for (const QString &message : std::exchange(m_waitingNotices, {})) {
        showNotice(message);
    }
}

bool MainWindow::isNoTimeForNotices() const
{
    return Recording || isTyping() || ExitInProgress || m_leaving;
}

std::optional<int> MainWindow::placeOfNotice(const CADShowDlg &notice, int waitedMs)
{
    if (isNoTimeForNotices() || isLeaving()) {
        return std::nullopt;
    }
    QVector<QRect> standing;
    CADShowDlg *oldest = nullptr;
    for (const QPointer<CADShowDlg> &other : qAsConst(m_openNotices)) {
        if (other.isNull() || other == &notice || other->standing().isEmpty()) {
            continue;
        }
        standing.append(other->standing());
        if (oldest == nullptr && !other->isPointerOver()) {
            oldest = other;
        }
    }
    const auto bottom =
        mevo::noticeBottom(QGuiApplication::primaryScreen()->availableGeometry(), notice.height(), standing);
    if (!bottom && waitedMs >= longestNoticeWaitMs && oldest != nullptr) {
        oldest->close(); // and there may be room at the next look
    }
    return bottom;
}

void MainWindow::showNotice(const QString &frame)
{
    m_openNotices.removeAll(QPointer<CADShowDlg>());
    while (m_openNotices.size() >= mostNotices) {
        if (CADShowDlg *const oldest = m_openNotices.takeFirst()) {
            oldest->close();
        }
    }
    auto *const notice = new CADShowDlg(*m_cipher, mevo::chosenProxy(*this), mevo::noticePageMaker, this,
                                        m_platform.ownWindows.get());
    m_openNotices.append(notice);
    notice->setPlace(
        [this](const CADShowDlg &ready, int waitedMs) { return placeOfNotice(ready, waitedMs); });
    connect(notice, &CADShowDlg::linkWanted, this,
            [this](const QUrl &address) { openWebPage(QString::fromLatin1(address.toEncoded())); });
    notice->onTextMessageReceived(frame);
}
