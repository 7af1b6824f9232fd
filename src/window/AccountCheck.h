#pragma once

#include "base/ServiceEndpoints.h"
#include "engines/AccountVerdict.h"
#include "platform/SystemServices.h"
#include "state/MainState.h"

#include <QNetworkAccessManager>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include <functional>

class QWebSocket;

namespace mevo {

/// Tries one account by the small request that its service is used with: half a second of silence to be
/// recognised, one word to be translated. Nothing blocks; with this object the request goes. Neither usage
/// counters nor the account in force are touched.
class AccountCheck : public QObject
{
    Q_OBJECT

public:
    using Done = std::function<void(const AccountVerdict &verdict)>;

    /// `state` gives the proxy. All but `endpoints` must outlive this object.
    AccountCheck(const MainState &state, const SystemFacts &facts, const Time &time,
                 EngineEndpoints endpoints, QObject *parent = nullptr);
    ~AccountCheck() override;

    /// Once. `done` is called from the event loop, at most `timeoutMs` later.
    void start(AccountService service, const OwnAccounts::Values &values, Done done);

    int timeoutMs = 10000;

private:
    using Answer = std::function<void(int status, const QByteArray &body)>;
    void checkBaidu();
    void checkBaiduSpeech(const QString &token);
    void checkTencent();
    void checkXunFei();
    void explainXunFei(const QUrl &url);
    void checkTranslation();
    /// `body` null for a GET.
    void send(const QNetworkRequest &request, const QByteArray &body, bool checkCertificate,
              const Answer &answer);
    void finish(AccountVerdict verdict);

    const MainState &m_state;
    const SystemFacts &m_facts;
    const Time &m_time;
    const EngineEndpoints m_endpoints;
    OwnAccounts::Values m_values;
    Done m_done;
    QNetworkAccessManager m_manager;
    QWebSocket *m_socket = nullptr;
    QTimer m_limit;
};

} // namespace mevo
