// What the backend tells of voice input methods: how each is found, operated and had.

#include "backend/LabDatabase.h"

namespace lab {

namespace {

struct Row
{
    int index;
    const char *installer, *registryPath, *registryValue, *installPath, *program, *name, *window,
        *windowClass;
    int key; ///< HID usage
};
constexpr char xunFeiPath[] = "HKEY_LOCAL_MACHINE\\SOFTWARE\\iFly Info Tek\\iFlyIME";
constexpr Row sogou{2,
                    "SogouInput_Setup.run",
                    "HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\"
                    "Uninstall\\Sogou Input",
                    "InstallLocation",
                    "/SogouInput/Components/VoiceInput/1.0.0.170/VoiceInput.exe",
                    "VoiceInput.exe",
                    "搜狗输入法",
                    "搜狗输入法语音输入 ",
                    "CherryWindowClass",
                    0x3b};
constexpr Row baidu{3,
                    "BaiduPinyin_Setup.run",
                    "",
                    "",
                    "/Baidu/BaiduPinyin/SpeechInput.exe",
                    "SpeechInput.exe",
                    "百度输入法",
                    "百度语音输入",
                    "SpeechInputFrame",
                    0}; // Ctrl alone
constexpr Row older{1,
                    "iFlyIME_Setup.run",
                    xunFeiPath,
                    "Install_Dir_Ver2",
                    "/iFly Info Tek/iFlyIME/2.1.1708/iFlyVoice.exe",
                    "iFlyVoice.exe",
                    "讯飞输入法",
                    "讯飞语音悬浮窗",
                    "UIIFlyVoiceFrame",
                    0x3f};
constexpr Row newer{1,
                    "iFlyIME_Setup3.run",
                    xunFeiPath,
                    "Install_Dir_Ver2",
                    "/iFly Info Tek/iFlyIME/3.0.1725/iFlyVoice.exe",
                    "iFlyVoice.exe",
                    "讯飞输入法",
                    "语音悬浮窗",
                    "BaseGui",
                    0x3f};

} // namespace

bool LabDatabase::offerInputMethods(const QString &schema, const QString &address)
{
    const auto quoted = [](QByteArray text) { return "'" + text.replace("'", "''") + "'"; };
    const auto fill = [&](const char *name, const Row &xunFei) {
        const QByteArray table = schema.toLatin1() + '.' + name;
        bool written = execute("drop table if exists " + table) &&
                       execute("create table " + table +
                               " (ASR3Index primary key, ASR3DownWeb, ASR3DownWebXP, ASR3SetupPKGSize, "
                               "ASR3ShortCutKey, ASR3RegInstallPath, ASR3RegSearchValue, ASR3ExeInstallPath, "
                               "ASR3ExeFileName, ASR3Name, ASR3WindowName, ASR3WinClassName)");
        for (const Row &row : {xunFei, sogou, baidu}) {
            const QByteArray from = quoted(address.toUtf8() + row.installer);
            written = written &&
                      execute("insert into " + table + " values (" + QByteArray::number(row.index) + ", " +
                              from + ", " + from + ", 0, " + QByteArray::number(row.key) + ", " +
                              quoted(row.registryPath) + ", " + quoted(row.registryValue) + ", " +
                              quoted(row.installPath) + ", " + quoted(row.program) + ", " + quoted(row.name) +
                              ", " + quoted(row.window) + ", " + quoted(row.windowClass) + ")");
        }
        return written;
    };
    return fill("asr3setting", older) && fill("asr3setting_usexunfeiinputmore30", newer);
}

} // namespace lab
