#include "engines/AsrLanMenu.h"

#include <benchmark/benchmark.h>

/// The language menu with every row permitted.
static void languageMenu(benchmark::State &state)
{
    EngineState engines;
    engines.UseTecentZhDialect = true;
    engines.TXCurrentVoiceType = QStringLiteral("16k_zh_dialect");
    const RecorderState recorder;
    mevo::MenuFacts facts;
    facts.customMethodKnown = true;
    for (auto _ : state) {
        benchmark::DoNotOptimize(mevo::buildAsrMenu(engines, recorder, facts));
    }
}
BENCHMARK(languageMenu);
