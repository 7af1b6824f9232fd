#pragma once

#include "engines/EngineSelection.h"
#include "inputmethods/Asr3Row.h"
#include "inputmethods/CustomMethod.h"
#include "inputmethods/XunFeiIme.h"
#include "state/MainState.h"

#include <vector>

namespace mevo {

/// What the setting up of an input method goes on with.
enum class SetupStep {
    AskConsent,   ///< may input methods be called, fetched and configured without a click?
    Ready,        ///< it is there
    RunInstaller, ///< its installer lies beside the program
    FallBack,     ///< it is not there, and need not be used: a cloud engine takes its place
    OfferDownload,
    NothingToHave ///< it is wanted, and there is neither a program nor an address to have it from
};

/// What the step is decided by.
struct SetupFacts
{
    int index = 0;              ///< as LocalUseASR3Index
    bool consentAsked = false;  ///< the user has answered once
    bool mustClick = false;     ///< and wants the method on a click alone: LocalMustClickRunASR3
    bool found = false;         ///< its program is there
    bool forced = false;        ///< ForceUseASR3
    bool offlineWanted = false; ///< the recognition without a network
    bool installerHere = false; ///< lies beside the program and has not been started in this run
    bool hasAddress = false;    ///< the service names an installer
};

SetupStep nextSetupStep(const SetupFacts &facts);

/// The rows of XunFei's third generation are in force, whatever the method.
bool wantsThirdGeneration(const MainState &state);

/// The row's window, key, name and manner of use become those in force.
void applyAsr3Row(MainState &state, int index, const Asr3Row &row);

/// What the installed XunFei tells of itself. `program` is its file, empty when it is not where it should be,
/// which leaves the path of the settings alone. While XunFei is in force its window becomes that of `row`,
/// where the service's is known, or the one that it shows without a network. A row that was asked for while
/// another generation was installed gives way to what is built in.
void applyXunFeiInstallation(MainState &state, const XunFeiInstallation &installation, const QString &program,
                             bool online, const Asr3Row *row);

/// The keys of a custom method, and those to be stored.
std::vector<SettingWrite> applyCustomMethod(MainState &state, const CustomMethod &method);

/// No input method is in force any more. The writes are for a choice that is to hold beyond this run.
std::vector<SettingWrite> leaveInputMethod(MainState &state);

} // namespace mevo
