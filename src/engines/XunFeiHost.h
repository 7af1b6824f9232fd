#pragma once

#include <QString>

namespace mevo {

/// What a streaming session asks of the main window. Event loops may run inside the calls that take a text.
class XunFeiHost
{
public:
    virtual ~XunFeiHost() = default;

    /// Results of the session that begins may correct earlier ones, and partial texts are shown while the
    /// user speaks.
    virtual bool dynamicCorrection() const = 0;
    /// A text without dynamic correction: straight to the result handler.
    virtual void handleXunFeiText(const QString &text) = 0;
    /// The text of an utterance with dynamic correction, at its end.
    virtual void showXunFeiText(const QString &text) = 0;
    /// A message has come: the service is alive.
    virtual void xunFeiAnswered() = 0;
    virtual void showPartialText(const QString &text) = 0;
    virtual void hidePartialText() = 0;
    /// The account may not use the language: another one is spoken from the next session on.
    virtual void showXunFeiLanguage() = 0;
    /// An utterance has ended and the day's count gone up.
    virtual void flushXunFeiCount() = 0;
    /// Closes the microphone and this session's socket.
    virtual void closeXunFeiRecording() = 0;
};

} // namespace mevo
