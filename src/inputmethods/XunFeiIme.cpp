#include "inputmethods/XunFeiIme.h"

#include "base/WholeFile.h"

#include <QDebug>
#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

namespace mevo {

namespace {

constexpr qint64 largestConfig = 4 << 20;
constexpr int indent = 4;

const QString hotKeyPrefix = QStringLiteral("enable=1;keyStr=");
const QString wantedHotKey = QStringLiteral("enable=1;keyStr=F6");

bool parse(QDomDocument &document, const QByteArray &xml)
{
    QString error;
    if (xml.size() <= largestConfig && document.setContent(xml, &error) &&
        !document.documentElement().isNull()) {
        return true;
    }
    if (!xml.isEmpty()) {
        qWarning().noquote() << "Input method: a settings file of XunFei's cannot be read:" << error;
    }
    return false;
}

QDomElement element(const QDomDocument &document, const char *name)
{
    return document.elementsByTagName(QLatin1String(name)).at(0).toElement();
}

void setText(QDomDocument &document, QDomElement &element, const QString &text)
{
    for (QDomNode node = element.firstChild(); !node.isNull();) {
        const QDomNode next = node.nextSibling();
        if (node.isText() || node.isCDATASection()) {
            element.removeChild(node);
        }
        node = next;
    }
    element.appendChild(document.createTextNode(text));
}

/// What stands in the file system; the user's bits tell what this process may do, which a root may always.
QFile::Permissions storedPermissions(const QFile &file)
{
    return file.permissions() & ~(QFile::ReadUser | QFile::WriteUser | QFile::ExeUser);
}

} // namespace

QString xunFeiFolder(const QString &genericData, bool xpClass)
{
    return QDir::cleanPath(genericData + (xpClass ? QStringLiteral("/../../localLow/iFly Info Tek/iFlyIME")
                                                  : QStringLiteral("/../localLow/iFly Info Tek/iFlyIME"))) +
           QLatin1Char('/');
}

std::optional<XunFeiInstallation> parseIflyImeCfg(const QByteArray &xml)
{
    QDomDocument document;
    if (!parse(document, xml)) {
        return std::nullopt;
    }
    XunFeiInstallation found;
    for (QDomElement child = document.documentElement().firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        const QString text = child.text().trimmed();
        if (child.tagName() == QLatin1String("installPath_ver2")) {
            found.folder = text;
        } else if (child.tagName() == QLatin1String("ver")) {
            const int digit = text.isEmpty() ? -1 : text.front().digitValue();
            found.generation = digit > 0 ? digit : 0;
        }
    }
    return found;
}

std::optional<bool> xunFeiOfflineMode(const QByteArray &configXml)
{
    QDomDocument document;
    if (!parse(document, configXml)) {
        return std::nullopt;
    }
    const QDomElement mode = element(document, "offline_recognizer_mode");
    return mode.isNull() ? std::nullopt : std::make_optional(mode.text().trimmed() == QLatin1String("2"));
}

int usageOfKeyText(const QString &startEnd)
{
    constexpr int usageF1 = 0x3a;
    for (const QString &part : startEnd.split(QLatin1Char(';'))) {
        if (!part.trimmed().startsWith(QLatin1String("keyStr="))) {
            continue;
        }
        const QString key = part.mid(part.indexOf(QLatin1Char('=')) + 1).section(QLatin1Char('+'), -1);
        const QString end = key.trimmed().right(2); // "F9", and "10" of "F10"
        for (int number = 1; number <= 12; ++number) {
            const QString name = number < 10 ? QStringLiteral("F%1").arg(number) : QString::number(number);
            if (end == name) {
                return usageF1 + number - 1;
            }
        }
    }
    return 0;
}

std::optional<XunFeiHotKey> xunFeiHotKey(const QByteArray &configXml)
{
    QDomDocument document;
    if (!parse(document, configXml)) {
        return std::nullopt;
    }
    QDomElement startEnd = element(document, "start_end");
    if (startEnd.isNull()) {
        return std::nullopt;
    }
    const QString text = startEnd.text();
    if (text.contains(hotKeyPrefix)) {
        return XunFeiHotKey{usageOfKeyText(text), {}};
    }
    setText(document, startEnd, wantedHotKey);
    XunFeiHotKey changed{usageOfKeyText(wantedHotKey), {}};
    QTextStream stream(&changed.rewritten);
    stream.setCodec("UTF-8"); // the document's own encoding goes before, when it names one
    document.save(stream, indent);
    stream.flush();
    return changed;
}

XunFeiConfiguration configureXunFeiFile(const QString &path, bool mayChange)
{
    if (!QFileInfo(path).isFile()) {
        return {};
    }
    QFile file(path);
    const QFile::Permissions before = storedPermissions(file);
    const bool readOnly = (before & QFile::WriteOwner) == 0;
    if (mayChange && readOnly) {
        file.setPermissions(before | QFile::ReadOwner | QFile::WriteOwner);
    }
    const auto leaveAlone = [&](const XunFeiConfiguration &found = {}) {
        if (mayChange && readOnly) {
            file.setPermissions(before);
        }
        return found;
    };
    const auto content = readWholeFile(path);
    const auto hotKey = content ? xunFeiHotKey(*content) : std::nullopt;
    if (!hotKey) {
        qWarning().noquote() << "Input method: the hot key of XunFei's cannot be read, its settings stay";
        return leaveAlone();
    }
    if (hotKey->rewritten.isEmpty()) {
        return leaveAlone({XunFeiConfigured::AsItStands, hotKey->usage});
    }
    if (!mayChange) {
        return {XunFeiConfigured::AsItStands, 0};
    }
    const QString error = replaceWholeFile(path, hotKey->rewritten);
    if (!error.isEmpty()) {
        qWarning().noquote() << "Input method: the settings of XunFei's cannot be written:" << error;
        return leaveAlone();
    }
    file.setPermissions(QFile::ReadOwner);
    qInfo("Input method: the hot key of XunFei's has been set to F6");
    return {XunFeiConfigured::Changed, hotKey->usage};
}

QString replaceXunFeiConfig(const QString &source, const QString &path)
{
    const auto content = readWholeFile(source);
    QDomDocument document;
    if (!content || !parse(document, *content)) {
        return QFileInfo(source).fileName();
    }
    if (!QFileInfo(QFileInfo(path).path()).isDir()) {
        return QFileInfo(path).path(); // that input method is not installed
    }
    QFile file(path);
    const bool existed = file.exists();
    const QFile::Permissions before = storedPermissions(file);
    if (existed) {
        file.setPermissions(before | QFile::ReadOwner | QFile::WriteOwner);
    }
    const QString error = replaceWholeFile(path, *content);
    if (existed) {
        file.setPermissions(before); // one that was made read-only stays so
    }
    return error;
}

} // namespace mevo
