#include "base/KeyTable.h"

#include "base/ApplicationFiles.h"
#include "base/IniLine.h"
#include "base/IniValue.h"
#include "base/LogText.h"
#include "base/WholeFile.h"

#include <QDebug>
#include <QHash>

namespace mevo {

namespace {

void logIncomplete(const KeyTable &table, const QStringList &groups)
{
    int count = 0;
    QString first;
    for (int i = 0; i < groups.size(); ++i) {
        if (table.names[i].isEmpty() || table.codes[i].isEmpty()) {
            first = count++ == 0 ? groups[i] : first;
        }
    }
    if (count > 0) {
        qWarning().noquote() << "Key table:" << count << "keys have no name or no code, the first is group"
                             << logText(first);
    }
}

} // namespace

KeyTable parseKeyTable(const QByteArray &ini)
{
    KeyTable table;
    QStringList groups;
    QHash<QString, int> places;
    int at = -1;
    std::string_view text(ini.constData(), std::size_t(ini.size()));
    if (text.substr(0, utf8Mark.size()) == utf8Mark) {
        text.remove_prefix(utf8Mark.size());
    }
    while (!text.empty()) {
        const IniLine line = takeIniLine(text);
        if (line.kind == IniLine::Kind::Group) {
            const QString name = readIniName(line.name);
            at = places.value(name, groups.size());
            if (at == groups.size()) {
                places.insert(name, at);
                groups.append(name);
                table.names.append(QString());
                table.codes.append(QString());
            }
        } else if (line.kind == IniLine::Kind::Entry && at >= 0) {
            if (line.name == "ShowName") {
                table.names[at] = readIniValue(line.value).text();
            } else if (line.name == "VKCode") {
                table.codes[at] = readIniValue(line.value).text();
            }
        }
    }
    logIncomplete(table, groups);
    return table;
}

KeyTable loadKeyTable()
{
    return parseKeyTable(readWholeFile(appFile(QStringLiteral("MEVKeysSetting.ini"))).value_or(QByteArray()));
}

} // namespace mevo
