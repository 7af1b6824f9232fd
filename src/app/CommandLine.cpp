#include "app/CommandLine.h"

#include "base/LogText.h"
#include "base/VersionText.h"

namespace mevo {

namespace {

const char helpText[] =
    "Usage: mevoinput [options]\n"
    "Voice input with a voice-input mouse.\n"
    "\n"
    "Options:\n"
    "  -h, --help     Print this and end.\n"
    "  -v, --version  Print the version and end.\n"
    "  --settings     Open the settings.\n"
    "  --talk         Show the talk window.\n"
    "  --type TEXT    Let the running instance type TEXT into the window with the focus.\n"
    "\n"
    "Qt's own options, such as -platform and -style, are understood as well.\n";

/// QGuiApplication's and QApplication's options, and those of the xcb platform; each with one dash or two.
bool isQtSwitch(const QString &name)
{
    static const QStringList names{QStringLiteral("reverse"), QStringLiteral("nograb"),
                                   QStringLiteral("dograb"), QStringLiteral("sync"),
                                   QStringLiteral("widgetcount")};
    return names.contains(name);
}

bool isQtOptionWithValue(const QString &name)
{
    static const QStringList names{
        QStringLiteral("platform"),
        QStringLiteral("platformpluginpath"),
        QStringLiteral("platformtheme"),
        QStringLiteral("plugin"),
        QStringLiteral("qwindowgeometry"),
        QStringLiteral("geometry"),
        QStringLiteral("qwindowtitle"),
        QStringLiteral("title"),
        QStringLiteral("qwindowicon"),
        QStringLiteral("icon"),
        QStringLiteral("session"),
        QStringLiteral("style"),
        QStringLiteral("stylesheet"),
        QStringLiteral("display"),
        QStringLiteral("name"),
    };
    return names.contains(name);
}

std::optional<InstanceCall::What> wishOf(const QString &option)
{
    if (option == QLatin1String("--settings")) {
        return InstanceCall::What::Settings;
    }
    if (option == QLatin1String("--talk")) {
        return InstanceCall::What::Talk;
    }
    if (option == QLatin1String("--type")) {
        return InstanceCall::What::Type;
    }
    return std::nullopt;
}

CommandLine refuse(const QString &reason, const QString &option)
{
    return {CommandLine::Wish::Refuse,
            QStringLiteral("mevoinput: %1: %2 (--help lists the options)\n").arg(reason, logText(option)),
            {}};
}

} // namespace

CommandLine readCommandLine(const QStringList &arguments)
{
    std::optional<InstanceCall> call;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (argument == QLatin1String("--")) {
            break;
        }
        if (!argument.startsWith(QLatin1Char('-')) || argument == QLatin1String("-")) {
            continue;
        }
        if (argument == QLatin1String("-h") || argument == QLatin1String("--help")) {
            return {CommandLine::Wish::Print, QString::fromLatin1(helpText), {}};
        }
        if (argument == QLatin1String("-v") || argument == QLatin1String("--version")) {
            return {CommandLine::Wish::Print, QStringLiteral("mevoinput %1\n").arg(versionText()), {}};
        }
        if (const auto wished = wishOf(argument)) {
            if (call) {
                return refuse(QStringLiteral("only one wish at a time"), argument);
            }
            call = InstanceCall{*wished, {}};
            if (*wished != InstanceCall::What::Type) {
                continue;
            }
            if (++i == arguments.size()) {
                return refuse(QStringLiteral("option without its value"), argument);
            }
            call->text = arguments.at(i);
            if (toMessage(*call).size() > longestInstanceMessage) {
                return refuse(QStringLiteral("text too long"), argument);
            }
            continue;
        }
        const QString name = argument.mid(argument.startsWith(QLatin1String("--")) ? 2 : 1);
        // Qt takes "-style=NAME" and "-stylesheet=FILE" in one word as well.
        if (isQtSwitch(name) || name.startsWith(QLatin1String("style=")) ||
            name.startsWith(QLatin1String("stylesheet="))) {
            continue;
        }
        if (!isQtOptionWithValue(name)) {
            return refuse(QStringLiteral("unknown option"), argument);
        }
        if (++i == arguments.size()) {
            return refuse(QStringLiteral("option without its value"), argument);
        }
    }
    return {CommandLine::Wish::Run, {}, call.value_or(InstanceCall())};
}

} // namespace mevo
