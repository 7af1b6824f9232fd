#include "output/SendPlan.h"
#include "output/TextEffects.h"
#include "session/MatchText.h"

#include <benchmark/benchmark.h>

namespace {

/// A dictated text of so many characters, with the punctuation that an engine puts in.
QString dictated(qint64 characters)
{
    const QString sentence = QStringLiteral("今天的会议改到下午三点半，请大家带上上周的报告。");
    QString text;
    while (text.size() < characters) {
        text += sentence;
    }
    return text.left(int(characters));
}

void cleanText(benchmark::State &bench)
{
    const QString text = dictated(bench.range(0)) + QLatin1String(mevo::overMarker);
    for (auto _ : bench) {
        const QString out = mevo::withoutOverMarker(text);
        benchmark::DoNotOptimize(mevo::makeResultText(out, out, false, true));
    }
}
BENCHMARK(cleanText)->Arg(10)->Arg(300)->Arg(5000);

void planText(benchmark::State &bench)
{
    const QString text = dictated(bench.range(0));
    MainState state;
    state.FocusWindow = 1;
    state.Output2Tranditional = bench.range(1) != 0;
    for (auto _ : bench) {
        benchmark::DoNotOptimize(mevo::planSend(text, state, state.contextNow(), false, true));
    }
}
BENCHMARK(planText)->ArgNames({"characters", "traditional"})->Args({10, 0})->Args({300, 0})->Args({300, 1});

void toTraditional(benchmark::State &bench)
{
    const QString text = dictated(bench.range(0));
    for (auto _ : bench) {
        benchmark::DoNotOptimize(mevo::toTraditional(text));
    }
}
BENCHMARK(toTraditional)->Arg(10)->Arg(300)->Arg(5000);

} // namespace
