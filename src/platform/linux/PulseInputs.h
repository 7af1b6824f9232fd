#pragma once

#include "platform/SoundInput.h"
#include "platform/linux/PulseThread.h"

#include <QByteArray>

#include <condition_variable>
#include <list>
#include <memory>
#include <mutex>

struct pa_context;
struct pa_server_info;
struct pa_time_event;

namespace mevo {

class PulseRecording;
class SoundInlet;

/// The microphone of a PulseAudio server, or PipeWire in its place. It begins to connect when it is made; a
/// connection that broke is made anew by whoever asks next.
class PulseInputs : public SoundInputs
{
public:
    /// How long a microphone that is kept ready waits for the next recording, in milliseconds.
    static constexpr int keptReadyMs = 5 * 60 * 1000;

    explicit PulseInputs(int keepMs = keptReadyMs);
    ~PulseInputs() override;

    QString defaultName() override;
    bool hasOutput() override;
    std::unique_ptr<SoundInput> open(const SoundFormat &format) override;
    void letGo() override;
    /// The recording of an inlet is over.
    void close(const std::shared_ptr<SoundInlet> &inlet, SoundInput::Afterwards afterwards);

private:
    enum class Server { Away, Connecting, Here };
    struct Waiting
    {
        SoundFormat format;
        std::shared_ptr<SoundInlet> inlet;
    };

    Server awaitServer();
    void settle(Server server);

    // On the thread only.
    void connect();
    void contextChanged(pa_context *context);
    void disconnect(const char *why);
    void askForDefault();
    void takeDefault(const pa_server_info *info);
    void record(const Waiting &asked);
    void end(const std::shared_ptr<SoundInlet> &inlet, SoundInput::Afterwards afterwards);
    void keep(std::unique_ptr<PulseRecording> recording);
    void dropKept();

    const int m_keepMs;

    std::mutex m_mutex;
    std::condition_variable m_settled;
    Server m_server = Server::Away;
    bool m_waitedInVain = false; ///< for this connection: once is enough
    QByteArray m_default;
    bool m_hasOutput = false;

    // Of the thread.
    pa_context *m_context = nullptr;
    bool m_ready = false; ///< the context
    QByteArray m_microphone;
    bool m_hasSpeaker = false;
    std::list<Waiting> m_waiting; ///< for the connection
    std::list<std::unique_ptr<PulseRecording>> m_recordings;
    std::unique_ptr<PulseRecording> m_kept;
    pa_time_event *m_keptEnd = nullptr;

    PulseThread m_thread; ///< the last, so that it ends before what it uses goes
};

} // namespace mevo
