#include "service/CRijndael.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <string>

namespace {

constexpr quint8 times2(quint8 x)
{
    return static_cast<quint8>((x << 1) ^ ((x & 0x80) ? 0x1b : 0));
}

constexpr quint8 multiply(quint8 a, quint8 b)
{
    quint8 product = 0;
    for (; b != 0; b = static_cast<quint8>(b >> 1)) {
        if (b & 1) {
            product = static_cast<quint8>(product ^ a);
        }
        a = times2(a);
    }
    return product;
}

constexpr quint8 rotateLeft8(quint8 x, int bits)
{
    return static_cast<quint8>((x << bits) | (x >> (8 - bits)));
}

constexpr quint32 rotateRight(quint32 x, int bits)
{
    return bits == 0 ? x : (x >> bits) | (x << (32 - bits));
}

constexpr quint32 word(quint8 a, quint8 b, quint8 c, quint8 d)
{
    return (quint32(a) << 24) | (quint32(b) << 16) | (quint32(c) << 8) | d;
}

/// Substitution boxes, and for each row of the state a table of substitution and column mixing in one.
struct Tables
{
    quint8 box[256] = {};
    quint8 inverseBox[256] = {};
    quint32 encryption[4][256] = {};
    quint32 decryption[4][256] = {};
};

constexpr Tables makeTables()
{
    Tables t;
    // p runs through the powers of 3, q through those of its inverse, so q is always 1/p.
    quint8 p = 1;
    quint8 q = 1;
    do {
        p = static_cast<quint8>(p ^ times2(p));
        q = static_cast<quint8>(q ^ (q << 1));
        q = static_cast<quint8>(q ^ (q << 2));
        q = static_cast<quint8>(q ^ (q << 4));
        if (q & 0x80) {
            q = static_cast<quint8>(q ^ 0x09);
        }
        t.box[p] = static_cast<quint8>(q ^ rotateLeft8(q, 1) ^ rotateLeft8(q, 2) ^ rotateLeft8(q, 3) ^
                                       rotateLeft8(q, 4) ^ 0x63);
    } while (p != 1);
    t.box[0] = 0x63;

    for (int x = 0; x < 256; ++x) {
        t.inverseBox[t.box[x]] = static_cast<quint8>(x);
    }
    for (int x = 0; x < 256; ++x) {
        const quint8 s = t.box[x];
        const quint8 i = t.inverseBox[x];
        const quint32 forward = word(multiply(s, 2), s, s, multiply(s, 3));
        const quint32 backward = word(multiply(i, 14), multiply(i, 9), multiply(i, 13), multiply(i, 11));
        for (int row = 0; row < 4; ++row) {
            t.encryption[row][x] = rotateRight(forward, 8 * row);
            t.decryption[row][x] = rotateRight(backward, 8 * row);
        }
    }
    return t;
}

constexpr Tables tables = makeTables();

/// By how many columns each row of the state is shifted.
template <int Columns>
constexpr std::array<int, 4> rowShifts()
{
    return Columns == 8 ? std::array<int, 4>{0, 1, 3, 4} : std::array<int, 4>{0, 1, 2, 3};
}

constexpr quint8 byteOf(quint32 column, int row)
{
    return static_cast<quint8>(column >> (24 - 8 * row));
}

constexpr quint32 substitute(quint32 w)
{
    return word(tables.box[byteOf(w, 0)], tables.box[byteOf(w, 1)], tables.box[byteOf(w, 2)],
                tables.box[byteOf(w, 3)]);
}

/// The inverse column mixing of a word of the key schedule. The box undoes the inverse box in the table.
constexpr quint32 inverseMix(quint32 w)
{
    quint32 mixed = 0;
    for (int row = 0; row < 4; ++row) {
        mixed ^= tables.decryption[row][tables.box[byteOf(w, row)]];
    }
    return mixed;
}

constexpr bool isLength(int bytes)
{
    return bytes == 16 || bytes == 24 || bytes == 32;
}

void exclusiveOr(uchar *target, const uchar *other, int length)
{
    for (int i = 0; i < length; ++i) {
        target[i] = static_cast<uchar>(target[i] ^ other[i]);
    }
}

/// One pass over the rounds. `table` and `box` say which way; `direction` is the sign of the row shift.
template <int Columns>
void runRounds(const uchar *in, uchar *out, const quint32 *key, int rounds, const quint32 (&table)[4][256],
               const quint8 (&box)[256], int direction)
{
    constexpr std::array<int, 4> shifts = rowShifts<Columns>();
    int from[4][Columns];
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < Columns; ++column) {
            from[row][column] = (column + direction * shifts[size_t(row)] + Columns) % Columns;
        }
    }

    quint32 state[Columns];
    quint32 next[Columns];
    for (int column = 0; column < Columns; ++column) {
        state[column] = qFromBigEndian<quint32>(in + ptrdiff_t(4) * column) ^ *key++;
    }
    for (int round = 1; round < rounds; ++round) {
        for (int column = 0; column < Columns; ++column) {
            next[column] = table[0][state[column] >> 24] ^ table[1][byteOf(state[from[1][column]], 1)] ^
                           table[2][byteOf(state[from[2][column]], 2)] ^
                           table[3][byteOf(state[from[3][column]], 3)] ^ *key++;
        }
        std::copy(next, next + Columns, state);
    }
    for (int column = 0; column < Columns; ++column) {
        const quint32 last =
            word(box[state[column] >> 24], box[byteOf(state[from[1][column]], 1)],
                 box[byteOf(state[from[2][column]], 2)], box[byteOf(state[from[3][column]], 3)]);
        qToBigEndian<quint32>(last ^ *key++, out + ptrdiff_t(4) * column);
    }
}

} // namespace

