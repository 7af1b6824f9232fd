#pragma once

#include <QByteArray>

#include <array>
#include <cstddef>

/// The Rijndael cipher with key and block lengths of 16, 24 or 32 bytes each; a block of 16 is AES.
/// Misuse is thrown as a std::string: "Empty key", "Incorrect key length", "Incorrect block length".
class CRijndael
{
public:
    enum Mode { ECB = 0, CBC = 1, CFB = 2 };

    /// Takes the key and the first chain block, which ECB does not use. The first `keyLength` bytes of
    /// `key` count; a `chain` shorter than the block is filled up with zeros.
    /// Throws when `key` is empty or shorter than `keyLength`, or a length is none of the three.
    void MakeKey(const QByteArray &key, const QByteArray &chain, int keyLength = 16, int blockLength = 16);

    /// Enciphers or deciphers whole blocks, each call beginning at the first chain block. Data that is
    /// not a whole number of blocks gives an empty array. Throws "Empty key" before MakeKey().
    QByteArray Encrypt(const QByteArray &data, Mode mode = ECB) const;
    QByteArray Decrypt(const QByteArray &data, Mode mode = ECB) const;

    int BlockLength() const { return m_columns * 4; }

private:
    static constexpr std::size_t MaxColumns = 8;
    static constexpr std::size_t MaxRounds = 14;
    using Schedule = std::array<quint32, MaxColumns *(MaxRounds + 1)>;

    template <int Columns>
    void encryptBlock(const uchar *in, uchar *out) const;
    template <int Columns>
    void decryptBlock(const uchar *in, uchar *out) const;
    void encryptBlock(const uchar *in, uchar *out) const;
    void decryptBlock(const uchar *in, uchar *out) const;
    bool takes(const QByteArray &data) const;

    Schedule m_encryption{};
    Schedule m_decryption{};
    std::array<uchar, MaxColumns * 4> m_chain{};
    int m_columns = 4;
    int m_rounds = 0; ///< 0 until a key has been made
};
