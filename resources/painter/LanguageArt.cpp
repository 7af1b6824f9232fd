#include "Art.h"

#include "Brushwork.h"

namespace mevo {

namespace {

/// Who recognises: told by the rim and the line under the words.
enum Provider { Shared, Streaming, Medical, Automatic, ThirdParty, Custom };

QColor accentOf(int provider)
{
    switch (provider) {
    case Streaming:
        return palette::teal;
    case Medical:
        return palette::red;
    case Automatic:
        return palette::blue;
    case ThirdParty:
    case Custom:
        return palette::amber;
    default:
        return {};
    }
}

void paintLanguage(QPainter &painter, const Art &art)
{
    const bool vertical = art.height > art.width;
    const QColor accent = accentOf(art.variant);
    const QRectF place(0, 0, art.width, art.height);
    const QRectF rim = place.adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(QPen(accent.isValid() ? accent : faded(palette::white, 0.30), 1));
    painter.setBrush(accent.isValid() ? faded(accent, 0.26) : faded(palette::white, 0.10));
    painter.drawRoundedRect(rim, 5, 5);

    painter.setPen(palette::white);
    const bool threeWords = art.text.size() > 2;
    const int pixelSize = threeWords ? 11 : 14;
    if (!vertical) {
        paintCentred(painter, place, art.text, pixelSize);
        return;
    }
    const qreal step = threeWords ? 11 : 15;
    // Three fill the button: one pixel up keeps the last one off the rim.
    const qreal first = place.center().y() - step * art.text.size() / 2 - (threeWords ? 1 : 0);
    for (int i = 0; i < art.text.size(); ++i) {
        paintCentred(painter, QRectF(0, first + step * i, art.width, step), art.text.mid(i, 1), pixelSize);
    }
}

struct Language
{
    const char *stem; ///< below ":/rec/"
    const char16_t *words;
    Provider provider;
    const char *verticalStem = nullptr; ///< null: the stem with a V behind it
};

/// Two characters where they tell enough: they can be larger.
constexpr Language languages[] = {
    {"ChineseLan/PuTongHua", u"普通话", Shared},
    {"ChineseLan/PuTongHuaXF", u"普通话", Streaming},
    {"ChineseLan/PuTongHuaYiliao", u"医疗", Medical, "ChineseLan/PutongHuaYiliaoV"},
    {"ChineseLan/TXFangYan", u"方言", Automatic},
    {"ChineseLan/YueYu", u"粤语", Shared},
    {"ChineseLan/SiChuanHua", u"四川", Shared},
    {"ChineseLan/English", u"英语", Shared},
    {"ChineseLan/jp", u"日语", Shared, "ChineseLan/JpV"},
    {"ChineseLan/kr", u"韩语", Shared},
    {"ChineseLan/ru", u"俄语", Shared},
    {"ChineseLan/fr", u"法语", Shared},
    {"ChineseLan/es", u"西语", Shared},
    {"ChineseLan/ChangShaHua", u"长沙", Shared},
    {"ChineseLan/DongBeiHua", u"东北", Shared},
    {"ChineseLan/GanSuHua", u"甘肃", Shared},
    {"ChineseLan/HangZhouHua", u"杭州", Shared},
    {"ChineseLan/HeBeiHua", u"河北", Shared},
    {"ChineseLan/HeiFeiHua", u"合肥", Shared},
    {"ChineseLan/HeNanHua", u"河南", Shared},
    {"ChineseLan/KeJiaHua", u"客家", Shared},
    {"ChineseLan/MinNanHua", u"闽南", Shared},
    {"ChineseLan/NanChangHua", u"南昌", Shared},
    {"ChineseLan/NanJingHua", u"南京", Shared},
    {"ChineseLan/ShanDongHua", u"山东", Shared},
    {"ChineseLan/ShangHaiHua", u"上海", Shared},
    {"ChineseLan/ShanXiHua", u"陕西", Shared},
    {"ChineseLan/TaiWanHua", u"台湾", Shared},
    {"ChineseLan/TaiYuanHua", u"太原", Shared},
    {"ChineseLan/TianJinHua", u"天津", Shared},
    {"ChineseLan/WuHanHua", u"武汉", Shared},
    {"ChineseLan/YunNanHua", u"云南", Shared},
    {"ChineseLan/NingXiaHua", u"宁夏", Shared},
    {"ChineseLan/GuiZhouHua", u"贵州", Shared},
    {"ChineseLan/WanBeiHua", u"皖北", Shared},
    {"ChineseLan/ZiDingYi", u"自定义", Custom},
    {"xunfei", u"讯飞", ThirdParty},
    {"sougo", u"搜狗", ThirdParty},
};

struct SecondName
{
    const char *name;
    const char *picture;
};

/// Spellings that differ between those who ask for the same picture.
constexpr SecondName secondNames[] = {
    {"ChineseLan/PuTongHuaYiliao.png.png", "ChineseLan/PuTongHuaYiliao.png"},
    {"ChineseLan/PuTongHuaYiliaoV.png", "ChineseLan/PutongHuaYiliaoV.png"},
    {"ChineseLan/PuTongHuaYiliaoV.png.png", "ChineseLan/PutongHuaYiliaoV.png"},
    {"ChineseLan/jpV.png", "ChineseLan/JpV.png"},
    {"ZiDingYi.png", "ChineseLan/ZiDingYi.png"},
    {"ZiDingYiV.png", "ChineseLan/ZiDingYiV.png"},
    {"ChineseLan/xunfei.png", "xunfei.png"},
    {"ChineseLan/xunfeiV.png", "xunfeiV.png"},
    {"ChineseLan/sougo.png", "sougo.png"},
    {"ChineseLan/sougoV.png", "sougoV.png"},
};

} // namespace

void addLanguageArt(QVector<Art> &table, QVector<ArtAlias> &aliases)
{
    const QLatin1String extension(".png");
    for (const Language &row : languages) {
        const QString stem = QLatin1String(row.stem);
        const QString vertical =
            row.verticalStem ? QString(QLatin1String(row.verticalStem)) : stem + QLatin1Char('V');
        const QString words = QString::fromUtf16(row.words);
        table.append({stem + extension, 36, 20, paintLanguage, row.provider, words});
        table.append({vertical + extension, 20, 35, paintLanguage, row.provider, words});
    }
    for (const SecondName &row : secondNames) {
        aliases.append({QLatin1String(row.name), QLatin1String(row.picture)});
    }
}

} // namespace mevo
