#pragma once

#include "base/ServiceEndpoints.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace mevo {

/// One utterance on its way to Baidu.
struct BaiduRequest
{
    bool fast = false; ///< the fast variant, which knows Mandarin only
    QString voiceType; ///< language of the standard variant; empty or no number is Mandarin
    QString token;
    QString cuid;   ///< stable identifier of this computer
    QByteArray pcm; ///< 16 kHz, 16 bit, mono, without a header
};

QUrl baiduSpeechUrl(const EngineEndpoints &endpoints, bool fast);
QUrl baiduTokenUrl(const EngineEndpoints &endpoints);

/// The JSON body of a request.
QByteArray baiduRequestBody(const BaiduRequest &request);

/// Whether the certificate of `url` is checked: always, but on this computer only if the endpoints say so.
bool checksCertificate(const EngineEndpoints &endpoints, const QUrl &url);

/// Writes the samples of the last utterance, preceded by their length as four bytes, little-endian.
/// False, with a log line, when the disk refuses.
bool writeRecording(const QString &path, const QByteArray &pcm);

} // namespace mevo
