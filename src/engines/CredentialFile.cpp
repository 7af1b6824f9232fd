#include "engines/CredentialFile.h"

#include "base/IniText.h"
#include "base/IniValue.h"
#include "base/LogText.h"
#include "base/WholeFile.h"

#include <QDebug>

#include <algorithm>

namespace mevo {

namespace {

QString textUpToNul(const QVariant &value)
{
    return value.toString().section(QChar(0), 0, 0);
}

/// Whether a row of the service has each text of an account. Numbers, nulls and empty texts are none.
bool isAccount(const QJsonObject &row, int keys)
{
    for (int key = 0; key < keys; ++key) {
        if (row.value(QStringLiteral("F%1").arg(key)).toString().isEmpty()) {
            return false;
        }
    }
    return true;
}

} // namespace

bool drawAccount(const CredentialListRow &list, const QString &path, const WebCipher &cipher,
                 const DrawNumber &draw, EngineState &state)
{
    const IniText file(readWholeFile(path).value_or(QByteArray()));
    const QStringList groups = file.groups();
    if (groups.isEmpty()) {
        qInfo("Accounts: %s is not there or holds none", list.file);
        return false;
    }
    const QString &group = groups.at(draw(0, groups.size()));
    bool whole = true;
    for (int key = 0; key < list.keys; ++key) {
        const QVariant stored = file.value(group + QLatin1Char('/') + QString::number(key));
        const std::optional<QString> value = decipherField(cipher, textUpToNul(stored));
        whole = whole && value;
        state.*list.members[key] = value.value_or(QString());
    }
    if (!whole) {
        qWarning().noquote() << "Accounts: account" << logText(group) << "of" << list.file
                             << "cannot be read";
    }
    return true;
}

bool writeCredentialFile(const CredentialListRow &list, const QString &path,
                         const std::vector<QJsonObject> &rows)
{
    if (!std::all_of(rows.begin(), rows.end(), [&](const auto &row) { return isAccount(row, list.keys); })) {
        qWarning("Accounts: the list for %s has a row without its texts; the file stays", list.file);
        return false;
    }
    QByteArray text;
    for (std::size_t group = 0; group < rows.size(); ++group) {
        text += (group == 0 ? "[" : "\n[") + QByteArray::number(qulonglong(group)) + "]\n";
        for (int key = 0; key < list.keys; ++key) {
            const QString value = rows[group].value(QStringLiteral("F%1").arg(key)).toString();
            text += QByteArray::number(key) + '=' + iniValueText(value) + '\n';
        }
    }
    const QString failure = replaceWholeFile(path, text);
    if (!failure.isEmpty()) {
        qWarning().noquote() << "Accounts:" << list.file << "cannot be replaced:" << failure;
    }
    return failure.isEmpty();
}

} // namespace mevo
