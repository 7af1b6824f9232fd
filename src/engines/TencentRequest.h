#pragma once

#include "base/ServiceEndpoints.h"
#include "engines/Tc3Signature.h"

#include <QByteArray>
#include <QList>
#include <QString>

namespace mevo {

/// One utterance on its way to Tencent's sentence recognition.
struct TencentUtterance
{
    QString voiceType;            ///< `EngSerViceType`; "16k_zh" when it is empty
    bool plainNumbers = false;    ///< numbers are to stay words: `ConvertNumMode` 0
    bool keepPunctuation = false; ///< `FilterPunc` 0
    QByteArray pcm;               ///< 16 kHz, 16 bit, mono, without a header
};

/// A signed request, ready to be sent.
struct TencentRequest
{
    QByteArray url;
    QByteArray authorization;  ///< value of that header
    QList<QByteArray> headers; ///< "Name: value", in the order in which they are sent
    QByteArray payload;
};

/// The JSON body, indented as QJsonDocument writes it.
QByteArray tencentPayload(const TencentUtterance &utterance);

/// Signs a payload for the service; `timestamp` is the UNIX time in seconds.
TencentRequest tencentRequest(const EngineEndpoints &endpoints, const Tc3Credential &credential,
                              const QByteArray &payload, qint64 timestamp);

} // namespace mevo
