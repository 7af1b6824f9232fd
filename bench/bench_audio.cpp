#include "audio/LevelMeter.h"
#include "audio/Samples.h"

#include <benchmark/benchmark.h>

static void leftChannelOfABlock(benchmark::State &state)
{
    const QByteArray block(static_cast<int>(state.range(0)), '\x11');
    for (auto _ : state) {
        benchmark::DoNotOptimize(mevo::leftChannel(block.constData(), block.size()));
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(leftChannelOfABlock)->Arg(1280)->Arg(mevo::MaxBlockBytes);

/// The longest way through the meter: a block without silence.
static void levelOfABlock(benchmark::State &state)
{
    const QByteArray block(4096, '\x11');
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            mevo::meterLevel(mevo::meterPeak(block, static_cast<int>(state.range(0)), 20), false));
    }
}
BENCHMARK(levelOfABlock)->Arg(640)->Arg(mevo::MaxBlockBytes);
