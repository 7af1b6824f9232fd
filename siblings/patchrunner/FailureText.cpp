#include "patchrunner/FailureText.h"

namespace mevo::patchrunner {

namespace {

struct Row
{
    Outcome outcome;
    const char *simplified;
    const char *traditional;
    const char *english;
};

constexpr Row rows[] = {
    {Outcome::NothingToDo, "没有待安装的更新。", "沒有待安裝的更新。", "There is no update to install."},
    {Outcome::AnotherRuns, "另一个更新正在安装，请稍候。", "另一個更新正在安裝，請稍候。",
     "Another update is being installed. Please wait."},
    {Outcome::StillRunning, "程序仍在运行，更新没有安装。", "程式仍在執行，更新沒有安裝。",
     "The program is still running. The update was not installed."},
    {Outcome::ReadOnly, "程序所在的文件夹不能写入，更新没有安装。",
     "程式所在的資料夾不能寫入，更新沒有安裝。",
     "The program's folder cannot be written. The update was not installed."},
    {Outcome::NoExchange, "此磁盘不支持安全更新，请从下载页面获取新版本。",
     "此磁碟不支援安全更新，請從下載頁面取得新版本。",
     "This disk does not allow a safe update. Please get the new version from the download page."},
    {Outcome::BadArchive, "更新文件已损坏，更新没有安装。", "更新檔案已損壞，更新沒有安裝。",
     "The update is damaged and was not installed."},
    {Outcome::BadSignature, "更新文件没有有效的数字签名，已拒绝安装。",
     "更新檔案沒有有效的數位簽章，已拒絕安裝。", "The update has no valid signature and was refused."},
    {Outcome::NoSpace, "磁盘空间不足，更新没有安装。", "磁碟空間不足，更新沒有安裝。",
     "The disk is full. The update was not installed."},
    {Outcome::NotStarted, "新版本无法启动，已恢复原来的版本。", "新版本無法啟動，已恢復原來的版本。",
     "The new version did not start. The previous one has been restored."},
    {Outcome::Unconfirmed, "新版本已经安装，但没有及时启动完成。", "新版本已經安裝，但沒有及時啟動完成。",
     "The new version is installed, but has not finished starting in time."},
    {Outcome::Failed, "更新没有安装。", "更新沒有安裝。", "The update was not installed."},
};

} // namespace

FailureText failureText(Outcome outcome, const QString &locale)
{
    const bool traditional = locale.startsWith(QLatin1String("zh_TW")) ||
                             locale.startsWith(QLatin1String("zh_HK")) ||
                             locale.startsWith(QLatin1String("zh_MO"));
    const bool simplified = !traditional && locale.startsWith(QLatin1String("zh"));
    FailureText result;
    result.title = traditional  ? QStringLiteral("靈犀聽寫線上更新")
                   : simplified ? QStringLiteral("灵犀听写在线更新")
                                : QStringLiteral("MEVOInput Online Update");
    for (const Row &row : rows) {
        if (row.outcome == outcome) {
            result.text = QString::fromUtf8(traditional  ? row.traditional
                                            : simplified ? row.simplified
                                                         : row.english);
        }
    }
    return result;
}

} // namespace mevo::patchrunner
