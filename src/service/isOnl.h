#pragma once

#include "platform/SystemServices.h"

#include <QTimer>
#include <QWidget>

#include <atomic>

/// Watches whether the computer has a network connection. Never shown; GUI thread only.
class isOnl : public QWidget
{
    Q_OBJECT

public:
    /// Polls once, then from its own timer on. `hidBusy` holds the polls back while it is set.
    isOnl(mevo::NetworkState &network, const std::atomic<bool> &hidBusy, QWidget *parent = nullptr);

    bool isOnline = false; ///< a poll has found a connection

signals:
    /// The kind of connection (1 modem, 2 LAN, 4 proxy). While there is none: what the poll before left,
    /// 1 the first time, -1 from then on.
    void returnisonline(int kind);

public slots:
    void GetInternetConnectState();

private:
    mevo::NetworkState &m_network;
    const std::atomic<bool> &m_hidBusy;
    QTimer m_timer;
    int m_lastKind = -1;
};
