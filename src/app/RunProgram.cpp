#include "app/RunProgram.h"

#include "base/DiagnosticLog.h"
#include "base/SettingsFile.h"
#include "platform/Platform.h"
#include "platform/linux/TerminationSignals.h"
#include "window/MainWindow.h"

#include <QApplication>

namespace mevo {

int runProgram(Platform &platform)
{
    if (!platform.singleInstance->acquire(QStringLiteral("mevoinput"))) {
        return 0;
    }
    {
        const SettingsFile settings;
        installDiagnosticLog(settings.value(QStringLiteral("OutPrvDbg")).toInt() & 0xff,
                             settings.value(QStringLiteral("OutPrvDbgLine")).toInt() & 0xff);
    }
    // Before the window: what is asked of the program while it is being made is kept for its end.
    QObject signalContext;
    onTerminationSignal(&signalContext, [] {
        if (MainWindow *window = MainWindow::instance()) {
            window->exitByItself();
        }
    });
    bool startAnew = false;
    platform.singleInstance->whenStartedAgain([&startAnew] {
        MainWindow *window = MainWindow::instance();
        if (window == nullptr) {
            return;
        }
        startAnew = window->isLeaving(); // who starts a program that is leaving wants one that runs
        window->presentMenu();
    });
    MainWindow window(platform);
    if (window.isLeaving()) {
        return 0; // an event loop that begins now would never hear of it
    }
    window.setWindowTitle(QStringLiteral("aaaaaa"));
    window.show();
    const int result = QApplication::exec();
    if (window.isHandedOver() || (result != MainWindow::restartCode && !startAnew)) {
        return result;
    }
    platform.singleInstance->release(); // else the new one would take itself for the second
    platform.processes->startDetached(QCoreApplication::applicationFilePath(), {});
    return 0;
}

} // namespace mevo
