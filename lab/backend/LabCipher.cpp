#include "backend/LabCipher.h"

#include <openssl/evp.h>

#include <memory>

namespace lab {

LabCipher::LabCipher(const QByteArray &keyText)
    : m_key(keyText.left(16))
{
}

QByteArray LabCipher::run(const QByteArray &data, bool encrypt) const
{
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(EVP_CIPHER_CTX_new(),
                                                                                  EVP_CIPHER_CTX_free);
    QByteArray out(data.size() + 16, '\0');
    auto *target = reinterpret_cast<unsigned char *>(out.data());
    int written = 0;
    int last = 0;
    if (EVP_CipherInit_ex(context.get(), EVP_aes_128_ecb(), nullptr,
                          reinterpret_cast<const unsigned char *>(m_key.constData()), nullptr,
                          encrypt ? 1 : 0) != 1 ||
        EVP_CipherUpdate(context.get(), target, &written,
                         reinterpret_cast<const unsigned char *>(data.constData()), data.size()) != 1 ||
        EVP_CipherFinal_ex(context.get(), target + written, &last) != 1) {
        return {};
    }
    out.truncate(written + last);
    return out;
}

QByteArray LabCipher::encrypt(const QByteArray &plain) const
{
    return run(plain, true).toHex();
}

QByteArray LabCipher::decrypt(const QByteArray &hex) const
{
    return run(QByteArray::fromHex(hex), false);
}

QByteArray LabCipher::field(const QString &text) const
{
    return QString::asprintf("%03d", text.size()).toLatin1() + encrypt(text.toUtf8());
}

} // namespace lab
