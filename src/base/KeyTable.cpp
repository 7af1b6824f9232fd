#include "base/KeyTable.h"

#include "base/ApplicationFiles.h"

#include <QDebug>
#include <QFile>

namespace mevo {

KeyTable parseKeyTable(const QByteArray &ini)
{
    KeyTable table;
    QString group, name, code;
    const auto endGroup = [&] {
        if (!name.isEmpty() && !code.isEmpty()) {
            table.names.append(name);
            table.codes.append(code);
        } else if (!group.isEmpty()) {
            qWarning().noquote() << "Key table: group" << group << "has no name or no code";
        }
        name.clear();
        code.clear();
    };
    for (const QString &raw : QString::fromUtf8(ini).split(QLatin1Char('\n'))) {
        const QString line = raw.trimmed();
        if (line.startsWith(QLatin1Char('['))) {
            endGroup();
            group = line.mid(1).chopped(line.endsWith(QLatin1Char(']')) ? 1 : 0);
            continue;
        }
        const int equals = line.indexOf(QLatin1Char('='));
        const QString key = line.left(equals).trimmed();
        QString value = line.mid(equals + 1).trimmed();
        if (value.size() > 1 && value.startsWith(QLatin1Char('"')) && value.endsWith(QLatin1Char('"'))) {
            value = value.mid(1, value.size() - 2);
        }
        if (equals > 0 && key == QLatin1String("ShowName")) {
            name = value;
        } else if (equals > 0 && key == QLatin1String("VKCode")) {
            code = value;
        }
    }
    endGroup();
    return table;
}

KeyTable loadKeyTable()
{
    QFile file(appFile(QStringLiteral("MEVKeysSetting.ini")));
    return file.open(QIODevice::ReadOnly) ? parseKeyTable(file.readAll()) : KeyTable();
}

} // namespace mevo
