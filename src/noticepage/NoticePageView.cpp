#include "noticepage/NoticePageView.h"

#include "base/WebPage.h"

#include <QChildEvent>
#include <QDebug>
#include <QMouseEvent>
#include <QPointer>
#include <QWebEngineDownloadItem>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineSettings>

#include <utility>

namespace mevo {

namespace {

/// Takes the address of a window that is not opened.
class LinkCatcher : public QWebEnginePage
{
public:
    LinkCatcher(QWebEngineProfile *profile, NoticePageCalls calls, QObject *parent)
        : QWebEnginePage(profile, parent)
        , m_calls(std::move(calls))
    {
    }

protected:
    bool acceptNavigationRequest(const QUrl &address, NavigationType, bool) override
    {
        if (isWebPage(address)) {
            m_calls.linkWanted(address);
            deleteLater();
        }
        return false;
    }

private:
    NoticePageCalls m_calls;
};

} // namespace

NoticeWebPage::NoticeWebPage(QWebEngineProfile *profile, NoticePageCalls calls, QObject *parent)
    : QWebEnginePage(profile, parent)
    , m_calls(std::move(calls))
{
    const std::pair<QWebEngineSettings::WebAttribute, bool> attributes[] = {
        {QWebEngineSettings::JavascriptCanOpenWindows, false},
        {QWebEngineSettings::JavascriptCanAccessClipboard, false},
        {QWebEngineSettings::LocalStorageEnabled, false},
        {QWebEngineSettings::PluginsEnabled, false},
        {QWebEngineSettings::ScreenCaptureEnabled, false},
        {QWebEngineSettings::AutoLoadIconsForPage, false},
        {QWebEngineSettings::FocusOnNavigationEnabled, false},
        {QWebEngineSettings::PlaybackRequiresUserGesture, true},
        {QWebEngineSettings::ShowScrollBars, true},
    };
    for (const auto &[attribute, on] : attributes) {
        settings()->setAttribute(attribute, on);
    }
    setAudioMuted(true);
    connect(this, &QWebEnginePage::featurePermissionRequested, this,
            [this](const QUrl &origin, QWebEnginePage::Feature feature) {
                setFeaturePermission(origin, feature, PermissionDeniedByUser);
            });
    connect(this, &QWebEnginePage::loadFinished, this, &NoticeWebPage::loaded);
    connect(this, &QWebEnginePage::renderProcessTerminated, this, [this] {
        qWarning("Notice: the page's process has ended");
        m_loaded = false;
        loaded(false);
    });
}

void NoticeWebPage::loaded(bool ok)
{
    if (m_loaded) {
        return; // a link that was not followed says it too
    }
    m_loaded = true;
    if (!ok) {
        qWarning("Notice: the page does not come");
        m_calls.failed();
    }
}

bool NoticeWebPage::acceptNavigationRequest(const QUrl &address, NavigationType type, bool isMainFrame)
{
    if (!isMainFrame) {
        return address.scheme() != QLatin1String("file");
    }
    if (type == NavigationTypeLinkClicked) {
        m_calls.linkWanted(address);
        return false;
    }
    return !m_loaded && type != NavigationTypeFormSubmitted && isWebPage(address);
}

QWebEnginePage *NoticeWebPage::createWindow(WebWindowType)
{
    return new LinkCatcher(profile(), m_calls, this);
}

QStringList NoticeWebPage::chooseFiles(FileSelectionMode, const QStringList &, const QStringList &)
{
    return {};
}

void NoticeWebPage::javaScriptAlert(const QUrl &, const QString &) {}

bool NoticeWebPage::javaScriptConfirm(const QUrl &, const QString &)
{
    return false;
}

bool NoticeWebPage::javaScriptPrompt(const QUrl &, const QString &, const QString &, QString *)
{
    return false;
}

void NoticeWebPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString &, int,
                                             const QString &)
{
}

NoticePageView::NoticePageView(const NoticePageCalls &calls, QWidget *parent)
    : QWebEngineView(parent)
    , m_calls(calls)
{
    setFocusPolicy(Qt::NoFocus);
    setContextMenuPolicy(Qt::NoContextMenu);
    setAcceptDrops(false);
    auto *const profile = new QWebEngineProfile(this); // without a name it keeps nothing
    connect(profile, &QWebEngineProfile::downloadRequested, profile,
            [](QWebEngineDownloadItem *download) { download->cancel(); });
    m_page = new NoticeWebPage(profile, calls, this);
    setPage(m_page);
}

NoticePageView::~NoticePageView()
{
    delete m_page; // before its profile
}

bool NoticePageView::event(QEvent *event)
{
    // The widget that has the mouse comes and goes with the page's process.
    if (event->type() == QEvent::ChildPolished || event->type() == QEvent::ChildAdded) {
        QObject *const child = static_cast<QChildEvent *>(event)->child();
        if (auto *const widget = qobject_cast<QWidget *>(child)) {
            widget->setFocusPolicy(Qt::NoFocus);
        }
        child->installEventFilter(this);
    }
    return QWebEngineView::event(event);
}

bool NoticePageView::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonPress && m_page != nullptr) {
        const QPoint at = static_cast<QMouseEvent *>(event)->pos();
        const QPointer<NoticePageView> alive(this);
        m_page->runJavaScript(
            QStringLiteral("(function() { const e = document.elementFromPoint(%1, %2);"
                           " return e !== null && e.closest('a[href], button, input, select') !== null; })()")
                .arg(at.x())
                .arg(at.y()),
            QWebEngineScript::ApplicationWorld, [alive](const QVariant &onControl) {
                if (alive && !onControl.toBool()) {
                    alive->m_calls.pressed();
                }
            });
    }
    return QWebEngineView::eventFilter(watched, event);
}

} // namespace mevo
