#pragma once

#include "state/OwnAccounts.h"

#include <QByteArray>
#include <QString>

namespace mevo {

/// What keeps an account from being used.
enum class AccountFault {
    None,
    Incomplete, ///< a field is empty
    WrongId,    ///< the service does not know the id or key that names the account
    WrongSecret,
    NotOpened, ///< the account lacks the service, or may not use it from here
    Quota,
    ClockWrong, ///< of this computer
    NoNetwork,
    TimeOut,
    ServiceFails ///< anything else that the service says
};

/// What one request with an account has shown.
struct AccountVerdict
{
    AccountFault fault = AccountFault::None;
    QString detail; ///< the service's own words, 200 characters at most

    bool operator==(const AccountVerdict &other) const
    {
        return fault == other.fault && detail == other.detail;
    }
};

// Each takes an answer of its service, with the HTTP status where that says something. An error that is about
// the silence that was sent means that the account was accepted.

/// Baidu's token service (https://ai.baidu.com/ai-doc/REFERENCE/Ck3dwjhhu).
AccountVerdict baiduTokenVerdict(int status, const QByteArray &body);
/// Baidu's short speech service.
AccountVerdict baiduSpeechVerdict(int status, const QByteArray &body);
/// Tencent's sentence recognition.
AccountVerdict tencentVerdict(int status, const QByteArray &body);
/// XunFei's dictation service where it refuses the connection.
AccountVerdict xunFeiRefusal(int status, const QByteArray &body);
/// A message of XunFei's dictation service.
AccountVerdict xunFeiVerdict(const QString &message);
/// Baidu's general translation service (https://fanyi-api.baidu.com/doc/21).
AccountVerdict translationVerdict(int status, const QByteArray &body);

/// The verdict in words for the user, translated.
QString accountVerdictText(const AccountVerdict &verdict);

} // namespace mevo
