#include "inputmethods/Asr3Row.h"

#include "service/WebApiReply.h"
#include "state/ThirdPartyMethod.h"

#include <QDir>

namespace mevo {

namespace {

constexpr int longestColumn = 1024; ///< characters
constexpr int lastUsage = 0xdd;     ///< of the keyboard page; modifiers come behind it

bool isText(const QString &text)
{
    return !text.trimmed().isEmpty() && text.size() <= longestColumn && !text.contains(QChar(0));
}

QString slashed(QString path)
{
    return path.replace(QLatin1Char('\\'), QLatin1Char('/'));
}

bool staysBelow(const QString &path)
{
    return !slashed(path).split(QLatin1Char('/')).contains(QStringLiteral(".."));
}

} // namespace

QString asr3Table(bool thirdGeneration)
{
    return thirdGeneration ? QStringLiteral("asr3setting_usexunfeiinputmore30")
                           : QStringLiteral("asr3setting");
}

Asr3Row builtInAsr3Row(int index, bool thirdGeneration)
{
    Asr3Row row;
    row.thirdGeneration = thirdGeneration;
    row.ASR3Name = QStringLiteral("讯飞输入法"); // kept: Sogou's row carries it too
    if (index == thirdPartySogou) {
        row.ASR3RegInstallPath =
            QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\"
                           "Uninstall\\Sogou Input");
        row.ASR3RegSearchValue = QStringLiteral("InstallLocation");
        row.ASR3ExeInstallPath = QStringLiteral("/SogouInput/Components/VoiceInput/1.0.0.170/VoiceInput.exe");
        row.ASR3WindowName = QStringLiteral("搜狗输入法语音输入 "); // with a blank at its end
        row.ASR3WinClassName = QStringLiteral("CherryWindowClass");
        row.ASR3ExeFileName = QStringLiteral("VoiceInput.exe");
        row.ASR3ShortCutKey = 0x3b; // F2
        return row;
    }
    row.ASR3RegInstallPath = QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\iFly Info Tek\\iFlyIME");
    row.ASR3RegSearchValue = QStringLiteral("Install_Dir_Ver2");
    row.ASR3ExeFileName = QStringLiteral("iFlyVoice.exe");
    row.ASR3ShortCutKey = 0x3f; // F6
    if (thirdGeneration) {
        row.ASR3ExeInstallPath = QStringLiteral("/iFly Info Tek/iFlyIME/3.0.1725/iFlyVoice.exe");
        row.ASR3WindowName = QStringLiteral("语音悬浮窗");
        row.ASR3WinClassName = QStringLiteral("BaseGui");
    } else {
        row.ASR3ExeInstallPath = QStringLiteral("/iFly Info Tek/iFlyIME/2.1.1708/iFlyVoice.exe");
        row.ASR3WindowName = QStringLiteral("讯飞语音悬浮窗");
        row.ASR3WinClassName = QStringLiteral("UIIFlyVoiceFrame");
    }
    return row;
}

Asr3Row customAsr3Row(const QString &baseName)
{
    Asr3Row row;
    row.ASR3Name = row.ASR3ExeFileName = baseName;
    return row;
}

Asr3Row readAsr3Row(const QJsonObject &columns, const Asr3Row &builtIn)
{
    Asr3Row row = builtIn;
    const auto take = [&columns](const char *column, QString &member, bool (*good)(const QString &)) {
        const QString text = columnText(columns, QLatin1String(column));
        if (isText(text) && good(text)) {
            member = text;
        }
    };
    const auto any = [](const QString &) { return true; };
    const auto isFileName = [](const QString &text) {
        return !slashed(text).contains(QLatin1Char('/')) && staysBelow(text);
    };
    take("ASR3DownWeb", row.ASR3DownWeb, any);
    take("ASR3DownWebXP", row.ASR3DownWebXP, any);
    take("ASR3RegInstallPath", row.ASR3RegInstallPath, any);
    take("ASR3RegSearchValue", row.ASR3RegSearchValue, any);
    take("ASR3ExeInstallPath", row.ASR3ExeInstallPath, staysBelow);
    take("ASR3ExeFileName", row.ASR3ExeFileName, isFileName);
    take("ASR3Name", row.ASR3Name, any);
    take("ASR3WindowName", row.ASR3WindowName, any);
    take("ASR3WinClassName", row.ASR3WinClassName, any);
    row.ASR3SetupPKGSize = columnText(columns, QStringLiteral("ASR3SetupPKGSize")).toLongLong();
    const int key = columnNumber(columns, QStringLiteral("ASR3ShortCutKey"));
    if (key > 0 && key <= lastUsage) {
        row.ASR3ShortCutKey = key;
    }
    return row;
}

} // namespace mevo
