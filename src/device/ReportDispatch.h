#pragma once

#include "device/DeviceReports.h"

#include <cstddef>

struct MainState;

namespace mevo {

/// What the main window does for the reader, as CallMainFunctionSignal's index.
enum MainCall {
    LowPowerIcon = 17,
    PowerRestoredIcon = 18,
    ReloadEngineChoice = 21,
    ResetSession = 22,
};

/// The flags that decide what becomes of a key report, as they stood at one moment.
struct DispatchFlags
{
    bool micLatched = false;
    bool delimitTranslation = false;
    bool voiceTypeMode = false;
    bool voiceTranslateMode = false;
    bool online = false;
    bool resultIdle = true;
    bool keyDownBusy = false;
    bool keyUpBusy = false;
    int quickReleaseCount = 0;

    static DispatchFlags of(const MainState &state);
};

/// One thing to do for a key report.
struct DispatchStep
{
    enum class Kind {
        MicDialogCall,        ///< CallMicDlgFunctionSignal(index)
        MainCall,             ///< CallMainFunctionSignal(index)
        OfflineWarning,       ///< the tray message that the key's function needs a network
        KeyToSession,         ///< returnHidKeyResult
        KeyToTranslation,     ///< returnHidKeyResult2Trans
        KeyRefused,           ///< HidKeyRefused: the session hears that it does not get this one
        StartStopRecordTimer, ///< TimeOutStopRecord() in 5 seconds
    };
    Kind kind = Kind::MainCall;
    int index = 0; ///< of the two calls
};

/// The steps of one report in their order; no allocation, since it is made for every report.
class DispatchSteps
{
public:
    void add(DispatchStep::Kind kind, int index = 0) { m_steps.at(m_count++) = {kind, index}; }
    const DispatchStep *begin() const { return m_steps.data(); }
    const DispatchStep *end() const { return m_steps.data() + m_count; }
    bool isEmpty() const { return m_count == 0; }

private:
    std::array<DispatchStep, 8> m_steps{};
    std::size_t m_count = 0;
};

/// What a key report means under these flags: mode changes first, then the delivery to the session or
/// to the translation dialog, or the reset of a session that is still busy, which is told of the key that it
/// does not get. Any other report gives no steps.
DispatchSteps dispatchKeyReport(const InputReport &report, const DispatchFlags &flags);

} // namespace mevo
