#include "app/CallRunning.h"
#include "app/CommandLine.h"
#include "app/RunProgram.h"
#include "base/Utf8.h"
#include "engines/CurlPost.h"
#include "platform/Platform.h"
#include "platform/linux/FlockSingleInstance.h"
#include "platform/linux/SilentBus.h"

#include <QApplication>
#include <QDebug>
#include <QOpenGLContext>
#include <QTimer>

#include <cstdio>
#include <optional>

int main(int argc, char *argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        bool broken = false; // UTF-8 in any locale: scripts run in the one of the system as well
        const QString argument = mevo::textOfUtf8(argv[i], &broken);
        arguments.append(broken ? QString::fromLocal8Bit(argv[i]) : argument);
    }
    const mevo::CommandLine line = mevo::readCommandLine(arguments);
    if (line.wish != mevo::CommandLine::Wish::Run) {
        const bool refused = line.wish == mevo::CommandLine::Wish::Refuse;
        std::fputs(line.text.toLocal8Bit().constData(), refused ? stderr : stdout);
        return line.exitCode();
    }
    if (line.call.what == mevo::InstanceCall::What::Type) {
        const QCoreApplication application(argc, argv); // no display: the other instance has one
        mevo::FlockSingleInstance instance;
        return mevo::typeByRunning(instance, line.call);
    }
    const mevo::CurlLibrary curl;
    // Nothing here draws with OpenGL, whose software implementation takes 50 MB.
    const char glIntegration[] = "QT_XCB_GL_INTEGRATION";
    const bool chosenByUser = qEnvironmentVariableIsSet(glIntegration);
    if (!chosenByUser) {
        qputenv(glIntegration, "none");
    }
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling, true);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps, true);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    std::optional<mevo::SilentBus> silentBus(std::in_place);
    const QApplication application(argc, argv);
    if (!chosenByUser) {
        // It is read at the first question for OpenGL. The programs that we start may well draw with it.
        QOpenGLContext::supportsThreadedOpenGL();
        qunsetenv(glIntegration);
    }
    QApplication::setApplicationName(QStringLiteral("mevoinput"));
    // The bar hides when the receiver goes; that is no reason to end.
    QApplication::setQuitOnLastWindowClosed(false);
    // Else Qt closes the windows at the end of the session, and a bar that asks about the exit would cancel
    // it.
    QGuiApplication::setFallbackSessionManagementEnabled(false);
    const std::unique_ptr<mevo::Platform> platform = mevo::makePlatform();
    if (silentBus->isHidden()) {
        QTimer::singleShot(0, &application, [] { // when the log is there
            qWarning("The session's bus does not answer: no messages of the desktop, no look at the screen's "
                     "lock");
        });
    }
    silentBus.reset();
    return mevo::runProgram(*platform, line.call);
}
