#include "engines/EngineCatalogue.h"

#include <QStringList>

namespace mevo {

const std::vector<LanguageRow> &menuLanguages()
{
    static const std::vector<LanguageRow> rows = {
        {Engine::Tencent, QT_TRANSLATE_NOOP("AsrLanMenu", "普通话(腾讯版)"), "16k_zh", "PuTongHua",
         "PuTongHuaV"},
        {Engine::Tencent, QT_TRANSLATE_NOOP("AsrLanMenu", "粤语(腾讯版)"), "16k_ca", "YueYu", "YueYuV"},
        {Engine::Tencent, QT_TRANSLATE_NOOP("AsrLanMenu", "普通话+医疗(腾讯版)"), "16k_zh_medical",
         "PuTongHuaYiliao", "PutongHuaYiliaoV"},
        {Engine::Tencent, QT_TRANSLATE_NOOP("AsrLanMenu", "自识别方言(腾讯版)"), "16k_zh_dialect",
         "TXFangYan", "TXFangYanV"},
        {Engine::Tencent, QT_TRANSLATE_NOOP("AsrLanMenu", "英语(腾讯版)"), "16k_en", "English", "EnglishV"},
        {Engine::Tencent, QT_TRANSLATE_NOOP("AsrLanMenu", "日语(腾讯版)"), "16k_ja", "jp", "JpV"},
        {Engine::Baidu, QT_TRANSLATE_NOOP("AsrLanMenu", "普通话(百度版)"), "1537", "PuTongHua", "PuTongHuaV"},
        {Engine::Baidu, QT_TRANSLATE_NOOP("AsrLanMenu", "粤语(百度版)"), "1637", "YueYu", "YueYuV"},
        {Engine::Baidu, QT_TRANSLATE_NOOP("AsrLanMenu", "四川话(百度版)"), "1837", "SiChuanHua",
         "SiChuanHuaV"},
        {Engine::Baidu, QT_TRANSLATE_NOOP("AsrLanMenu", "英语(百度版)"), "1737", "English", "EnglishV"},
        {Engine::XunFei, QT_TRANSLATE_NOOP("AsrLanMenu", "普通话(讯飞版)"), "mandarin", "PuTongHuaXF",
         "PuTongHuaXFV"},
        {Engine::XunFei, QT_TRANSLATE_NOOP("AsrLanMenu", "英语(讯飞版)"), "en_us", "English", "EnglishV"},
        {Engine::ThirdParty, QT_TRANSLATE_NOOP("AsrLanMenu", "使用讯飞语音输入法"), "1", ":/rec/xunfei.png",
         ":/rec/xunfeiV.png"},
        {Engine::ThirdParty, QT_TRANSLATE_NOOP("AsrLanMenu", "使用搜狗语音输入法"), "2", ":/rec/sougo.png",
         ":/rec/sougoV.png"},
        {Engine::ThirdParty, QT_TRANSLATE_NOOP("AsrLanMenu", "使用自定义语音输入法"), "3", "ZiDingYi",
         "ZiDingYiV"},
    };
    return rows;
}

const std::vector<XunFeiLanguage> &xunFeiLanguages()
{
    static const std::vector<XunFeiLanguage> rows = {
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "长沙话"), "changshanese", "ChangShaHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "东北话"), "dongbeiese", "DongBeiHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "甘肃话"), "gansunese", "GanSuHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "广东话"), "cantonese", "YueYu"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "杭州话"), "hangzhounese", "HangZhouHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "河北话"), "hebeinese", "HeBeiHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "合肥话"), "hefeinese", "HeiFeiHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "河南话"), "henanese", "HeNanHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "客家话"), "hakkanese", "KeJiaHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "闽南话"), "minnanese", "MinNanHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "南昌话"), "nanchangnese", "NanChangHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "南京话"), "nankinese", "NanJingHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "山东话"), "shandongnese", "ShanDongHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "上海话"), "shanghainese", "ShangHaiHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "陕西话"), "shanxinese", "ShanXiHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "四川话"), "lmz", "SiChuanHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "台湾话"), "taiwanese", "TaiWanHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "太原话"), "taiyuanese", "TaiYuanHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "天津话"), "tianjinese", "TianJinHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "武汉话"), "wuhanese", "WuHanHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "云南话"), "yunnanese", "YunNanHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "宁夏话"), "ningxianese", "NingXiaHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "贵州话"), "guizhounese", "GuiZhouHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "皖北话"), "wanbeinese", "WanBeiHua"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "普通话"), "mandarin", "PuTongHuaXF"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "英语"), "en_us", "English"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "日语"), "ja_jp", "jp"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "韩语"), "ko_kr", "kr"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "俄语"), "ru-ru", "ru"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "法语"), "fr_fr", "fr"},
        {QT_TRANSLATE_NOOP("XunFeiLanguages", "西班牙语"), "es_es", "es"},
    };
    return rows;
}

} // namespace mevo
