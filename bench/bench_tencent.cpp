#include "engines/TencentRequest.h"

#include <benchmark/benchmark.h>

/// What lies between the release of the key and the first byte sent: body and signature of so many seconds.
static void tencentRequest(benchmark::State &state)
{
    mevo::TencentUtterance utterance;
    utterance.voiceType = QStringLiteral("16k_zh");
    utterance.pcm = QByteArray(static_cast<int>(state.range(0)) * 32000, '\x35');
    const mevo::EngineEndpoints endpoints;
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            mevo::tencentRequest(endpoints, {"AKID", "key"}, mevo::tencentPayload(utterance), 1700000000));
    }
}
BENCHMARK(tencentRequest)->Arg(2)->Arg(10)->Arg(60)->Unit(benchmark::kMillisecond);
