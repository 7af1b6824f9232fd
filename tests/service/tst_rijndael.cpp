#include "service/CRijndael.h"
#include "support/Rows.h"

#include <QRandomGenerator>
#include <QtTest>

#include <openssl/evp.h>

#include <string>

namespace {

const char keyHex[] = "2b7e151628aed2a6abf7158809cf4f3c762e7160f38b4da56a784d9045190cfe";
const char plainHex[] = "3243f6a8885a308d313198a2e03707344a4093822299f31d0082efa98ec4e6c8";

struct Vector
{
    int key;
    int block;
    CRijndael::Mode mode;
    const char *lastBlock;
};

/// ECB: one block of the published key and plain text above (digits of e and pi). CBC and CFB: three
/// blocks of a counting text. All were worked out by libmcrypt; OpenSSL, which knows blocks of 16 alone,
/// has those below.
const Vector vectors[] = {
    {16, 24, CRijndael::ECB, "b24d275489e82bb8f7375e0d5fcdb1f481757c538b65148a"},
    {24, 24, CRijndael::ECB, "725ae43b5f3161de806a7c93e0bca93c967ec1ae1b71e1cf"},
    {32, 24, CRijndael::ECB, "0ebacf199e3315c2e34b24fcc7c46ef4388aa475d66c194c"},
    {16, 32, CRijndael::ECB, "7d15479076b69a46ffb3b3beae97ad8313f622f67fedb487de9f06b9ed9c8f19"},
    {24, 32, CRijndael::ECB, "5d7101727bb25781bf6715b0e6955282b9610e23a43c2eb062699f0ebf5887b2"},
    {32, 32, CRijndael::ECB, "a49406115dfb30a40418aafa4869b7c6a886ff31602a7dd19c889dc64f7e4e7a"},
    {16, 24, CRijndael::CBC, "17aac462dd44480538b1ab7f00cf2b0caea8556769e3bcaa"},
    {24, 24, CRijndael::CBC, "a9a7f047c85cfc6c553ce705af387dd25832522d30fe51f8"},
    {32, 24, CRijndael::CBC, "672a679bcde4e0269f9bfb62478a3ed9b546c002f4e1acd1"},
    {16, 32, CRijndael::CBC, "856a060a6d56bcdd181dc5234a2d1d9b5695a2d4ea457c292f6410ce19442c3c"},
    {24, 32, CRijndael::CBC, "b52d727ef63ade38200292197094d7a4360f5f9f97fda62a0e2511e58f9884bb"},
    {32, 32, CRijndael::CBC, "e733da98e149ffbf03b6796da3eb13ef40e967397dbd86294e5188a728f6cfdb"},
    {16, 24, CRijndael::CFB, "6f955e86c309d609c561fcee7ae297a84af8b2e5f8702f98"},
    {24, 24, CRijndael::CFB, "dd8a89d0b9d820d1d3e51986b8a9ddaa13aad27c80ed81d0"},
    {32, 24, CRijndael::CFB, "8e92c2a5778ab08cf9d00b7216ec08ce4fc91e2c310d4c24"},
    {16, 32, CRijndael::CFB, "6c71a69034ae40d8ae83ea07bdc94e35669bac8d76dc5eba432051ff595400a0"},
    {24, 32, CRijndael::CFB, "886d9e28cbc13369e3c4dc53ca03821fc8eb52dae55e869cdbc7871184d060d5"},
    {32, 32, CRijndael::CFB, "1dc8f98cd6299076b56e141e58dfc3aa8422e29bec259f1347ee006dc375a05c"},
};

QByteArray counting(int length, int factor, int offset)
{
    QByteArray bytes(length, '\0');
    for (int i = 0; i < length; ++i) {
        bytes[i] = static_cast<char>(i * factor + offset);
    }
    return bytes;
}

QByteArray randomBytes(int length)
{
    QByteArray bytes(length, '\0');
    for (char &byte : bytes) {
        byte = static_cast<char>(QRandomGenerator::global()->bounded(256));
    }
    return bytes;
}

const EVP_CIPHER *openSslCipher(int keyLength, CRijndael::Mode mode)
{
    switch (mode) {
    case CRijndael::ECB:
        return keyLength == 16 ? EVP_aes_128_ecb() : keyLength == 24 ? EVP_aes_192_ecb() : EVP_aes_256_ecb();
    case CRijndael::CBC:
        return keyLength == 16 ? EVP_aes_128_cbc() : keyLength == 24 ? EVP_aes_192_cbc() : EVP_aes_256_cbc();
    default:
        return keyLength == 16   ? EVP_aes_128_cfb128()
               : keyLength == 24 ? EVP_aes_192_cfb128()
                                 : EVP_aes_256_cfb128();
    }
}

QByteArray openSsl(const QByteArray &plain, const QByteArray &key, const QByteArray &chain,
                   CRijndael::Mode mode)
{
    const auto bytes = [](const QByteArray &array) {
        return reinterpret_cast<const unsigned char *>(array.constData());
    };
    QByteArray result(plain.size() + 32, '\0');
    int length = 0;
    EVP_CIPHER_CTX *context = EVP_CIPHER_CTX_new();
    EVP_EncryptInit_ex(context, openSslCipher(key.size(), mode), nullptr, bytes(key), bytes(chain));
    EVP_CIPHER_CTX_set_padding(context, 0);
    EVP_EncryptUpdate(context, reinterpret_cast<unsigned char *>(result.data()), &length, bytes(plain),
                      plain.size());
    EVP_CIPHER_CTX_free(context);
    return result.left(length);
}

} // namespace

