#include "translation/TranslationReply.h"

#include "base/LogText.h"

#include <QDebug>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace mevo {

QPair<bool, QString> translationResult(const QString &reply, const QString &text)
{
    if (reply.isEmpty()) {
        return {false, text};
    }
    const QJsonObject answer = QJsonDocument::fromJson(reply.toUtf8()).object();
    const QJsonValue dst =
        answer.value(QStringLiteral("trans_result")).toArray().at(0).toObject().value(QStringLiteral("dst"));
    if (dst.isString()) {
        return {true, dst.toString()};
    }
    // The service writes its numbers as texts, some deployments as numbers.
    const QString code = answer.value(QStringLiteral("error_code")).toVariant().toString();
    if (code.isEmpty()) {
        qWarning("Translation: a reply of %d characters holds no translation", reply.size());
    } else {
        qWarning().noquote() << "Translation: error" << logText(code)
                             << logText(answer.value(QStringLiteral("error_msg")).toString());
    }
    return {false, QString()};
}

} // namespace mevo
