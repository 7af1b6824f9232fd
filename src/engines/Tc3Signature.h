#pragma once

#include <QByteArray>

namespace mevo {

/// What a TC3-HMAC-SHA256 signature covers: one POST to "/" without a query. The scheme is Tencent Cloud's
/// "API 3.0 signature v3".
struct Tc3Request
{
    QByteArray service;          ///< such as "asr"
    QByteArray canonicalHeaders; ///< "name:value\n" each, names in lower case, in the order of signedHeaders
    QByteArray signedHeaders;    ///< the names, joined by ";"
    qint64 timestamp = 0;        ///< UNIX time in seconds
    QByteArray payload;
};

struct Tc3Credential
{
    QByteArray secretId;
    QByteArray secretKey; ///< never logged
};

/// SHA-256 in lower-case hexadecimal.
QByteArray sha256Hex(const QByteArray &data);
/// HMAC-SHA256, 32 raw bytes.
QByteArray hmacSha256(const QByteArray &key, const QByteArray &message);

/// UTC date of a UNIX time, "yyyy-MM-dd".
QByteArray tc3Date(qint64 timestamp);
QByteArray tc3CanonicalRequest(const Tc3Request &request);
QByteArray tc3StringToSign(const Tc3Request &request);
/// The signature in hexadecimal.
QByteArray tc3Signature(const Tc3Request &request, const QByteArray &secretKey);
/// Value of the header "Authorization".
QByteArray tc3Authorization(const Tc3Request &request, const Tc3Credential &credential);

} // namespace mevo
