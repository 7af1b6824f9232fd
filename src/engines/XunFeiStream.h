#pragma once

#include "base/ServiceEndpoints.h"
#include "engines/XunFeiMessage.h"
#include "platform/SystemServices.h"
#include "state/MainState.h"

#include <QObject>
#include <QStringList>

#include <functional>

class QWebSocket;

namespace mevo {

class XunFeiHost;

/// XunFei's dictation over a WebSocket (protocol version 2): one socket a session, audio out while the user
/// speaks, results in. The session's state is the main window's; a socket that has been closed here is not
/// heard any more, whatever still comes from it. Nothing limits the life of a socket but the next session.
/// GUI thread.
class XunFeiStream : public QObject
{
    Q_OBJECT

public:
    /// All but `endpoints` must outlive this object.
    XunFeiStream(MainState &state, const Time &time, EngineEndpoints endpoints, XunFeiHost &host,
                 QObject *parent = nullptr);
    ~XunFeiStream() override;

    /// Sends one frame at once; nothing while the socket is not connected. `status` is 0 for the first
    /// frame, 1 for a middle one, 2 for the last, whose block is not sent.
    void sendFrame(const QByteArray &block, int status);
    /// Ends the session: closes its socket, if there is one, and hides the partial text.
    void close();
    /// Hands on what has been understood so far and ends the session.
    void finishEarly();
    /// The next session is about to begin. What has been understood so far is all of this one, and `done` is
    /// told it at once; where there is nothing yet, its results are waited for beside the next one, and
    /// `done` is told them then. `words` says that the text is words, as XunFeiHost::handleXunFeiText() takes
    /// them.
    void letGo(const std::function<void(const QString &text, bool words)> &done);
    /// The service keeps silent. What it has said until now is handed on and the session ends; where there is
    /// nothing, the socket stays open for a late answer.
    void giveUp();

    /// A larger frame or message makes the socket close.
    static constexpr quint64 largestFrame = 1024 * 1024;
    /// Limits of what one session's results may add up to; the service takes 60 s of speech.
    static constexpr int mostResults = 5000, longestUtterance = 20000;

public Q_SLOTS:
    /// Opens the socket of a new session; an old one is closed first.
    void ConnectXFWebApi();
    void onXFWebApiConnected();
    void onXFWebApiDisconnected();
    /// Takes one message. A session of whole utterances ends with the last result, an error or a broken
    /// message, any other with its first message, whatever that says. The text of all results is handed on
    /// at the end, as one.
    void onXFWebApiMessageReceived(QString message);

private:
    void refuseBinary(const QByteArray &frame);
    void useAccountOf(const QString &voiceType);
    void closeSocket();
    void closeAndHide();
    void takeResult(const XunFeiMessage &message, int session);
    QString gathered() const;
    bool handOn(bool alsoEmpty);
    void endSession(int session);
    bool isOver(int session) const { return session != m_session; }

    MainState &m_state;
    const Time &m_time;
    EngineEndpoints m_endpoints;
    XunFeiHost &m_host;
    int m_receiver = 0;     ///< whose day this session is counted to
    QString m_voiceType;    ///< of this session, as the next three
    bool m_dynamic = false; ///< results may correct earlier ones
    bool m_whole = false;   ///< the session ends with the last result
    bool m_punctuation = false;
    bool m_spoken = false;   ///< the first frame has been sent
    bool m_lastSent = false; ///< and the last one
    QStringList m_fragments; ///< results without correction
    int m_session = 0; ///< number of the session: a text's way may run event loops, and the next one begin
    int m_wordlessSession = -1; ///< session in which a message without words has been logged
};

} // namespace mevo
