#include "update/UpdateQuestion.h"

#include "base/VersionText.h"

#include <QCoreApplication>

namespace mevo {

namespace {

struct Wording
{
    UpdateMode mode;
    bool forced;
    const char *text;
};

constexpr Wording wordings[] = {
    {UpdateMode::All, true,
     QT_TRANSLATE_NOOP("MyUpdateChecker", "V%d.%02d完整安装版已提供，须在线更新！\r\n请点击'立即更新'按钮")},
    {UpdateMode::All, false,
     QT_TRANSLATE_NOOP("MyUpdateChecker", "V%d.%02d完整安装版已提供在线更新！\r\n是否要更新?")},
    {UpdateMode::Part, true,
     QT_TRANSLATE_NOOP("MyUpdateChecker", "V%d.%02d版本已提供，须在线更新,\r\n请点击'立即更新'按钮")},
    {UpdateMode::Part, false,
     QT_TRANSLATE_NOOP("MyUpdateChecker", "V%d.%02d版本已提供在线更新,\r\n是否要更新?")},
};

} // namespace

UpdateStep updateStep(const VersionFile &file, int currentVersion, bool manual, bool notified)
{
    if (file.version <= currentVersion) {
        return manual ? UpdateStep::ClearNotice : UpdateStep::Nothing;
    }
    return manual && !notified ? UpdateStep::ShowNotice : UpdateStep::Ask;
}

QString updateQuestion(const VersionFile &file, bool forced, const QString &title, bool isSigned)
{
    QString text;
    for (const Wording &wording : wordings) {
        if (wording.mode == file.mode && wording.forced == forced) {
            text = QCoreApplication::translate("MyUpdateChecker", wording.text);
        }
    }
    text.replace(QLatin1String("V%d.%02d"), versionText(file.version));
    if (!isSigned) {
        text += QLatin1String("\r\n") +
                QCoreApplication::translate("MyUpdateChecker", "（更新文件没有数字签名，无法验证其来源。）");
    }
    return title + text;
}

} // namespace mevo
