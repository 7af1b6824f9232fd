#include "service/WebCipher.h"

#include <benchmark/benchmark.h>

static void cipherBlocks(benchmark::State &state)
{
    const int keyLength = static_cast<int>(state.range(0));
    const int blockLength = static_cast<int>(state.range(1));
    CRijndael cipher;
    cipher.MakeKey(QByteArray(keyLength, 'k'), {}, keyLength, blockLength);
    const QByteArray data(96 * 1024, 'x');
    for (auto _ : state) {
        benchmark::DoNotOptimize(cipher.Encrypt(data));
    }
    state.SetBytesProcessed(state.iterations() * data.size());
}
BENCHMARK(cipherBlocks)->Args({16, 16})->Args({32, 16})->Args({16, 24})->Args({32, 32});

static void decipherBlocks(benchmark::State &state)
{
    CRijndael cipher;
    cipher.MakeKey(QByteArray(16, 'k'), {});
    const QByteArray data(96 * 1024, 'x');
    for (auto _ : state) {
        benchmark::DoNotOptimize(cipher.Decrypt(data));
    }
    state.SetBytesProcessed(state.iterations() * data.size());
}
BENCHMARK(decipherBlocks);

/// The largest reply that the backend can send.
static void decipherReply(benchmark::State &state)
{
    const WebCipher cipher;
    const QString reply = cipher.EncryptString(QString(49000, QLatin1Char('r')));
    for (auto _ : state) {
        benchmark::DoNotOptimize(cipher.DecryptString(reply));
    }
}
BENCHMARK(decipherReply)->Unit(benchmark::kMicrosecond);

static void makeCipher(benchmark::State &state)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(WebCipher());
    }
}
BENCHMARK(makeCipher);
