#include "app/DiagnosticLog.h"
#include "app/MainWindow.h"
#include "app/SettingsFile.h"
#include "engines/CurlPost.h"
#include "platform/Platform.h"
#include "platform/linux/TerminationSignals.h"

#include <QApplication>
#include <QDebug>
#include <QFileInfo>
#include <QProcess>

int main(int argc, char *argv[])
{
    const mevo::CurlLibrary curl;
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps, true);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    auto application = std::make_unique<QApplication>(argc, argv);
    QApplication::setApplicationName(QStringLiteral("mevoinput"));
    // The bar hides when the receiver goes; that is no reason to end.
    QApplication::setQuitOnLastWindowClosed(false);

    const std::unique_ptr<mevo::Platform> platform = mevo::makePlatform();
    if (!platform->singleInstance->acquire(QStringLiteral("mevoinput"))) {
        return 0;
    }
    {
        const mevo::SettingsFile settings;
        mevo::installDiagnosticLog(settings.value(QStringLiteral("OutPrvDbg")).toInt() & 0xff,
                                   settings.value(QStringLiteral("OutPrvDbgLine")).toInt() & 0xff);
    }

    auto window = std::make_unique<MainWindow>(*platform);
    window->setWindowTitle(QStringLiteral("aaaaaa"));
    window->show();
    platform->singleInstance->whenStartedAgain([&window] { window->presentMenu(); });
    mevo::onTerminationSignal(window.get(), [&window] { window->exitByItself(); });
    const int result = QApplication::exec();
    if (result == MainWindow::restartCode) {
        platform->singleInstance->release();
        platform->processes->startDetached(QCoreApplication::applicationFilePath(), {});
    }
    window.reset();
    return result == MainWindow::restartCode ? 0 : result;
}
