#pragma once

#include "ui/NoticePage.h"

#include <QWebEnginePage>
#include <QWebEngineView>

class QWebEngineProfile;

namespace mevo {

/// The page of a notice: it may show itself and run its scripts, and nothing else. It keeps nothing, opens
/// no window, asks for nothing and leads nowhere: what it links to is for the user's browser.
class NoticeWebPage : public QWebEnginePage
{
    Q_OBJECT

public:
    NoticeWebPage(QWebEngineProfile *profile, NoticePageCalls calls, QObject *parent);

protected:
    bool acceptNavigationRequest(const QUrl &address, NavigationType type, bool isMainFrame) override;
    /// A link that wants a window of its own gets a page that only hands its address on.
    QWebEnginePage *createWindow(WebWindowType type) override;
    QStringList chooseFiles(FileSelectionMode mode, const QStringList &old,
                            const QStringList &types) override;
    void javaScriptAlert(const QUrl &origin, const QString &message) override;
    bool javaScriptConfirm(const QUrl &origin, const QString &message) override;
    bool javaScriptPrompt(const QUrl &origin, const QString &message, const QString &preset,
                          QString *result) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString &message, int line,
                                  const QString &source) override;

private:
    void loaded(bool ok);

    NoticePageCalls m_calls;
    bool m_loaded = false;
};

/// The view of such a page. It never takes the focus, and tells presses beside the page's links.
class NoticePageView : public QWebEngineView
{
    Q_OBJECT

public:
    NoticePageView(const NoticePageCalls &calls, QWidget *parent);
    ~NoticePageView() override;

protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    NoticePageCalls m_calls;
    NoticeWebPage *m_page = nullptr;
};

} // namespace mevo
