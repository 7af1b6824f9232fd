#pragma once

#include <QString>
#include <QStringList>

namespace mevo {

/// One message of XunFei's dictation service. A field that is missing or of another type reads as 0, false
/// or empty.
struct XunFeiMessage
{
    static constexpr int NotLicensed = 11200; ///< the account may not use this language
    static constexpr int NoCode = -1;         ///< what the service gave as its code is no whole number
    static constexpr int Middle = 1, Last = 2;

    int code = 0; ///< 0 is success
    QString message;
    int status = 0; ///< Middle within the utterance, Last at its end
    int number = 0; ///< of this result, from 1
    bool last = false;
    bool replaces = false; ///< results `from` to `to`, from 1 and inclusive, no longer hold
    int from = 0, to = -1; ///< an empty range when the service gave no usable one
    QString text;          ///< the words of this result
};

/// Longest message that is read, in characters; the longest real one is some kilobytes.
constexpr int longestXunFeiMessage = 256 * 1024;

/// Reads a message. False when it is too long or not a JSON object; `message` is then an empty success.
bool parseXunFeiMessage(const QString &json, XunFeiMessage &message);

/// Puts a result into the list of this session's results, result number n at index n - 1: empties those
/// that it replaces, as far as they exist, and appends it.
void applyXunFeiResult(QStringList &results, const XunFeiMessage &message);

} // namespace mevo
