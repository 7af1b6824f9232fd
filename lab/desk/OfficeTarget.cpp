#include "desk/OfficeTarget.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUrl>

namespace mevo::lab {

namespace {

// What is switched off.
struct Setting
{
    const char *node;
    const char *name;
};
constexpr Setting settings[] = {
    {"Office.Common/AutoCorrect", "CapitalAtStartSentence"},
    {"Office.Common/AutoCorrect", "TwoCapitalsAtStart"},
    {"Office.Common/AutoCorrect", "ReplaceSingleQuote"},
    {"Office.Common/AutoCorrect", "ReplaceDoubleQuote"},
    {"Office.Common/AutoCorrect", "UseReplacementTable"},
    {"Office.Common/AutoCorrect", "CorrectAccidentalCapsLock"},
    {"Office.Common/AutoCorrect", "AddNonBreakingSpace"},
    {"Office.Common/AutoCorrect", "ChangeOrdinalNumber"},
    {"Office.Common/AutoCorrect", "ChangeDash"},
    {"Office.Common/AutoCorrect", "SetInetAttribute"},
    {"Office.Common/AutoCorrect", "RemoveDoubleSpaces"},
    {"Office.Writer/AutoFunction/Format/ByInput", "Enable"},
    {"Office.Writer/AutoFunction/Format/ByInput/ApplyNumbering", "Enable"},
    {"Office.Writer/AutoFunction/Completion", "Enable"},
    {"Office.Common/Save/Document", "WarnAlienFormat"},
    {"Office.Common/Misc", "FirstRun"},
    {"Office.Common/Misc", "ShowTipOfTheDay"},
    {"Office.Common/Misc", "CrashReport"},
    {"Office.Linguistic/SpellChecking", "IsSpellAuto"},
};

QString programFolder()
{
    const QString script = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    return script.isEmpty() ? QString() : QFileInfo(script).canonicalPath();
}

bool writeSettings(const QString &profile)
{
    QDir().mkpath(profile + QStringLiteral("/user"));
    QFile file(profile + QStringLiteral("/user/registrymodifications.xcu"));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
               "<oor:items xmlns:oor=\"http://openoffice.org/2001/registry\">\n");
    for (const Setting &setting : settings)
        file.write(QStringLiteral("<item oor:path=\"/org.openoffice.%1\"><prop oor:name=\"%2\" "
                                  "oor:op=\"fuse\"><value>false</value></prop></item>\n")
                       .arg(QLatin1String(setting.node), QLatin1String(setting.name))
                       .toUtf8());
    file.write("</oor:items>\n");
    return true;
}

} // namespace

bool OfficeTarget::isInstalled()
{
    return QFile::exists(programFolder() + QStringLiteral("/soffice.bin"));
}

bool OfficeTarget::isGtk3Installed()
{
    return isInstalled() && QFile::exists(programFolder() + QStringLiteral("/libvclplug_gtk3lo.so"));
}

QByteArray OfficeTarget::savedText() const
{
    // It writes a byte order mark, and a line end behind the last paragraph.
    QByteArray text = textFileContent();
    if (text.startsWith("\xef\xbb\xbf"))
        text.remove(0, 3);
    if (text.endsWith('\n'))
        text.chop(1);
    return text;
}

std::unique_ptr<TargetWindow> OfficeTarget::start()
{
    return startWith(QStringLiteral("libreoffice"), QStringLiteral("gen"));
}

std::unique_ptr<TargetWindow> OfficeTarget::startGtk3()
{
    return startWith(QStringLiteral("libreoffice-gtk3"), QStringLiteral("gtk3"));
}

std::unique_ptr<TargetWindow> OfficeTarget::startWith(const QString &kind, const QString &widgets)
{
    std::unique_ptr<Desktop> desktop = Desktop::open();
    std::unique_ptr<XTestKeyboard> keyboard = XTestKeyboard::open();
    if (!desktop || !keyboard)
        return nullptr;
    std::unique_ptr<OfficeTarget> target(new OfficeTarget(kind, std::move(desktop), std::move(keyboard)));
    const QString profile = QDir(target->folder()).filePath(QStringLiteral("profile"));
    // The first run of a profile sets it up and ends so that it is started again. Its own script would do
    // that too, but the window would be a child's.
    const QStringList arguments{QStringLiteral("-c"),
                                QStringLiteral("\"$0\" \"$@\"; [ $? != 81 ] || exec \"$0\" \"$@\""),
                                programFolder() + QStringLiteral("/soffice.bin"),
                                QStringLiteral("-env:UserInstallation=") +
                                    QUrl::fromLocalFile(profile).toString(),
                                QStringLiteral("--nologo"),
                                QStringLiteral("--norestore"),
                                QStringLiteral("--nofirststartwizard"),
                                QStringLiteral("--writer"),
                                target->textFile()};
    if (!writeSettings(profile) ||
        !target->launch(QStringLiteral("sh"), arguments, {{QStringLiteral("SAL_USE_VCLPLUGIN"), widgets}}))
        return nullptr;
    return target;
}

} // namespace mevo::lab
