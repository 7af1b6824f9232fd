#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace mevo {

/// What a second start asks of the instance that runs.
struct InstanceCall
{
    enum class What { Show, Talk, Settings, Type };
    What what = What::Show;
    QString text; ///< to be typed, for Type
};

/// What has become of it.
enum class InstanceAnswer {
    Done,         ///< it has been done; a text has been typed
    Kept,         ///< the text waits among the undelivered ones
    Refused,      ///< not possible now
    NotUnderstood ///< no call of this version
};

/// Longest message, in bytes, without the line end that it travels with.
constexpr int longestInstanceMessage = 64 * 1024;

/// A call as it goes to the other process: a JSON object (RFC 8259) on one line, with the version of this
/// form under "mevoinput", what is wanted under "do", and the text to be typed under "text".
QByteArray toMessage(const InstanceCall &call);
/// The call of a message; none, and `*fault` says why, when it is too long, no such object, of another
/// version, or asks for what is not known. Other members are let be.
std::optional<InstanceCall> readInstanceCall(const QByteArray &message, QString *fault);

/// The answer in the same form, with a word under "answer".
QByteArray toMessage(InstanceAnswer answer);
/// None for what is no answer of this version.
std::optional<InstanceAnswer> readInstanceAnswer(const QByteArray &message);

} // namespace mevo
