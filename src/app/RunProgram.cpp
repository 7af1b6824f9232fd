#include "app/RunProgram.h"

#include "app/CallRunning.h"
#include "base/DiagnosticLog.h"
#include "base/SettingsFile.h"
#include "platform/Platform.h"
#include "platform/linux/TerminationSignals.h"
#include "window/InstanceCalls.h"
#include "window/MainWindow.h"

#include <QApplication>

#include <memory>

namespace mevo {

namespace {

QStringList argumentsOf(const InstanceCall &call)
{
    switch (call.what) {
    case InstanceCall::What::Talk:
        return {QStringLiteral("--talk")};
    case InstanceCall::What::Settings:
        return {QStringLiteral("--settings")};
    case InstanceCall::What::Show:
    case InstanceCall::What::Type:
        break;
    }
    return {};
}

} // namespace

int runProgram(Platform &platform, const InstanceCall &call)
{
    if (const auto code = takeLockOrCall(*platform.singleInstance, *platform.time, call)) {
        return *code;
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
    InstanceCall anew;
    platform.singleInstance->whenCalled(
        longestInstanceMessage, [&](const QByteArray &message, const SingleInstance::CallAnswer &answer) {
            QString fault;
            const std::optional<InstanceCall> asked = readInstanceCall(message, &fault);
            if (!asked) {
                qWarning().noquote() << "Call: a message is refused:" << fault;
                answer(toMessage(InstanceAnswer::NotUnderstood));
                return;
            }
            MainWindow *window = MainWindow::instance();
            if (window == nullptr) {
                answer(toMessage(InstanceAnswer::Refused));
                return;
            }
            if (window->isGoingDown() && asked->what != InstanceCall::What::Type) {
                if (!startAnew || asked->what != InstanceCall::What::Show) {
                    anew = *asked;
                }
                startAnew = true; // who starts a program that is leaving wants one that runs
                answer(toMessage(InstanceAnswer::Done));
                return;
            }
            window->instanceCalls().take(*asked, [answer](InstanceAnswer done) { answer(toMessage(done)); });
        });
    auto window = std::make_unique<MainWindow>(platform);
    if (call.what != InstanceCall::What::Show) {
        window->instanceCalls().take(call, [](InstanceAnswer) {});
    }
    int result = 0;
    if (!window->isLeaving()) { // else an event loop that begins now would never hear of the exit
        window->setWindowTitle(QStringLiteral("aaaaaa"));
        window->show();
        result = QApplication::exec();
    }
    // Who calls from now on would wait for an answer until the process ends; so it waits for the lock.
    platform.singleInstance->closeDoor();
    if (window->isHandedOver() || (result != MainWindow::restartCode && !startAnew)) {
        return result;
    }
    // The new one reads accounts as soon as it runs: what is being kept of them comes before.
    window.reset();
    platform.secrets.reset();
    platform.singleInstance->release(); // else the new one would take itself for the second
    if (!platform.processes->startDetached(QCoreApplication::applicationFilePath(), argumentsOf(anew))) {
        qWarning("Exit: the program could not be started anew");
    }
    return 0;
}

} // namespace mevo
