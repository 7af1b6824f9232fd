#pragma once

#include "state/MainState.h"

#include <QStringList>

#include <atomic>
#include <variant>
#include <vector>

namespace mevo {

class SettingsFile;

/// How a setting's text becomes a value.
enum class SettingKind {
    Plain,    ///< converted to the member's type
    NonZero,  ///< a number that is true when it is not 0
    Positive, ///< a number that is taken only above 0
    Stored,   ///< a number that is taken when one is stored, 0 too
    List      ///< ";"-separated, up to the first NUL, empty parts kept
};

using SettingMember =
    std::variant<bool MainState::*, int MainState::*, QString MainState::*, QStringList MainState::*,
                 std::atomic<bool> MainState::*, std::atomic<int> MainState::*>;

/// One key of the group `MainSetting` and the member it fills at a load.
struct SettingRow
{
    const char *key;
    SettingMember member;
    SettingKind kind = SettingKind::Plain;
    bool sticky = false;    ///< only a true value is taken; false leaves the member as it was
    bool writeBack = false; ///< written as it was read
};

/// Every setting of the full load, in the order in which it is read.
const std::vector<SettingRow> &settingRows();

/// Reads the row's key into its member. `settings` stands at the group.
void loadSetting(const SettingRow &row, const SettingsFile &settings, MainState &state);

/// The full load: every row, the rule for an input method that the record does not offer, and the
/// version that is written at each load. `startupEntryExists` decides AutoRunApp, which is written.
void loadSettings(MainState &state, SettingsFile &settings, bool startupEntryExists);

/// What start-up reads before the full load: the first rows by themselves.
void loadEarlySettings(MainState &state, SettingsFile &settings, bool xpClass, const QString &programPath);

/// The group `NetworkProxy`. A proxy of which nothing is set counts as switched off.
void loadProxySettings(MainState &state, const SettingsFile &settings);

/// Switches a proxy off of which nothing is set.
void dropEmptyProxy(ServiceState &state);

/// Takes back an input method that the device record does not offer, in memory and in the file.
void dropUnofferedInputMethod(MainState &state, SettingsFile &settings);

} // namespace mevo
