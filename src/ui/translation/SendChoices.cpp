#include "ui/translation/SendChoices.h"

#include <QtGlobal>

#include <algorithm>

namespace mevo {

namespace {
constexpr std::array<SendChoice, 7> choices{{
    {QT_TRANSLATE_NOOP("CTransTipDialog", "隐藏窗口立即上屏"), sendAtOnce},
    {QT_TRANSLATE_NOOP("CTransTipDialog", "1秒后自动上屏"), 1},
    {QT_TRANSLATE_NOOP("CTransTipDialog", "2秒后自动上屏"), 2},
    {QT_TRANSLATE_NOOP("CTransTipDialog", "3秒后自动上屏"), 3},
    {QT_TRANSLATE_NOOP("CTransTipDialog", "4秒后自动上屏"), 4},
    {QT_TRANSLATE_NOOP("CTransTipDialog", "5秒后自动上屏"), 5},
    {QT_TRANSLATE_NOOP("CTransTipDialog", "手动点击上屏"), sendByHand},
}};
constexpr std::size_t threeSeconds = 3;
} // namespace

const std::array<SendChoice, 7> &sendChoices()
{
    return choices;
}

const SendChoice &sendChoiceOf(int seconds)
{
    const auto found = std::find_if(choices.begin(), choices.end(), [seconds](const SendChoice &choice) {
        return choice.seconds == seconds;
    });
    return found != choices.end() ? *found : choices[threeSeconds];
}

AfterTranslation afterTranslation(int seconds, bool resultIdle)
{
    if (seconds != sendAtOnce) {
        return AfterTranslation::Wait;
    }
    return resultIdle ? AfterTranslation::SendNow : AfterTranslation::HideFirst;
}

} // namespace mevo
