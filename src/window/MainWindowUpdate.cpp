// Updates: the check, what the user sees of it, and the way out to the updater.

#include "base/VersionText.h"
#include "base/WebPage.h"
#include "ui/Ask.h"
#include "update/MyUpdateChecker.h"
#include "update/UnfinishedUpdate.h"
#include "window/MainWindow.h"
#include "window/SettingsHands.h"
#include "window/UpdateHands.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFileInfo>

namespace {

constexpr int messageMs = 3000;
const QString updaterSibling = QStringLiteral("\\..\\PatchRunner.exe");

} // namespace

MyUpdateChecker &MainWindow::updateChecker()
{
    if (!m_updateChecker) {
        m_updateHands = std::make_unique<mevo::UpdateHands>(*this);
        m_updateChecker = std::make_unique<MyUpdateChecker>(*this, *this, *m_updateHands, CurrentVersion,
                                                            m_endpoints.UpdateKey);
    }
    return *m_updateChecker;
}

void MainWindow::CheckUpdateTimeout()
{
    // The record may have come after the start.
    if (isLeaving() || AutoUpdateSwitch != 1 || updateChecker().isBusy()) {
        return;
    }
    ManualCheck = false;
    updateChecker().check();
}

void MainWindow::CheckUpdateFromSettings(bool noticeClicked)
{
    if (isLeaving() || ManualUpdateSwitch != 1) {
        return;
    }
    if (noticeClicked) {
        checkUpdateAtWish(); // it is answered, whatever is under way or comes of it
        return;
    }
    if (updateChecker().isBusy()) {
        return;
    }
    ManualCheck = true;
    UpdateNotified = false;
    updateChecker().check();
}

/// The user has asked for it by name: the answer comes whatever the record's switches say.
void MainWindow::checkUpdateAtWish()
{
    if (!isLeaving()) {
        updateChecker().checkAtWish();
    }
}

/// Before any download of this run, which would stand under the same names.
void MainWindow::clearUpdateRest()
{
    if (m_updateChecker) {
        return;
    }
    const auto unfinished = mevo::clearUpdateRest(QCoreApplication::applicationFilePath(), CurrentVersion);
    if (!unfinished) {
        return;
    }
    const QString text =
        unfinished->version == 0
            ? tr("上次的更新没有下载完成，程序没有更新。")
            : tr("上次的更新（%1）没有安装，程序没有更新。").arg(mevo::versionText(unfinished->version));
    whenStarted([this, text] {
        if (!isLeaving()) {
            mevo::askAside(this, {tr("提示!"), text, {tr("确定")}, true}, [](int) {});
        }
    });
}

