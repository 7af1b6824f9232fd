#include "audio/AudioRecorder.h"

#include "audio/CaptureFormat.h"
#include "audio/MicrophoneChoice.h"
#include "audio/RecorderHost.h"
#include "audio/Samples.h"
#include "base/LogText.h"
#include "base/SettingsFile.h"
#include "engines/EngineSelection.h"
#include "platform/Platform.h"
#include "service/Statements.h"
#include "state/MainState.h"

#include <QBuffer>
#include <QDebug>
#include <QPointer>

#include <utility>

namespace {

constexpr int ReadBufferBytes = 4096;
constexpr int PeriodBytes = 640; ///< 20 ms of mono
constexpr int CloseDelay = 1;    ///< milliseconds
constexpr int DefaultSwitchWait = 300;

} // namespace

AudioRecorder::AudioRecorder(MainState &state, mevo::Platform &platform, RecorderHost &host, QObject *parent)
    : QObject(parent)
    , m_state(state)
    , m_platform(platform)
    , m_host(host)
    , m_format(mevo::captureFormat(state.SimulateDoubleChannel))
    , m_readBuffer(ReadBufferBytes, '\0')
{
    m_closeTimer.setSingleShot(true);
    m_closeTimer.setInterval(CloseDelay);
    m_closeTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_closeTimer, &QTimer::timeout, this, &AudioRecorder::DeleyCloseMicTimer);
    m_silence.setSingleShot(true);
    m_silence.setInterval(SilenceTimeout);
    connect(&m_silence, &QTimer::timeout, this, [this] { reportDeadMicrophone("gives no data"); });
    m_answerTimer.setSingleShot(true);
    m_answerTimer.setInterval(AnswerTimeout);
    connect(&m_answerTimer, &QTimer::timeout, this, [this] {
        qWarning("XunFei: no answer %d ms after the end; the microphone closes", m_answerTimer.interval());
        closeInput();
        m_host.giveXunFeiUp();
    });

    if (m_state.FirstRunApp && m_state.DeviceConnected && m_state.IsOnline) {
        applyFirstRun();
    }
    loadEngineFlags();
    m_state.OnlyUseOurDeviceMic = mevo::SettingsFile().value(QStringLiteral("OnlyUseOurDeviceMic")).toBool();
    chooseMicrophone();

    BaiduTokenRefreshed = m_host.refreshBaiduToken();
    InitMicDevice();
}

AudioRecorder::~AudioRecorder()
{
    m_initAfterClose = false;
    closeInput();
}

void AudioRecorder::loadEngineFlags()
{
    const mevo::SettingsFile settings;
    const auto isOn = [&settings](const char *key) { return settings.value(QLatin1String(key)).toBool(); };
    BaiDuNoStreamApi = BaiDuNoStreamApi || isOn("BaiDuNoStreamApi"); // the key can only raise it
    UseXunFeiWebApi = isOn("UseXunFeiWebApi");
    EnableXunFeiWebApiDwa = isOn("EnableXunFeiWebApiDwa");
    UseTXASRApi = isOn("UseTXASRApi");
}

void AudioRecorder::applyFirstRun()
{
    mevo::setEngineFlags(*this, mevo::Engine::Tencent);
    m_state.LocalEnableASR3 = false;
    m_state.LocalUseASR3Index = -1;
    m_state.FirstRunApp = false;
    {
        mevo::SettingsFile settings;
        settings.setValue(QStringLiteral("BaiDuCurrentVoiceType"), m_state.BaiDuCurrentVoiceType);
        settings.setValue(QStringLiteral("BaiDuNoStreamApi_FastVersion"),
                          m_state.BaiDuNoStreamApi_FastVersion ? 1 : 0);
        for (const mevo::SettingWrite &write : mevo::engineKeyWrites(*this)) {
            settings.setValue(QLatin1String(write.key), write.value);
        }
        settings.setValue(QStringLiteral("LocalEnableASR3"), 0);
        settings.setValue(QStringLiteral("LocalUseASR3Index"), -1);
        settings.setValue(QStringLiteral("FirstRunApp"), 0);
    }
    m_host.clearRunAsAdministrator();
    if (m_state.BackendReachable) {
        m_host.runBackendSql(mevo::deviceStatement(
            mevo::Statement::FirstRunTencent, m_state.SchemaName,
            {QString::number(m_state.BaiDuNoStreamApi_FastVersion ? 1 : 0), m_state.DongleID}));
    }
}

void AudioRecorder::chooseMicrophone()
{
    if (!m_platform.audioRouter || m_platform.systemFacts->isXpClass() || !m_state.OnlyUseOurDeviceMic) {
        return;
    }
    const QString name = mevo::productMicrophone(m_platform.audioRouter->inputNames());
    if (!name.isEmpty()) {
        makeDefault(name);
    }
}

