#include "platform/linux/PulseInputs.h"

#include "platform/linux/PulseRecording.h"

#include <QDebug>

#include <algorithm>
#include <chrono>
#include <pulse/context.h>
#include <pulse/error.h>
#include <pulse/introspect.h>
#include <pulse/rtclock.h>
#include <pulse/subscribe.h>
#include <utility>

namespace mevo {

namespace {

/// For which a press is held up at most by a server that does not answer.
constexpr auto longestWait = std::chrono::milliseconds(300);

bool isSame(const SoundFormat &one, const SoundFormat &other)
{
    return one.rate == other.rate && one.channels == other.channels &&
           one.fragmentBytes == other.fragmentBytes;
}

class PulseInput : public SoundInput
{
public:
    explicit PulseInput(PulseInputs &inputs)
        : m_inputs(inputs)
        , m_inlet(std::make_shared<SoundInlet>(this))
    {
    }
    ~PulseInput() override { PulseInput::stop(Afterwards::LetGo); }
    PulseInput(const PulseInput &) = delete;
    PulseInput &operator=(const PulseInput &) = delete;

    int read(char *to, int most) override { return m_inlet->take(to, most); }
    void stop(Afterwards afterwards) override
    {
        if (!std::exchange(m_stopped, true)) {
            m_inlet->leave();
            m_inputs.close(m_inlet, afterwards);
        }
    }
    const std::shared_ptr<SoundInlet> &inlet() const { return m_inlet; }

private:
    PulseInputs &m_inputs;
    std::shared_ptr<SoundInlet> m_inlet;
    bool m_stopped = false;
};

} // namespace

PulseInputs::PulseInputs(int keepMs)
    : m_keepMs(keepMs)
    , m_server(Server::Connecting)
{
    m_thread.post([this] { connect(); });
}

PulseInputs::~PulseInputs()
{
    m_thread.post([this] { disconnect(nullptr); });
}

PulseInputs::Server PulseInputs::awaitServer()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!m_thread.isRunning()) {
        return Server::Away;
    }
    if (m_server == Server::Away) {
        m_server = Server::Connecting;
        m_waitedInVain = false;
        m_thread.post([this] { connect(); });
    }
    if (!m_waitedInVain) {
        m_waitedInVain =
            !m_settled.wait_for(lock, longestWait, [this] { return m_server != Server::Connecting; });
    }
    return m_server;
}

QString PulseInputs::defaultName()
{
    if (awaitServer() != Server::Here) {
        return {};
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    return QString::fromUtf8(m_default);
}

bool PulseInputs::hasOutput()
{
    const Server server = awaitServer();
    const std::lock_guard<std::mutex> lock(m_mutex);
    return server == Server::Connecting || (server == Server::Here && m_hasOutput);
}

std::unique_ptr<SoundInput> PulseInputs::open(const SoundFormat &format)
{
    if (awaitServer() == Server::Away) {
        return nullptr;
    }
    auto input = std::make_unique<PulseInput>(*this);
    m_thread.post([this, asked = Waiting{format, input->inlet()}] { record(asked); });
    return input;
}

void PulseInputs::letGo()
{
    m_thread.post([this] { dropKept(); });
}

void PulseInputs::close(const std::shared_ptr<SoundInlet> &inlet, SoundInput::Afterwards afterwards)
{
    m_thread.post([this, inlet, afterwards] { end(inlet, afterwards); });
}

void PulseInputs::settle(Server server)
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_server = server;
        m_default = m_microphone;
        m_hasOutput = m_hasSpeaker;
    }
    m_settled.notify_all();
}

void PulseInputs::connect()
{
    m_context = pa_context_new(m_thread.api(), "MEVOInput");
    if (m_context == nullptr) {
        disconnect("out of memory");
        return;
    }
    pa_context_set_state_callback(
        m_context,
        [](pa_context *context, void *self) { static_cast<PulseInputs *>(self)->contextChanged(context); },
        this);
    if (pa_context_connect(m_context, nullptr, PA_CONTEXT_NOFLAGS, nullptr) < 0) {
        disconnect(pa_strerror(pa_context_errno(m_context)));
    }
}

