#include "app/RunProgram.h"
#include "engines/CurlPost.h"
#include "platform/Platform.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    const mevo::CurlLibrary curl;
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps, true);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("mevoinput"));
    // The bar hides when the receiver goes; that is no reason to end.
    QApplication::setQuitOnLastWindowClosed(false);
    // Else Qt closes the windows at the end of the session, and a bar that asks about the exit would cancel
    // it.
    QGuiApplication::setFallbackSessionManagementEnabled(false);
    const std::unique_ptr<mevo::Platform> platform = mevo::makePlatform();
    return mevo::runProgram(*platform);
}
