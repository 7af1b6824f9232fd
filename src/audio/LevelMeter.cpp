#include "audio/LevelMeter.h"

#include <QtGlobal>

#include <array>
#include <cstring>

namespace mevo {

int meterPeak(const QByteArray &block, int count, int gain)
{
    std::array<qint16, MaxMeterSamples> samples{};
    const auto capacity = samples.size() * sizeof(qint16);
    const auto length = qMin(static_cast<std::size_t>(block.size()), capacity);
    std::memcpy(samples.data(), block.constData(), qstrnlen(block.constData(), static_cast<uint>(length)));

    // Only the loudest sample is wanted, and scaling keeps the order: it is enough to scale that one.
    int loudest = 0;
    for (int i = 0; i < qBound(0, count, MaxMeterSamples); ++i) {
        loudest = qMax(loudest, static_cast<int>(samples[static_cast<std::size_t>(i)]));
    }
    return qBound(0, loudest * gain / 50, MaxMeterPeak);
}

int meterLevel(int peak, bool xpClass)
{
    return peak / (xpClass ? 30 : 200);
}

} // namespace mevo
