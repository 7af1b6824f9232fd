#pragma once

#include "base/ServiceEndpoints.h"
#include "engines/RandomInRange.h"
#include "service/WebApi.h"
#include "state/MainState.h"
#include "translation/TranslationHost.h"

#include <QObject>
#include <QPair>
#include <QString>
#include <QUrl>

/// Sends one text to the translation service and reads the answer. GUI thread only; a request waits in a
/// nested event loop, in which this object may be deleted or asked again.
class Parser : public QObject
{
    Q_OBJECT

public:
    /// Takes the translation account that is drawn; while there is none, and when the user's own accounts
    /// have changed, a request looks again. All but `endpoints` must outlive this object.
    Parser(MainState &state, mevo::WebApi &api, mevo::TranslationHost &host, mevo::EngineEndpoints endpoints,
           QObject *parent = nullptr);

    /// Translates `text`, as it stands, and counts it. True with the first segment of the translation, false
    /// with `text` when no answer came, false with nothing when it was something else.
    QPair<bool, QString> request(const QString &text, const QString &from, const QString &to);

    mevo::DrawNumber drawSalt = RandomInRange; ///< for tests
    int requestTimeoutMs = 2000;

private:
    void takeAccount();
    void count(int receiver);

    MainState &m_state;
    mevo::WebApi &m_api;
    mevo::TranslationHost &m_host;
    mevo::EngineEndpoints m_endpoints;

    QUrl m_url;
    QString m_appid;
    qint32 m_salt = 0;
    QString m_secret;         ///< never logged
    int m_accountChanges = 0; ///< of the user's own accounts, when this one was taken
    QString m_sign;           ///< of the last request
};
