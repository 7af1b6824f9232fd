#include "ui/commands/PathLooker.h"

#include <QFileInfo>

#include <atomic>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

namespace mevo {

namespace {

constexpr int mostThreads = 4; ///< of all lookers: so many paths may hang before no more is looked at

std::atomic<int> threads{0};

bool lookAtDisk(const QString &path, bool folder)
{
    const QFileInfo info(path);
    return folder ? info.isDir() : info.exists();
}

} // namespace

/// What a looker shares with its threads. They are never waited for, so it outlives the looker.
struct PathLooker::Work
{
    std::mutex mutex;
    Look look;
    PathLooker *owner = nullptr; ///< null when it has gone
    std::deque<Question> questions;
    QHash<Question, bool> answers;
    bool told = false; ///< the owner will fetch the answers
};

PathLooker::PathLooker(QObject *parent, Look look)
    : QObject(parent)
    , m_work(std::make_shared<Work>())
{
    m_work->look = look ? std::move(look) : Look(lookAtDisk);
    m_work->owner = this;
}

PathLooker::~PathLooker()
{
    const std::lock_guard<std::mutex> lock(m_work->mutex);
    m_work->owner = nullptr;
    m_work->questions.clear();
}

bool PathLooker::isThere(const QString &path, bool folder)
{
    const Question question(path, folder);
    const auto known = m_known.constFind(question);
    if (known != m_known.constEnd()) {
        return *known;
    }
    m_known.insert(question, true);
    {
        const std::lock_guard<std::mutex> lock(m_work->mutex);
        m_work->questions.push_back(question);
    }
    if (threads.fetch_add(1) < mostThreads) {
        std::thread(answer, m_work).detach();
    } else {
        --threads;
    }
    return true;
}

void PathLooker::answer(const std::shared_ptr<Work> &work)
{
    std::unique_lock<std::mutex> lock(work->mutex);
    while (!work->questions.empty()) {
        const Question question = work->questions.front();
        work->questions.pop_front();
        lock.unlock();
        const bool there = work->look(question.first, question.second);
        lock.lock();
        work->answers.insert(question, there);
        if (work->owner != nullptr && !work->told) {
            work->told = true;
            QMetaObject::invokeMethod(work->owner, &PathLooker::takeAnswers, Qt::QueuedConnection);
        }
    }
    --threads; // under the lock: a question that comes now starts a thread of its own
}

void PathLooker::takeAnswers()
{
    QHash<Question, bool> answers;
    {
        const std::lock_guard<std::mutex> lock(m_work->mutex);
        answers.swap(m_work->answers);
        m_work->told = false;
    }
    bool news = false;
    for (auto answer = answers.cbegin(); answer != answers.cend(); ++answer) {
        const auto known = m_known.find(answer.key());
        if (known != m_known.end() && *known != answer.value()) {
            *known = answer.value();
            news = true;
        }
    }
    if (news) {
        Q_EMIT looked();
    }
}

void PathLooker::forget()
{
    m_known.clear();
}

} // namespace mevo
