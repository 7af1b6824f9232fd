// Leaving: the exit that the user asks for, the one that the program takes by itself, and the restart.

#include "window/MainWindow.h"

#include "audio/AudioRecorder.h"
#include "base/SettingsFile.h"
#include "device/DeviceCommands.h"
#include "service/WebApi.h"
#include "service/WebCipher.h"
#include "service/isOnl.h"
#include "ui/Ask.h"
#include "ui/MicTipDialog.h"

#include <QCoreApplication>
#include <QDebug>
#include <QNetworkAccessManager>
#include <QTimer>

namespace {

const QString keypadSibling = QStringLiteral("\\KeypadHost.exe");
const QString penPadSibling = QStringLiteral("\\..\\HW\\PenPadHost.exe");

QString startupLinkName()
{
    return MainWindow::tr("灵犀听写系统.lnk");
}

} // namespace

void MainWindow::on_exitAppAction()
{
    walkExit(ExitKind::Asked);
}

void MainWindow::RebootAppDelayTimeout()
{
    AutoRunApp = QStringLiteral("1");
    walkExit(ExitKind::Unasked);
}

void MainWindow::exitByItself()
{
    walkExit(ExitKind::ByItself);
}

void MainWindow::walkExit(ExitKind kind)
{
    if (ExitInProgress || hasTornDown()) {
        return;
    }
    ExitInProgress = true;
    closeInputMethodWindow();
    if (kind == ExitKind::Asked && !askAboutStartup()) {
        ExitInProgress = false;
        return;
    }
    m_platform.processes->startSibling(keypadSibling, {QStringLiteral("ORVKBAppExit")}, false);
    sendUsageOnExit(kind == ExitKind::ByItself);
    if ((kind != ExitKind::ByItself || DeviceConnected) && !hasTornDown()) {
        tearDown();
    }
    if (deviceOpen()) {
        m_device->StopHeartbeat();
        sendMicrophoneLatch(false);
        m_device->DeviceGoodbye();
    }
    if (DeviceConnected) {
        m_device->ReleaseHidDevice();
    }
    m_platform.deviceNotifier->stop();
    if (kind == ExitKind::ByItself &&
        m_platform.windowSystem->findWindow(QString(), QStringLiteral("ORVQuillary")) != 0) {
        m_platform.processes->startSibling(penPadSibling, {QStringLiteral("/close")}, false);
    }
    m_retiredCipher = std::move(m_cipher); // a wait below this exit may still read an answer with it
    close();
    ExitInProgress = false;
    QCoreApplication::exit(m_exitCode);
}

bool MainWindow::askAboutStartup()
{
    if (!AutoRunApp.isEmpty() || RunAsAdmin) {
        return true;
    }
    enum Answer { Yes, Back, No };
    const int answer = mevo::ask(
        this,
        {tr("自动启动软件"), tr("下次开机是否自动启动语音软件?"), {tr("是"), tr("返回"), tr("否")}, false});
    if (answer == Yes) {
        if (!m_platform.startupEntry->set(startupLinkName())) {
            qWarning() << "Start at login could not be set";
        }
        AutoRunApp = QStringLiteral("1");
        mevo::SettingsFile().setValue(QStringLiteral("AutoRunApp"), AutoRunApp);
        return true;
    }
    return answer == No;
}

void MainWindow::tearDown()
{
    m_topMost->stop();
    m_afterRecognition->stop();
    m_afterRecognition->deleteLater();
    m_afterRecognition = nullptr;
    m_online->disconnect();
    m_online->deleteLater();
    m_online = nullptr;

    stopReader();

    m_micTip->close();
    m_micTip->disconnect();
    m_micTip->deleteLater();
    m_micTip = nullptr;

    closeXunFeiSocket();
    m_recorder->disconnect();
    m_recorder->deleteLater();
    m_recorder = nullptr;
    m_network->disconnect();
    m_network->deleteLater();
    m_network = nullptr;
    m_platform.notifications->attach(nullptr);
    m_tray->hide();
    m_tray->deleteLater();
    m_tray = nullptr;
}
