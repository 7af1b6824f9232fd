#include "engines/XunFeiLateAnswer.h"

#include "engines/XunFeiStream.h"
#include "state/DayCounts.h"

#include <QDebug>
#include <QWebSocket>

#include <utility>

namespace mevo {

XunFeiLateAnswer::XunFeiLateAnswer(QWebSocket *socket, bool dynamic, bool whole, DayCounts &counts,
                                   int receiver, Done done, QObject *parent)
    : QObject(parent)
    , m_socket(socket)
    , m_dynamic(dynamic)
    , m_whole(whole)
    , m_counts(counts)
    , m_receiver(receiver)
    , m_done(std::move(done))
{
    connect(socket, &QWebSocket::textMessageReceived, this, &XunFeiLateAnswer::takeMessage);
    connect(socket, &QWebSocket::disconnected, this, &XunFeiLateAnswer::finish);
    m_silence.setSingleShot(true);
    connect(&m_silence, &QTimer::timeout, this, &XunFeiLateAnswer::finish);
    m_silence.start(silenceMs);
}

XunFeiLateAnswer::~XunFeiLateAnswer()
{
    m_socket->disconnect(this);
}

void XunFeiLateAnswer::takeMessage(const QString &json)
{
    m_silence.start(silenceMs);
    XunFeiMessage result;
    if (!parseXunFeiMessage(json, result) || result.code != 0) {
        qWarning("XunFei: a late answer of %d characters gives no result (%d)", json.size(), result.code);
        finish();
        return;
    }
    if (m_dynamic) {
        applyXunFeiResult(m_results, result);
    } else {
        m_results.append(result.text);
    }
    const bool last = result.status == XunFeiMessage::Last;
    if (last || result.status == XunFeiMessage::Middle) {
        m_counts.count(CountColumn::XunFei, m_receiver);
    }
    if (last || !m_whole || m_results.size() > XunFeiStream::mostResults ||
        m_results.join(QString()).size() > XunFeiStream::longestUtterance) {
        finish();
    }
}

void XunFeiLateAnswer::finish()
{
    m_silence.stop();
    m_socket->disconnect(this);
    m_socket->close();
    if (const Done done = std::exchange(m_done, nullptr)) {
        deleteLater(); // before: event loops may run in what follows
        done(m_results.join(QString()));
    }
}

} // namespace mevo