void PulseInputs::contextChanged(pa_context *context)
{
    const pa_context_state_t state = pa_context_get_state(context);
    if (state == PA_CONTEXT_READY) {
        m_ready = true;
        pa_context_set_subscribe_callback(
            context,
            [](pa_context *, pa_subscription_event_type_t, std::uint32_t, void *self) {
                static_cast<PulseInputs *>(self)->askForDefault();
            },
            this);
        forget(pa_context_subscribe(context, PA_SUBSCRIPTION_MASK_SERVER, nullptr, nullptr));
        askForDefault();
    } else if (!PA_CONTEXT_IS_GOOD(state)) {
        m_ready = false;
        // Not within its own call.
        m_thread.post([this, context, why = pa_strerror(pa_context_errno(context))] {
            if (m_context == context) {
                disconnect(why);
            }
        });
    }
}

/// Whoever records or waits hears of it; `why` is null when it is wanted.
void PulseInputs::disconnect(const char *why)
{
    m_ready = false;
    dropKept();
    if (why != nullptr) {
        qInfo("Microphone: not connected with the sound server: %s", why);
    }
    for (const Waiting &waiting : std::exchange(m_waiting, {})) {
        waiting.inlet->end();
    }
    m_recordings.clear();
    if (m_context != nullptr) {
        pa_context_set_state_callback(m_context, nullptr, nullptr);
        pa_context_set_subscribe_callback(m_context, nullptr, nullptr);
        pa_context_disconnect(m_context);
        pa_context_unref(m_context);
        m_context = nullptr;
    }
    m_microphone.clear();
    m_hasSpeaker = false;
    settle(Server::Away);
}

void PulseInputs::askForDefault()
{
    forget(pa_context_get_server_info(
        m_context,
        [](pa_context *, const pa_server_info *info, void *self) {
            static_cast<PulseInputs *>(self)->takeDefault(info);
        },
        this));
}

void PulseInputs::takeDefault(const pa_server_info *info)
{
    const QByteArray before = m_microphone;
    if (info != nullptr) {
        m_microphone = info->default_source_name; // null makes it empty
        m_hasSpeaker = info->default_sink_name != nullptr && *info->default_sink_name != 0;
    }
    if (m_microphone != before) {
        dropKept();
    }
    settle(Server::Here);
    for (const Waiting &waiting : std::exchange(m_waiting, {})) {
        record(waiting);
    }
}

void PulseInputs::record(const Waiting &asked)
{
    if (m_context == nullptr) {
        asked.inlet->end(); // it broke meanwhile
    } else if (!m_ready) {
        m_waiting.push_back(asked);
    } else if (m_kept && m_kept->isReady() && isSame(m_kept->format(), asked.format)) {
        m_recordings.push_back(std::move(m_kept));
        dropKept();
        m_recordings.back()->resume(asked.inlet);
    } else {
        dropKept();
        m_recordings.push_back(
            std::make_unique<PulseRecording>(m_context, m_microphone, asked.format, asked.inlet));
    }
}

void PulseInputs::end(const std::shared_ptr<SoundInlet> &inlet, SoundInput::Afterwards afterwards)
{
    m_waiting.remove_if([&inlet](const Waiting &waiting) { return waiting.inlet == inlet; });
    const auto found = std::find_if(m_recordings.begin(), m_recordings.end(),
                                    [&inlet](const auto &one) { return one->inlet() == inlet.get(); });
    if (found == m_recordings.end()) {
        return;
    }
    std::unique_ptr<PulseRecording> recording = std::move(*found);
    m_recordings.erase(found);
    if (afterwards == SoundInput::Afterwards::KeepReady && m_ready && recording->isReady()) {
        keep(std::move(recording));
    }
}

void PulseInputs::keep(std::unique_ptr<PulseRecording> recording)
{
    dropKept();
    m_kept = std::move(recording);
    m_kept->pause();
    m_keptEnd = pa_context_rttime_new(
        m_context, pa_rtclock_now() + static_cast<pa_usec_t>(m_keepMs) * 1000,
        [](pa_mainloop_api *, pa_time_event *, const timeval *, void *self) {
            static_cast<PulseInputs *>(self)->dropKept();
        },
        this);
}

void PulseInputs::dropKept()
{
    m_kept.reset();
    if (m_keptEnd != nullptr) {
        m_thread.api()->time_free(std::exchange(m_keptEnd, nullptr));
    }
}

} // namespace mevo
