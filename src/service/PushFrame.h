#pragma once

#include "service/WebCipher.h"

#include <QString>
#include <QUrl>

#include <optional>

namespace mevo {

/// Longest frame of the push socket in characters: five digits, and the longest cipher text that they can
/// tell.
constexpr int longestPushFrame = 5 + 99999;
/// Largest picture of a notice, in bytes.
constexpr int largestNoticePicture = 8 << 20;
/// Longest stay of a notice in seconds; a longer one is cut to it.
constexpr int longestNoticeStay = 3600;

/// What the service wants shown.
struct PushNotice
{
    enum class Kind { Page, Picture };

    Kind kind = Kind::Page;
    QUrl content;        ///< of the page or the picture; http or https
    int staySeconds = 0; ///< between the slide and the fading
    QUrl link;           ///< that a press opens; empty when there is none, else http or https
    int pictureSize = 0; ///< bytes that the picture must have
    QString pictureName; ///< under which it is kept: the name of a picture, never a path
};

/// Reads a frame of the push socket: five digits, then that many characters of cipher text, in it "url" or
/// "image" and its fields, apart by ";". Nothing, with a log line, for anything else.
std::optional<PushNotice> readPushFrame(const WebCipher &cipher, const QString &frame);

/// Whether a picture may be kept under this name: the plain name of a picture file, which leads nowhere else
/// and is no settings file, table or program.
bool isPictureName(const QString &name);

} // namespace mevo