void CRijndael::MakeKey(const QByteArray &key, const QByteArray &chain, int keyLength, int blockLength)
{
    if (key.isEmpty()) {
        throw std::string("Empty key");
    }
    if (!isLength(keyLength) || key.size() < keyLength) {
        throw std::string("Incorrect key length");
    }
    if (!isLength(blockLength)) {
        throw std::string("Incorrect block length");
    }

    const int keyWords = keyLength / 4;
    m_columns = blockLength / 4;
    m_rounds = std::max(keyWords, m_columns) + 6;
    m_chain.fill(0);
    std::memcpy(m_chain.data(), chain.constData(), size_t(std::min(chain.size(), blockLength)));

    const int words = m_columns * (m_rounds + 1);
    for (int i = 0; i < keyWords; ++i) {
        m_encryption[size_t(i)] = qFromBigEndian<quint32>(key.constData() + ptrdiff_t(4) * i);
    }
    quint8 roundConstant = 1;
    for (int i = keyWords; i < words; ++i) {
        quint32 w = m_encryption[size_t(i - 1)];
        if (i % keyWords == 0) {
            w = substitute(rotateRight(w, 24)) ^ (quint32(roundConstant) << 24);
            roundConstant = times2(roundConstant);
        } else if (keyWords > 6 && i % keyWords == 4) {
            w = substitute(w);
        }
        m_encryption[size_t(i)] = m_encryption[size_t(i - keyWords)] ^ w;
    }

    // Deciphering walks the rounds backwards; all but the outer two keys go through the inverse mixing.
    for (int round = 0; round <= m_rounds; ++round) {
        for (int column = 0; column < m_columns; ++column) {
            const quint32 w = m_encryption[size_t(m_rounds - round) * size_t(m_columns) + size_t(column)];
            m_decryption[size_t(round) * size_t(m_columns) + size_t(column)] =
                round == 0 || round == m_rounds ? w : inverseMix(w);
        }
    }
}

template <int Columns>
void CRijndael::encryptBlock(const uchar *in, uchar *out) const
{
    runRounds<Columns>(in, out, m_encryption.data(), m_rounds, tables.encryption, tables.box, 1);
}

template <int Columns>
void CRijndael::decryptBlock(const uchar *in, uchar *out) const
{
    runRounds<Columns>(in, out, m_decryption.data(), m_rounds, tables.decryption, tables.inverseBox, -1);
}

void CRijndael::encryptBlock(const uchar *in, uchar *out) const
{
    switch (m_columns) {
    case 4:
        return encryptBlock<4>(in, out);
    case 6:
        return encryptBlock<6>(in, out);
    default:
        return encryptBlock<8>(in, out);
    }
}

void CRijndael::decryptBlock(const uchar *in, uchar *out) const
{
    switch (m_columns) {
    case 4:
        return decryptBlock<4>(in, out);
    case 6:
        return decryptBlock<6>(in, out);
    default:
        return decryptBlock<8>(in, out);
    }
}

bool CRijndael::takes(const QByteArray &data) const
{
    if (m_rounds == 0) {
        throw std::string("Empty key");
    }
    return data.size() % BlockLength() == 0;
}

QByteArray CRijndael::Encrypt(const QByteArray &data, Mode mode) const
{
    if (!takes(data)) {
        return {};
    }
    const int block = BlockLength();
    QByteArray result = data;
    const uchar *chain = m_chain.data();
    auto *at = reinterpret_cast<uchar *>(result.data());
    uchar stream[MaxColumns * 4];
    for (const uchar *end = at + result.size(); at != end; at += block) {
        switch (mode) {
        case ECB:
            encryptBlock(at, at);
            break;
        case CBC:
            exclusiveOr(at, chain, block);
            encryptBlock(at, at);
            break;
        case CFB:
            encryptBlock(chain, stream);
            exclusiveOr(at, stream, block);
            break;
        }
        chain = at;
    }
    return result;
}

QByteArray CRijndael::Decrypt(const QByteArray &data, Mode mode) const
{
    if (!takes(data)) {
        return {};
    }
    const int block = BlockLength();
    QByteArray result(data.size(), Qt::Uninitialized);
    const uchar *chain = m_chain.data();
    const auto *from = reinterpret_cast<const uchar *>(data.constData());
    auto *to = reinterpret_cast<uchar *>(result.data());
    for (const uchar *end = from + data.size(); from != end; from += block, to += block) {
        switch (mode) {
        case ECB:
            decryptBlock(from, to);
            break;
        case CBC:
            decryptBlock(from, to);
            exclusiveOr(to, chain, block);
            break;
        case CFB:
            encryptBlock(chain, to);
            exclusiveOr(to, from, block);
            break;
        }
        chain = from;
    }
    return result;
}
