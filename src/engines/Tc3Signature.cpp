#include "engines/Tc3Signature.h"

#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/sha.h>

#include <array>
#include <ctime>

namespace mevo {

namespace {

const QByteArray algorithm = QByteArrayLiteral("TC3-HMAC-SHA256");
const QByteArray terminator = QByteArrayLiteral("tc3_request");

const unsigned char *bytes(const QByteArray &data)
{
    return reinterpret_cast<const unsigned char *>(data.constData());
}

QByteArray credentialScope(const Tc3Request &request)
{
    return tc3Date(request.timestamp) + '/' + request.service + '/' + terminator;
}

} // namespace

QByteArray sha256Hex(const QByteArray &data)
{
    std::array<unsigned char, SHA256_DIGEST_LENGTH> digest{};
    SHA256(bytes(data), static_cast<std::size_t>(data.size()), digest.data());
    return QByteArray(reinterpret_cast<const char *>(digest.data()), SHA256_DIGEST_LENGTH).toHex();
}

QByteArray hmacSha256(const QByteArray &key, const QByteArray &message)
{
    std::array<unsigned char, SHA256_DIGEST_LENGTH> digest{};
    HMAC(EVP_sha256(), key.constData(), key.size(), bytes(message), static_cast<std::size_t>(message.size()),
         digest.data(), nullptr);
    return QByteArray(reinterpret_cast<const char *>(digest.data()), SHA256_DIGEST_LENGTH);
}

QByteArray tc3Date(qint64 timestamp)
{
    const auto seconds = static_cast<std::time_t>(timestamp);
    std::tm parts{};
    std::array<char, 16> text{};
    if (gmtime_r(&seconds, &parts) == nullptr) {
        return {};
    }
    return QByteArray(text.data(),
                      static_cast<int>(std::strftime(text.data(), text.size(), "%Y-%m-%d", &parts)));
}

QByteArray tc3CanonicalRequest(const Tc3Request &request)
{
    return "POST\n/\n\n" + request.canonicalHeaders + '\n' + request.signedHeaders + '\n' +
           sha256Hex(request.payload);
}

QByteArray tc3StringToSign(const Tc3Request &request)
{
    return algorithm + '\n' + QByteArray::number(request.timestamp) + '\n' + credentialScope(request) + '\n' +
           sha256Hex(tc3CanonicalRequest(request));
}

QByteArray tc3Signature(const Tc3Request &request, const QByteArray &secretKey)
{
    const QByteArray dateKey = hmacSha256("TC3" + secretKey, tc3Date(request.timestamp));
    const QByteArray serviceKey = hmacSha256(dateKey, request.service);
    const QByteArray signingKey = hmacSha256(serviceKey, terminator);
    return hmacSha256(signingKey, tc3StringToSign(request)).toHex();
}

QByteArray tc3Authorization(const Tc3Request &request, const Tc3Credential &credential)
{
    return algorithm + " Credential=" + credential.secretId + '/' + credentialScope(request) +
           ", SignedHeaders=" + request.signedHeaders +
           ", Signature=" + tc3Signature(request, credential.secretKey);
}

} // namespace mevo
