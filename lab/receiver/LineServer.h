#pragma once

#include <QByteArray>
#include <QObject>

#include <functional>
#include <memory>

class QIODevice;
class QLocalServer;
class QSocketNotifier;

namespace mevo::lab {

/// Takes lines from standard input and from a local socket and answers each by one line.
///
/// Lines are handled one after the other: one that comes while another waits for something stays queued.
class LineServer : public QObject
{
    Q_OBJECT
public:
    using Handler = std::function<QByteArray(const QByteArray &line)>;

    explicit LineServer(Handler handler, QObject *parent = nullptr);
    ~LineServer() override;

    void serveStandardInput();
    /// False (with a log line) when the socket cannot be made. A stale one is replaced.
    bool serveSocket(const QString &path);

Q_SIGNALS:
    /// Standard input has ended and all its lines are answered.
    void inputEnded();

private:
    struct Source;
    void readStandardInput();
    void feed(const std::shared_ptr<Source> &source, const QByteArray &data);
    void handleNext();

    Handler m_handler;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::shared_ptr<Source> m_input;
    QLocalServer *m_server = nullptr;
    struct Pending;
    std::unique_ptr<Pending> m_pending;
    bool m_busy = false;
    bool m_ended = false;
};

} // namespace mevo::lab
