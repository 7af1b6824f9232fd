#pragma once

#include "device/KeyInjection.h"
#include "platform/Platform.h"

#include <QThread>

#include <memory>
#include <optional>

struct MainState;

/// Types one key combination through the receiver, which acts as a keyboard, and ends. With no
/// combination it types the send keys alone. HidBusy is set from its construction to its end; several
/// take turns in the order of their construction. Connect finished() to deleteLater().
class SendHWKeyThread : public QThread
{
    Q_OBJECT

public:
    SendHWKeyThread(mevo::Platform &platform, MainState &state,
                    std::shared_ptr<mevo::KeyInjectionQueue> queue,
                    std::optional<mevo::KeyCombination> combination, QObject *parent = nullptr);
    ~SendHWKeyThread() override;

signals:
    /// All reports are out; the receiver must hear a heartbeat again.
    void HeartbeatWanted();

protected:
    void run() override;

private:
    void awaitClipboard();
    /// False when the receiver has not taken all of them.
    bool type(const std::vector<mevo::InjectionStep> &steps);
    mevo::SendKeys selectedSendKeys() const;

    mevo::Platform &m_platform;
    MainState &m_state;
    std::shared_ptr<mevo::KeyInjectionQueue> m_queue;
    const std::optional<mevo::KeyCombination> m_combination;
    const mevo::KeyInjectionQueue::Ticket m_ticket;
};
