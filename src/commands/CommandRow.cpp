#include "commands/CommandRow.h"

namespace mevo {

namespace {

constexpr std::array<const char16_t *, allCommandTypes.size()> labels{
    u"语音键盘", u"拼音键盘", u"网页", u"文件", u"文件夹", u"快捷键", u"常用短语"};

} // namespace

QString commandTypeLabel(CommandType type)
{
    return QString::fromUtf16(labels[std::size_t(type)]);
}

std::optional<CommandType> commandTypeOfLabel(const QString &label)
{
    for (const CommandType type : allCommandTypes) {
        if (label == commandTypeLabel(type)) {
            return type;
        }
    }
    return std::nullopt;
}

std::optional<CommandType> commandTypeOfIndex(const QString &index)
{
    constexpr int last = int(allCommandTypes.size()) - 1;
    if (index.size() != 1 || index[0] < QLatin1Char('0') || index[0] > QLatin1Char(char('0' + last))) {
        return std::nullopt;
    }
    return CommandType(index[0].unicode() - '0');
}

} // namespace mevo
