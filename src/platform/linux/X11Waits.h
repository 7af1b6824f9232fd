#pragma once

#include "platform/linux/WaitEnd.h"
#include "platform/linux/X11Ping.h"
#include "platform/linux/X11Target.h"

namespace mevo {

/// Waits for the programs that are typed into, each no longer than it may take.
class X11Waits
{
public:
    explicit X11Waits(X11Connection &connection);

    /// The program ends: what is waited for is waited for no longer than WaitEnd::lastMs. From any thread.
    void endSoon() { m_end.begin(); }
    const WaitEnd &end() const { return m_end; }
    /// On while something is typed.
    void listen(bool on) { m_ping.listen(on); }

    /// Asks a program whether it takes what it is sent; awaitAnswer() gets to know. A question to another
    /// window, or a wait for anything else, takes its place.
    void ask(const X11Target &target);
    /// AtEnd when it does; Gone, or Hung after `limitMs`.
    PostStop awaitAnswer(const X11Target &target, int limitMs = answerLimitMs);
    static constexpr int answerLimitMs = 2000;

    struct Taken
    {
        PostStop stop = PostStop::AtEnd;
        bool maybeBehind = false; ///< it was not seen to have taken everything
    };
    /// Waits until the program has translated what it was sent, up to takenLimitMs. One that neither answers
    /// nor can be looked at is given `drain` milliseconds.
    Taken awaitTaken(const X11Target &target, int drain);
    int takenLimitMs = 10000;
    /// Waits until it also has nothing left to do with it.
    PostStop awaitSettled(const X11Target &target);
    /// A short look whether a program that was last sent something `behindMs` ago has taken everything by
    /// now, or is gone. One that answers no ping and runs without a pause has after busyLimitMs.
    bool hasCaughtUp(const X11Target &target, qint64 behindMs);
    int behindLookMs = 100;
    int busyLimitMs = 30000;
    /// Waits `milliseconds`.
    static void pause(int milliseconds);

    // A window that answers no ping has taken its keys when its program sleeps again, and where that cannot
    // be seen either it is given a time: before keys are bound anew, and at the end.
    static constexpr int drainMs = 40;
    static constexpr int lastDrainMs = 150;

private:
    PostStop awaitPing(int limitMs);
    /// Waits while the process is stopped. False when it stays so.
    bool awaitRunning(qint64 processId, int limitMs) const;

    X11Connection &m_connection;
    X11Ping m_ping;
    WaitEnd m_end;
};

} // namespace mevo
