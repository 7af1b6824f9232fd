#include "ui/FirstStart.h"

#include <QCoreApplication>

#include <algorithm>

namespace mevo {

namespace {

using State = FirstStartLine::State;

QString say(const char *text)
{
    return QCoreApplication::translate("FirstStart", text);
}

FirstStartLine recognition(const FirstStartFacts &facts)
{
    if (facts.inputMethod) {
        return {State::Works, say(QT_TRANSLATE_NOOP("FirstStart", "语音识别：使用电脑上的语音输入法")), {}};
    }
    if (facts.account) {
        return {State::Works, say(QT_TRANSLATE_NOOP("FirstStart", "语音识别：已有账号")), {}};
    }
    const std::vector<FirstStartHelp> helps{FirstStartHelp::OwnAccount, FirstStartHelp::InputMethod};
    if (facts.accountsUnread) {
        return {State::Unknown, say(QT_TRANSLATE_NOOP("FirstStart", "语音识别：保存的账号暂时无法读取")),
                helps};
    }
    return {State::Missing, say(QT_TRANSLATE_NOOP("FirstStart", "语音识别：没有账号")), helps};
}

FirstStartLine receiver(const FirstStartFacts &facts)
{
    if (facts.receiver) {
        return {State::Works, say(QT_TRANSLATE_NOOP("FirstStart", "接收器：已连接")), {}};
    }
    if (facts.receiverRefused) {
        return {State::Missing, receiverRefusedText(), {FirstStartHelp::UdevRule}};
    }
    if (!facts.receiverNeeded) {
        return {
            State::Works, say(QT_TRANSLATE_NOOP("FirstStart", "接收器：没有插入，可以用屏幕上的话筒")), {}};
    }
    return {
        State::Missing, say(QT_TRANSLATE_NOOP("FirstStart", "接收器：没有找到，请插入电脑的USB接口")), {}};
}

FirstStartLine microphone(const FirstStartFacts &facts)
{
    return facts.microphone
               ? FirstStartLine{State::Works, say(QT_TRANSLATE_NOOP("FirstStart", "麦克风：已找到")), {}}
               : FirstStartLine{State::Missing,
                                say(QT_TRANSLATE_NOOP("FirstStart", "麦克风：没有找到")),
                                {FirstStartHelp::Microphone}};
}

} // namespace

std::vector<FirstStartLine> firstStartLines(const FirstStartFacts &facts)
{
    return {recognition(facts), receiver(facts), microphone(facts)};
}

bool isFirstStartHelpNeeded(const FirstStartFacts &facts)
{
    const std::vector<FirstStartLine> lines = firstStartLines(facts);
    return std::any_of(lines.begin(), lines.end(),
                       [](const FirstStartLine &line) { return line.state == State::Missing; });
}

QString firstStartHelpText(FirstStartHelp help)
{
    switch (help) {
    case FirstStartHelp::OwnAccount:
        return say(QT_TRANSLATE_NOOP("FirstStart", "填写自有账号"));
    case FirstStartHelp::InputMethod:
        return say(QT_TRANSLATE_NOOP("FirstStart", "使用电脑上的输入法"));
    case FirstStartHelp::Microphone:
        return say(QT_TRANSLATE_NOOP("FirstStart", "选择麦克风"));
    case FirstStartHelp::UdevRule:
        break;
    }
    return say(QT_TRANSLATE_NOOP("FirstStart", "取得权限"));
}

QString receiverRefusedText()
{
    return say(QT_TRANSLATE_NOOP("FirstStart", "接收器：已插入，但没有使用权限"));
}

QString udevRuleCommand()
{
    return QStringLiteral("echo 'ACTION!=\"remove\", SUBSYSTEM==\"hidraw\", ATTRS{idVendor}==\"258a\", "
                          "ATTRS{idProduct}==\"1016\", MODE=\"0660\", TAG+=\"uaccess\"' | "
                          "sudo tee /etc/udev/rules.d/70-mevoinput.rules && sudo udevadm control --reload && "
                          "sudo udevadm trigger");
}

} // namespace mevo
