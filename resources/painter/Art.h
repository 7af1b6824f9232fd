#pragma once

#include <QColor>
#include <QPainter>
#include <QString>
#include <QVector>

namespace mevo {

struct Art;

/// Paints one picture into the rectangle (0, 0, width, height). The painter is already scaled, so that one
/// function serves the plain and the double size.
using PaintArt = void (*)(QPainter &painter, const Art &art);

/// One row of the table of pictures.
struct Art
{
    QString name; ///< path below ":/rec/", with its extension; ".ico" rows become multi-size icons
    int width;
    int height; ///< in pixels of the plain size
    PaintArt paint;
    int variant = 0; ///< what the function tells its pictures apart by
    QString text;    ///< words in the picture, empty for most
};

/// A second name under which the program asks for a picture.
struct ArtAlias
{
    QString name;
    QString picture;
};

/// All rows, in the order of the contact sheet.
QVector<Art> allArt();
QVector<ArtAlias> allAliases();

/// Names that occur more than once among pictures and aliases, or aliases of nothing. Empty when all is well.
QStringList clashingNames(const QVector<Art> &pictures, const QVector<ArtAlias> &aliases);

void addBarArt(QVector<Art> &table);
void addLanguageArt(QVector<Art> &table, QVector<ArtAlias> &aliases);
void addTipArt(QVector<Art> &table);
void addTrayArt(QVector<Art> &table);
void addTranslationArt(QVector<Art> &table);
void addTransButtonArt(QVector<Art> &table);

} // namespace mevo
