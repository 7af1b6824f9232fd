#pragma once

#include "base/ServiceEndpoints.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace mevo {

/// How Baidu's speech synthesis reads.
struct ReadingVoice
{
    int speed = 0;  ///< 0 to 9, `spd`
    int tone = 0;   ///< 0 to 9, `pit`
    int volume = 0; ///< 0 to 15, `vol`
    int reader = 0; ///< `per`: 0 female, 1 male, 3 and 4 two more
};

/// Query of one reading (https://ai.baidu.com/ai-doc/SPEECH/mlbxh7xie describes it). The language is always
/// "zh", which covers Chinese and English.
QByteArray readingQuery(const QString &text, const QString &token, const ReadingVoice &voice);

/// Address of the service with that query. It holds the token: never logged.
QUrl readingUrl(const EngineEndpoints &endpoints, const QString &text, const QString &token,
                const ReadingVoice &voice);

} // namespace mevo
