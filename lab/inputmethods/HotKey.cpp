#include "inputmethods/HotKey.h"

namespace lab {

Dictation HotKey::begin()
{
    m_begun = m_listening = true;
    return Dictation::Begin;
}

Dictation HotKey::end(Dictation how)
{
    m_begun = m_listening = false;
    return how;
}

Dictation HotKey::down(qint64 ms)
{
    if (m_down) {
        return Dictation::Nothing;
    }
    m_down = true;
    m_downAt = ms;
    return m_listening ? end(Dictation::End) : begin();
}

Dictation HotKey::up(qint64 ms)
{
    m_down = false;
    if (!m_begun) {
        return Dictation::Nothing;
    }
    m_begun = false;
    const qint64 held = ms - m_downAt;
    switch (m_use) {
    case KeyUse::Hold:
        return end(held < shortestHoldMs ? Dictation::Cancel : Dictation::End);
    case KeyUse::TapOrHold:
        return held < longPressMs ? Dictation::Nothing : end(Dictation::End);
    case KeyUse::Tap:
        break;
    }
    return Dictation::Nothing;
}

Dictation HotKey::otherKey()
{
    return m_down && m_begun ? end(Dictation::Cancel) : Dictation::Nothing;
}

} // namespace lab
