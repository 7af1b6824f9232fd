#pragma once

#include "service/PushFrame.h"

#include <QDialog>
#include <QNetworkProxy>
#include <QTimer>

#include <functional>
#include <optional>
#include <utility>

class QImage;
class QLabel;
class QNetworkAccessManager;
class QNetworkReply;

namespace mevo {
class NoticePageMaker;
class OwnWindows;
} // namespace mevo

/// A notice of the service: a picture or a page that slides up from the screen's lower right corner, stays a
/// while and fades, but not under the pointer. It never takes the focus, and deletes itself at its end.
class CADShowDlg : public QDialog
{
    Q_OBJECT

public:
    /// The cipher must outlive the window. Pictures are fetched through the proxy, where there is one.
    /// `pages` shows the page of a notice; without it the window shows the page's address. `desktop`, which
    /// must outlive the window, makes the slide cheap.
    explicit CADShowDlg(const WebCipher &cipher, const std::optional<QNetworkProxy> &proxy,
                        mevo::NoticePageMaker *(*pages)() = nullptr, QWidget *parent = nullptr,
                        mevo::OwnWindows *desktop = nullptr);

    /// Says where a notice that is ready comes to stand, as the y behind its last row; nothing while it is
    /// not its turn, and it asks again a little later.
    using Place = std::function<std::optional<int>(const CADShowDlg &notice)>;
    /// Without a place it stands at the bottom of the screen, at once. To be set before the notice is taken.
    void setPlace(Place place) { m_place = std::move(place); }
    /// Where it stands at the end of its slide; empty while it is not shown.
    QRect standing() const { return isVisible() ? QRect(x(), m_finalTop, width(), height()) : QRect(); }
    bool isPointerOver() const { return m_pointerIn; }
    /// Seconds since the end of its slide; they end with its stay.
    int stoodSeconds() const { return m_elapsed; }

    /// Between two questions for its place.
    static constexpr int askAgainMs = 500;

    int StaySeconds = 0; ///< how long it stands before it fades

Q_SIGNALS:
    /// The window is at its end, shown or not.
    void closed();
    /// The user wants this address opened; it is http or https.
    void linkWanted(const QUrl &address);

public Q_SLOTS:
    void onConnected() {}
    /// Takes the notice of a push frame. A frame that is none, and a picture that cannot be had, close the
    /// window without a sight of it.
    void onTextMessageReceived(QString message);
    /// One step of the slide.
    void myMove();
    /// One step of the fading.
    void myClose();
    /// One second of the stay.
    void myStay();
    void replyFinished_PIC(QNetworkReply *reply);

protected:
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void showPage();
    void showAddress();
    void findPicture();
    void fetchPicture();
    /// Decodes a picture and shows it; `then` hears whether its bytes are one that may be shown.
    void takePicture(const QByteArray &bytes, const std::function<void(bool shown)> &then);
    void showPicture(const QImage &picture);
    /// It is ready: it slides as soon as it is its turn.
    void startSlide();
    void slideTo(int bottom);
    void endSlide();
    void setOpacity(int tenths);
    void openLink(const QUrl &address);

    const WebCipher &m_cipher;
    std::optional<QNetworkProxy> m_proxy;
    mevo::NoticePageMaker *(*m_pages)();
    mevo::OwnWindows *m_desktop;
    Place m_place;
    mevo::PushNotice m_notice;
    QNetworkAccessManager *m_network = nullptr;
    QWidget *m_page = nullptr;
    QLabel *m_address = nullptr;
    QTimer m_slide, m_stay, m_fade;
    int m_elapsed = 0;  ///< seconds of the stay
    int m_opacity = 10; ///< tenths
    int m_top = 0;      ///< of the window, as the slide has it
    int m_finalTop = 0; ///< where the slide ends
    bool m_pointerIn = false;
    bool m_ended = false; ///< closed() has been said
};
