#pragma once

#include <optional>

namespace mevo {

/// Numbers that the receiver gives its keys.
enum KeyNumber {
    KeyVoice = 1,
    KeyTranslate = 2,
    KeyVoiceTyping = 3,
    KeyCommand = 6,
    KeyMicrophone = 8,
    KeySearch = 14,
    KeyMicrophoneAlternate = 16
};

/// Size of a key report buffer; `char *` signals carry exactly this many bytes.
constexpr int keyReportSize = 16;
constexpr unsigned char keyReportMarker = 0x70;

/// A key of the device, or of the tip window, going down or up.
struct KeyReport
{
    int key = 0; ///< one of KeyNumber
    bool pressed = false;
    bool fromTipWindow = false;
};

/// Reads a 16-byte key report; nothing when it is not one, names no voice key, or is neither a press nor
/// a release. Byte 1 is the marker, 2 the key, 3 press or release, 15 the tip window's own mark.
std::optional<KeyReport> parseKeyReport(const char *report);

} // namespace mevo
