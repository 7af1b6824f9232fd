#include "engines/BaiduErrors.h"

#include <QCoreApplication>

#include <iterator>

namespace mevo {

namespace {

constexpr char Context[] = "Relay_Speech::BaiduSpeech";

// clang-format off
constexpr BaiduErrorRow rows[] = {
    {3301, BaiduErrorRow::Any, BaiduRecovery::None, false,
     QT_TRANSLATE_NOOP("Relay_Speech::BaiduSpeech", "\n (错误码:3301)语音质量可能过差，确认默认麦克风设备是否正确，请尝试启动立体声混音后再打开软件，如仍提示此错误，建议更换一台电脑测试，如存在一样问题，请与售后人员联系！ (错误码:3301)\n\n\n提示：\n鼠标光标移动到此窗口中，将不会自动隐藏该窗口")},
    {3314, BaiduErrorRow::Any, BaiduRecovery::SwapChannels, false,
     QT_TRANSLATE_NOOP("Relay_Speech::BaiduSpeech", "\n (错误码:3314)语音长度太短, 下次语音识别将切换语音通道，如仍不行，先确认系统是否允许打开麦克风，确认默认麦克风设备是否正确，请尝试启动立体声混音后再打开软件，如仍提示此错误，建议更换一台电脑测试，如存在一样问题，请与售后人员联系！\n\n\n提示：\n鼠标光标移动到此窗口中，将不会自动隐藏该窗口")},
    {3304, BaiduErrorRow::XpClass, BaiduRecovery::None, true,
     QT_TRANSLATE_NOOP("Relay_Speech::BaiduSpeech", "(错误码:3304)请手动切换到讯飞语音输入法或搜狗语音输入法或与产品供应商联系！\n\n\n\n\n\n\n\n提示：\n鼠标光标移动到此窗口中，将不会自动隐藏该窗口")},
    {3304, BaiduErrorRow::Others, BaiduRecovery::FallToXunFei, false,
     QT_TRANSLATE_NOOP("Relay_Speech::BaiduSpeech", " (错误码:3304)将切换到讯飞接口，如还有问题，请手动切换到讯飞语音输入法或搜狗语音输入法或与产品供应商联系！\n\n\n\n\n\n\n\n提示：\n鼠标光标移动到此窗口中，将不会自动隐藏该窗口")},
    {3307, BaiduErrorRow::Any, BaiduRecovery::None, false,
     QT_TRANSLATE_NOOP("Relay_Speech::BaiduSpeech", "\n(错误码:3307) 语音质量可能过差，确认默认麦克风设备是否正确，请尝试启动立体声混音后再打开软件，如仍提示此错误，建议更换一台电脑测试，如存在一样问题，请与售后人员联系\n\n\n\n\n\n\n\n提示：\n鼠标光标移动到此窗口中，将不会自动隐藏该窗口")},
    {3305, BaiduErrorRow::XpClass, BaiduRecovery::NewAccount, true,
     QT_TRANSLATE_NOOP("Relay_Speech::BaiduSpeech", " (错误码:3305)如连接提示此窗口，请手动切换讯飞语音输入法或搜狗语音输入法或与产品供应商联系！\n\n\n\n\n\n\n\n提示：\n鼠标光标移动到此窗口中，将不会自动隐藏该窗口")},
    {3305, BaiduErrorRow::Others, BaiduRecovery::NewAccountFallToXunFei, false,
     QT_TRANSLATE_NOOP("Relay_Speech::BaiduSpeech", "将切换到讯飞接口，如有问题，请手动切换讯飞或搜狗语音输入法或与产品供应商联系！ (错误码:3305)\n\n\n\n\n\n\n\n提示：\n鼠标光标移动到此窗口中，将不会自动隐藏该窗口")},
    {0, BaiduErrorRow::Any, BaiduRecovery::None, false,
     QT_TRANSLATE_NOOP("Relay_Speech::BaiduSpeech", "\n   如连续多次提示此窗口，建议尝试手动切换其它识别接口！\n\n\n\n\n\n\n\n提示：\n鼠标光标移动到此窗口中，将不会自动隐藏该窗口")},
};
// clang-format on

} // namespace

const BaiduErrorRow &baiduError(int errNo, bool xpClass)
{
    for (const BaiduErrorRow &row : rows) {
        const bool applies =
            row.systems == BaiduErrorRow::Any || (row.systems == BaiduErrorRow::XpClass) == xpClass;
        if (row.errNo == errNo && applies) {
            return row;
        }
    }
    return rows[std::size(rows) - 1];
}

QString baiduErrorMessage(const BaiduErrorRow &row, const BaiduReply &reply)
{
    const QString message = QCoreApplication::translate(Context, row.message);
    if (row.errNo != 0) {
        return message;
    }
    return reply.errMsg + QStringLiteral("(%1)").arg(reply.errNo) + message;
}

} // namespace mevo
