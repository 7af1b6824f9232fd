#include "engines/CredentialStore.h"

#include "base/ApplicationFiles.h"
#include "base/SettingsFile.h"
#include "engines/AccountChoice.h"
#include "service/WebApiReply.h"

#include <QDebug>
#include <QFileInfo>

#include <algorithm>

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
    if (const auto own = ownAccountFor(row, m_state.ownAccounts)) {
        for (int key = 0; key < row.keys; ++key) {
            m_state.*row.members[key] = (*own)[std::size_t(key)];
        }
        return true;
    }
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
    const CredentialListRow *row =
        baiduCredentialList(settings.value(QStringLiteral("BaiDuCurrentVoiceType")).toString());
    if (row == nullptr && m_state.ownAccounts.isComplete(AccountService::Baidu)) {
        return load(CredentialList::BaiduMandarin); // the user's own serves every language
    }
    return row != nullptr && load(row->id);
}

QString CredentialStore::statementOf(CredentialList list) const
{
    return statementText(credentialList(list).statement, {m_state.SchemaName});
}

bool CredentialStore::DownloadCredentialFile(CredentialList list)
{
    const QPointer<CredentialStore> alive(this);
    const QString answer = m_api.RunBackendSql(this, statementOf(list), m_state.ServerUrl, DownloadTimeoutMs);
    return !alive.isNull() && keep(list, answer);
}

/// Writes what the service answered for a list, if that is a list.
bool CredentialStore::keep(CredentialList list, const QString &answer)
{
    const CredentialListRow &row = credentialList(list);
    if (answer.isNull()) {
        qInfo("Accounts: no answer for %s; the file stays", row.file);
        return false;
    }
    const std::optional<WebApiReply> reply = unwrapReply(m_cipher, answer);
    if (!reply || reply->items <= 0 || reply->rows.size() != static_cast<std::size_t>(reply->items)) {
        qInfo("Accounts: the service gave none for %s; the file stays", row.file);
        return false;
    }
    return writeCredentialFile(row, appFile(QLatin1String(row.file)), reply->rows);
}

void CredentialStore::RefreshCredentialFiles()
{
    download(listsOfOtherSize(m_state, [](const QString &file) { return QFileInfo(appFile(file)).size(); }));
}

void CredentialStore::FetchUnsizedCredentialFiles()
{
    download(listsWithoutSize(m_state));
}

bool CredentialStore::FetchMissingCredentialFiles()
{
    std::vector<CredentialList> lists = listsWithoutSize(m_state);
    lists.erase(
        std::remove_if(lists.begin(), lists.end(),
                       [](CredentialList list) {
                           return QFileInfo(appFile(QLatin1String(credentialList(list).file))).size() > 0;
                       }),
        lists.end());
    return download(lists);
}

bool CredentialStore::download(const std::vector<CredentialList> &lists)
{
    if (m_downloading || lists.empty()) {
        return false; // the device record is being applied again while we wait for an answer
    }
    m_downloading = true;
    std::vector<QString> statements;
    for (const CredentialList list : lists) {
        statements.push_back(statementOf(list));
    }
    const QPointer<CredentialStore> alive(this);
    const std::vector<QString> answers =
        m_api.RunBackendSqls(this, statements, m_state.ServerUrl, DownloadTimeoutMs);
    if (alive.isNull()) {
        return false;
    }
    m_downloading = false;
    bool kept = false;
    for (std::size_t i = 0; i < lists.size(); ++i) {
        kept = keep(lists[i], answers[i]) || kept;
    }
    return kept;
}

} // namespace mevo
