#pragma once

#include <array>

namespace mevo {

/// When a translation is typed by itself: one row of the send menu.
struct SendChoice
{
    const char *text; ///< translated in "CTransTipDialog"
    int seconds;      ///< what the settings keep
};

constexpr int sendAtOnce = 0; ///< without showing the window
/// Seconds that nobody waits for: the user presses the button. Other programs read the number so.
constexpr int sendByHand = 10000;

const std::array<SendChoice, 7> &sendChoices();
/// The row of a stored number; one that the menu does not offer is that of 3 seconds.
const SendChoice &sendChoiceOf(int seconds);

/// What follows when a translation has come.
enum class AfterTranslation {
    SendNow,   ///< type it; the window goes
    HideFirst, ///< the window goes, and the text is typed once the result before it has been dealt with
    Wait       ///< type it after the delay
};
AfterTranslation afterTranslation(int seconds, bool resultIdle);

} // namespace mevo
