#pragma once

#include "service/WebCipher.h"

#include <QJsonObject>
#include <QString>

#include <optional>
#include <vector>

namespace mevo {

/// What an answer of the backend holds.
struct WebApiReply
{
    int items = 0;                 ///< rows that the backend announces
    bool counted = false;          ///< it announces a number at all
    QString result;                ///< "result", the version text of a probe
    std::vector<QJsonObject> rows; ///< "result0" and on, as far as they came without a gap
};

/// Unwraps a reply: five decimal digits, then that many characters of cipher text with JSON in it.
/// Nothing, with a log line, when the length does not agree or the content cannot be read.
std::optional<WebApiReply> unwrapReply(const WebCipher &cipher, const QString &reply);

/// A column as text, whatever JSON type it came in; empty when it is absent.
QString columnText(const QJsonObject &row, const QString &column);
/// A column as a decimal number; `fallback` when it is absent or none.
int columnNumber(const QJsonObject &row, const QString &column, int fallback = 0);

} // namespace mevo
