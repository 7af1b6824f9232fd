#pragma once

#include "platform/WindowSystem.h"

#include <QString>

namespace mevo {

/// The engine of one session: which one it is, and in which language it listens.
struct SessionEngine
{
    bool baidu = false;
    bool tencent = false;
    bool xunFei = false;
    bool dynamicCorrection = false; ///< XunFei's results may correct earlier ones
    bool baiduFast = false;         ///< Baidu's fast variant
    QString baiduLanguage;          ///< dev_pid
    QString tencentLanguage;        ///< EngSerViceType
    QString xunFeiLanguage;         ///< language or accent code
};

/// What was in force at a session's press. It stays with the session until its text has been dealt with,
/// whatever the user presses, chooses or focuses meanwhile.
struct SessionContext
{
    int number = 0;      ///< counts the sessions from 1 on; 0 for a text that belongs to none
    WindowId window = 0; ///< takes the text; 0 when no window had the focus
    bool typeMode = false;
    bool commandMode = false;
    bool searchMode = false;
    bool translateMode = false;
    bool oneShotCommand = false; ///< this text is matched as a command, whatever the mode
    SessionEngine engine;
    int receiver = 0; ///< whose day its use is counted to, as DayCounts numbers them; 0 for the one at hand
};

} // namespace mevo
