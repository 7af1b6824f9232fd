#pragma once

#include "keypad/KeyLayout.h"
#include "keypad/PinyinInput.h"

#include <vector>

namespace mevo::keypad {

/// What goes to the window that has the focus: a text, or else a key.
struct Stroke
{
    QString text;
    int virtualKey = 0; ///< of platform/Keyboard.h
    bool shift = false; ///< held with the key
};

/// What the keyboard's keys mean at the moment: Shift, capitals, and the syllable that is being typed.
///
/// A copy costs little: the table is shared. Who could not hand on what a press gives takes the copy that was
/// made before it, and nothing is lost.
class KeypadState
{
public:
    /// Presses a key, and gives what is to be typed.
    std::vector<Stroke> press(const Key &key);
    /// Takes a text of the pinyin row's page.
    std::vector<Stroke> choose(int index);
    /// Gives the letters of the syllable as they stand, and has none afterwards.
    std::vector<Stroke> leave();

    bool isShifted() const { return m_shift; }
    bool isCapital() const { return m_capsLock != m_shift; }
    bool isCapsLocked() const { return m_capsLock; }
    bool isPinyin() const { return m_pinyinOn; }
    /// Whether letters go into a syllable now.
    bool composes() const { return m_pinyinOn && !isCapital(); }
    /// What a Character key types now. With pinyin on, signs are those of Chinese texts.
    QString textOf(const Key &key) const;

    PinyinInput &pinyin() { return m_pinyin; }
    const PinyinInput &pinyin() const { return m_pinyin; }

private:
    std::vector<Stroke> pressCharacter(const Key &key);
    std::vector<Stroke> pressWhileComposing(const Key &key);
    /// The letters as they stand, or the first text of the page. Nothing is being typed afterwards.
    QString takeLetters();
    QString takeFirst();

    bool m_shift = false;
    bool m_capsLock = false;
    bool m_pinyinOn = false;
    PinyinInput m_pinyin;
};

} // namespace mevo::keypad
