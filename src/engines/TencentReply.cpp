#include "engines/TencentReply.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>

namespace mevo {

namespace {

// They are shown to the user; more than this is no message.
constexpr int longestCode = 100;
constexpr int longestMessage = 500;

} // namespace

TencentReply parseTencentReply(const QByteArray &chunk)
{
    TencentReply reply;
    const int end = chunk.indexOf('\0');
    const QJsonObject document = QJsonDocument::fromJson(end < 0 ? chunk : chunk.left(end)).object();
    const QJsonValue response = document.value(QStringLiteral("Response"));
    if (!response.isObject()) {
        return reply;
    }
    const QJsonObject error = response[QStringLiteral("Error")].toObject();
    reply.code = error.value(QStringLiteral("Code")).toString().left(longestCode);
    if (!reply.code.isEmpty()) {
        reply.kind = TencentReply::Kind::Error;
        reply.message = error.value(QStringLiteral("Message")).toString().left(longestMessage);
        return reply;
    }
    reply.kind = TencentReply::Kind::Text;
    const QJsonValue result = response[QStringLiteral("Result")];
    reply.text = result.toString();
    reply.hasText = result.isString();
    return reply;
}

QString tencentErrorMessage(const TencentReply &reply)
{
    return QCoreApplication::translate("TencentReply",
                                       "腾讯语音识别错误返回信息：(如无法解决，请与供货商联系，"
                                       "鼠标放在此窗口上，该窗口不会消失):\n") +
           reply.code + QLatin1Char('\n') + reply.message;
}

bool saysClockIsWrong(const QString &errorMessage)
{
    return errorMessage.contains(QLatin1String("AuthFailure.SignatureExpire"));
}

} // namespace mevo