bool AudioRecorder::switchMicrophone(const QString &name)
{
    if (!m_platform.audioRouter || m_platform.systemFacts->isXpClass() || !makeDefault(name)) {
        return false;
    }
    InitMicDevice();
    return true;
}

bool AudioRecorder::makeDefault(const QString &name)
{
    mevo::SoundInputs &inputs = *m_platform.soundInputs;
    const QString before = inputs.defaultName();
    if (!m_platform.audioRouter->switchDefault(name)) {
        qWarning().noquote() << "Recorder: cannot make" << mevo::logText(name) << "the default microphone";
        return false;
    }
    // The sound server tells of the new default a little later.
    for (int waited = 0; waited < DefaultSwitchWait; waited += 10) {
        const QString now = inputs.defaultName();
        if (now != before || mevo::isProductMicrophone(now)) {
            break;
        }
        m_platform.time->sleepMs(10);
    }
    return true;
}

void AudioRecorder::InitMicDevice()
{
    if (m_open) {
        m_initAfterClose = true; // the session that runs goes on as it began
        return;
    }
    m_format = mevo::captureFormat(m_state.SimulateDoubleChannel);
    if (!m_state.DeviceConnected) {
        return;
    }
    m_deviceName = m_platform.soundInputs->defaultName();
    if (!mevo::isProductMicrophone(m_deviceName)) {
        m_platform.notifications->message(QString(),
                                          tr("正在使用电脑自带麦克风,如不能正常语音识别,"
                                             "请尝试在设置中选择其它麦克风或启用/禁用立体声混音！"),
                                          mevo::MessageIcon::Information, 2000);
    }
}

void AudioRecorder::OnRecordStart()
{
    RecordStarting = true;
    if (m_closeTimer.isActive()) {
        // A blocking engine call has held the last session's close back: it comes now, so that it
        // does not hit this session.
        m_closeTimer.stop();
        DeleyCloseMicTimer();
    }
    ++m_session;
    m_sessionOpen = true;
    // Without any engine, as an input method leaves it, the session is Tencent's: nothing said in it is lost.
    const bool noEngine = !BaiDuNoStreamApi && !UseTXASRApi && !UseXunFeiWebApi;
    m_inForce = {BaiDuNoStreamApi || UseTXASRApi || noEngine, UseXunFeiWebApi};
    m_blockCount = 0;
    m_unsentBytes = 0;
    m_answerTimer.stop();
    mVoiceBuffer.clear();
    if (UseXunFeiWebApi && !m_platform.systemFacts->isXpClass()) {
        m_host.openXunFeiSocket();
        FrameStatus = STATUS_FIRST;
        m_streaming = true;
    } else if (m_streaming) {
        m_streaming = false;
        m_host.closeXunFeiSocket(); // a late answer to an earlier session must not end this one
    }
    if (m_open && m_input == nullptr) {
        closeInput(); // the last session had none, or lost it
    }
    if (!m_open) {
        openInput();
    }
    if (BaiDuNoStreamApi && !BaiduTokenRefreshed) {
        BaiduTokenRefreshed = m_host.refreshBaiduToken();
    }
    RecordStarting = false;
}

void AudioRecorder::openInput()
{
    // An engine may have changed its mind since InitMicDevice().
    m_format = mevo::captureFormat(m_state.SimulateDoubleChannel);
    const int channels = m_format.channelCount();
    m_deadReported = false;
    m_open = true;
    m_input = m_platform.soundInputs->open({mevo::CaptureRate, channels, PeriodBytes * channels}).release();
    if (m_input == nullptr) {
        reportDeadMicrophone("cannot be opened");
        return;
    }
    m_input->setParent(this);
    connect(m_input, &mevo::SoundInput::readyRead, this, &AudioRecorder::OnReadMore);
    connect(m_input, &mevo::SoundInput::ended, this, &AudioRecorder::inputEnded);
    SavedInputVolume = 1.0; // nothing of ours makes it softer
    m_silence.start();
}

void AudioRecorder::closeInput()
{
    m_silence.stop();
    m_answerTimer.stop();
    dropInput();
    if (std::exchange(m_open, false) && std::exchange(m_initAfterClose, false)) {
        InitMicDevice();
    }
}

void AudioRecorder::dropInput()
{
    if (m_input != nullptr) {
        m_input->disconnect(this);
        m_input->stop(m_state.KeepMicrophoneReady ? mevo::SoundInput::Afterwards::KeepReady
                                                  : mevo::SoundInput::Afterwards::LetGo);
        // Not deleted on the spot: one of its own signals may have brought us here.
        std::exchange(m_input, nullptr)->deleteLater();
    }
}

