#pragma once

#include <QByteArray>
#include <QString>

namespace mevo {

/// What one chunk of Tencent's reply says.
struct TencentReply
{
    enum class Kind {
        Unreadable, ///< no JSON object, or one without a `Response`
        Error,
        Text, ///< also a response without a text in its `Result`, which is empty then
    };
    Kind kind = Kind::Unreadable;
    QString text;         ///< recognised text
    bool hasText = false; ///< the service has given one, be it empty
    QString code;         ///< of an error, not empty, 100 characters at most
    QString message;      ///< of an error, 500 characters at most
};

/// Reads a chunk as a whole document, up to its first NUL.
TencentReply parseTencentReply(const QByteArray &chunk);

/// What the user is told about an error, translated.
QString tencentErrorMessage(const TencentReply &reply);

/// Whether an error's message says that the computer's clock is wrong.
bool saysClockIsWrong(const QString &errorMessage);

} // namespace mevo
