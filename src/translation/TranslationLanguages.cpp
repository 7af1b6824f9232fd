#include "translation/TranslationLanguages.h"

#include <QCoreApplication>

#include <algorithm>

namespace mevo {

const std::vector<TranslationLanguage> &translationLanguages()
{
    static const std::vector<TranslationLanguage> languages = {
        {"auto", QT_TRANSLATE_NOOP("TranslationLanguages", "自动(auto)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "自动"), "CN", ""},
        {"zh", QT_TRANSLATE_NOOP("TranslationLanguages", "中文(zh)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "中文"), "CN", "cmn"},
        {"wyw", QT_TRANSLATE_NOOP("TranslationLanguages", "文言文(wyw)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "文言文"), "CN", "cmn"},
        {"yue", QT_TRANSLATE_NOOP("TranslationLanguages", "粤语(yue)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "粤语"), "CN", "yue"},
        {"cht", QT_TRANSLATE_NOOP("TranslationLanguages", "繁体(cht)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "繁体"), "CN", "cmn"},
        {"en", QT_TRANSLATE_NOOP("TranslationLanguages", "英语(en)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "英文"), "UK", "en"},
        {"jp", QT_TRANSLATE_NOOP("TranslationLanguages", "日语(jp)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "日语"), "JP", "ja"},
        {"kor", QT_TRANSLATE_NOOP("TranslationLanguages", "韩语(kor)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "韩语"), "KR", "ko"},
        {"fra", QT_TRANSLATE_NOOP("TranslationLanguages", "法语(fra)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "法语"), "FR", "fr"},
        {"ru", QT_TRANSLATE_NOOP("TranslationLanguages", "俄语(ru)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "俄语"), "RU", "ru"},
        {"spa", QT_TRANSLATE_NOOP("TranslationLanguages", "西班牙语(spa)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "西班牙语"), "ES", "es"},
        {"pl", QT_TRANSLATE_NOOP("TranslationLanguages", "波兰语(pl)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "波兰语"), "PL", "pl"},
        {"pt", QT_TRANSLATE_NOOP("TranslationLanguages", "葡萄牙语(pt)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "葡萄牙语"), "PT", "pt"},
        {"de", QT_TRANSLATE_NOOP("TranslationLanguages", "德语(de)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "德语"), "DE", "de"},
        {"th", QT_TRANSLATE_NOOP("TranslationLanguages", "泰语(th)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "泰语"), "TH", "th"},
        {"cs", QT_TRANSLATE_NOOP("TranslationLanguages", "捷克语(cs)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "捷克语"), "CZ", "cs"},
        {"ara", QT_TRANSLATE_NOOP("TranslationLanguages", "阿拉伯语(ara)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "阿拉伯语"), "AE", "ar"},
        {"vie", QT_TRANSLATE_NOOP("TranslationLanguages", "越南语(vie)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "越南语"), "VN", "vi"},
        {"it", QT_TRANSLATE_NOOP("TranslationLanguages", "意大利语(it)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "意大利语"), "IT", "it"},
        {"el", QT_TRANSLATE_NOOP("TranslationLanguages", "希腊语(el)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "希腊语"), "GR", "el"},
        {"nl", QT_TRANSLATE_NOOP("TranslationLanguages", "荷兰语(nl)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "荷兰语"), "NL", "nl"},
        {"dan", QT_TRANSLATE_NOOP("TranslationLanguages", "丹麦语(dan)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "丹麦语"), "DK", "da"},
        {"swe", QT_TRANSLATE_NOOP("TranslationLanguages", "瑞典语(swe)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "瑞典语"), "SE", "sv"},
        {"fin", QT_TRANSLATE_NOOP("TranslationLanguages", "芬兰语(fin)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "芬兰语"), "FI", "fi"},
        {"hu", QT_TRANSLATE_NOOP("TranslationLanguages", "匈牙利语(hu)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "匈牙利语"), "HU", "hu"},
        {"rom", QT_TRANSLATE_NOOP("TranslationLanguages", "罗马尼亚语(rom)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "罗马尼亚语"), "RO", "ro"},
        {"bul", QT_TRANSLATE_NOOP("TranslationLanguages", "保加利亚语(bul)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "保加利亚语"), "BG", "bg"},
        {"est", QT_TRANSLATE_NOOP("TranslationLanguages", "爱沙尼亚语(est)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "爱沙尼亚语"), "EE", "et"},
        {"slo", QT_TRANSLATE_NOOP("TranslationLanguages", "斯洛文尼亚语(slo)"),
         QT_TRANSLATE_NOOP("TranslationLanguages", "斯洛文尼亚语"), "SI", "sl"},
    };
    return languages;
}

const TranslationLanguage *translationLanguage(const QString &code)
{
    const auto &all = translationLanguages();
    const auto found = std::find_if(all.begin(), all.end(), [&code](const TranslationLanguage &language) {
        return code == QLatin1String(language.code);
    });
    return found == all.end() ? nullptr : &*found;
}

QString languageRowText(const TranslationLanguage &language)
{
    return QCoreApplication::translate("TranslationLanguages", language.row);
}

QString languageLabel(const QString &code)
{
    const TranslationLanguage *language = translationLanguage(code);
    return language == nullptr ? QString()
                               : QCoreApplication::translate("TranslationLanguages", language->label);
}

QString languageFlag(const TranslationLanguage &language)
{
    return QStringLiteral(":/rec/tans/%1.ico").arg(QLatin1String(language.flag));
}

QString codeInBrackets(const QString &row)
{
    const int open = row.indexOf(QLatin1Char('('));
    const int close = row.indexOf(QLatin1Char(')'), open + 1);
    return open < 0 || close < 0 ? QString() : row.mid(open + 1, close - open - 1);
}

} // namespace mevo
