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
    MainWindow window(platform);
    window.setWindowTitle(QStringLiteral("aaaaaa"));
    window.show();
    platform.singleInstance->whenStartedAgain([&window] { window.presentMenu(); });
    onTerminationSignal(&window, [&window] { window.exitByItself(); });
    const int result = QApplication::exec();
    if (result != MainWindow::restartCode) {
        return result;
    }
    platform.singleInstance->release(); // else the new one would take itself for the second
    platform.processes->startDetached(QCoreApplication::applicationFilePath(), {});
    return 0;
}

} // namespace mevo
