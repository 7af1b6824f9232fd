// Paints all pictures of the program and the resource list that holds them. Part of the build only.
#include "Art.h"
#include "Brushwork.h"
#include "IconFile.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QImage>
#include <QRawFont>
#include <QSaveFile>
#include <QSet>
#include <QTextStream>

#include <algorithm>
#include <cstdio>

namespace {

using mevo::Art;

int fail(const QString &message)
{
    std::fprintf(stderr, "mevo_art: %s\n", qPrintable(message));
    return 1;
}

/// The first family that has every character of every picture; empty when there is none.
QString familyFor(const QVector<Art> &table)
{
    QSet<QChar> wanted{QChar(u'文')};
    for (const Art &art : table) {
        for (const QChar c : art.text) {
            wanted.insert(c);
        }
    }
    // Asked for a font that it has not, Qt answers with one that claims to have everything and draws boxes.
    const QStringList present = QFontDatabase().families(QFontDatabase::SimplifiedChinese);
    const QStringList liked{QStringLiteral("WenQuanYi Micro Hei"), QStringLiteral("Noto Sans CJK SC"),
                            QStringLiteral("Source Han Sans SC"), QStringLiteral("WenQuanYi Zen Hei")};
    for (const QString &family : liked + present) {
        if (!present.contains(family)) {
            continue;
        }
        const QRawFont font = QRawFont::fromFont(QFont(family), QFontDatabase::SimplifiedChinese);
        if (std::all_of(wanted.begin(), wanted.end(),
                        [&font](QChar c) { return font.supportsCharacter(c); })) {
            return family;
        }
    }
    return {};
}

QImage paint(const Art &art, qreal scale)
{
    QImage image(qRound(art.width * scale), qRound(art.height * scale), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.scale(scale, scale);
    art.paint(painter, art);
    painter.end();
    return image.convertToFormat(QImage::Format_ARGB32);
}

bool isIcon(const QString &name)
{
    return name.endsWith(QLatin1String(".ico"));
}

QString doubled(const QString &name)
{
    QString result = name;
    return result.insert(name.lastIndexOf(QLatin1String(".png")), QLatin1String("@2x"));
}

bool write(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

bool writePng(const QString &path, const QImage &image)
{
    QDir().mkpath(QFileInfo(path).path());
    return image.save(path, "PNG");
}

bool writeArt(const QString &folder, const Art &art)
{
    const QString path = folder + QLatin1Char('/') + art.name;
    if (!isIcon(art.name)) {
        return writePng(path, paint(art, 1)) && writePng(doubled(path), paint(art, 2));
    }
    QVector<QImage> sizes;
    for (const qreal scale : {1.0, 1.5, 2.0, 3.0, 4.0, 8.0, 16.0}) {
        if (art.width * scale <= 256) {
            sizes.append(paint(art, scale));
        }
    }
    return write(path, mevo::iconFile(sizes));
}

QByteArray resourceList(const QVector<Art> &table, const QVector<mevo::ArtAlias> &aliases)
{
    QByteArray text;
    QTextStream out(&text);
    out << "<RCC>\n  <qresource prefix=\"/rec\">\n";
    for (const Art &art : table) {
        out << "    <file>" << art.name << "</file>\n";
        if (!isIcon(art.name)) {
            out << "    <file>" << doubled(art.name) << "</file>\n";
        }
    }
    for (const mevo::ArtAlias &alias : aliases) {
        out << "    <file alias=\"" << alias.name << "\">" << alias.picture << "</file>\n";
        out << "    <file alias=\"" << doubled(alias.name) << "\">" << doubled(alias.picture) << "</file>\n";
    }
    out << "  </qresource>\n</RCC>\n";
    out.flush();
    return text;
}

/// All pictures side by side, plain and double, on the dark and the light halves of one sheet.
QImage contactSheet(const QVector<Art> &table)
{
    constexpr int half = 1400;
    constexpr int gap = 8;
    constexpr int label = 12;
    struct Cell
    {
        QPoint at;
        const Art *art;
    };
    QVector<Cell> cells;
    int x = gap;
    int y = gap;
    int rowHeight = 0;
    for (const Art &art : table) {
        const int width = std::max(art.width * 3 + gap, 86);
        if (x + width > half) {
            x = gap;
            y += rowHeight + gap;
            rowHeight = 0;
        }
        cells.append({QPoint(x, y), &art});
        x += width + gap;
        rowHeight = std::max(rowHeight, art.height * 2 + label);
    }
    QImage sheet(half * 2, y + rowHeight + gap, QImage::Format_ARGB32_Premultiplied);
    sheet.fill(QColor(0x28, 0x2c, 0x34));
    QPainter painter(&sheet);
    painter.fillRect(QRect(half, 0, half, sheet.height()), QColor(0xf4, 0xf4, 0xf2));
    for (const Cell &cell : cells) {
        for (const int side : {0, half}) {
            const QPoint at = cell.at + QPoint(side, 0);
            painter.setFont(mevo::artFont(9));
            painter.setPen(side == 0 ? Qt::lightGray : Qt::darkGray);
            painter.drawText(at + QPoint(0, label - 3), QFileInfo(cell.art->name).fileName());
            painter.drawImage(at + QPoint(0, label), paint(*cell.art, 1));
            painter.drawImage(at + QPoint(cell.art->width + gap, label), paint(*cell.art, 2));
        }
    }
    painter.end();
    return sheet;
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QCommandLineParser options;
    const QCommandLineOption mark(QStringLiteral("mark"), QStringLiteral("SVG of the application's mark."),
                                  QStringLiteral("file"));
    const QCommandLineOption sheet(QStringLiteral("sheet"), QStringLiteral("Paint a contact sheet instead."),
                                   QStringLiteral("file"));
    options.addOptions({mark, sheet});
    options.addPositionalArgument(QStringLiteral("folder"),
                                  QStringLiteral("Where the pictures and rec.qrc go."));
    options.process(application);

    const QVector<Art> table = mevo::allArt();
    const QVector<mevo::ArtAlias> aliases = mevo::allAliases();
    const QStringList clashes = mevo::clashingNames(table, aliases);
    if (!clashes.isEmpty()) {
        return fail(QStringLiteral("names used twice or leading nowhere: ") +
                    clashes.join(QStringLiteral(", ")));
    }
    const QString family = familyFor(table);
    if (family.isEmpty()) {
        return fail(
            QStringLiteral("no font here has the Chinese characters of the pictures; install one, for "
                           "example the package fonts-wqy-microhei or fonts-noto-cjk"));
    }
    mevo::setArtFamily(family);
    if (!mevo::setMark(options.value(mark))) {
        return fail(QStringLiteral("cannot read the application's mark: ") + options.value(mark));
    }
    if (options.isSet(sheet)) {
        return writePng(options.value(sheet), contactSheet(table))
                   ? 0
                   : fail(QStringLiteral("cannot write ") + options.value(sheet));
    }
    if (options.positionalArguments().size() != 1) {
        return fail(QStringLiteral("one folder is wanted"));
    }
    const QString folder = options.positionalArguments().constFirst();
    for (const Art &art : table) {
        if (!writeArt(folder, art)) {
            return fail(QStringLiteral("cannot write %1 in %2").arg(art.name, folder));
        }
    }
    return write(folder + QStringLiteral("/rec.qrc"), resourceList(table, aliases))
               ? 0
               : fail(QStringLiteral("cannot write rec.qrc in ") + folder);
}
