#pragma once

#include "state/RecorderState.h"

#include <QAudio>
#include <QAudioFormat>
#include <QByteArray>
#include <QObject>
#include <QTimer>

struct MainState;
class RecorderHost;

namespace mevo {
struct Platform;
class SoundInput;
} // namespace mevo

/// Records one voice session after the other: opens the microphone for the length of a session,
/// collects 16 kHz 16-bit mono PCM, feeds the level meter and hands the audio to the engine in force,
/// at the end of the session (Baidu, Tencent) or block by block (XunFei). A session has no end of its
/// own: it lasts until OnRecordStop() or, with XunFei, until the engine's first message. Memory grows
/// by 32000 bytes a second while a session lasts. GUI thread only.
class AudioRecorder : public QObject, public RecorderState
{
    Q_OBJECT

public:
    /// Values of the field "status" of XunFei's frames, and of FrameStatus.
    static constexpr int STATUS_FIRST = 0;
    static constexpr int STATUS_CONTINUE = 1;
    static constexpr int STATUS_LAST = 2;
    static constexpr int STATUS_CLOSED = -1;

    /// Time without any data after which an open microphone is reported as dead, in milliseconds.
    static constexpr int SilenceTimeout = 2000;

    /// Time after OnRecordStop() for which the microphone stays open for a XunFei session that gets no
    /// answer, in milliseconds. The answer itself may come later.
    static constexpr int AnswerTimeout = 5000;

    /// Reads the engine flags, chooses the microphone and asks the host for Baidu's token. With
    /// FirstRunApp on, a device and a network, it makes Tencent the engine first. All three arguments
    /// must outlive the recorder.
    AudioRecorder(MainState &state, mevo::Platform &platform, RecorderHost &host, QObject *parent = nullptr);
    ~AudioRecorder() override;

    /// Takes the capture format for the default microphone and says so when that is not the product's
    /// own. To be called whenever SimulateDoubleChannel or the default microphone has changed.
    void InitMicDevice();
    /// Makes the named microphone of the audio router the default one and takes it for the next session.
    /// False, and nothing changes, where microphones cannot be switched or that one is not there.
    bool switchMicrophone(const QString &name);

    /// The format that the next session opens the microphone with.
    QAudioFormat format() const { return m_format; }
    /// Name of the input as the last InitMicDevice() found it; empty before a device was connected.
    QString deviceName() const { return m_deviceName; }
    /// Reads the engine flags from the settings, for the sessions from the next one on. A stored false does
    /// not clear Baidu's.
    void loadEngineFlags();
    /// XunFei has answered after the end of a session: its next answer is waited for anew.
    void expectMoreAnswers();
    /// The microphone is open, be it in vain, or waits for its close.
    bool isOpen() const { return m_open; }

public slots:
    void OnRecordStart();
    void OnRecordStop();
    void OnStateChange(QAudio::State s);
    void OnReadMore();
    void OnTimeOut();
    void showRecText(QString text);
    void DeleyCloseMicTimer();

signals:
    void SendRec2Main(QString text);
    /// One block for the level meter: the whole read buffer and the number of bytes that count in it.
    void SendVolume2MicDlg(QByteArray mVoiceBuffer, int l);

private:
    void applyFirstRun();
    void chooseMicrophone();
    bool makeDefault(const QString &name);
    void openInput();
    void closeInput();
    void processBlock(int length);
    void streamBlock(const QByteArray &block);
    void dropInput();
    void inputEnded();
    void reportDeadMicrophone(const char *reason);
    int unsentMs() const;

    MainState &m_state;
    mevo::Platform &m_platform;
    RecorderHost &m_host;

    QAudioFormat m_format;
    QString m_deviceName;
    bool m_open = false;
    mevo::SoundInput *m_input = nullptr; ///< null while open: it could not be opened, or has ended
    QByteArray mVoiceBuffer;
    QByteArray m_readBuffer;
    QTimer m_closeTimer;
    QTimer m_silence;
    QTimer m_answerTimer;
    /// Engines of the session, as they stood at its start.
    struct InForce
    {
        bool buffers = false; ///< Baidu or Tencent, which take the whole recording
        bool streams = false; ///< XunFei
    } m_inForce;
    bool m_sessionOpen = false;    ///< between a start and its stop
    bool m_initAfterClose = false; ///< InitMicDevice() was called while the microphone was in use
    int m_blockCount = 0;
    int m_unsentBytes = 0;    ///< of this session, before XunFei's socket was connected
    int m_session = 0;        ///< number of the session, to tell whether a next one has begun meanwhile
    bool m_streaming = false; ///< a session has opened a socket that has not been closed here
    bool m_deadReported = false;
};
