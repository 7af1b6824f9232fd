#include "noticepage/NoticePageView.h"

#include <QObject>
#include <QQuickWindow>
#include <QSGRendererInterface>

namespace mevo {

/// The plug-in that shows the pages of notices by Qt WebEngine.
class NoticePagePlugin : public QObject, public NoticePageMaker
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "mevoinput.NoticePageMaker/1")
    Q_INTERFACES(mevo::NoticePageMaker)

public:
    NoticePagePlugin()
    {
        // A small still page needs no graphics card, and the program around it uses none.
        QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
    }

    QWidget *makePage(const QUrl &address, const NoticePageCalls &calls, QWidget *parent) override
    {
        auto *const view = new NoticePageView(calls, parent);
        view->load(address);
        return view;
    }
};

} // namespace mevo

#include "NoticePagePlugin.moc"
