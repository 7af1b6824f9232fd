#pragma once

#include "device/DeviceCommands.h"
#include "state/DeviceState.h"

#include <QString>

#include <array>
#include <optional>

struct MainState;

namespace mevo {

/// A group of radio buttons of the settings page's mouse part. Its values, in the order of the buttons,
/// are what is written (as text), what the setter takes, and what the member holds.
struct MouseGroup
{
    const char *key; ///< of the group `MainSetting`
    std::array<int, 3> values;
    bool (DeviceCommands::*set)(int);
    std::atomic<int> DeviceState::*member;
};

inline constexpr MouseGroup mouseDPI{
    "MouseCurrentDPI", {800, 1600, 2400}, &DeviceCommands::SetMouseDPI, &DeviceState::MouseCurrentDPI};
inline constexpr MouseGroup mouseDataRate{"MouseCurrentDataRate",
                                          {125, 250, 500},
                                          &DeviceCommands::SetMouseDataRate,
                                          &DeviceState::MouseCurrentDataRate};
inline constexpr MouseGroup mouseWheelSpeed{"MouseCurrentWheelSpeed",
                                            {0, 1, 2},
                                            &DeviceCommands::SetMouseWheelSpeed,
                                            &DeviceState::MouseCurrentWheelSpeed};

/// A function that the mouse's custom keys can have.
struct CustomKeyFunction
{
    const char *label; ///< in the source language; customKeyLabel() translates it
    int value;         ///< what the device is given, and reports as the key number of a voice key
};

/// In the order of the choice lists.
inline constexpr std::array<CustomKeyFunction, 12> customKeyFunctions{{
    {QT_TRANSLATE_NOOP("MouseSettings", "麦克风"), 1},
    {QT_TRANSLATE_NOOP("MouseSettings", "麦克风(F6)"), 8},
    {QT_TRANSLATE_NOOP("MouseSettings", "语音打字"), 3},
    {QT_TRANSLATE_NOOP("MouseSettings", "语音搜索"), 14},
    {QT_TRANSLATE_NOOP("MouseSettings", "语音命令"), 6},
    {QT_TRANSLATE_NOOP("MouseSettings", "语音翻译"), 2},
    {QT_TRANSLATE_NOOP("MouseSettings", "删除"), 15},
    {QT_TRANSLATE_NOOP("MouseSettings", "回桌面"), 9},
    {QT_TRANSLATE_NOOP("MouseSettings", "前进"), 10},
    {QT_TRANSLATE_NOOP("MouseSettings", "后退"), 11},
    {QT_TRANSLATE_NOOP("MouseSettings", "长按中键上滚"), 12},
    {QT_TRANSLATE_NOOP("MouseSettings", "长按中键下滚"), 13},
}};

/// The label as the choice lists show it.
QString customKeyLabel(const CustomKeyFunction &function);
/// The value behind a shown label; where a translation gives two rows the same label, the later one's.
/// Nothing for a label without a function.
std::optional<int> customKeyValue(const QString &shownLabel);

/// The two custom keys, by the number that the device knows them by.
enum class CustomKey { Left = 1, Right = 2 };

/// Path of the battery's picture for a `PowerLevel`; empty when none is known, and then no picture is shown.
QString batteryPicture(int powerLevel);

/// What the device part of the settings page does. Every choice is written and kept in memory whether or
/// not a device takes it.
class MouseSettings
{
public:
    /// `trayMessage` is the one of the device link's hooks.
    MouseSettings(DeviceCommands &device, MainState &state, Time &time,
                  decltype(DeviceLinkHooks::trayMessage) trayMessage);

    /// Takes the choice of one of the group's values, by its place; a place that is none does nothing.
    void choose(const MouseGroup &group, int place);
    /// Gives a custom key the function of a shown label. False, with nothing done, when it has none.
    bool assignKey(CustomKey key, const QString &shownLabel);
    /// Reads the identity anew (some 300 ms) and answers it for the page's label. The program holds no
    /// identity from then on until it is read again. Empty, with a message, without a device.
    QString showDongleID();

private:
    DeviceCommands &m_device;
    MainState &m_state;
    Time &m_time;
    const decltype(DeviceLinkHooks::trayMessage) m_trayMessage;
};

} // namespace mevo
