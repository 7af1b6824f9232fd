#pragma once

#include <QString>

#include <array>
#include <optional>

namespace mevo {

/// An input report as it is read, its id first and zeros behind its end.
using InputReport = std::array<unsigned char, 16>;
/// A feature report for the receiver, its id (always 5) first.
using FeatureReport = std::array<unsigned char, 8>;

namespace reports {

inline constexpr FeatureReport identityRequest{0x05, 0x2C};
inline constexpr FeatureReport mouseIdRequest{0x05, 0x2D};
inline constexpr FeatureReport latchOn{0x05, 0x20, 0x0C};
inline constexpr FeatureReport latchOff{0x05, 0x20, 0x08};
inline constexpr FeatureReport heartbeat{0x05, 0x81, 0x01};
/// Lets go of every key of the receiver's keyboard; also ends a key-down.
inline constexpr FeatureReport resetKeys{0x05, 0x81, 0x04};
inline constexpr FeatureReport resetConsumerKeys{0x05, 0x81, 0x06};
inline constexpr FeatureReport goodbye{0x05, 0x81, 0x07};

/// Mouse resolution: 800, 1600 or 2400 DPI; nothing for another value.
std::optional<FeatureReport> dpi(int dotsPerInch);
/// Mouse report rate: 125, 250 or 500 Hz; nothing for another value.
std::optional<FeatureReport> dataRate(int hertz);
/// Wheel speed: 0, 1 or 2; nothing for another value.
std::optional<FeatureReport> wheelSpeed(int speed);
/// Function `value` (0 to 255) for custom key `index`, 1 left or 2 right; nothing out of range.
std::optional<FeatureReport> customKey(int index, int value);

/// Presses a key: `modifiers` are the HID keyboard bits of modifierBits(), `usage` the HID usage.
constexpr FeatureReport keyDown(int modifiers, int usage)
{
    return {0x05, 0x81, 0x04, static_cast<unsigned char>(modifiers), static_cast<unsigned char>(usage)};
}

/// Presses a consumer key by its 12-bit usage.
constexpr FeatureReport consumerKeyDown(int usage)
{
    return {0x05, 0x81, 0x06, static_cast<unsigned char>((usage >> 8) & 0x0F),
            static_cast<unsigned char>(usage)};
}

} // namespace reports

/// The HID keyboard's modifier bits.
constexpr int modifierBits(bool shift, bool ctrl, bool alt, bool win)
{
    return (ctrl ? 0x01 : 0) | (shift ? 0x02 : 0) | (alt ? 0x04 : 0) | (win ? 0x08 : 0);
}

/// The receiver's identity in the two forms that the program shows and stores.
struct DeviceIdentity
{
    QString dongleId;        ///< "%02x-%02x-%02x%02x%02x", the key of the device record
    QString dongleIdDecimal; ///< "%02d-%02d-%06d"
};

/// Reads an identity reply; nothing when the report is of another kind.
std::optional<DeviceIdentity> parseIdentity(const InputReport &report);

/// What identity stands for "the program runs without a receiver".
inline constexpr char kNoDeviceIdentity[] = "02-01--1";
/// The decimal form of a receiver that answers with zeros, which a weak USB port can cause.
inline constexpr char kZeroIdentityDecimal[] = "00-00-000000";

/// The receiver's settings and battery, as its status report tells them.
struct DeviceStatus
{
    int leftKey = 0;               ///< function of the left custom key
    int rightKey = 0;              ///< function of the right custom key
    int dpi = 0;                   ///< 800, 1600 or 2400
    std::optional<int> dataRate;   ///< Hz; absent when the field holds no rate
    std::optional<int> wheelSpeed; ///< 0 to 2; absent when the field holds no speed
    int batteryLevel = 0;          ///< 0 lowest to 3
};

/// Reads a status report; nothing when the report is of another kind.
std::optional<DeviceStatus> parseStatus(const InputReport &report);

} // namespace mevo
