#include "update/UpdateSignature.h"

#include <QCryptographicHash>
#include <QFile>

#include <memory>

#include <openssl/evp.h>

namespace mevo {

namespace {

constexpr int keyBytes = 32;
constexpr int signatureBytes = 64;

QByteArray fromBase64(const QByteArray &text)
{
    const auto decoded = QByteArray::fromBase64Encoding(
        text.trimmed(), QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? decoded.decoded : QByteArray();
}

} // namespace

bool isSignedBy(const QString &path, const QByteArray &signature, const QString &key)
{
    const QByteArray rawKey = fromBase64(key.toLatin1());
    const QByteArray raw = signature.size() == signatureBytes ? signature : fromBase64(signature);
    QFile file(path);
    if (rawKey.size() != keyBytes || raw.size() != signatureBytes || !file.open(QIODevice::ReadOnly) ||
        file.size() == 0) {
        return false;
    }
    uchar *const content = file.map(0, file.size()); // this signature is over the whole, in one piece
    if (content == nullptr) {
        return false;
    }
    const auto bytes = [](const QByteArray &data) {
        return reinterpret_cast<const unsigned char *>(data.constData());
    };
    const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> publicKey(
        EVP_PKEY_new_raw_public_key(EVP_PKEY_ED25519, nullptr, bytes(rawKey), keyBytes), &EVP_PKEY_free);
    const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> digest(EVP_MD_CTX_new(), &EVP_MD_CTX_free);
    return publicKey && digest &&
           EVP_DigestVerifyInit(digest.get(), nullptr, nullptr, nullptr, publicKey.get()) == 1 &&
           EVP_DigestVerify(digest.get(), bytes(raw), signatureBytes, content,
                            static_cast<std::size_t>(file.size())) == 1;
}

QByteArray fileSha256(const QString &path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file) ? hash.result().toHex() : QByteArray();
}

} // namespace mevo
