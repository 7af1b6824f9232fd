#include "engines/LanguageImages.h"

namespace mevo {

QString languageButtonStyle(const QString &stem, bool vertical)
{
    const QString path =
        stem.startsWith(QLatin1String(":/"))
            ? stem
            : QStringLiteral(":/rec/ChineseLan/%1%2.png")
                  .arg(stem, vertical && !stem.endsWith(QLatin1Char('V')) ? QStringLiteral("V") : QString());
    return QStringLiteral("QPushButton::menu-indicator{image:none;}QPushButton{border-image: url(%1);}")
        .arg(path);
}

QString baiduLanguageStyle(const QString &voiceType, bool vertical)
{
    static constexpr struct
    {
        const char *code;
        const char *stem;
    } rows[] = {
        {"1537", "PuTongHua"}, {"1536", "PuTongHua"},  {"1936", "PuTongHua"}, {"80001", "PuTongHua"},
        {"1637", "YueYu"},     {"1837", "SiChuanHua"}, {"1737", "English"},
    };
    for (const auto &row : rows) {
        if (voiceType == QLatin1String(row.code)) {
            return languageButtonStyle(QLatin1String(row.stem), vertical);
        }
    }
    return {};
}

} // namespace mevo
