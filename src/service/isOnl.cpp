#include "service/isOnl.h"

#include "service/OnlinePoll.h"

isOnl::isOnl(mevo::NetworkState &network, const std::atomic<bool> &hidBusy, QWidget *parent)
    : QWidget(parent)
    , m_network(network)
    , m_hidBusy(hidBusy)
{
    connect(&m_timer, &QTimer::timeout, this, &isOnl::GetInternetConnectState);
    GetInternetConnectState();
    // Nobody is connected to the first result yet; the second comes as soon as the event loop runs.
    m_timer.start(1);
}

void isOnl::GetInternetConnectState()
{
    if (m_hidBusy) {
        return;
    }
    const mevo::OnlinePoll poll = mevo::pollOnline(m_network.connection(), m_lastKind);
    m_lastKind = poll.last;
    isOnline = isOnline || poll.connected;
    m_timer.start(poll.nextInMs);
    emit returnisonline(poll.reported);
}
