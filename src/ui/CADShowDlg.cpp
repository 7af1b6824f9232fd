#include "ui/CADShowDlg.h"

#include "base/LogText.h"
#include "base/RunAside.h"
#include "base/WebPage.h"
#include "platform/OwnWindows.h"
#include "service/NoticePictures.h"
#include "service/QReplyTimeout.h"
#include "ui/NoticePage.h"

#include <QBuffer>
#include <QCloseEvent>
#include <QDebug>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QLabel>
#include <QMouseEvent>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>

namespace {

constexpr int slideStepMs = 5;
constexpr int slideStep = 10; ///< pixels
constexpr int stayStepMs = 1000;
constexpr int fadeStepMs = 200;
constexpr int pageLoadMs = 5000; ///< what a page has before it slides in
constexpr int fetchMs = 60000;
constexpr int mostPixels = 4 << 20; ///< a larger picture takes too much memory while it is decoded
const QSize pageSize(400, 300);
constexpr int addressWidth = 320;
constexpr int addressMargin = 14;

/// Largest size of a notice on a screen of this size.
QSize largestNotice(const QSize &screen)
{
    return {screen.width() / 2, screen.height() * 2 / 3};
}

QRect availableGeometry()
{
    return QGuiApplication::primaryScreen()->availableGeometry();
}

/// A picture from its bytes, at the size and with the pixels that it is shown with. Null, with a log line,
/// when they are none that may be shown. In any thread.
QImage decoded(const QByteArray &bytes, const QSize &room, qreal ratio)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    static const QList<QByteArray> formats{"png", "jpeg", "gif", "bmp"};
    const QSize size = reader.size();
    if (!formats.contains(reader.format()) || size.isEmpty() ||
        qint64(size.width()) * size.height() > mostPixels) {
        qWarning("Notice: what came is no picture, or too large a one");
        return {};
    }
    QImage picture = reader.read();
    if (picture.isNull()) {
        qWarning().noquote() << "Notice: the picture cannot be read:" << mevo::logText(reader.errorString());
        return {};
    }
    const bool fits = picture.width() <= room.width() && picture.height() <= room.height();
    const QSize shown = fits ? picture.size() : picture.size().scaled(room, Qt::KeepAspectRatio);
    if (shown * ratio != picture.size()) { // smoothly, which painting it would not do
        picture = picture.scaled(shown * ratio, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    picture.setDevicePixelRatio(ratio);
    return picture;
}

} // namespace

CADShowDlg::CADShowDlg(const WebCipher &cipher, const std::optional<QNetworkProxy> &proxy,
                       mevo::NoticePageMaker *(*pages)(), QWidget *parent, mevo::OwnWindows *desktop)
    // Past the window manager: it would place the window on the screen at once, and have a word with every
    // step of the slide.
    : QDialog(parent, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                          Qt::WindowDoesNotAcceptFocus | Qt::BypassWindowManagerHint)
    , m_cipher(cipher)
    , m_proxy(proxy)
    , m_pages(pages)
    , m_desktop(desktop)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(tr("灵犀听写信息提示框"));
    setObjectName(QStringLiteral("CADShowDlg"));
    setStyleSheet(QStringLiteral("#CADShowDlg { background: #10314a; } QLabel { color: #ffffff; }"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSizeConstraint(QLayout::SetNoConstraint);

    m_slide.setTimerType(Qt::PreciseTimer);
    m_slide.setInterval(slideStepMs);
    connect(&m_slide, &QTimer::timeout, this, &CADShowDlg::myMove);
    m_stay.setInterval(stayStepMs);
    connect(&m_stay, &QTimer::timeout, this, &CADShowDlg::myStay);
    m_fade.setInterval(fadeStepMs);
    connect(&m_fade, &QTimer::timeout, this, &CADShowDlg::myClose);
}

void CADShowDlg::onTextMessageReceived(QString message)
{
    const std::optional<mevo::PushNotice> notice = mevo::readPushFrame(m_cipher, message);
    if (!notice) {
        close();
        return;
    }
    m_notice = *notice;
    StaySeconds = m_notice.staySeconds;
    if (m_notice.kind == mevo::PushNotice::Kind::Page) {
        qInfo("Notice: a page");
        showPage();
        QTimer::singleShot(pageLoadMs, this, &CADShowDlg::startSlide);
    } else {
        qInfo("Notice: a picture");
        findPicture();
    }
}

void CADShowDlg::showPage()
{
    mevo::NoticePageMaker *const maker = m_pages != nullptr ? m_pages() : nullptr;
    if (maker == nullptr) {
        showAddress();
        return;
    }
    resize(pageSize.boundedTo(largestNotice(availableGeometry().size())));
    const mevo::NoticePageCalls calls{[this](const QUrl &address) { openLink(address); },
                                      [this] { openLink(m_notice.link); },
                                      [this] {
                                          if (m_page == nullptr) {
                                              return; // it has been said before
                                          }
                                          m_page->hide();
                                          m_page->deleteLater();
                                          m_page = nullptr;
                                          showAddress();
                                      }};
    m_page = maker->makePage(m_notice.content, calls, this);
    layout()->addWidget(m_page);
}

void CADShowDlg::showAddress()
{
    if (m_address != nullptr) {
        return;
    }
    layout()->setContentsMargins(addressMargin, addressMargin, addressMargin, addressMargin);
    setStyleSheet(styleSheet() + QStringLiteral("#CADShowDlg { border: 1px solid #00a2e8; }"
                                                "#address { color: #7fd0ff; text-decoration: underline; }"));
    auto *text = new QLabel(tr("您有一条新消息，点击查看："), this);
    text->setWordWrap(true);
    m_address = new QLabel(this);
    m_address->setObjectName(QStringLiteral("address"));
    m_address->setTextFormat(Qt::PlainText);
    const QString address = m_notice.content.toDisplayString(QUrl::RemoveUserInfo);
    m_address->setText(
        m_address->fontMetrics().elidedText(address, Qt::ElideMiddle, addressWidth - 2 * addressMargin));
    for (QLabel *label : {text, m_address}) {
        label->setTextInteractionFlags(Qt::NoTextInteraction);
        layout()->addWidget(label);
    }
    const QPoint corner = geometry().bottomRight();
    resize(addressWidth, layout()->heightForWidth(addressWidth));
    if (isVisible()) { // the page has failed in the middle of the slide, or after it
        m_top = m_finalTop = corner.y() + 1 - height();
        move(corner.x() + 1 - width(), m_top);
    }
}

void CADShowDlg::findPicture()
{
    const auto kept = mevo::keptNoticePicture(m_notice.pictureName, m_notice.pictureSize);
    if (!kept) {
        fetchPicture();
        return;
    }
    takePicture(*kept, [this](bool shown) { shown ? startSlide() : fetchPicture(); });
}

void CADShowDlg::fetchPicture()
{
    m_network = new QNetworkAccessManager(this);
    if (m_proxy) {
        m_network->setProxy(*m_proxy);
    }
    connect(m_network, &QNetworkAccessManager::finished, this, &CADShowDlg::replyFinished_PIC);
    QNetworkRequest request(m_notice.content);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(5);
    request.setRawHeader("Accept-Encoding", "identity"); // else a small reply may unfold to a huge one
    QNetworkReply *const reply = m_network->get(request);
    new QReplyTimeout(reply, fetchMs);
    connect(reply, &QNetworkReply::readyRead, this, [this, reply] {
        if (reply->bytesAvailable() > m_notice.pictureSize) {
            reply->abort();
        }
    });
}

void CADShowDlg::replyFinished_PIC(QNetworkReply *reply)
{
    reply->deleteLater();
    if (m_ended) {
        return;
    }
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const QByteArray bytes = reply->readAll();
    const bool whole = reply->error() == QNetworkReply::NoError && status == 200;
    if (!whole || bytes.size() != m_notice.pictureSize) {
        qWarning().noquote() << "Notice: the picture did not come as announced:" << status
                             << mevo::logText(reply->errorString());
        close();
        return;
    }
    takePicture(bytes, [this, bytes](bool shown) {
        if (!shown) {
            close();
            return;
        }
        mevo::keepNoticePicture(m_notice.pictureName, bytes);
        startSlide();
    });
}

void CADShowDlg::takePicture(const QByteArray &bytes, const std::function<void(bool)> &then)
{
    const auto picture = std::make_shared<QImage>();
    const QSize room = largestNotice(availableGeometry().size());
    mevo::runAside(
        this, [picture, bytes, room, ratio = devicePixelRatioF()] { *picture = decoded(bytes, room, ratio); },
        [this, picture, then] {
            if (m_ended) {
                return;
            }
            if (!picture->isNull()) {
                showPicture(*picture);
            }
            then(!picture->isNull());
        });
}

void CADShowDlg::showPicture(const QImage &picture)
{
    auto *label = new QLabel(this);
    label->setAccessibleName(windowTitle());
    label->setPixmap(QPixmap::fromImage(picture));
    layout()->addWidget(label);
    resize(picture.size() / picture.devicePixelRatio());
}

void CADShowDlg::startSlide()
{
    if (m_ended) {
        return;
    }
    // The picture may have taken a minute to come: what held for the notice then need not hold now.
    const std::optional<int> bottom =
        m_place ? m_place(*this) : std::optional<int>(availableGeometry().bottom() + 1);
    if (bottom) {
        slideTo(*bottom);
        return;
    }
    QTimer::singleShot(askAgainMs, this, &CADShowDlg::startSlide);
}

void CADShowDlg::slideTo(int bottom)
{
    const QRect room = availableGeometry();
    m_top = room.bottom() + 1;
    m_finalTop = bottom - height();
    move(room.right() + 1 - width(), m_top);
    show();
    raise();
    if (m_desktop != nullptr) {
        const bool still = m_notice.kind == mevo::PushNotice::Kind::Picture; // a page may move
        m_desktop->beginSlide(winId(), still ? grab().toImage() : QImage());
    }
    m_slide.start();
}

void CADShowDlg::endSlide()
{
    if (m_slide.isActive() && m_desktop != nullptr) {
        m_desktop->endSlide(winId());
    }
    m_slide.stop();
}

void CADShowDlg::myMove()
{
    // By a count of its own: y() falls back when the display server's word on an earlier step comes in.
    m_top = std::max(m_top - slideStep, m_finalTop);
    if (m_top == m_finalTop) {
        endSlide();
        m_stay.start();
    }
    move(x(), m_top);
}

void CADShowDlg::myStay()
{
    if (++m_elapsed >= StaySeconds) {
        m_stay.stop();
        m_fade.start();
    }
}

void CADShowDlg::myClose()
{
    if (m_pointerIn) {
        setOpacity(10);
        return;
    }
    setOpacity(m_opacity - 1);
    if (m_opacity == 0) {
        close();
    }
}

void CADShowDlg::setOpacity(int tenths)
{
    m_opacity = std::max(tenths, 0);
    setWindowOpacity(m_opacity / 10.0);
}

void CADShowDlg::enterEvent(QEvent *event)
{
    QDialog::enterEvent(event);
    setCursor(Qt::PointingHandCursor);
    m_pointerIn = true;
    if (m_fade.isActive()) {
        setOpacity(10);
    }
}

void CADShowDlg::leaveEvent(QEvent *event)
{
    QDialog::leaveEvent(event);
    m_pointerIn = false;
}

void CADShowDlg::mousePressEvent(QMouseEvent *event)
{
    event->accept();
    // An address that is shown stands for itself, and for the link where there is none.
    const bool wantsAddress =
        m_address != nullptr && (m_notice.link.isEmpty() || m_address->geometry().contains(event->pos()));
    openLink(wantsAddress ? m_notice.content : m_notice.link);
}

void CADShowDlg::mouseDoubleClickEvent(QMouseEvent *event)
{
    event->accept(); // its first press has opened the link
}

void CADShowDlg::openLink(const QUrl &address)
{
    if (mevo::isWebPage(address)) {
        Q_EMIT linkWanted(address);
    }
}

void CADShowDlg::closeEvent(QCloseEvent *event)
{
    endSlide();
    m_stay.stop();
    m_fade.stop();
    QDialog::closeEvent(event);
    if (!m_ended) {
        m_ended = true;
        Q_EMIT closed();
    }
}
