#include "device/DeviceStatusStore.h"
#include "device/ReceiverDiscovery.h"
#include "device/ReportDispatch.h"
#include "state/DeviceState.h"

#include <benchmark/benchmark.h>

namespace {

void dispatchKey(benchmark::State &bench)
{
    const mevo::InputReport report{0x01, 0x70, static_cast<unsigned char>(bench.range(0)), 1};
    mevo::DispatchFlags flags;
    flags.resultIdle = bench.range(1) != 0;
    flags.quickReleaseCount = 2;
    for (auto _ : bench) {
        benchmark::DoNotOptimize(mevo::dispatchKeyReport(report, flags));
    }
}
BENCHMARK(dispatchKey)->ArgNames({"key", "idle"})->Args({8, 1})->Args({6, 1})->Args({6, 0})->Args({99, 1});

void storeStatusReport(benchmark::State &bench)
{
    const mevo::InputReport report{0x01, 0x20, 8, 14, 0, 0x51, 0, 0};
    DeviceState state;
    state.ShowPowerLevel = true;
    state.ShowPowerLow = true;
    mevo::BatteryCounter battery;
    for (auto _ : bench) {
        benchmark::DoNotOptimize(mevo::storeStatus(*mevo::parseStatus(report), battery, state));
    }
}
BENCHMARK(storeStatusReport);

void findReceiver(benchmark::State &bench)
{
    std::vector<mevo::HidEntry> entries(20, {"/dev/hidraw0", 0x046D, 0xC52B, 1, 2});
    entries.push_back({"/dev/hidraw3", 0x258A, 0x1016, 0x000D, 1});
    entries.push_back({"/dev/hidraw3", 0x258A, 0x1016, 0xFF00, 1});
    for (auto _ : bench) {
        benchmark::DoNotOptimize(mevo::findCollection(entries, {0x258A, 0x1016, 0x000D, 1}));
    }
}
BENCHMARK(findReceiver);

} // namespace
