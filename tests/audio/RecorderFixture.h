#pragma once

#include "audio/AudioRecorder.h"
#include "audio/RecorderHost.h"
#include "state/MainState.h"
#include "support/ListeningPlatform.h"
#include "support/ScratchHome.h"
#include "support/Texts.h"

#include <QBuffer>
#include <QByteArray>
#include <QList>
#include <QTest>

#include <functional>

/// A host that keeps what the recorder hands over.
class FakeHost : public Logged<RecorderHost>
{
public:
    using Logged::Logged;
    void recognise(QBuffer *audio, const QAudioFormat &) override
    {
        m_log.add("recognise"_s);
        sessions.append(audio->data());
        if (whileRecognising) {
            whileRecognising();
        }
    }
    void sessionHandedOver() override { m_log.add("handed over"_s); }
    void giveXunFeiUp() override { m_log.add("give up"_s); }
    bool refreshBaiduToken() override
    {
        m_log.add("token"_s);
        return token;
    }
    void openXunFeiSocket() override { m_log.add("socket open"_s); }
    bool xunFeiConnected() const override { return connected; }
    void sendXunFeiFrame(const QByteArray &block, int status) override
    {
        frames.append({status, QByteArray(block.constData(), block.size())});
    }
    void closeXunFeiSocket() override { m_log.add("socket close"_s); }
    void clearRunAsAdministrator() override { m_log.add("administrator clear"_s); }
    void runBackendSql(const QString &statement) override { m_log.add("sql "_s + statement); }

    struct Frame
    {
        int status;
        QByteArray block;
    };
    QList<QByteArray> sessions;
    QList<Frame> frames;
    std::function<void()> whileRecognising;
    bool token = true;
    bool connected = false;
};

/// A recorder among fakes, with the blocks that its meter signal announced.
struct RecorderFixture
{
    explicit RecorderFixture(bool doubleChannel = false)
        : recorder((state.SimulateDoubleChannel = doubleChannel, state), fakes.platform, host)
    {
        QObject::connect(&recorder, &AudioRecorder::SendVolume2MicDlg, &recorder,
                         [this](const QByteArray &buffer, int length) {
                             ++blocks;
                             bytes += length;
                             longest = qMax(longest, length);
                             lastBuffer = QByteArray(buffer.constData(), buffer.size());
                         });
    }
    /// The key goes down, and audio comes.
    void press()
    {
        const int before = blocks;
        recorder.OnRecordStart();
        QTRY_VERIFY(blocks > before);
    }
    /// The messages that the user has seen.
    QStringList messages() const { return fakes.log.calls("message "_s); }

    ListeningPlatform fakes;
    MainState state;
    FakeHost host{fakes.log};
    AudioRecorder recorder;
    int blocks = 0;
    int bytes = 0;
    int longest = 0;
    QByteArray lastBuffer;
};
