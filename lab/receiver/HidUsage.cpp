#include "receiver/HidUsage.h"

#include <algorithm>
#include <iterator>

namespace mevo::lab {

namespace {

// X servers with evdev keycodes number a key 8 above the kernel's key code.
constexpr int evdevOffset = 8;
constexpr quint8 firstModifierUsage = 0xE0;

// Kernel key codes of the keyboard page, usage 0x00 on.
constexpr quint8 kernelKeys[] = {
    0,   0,   0,   0,   30,  48,  46,  32,  18,  33,  34,  35,  23,  36,  37,  38,  // 00 a..l
    50,  49,  24,  25,  16,  19,  31,  20,  22,  47,  17,  45,  21,  44,  2,   3,   // 10 m..z 1 2
    4,   5,   6,   7,   8,   9,   10,  11,  28,  1,   14,  15,  57,  12,  13,  26,  // 20 3..0 Return Esc ...
    27,  43,  43,  39,  40,  41,  51,  52,  53,  58,  59,  60,  61,  62,  63,  64,  // 30 ] \ ; ' ` , . / F1..
    65,  66,  67,  68,  87,  88,  99,  70,  119, 110, 102, 104, 111, 107, 109, 106, // 40 F7.. Insert .. Right
    105, 108, 103, 69,  98,  55,  74,  78,  96,  79,  80,  81,  75,  76,  77,  71,  // 50 Left .. keypad
    72,  73,  82,  83,  86,  127, 116, 117, 183, 184, 185, 186, 187, 188, 189, 190, // 60 keypad .. F20
    191, 192, 193, 194, 134, 138, 130, 132, 128, 129, 131, 137, 133, 135, 136, 113, // 70 F21 .. Mute
    115, 114,                                                                       // 80 volume up, down
};
constexpr quint8 kernelModifiers[] = {29, 42, 56, 125, 97, 54, 100, 126};

struct ConsumerKey
{
    quint16 usage;
    quint8 kernelKey;
};
constexpr ConsumerKey consumerKeys[] = {
    {0x030, 116}, // power
    {0x032, 142}, // sleep
    {0x0B0, 207}, // play
    {0x0B1, 119}, // pause
    {0x0B2, 167}, // record
    {0x0B3, 208}, // fast forward
    {0x0B4, 168}, // rewind
    {0x0B5, 163}, // next track
    {0x0B6, 165}, // previous track
    {0x0B7, 166}, // stop
    {0x0B8, 161}, // eject
    {0x0CD, 164}, // play/pause
    {0x0E2, 113}, // mute
    {0x0E9, 115}, // volume up
    {0x0EA, 114}, // volume down
    {0x183, 171}, // media player
    {0x18A, 155}, // mail
    {0x192, 140}, // calculator
    {0x194, 144}, // file browser
    {0x196, 150}, // web browser
    {0x221, 217}, // search
    {0x223, 172}, // home page
    {0x224, 158}, // back
    {0x225, 159}, // forward
    {0x226, 128}, // stop loading
    {0x227, 173}, // refresh
    {0x22A, 156}, // bookmarks
};

quint8 toKeycode(quint8 kernelKey)
{
    return kernelKey == 0 ? quint8(0) : quint8(kernelKey + evdevOffset);
}

} // namespace

quint8 keycodeOfKeyboardUsage(quint8 usage)
{
    if (usage >= firstModifierUsage && usage < firstModifierUsage + int(std::size(kernelModifiers)))
        return toKeycode(kernelModifiers[usage - firstModifierUsage]);
    return usage < std::size(kernelKeys) ? toKeycode(kernelKeys[usage]) : quint8(0);
}

quint8 keycodeOfConsumerUsage(quint16 usage)
{
    const auto row = std::find_if(std::begin(consumerKeys), std::end(consumerKeys),
                                  [usage](const ConsumerKey &key) { return key.usage == usage; });
    return row == std::end(consumerKeys) ? quint8(0) : toKeycode(row->kernelKey);
}

std::vector<quint8> keycodesOf(const KeyboardReport &report)
{
    std::vector<quint8> keycodes;
    const auto add = [&keycodes](quint8 keycode) {
        if (keycode != 0 && std::find(keycodes.begin(), keycodes.end(), keycode) == keycodes.end())
            keycodes.push_back(keycode);
    };
    for (int bit = 0; bit < 8; ++bit) {
        if (report.modifiers >> bit & 1)
            add(keycodeOfKeyboardUsage(quint8(firstModifierUsage + bit)));
    }
    add(keycodeOfKeyboardUsage(report.usage));
    add(keycodeOfConsumerUsage(report.consumer));
    return keycodes;
}

std::vector<KeyEvent> keyEvents(const KeyboardReport &before, const KeyboardReport &after)
{
    const std::vector<quint8> old = keycodesOf(before);
    const std::vector<quint8> now = keycodesOf(after);
    const auto holds = [](const std::vector<quint8> &keycodes, quint8 keycode) {
        return std::find(keycodes.begin(), keycodes.end(), keycode) != keycodes.end();
    };
    std::vector<KeyEvent> events;
    for (auto key = old.rbegin(); key != old.rend(); ++key) {
        if (!holds(now, *key))
            events.push_back({*key, false});
    }
    for (const quint8 key : now) {
        if (!holds(old, key))
            events.push_back({key, true});
    }
    return events;
}

} // namespace mevo::lab
