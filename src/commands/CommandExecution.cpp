#include "commands/CommandExecution.h"

#include "base/LogText.h"

#include <QDebug>
#include <QStringList>

namespace mevo {

namespace {

struct Modifier
{
    QLatin1String name;
    bool KeyCombination::*flag;
};
constexpr Modifier modifiers[] = {
    {QLatin1String("Control"), &KeyCombination::ctrl},
    {QLatin1String("Alt"), &KeyCombination::alt},
    {QLatin1String("Shift"), &KeyCombination::shift},
    {QLatin1String("Win"), &KeyCombination::win},
};

bool takeModifier(const QString &part, KeyCombination &keys)
{
    for (const Modifier &modifier : modifiers) {
        if (part == modifier.name) {
            keys.*modifier.flag = true;
            return true;
        }
    }
    return false;
}

} // namespace

KeyCombination parseShortcut(const QString &contents, const QStringList &names, const QStringList &codes)
{
    KeyCombination keys;
    QStringList unknown;
    for (const QString &part : contents.split(QLatin1Char('+'))) {
        if (takeModifier(part, keys)) {
            continue;
        }
        const int index = names.indexOf(part);
        if (index < 0) {
            unknown.append(part);
        }
        keys.consumerKey = keys.consumerKey || index >= firstMediaKey;
        keys.key = codes.value(index).toInt(nullptr, 16);
    }
    if (!unknown.isEmpty()) {
        qWarning().noquote() << "Commands: no key is called" << logText(unknown.join(QStringLiteral(", ")));
    }
    return keys;
}

QUrl webAddress(const QString &contents)
{
    const bool complete =
        contents.contains(QLatin1String("http:")) || contents.contains(QLatin1String("https:"));
    return QUrl(complete ? contents : QLatin1String("http://") + contents, QUrl::TolerantMode);
}

void runCommand(const CommandRow &row, bool sent, const SettingsState &settings, CommandPort &port)
{
    switch (commandTypeOfIndex(row.CmdWordTypeIndex).value_or(CommandType::VoiceKeyboard)) {
    case CommandType::VoiceKeyboard:
    case CommandType::PinyinKeyboard:
        break;
    case CommandType::Web:
        port.openUrl(webAddress(row.CmdWordContents));
        break;
    case CommandType::File:
    case CommandType::Directory:
        port.openUrl(QUrl::fromLocalFile(row.CmdWordContents));
        break;
    case CommandType::Shortcut:
        port.playKeys(parseShortcut(row.CmdWordContents, settings.KeyShowNames, settings.KeyCodes));
        break;
    case CommandType::Phrase:
        if (!sent) {
            port.sendToScreen(row.CmdWordContents);
        }
        break;
    }
}

} // namespace mevo
