#pragma once

#include "engines/CredentialTable.h"
#include "engines/EngineCatalogue.h"
#include "state/EngineState.h"
#include "state/RecorderState.h"

#include <QString>
#include <QVariant>
#include <QVector>

#include <vector>

namespace mevo {

/// One key of `MainSetting` to write.
struct SettingWrite
{
    const char *key;
    QVariant value;
};

/// What a change of engine asks of the main window, besides the states that it has changed.
struct EngineChange
{
    std::vector<SettingWrite> writes;
    bool rebuild = false; ///< build the menu anew, with the two arguments below
    bool persistEngine = false;
    bool setupInputMethod = false;
};

/// Makes one engine the only one of the recorder's flags; third parties leave Tencent as the idle one.
void setEngineFlags(RecorderState &recorder, Engine engine);

/// The engine that the recorder's flags name; the later of several wins as the pipeline sees it.
Engine engineInForce(const RecorderState &recorder);

/// Whether any of the recorder's flags is on; an input method may have left none.
bool hasEngine(const RecorderState &recorder);

/// Which engine the device record is told, the later of several flags; empty when none is on.
QString engineStatement(const RecorderState &recorder, const QString &schema, const QString &dongleId);

/// A row's account list is another one than that in force: its account and token are wanted before the row is
/// stored. Null for the rows that need none.
const CredentialListRow *accountListFor(const LanguageRow &row, const EngineState &state);

/// A row of the menu has been chosen.
EngineChange chooseLanguage(const LanguageRow &row, EngineState &state, RecorderState &recorder);

/// The record's engine selectors, applied in their order at a start and at every read of the record.
/// `storedDialect` and `storedSmallLan` are the menu switches that the settings held. `userHasChosen`: the
/// engine and its language are a choice of the user's of which the record does not know yet, and stay.
std::vector<EngineChange> applyRecordSelectors(EngineState &state, RecorderState &recorder, bool xpClass,
                                               int storedDialect, int storedSmallLan,
                                               bool userHasChosen = false);

/// The record hides Tencent's dialect row: Mandarin takes its place where it was chosen.
EngineChange leaveHiddenDialect(EngineState &state);

/// Baidu has refused its account: XunFei takes over from the next press on.
EngineChange fallToXunFei(RecorderState &recorder);

/// The receiver comes for the first time after an installation, and its record would use an input method:
/// Baidu's Mandarin is the engine, and no input method is.
EngineChange chooseAtFirstArrival(EngineState &state, RecorderState &recorder);

/// The day's quota of the engine is used up and Tencent's is not.
EngineChange fallToTencent(EngineState &state, RecorderState &recorder);

/// The language or accent of XunFei's sessions: Mandarin where the record has chosen XunFei and nobody a
/// language.
QString xunFeiLanguageInForce(const EngineState &state);

/// XunFei has refused the language: what the next session uses.
QString languageAfterXunFeiRefusal(const QString &current);

/// An engine has been chosen on the settings page; for input methods there is chooseInputMethod().
EngineChange chooseEngine(Engine engine, EngineState &state, RecorderState &recorder);

/// An input method has been chosen there, numbered as LocalUseASR3Index; another number is none of them. The
/// recorder is left without an engine.
EngineChange chooseInputMethod(int index, EngineState &state, RecorderState &recorder);

/// Tencent's own recognition of dialects is wanted, or Mandarin instead.
EngineChange chooseTencentDialect(bool on, EngineState &state);

/// The three engine keys of the settings for what the recorder's flags say.
std::vector<SettingWrite> engineKeyWrites(const RecorderState &recorder);

} // namespace mevo
