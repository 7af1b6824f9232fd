#pragma once

#include <QUrl>
#include <QtPlugin>

#include <functional>

class QWidget;

namespace mevo {

/// What the page of a notice tells the window around it.
struct NoticePageCalls
{
    std::function<void(const QUrl &address)> linkWanted; ///< a link of the page was pressed
    std::function<void()> pressed;                       ///< the page was pressed beside its links
    std::function<void()> failed;                        ///< the page cannot be shown
};

/// Makes widgets that show a page of the web. It is a plug-in of its own: what it needs is far larger than
/// the program, and most users never see such a notice.
class NoticePageMaker
{
public:
    virtual ~NoticePageMaker() = default;
    /// Loads a page, http or https, and shows it; the widget belongs to `parent`.
    virtual QWidget *makePage(const QUrl &address, const NoticePageCalls &calls, QWidget *parent) = 0;
};

/// The plug-in, loaded at the first call; null, with one log line, where it is not installed.
NoticePageMaker *noticePageMaker();

} // namespace mevo

Q_DECLARE_INTERFACE(mevo::NoticePageMaker, "mevoinput.NoticePageMaker/1")
