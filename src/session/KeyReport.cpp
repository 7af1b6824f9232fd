#include "session/KeyReport.h"

#include <algorithm>
#include <iterator>

namespace mevo {

std::optional<KeyReport> parseKeyReport(const char *report)
{
    static constexpr int keys[] = {KeyVoice,  KeyTranslate,  KeyVoiceTyping,        KeyCommand,
                                   KeySearch, KeyMicrophone, KeyMicrophoneAlternate};
    const auto byte = [report](int index) { return static_cast<unsigned char>(report[index]); };
    if (byte(1) != keyReportMarker || byte(3) > 1 ||
        std::find(std::begin(keys), std::end(keys), byte(2)) == std::end(keys)) {
        return std::nullopt;
    }
    return KeyReport{byte(2), byte(3) == 1, byte(15) == 1};
}

} // namespace mevo
