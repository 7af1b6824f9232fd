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

/// More notices than this are not open at once: a newer one waits until one goes or yields.
constexpr int mostNotices = 5;
constexpr int mostWaitingNotices = 50;
constexpr int noticePauseMs = 500;

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
    if (m_waitingNotices.size() > mostWaitingNotices) {
        qWarning("Push: too many notices wait, the oldest one is dropped");
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
    while (!m_waitingNotices.isEmpty()) {
        if (isNoTimeForNotices() || !hasRoomForNotice()) {
            m_noticesLater.start(noticePauseMs);
            return;
        }
        showNotice(m_waitingNotices.takeFirst());
    }
}

/// Not when so many are open that a newer one has to wait.
bool MainWindow::hasRoomForNotice()
{
    m_openNotices.removeAll(QPointer<CADShowDlg>());
    if (m_openNotices.size() < mostNotices) {
        return true;
    }
    CADShowDlg *const oldest = noticeThatYields();
    if (oldest == nullptr) {
        return false;
    }
    m_openNotices.removeAll(QPointer<CADShowDlg>(oldest));
    oldest->close();
    return true;
}

CADShowDlg *MainWindow::noticeThatYields() const
{
    QVector<mevo::OpenNotice> notices;
    for (const QPointer<CADShowDlg> &notice : m_openNotices) {
        notices.append(notice.isNull() ? mevo::OpenNotice()
                                       : mevo::OpenNotice{!notice->standing().isEmpty(),
                                                          notice->isPointerOver(), notice->stoodSeconds()});
    }
    const int index = mevo::noticeThatYields(notices);
    return index < 0 ? nullptr : m_openNotices[index].data();
}

bool MainWindow::isNoTimeForNotices() const
{
    return Recording || isTyping() || ExitInProgress || m_leaving;
}

std::optional<int> MainWindow::placeOfNotice(const CADShowDlg &notice)
{
    if (isNoTimeForNotices() || isLeaving()) {
        return std::nullopt;
    }
    QVector<QRect> standing;
    for (const QPointer<CADShowDlg> &other : qAsConst(m_openNotices)) {
        if (!other.isNull() && other != &notice && !other->standing().isEmpty()) {
            standing.append(other->standing());
        }
    }
    const auto bottom =
        mevo::noticeBottom(QGuiApplication::primaryScreen()->availableGeometry(), notice.height(), standing);
    CADShowDlg *const oldest = bottom ? nullptr : noticeThatYields();
    if (oldest != nullptr) {
        oldest->close(); // and there may be room at the next look
    }
    return bottom;
}

void MainWindow::showNotice(const QString &frame)
{
    auto *const notice = new CADShowDlg(*m_cipher, mevo::chosenProxy(*this), mevo::noticePageMaker, this,
                                        m_platform.ownWindows.get());
    m_openNotices.append(notice);
    notice->setPlace([this](const CADShowDlg &ready) { return placeOfNotice(ready); });
    connect(notice, &CADShowDlg::linkWanted, this,
            [this](const QUrl &address) { openWebPage(QString::fromLatin1(address.toEncoded())); });
    notice->onTextMessageReceived(frame);
}
