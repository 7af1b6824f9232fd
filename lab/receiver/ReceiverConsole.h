#pragma once

#include "receiver/TestBed.h"
#include "receiver/VirtualReceiver.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace mevo::lab {

/// One or two receivers on a test bed, driven by short commands such as "press 8" or "status battery 0".
class ReceiverConsole
{
public:
    struct Answer
    {
        bool ok = true;
        QString text; ///< one line: the result, or what is wrong

        QByteArray line() const { return (ok ? QByteArray("ok ") : QByteArray("error ")) + text.toUtf8(); }
    };

    /// `keyboard` may be null: then the receiver types nowhere.
    explicit ReceiverConsole(KeyboardPort *keyboard);

    /// Whether a command of this name exists.
    static bool knows(const QString &command);
    /// The usage lines of all commands.
    static QStringList help();

    /// Runs a command, given as its words. Waiting commands run the event loop meanwhile.
    Answer execute(const QStringList &words);

    TestBed &bed() { return m_bed; }
    VirtualReceiver &receiver() { return m_first; }
    /// The second receiver; plugged out at the start.
    VirtualReceiver &second() { return m_second; }
    /// From here on waiting commands look at the log.
    void mark();

private:
    struct Command;
    static const Command commands[];

    using Words = const QStringList &;
    Answer plug(Words);
    Answer unplug(Words);
    Answer vanish(Words);
    Answer second(Words words);
    Answer press(Words words);
    Answer release(Words words);
    Answer report(Words words);
    Answer status(Words words);
    Answer identity(Words words);
    Answer heartbeat(Words words);
    Answer mute(Words words);
    Answer refuse(Words words);
    Answer typing(Words words);
    Answer markHere(Words);
    Answer waitFeature(Words words);
    Answer noFeature(Words words);
    Answer waitVoiceKeys(Words words);
    Answer waitOpen(Words words);
    Answer log(Words);
    Answer state(Words);
    Answer environment(Words words);
    Answer moveKey(Words words, bool pressed);

    TestBed m_bed;
    VirtualReceiver m_first;
    VirtualReceiver m_second;
    std::size_t m_mark = 0;
};

} // namespace mevo::lab
