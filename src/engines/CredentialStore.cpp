#include "engines/CredentialStore.h"

#include "base/ApplicationFiles.h"
#include "base/SettingsFile.h"
#include "service/WebApiReply.h"

#include <QDebug>
#include <QFileInfo>

namespace mevo {

CredentialStore::CredentialStore(MainState &state, WebApi &api, const WebCipher &cipher, DrawNumber draw,
                                 QObject *parent)
    : QObject(parent)
    , m_state(state)
    , m_api(api)
    , m_cipher(cipher)
    , m_draw(std::move(draw))
{
}

bool CredentialStore::load(CredentialList list)
{
    const CredentialListRow &row = credentialList(list);
    return drawAccount(row, appFile(QLatin1String(row.file)), m_cipher, m_draw, m_state);
}

bool CredentialStore::LoadBaiduCredentials(const QString &file)
{
    for (const CredentialListRow &row : credentialLists()) {
        if (row.voiceType != nullptr && file == QLatin1String(row.file)) {
            return load(row.id);
        }
    }
    return false;
}

bool CredentialStore::LoadCurrentBaiduCredentials()
{
    const SettingsFile settings;
    const QString chosen = settings.value(QStringLiteral("BaiDuCurrentVoiceType")).toString();
    // Without a choice the request goes out in Mandarin, and needs that language's account.
    const CredentialListRow *row = baiduCredentialList(chosen.isEmpty() ? QStringLiteral("1537") : chosen);
    return row != nullptr && load(row->id);
}

bool CredentialStore::DownloadCredentialFile(CredentialList list)
{
    return fetch(list) == Fetched::Written;
}

CredentialStore::Fetched CredentialStore::fetch(CredentialList list)
{
    const CredentialListRow &row = credentialList(list);
    const WebCipher &cipher = m_cipher;
    const QString sql = statementText(row.statement, {m_state.SchemaName});
    const QString text = m_api.RunBackendSql(this, sql, m_state.ServerUrl, DownloadTimeoutMs);
    if (text.isNull()) {
        return Fetched::NoAnswer; // offline, no answer, or we are gone
    }
    const std::optional<WebApiReply> reply = unwrapReply(cipher, text);
    if (!reply || reply->items <= 0 || reply->rows.size() != static_cast<std::size_t>(reply->items)) {
        qInfo("Accounts: the service gave none for %s; the file stays", row.file);
        return Fetched::Nothing;
    }
    return writeCredentialFile(row, appFile(QLatin1String(row.file)), reply->rows) ? Fetched::Written
                                                                                   : Fetched::Nothing;
}

void CredentialStore::RefreshCredentialFiles()
{
    download(listsOfOtherSize(m_state, [](const QString &file) { return QFileInfo(appFile(file)).size(); }));
}

void CredentialStore::FetchUnsizedCredentialFiles()
{
    download(listsWithoutSize(m_state));
}

void CredentialStore::download(const std::vector<CredentialList> &lists)
{
    if (m_downloading) {
        return; // the device record is being applied again while we wait for an answer
    }
    m_downloading = true;
    const QPointer<CredentialStore> alive(this);
    for (const CredentialList list : lists) {
        const Fetched fetched = fetch(list);
        if (alive.isNull()) {
            return;
        }
        if (fetched == Fetched::NoAnswer) {
            // The start waits for this, and a service that has once not answered would hold it up again for
            // each of the others.
            qInfo("Accounts: no answer for %s; the other lists stay too", credentialList(list).file);
            break;
        }
    }
    m_downloading = false;
}

} // namespace mevo
