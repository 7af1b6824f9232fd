#include "receiver/LineServer.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QLoggingCategory>
#include <QPointer>
#include <QSocketNotifier>

#include <unistd.h>

#include <cstdio>
#include <deque>

namespace mevo::lab {

namespace {

constexpr int longestLine = 1 << 16;

void writeToStandardOutput(const QByteArray &line)
{
    std::fwrite(line.constData(), 1, size_t(line.size()), stdout);
    std::fflush(stdout);
}

} // namespace

struct LineServer::Source
{
    std::function<void(const QByteArray &)> answer;
    QByteArray partial;
};

struct LineServer::Pending
{
    std::deque<std::pair<std::shared_ptr<Source>, QByteArray>> lines;
};

LineServer::LineServer(Handler handler, QObject *parent)
    : QObject(parent)
    , m_handler(std::move(handler))
    , m_pending(std::make_unique<Pending>())
{
}

LineServer::~LineServer() = default;

void LineServer::serveStandardInput()
{
    m_input = std::make_shared<Source>();
    m_input->answer = writeToStandardOutput;
    m_notifier = std::make_unique<QSocketNotifier>(STDIN_FILENO, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &LineServer::readStandardInput);
}

bool LineServer::serveSocket(const QString &path)
{
    QLocalServer::removeServer(path);
    m_server = new QLocalServer(this);
    if (!m_server->listen(path)) {
        qWarning("cannot listen on %s: %s", qUtf8Printable(path), qUtf8Printable(m_server->errorString()));
        return false;
    }
    connect(m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *socket = m_server->nextPendingConnection()) {
            const auto source = std::make_shared<Source>();
            source->answer = [guarded = QPointer<QLocalSocket>(socket)](const QByteArray &line) {
                if (guarded)
                    guarded->write(line);
            };
            connect(socket, &QLocalSocket::readyRead, this,
                    [this, socket, source] { feed(source, socket->readAll()); });
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
    return true;
}

void LineServer::readStandardInput()
{
    char buffer[4096];
    const ssize_t length = read(STDIN_FILENO, buffer, sizeof buffer);
    if (length > 0) {
        feed(m_input, QByteArray(buffer, int(length)));
        return;
    }
    m_notifier->setEnabled(false);
    m_ended = true;
    feed(m_input, "\n");
}

void LineServer::feed(const std::shared_ptr<Source> &source, const QByteArray &data)
{
    source->partial += data;
    int end;
    while ((end = source->partial.indexOf('\n')) >= 0) {
        const QByteArray line = source->partial.left(end).trimmed();
        source->partial.remove(0, end + 1);
        if (!line.isEmpty())
            m_pending->lines.emplace_back(source, line);
    }
    if (source->partial.size() > longestLine)
        source->partial.clear();
    handleNext();
}

void LineServer::handleNext()
{
    if (m_busy)
        return;
    m_busy = true;
    while (!m_pending->lines.empty()) {
        const auto [source, line] = m_pending->lines.front();
        m_pending->lines.pop_front();
        source->answer(m_handler(line) + '\n');
    }
    m_busy = false;
    if (m_ended)
        Q_EMIT inputEnded();
}

} // namespace mevo::lab
