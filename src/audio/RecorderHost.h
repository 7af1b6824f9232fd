#pragma once

#include <QByteArray>
#include <QString>

class QAudioFormat;
class QBuffer;

/// What the recorder asks of the program around it. All calls are made on the GUI thread, some of them
/// from the recorder's constructor, when whoever builds it does not hold it yet.
class RecorderHost
{
public:
    virtual ~RecorderHost() = default;

    /// Has the session that has just ended recognised with the engine of its press, without waiting for it.
    /// `audio` is closed and lives until the call returns; it may be empty.
    virtual void recognise(QBuffer *audio, const QAudioFormat &format) = 0;
    /// A session has ended whose engine recognises nothing.
    virtual void sessionHandedOver() = 0;
    /// Fetches Baidu's token; whether it could be had.
    virtual bool refreshBaiduToken() = 0;

    /// Opens the socket of XunFei's streaming recognition for a new session.
    virtual void openXunFeiSocket() = 0;
    virtual bool xunFeiConnected() const = 0;
    /// Sends one frame of a session. `status` is AudioRecorder's STATUS_FIRST, STATUS_CONTINUE or
    /// STATUS_LAST; `block` is 16 kHz mono PCM, not copied: it is valid during the call only.
    virtual void sendXunFeiFrame(const QByteArray &block, int status) = 0;
    /// Closes the socket with code 1000 if there is one, and hides the partial result window when
    /// dynamic correction is on.
    virtual void closeXunFeiSocket() = 0;

    /// XunFei has not answered for long after the end: what it has said until then is all.
    virtual void giveXunFeiUp() = 0;

    /// Clears the mark that runs the program with the administrator's rights, and its setting.
    virtual void clearRunAsAdministrator() = 0;
    /// Sends one statement for the device record.
    virtual void runBackendSql(const QString &statement) = 0;
};
