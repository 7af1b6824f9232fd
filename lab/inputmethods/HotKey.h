#pragma once

#include <QtGlobal>

namespace lab {

/// How a voice input method is operated by its key.
enum class KeyUse {
    Hold,     ///< it listens while the key is down
    Tap,      ///< each press begins or ends
    TapOrHold ///< a short press begins and the next one ends; a long one is held
};

/// What a key event asks of the method.
enum class Dictation { Nothing, Begin, End, Cancel };

/// Makes key events into dictations. Times are milliseconds of any clock.
class HotKey
{
public:
    explicit HotKey(KeyUse use)
        : m_use(use)
    {
    }

    /// A repeated press of a key that is down is none.
    Dictation down(qint64 ms);
    Dictation up(qint64 ms);
    /// Another key went down: what the key began was the begin of a chord.
    Dictation otherKey();
    /// The method has begun or ended for a reason of its own.
    void setListening(bool listening) { m_listening = listening; }
    bool isListening() const { return m_listening; }

    /// A held key that is let go before that was hit by chance, or is the tap that follows a held key.
    static constexpr int shortestHoldMs = 400;
    /// From here on a press of TapOrHold is a held one.
    static constexpr int longPressMs = 1000;

private:
    Dictation begin();
    Dictation end(Dictation how);

    KeyUse m_use;
    bool m_down = false;
    bool m_listening = false;
    bool m_begun = false; ///< by the press that is still down
    qint64 m_downAt = 0;
};

} // namespace lab
