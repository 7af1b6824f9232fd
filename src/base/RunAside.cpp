#include "base/RunAside.h"

#include <QThread>

#include <utility>

namespace mevo {

namespace {

class WorkThread : public QThread
{
public:
    WorkThread(QObject *owner, std::function<void()> work)
        : QThread(owner)
        , m_work(std::move(work))
    {
    }
    ~WorkThread() override { wait(); }
    Q_DISABLE_COPY(WorkThread)

protected:
    void run() override { m_work(); }

private:
    const std::function<void()> m_work;
};

} // namespace

void runAside(QObject *owner, std::function<void()> work, const std::function<void()> &then)
{
    auto *const thread = new WorkThread(owner, std::move(work));
    QObject::connect(thread, &QThread::finished, owner, then);
    QObject::connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    thread->start();
}

} // namespace mevo
