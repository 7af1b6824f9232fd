#pragma once

#include "service/CRijndael.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace mevo {

/// The key text of the backend's cipher: 33 printable characters. The backend must hold the same.
constexpr char WebCipherKeyText[] = "MEVOInput-Lab-Key-0123456789-abcd";
static_assert(sizeof(WebCipherKeyText) - 1 == 33, "the key text has 33 characters");

} // namespace mevo

/// The cipher of everything that goes to the backend or lies enciphered in a file: AES-128 in ECB mode
/// over UTF-8 text, written as lower-case hex. UTF-8 is fixed rather than taken from the locale: under
/// the C locale Qt's local 8-bit encoding would turn every Chinese character into "?".
class WebCipher
{
public:
    /// A key text of 16 bytes is the key; any other is repeated or cut to 16. Throws the std::string
    /// "Empty key" for an empty one.
    explicit WebCipher(const QByteArray &keyText = QByteArray(mevo::WebCipherKeyText));

    QString EncryptString(const QString &text) const;
    /// Takes off all trailing control characters with the padding, genuine ones too. A null string when
    /// `hexText` is not a whole number of blocks in hex; a wrong key gives rubbish, not an error.
    QString DecryptString(const QString &hexText) const;

private:
    CRijndael m_rijndael;
};

namespace mevo {

/// A text as it lies in INI files: its number of characters as "%03d", then its cipher.
QString encipherField(const WebCipher &cipher, const QString &text);

/// The length that goes before a cipher text: digits and nothing else, no sign, no blank.
std::optional<int> lengthOfDigits(const QStringRef &digits);

/// The text of an enciphered field, cut to the length that the field tells. Nothing when the first
/// three characters are no number or the rest is no cipher text.
std::optional<QString> decipherField(const WebCipher &cipher, const QString &field);

/// The text of an enciphered field whose three leading characters are passed over unread.
QString decipherUnsizedField(const WebCipher &cipher, const QString &field);

/// Writes a fixed text, enciphered and deciphered again, to the log: the first thing to compare when the
/// backend does not understand this program.
void logCipherTest(const WebCipher &cipher);

} // namespace mevo
