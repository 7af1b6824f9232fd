#include "ui/NoticePage.h"

#include "base/LogText.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QPluginLoader>

namespace mevo {

namespace {

const QString pluginFile = QStringLiteral("libmevo-notice-page.so");

/// Beside the program, as a portable folder has it, or in the library folder of an installation.
QString pluginPath()
{
    const QDir program(QCoreApplication::applicationDirPath());
    for (const char *folder : {".", "../lib/mevoinput"}) {
        const QString path = program.filePath(QLatin1String(folder) + QLatin1Char('/') + pluginFile);
        if (QFileInfo(path).isFile()) {
            return path;
        }
    }
    return {};
}

NoticePageMaker *loadMaker()
{
    const QString path = pluginPath();
    if (path.isEmpty()) {
        qInfo("Notice: pages are shown as their address: no plug-in is installed for them");
        return nullptr;
    }
    QPluginLoader loader(path); // what it has loaded stays until the program ends
    auto *const maker = qobject_cast<NoticePageMaker *>(loader.instance());
    if (maker == nullptr) {
        qWarning().noquote() << "Notice: the plug-in for pages does not load:"
                             << logText(loader.errorString());
    }
    return maker;
}

} // namespace

NoticePageMaker *noticePageMaker()
{
    static NoticePageMaker *const maker = loadMaker();
    return maker;
}

} // namespace mevo
