#include "inputmethods/Typist.h"

#include <X11/XKBlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace lab {

namespace {

constexpr unsigned shifts[] = {XK_Shift_L, XK_Shift_R};

bool isDown(Display *display, KeyCode key)
{
    char keys[32];
    XQueryKeymap(display, keys);
    return key != 0 && (keys[key / 8] >> (key % 8) & 1) != 0;
}

} // namespace

Typist::Typist(Display *display)
    : m_display(display)
{
}

KeyMap Typist::keyMap() const
{
    KeyMap keys;
    int first = 0, last = 0;
    XDisplayKeycodes(m_display, &first, &last);
    for (int level = 0; level < 2; ++level) { // the plain key, where a character stands on two
        for (int code = first; code <= last; ++code) {
            const KeySym symbol = XkbKeycodeToKeysym(m_display, KeyCode(code), 0, level);
            if (symbol != NoSymbol && !keys.contains(quint32(symbol))) {
                keys.insert(quint32(symbol), {quint8(code), level == 1});
            }
        }
    }
    return keys;
}

int Typist::type(const QString &text)
{
    const KeyPlan plan = planKeys(text, keyMap());
    const KeyCode shift = XKeysymToKeycode(m_display, XK_Shift_L);
    for (const unsigned symbol : shifts) {
        const KeyCode code = XKeysymToKeycode(m_display, symbol);
        if (isDown(m_display, code)) {
            XTestFakeKeyEvent(m_display, code, False, CurrentTime);
        }
    }
    bool shifted = false;
    const auto setShift = [&](bool on) {
        if (on != shifted) {
            XTestFakeKeyEvent(m_display, shift, on ? True : False, CurrentTime);
            shifted = on;
        }
    };
    for (const KeyStroke &stroke : plan.strokes) {
        setShift(stroke.shift);
        XTestFakeKeyEvent(m_display, stroke.keycode, True, CurrentTime);
        XTestFakeKeyEvent(m_display, stroke.keycode, False, CurrentTime);
    }
    setShift(false);
    XSync(m_display, False);
    return int(plan.strokes.size());
}

} // namespace lab
