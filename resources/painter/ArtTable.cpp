#include "Art.h"

#include <QSet>
#include <QStringList>

namespace mevo {

QVector<Art> allArt()
{
    QVector<Art> table;
    QVector<ArtAlias> aliases;
    addBarArt(table);
    addLanguageArt(table, aliases);
    addTipArt(table);
    addTrayArt(table);
    addTranslationArt(table);
    addTransButtonArt(table);
    return table;
}

QVector<ArtAlias> allAliases()
{
    QVector<Art> table;
    QVector<ArtAlias> aliases;
    addLanguageArt(table, aliases);
    return aliases;
}

QStringList clashingNames(const QVector<Art> &pictures, const QVector<ArtAlias> &aliases)
{
    QStringList wrong;
    QSet<QString> drawn;
    for (const Art &art : pictures) {
        if (drawn.contains(art.name)) {
            wrong << art.name;
        }
        drawn.insert(art.name);
    }
    QSet<QString> taken = drawn;
    for (const ArtAlias &alias : aliases) {
        if (taken.contains(alias.name) || !drawn.contains(alias.picture)) {
            wrong << alias.name;
        }
        taken.insert(alias.name);
    }
    return wrong;
}

} // namespace mevo
