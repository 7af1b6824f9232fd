#include "engines/CredentialFile.h"

#include "base/SettingsFile.h"
#include "service/WebApiReply.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace mevo {

namespace {

QString textUpToNul(const QVariant &value)
{
    const QByteArray bytes = value.toByteArray();
    return QString::fromUtf8(bytes.constData(),
                             static_cast<int>(qstrnlen(bytes.constData(), uint(bytes.size()))));
}

} // namespace

bool drawAccount(const CredentialListRow &list, const QString &path, const WebCipher &cipher,
                 const DrawNumber &draw, EngineState &state)
{
    if (!QFileInfo::exists(path)) {
        qInfo("Accounts: %s is not there", list.file);
        return false;
    }
    SettingsFile file(QString(), path);
    const QStringList groups = file.childGroups();
    if (groups.isEmpty()) {
        qInfo("Accounts: %s holds none", list.file);
        return false;
    }
    const QString &group = groups.at(draw(0, groups.size()));
    file.beginGroup(group);
    QString values[3];
    for (int key = 0; key < list.keys; ++key) {
        const std::optional<QString> value =
            decipherField(cipher, textUpToNul(file.value(QString::number(key))));
        if (!value) {
            qWarning("Accounts: account %s of %s cannot be read", qPrintable(group), list.file);
            return false;
        }
        values[key] = *value;
    }
    for (int key = 0; key < list.keys; ++key) {
        state.*list.members[key] = values[key];
    }
    return true;
}

bool writeCredentialFile(const CredentialListRow &list, const QString &path,
                         const std::vector<QJsonObject> &rows)
{
    // Not written in place: after a failed write QSettings goes on holding the new values for that path.
    const QString fresh = path + QStringLiteral(".new");
    bool saved = false;
    {
        SettingsFile file(QString(), fresh);
        file.clear();
        int group = 0;
        for (const QJsonObject &row : rows) {
            file.beginGroup(QString::number(group++));
            for (int key = 0; key < list.keys; ++key) {
                file.setValue(QString::number(key), columnText(row, QStringLiteral("F%1").arg(key)));
            }
            file.endGroup();
        }
        saved = file.save();
    }
    if (saved &&
        std::rename(QFile::encodeName(fresh).constData(), QFile::encodeName(path).constData()) != 0) {
        qWarning("Accounts: %s cannot be replaced: %s", list.file, std::strerror(errno));
        saved = false;
    }
    if (!saved) {
        QFile::remove(fresh);
    }
    return saved;
}

} // namespace mevo
