#include "inputmethods/KeyPlan.h"

namespace lab {

quint32 keysymOf(char32_t character)
{
    constexpr quint32 returnKey = 0xff0d, tabKey = 0xff09, unicode = 0x01000000;
    switch (character) {
    case U'\n':
        return returnKey;
    case U'\t':
        return tabKey;
    default:
        return character < 0x100 ? character : unicode + character;
    }
}

KeyPlan planKeys(const QString &text, const KeyMap &keys)
{
    KeyPlan plan;
    for (const uint character : text.toUcs4()) {
        const auto key = keys.find(keysymOf(character));
        if (key == keys.end()) {
            ++plan.untypable;
        } else {
            plan.strokes.push_back(*key);
        }
    }
    return plan;
}

} // namespace lab
