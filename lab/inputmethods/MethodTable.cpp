#include "inputmethods/MethodTable.h"

#include <X11/keysym.h>

namespace lab {

namespace {

constexpr Method xunFeiOld{
    "iFlyVoice", "讯飞输入法", "UIIFlyVoiceFrame", "讯飞语音悬浮窗", KeyUse::Hold, XK_F6, false, true};
constexpr Method xunFeiNew{"iFlyVoice",  "讯飞输入法", "BaseGui", "语音悬浮窗",
                           KeyUse::Hold, XK_F6,        false,     false};
constexpr Method others[] = {
    // The blank at the end of the title is the original's.
    {"VoiceInput", "搜狗输入法", "CherryWindowClass", "搜狗输入法语音输入 ", KeyUse::Tap, XK_F2, true, true},
    {"SpeechInput", "百度输入法", "SpeechInputFrame", "百度语音输入", KeyUse::TapOrHold, XK_Control_L, false,
     true},
};

} // namespace

const Method *methodOf(const QString &name, int generation)
{
    if (name == QLatin1String(xunFeiOld.name)) {
        return generation > 2 ? &xunFeiNew : &xunFeiOld;
    }
    for (const Method &method : others) {
        if (name == QLatin1String(method.name)) {
            return &method;
        }
    }
    return nullptr;
}

} // namespace lab