void AudioRecorder::OnReadMore()
{
    // Several periods may have come under one signal.
    for (bool more = true; more && m_input != nullptr;) {
        // Written in place, though receivers of earlier blocks may share the buffer: they want the
        // latest level, and no block costs an allocation.
        char *const buffer = const_cast<char *>(m_readBuffer.constData());
        const int length = m_input->read(buffer, mevo::MaxBlockBytes);
        more = length > 0;
        if (more || FrameStatus == STATUS_LAST) {
            processBlock(length);
        }
    }
}

void AudioRecorder::processBlock(int length)
{
    if (length > 0) {
        m_silence.start();
        if (++m_blockCount == 1) {
            qDebug("Recorder: first samples");
        }
    }
    QByteArray block = QByteArray::fromRawData(m_readBuffer.constData(), length);
    if (m_format.channelCount() == 2) {
        block = mevo::leftChannel(m_readBuffer.constData(), length);
    }
    if (m_inForce.streams) {
        if (m_host.xunFeiConnected()) {
            streamBlock(block);
        } else if (FrameStatus == STATUS_FIRST) {
            m_unsentBytes += block.size();
        }
    }
    if (m_inForce.buffers) {
        mVoiceBuffer.append(block.constData(), block.size());
    }
    emit SendVolume2MicDlg(m_readBuffer, block.size());
}

void AudioRecorder::streamBlock(const QByteArray &block)
{
    if (FrameStatus == STATUS_FIRST) {
        qInfo("XunFei: %d ms of sound came before the connection and are not sent", unsentMs());
        m_host.sendXunFeiFrame(block, STATUS_FIRST);
        FrameStatus = STATUS_CONTINUE;
    }
    if (FrameStatus == STATUS_CONTINUE) { // kept: the first block goes out twice
        m_host.sendXunFeiFrame(block, STATUS_CONTINUE);
    } else if (FrameStatus == STATUS_LAST) {
        m_host.sendXunFeiFrame(QByteArray(), STATUS_LAST);
        FrameStatus = STATUS_CLOSED;
    }
}

void AudioRecorder::OnRecordStop()
{
    if (!std::exchange(m_sessionOpen, false)) {
        return; // its session has been handed over already, and there is nothing more to recognise
    }
    OnReadMore(); // what the microphone still holds is the end of the last word
    const int session = m_session;
    if (m_inForce.streams) {
        if (FrameStatus == STATUS_FIRST && m_unsentBytes > 0) {
            qWarning("XunFei: no connection; %d ms of sound are not sent", unsentMs());
        }
        FrameStatus = STATUS_LAST; // the microphone stays open: its next block sends the closing frame
        if (isOpen()) {
            m_answerTimer.start();
        }
    } else {
        m_closeTimer.start();
        BufferReady = true;
    }
    qDebug("Recorder: session of %d blocks, %d bytes", m_blockCount, mVoiceBuffer.size());
    if (!m_inForce.buffers) {
        BufferReady = false;
        mVoiceBuffer.clear();
        if (!m_inForce.streams) {
            m_host.sessionHandedOver();
        }
        return;
    }
    // The engine may run an event loop, and the next session start in it: this session's audio is taken out
    // of the way.
    QByteArray audio;
    audio.swap(mVoiceBuffer);
    QBuffer buffer(&audio);
    const QPointer<AudioRecorder> alive(this);
    m_host.recognise(&buffer, m_format);
    if (!alive.isNull() && session == m_session) {
        BufferReady = false;
        mVoiceBuffer.clear();
    }
}

void AudioRecorder::expectMoreAnswers()
{
    if (m_answerTimer.isActive()) {
        m_answerTimer.start();
    }
}

void AudioRecorder::OnStateChange(QAudio::State s)
{
    if (s == QAudio::IdleState) {
        OnRecordStop();
    }
}

void AudioRecorder::inputEnded()
{
    OnReadMore(); // what was said before
    reportDeadMicrophone(m_blockCount > 0 ? "was taken away by the sound server" : "cannot be opened");
    m_silence.stop();
    dropInput();
}

void AudioRecorder::reportDeadMicrophone(const char *reason)
{
    if (m_deadReported) {
        return;
    }
    m_deadReported = true;
    qWarning("Recorder: the microphone %s", reason);
    m_platform.notifications->message(
        QString(),
        tr("打开麦克风设备失败，请查看设备管理器中显示设备是否正常，如是Windows "
           "10系统，请先确认麦克风权限是否已打开!"),
        mevo::MessageIcon::Information, 3000);
}

int AudioRecorder::unsentMs() const
{
    return m_unsentBytes / (mevo::CaptureRate * 2 / 1000);
}

void AudioRecorder::OnTimeOut() {}

void AudioRecorder::showRecText(QString text)
{
    emit SendRec2Main(std::move(text));
}

void AudioRecorder::DeleyCloseMicTimer()
{
    m_closeTimer.stop();
    closeInput();
    m_host.closeXunFeiSocket();
    m_streaming = false;
    m_blockCount = 0;
    BufferReady = true;
}
