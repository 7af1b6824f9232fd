#include "platform/linux/PulseAudioRouter.h"

#include "base/LogText.h"

#include <QByteArray>
#include <QDebug>
#include <QElapsedTimer>

#include <algorithm>
#include <memory>
#include <pulse/context.h>
#include <pulse/error.h>
#include <pulse/introspect.h>
#include <pulse/mainloop.h>
#include <vector>

namespace mevo {

namespace {

struct Source
{
    QByteArray name;
    QString label;
};

/// One connection to the sound server with a common deadline for all that is asked.
class PulseSession
{
public:
    explicit PulseSession(int timeoutMs)
        : m_timeoutMs(timeoutMs)
        , m_loop(pa_mainloop_new(), pa_mainloop_free)
        , m_context(pa_context_new(pa_mainloop_get_api(m_loop.get()), "mevoinput"), disconnect)
    {
        m_timer.start();
        if (pa_context_connect(m_context.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
            return;
        }
        m_ready = run([this] {
            return pa_context_get_state(m_context.get()) == PA_CONTEXT_READY ||
                   !PA_CONTEXT_IS_GOOD(pa_context_get_state(m_context.get()));
        });
        m_ready = m_ready && pa_context_get_state(m_context.get()) == PA_CONTEXT_READY;
    }

    bool isReady() const { return m_ready; }

    std::vector<Source> sources()
    {
        std::vector<Source> found;
        const auto take = [](pa_context *, const pa_source_info *info, int end, void *target) {
            if (end == 0 && info->monitor_of_sink == PA_INVALID_INDEX) {
                static_cast<std::vector<Source> *>(target)->push_back(
                    {info->name, QString::fromUtf8(info->description)});
            }
        };
        if (!finish(pa_context_get_source_info_list(m_context.get(), take, &found))) {
            return {};
        }
        addNamesToTwins(found);
        return found;
    }

    QByteArray defaultSource()
    {
        QByteArray name;
        const auto take = [](pa_context *, const pa_server_info *info, void *target) {
            if (info != nullptr && info->default_source_name != nullptr) {
                *static_cast<QByteArray *>(target) = info->default_source_name;
            }
        };
        finish(pa_context_get_server_info(m_context.get(), take, &name));
        return name;
    }

    bool setDefault(const QByteArray &name)
    {
        bool success = false;
        const auto take = [](pa_context *, int result, void *target) {
            *static_cast<bool *>(target) = result != 0;
        };
        return finish(pa_context_set_default_source(m_context.get(), name.constData(), take, &success)) &&
               success;
    }

private:
    static void disconnect(pa_context *context)
    {
        pa_context_disconnect(context);
        pa_context_unref(context);
    }

    static void addNamesToTwins(std::vector<Source> &sources)
    {
        std::vector<QString> labels;
        labels.reserve(sources.size());
        for (const Source &source : sources) {
            labels.push_back(source.label);
        }
        for (Source &source : sources) {
            if (source.label.isEmpty() || std::count(labels.begin(), labels.end(), source.label) > 1) {
                source.label =
                    QStringLiteral("%1 (%2)").arg(source.label, QString::fromUtf8(source.name)).trimmed();
            }
        }
    }

    /// Turns the loop until `done`; false when the time runs out or the loop breaks.
    template <typename Condition>
    bool run(const Condition &done)
    {
        while (!done()) {
            const qint64 left = m_timeoutMs - m_timer.elapsed();
            if (left <= 0 || pa_mainloop_prepare(m_loop.get(), static_cast<int>(left * 1000)) < 0 ||
                pa_mainloop_poll(m_loop.get()) < 0 || pa_mainloop_dispatch(m_loop.get()) < 0) {
                return false;
            }
        }
        return true;
    }

    bool finish(pa_operation *operation)
    {
        if (operation == nullptr) {
            return false;
        }
        run([operation] { return pa_operation_get_state(operation) != PA_OPERATION_RUNNING; });
        const bool done = pa_operation_get_state(operation) == PA_OPERATION_DONE;
        if (!done) {
            pa_operation_cancel(operation); // its target is about to go
        }
        pa_operation_unref(operation);
        return done;
    }

    int m_timeoutMs;
    QElapsedTimer m_timer;
    std::unique_ptr<pa_mainloop, decltype(&pa_mainloop_free)> m_loop;
    std::unique_ptr<pa_context, decltype(&disconnect)> m_context;
    bool m_ready = false;
};

} // namespace

PulseAudioRouter::PulseAudioRouter(int timeoutMs)
    : m_timeoutMs(timeoutMs)
{
}

QStringList PulseAudioRouter::inputNames()
{
    PulseSession session(m_timeoutMs);
    QStringList names;
    if (session.isReady()) {
        const QByteArray standard = session.defaultSource();
        for (const Source &source : session.sources()) {
            if (source.name == standard) {
                names.prepend(source.label);
            } else {
                names.append(source.label);
            }
        }
    }
    return names;
}

bool PulseAudioRouter::switchDefault(const QString &name)
{
    PulseSession session(m_timeoutMs);
    if (!session.isReady()) {
        qWarning("Microphones: no sound server answers");
        return false;
    }
    const std::vector<Source> sources = session.sources();
    const auto found = std::find_if(sources.begin(), sources.end(), [&name](const Source &source) {
        return source.label == name || QString::fromUtf8(source.name) == name;
    });
    if (found == sources.end() || !session.setDefault(found->name)) {
        qWarning().noquote() << "Microphones:" << logText(name) << "cannot be made the default";
        return false;
    }
    return true;
}

} // namespace mevo
