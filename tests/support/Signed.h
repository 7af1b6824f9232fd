#pragma once

#include <QByteArray>

#include <openssl/evp.h>

/// A content signed with Ed25519 by a key of its own.
struct Signed
{
    QByteArray key = QByteArray(32, '\0'); ///< the public one
    QByteArray signature = QByteArray(64, '\0');

    explicit Signed(const QByteArray &content)
    {
        const auto bytes = [](QByteArray &array) { return reinterpret_cast<unsigned char *>(array.data()); };
        std::size_t keyLength = 32, length = 64;
        EVP_PKEY *pair = EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519");
        EVP_MD_CTX *context = EVP_MD_CTX_new();
        if (EVP_PKEY_get_raw_public_key(pair, bytes(key), &keyLength) != 1 ||
            EVP_DigestSignInit(context, nullptr, nullptr, nullptr, pair) != 1 ||
            EVP_DigestSign(context, bytes(signature), &length,
                           reinterpret_cast<const unsigned char *>(content.constData()),
                           std::size_t(content.size())) != 1) {
            qFatal("nothing is signed");
        }
        EVP_MD_CTX_free(context);
        EVP_PKEY_free(pair);
    }
};
