#pragma once

#include <QByteArray>
#include <QString>

namespace lab {

/// The backend's half of the cipher, worked out from OpenSSL alone: AES-128-ECB with PKCS#7 padding under
/// the first 16 bytes of the key text, as lower-case hex.
class LabCipher
{
public:
    /// The lab's key text; a deployment has its own.
    static constexpr char DefaultKeyText[] = "MEVOInput-Lab-Key-0123456789-abcd";

    explicit LabCipher(const QByteArray &keyText = DefaultKeyText);
    QByteArray encrypt(const QByteArray &plain) const;
    /// Null when the text is no cipher text of this key.
    QByteArray decrypt(const QByteArray &hex) const;
    /// "%03d" of the plain length, then the cipher text.
    QByteArray field(const QString &text) const;

private:
    QByteArray run(const QByteArray &data, bool encrypt) const;
    QByteArray m_key;
};

} // namespace lab
