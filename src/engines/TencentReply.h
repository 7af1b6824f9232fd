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
        Text, ///< also a response without a `Result`, whose text is empty
    };
    Kind kind = Kind::Unreadable;
    QString text;    ///< recognised text
    QString code;    ///< of an error, not empty
    QString message; ///< of an error
};

/// Reads a chunk as a whole document, up to its first NUL.
TencentReply parseTencentReply(const QByteArray &chunk);

/// What the user is told about an error, translated.
QString tencentErrorMessage(const TencentReply &reply);

/// Whether an error's message says that the computer's clock is wrong.
bool saysClockIsWrong(const QString &errorMessage);

} // namespace mevo
