#include "keypad/KeypadCommand.h"

#include "base/LogText.h"
#include "base/VersionText.h"

namespace mevo::keypad {

namespace {

constexpr Wish allWishes[] = {Wish::ShowOrHide, Wish::Hide, Wish::Exit};

const char helpText[] = "Usage: KeypadHost [WORD]\n"
                        "On-screen keyboard of MEVOInput. One runs for each user; a further start hands its\n"
                        "word to it.\n"
                        "\n"
                        "Words:\n"
                        "  ORVKBAppShowOrHide  Show the keyboard, or hide it when it is shown. The default.\n"
                        "  ORVKBAppHide        Hide it; it stays ready.\n"
                        "  ORVKBAppExit        End it.\n"
                        "\n"
                        "Options:\n"
                        "  -h, --help     Print this and end.\n"
                        "  -v, --version  Print the version and end.\n";

CommandLine refuse(const QString &reason)
{
    return {std::nullopt, QStringLiteral("KeypadHost: %1 (--help lists the words)\n").arg(reason), true};
}

} // namespace

QString wordOf(Wish wish)
{
    switch (wish) {
    case Wish::ShowOrHide:
        return QStringLiteral("ORVKBAppShowOrHide");
    case Wish::Hide:
        return QStringLiteral("ORVKBAppHide");
    case Wish::Exit:
        return QStringLiteral("ORVKBAppExit");
    }
    return {};
}

std::optional<Wish> wishOf(const QString &word)
{
    for (const Wish wish : allWishes) {
        if (word == wordOf(wish)) {
            return wish;
        }
    }
    return std::nullopt;
}

CommandLine readCommandLine(const QStringList &arguments)
{
    if (arguments.isEmpty()) {
        return {Wish::ShowOrHide, {}, false};
    }
    const QString &first = arguments.first();
    if (first == QLatin1String("-h") || first == QLatin1String("--help")) {
        return {std::nullopt, QString::fromLatin1(helpText), false};
    }
    if (first == QLatin1String("-v") || first == QLatin1String("--version")) {
        return {std::nullopt, QStringLiteral("KeypadHost %1\n").arg(versionText()), false};
    }
    const std::optional<Wish> wish = wishOf(first);
    if (!wish) {
        return refuse(QStringLiteral("unknown word: %1").arg(logText(first)));
    }
    if (arguments.size() > 1) {
        return refuse(QStringLiteral("more than one word: %1").arg(logText(arguments.at(1))));
    }
    return {wish, {}, false};
}

Effect effectOf(Wish wish, bool visible)
{
    switch (wish) {
    case Wish::ShowOrHide:
        return visible ? Effect::Hide : Effect::Show;
    case Wish::Hide:
        return visible ? Effect::Hide : Effect::Nothing;
    case Wish::Exit:
        return Effect::End;
    }
    return Effect::Nothing;
}

} // namespace mevo::keypad
