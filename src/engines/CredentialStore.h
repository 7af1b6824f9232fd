#pragma once

#include "engines/CredentialFile.h"
#include "service/WebApi.h"
#include "state/MainState.h"

#include <QPointer>

namespace mevo {

/// The account lists of the cloud services: draws accounts from their files, and keeps the files as the
/// service has them. GUI thread; downloads run in nested event loops.
class CredentialStore : public QObject
{
    Q_OBJECT

public:
    /// All but `draw` must outlive this object, which may itself end during a download.
    CredentialStore(MainState &state, WebApi &api, const WebCipher &cipher, DrawNumber draw = RandomInRange,
                    QObject *parent = nullptr);

    /// Each draws one account, or takes the user's own where there is one. A list without a readable one
    /// leaves the account before it; false then.
    bool LoadXunFeiCredentials() { return load(CredentialList::XunFei); }
    bool LoadXunFeiMinorCredentials() { return load(CredentialList::XunFeiMinor); }
    bool LoadBaiduCredentials(const QString &file);
    bool LoadBaiduTtsCredentials() { return load(CredentialList::BaiduTts); }
    bool LoadBaiduTranslateCredentials() { return load(CredentialList::BaiduTranslate); }
    /// Draws for the Baidu language that the settings file tells; a language without a list draws nothing.
    bool LoadCurrentBaiduCredentials();

    /// Fetches one list and replaces its file. False, and the file stays, when offline, on any failure,
    /// and when the service has no accounts.
    bool DownloadCredentialFile(CredentialList list);
    /// Fetches, side by side, every list whose file differs in size from what the product record told. Those
    /// that are not answered keep their files and hold up no other.
    void RefreshCredentialFiles();
    /// The same for the lists that the product record tells no size of.
    void FetchUnsizedCredentialFiles();
    /// The same for those of them that have no file. True when one has come.
    bool FetchMissingCredentialFiles();

    static constexpr int DownloadTimeoutMs = 3000;

private:
    bool load(CredentialList list);
    QString statementOf(CredentialList list) const;
    bool keep(CredentialList list, const QString &answer);
    bool download(const std::vector<CredentialList> &lists);

    MainState &m_state;
    WebApi &m_api;
    const WebCipher &m_cipher;
    DrawNumber m_draw;
    bool m_downloading = false;
};

} // namespace mevo
