#include "device/MouseSettings.h"

#include "base/SettingsFile.h"
#include "state/MainState.h"

#include <QCoreApplication>
#include <QDebug>

namespace mevo {

namespace {

constexpr int kAfterIdentityMs = 200;
constexpr int kHighestPowerLevel = 3;

/// Keys and members of one custom key.
struct CustomKeyRow
{
    CustomKey key;
    const char *labelKey;
    const char *valueKey;
    QString MainState::*label;
    std::atomic<int> MainState::*value;
};

constexpr CustomKeyRow customKeys[] = {
    {CustomKey::Left, "MouseCurrentLeftKeyString", "MouseCurrentLeftKeyValue",
     &MainState::MouseCurrentLeftKeyString, &MainState::MouseCurrentLeftKeyValue},
    {CustomKey::Right, "MouseCurrentRightKeyString", "MouseCurrentRightKeyValue",
     &MainState::MouseCurrentRightKeyString, &MainState::MouseCurrentRightKeyValue},
};

} // namespace

QString customKeyLabel(const CustomKeyFunction &function)
{
    return QCoreApplication::translate("MouseSettings", function.label);
}

std::optional<int> customKeyValue(const QString &shownLabel)
{
    std::optional<int> value;
    for (const CustomKeyFunction &function : customKeyFunctions) {
        if (customKeyLabel(function) == shownLabel) {
            value = function.value;
        }
    }
    return value;
}

QString batteryPicture(int powerLevel)
{
    return powerLevel < 0 || powerLevel > kHighestPowerLevel
               ? QString()
               : QStringLiteral(":/rec/PowerLevel%1.png").arg(powerLevel);
}

MouseSettings::MouseSettings(DeviceCommands &device, MainState &state, Time &time,
                             decltype(DeviceLinkHooks::trayMessage) trayMessage)
    : m_device(device)
    , m_state(state)
    , m_time(time)
    , m_trayMessage(std::move(trayMessage))
{
}

void MouseSettings::choose(const MouseGroup &group, int place)
{
    if (place < 0 || place >= static_cast<int>(group.values.size())) {
        return;
    }
    const int value = group.values.at(static_cast<std::size_t>(place));
    SettingsFile().setValue(QLatin1String(group.key), QString::number(value));
    (m_device.*group.set)(value);
    m_state.*group.member = value;
}

bool MouseSettings::assignKey(CustomKey key, const QString &shownLabel)
{
    const std::optional<int> value = customKeyValue(shownLabel);
    if (!value) {
        qInfo().noquote() << "Custom key: no function is called" << shownLabel;
        return false;
    }
    for (const CustomKeyRow &row : customKeys) {
        if (row.key != key) {
            continue;
        }
        {
            SettingsFile settings;
            settings.setValue(QLatin1String(row.labelKey), shownLabel);
            settings.setValue(QLatin1String(row.valueKey), *value);
        }
        m_device.SetMouseKey(static_cast<int>(key), *value);
        m_state.*row.label = shownLabel;
        m_state.*row.value = *value;
    }
    return true;
}

QString MouseSettings::showDongleID()
{
    if (!m_state.deviceOpen()) {
        m_trayMessage(QCoreApplication::translate("MouseSettings", "读取DongleID时没有发现设备!"),
                      MessageIcon::Critical, 2000);
        return {};
    }
    m_device.ReadDeviceIdentity();
    m_time.sleepMs(kAfterIdentityMs);
    return std::exchange(m_state.DongleID, QString());
}

} // namespace mevo