class TestRijndael : public QObject
{
    Q_OBJECT

private slots:
    void knownVectors_data()
    {
        const Rows<int> row; // index
        for (std::size_t i = 0; i < std::size(vectors); ++i) {
            row(rowName("key %d, block %d, mode %d", vectors[i].key, vectors[i].block, vectors[i].mode),
                static_cast<int>(i));
        }
    }
    void knownVectors()
    {
        const auto [index] = rowOf<int>();
        const Vector &vector = vectors[index];
        CRijndael cipher;
        cipher.MakeKey(QByteArray::fromHex(keyHex), counting(vector.block, 1, 0), vector.key, vector.block);
        const QByteArray plain = vector.mode == CRijndael::ECB
                                     ? QByteArray::fromHex(plainHex).left(vector.block)
                                     : counting(3 * vector.block, 7, 1);
        const QByteArray result = cipher.Encrypt(plain, vector.mode);
        QCOMPARE(result.right(vector.block).toHex(), QByteArray(vector.lastBlock));
        QCOMPARE(cipher.Decrypt(result, vector.mode), plain);
    }

    void agreesWithOpenSsl_data()
    {
        const Rows<CRijndael::Mode, int> row; // mode, keyLength
        for (int mode : {CRijndael::ECB, CRijndael::CBC, CRijndael::CFB}) {
            for (int keyLength : {16, 24, 32}) {
                row(rowName("mode %d, key %d", mode, keyLength), CRijndael::Mode(mode), keyLength);
            }
        }
    }
    void agreesWithOpenSsl()
    {
        const auto [mode, keyLength] = rowOf<CRijndael::Mode, int>();
        for (int blocks = 1; blocks < 40; ++blocks) {
            const QByteArray key = randomBytes(keyLength);
            const QByteArray chain = randomBytes(16);
            const QByteArray plain = randomBytes(16 * blocks);
            CRijndael cipher;
            cipher.MakeKey(key, chain, keyLength, 16);
            const QByteArray expected = openSsl(plain, key, chain, mode);
            QCOMPARE(cipher.Encrypt(plain, mode), expected);
            QCOMPARE(cipher.Decrypt(expected, mode), plain);
        }
    }

    void refusesMisuse_data()
    {
        const Rows<QByteArray, int, int, QString> row; // key, keyLength, blockLength, message
        const QByteArray key(32, 'k');
        row("no key", QByteArray(), 16, 16, "Empty key");
        row("no key, odd lengths", QByteArray(), 5, 5, "Empty key");
        row("key length 17", key, 17, 16, "Incorrect key length");
        row("key length 0", key, 0, 16, "Incorrect key length");
        row("key too short", key.left(20), 24, 16, "Incorrect key length");
        row("block length 20", key, 32, 20, "Incorrect block length");
        row("block length -16", key, 32, -16, "Incorrect block length");
    }
    void refusesMisuse()
    {
        const auto [key, keyLength, blockLength, message] = rowOf<QByteArray, int, int, QString>();
        CRijndael cipher;
        QString thrown;
        try {
            cipher.MakeKey(key, {}, keyLength, blockLength);
        } catch (const std::string &text) {
            thrown = QString::fromStdString(text);
        }
        QCOMPARE(thrown, message);
        QVERIFY_EXCEPTION_THROWN(cipher.Encrypt(QByteArray(16, 'x')), std::string);
    }

    void takesWholeBlocksOnly()
    {
        CRijndael cipher;
        cipher.MakeKey(QByteArray(16, 'k'), {}, 16, 24);
        for (int length : {1, 16, 23, 25, 47}) {
            QVERIFY(cipher.Encrypt(QByteArray(length, 'x')).isEmpty());
            QVERIFY(cipher.Decrypt(QByteArray(length, 'x')).isEmpty());
        }
        QVERIFY(cipher.Decrypt({}).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestRijndael)
#include "tst_rijndael.moc"
