#pragma once

#include <QHash>
#include <QObject>
#include <QPair>

#include <functional>
#include <memory>

namespace mevo {

/// Says whether paths are there and never waits for a disk: a path on a share that does not answer would hold
/// the window for minutes. Each path is looked at once, in threads beside; until that has an answer it counts
/// as there. GUI thread only.
class PathLooker : public QObject
{
    Q_OBJECT

public:
    /// Whether a path is there; true asks for a folder. Called in other threads, even when the looker has
    /// gone.
    using Look = std::function<bool(const QString &path, bool folder)>;

    explicit PathLooker(QObject *parent = nullptr, Look look = Look());
    ~PathLooker() override;
    Q_DISABLE_COPY(PathLooker)

    /// A path, and whether a folder is meant.
    using Question = QPair<QString, bool>;

    bool isThere(const QString &path, bool folder);
    /// What isThere() would answer to the questions it has been asked.
    QHash<Question, bool> known() const { return m_known; }
    /// Every path is looked at anew when it is asked for again.
    void forget();

Q_SIGNALS:
    /// There are answers that isThere() did not have.
    void looked();

private:
    struct Work;

    static void answer(const std::shared_ptr<Work> &work);
    void takeAnswers();

    QHash<Question, bool> m_known; ///< an answer, or true while it is looked for
    std::shared_ptr<Work> m_work;
};

} // namespace mevo
