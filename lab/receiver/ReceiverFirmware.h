#pragma once

#include "receiver/KeyboardReport.h"

#include <QByteArray>

#include <array>
#include <optional>
#include <vector>

namespace mevo::lab {

/// The receiver's own program: what it does on a feature report, which input reports it sends, and when.
///
/// No device, no clock: time comes in as monotonic milliseconds, what has to happen comes out as an Outcome.
class ReceiverFirmware
{
public:
    static constexpr int inputReportSize = 16;  ///< with the id
    static constexpr int featureReportSize = 8; ///< with the id

    struct Identity
    {
        quint8 firstGroup = 0x02;
        quint8 secondGroup = 0x01;
        std::array<quint8, 3> serial{0x57, 0x13, 0x00}; ///< least significant first, as the report carries it
    };

    /// What the mouse reports about itself.
    struct Settings
    {
        quint8 leftKey = 8;
        quint8 rightKey = 3;
        quint8 dpi = 1;     ///< 0 = 800, 1 = 1600, 2 = 2400
        quint8 rate = 0;    ///< 0 = 125 Hz, 1 = 250 Hz, 2 = 500 Hz
        quint8 wheel = 1;   ///< 0, 1, 2
        quint8 battery = 3; ///< 0 lowest to 3
    };

    struct Options
    {
        bool heartbeatRule = true; ///< without a heartbeat the voice keys fall silent
        qint64 heartbeatTimeoutMs = 3000;
        qint64 statusIntervalMs = 1000; ///< between two status reports by themselves; 0 = none
        bool mute = false;              ///< broken: takes everything and never says anything
    };

    /// What a happening makes the receiver do.
    struct Outcome
    {
        bool accepted = true;                   ///< false: the control transfer stalls
        bool known = true;                      ///< false: a report that means nothing to the receiver
        std::vector<QByteArray> reports;        ///< input reports, in order
        std::optional<KeyboardReport> keyboard; ///< the keyboard's new state, when it changed
        int wheelSteps = 0;                     ///< wheel turns: above 0 up, below 0 down
    };

    enum class CustomKey { Left, Right };

    /// Power comes on: settings stay, sessions do not. The heartbeat's first period starts here.
    Outcome powerOn(qint64 nowMs);
    /// A feature report arrives, id first.
    Outcome feature(const QByteArray &report, qint64 nowMs);
    /// A key number goes down or up. A silenced voice key gives no report, except the release of a press
    /// that was sent: the radio link owes that one.
    Outcome key(int number, bool pressed, qint64 nowMs);
    /// One of the two custom keys goes down or up: a voice key or the function that it was given.
    Outcome customKey(CustomKey which, bool pressed, qint64 nowMs);
    /// Time passes: the status report that is due, if any.
    Outcome tick(qint64 nowMs);

    QByteArray statusReport() const;
    QByteArray identityReport() const;
    static QByteArray keyReport(int number, bool pressed);

    bool voiceKeysSilent(qint64 nowMs) const;
    bool microphoneLatched() const { return m_microphoneLatched; }

    Identity identity;
    Settings settings;
    Options options;

private:
    using Handler = void (ReceiverFirmware::*)(const QByteArray &report, qint64 nowMs, Outcome &outcome);
    struct Command;
    static const Command commands[];

    void send(Outcome &outcome, const QByteArray &bytes) const;
    void applySettings(const QByteArray &report, qint64 nowMs, Outcome &outcome);
    void answerIdentity(const QByteArray &report, qint64 nowMs, Outcome &outcome);
    void noteMouseIdRequest(const QByteArray &report, qint64 nowMs, Outcome &outcome);
    void assignCustomKey(const QByteArray &report, qint64 nowMs, Outcome &outcome);
    void takeHeartbeat(const QByteArray &report, qint64 nowMs, Outcome &outcome);
    void typeKey(const QByteArray &report, qint64 nowMs, Outcome &outcome);
    void typeConsumerKey(const QByteArray &report, qint64 nowMs, Outcome &outcome);
    void takeGoodbye(const QByteArray &report, qint64 nowMs, Outcome &outcome);

    KeyboardReport m_keyboard;
    std::vector<int> m_sentPresses; ///< voice keys whose release is still owed
    bool m_microphoneLatched = false;
    bool m_goodbye = false;
    qint64 m_lastHeartbeatMs = 0;
    qint64 m_lastStatusMs = 0;
};

} // namespace mevo::lab
