#include "window/InputMethodHands.h"

#include "commands/UrlOpener.h"
#include "service/Statements.h"
#include "ui/Ask.h"
#include "window/InputMethods.h"
#include "window/MainWindow.h"

#include <QTimer>

namespace mevo {

namespace {
constexpr int tellTimeoutMs = 2000;
} // namespace

InputMethodHands::~InputMethodHands()
{
    delete m_progress;
}

void InputMethodHands::showDownload()
{
    if (m_progress.isNull()) {
        m_progress =
            new DownloadProgressDialog(MainWindow::tr("下载"), MainWindow::tr("取消下载"), &m_window);
        QObject::connect(m_progress, &QProgressDialog::canceled, &m_window,
                         [this] { m_methods.cancelDownload(); });
    }
    m_progress->start(MainWindow::tr("正在下载 %1 过程中，请稍候......").arg(m_methods.downloadName()));
}

void InputMethodHands::moveDownload(qint64 received, qint64 total)
{
    if (!m_progress.isNull()) {
        m_progress->move(received, total);
    }
}

void InputMethodHands::hideDownload()
{
    if (!m_progress.isNull()) {
        m_progress->deleteLater();
        m_progress->hide();
        m_progress = nullptr;
    }
    m_methods.downloadOver();
}

void InputMethodHands::tellAboutDownload(const QString &text)
{
    askAside(&m_window, {MainWindow::tr("Attention!"), text, {MainWindow::tr("确定")}, true}, [](int) {});
}

void InputMethodHands::openInstaller(const QString &path)
{
    if (!openUrl(QUrl::fromLocalFile(path), *m_window.m_platform.processes)) {
        tellAboutDownload(MainWindow::tr("安装程序已下载，但没有程序能打开它：%1").arg(path));
    }
}

void InputMethodHands::downloadCancelled()
{
    m_window.LocalEnableThirdpatyVoiceInput = false;
    // From the event loop: the request waits, and the download has not been taken apart yet. These hands may
    // have gone by then.
    QTimer::singleShot(0, &m_window, [&window = m_window] {
        if (!window.isLeaving()) {
            window.RunBackendSql(deviceStatement(Statement::WriteInputMethodDownload, window.SchemaName,
                                                 {QStringLiteral("0"), window.DongleID}),
                                 tellTimeoutMs);
        }
    });
}

void InputMethodHands::installerOpened()
{
    m_methods.watchForInstallation();
}

} // namespace mevo
