#pragma once

#include "receiver/HidrawNode.h"
#include "receiver/KeyboardPort.h"
#include "receiver/ReceiverFirmware.h"
#include "receiver/ReportLog.h"
#include "receiver/TestBed.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <mutex>

namespace mevo::lab {

/// A receiver that can be plugged into a test bed and pulled out of it.
///
/// Lives on a thread with a Qt event loop. Feature reports are answered on umockdev's worker thread at once,
/// also while that event loop is busy.
class VirtualReceiver : public QObject
{
    Q_OBJECT
public:
    using CustomKey = ReceiverFirmware::CustomKey;

    /// What became of a key that was pressed or released.
    enum class KeyFate { Sent, Silent, Unplugged };

    static constexpr int firstPort = 2;
    static constexpr int secondPort = 3;

    /// `usbPort` tells receivers of one bed apart; `keyboard` (may be null) outlives the receiver.
    VirtualReceiver(TestBed &bed, KeyboardPort *keyboard, int usbPort = firstPort, QObject *parent = nullptr);
    ~VirtualReceiver() override;

    bool plugged() const { return m_node.plugged(); }
    /// Plugs in and powers on. False when it is in already or the bed refuses it.
    bool plug();
    /// Pulls out, with the events that udev would send. False when it is out already.
    bool unplug();
    /// Pulls out without an event: only failing reads and reports tell.
    bool vanish();

    KeyFate key(int number, bool pressed);
    KeyFate customKey(CustomKey which, bool pressed);
    /// Sends a status report now.
    bool sendStatus();
    /// Sends any bytes as an input report.
    bool sendRaw(const QByteArray &report);

    /// Replaces the system's monotonic clock, in milliseconds, so that time passes by a script's hand.
    void setClock(std::function<qint64()> nowMs);
    /// Looks at or changes identity, settings and options, safe against the worker thread.
    void configure(const std::function<void(ReceiverFirmware &)> &change);
    bool voiceKeysSilent() const;
    /// Refuses feature reports that start with `prefix` (empty: all), until accept().
    void refuse(const QByteArray &prefix);
    void accept();
    /// Whether the keys that the program has the receiver type reach the keyboard; on by default.
    void setTyping(bool on);

    const ReportLog &log() const { return m_log; }
    /// Runs the event loop until a feature report that starts with `prefix` stands in the log at `first` or
    /// later. False when `timeoutMs` ran out.
    bool waitForFeature(const QByteArray &prefix, std::size_t first, int timeoutMs) const;
    /// How many times programs hold the node open.
    int openCount() { return m_node.openCount(); }

private:
    int takeFeature(const QByteArray &report);
    bool deliver(const ReceiverFirmware::Outcome &outcome);
    void tick();
    KeyFate fateOf(const ReceiverFirmware::Outcome &outcome);

    mutable std::mutex m_mutex; ///< guards the five members below, and keeps reports in order
    std::function<qint64()> m_nowMs;
    ReceiverFirmware m_firmware;
    bool m_refusing = false;
    QByteArray m_refusedPrefix;
    bool m_typing = true;
    ReportLog m_log;
    KeyboardPort *m_keyboard;
    QTimer m_tick;
    HidrawNode m_node;
};

} // namespace mevo::lab