namespace mevo {

QWidget *UpdateHands::settingsDialog() const
{
    return m_window.m_settingsHands ? m_window.m_settingsHands->openDialog() : nullptr;
}

void UpdateHands::askForUpdate(const QString &text, bool forced, const std::function<void(bool)> &answer)
{
    QStringList buttons{MainWindow::tr("立即更新")};
    std::vector<Answer> meanings{Answer::Accept};
    if (!forced) {
        buttons.append(MainWindow::tr("暂时不更新"));
        meanings.push_back(Answer::Back);
    }
    QWidget *settings = settingsDialog();
    askAside(settings != nullptr ? settings : &m_window,
             {MainWindow::tr("灵犀听写更新"), text, buttons, false, meanings},
             [this, answer, forced](int button) { // closing a box with one button presses that
                 answer((forced || button == 0) && !m_window.isLeaving());
             });
}

void UpdateHands::setUpdateNotice(bool shown)
{
    Q_EMIT m_window.updateNoticeChanged(shown ? MainWindow::tr("新版本软件已提供，点击此处可以在线更新")
                                              : QString());
}

void UpdateHands::tellAboutCheck(CheckAnswer answer)
{
    static constexpr struct
    {
        CheckAnswer answer;
        const char *text;
        MessageIcon icon;
    } rows[] = {
        {CheckAnswer::UpToDate, QT_TRANSLATE_NOOP("MainWindow", "当前已是最新版本！"),
         MessageIcon::Information},
        {CheckAnswer::NoServer, QT_TRANSLATE_NOOP("MainWindow", "无法连接更新服务器，请稍后再试！"),
         MessageIcon::Warning},
        {CheckAnswer::NoVersion,
         QT_TRANSLATE_NOOP("MainWindow", "更新服务器没有给出可用的版本信息，请稍后再试！"),
         MessageIcon::Warning},
        {CheckAnswer::Offline, QT_TRANSLATE_NOOP("MainWindow", "没有网络连接，无法检查更新！"),
         MessageIcon::Warning},
        {CheckAnswer::Checking, QT_TRANSLATE_NOOP("MainWindow", "正在检查更新，请稍候！"),
         MessageIcon::Information},
        {CheckAnswer::Asking, QT_TRANSLATE_NOOP("MainWindow", "更新提示已经打开，请在其中选择！"),
         MessageIcon::Information},
        {CheckAnswer::Downloading, QT_TRANSLATE_NOOP("MainWindow", "正在下载更新文件，请稍候！"),
         MessageIcon::Information},
        {CheckAnswer::Installing, QT_TRANSLATE_NOOP("MainWindow", "更新文件已下载，稍后将自动安装！"),
         MessageIcon::Information},
    };
    if (answer == CheckAnswer::UpToDate && settingsDialog() != nullptr) {
        return; // its line on updates says so
    }
    for (const auto &row : rows) {
        if (row.answer == answer) {
            m_window.message(MainWindow::tr(row.text), row.icon, messageMs);
        }
    }
}

void UpdateHands::raiseUpdateQuestion()
{
    raiseQuestions(); // whether to cancel the download, it may be
    const QString title = MainWindow::tr("灵犀听写更新");
    raiseAside(&m_window, title);
    if (QWidget *settings = settingsDialog()) {
        raiseAside(settings, title);
    }
}

void UpdateHands::showDownload(const QString &fileName)
{
    if (m_progress.isNull()) {
        m_progress = new UpdateProgressDialog(&m_window);
        QObject::connect(m_progress, &QProgressDialog::canceled, &m_window,
                         [this] { m_window.updateChecker().on_CancelDownload(); });
    }
    m_progress->start(fileName);
}

void UpdateHands::moveDownload(qint64 received, qint64 total)
{
    if (!m_progress.isNull()) {
        m_progress->move(received, total);
    }
}

void UpdateHands::hideDownload()
{
    if (!m_progress.isNull()) {
        m_progress->deleteLater();
        m_progress->hide();
        m_progress = nullptr;
    }
}

bool UpdateHands::confirmCancel()
{
    return ask(&m_window, {MainWindow::tr("灵犀听写提示!"),
                           MainWindow::tr("确认要取消下载？"),
                           {MainWindow::tr("是"), MainWindow::tr("否")},
                           false}) == 0;
}

void UpdateHands::tellAboutUpdate(const QString &text)
{
    askAside(&m_window, {MainWindow::tr("提示!"), text, {MainWindow::tr("确定")}, true}, [](int) {});
}

bool UpdateHands::isForeignInstallation() const
{
    const QFileInfo folder(QFileInfo(programFile()).path());
    return !folder.isWritable() || !QFileInfo(folder.path()).isWritable() ||
           !m_window.m_platform.processes->hasSibling(updaterSibling);
}

void UpdateHands::openDownloadPage()
{
    if (webPage(m_window.DownloadDrvWeb).isEmpty()) {
        qWarning("Update: the record names no download page");
        tellAboutUpdate(MainWindow::tr("请通过系统的软件管理器更新本软件。"));
        return;
    }
    m_window.openWebPage(m_window.DownloadDrvWeb);
}

QString UpdateHands::programFile() const
{
    return QCoreApplication::applicationFilePath();
}

void UpdateHands::handOver(const std::function<void(bool)> &answer)
{
    m_window.whenQuiet("Update", [this, answer] {
        const bool started = m_window.m_platform.processes->startSibling(updaterSibling, {}, false);
        answer(started);
        if (started) {
            m_window.m_handedOver = true;
            m_window.exitByItself();
        } else {
            tellAboutUpdate(MainWindow::tr("更新程序没有安装，请从下载页面获取新版本。"));
            openDownloadPage();
        }
    });
}

} // namespace mevo
