#pragma once

#include "base/ServiceEndpoints.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace mevo {

/// One text on its way to Baidu's general translation service
/// (https://fanyi-api.baidu.com/doc/21 describes query, signature and answers).
struct TranslationRequest
{
    QString appid;
    QString secret; ///< never logged
    int salt = 0;
    QString text;
    QString from; ///< language codes, "auto" to have it recognised
    QString to;
};

/// The text as it is sent: each line feed has become a carriage return.
QString translationText(const QString &text);

/// Lower-case hexadecimal MD5 over appid, text, salt and secret in UTF-8.
QString translationSign(const TranslationRequest &request);

/// The query of the address, percent-encoded where the text is.
QByteArray translationQuery(const TranslationRequest &request, const QString &sign);

/// Base address of the service.
QUrl translationAddress(const EngineEndpoints &endpoints);

} // namespace mevo
