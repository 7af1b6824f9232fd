#include "inputmethods/SpeechInputIni.h"

#include "base/IniText.h"
#include "base/WholeFile.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>

namespace mevo {

namespace {

constexpr struct
{
    const char *key;
    int value;
} wanted[] = {{"Setting/HotKey", 17}, {"Setting/LastPage", 0}, {"Setting/LaunchTime", 1}};

} // namespace

QString speechInputIniPath(const QString &genericData, bool xpClass)
{
    return QDir::cleanPath(genericData +
                           (xpClass ? QStringLiteral("/../../localLow/Baidu/BaiduPinyin/SpeechInput.ini")
                                    : QStringLiteral("/../localLow/Baidu/BaiduPinyin/SpeechInput.ini")));
}

std::optional<QByteArray> withCtrlHotKey(const QByteArray &ini)
{
    if (ini.contains('\0')) {
        return std::nullopt; // UTF-16, or no text at all
    }
    IniText text(ini);
    for (const auto &setting : wanted) {
        const QString key = QLatin1String(setting.key);
        if (text.value(key).toString().trimmed() != QString::number(setting.value)) {
            text.setValue(key, setting.value);
        }
    }
    return text.text();
}

bool configureSpeechInput(const QString &path)
{
    const auto content = readWholeFile(path);
    const auto changed = content ? withCtrlHotKey(*content) : std::nullopt;
    if (!changed) {
        qWarning("Input method: the settings of Baidu's cannot be read, they stay");
        return false;
    }
    if (*changed == *content) {
        return true;
    }
    QDir().mkpath(QFileInfo(path).path());
    const QString error = QFileInfo::exists(path) && !QFileInfo(path).isWritable()
                              ? QStringLiteral("read-only")
                              : replaceWholeFile(path, *changed);
    if (!error.isEmpty()) {
        qWarning().noquote() << "Input method: the settings of Baidu's cannot be written:" << error;
        return false;
    }
    return true;
}

} // namespace mevo
