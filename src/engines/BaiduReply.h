#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace mevo {

/// What Baidu's speech service answered.
struct BaiduReply
{
    int errNo = 0;               ///< 0 on success, and for an answer that is no JSON object
    QString errMsg;              ///< at most 500 characters
    std::optional<QString> text; ///< the recognised text, which may be empty
};

/// Reads an answer, whatever it holds. An error number that is none is -1.
BaiduReply parseBaiduReply(const QByteArray &reply);

} // namespace mevo
