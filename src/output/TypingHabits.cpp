#include "output/TypingHabits.h"

#include <algorithm>

namespace mevo {

TypingHabits typingHabits(const QStringList &programs)
{
    const auto isOneOf = [&programs](const QStringList &names) {
        return std::any_of(programs.begin(), programs.end(), [&names](const QString &program) {
            return names.contains(program, Qt::CaseInsensitive);
        });
    };
    // Editors of KTextEditor heed the first half of the pair alone, which is no printable character.
    static const QStringList textEditor{QStringLiteral("kate"), QStringLiteral("kwrite"),
                                        QStringLiteral("kdevelop")};
    // The class of every window of the office is "libreoffice", or that of the part that it was started as.
    static const QStringList office{
        QStringLiteral("libreoffice"),      QStringLiteral("libreoffice-writer"),
        QStringLiteral("libreoffice-calc"), QStringLiteral("libreoffice-impress"),
        QStringLiteral("libreoffice-draw"), QStringLiteral("libreoffice-base"),
        QStringLiteral("libreoffice-math"), QStringLiteral("libreoffice-startcenter"),
        QStringLiteral("soffice"),          QStringLiteral("soffice.bin")};
    TypingHabits habits;
    habits.dropsPairs = isOneOf(textEditor);
    habits.dropsPairsUnfocused = isOneOf(office); // with the widgets of GTK 3, which its class does not tell
    habits.pairsOvertake = isOneOf(office);
    habits.ownKeysLag = isOneOf(office);
    habits.mergesRepeats = isOneOf(office);
    // Windows of Java's own widgets, whatever the program.
    habits.oneState = std::any_of(programs.begin(), programs.end(), [](const QString &program) {
        return program.startsWith(QLatin1String("sun-awt-X11-"));
    });
    return habits;
}

int typableLength(const QString &text, const TypingHabits &habits)
{
    const auto surrogate = std::find_if(text.begin(), text.end(), [](QChar c) { return c.isSurrogate(); });
    return habits.dropsPairs ? static_cast<int>(surrogate - text.begin()) : text.size();
}

} // namespace mevo
