#pragma once

#include "engines/XunFeiMessage.h"

#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <memory>

class QWebSocket;

namespace mevo {

class DayCounts;

/// The end of a streaming session whose speech is over and whose next one has begun: waits on the socket for
/// the results that are still to come. GUI thread.
class XunFeiLateAnswer : public QObject
{
    Q_OBJECT

public:
    /// Told once what the session's results say together, which may be nothing; this object goes afterwards.
    using Done = std::function<void(const QString &text)>;

    /// How long the service may keep silent, in milliseconds, before what it has said is all.
    static constexpr int silenceMs = 5000;

    /// Takes the socket over, whose last frame has been sent. `dynamic` and `whole` are the session's:
    /// results may correct earlier ones, and it ends with the last of them rather than the first. They are
    /// counted to the `receiver` of its press; `counts` outlives this object.
    XunFeiLateAnswer(QWebSocket *socket, bool dynamic, bool whole, DayCounts &counts, int receiver, Done done,
                     QObject *parent);
    ~XunFeiLateAnswer() override;

private:
    void takeMessage(const QString &json);
    void finish();

    std::unique_ptr<QWebSocket> m_socket;
    bool m_dynamic;
    bool m_whole;
    DayCounts &m_counts;
    int m_receiver;
    Done m_done;
    QStringList m_results;
    QTimer m_silence;
};

} // namespace mevo
