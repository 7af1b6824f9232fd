#include "engines/BaiduRequest.h"
#include "service/Statements.h"
#include "service/WebApiRequest.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

using mevo::Statement;

static void statementToUrl(benchmark::State &state)
{
    const WebCipher cipher;
    const QString base = QStringLiteral("http://127.0.0.1:19004/mevowebapi?");
    const QStringList values{QStringLiteral("12"), QStringLiteral("2026-11-24 09:00:00"),
                             QStringLiteral("107"), QStringLiteral("1.0.7"), QStringLiteral("01-02-030405")};
    for (auto _ : state) {
        const QString sql = mevo::deviceStatement(Statement::CountBaidu, QStringLiteral("orvdb"), values);
        benchmark::DoNotOptimize(mevo::webApiUrl(cipher, base, mevo::SqlTag, sql));
    }
}
BENCHMARK(statementToUrl)->Unit(benchmark::kMicrosecond);

/// What stands between the release of the key and the sending of a recording of so many seconds.
static void baiduBody(benchmark::State &state)
{
    mevo::BaiduRequest request;
    request.pcm = QByteArray(static_cast<int>(state.range(0)) * 32000, '\x5a');
    for (auto _ : state) {
        benchmark::DoNotOptimize(mevo::baiduRequestBody(request));
    }
}
BENCHMARK(baiduBody)->Arg(3)->Arg(60)->Unit(benchmark::kMillisecond);

static void baiduRecordingFile(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("test.pcm"));
    const QByteArray pcm(static_cast<int>(state.range(0)) * 32000, '\x5a');
    for (auto _ : state) {
        benchmark::DoNotOptimize(mevo::writeRecording(path, pcm));
    }
}
BENCHMARK(baiduRecordingFile)->Arg(3)->Arg(60)->Unit(benchmark::kMillisecond);
