#include "device/DeviceReports.h"

#include <cstddef>

namespace mevo {

namespace {

constexpr std::array<int, 3> kDpiValues{800, 1600, 2400};
constexpr std::array<int, 3> kDataRates{125, 250, 500};
constexpr std::array<int, 3> kWheelSpeeds{0, 1, 2};

/// A "05 20" report: `mask` tells which field is meant, `field` where in the report its index goes.
std::optional<FeatureReport> settingReport(unsigned char mask, std::size_t field,
                                           const std::array<int, 3> &values, int value)
{
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (values.at(i) == value) {
            FeatureReport report{0x05, 0x20, mask};
            report.at(field) = static_cast<unsigned char>(i);
            return report;
        }
    }
    return std::nullopt;
}

std::optional<int> valueAt(const std::array<int, 3> &values, unsigned index)
{
    return index < values.size() ? std::optional<int>(values.at(index)) : std::nullopt;
}

} // namespace

std::optional<FeatureReport> reports::dpi(int dotsPerInch)
{
    return settingReport(0x10, 5, kDpiValues, dotsPerInch);
}

std::optional<FeatureReport> reports::dataRate(int hertz)
{
    return settingReport(0x20, 6, kDataRates, hertz);
}

std::optional<FeatureReport> reports::wheelSpeed(int speed)
{
    return settingReport(0x40, 7, kWheelSpeeds, speed);
}

std::optional<FeatureReport> reports::customKey(int index, int value)
{
    if (index < 1 || index > 2 || value < 0 || value > 0xFF) {
        return std::nullopt;
    }
    return FeatureReport{0x05, 0x71, static_cast<unsigned char>(index), static_cast<unsigned char>(value)};
}

std::optional<DeviceIdentity> parseIdentity(const InputReport &report)
{
    if (report[0] != 0x01 || report[1] != 0x0C) {
        return std::nullopt;
    }
    const int serial = report[4] * 10000 + report[3] * 100 + report[2];
    return DeviceIdentity{
        QString::asprintf("%02x-%02x-%02x%02x%02x", report[7], report[5], report[4], report[3], report[2]),
        QString::asprintf("%02d-%02d-%06d", report[7], report[5], serial)};
}

std::optional<DeviceStatus> parseStatus(const InputReport &report)
{
    if (report[0] != 0x01 || report[1] != 0x20) {
        return std::nullopt;
    }
    const unsigned settings = report[5];
    DeviceStatus status;
    status.leftKey = report[2];
    status.rightKey = report[3];
    status.dpi = valueAt(kDpiValues, settings & 0x03U).value_or(kDpiValues.back());
    status.dataRate = valueAt(kDataRates, (settings >> 4U) & 0x03U);
    status.wheelSpeed = valueAt(kWheelSpeeds, (settings >> 6U) & 0x03U);
    status.batteryLevel = report[7] & 0x03;
    return status;
}

} // namespace mevo
