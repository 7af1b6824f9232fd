#pragma once

#include "state/SessionContext.h"

#include <QByteArray>
#include <QPair>
#include <QString>

namespace mevo {

/// What an engine asks of the main window.
class EngineHost
{
public:
    virtual ~EngineHost() = default;

    /// Draws an account for the Baidu language in force.
    virtual void loadCurrentBaiduCredentials() = 0;
    /// Fetches `BaiduAccessToken` for that account, in a nested event loop.
    virtual void fetchBaiduToken() = 0;
    virtual void loadBaiduTranslateCredentials() = 0;

    /// Rebuilds the language menu after a change of engine. `persistEngine` reports it to the backend,
    /// `setupInputMethod` lets a third-party row configure itself.
    virtual void buildAsrLanMenu(bool persistEngine, bool setupInputMethod) = 0;

    /// Creates the tip window if there is none yet.
    virtual void ensureEngineTip() = 0;
    /// Shows `text` in the tip window if that exists and `ShowTipsDlg` is on or the text is shown
    /// `regardlessOfShowTipsDlg`.
    virtual void showEngineTip(const QString &text, bool regardlessOfShowTipsDlg) = 0;

    /// `SimulateDoubleChannel` has changed: the microphone is set up anew.
    virtual void channelCountChanged() = 0;

    /// Sends a whole recording to Tencent: whether the transfer ran to its end, and the text. An
    /// implementation delivers the text to the recorder itself. Without one: (false, "") and a log line.
    virtual QPair<bool, QString> recogniseWithTencent(const QByteArray &pcm, const SessionContext &session);
};

} // namespace mevo
