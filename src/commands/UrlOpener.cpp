#include "commands/UrlOpener.h"

#include "base/LogText.h"
#include "commands/LocalProgram.h"

#include <QDebug>
#include <QDesktopServices>
#include <QStandardPaths>

namespace mevo {

namespace {

/// Plain desktops may be without xdg-open, which is what Qt looks for first; GLib's own tool is there
/// wherever a GTK program is.
bool openWithGio(const QUrl &url, Processes &processes)
{
    const QString gio = QStandardPaths::findExecutable(QStringLiteral("gio"));
    return url.isValid() && !gio.isEmpty() &&
           processes.startDetached(gio, {QStringLiteral("open"), QString::fromLatin1(url.toEncoded())});
}

} // namespace

bool openUrl(const QUrl &url, Processes &processes)
{
    const QString name =
        logText(url.toDisplayString(QUrl::RemoveQuery | QUrl::RemoveFragment | QUrl::RemoveUserInfo));
    if (url.isLocalFile()) {
        QStringList command = commandOfLocalFile(url.toLocalFile());
        if (!command.isEmpty() && processes.startDetached(command.takeFirst(), command)) {
            qInfo().noquote() << "Commands: started" << name;
            return true;
        }
    }
    if (QDesktopServices::openUrl(url) || openWithGio(url, processes)) {
        qInfo().noquote() << "Commands: handed to the desktop:" << name;
        return true;
    }
    qWarning().noquote() << "Commands: nothing here opens" << name;
    return false;
}

} // namespace mevo
