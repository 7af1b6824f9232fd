#pragma once

#include "audio/AudioRecorder.h"
#include "audio/RecorderHost.h"
#include "state/MainState.h"
#include "support/FakePlatform.h"
#include "support/ScratchHome.h"

#include <QBuffer>
#include <QByteArray>
#include <QList>

#include <functional>

/// A host that keeps what the recorder hands over.
class FakeHost : public RecorderHost
{
public:
    explicit FakeHost(CallLog &log)
        : m_log(log)
    {
    }
    void recognise(QBuffer *audio, const QAudioFormat &) override
    {
        m_log.add(QStringLiteral("recognise"));
        sessions.append(audio->data());
        if (whileRecognising) {
            whileRecognising();
        }
    }
    void sessionHandedOver() override { m_log.add(QStringLiteral("handed over")); }
    void giveXunFeiUp() override { m_log.add(QStringLiteral("give up")); }
    bool refreshBaiduToken() override
    {
        m_log.add(QStringLiteral("token"));
        return token;
    }
    void openXunFeiSocket() override { m_log.add(QStringLiteral("socket open")); }
    bool xunFeiConnected() const override { return connected; }
    void sendXunFeiFrame(const QByteArray &block, int status) override
    {
        frames.append({status, QByteArray(block.constData(), block.size())});
    }
    void closeXunFeiSocket() override { m_log.add(QStringLiteral("socket close")); }
    void clearRunAsAdministrator() override { m_log.add(QStringLiteral("administrator clear")); }
    void runBackendSql(const QString &statement) override { m_log.add(QStringLiteral("sql ") + statement); }

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

private:
    CallLog &m_log;
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
    /// The messages that the user has seen.
    QStringList messages() const { return fakes.log.calls(QStringLiteral("message ")); }

    FakePlatform fakes;
    MainState state;
    FakeHost host{fakes.log};
    AudioRecorder recorder;
    int blocks = 0;
    int bytes = 0;
    int longest = 0;
    QByteArray lastBuffer;
};
