#include "keypad/KeypadExit.h"

#include <QDebug>

namespace mevo::keypad {

KeypadExit::KeypadExit(Hooks hooks, Limits limits)
    : m_hooks(std::move(hooks))
    , m_limits(limits)
{
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, &KeypadExit::runOut);
}

void KeypadExit::ask()
{
    if (hasBegun()) {
        return;
    }
    if (m_hooks.isComposing()) {
        m_stage = Stage::Composing;
        m_limit.start(m_limits.composingMs);
        qInfo("Keypad: ends once the syllable has been typed");
    } else {
        awaitTyping();
    }
}

void KeypadExit::hurry()
{
    if (m_stage == Stage::Running || m_stage == Stage::Composing) {
        awaitTyping();
    }
}

void KeypadExit::look()
{
    if (m_stage == Stage::Composing && !m_hooks.isComposing()) {
        awaitTyping();
    } else if (m_stage == Stage::Typing && !m_hooks.isTyping()) {
        finish();
    }
}

void KeypadExit::awaitTyping()
{
    m_stage = Stage::Typing;
    m_limit.start(m_limits.typingMs);
    m_hooks.close();
    look();
}

void KeypadExit::finish()
{
    m_stage = Stage::Over;
    m_limit.stop();
    m_hooks.end();
}

void KeypadExit::runOut()
{
    if (m_stage == Stage::Composing) {
        m_hooks.endComposition();
        awaitTyping();
    } else if (m_stage == Stage::Typing) {
        finish();
    }
}

} // namespace mevo::keypad
