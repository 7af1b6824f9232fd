#include "platform/linux/PulseThread.h"

#include <QDebug>

#include <pulse/mainloop.h>
#include <system_error>
#include <utility>

namespace mevo {

PulseThread::PulseThread()
    : m_loop(pa_mainloop_new(), pa_mainloop_free)
{
    if (m_loop == nullptr) {
        qWarning("Microphone: the system gives no loop to talk with the sound server");
        return;
    }
    m_running = true;
    try {
        m_thread = std::thread(&PulseThread::run, this);
    } catch (const std::system_error &error) {
        m_running = false;
        qWarning("Microphone: no thread: %s", error.what());
    }
}

PulseThread::~PulseThread()
{
    if (m_thread.joinable()) {
        m_leaving = true;
        pa_mainloop_wakeup(m_loop.get());
        m_thread.join();
    }
}

void PulseThread::post(std::function<void()> call)
{
    if (!m_running) {
        return;
    }
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_posted.push_back(std::move(call));
    }
    pa_mainloop_wakeup(m_loop.get());
}

pa_mainloop_api *PulseThread::api() const
{
    return pa_mainloop_get_api(m_loop.get());
}

void PulseThread::run()
{
    while (!m_leaving) {
        callPosted();
        const bool prepared = pa_mainloop_prepare(m_loop.get(), -1) >= 0;
        if (prepared && (m_leaving || hasPosted())) {
            pa_mainloop_wakeup(m_loop.get()); // the preparation throws an earlier one away
        }
        if (!prepared || pa_mainloop_poll(m_loop.get()) < 0 || pa_mainloop_dispatch(m_loop.get()) < 0) {
            qWarning("Microphone: the loop that talks with the sound server has broken");
            break;
        }
    }
    m_running = false;
    callPosted();
}

bool PulseThread::hasPosted()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return !m_posted.empty();
}

void PulseThread::callPosted()
{
    std::vector<std::function<void()>> calls;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        calls.swap(m_posted);
    }
    for (const std::function<void()> &call : calls) {
        call();
    }
}

} // namespace mevo
