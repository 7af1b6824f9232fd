#include "engines/AccountVerdict.h"

#include "engines/BaiduReply.h"
#include "engines/BaiduToken.h"
#include "engines/TencentReply.h"
#include "engines/XunFeiMessage.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <iterator>

namespace mevo {

namespace {

constexpr int longestDetail = 200;

AccountVerdict verdict(AccountFault fault, const QString &detail = QString())
{
    return {fault, detail.simplified().left(longestDetail)};
}

QString withNumber(int number, const QString &text)
{
    return QStringLiteral("%1 %2").arg(number).arg(text);
}

/// An answer that no rule knows.
AccountVerdict unknownAnswer(int status, const QByteArray &body)
{
    return verdict(AccountFault::ServiceFails,
                   QStringLiteral("HTTP %1 %2").arg(status).arg(QString::fromUtf8(body.left(longestDetail))));
}

struct NumberRow
{
    int number;
    AccountFault fault;
};

template <std::size_t Count>
AccountFault faultOf(const NumberRow (&rows)[Count], int number)
{
    const auto row = std::find_if(std::begin(rows), std::end(rows),
                                  [number](const NumberRow &each) { return each.number == number; });
    return row == std::end(rows) ? AccountFault::ServiceFails : row->fault;
}

constexpr NumberRow baiduSpeechErrors[] = {
    {0, AccountFault::None},         {3301, AccountFault::None}, // quality of the sound
    {3302, AccountFault::NotOpened}, {3303, AccountFault::ServiceFails}, {3304, AccountFault::Quota},
    {3305, AccountFault::Quota},     {3307, AccountFault::None}, // nothing recognised
    {3314, AccountFault::None},                                  // too short
    {4, AccountFault::Quota},        {6, AccountFault::NotOpened},       {17, AccountFault::Quota},
    {18, AccountFault::Quota},       {19, AccountFault::Quota},
};

constexpr NumberRow xunFeiErrors[] = {
    {0, AccountFault::None},          {10105, AccountFault::NotOpened}, {10110, AccountFault::NotOpened},
    {10313, AccountFault::WrongId},   {10700, AccountFault::NotOpened}, {10800, AccountFault::Quota},
    {11200, AccountFault::NotOpened}, {11201, AccountFault::Quota},     {11202, AccountFault::Quota},
    {11203, AccountFault::Quota},
};

constexpr NumberRow translationErrors[] = {
    {52000, AccountFault::None},      {52003, AccountFault::WrongId},   {54001, AccountFault::WrongSecret},
    {54003, AccountFault::Quota},     {54004, AccountFault::Quota},     {58000, AccountFault::NotOpened},
    {58002, AccountFault::NotOpened}, {90107, AccountFault::NotOpened},
};

struct CodeRow
{
    const char *beginning; ///< of the code
    AccountFault fault;
};

/// The first that fits counts.
constexpr CodeRow tencentErrors[] = {
    {"AuthFailure.SecretIdNotFound", AccountFault::WrongId},
    {"AuthFailure.InvalidSecretId", AccountFault::WrongId},
    {"AuthFailure.SignatureExpire", AccountFault::ClockWrong},
    {"AuthFailure.SignatureFailure", AccountFault::WrongSecret},
    {"AuthFailure", AccountFault::NotOpened},
    {"UnauthorizedOperation", AccountFault::NotOpened},
    {"FailedOperation.UserNotRegistered", AccountFault::NotOpened},
    {"FailedOperation.CheckAuthInfoFailed", AccountFault::NotOpened},
    {"FailedOperation.UserHasNo", AccountFault::Quota}, // amount, free amount
    {"FailedOperation.ServiceIsolate", AccountFault::Quota},
    {"RequestLimitExceeded", AccountFault::Quota},
    {"LimitExceeded", AccountFault::Quota},
    {"FailedOperation.ErrorRecognize", AccountFault::None},
    {"InvalidParameterValue.ErrorVoicedata", AccountFault::None}, // of silence
    {"InvalidParameterValue.NoHumanVoice", AccountFault::None},
};

} // namespace

AccountVerdict baiduTokenVerdict(int status, const QByteArray &body)
{
    if (status == 200 && !baiduTokenOf(QString::fromUtf8(body)).isEmpty()) {
        return {};
    }
    const QJsonObject answer = QJsonDocument::fromJson(body).object();
    const QString description = answer.value(QStringLiteral("error_description")).toString();
    if (answer.value(QStringLiteral("error")).toString() == QLatin1String("invalid_client")) {
        const bool unknown = description.contains(QLatin1String("unknown client id"));
        return verdict(unknown ? AccountFault::WrongId : AccountFault::WrongSecret, description);
    }
    return description.isEmpty() ? unknownAnswer(status, body)
                                 : verdict(AccountFault::ServiceFails, description);
}

AccountVerdict baiduSpeechVerdict(int status, const QByteArray &body)
{
    if (!QJsonDocument::fromJson(body).isObject()) {
        return unknownAnswer(status, body);
    }
    const BaiduReply reply = parseBaiduReply(body);
    if (reply.errNo == 0 && !reply.text) {
        return unknownAnswer(status, body);
    }
    const AccountFault fault = faultOf(baiduSpeechErrors, reply.errNo);
    return fault == AccountFault::None ? AccountVerdict{}
                                       : verdict(fault, withNumber(reply.errNo, reply.errMsg));
}

AccountVerdict tencentVerdict(int status, const QByteArray &body)
{
    const TencentReply reply = parseTencentReply(body);
    switch (reply.kind) {
    case TencentReply::Kind::Unreadable:
        return unknownAnswer(status, body);
    case TencentReply::Kind::Text:
        return {};
    case TencentReply::Kind::Error:
        break;
    }
    for (const CodeRow &row : tencentErrors) {
        if (reply.code.startsWith(QLatin1String(row.beginning))) {
            return row.fault == AccountFault::None
                       ? AccountVerdict{}
                       : verdict(row.fault, reply.code + QLatin1Char(' ') + reply.message);
        }
    }
    return verdict(AccountFault::ServiceFails, reply.code + QLatin1Char(' ') + reply.message);
}

AccountVerdict xunFeiRefusal(int status, const QByteArray &body)
{
    const QString message =
        QJsonDocument::fromJson(body).object().value(QStringLiteral("message")).toString();
    if (message.contains(QLatin1String("valid date"))) {
        return verdict(AccountFault::ClockWrong, message);
    }
    if (status == 403) {
        return verdict(AccountFault::NotOpened, message); // from this address, for one
    }
    if (status != 401) {
        return unknownAnswer(status, body);
    }
    const bool secret = message.contains(QLatin1String("does not match"));
    return verdict(secret ? AccountFault::WrongSecret : AccountFault::WrongId, message);
}

AccountVerdict xunFeiVerdict(const QString &message)
{
    XunFeiMessage answer;
    if (!parseXunFeiMessage(message, answer)) {
        return unknownAnswer(200, message.left(longestDetail).toUtf8());
    }
    const AccountFault fault = faultOf(xunFeiErrors, answer.code);
    return fault == AccountFault::None ? AccountVerdict{}
                                       : verdict(fault, withNumber(answer.code, answer.message));
}

AccountVerdict translationVerdict(int status, const QByteArray &body)
{
    const QJsonObject answer = QJsonDocument::fromJson(body).object();
    if (!answer.value(QStringLiteral("trans_result")).toArray().isEmpty()) {
        return {};
    }
    // The service writes its numbers as texts.
    const int number = answer.value(QStringLiteral("error_code")).toVariant().toInt();
    if (number == 0) {
        return unknownAnswer(status, body);
    }
    const AccountFault fault = faultOf(translationErrors, number);
    return fault == AccountFault::None
               ? AccountVerdict{}
               : verdict(fault, withNumber(number, answer.value(QStringLiteral("error_msg")).toString()));
}

QString accountVerdictText(const AccountVerdict &verdict)
{
    const auto say = [](const char *text) { return QCoreApplication::translate("AccountVerdict", text); };
    QString text;
    switch (verdict.fault) {
    case AccountFault::None:
        return say(QT_TRANSLATE_NOOP("AccountVerdict", "账号可用"));
    case AccountFault::Incomplete:
        text = say(QT_TRANSLATE_NOOP("AccountVerdict", "请先填写全部内容"));
        break;
    case AccountFault::WrongId:
        text = say(QT_TRANSLATE_NOOP("AccountVerdict", "账号不存在，请检查填写的编号或Key"));
        break;
    case AccountFault::WrongSecret:
        text = say(QT_TRANSLATE_NOOP("AccountVerdict", "密钥不正确"));
        break;
    case AccountFault::NotOpened:
        text = say(QT_TRANSLATE_NOOP("AccountVerdict", "该账号没有开通此服务，或没有使用权限"));
        break;
    case AccountFault::Quota:
        text = say(QT_TRANSLATE_NOOP("AccountVerdict", "用量已用完，或请求过于频繁"));
        break;
    case AccountFault::ClockWrong:
        text = say(QT_TRANSLATE_NOOP("AccountVerdict", "电脑的时间不正确，请校准后再试"));
        break;
    case AccountFault::NoNetwork:
        text = say(QT_TRANSLATE_NOOP("AccountVerdict", "连接不上服务，请检查网络"));
        break;
    case AccountFault::TimeOut:
        text = say(QT_TRANSLATE_NOOP("AccountVerdict", "服务没有应答，请稍后再试"));
        break;
    case AccountFault::ServiceFails:
        text = say(QT_TRANSLATE_NOOP("AccountVerdict", "服务返回了错误"));
        break;
    }
    return verdict.detail.isEmpty() ? text : text + QStringLiteral(" (") + verdict.detail + QLatin1Char(')');
}

} // namespace mevo
