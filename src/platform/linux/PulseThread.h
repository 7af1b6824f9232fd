#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

struct pa_mainloop;
struct pa_mainloop_api;

namespace mevo {

/// A thread for conversations with the sound server, so that nobody else waits for it. All calls of the
/// server's library are made on it.
class PulseThread
{
public:
    PulseThread();
    /// Waits for the calls that were posted.
    ~PulseThread();
    PulseThread(const PulseThread &) = delete;
    PulseThread &operator=(const PulseThread &) = delete;

    /// False where the system has nothing left for a thread; then nothing that is posted is called.
    bool isRunning() const { return m_running; }
    /// Calls `call` on the thread, after those that were posted before. From any thread.
    void post(std::function<void()> call);
    pa_mainloop_api *api() const;

private:
    void run();
    bool hasPosted();
    void callPosted();

    std::unique_ptr<pa_mainloop, void (*)(pa_mainloop *)> m_loop;
    std::mutex m_mutex;
    std::vector<std::function<void()>> m_posted;
    std::atomic<bool> m_running{false};
    std::atomic<bool> m_leaving{false};
    std::thread m_thread;
};

} // namespace mevo
