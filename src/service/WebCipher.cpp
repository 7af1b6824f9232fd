#include "service/WebCipher.h"

#include "base/Utf8.h"

#include <QDebug>

#include <algorithm>

namespace {

constexpr int BlockLength = 16;
constexpr int LengthDigits = 3;
/// Bytes below this one are taken for padding at the end of a deciphered text.
constexpr uchar FirstTextByte = 17;

QByteArray keyFromText(const QByteArray &text)
{
    if (text.isEmpty()) {
        return {};
    }
    QByteArray key(BlockLength, '\0');
    for (int i = 0; i < key.size(); ++i) {
        key[i] = text.at(i % text.size());
    }
    return key;
}

/// The bytes of a hex text; empty when it holds anything else, which QByteArray::fromHex would skip.
QByteArray strictHex(const QString &text)
{
    const auto isHexDigit = [](QChar c) {
        const ushort u = c.unicode();
        return (u >= '0' && u <= '9') || (u >= 'a' && u <= 'f') || (u >= 'A' && u <= 'F');
    };
    if (!std::all_of(text.cbegin(), text.cend(), isHexDigit)) {
        return {};
    }
    return QByteArray::fromHex(text.toLatin1());
}

} // namespace

WebCipher::WebCipher(const QByteArray &keyText)
{
    m_rijndael.MakeKey(keyFromText(keyText), QByteArray(BlockLength, '\0'));
}

QString WebCipher::EncryptString(const QString &text) const
{
    QByteArray plain = text.toUtf8();
    const int pad = BlockLength - plain.size() % BlockLength;
    plain.append(pad, static_cast<char>(pad));
    return QString::fromLatin1(m_rijndael.Encrypt(plain).toHex());
}

QString WebCipher::DecryptString(const QString &hexText) const
{
    if (hexText.isEmpty() || hexText.size() % (2 * BlockLength) != 0) {
        return {};
    }
    const QByteArray cipher = strictHex(hexText);
    if (cipher.isEmpty()) {
        return {};
    }
    QByteArray plain = m_rijndael.Decrypt(cipher);
    int length = plain.size();
    while (length > 0 && static_cast<uchar>(plain.at(length - 1)) < FirstTextByte) {
        --length;
    }
    plain.truncate(length);
    // Not null, even when nothing is left: the cipher text itself was well formed.
    return mevo::textOfUtf8({plain.constData(), std::size_t(plain.size())});
}

namespace mevo {

QString encipherField(const WebCipher &cipher, const QString &text)
{
    return QStringLiteral("%1").arg(text.size(), LengthDigits, 10, QLatin1Char('0')) +
           cipher.EncryptString(text);
}

std::optional<int> lengthOfDigits(const QStringRef &digits)
{
    const auto isDigit = [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); };
    bool isNumber = std::all_of(digits.begin(), digits.end(), isDigit);
    const int length = isNumber ? digits.toInt(&isNumber, 10) : 0;
    return isNumber ? std::make_optional(length) : std::nullopt;
}

std::optional<QString> decipherField(const WebCipher &cipher, const QString &field)
{
    const std::optional<int> length = lengthOfDigits(field.leftRef(LengthDigits));
    const QString text = decipherUnsizedField(cipher, field);
    if (!length || text.isNull()) {
        return std::nullopt;
    }
    return text.left(*length);
}

QString decipherUnsizedField(const WebCipher &cipher, const QString &field)
{
    return cipher.DecryptString(field.mid(LengthDigits));
}

void logCipherTest(const WebCipher &cipher)
{
    const QString enciphered = cipher.EncryptString(QStringLiteral("MEVOInput cipher test"));
    qInfo().noquote() << "Encrpt:" << enciphered;
    qInfo().noquote() << "Decrypt:" << cipher.DecryptString(enciphered);
}

} // namespace mevo
