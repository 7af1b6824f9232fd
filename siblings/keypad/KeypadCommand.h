#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace mevo::keypad {

/// What the keyboard is asked to do.
enum class Wish {
    ShowOrHide,
    Hide,
    Exit,
};

/// What a command line asks for, told before a display is opened.
struct CommandLine
{
    std::optional<Wish> wish;
    QString text; ///< without a wish: for standard output, or for standard error where it is refused
    bool refused = false;

    /// What the process ends with when there is no wish.
    int exitCode() const { return refused ? 2 : 0; }
};

/// Reads the arguments behind the program's name: one of the three words, "--help" or "--version". No
/// argument at all is a wish to see the keyboard.
CommandLine readCommandLine(const QStringList &arguments);

/// "ORVKBAppShowOrHide", "ORVKBAppHide", "ORVKBAppExit".
QString wordOf(Wish wish);
/// Nothing for any other text; upper and lower case differ.
std::optional<Wish> wishOf(const QString &word);

/// What a wish makes of a keyboard that is shown or hidden.
enum class Effect { Nothing, Show, Hide, End };
Effect effectOf(Wish wish, bool visible);

} // namespace mevo::keypad
