#include "commands/CommandForm.h"

#include <QCoreApplication>

#include <algorithm>
#include <limits>

namespace mevo {

namespace {

constexpr int anyLength = std::numeric_limits<int>::max();

constexpr const char *newContent = QT_TRANSLATE_NOOP("CommandWordDialog", "输入语音映射词功能");

constexpr CommandForm forms[] = {
    {CommandType::VoiceKeyboard, QT_TRANSLATE_NOOP("CommandWordDialog", "语音键盘"),
     QT_TRANSLATE_NOOP("CommandWordDialog",
                       "请输入键盘字母或数字对应命令词,如:a;唉,提示:多个不同语音映射词用半角分号间隔"),
     QT_TRANSLATE_NOOP("CommandWordDialog", "请输入键盘字母:如:a"), newContent, "^[A-Za-z0-9]+$", 1,
     CommandType::PinyinKeyboard},
    {CommandType::PinyinKeyboard, QT_TRANSLATE_NOOP("CommandWordDialog", "拼音键盘"),
     QT_TRANSLATE_NOOP("CommandWordDialog",
                       "请输入拼音对应的中文字,如:昂,提示:多个不同语音映射词用半角分号间隔"),
     QT_TRANSLATE_NOOP("CommandWordDialog", "请输入拼音字母:如:ang"),
     QT_TRANSLATE_NOOP("CommandWordDialog", "输入语音映射词内容"), "^[a-z]+$", anyLength, CommandType::Web},
    {CommandType::Web, QT_TRANSLATE_NOOP("CommandWordDialog", "网页"),
     QT_TRANSLATE_NOOP("CommandWordDialog", "输入打开网页的语音映射词,如:打开百度;百度搜索,"
                                            "提示:多个不同语音映射词用半角分号间隔"),
     QT_TRANSLATE_NOOP("CommandWordDialog", "输入网页地址:如:https://www.baidu.com"), newContent, nullptr,
     anyLength, CommandType::Web},
    {CommandType::File, QT_TRANSLATE_NOOP("CommandWordDialog", "文件"),
     QT_TRANSLATE_NOOP("CommandWordDialog", "请输入打开文件或程序的语音映射词,如:打开记事本,"
                                            "提示:多个不同语音映射词用半角分号间隔"),
     QT_TRANSLATE_NOOP("CommandWordDialog", "请输入文件或程序地址:如:c:\\windows\\notepad.exe"), newContent,
     nullptr, anyLength, CommandType::File},
    {CommandType::Directory, QT_TRANSLATE_NOOP("CommandWordDialog", "文件夹"),
     QT_TRANSLATE_NOOP("CommandWordDialog", "请输入打开常用目录的文件夹的语音映射词,如:我的文档,"
                                            "提示:多个不同语音映射词用半角分号间隔"),
     QT_TRANSLATE_NOOP("CommandWordDialog", "请输入常用文件夹的路径:如:C:\\"), newContent, nullptr, anyLength,
     CommandType::Directory},
    {CommandType::Shortcut, QT_TRANSLATE_NOOP("CommandWordDialog", "快捷键"),
     QT_TRANSLATE_NOOP("CommandWordDialog", "请输入快捷键的语音映射词，提示：如多个语音映射词用半角分号间隔"),
     "", newContent, nullptr, anyLength, CommandType::Shortcut},
    {CommandType::Phrase, QT_TRANSLATE_NOOP("CommandWordDialog", "常用短语"),
     QT_TRANSLATE_NOOP("CommandWordDialog", "请输入常用短语的语音映射词,如:家庭地址,"
                                            "提示:多个不同语音映射词用半角分号间隔"),
     QT_TRANSLATE_NOOP("CommandWordDialog",
                       "请输入常用短语的内容:如:美国华盛顿白宫,提示:也可以输入较长内容，如诗或歌词等"),
     newContent, nullptr, anyLength, CommandType::Phrase},
};

} // namespace

const CommandForm &commandForm(CommandType type)
{
    return *std::find_if(std::begin(forms), std::end(forms),
                         [type](const CommandForm &form) { return form.type == type; });
}

QString shortcutText(const ShortcutParts &parts)
{
    QStringList words;
    for (const auto &[set, name] : {std::pair(parts.control, "Control"), std::pair(parts.alt, "Alt"),
                                    std::pair(parts.shift, "Shift"), std::pair(parts.win, "Win")}) {
        if (set) {
            words.append(QLatin1String(name));
        }
    }
    if (!parts.key.isEmpty()) {
        words.append(parts.key);
    }
    return words.join(QLatin1Char('+'));
}

ShortcutParts shortcutParts(const QString &text)
{
    ShortcutParts parts;
    for (const QString &word : text.split(QLatin1Char('+'))) {
        if (word == QLatin1String("Control")) {
            parts.control = true;
        } else if (word == QLatin1String("Alt")) {
            parts.alt = true;
        } else if (word == QLatin1String("Shift")) {
            parts.shift = true;
        } else if (word == QLatin1String("Win")) {
            parts.win = true;
        } else {
            parts.key = word;
        }
    }
    return parts;
}

std::vector<int> searchCommandWords(const CommandRows &rows, const QString &text)
{
    std::vector<int> found;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const QStringList forms = rows[row].CommandWords.split(QLatin1Char(';'));
        if (std::any_of(forms.begin(), forms.end(),
                        [&text](const QString &form) { return form.indexOf(text) >= 0; })) {
            found.push_back(int(row));
        }
    }
    return found;
}

} // namespace mevo
