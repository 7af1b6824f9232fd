#include "engines/AsrLanMenu.h"
#include "engines/EngineCatalogue.h"
#include "engines/EngineSelection.h"
#include "engines/LanguageImages.h"
#include "support/Rows.h"

#include <QtTest>

#include <functional>

namespace {

using mevo::Engine;

struct Desk
{
    EngineState state;
    RecorderState recorder;
    mevo::MenuFacts facts;

    Desk()
    {
        state.TXCurrentVoiceType = "16k_zh"_s;
        state.BaiDuCurrentVoiceType = "1537"_s;
        state.XunFeiWebApiCurrentVoiceType = "mandarin"_s;
        facts.customMethodKnown = true;
    }
    void use(Engine engine) { mevo::setEngineFlags(recorder, engine); }
};

using Change = std::function<void(Desk &)>;

/// The menu on one line: codes, "|" for a separator, "*" before the row in force, "-" for an empty menu.
QString rendered(const mevo::AsrMenu &menu)
{
    QStringList rows;
    for (const mevo::MenuEntry &entry : menu.entries) {
        rows += entry.language == nullptr
                    ? "|"_s
                    : (entry.checked ? "*"_s : QString()) + QLatin1String(entry.language->code);
    }
    return rows.isEmpty() ? "-"_s : rows.join(u' ');
}

QString flags(const RecorderState &recorder)
{
    return (recorder.BaiDuNoStreamApi ? "B"_s : QString()) + (recorder.UseTXASRApi ? "T"_s : QString()) +
           (recorder.UseXunFeiWebApi ? "X"_s : QString());
}

/// The writes of a change in a fixed order, "key=value", separated by blanks.
QString written(const std::vector<mevo::SettingWrite> &writes)
{
    QStringList texts;
    for (const mevo::SettingWrite &write : writes) {
        texts += QLatin1String(write.key) + QLatin1Char('=') + write.value.toString();
    }
    texts.sort();
    return texts.join(u' ');
}

const mevo::LanguageRow &row(Engine engine, const char *code)
{
    for (const mevo::LanguageRow &language : mevo::menuLanguages()) {
        if (language.engine == engine && qstrcmp(language.code, code) == 0) {
            return language;
        }
    }
    qFatal("no row %s", code);
}

} // namespace

class TestCatalogue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void images_data()
    {
        const Rows<QString, QString> row; // style, picture
        const auto flat = [](const char *stem) {
            return mevo::languageButtonStyle(QLatin1String(stem), false);
        };
        const auto upright = [](const char *stem) {
            return mevo::languageButtonStyle(QLatin1String(stem), true);
        };
        row("flat", flat("PuTongHua"), ":/rec/ChineseLan/PuTongHua.png");
        row("upright", upright("PuTongHua"), ":/rec/ChineseLan/PuTongHuaV.png");
        row("upright by name", upright("JpV"), ":/rec/ChineseLan/JpV.png");
        row("whole path", upright(":/rec/sougo.png"), ":/rec/sougo.png");
        for (const auto &[code, picture] :
             {std::pair("1537", "PuTongHua.png"), std::pair("1536", "PuTongHua.png"),
              std::pair("1936", "PuTongHua.png"), std::pair("80001", "PuTongHua.png"),
              std::pair("1637", "YueYu.png"), std::pair("1837", "SiChuanHua.png"),
              std::pair("1737", "English.png")}) {
            row(code, mevo::baiduLanguageStyle(QLatin1String(code), false),
                QLatin1String(":/rec/ChineseLan/") + QLatin1String(picture));
        }
        row("Baidu upright", mevo::baiduLanguageStyle("1637"_s, true), ":/rec/ChineseLan/YueYuV.png");
    }
    void images()
    {
        const auto [style, picture] = rowOf<QString, QString>();
        QCOMPARE(style, "QPushButton::menu-indicator{image:none;}QPushButton{border-image: url("_s + picture +
                            ");}"_s);
        // A code without a picture leaves the button.
        QVERIFY(mevo::baiduLanguageStyle(QString(), false).isEmpty());
        QVERIFY(mevo::baiduLanguageStyle("1538"_s, true).isEmpty());
    }

    void menu_data()
    {
        // rows, picture (stem on the button, empty to leave it), change
        const Rows<QString, QString, Change> add;
        const char *const everything =
            "16k_zh 16k_ca 16k_zh_medical 16k_en 16k_ja | 1537 1637 1837 1737 | mandarin en_us | 1 2 3";
        add("everything, Tencent",
            "*16k_zh 16k_ca 16k_zh_medical 16k_en 16k_ja | 1537 1637 1837 1737 | mandarin en_us | 1 2 3",
            "/PuTongHua.png", [](Desk &) {});
        add("Baidu",
            "16k_zh 16k_ca 16k_zh_medical 16k_en 16k_ja | 1537 1637 *1837 1737 | mandarin en_us | 1 2 3",
            "/SiChuanHua.png", [](Desk &d) {
                d.use(Engine::Baidu);
                d.state.BaiDuCurrentVoiceType = "1837"_s;
            });
        add("Baidu's fast variant has no row", everything, "", [](Desk &d) {
            d.use(Engine::Baidu);
            d.state.BaiDuCurrentVoiceType = "80001"_s;
        });
        add("XunFei upright",
            "16k_zh 16k_ca 16k_zh_medical 16k_en 16k_ja | 1537 1637 1837 1737 | *mandarin en_us | 1 2 3",
            "/PuTongHuaXFV.png", [](Desk &d) {
                d.use(Engine::XunFei);
                d.facts.vertical = true;
            });
        add("XunFei of the record, nobody has chosen a language",
            "16k_zh 16k_ca 16k_zh_medical 16k_en 16k_ja | 1537 1637 1837 1737 | *mandarin en_us | 1 2 3",
            "/PuTongHuaXF.png", [](Desk &d) {
                d.use(Engine::XunFei);
                d.state.XunFeiWebApiCurrentVoiceType.clear();
            });
        add("Tencent's medical picture upright is spelt otherwise",
            "16k_zh 16k_ca *16k_zh_medical 16k_en 16k_ja | 1537 1637 1837 1737 | mandarin en_us | 1 2 3",
            "/PutongHuaYiliaoV.png", [](Desk &d) {
                d.state.TXCurrentVoiceType = "16k_zh_medical"_s;
                d.facts.vertical = true;
            });
        add("a third party outranks the flags",
            "16k_zh 16k_ca 16k_zh_medical 16k_en 16k_ja | 1537 1637 1837 1737 | mandarin en_us | 1 *2 3",
            ":/rec/sougo.png", [](Desk &d) {
                d.use(Engine::ThirdParty);
                d.state.LocalEnableASR3 = true;
                d.state.LocalUseASR3Index = 2;
            });
        add("third party's index alone checks nothing", everything, "", [](Desk &d) {
            d.use(Engine::Baidu);
            d.state.BaiDuCurrentVoiceType.clear();
            d.state.LocalUseASR3Index = 2;
        });
        add("dialect in force",
            "16k_zh 16k_ca 16k_zh_medical *16k_zh_dialect 16k_en 16k_ja | 1537 1637 1837 1737 | mandarin "
            "en_us | 1 2 3",
            "/TXFangYan.png", [](Desk &d) {
                d.state.UseTecentZhDialect = true;
                d.state.TXCurrentVoiceType = "16k_zh_dialect"_s;
            });
        add("dialect without its switch", everything, "",
            [](Desk &d) { d.state.TXCurrentVoiceType = "16k_zh_dialect"_s; });
        add("Baidu hidden hides what follows", "16k_zh 16k_ca 16k_zh_medical 16k_en 16k_ja |", "",
            [](Desk &d) {
                d.use(Engine::XunFei);
                d.state.ShowBaiduI = false;
            });
        add("Baidu and Tencent hidden", "-", "",
            [](Desk &d) { d.state.ShowBaiduI = d.state.ShowTXI = false; });
        add("Tencent hidden", "1537 1637 1837 1737 | mandarin en_us | 1 2 3", "",
            [](Desk &d) { d.state.ShowTXI = false; });
        add("XunFei in a language without a row", everything, "/jp.png", [](Desk &d) {
            d.use(Engine::XunFei);
            d.state.XunFeiWebApiCurrentVoiceType = "ja_jp"_s;
        });
        add("XP class", "*16k_zh 16k_ca 16k_zh_medical 16k_en 16k_ja | 1537 1637 1837 1737 | 1 2 3",
            "/PuTongHua.png", [](Desk &d) { d.facts.xpClass = true; });
        add("XunFei not permitted", "1537 1637 1837 1737 | 1 2 3", "",
            [](Desk &d) { d.state.ShowXFWebApi = d.state.ShowTXI = false; });
        add("Baidu's rows one by one", "1637 1737 |", "", [](Desk &d) {
            d.state.ShowTXI = d.state.ShowXFWebApi = d.state.ShowASR3UI = false;
            d.state.ShowBdSdPTHI = d.state.ShowBdSCHI = false;
        });
        add("Baidu's other rows", "1537 1837 |", "", [](Desk &d) {
            d.state.ShowTXI = d.state.ShowXFWebApi = d.state.ShowASR3UI = false;
            d.state.ShowBdYYI = d.state.ShowBdEnI = false;
        });
        add("third parties one by one", "1537 1637 1837 1737 | 2", "", [](Desk &d) {
            d.state.ShowTXI = d.state.ShowXFWebApi = d.state.ShowXunFeiInputMethod = false;
            d.facts.customMethodKnown = false;
        });
        add("third parties, the others", "1537 1637 1837 1737 | 1", "", [](Desk &d) {
            d.state.ShowTXI = d.state.ShowXFWebApi = d.state.ShowSogouInputMethod = d.state.ShowASR3Custom =
                false;
        });
    }

    void menu()
    {
        const auto [rows, picture, change] = rowOf<QString, QString, Change>();
        Desk desk;
        change(desk);
        const mevo::AsrMenu menu = mevo::buildAsrMenu(desk.state, desk.recorder, desk.facts);
        QCOMPARE(rendered(menu), rows);
        QCOMPARE(menu.buttonImage.isEmpty(), picture.isEmpty());
        QVERIFY2(menu.buttonImage.contains(picture), qPrintable(menu.buttonImage));
        QCOMPARE(menu.forceTencent, !desk.state.ShowBaiduI);
    }

    void anotherTencentRowEndsTheDialect()
    {
        for (const char *code : {"16k_zh", "16k_zh_dialect", "16k_unknown"}) {
            Desk desk;
            desk.state.UseTecentZhDialect = true;
            desk.state.TXCurrentVoiceType = QLatin1String(code);
            desk.state.LocalEnableASR3 = true; // the code counts whatever is in force
            const mevo::AsrMenu menu = mevo::buildAsrMenu(desk.state, desk.recorder, desk.facts);
            const bool ends = qstrcmp(code, "16k_zh") == 0;
            QVERIFY2(menu.clearTencentDialect == ends, code);
            QVERIFY2(rendered(menu).contains("16k_zh_dialect"_s) != ends, code);
        }
    }

    void choice_data()
    {
        // engine, code, recorder, account (list that an account is drawn from before the row is stored),
        // setup
        const Rows<Engine, QByteArray, QString, QString, bool> row;
        row("Tencent", Engine::Tencent, "16k_ca", "T", "", false);
        row("dialect", Engine::Tencent, "16k_zh_dialect", "T", "", false);
        row("Baidu", Engine::Baidu, "1637", "B", "byydsrbdssset.ini", false);
        row("Baidu as before", Engine::Baidu, "1537", "B", "", false);
        row("XunFei", Engine::XunFei, "en_us", "X", "", false);
        row("third party", Engine::ThirdParty, "2", "T", "", true);
    }

    void choice()
    {
        const auto [engine, code, recorder, account, setup] =
            rowOf<Engine, QByteArray, QString, QString, bool>();
        Desk desk;
        desk.use(Engine::XunFei);
        desk.state.BaiDuNoStreamApi_FastVersion = true;
        desk.state.UseTecentZhDialect = true;
        desk.state.LocalEnableASR3 = engine != Engine::ThirdParty;
        desk.state.LocalUseASR3Index = 1;
        desk.state.TXCurrentVoiceType.clear(); // never used
        const mevo::CredentialListRow *list = mevo::accountListFor(row(engine, code.constData()), desk.state);
        QCOMPARE(QString::fromLatin1(list != nullptr ? list->file : ""), account);
        const mevo::EngineChange change =
            mevo::chooseLanguage(row(engine, code.constData()), desk.state, desk.recorder);
        QCOMPARE(flags(desk.recorder), recorder);
        QCOMPARE(change.setupInputMethod, setup);
        QVERIFY(change.rebuild && change.persistEngine);
        QVERIFY(!desk.state.BaiDuNoStreamApi_FastVersion);
        QCOMPARE(desk.state.LocalEnableASR3, engine == Engine::ThirdParty);
        QCOMPARE(desk.state.LocalUseASR3Index, engine == Engine::ThirdParty ? code.toInt() : -1);
        QCOMPARE(desk.state.TXCurrentVoiceType.isEmpty(), !desk.recorder.UseTXASRApi);
        QCOMPARE(desk.state.UseTecentZhDialect, engine != Engine::Tencent || code == "16k_zh_dialect");
        // what is chosen is what the next menu checks
        const QString shown = rendered(mevo::buildAsrMenu(desk.state, desk.recorder, desk.facts));
        QCOMPARE(shown.count(u'*'), 1);
        QVERIFY2(shown.contains(QLatin1Char('*') + QLatin1String(code)), qPrintable(shown));
        const QString keys = QLatin1Char(' ') + written(change.writes) + QLatin1Char(' ');
        const EngineState &now = desk.state;
        const int baidu = desk.recorder.BaiDuNoStreamApi;
        for (const mevo::SettingWrite &expected : std::vector<mevo::SettingWrite>{
                 {"BaiDuCurrentVoiceType", now.BaiDuCurrentVoiceType},
                 {"BaiDuNoStreamApi_FastVersion", 0},
                 {"XunFeiWebApiCurrentVoiceType", now.XunFeiWebApiCurrentVoiceType},
                 {"TXCurrentVoiceType", now.TXCurrentVoiceType},
                 {"BaiDuNoStreamApi", baidu},
                 {"UseBaiDuiAI", baidu},
                 {"UseTXASRApi", int(desk.recorder.UseTXASRApi)},
                 {"UseXunFeiWebApi", int(desk.recorder.UseXunFeiWebApi)}}) {
            QVERIFY2(keys.contains(QLatin1Char(' ') + written({expected}) + QLatin1Char(' ')), expected.key);
        }
    }

    void selectors_data()
    {
        // recorder, types (Baidu's and XunFei's language afterwards), steps (per change: R rebuilds, P
        // persists, W writes only), record
        const Rows<QString, QString, QString, Change> add;
        add("record not read", "B", "1637 en_us", "", [](Desk &) {});
        add("Baidu already", "B", "1637 en_us", "", [](Desk &d) { d.state.UseBDAPIPara = 1; });
        add("Tencent", "T", "1637 en_us", "R", [](Desk &d) { d.state.UseTXAPIPara = 1; });
        add("XunFei", "X", "1637 en_us", "R", [](Desk &d) { d.state.UseXFWAPIPara = 1; });
        add("XunFei's other column is not read", "B", "1637 en_us", "",
            [](Desk &d) { d.state.UseXFSDKPara = 1; });
        add("two selectors end on Tencent", "T", "1637 en_us", "RR",
            [](Desk &d) { d.state.UseBDAPIPara = d.state.UseXFWAPIPara = d.state.UseTXAPIPara = 1; });
        add("Baidu, then XunFei", "X", "1637 en_us", "RR", [](Desk &d) {
            d.use(Engine::Tencent);
            d.state.UseBDAPIPara = d.state.UseXFWAPIPara = 1;
        });
        add("Baidu without a language", "B", "1537 en_us", "R", [](Desk &d) {
            d.use(Engine::Tencent);
            d.state.BaiDuCurrentVoiceType.clear();
            d.state.UseBDAPIPara = 1;
        });
        add("XP class, XunFei alone", "T", "1637 en_us", "R", [](Desk &d) {
            d.facts.xpClass = true;
            d.state.UseXFWAPIPara = 1;
        });
        add("XP class takes XunFei as Tencent", "T", "1637 en_us", "R", [](Desk &d) {
            d.facts.xpClass = true;
            d.state.UseXFSDKPara = d.state.UseBDAPIPara = 1;
        });
        add("fast on", "B", "80001 en_us", "R", [](Desk &d) { d.state.UseBDFstPara = 2; });
        add("fast off", "B", "1537 en_us", "R", [](Desk &d) {
            d.state.UseBDFstPara = 0;
            d.state.BaiDuNoStreamApi_FastVersion = true;
        });
        add("fast as before", "B", "1637 en_us", "", [](Desk &d) { d.state.UseBDFstPara = 0; });
        add("correction", "B", "1637 en_us", "W", [](Desk &d) { d.state.UseXFWPIDWAPara = 1; });
        add("language switches while Baidu is on", "B", "1637 mandarin", "W",
            [](Desk &d) { d.state.ShowXFDialect = 1; });
        add("language switches while XunFei is on", "X", "1637 mandarin", "P", [](Desk &d) {
            d.use(Engine::XunFei);
            d.state.ShowXFSmallLan = 1;
        });
    }

    void selectors()
    {
        const auto [recorder, types, expectedSteps, record] = rowOf<QString, QString, QString, Change>();
        Desk desk;
        desk.use(Engine::Baidu);
        desk.state.BaiDuCurrentVoiceType = "1637"_s;
        desk.state.XunFeiWebApiCurrentVoiceType = "en_us"_s;
        desk.recorder.BaiduTokenRefreshed = true;
        record(desk);
        const auto changes = mevo::applyRecordSelectors(desk.state, desk.recorder, desk.facts.xpClass, 0, 0);
        QString steps;
        for (const mevo::EngineChange &change : changes) {
            QVERIFY(!change.writes.empty());
            QVERIFY(change.setupInputMethod == change.persistEngine);
            steps += change.persistEngine ? u'P' : change.rebuild ? u'R' : u'W';
        }
        QCOMPARE(steps, expectedSteps);
        QCOMPARE(flags(desk.recorder), recorder);
        QCOMPARE(desk.state.BaiDuCurrentVoiceType + QLatin1Char(' ') +
                     desk.state.XunFeiWebApiCurrentVoiceType,
                 types);
        QCOMPARE(desk.recorder.EnableXunFeiWebApiDwa, desk.state.UseXFWPIDWAPara == 1);
        if (steps.contains(u'R') && desk.recorder.UseXunFeiWebApi) {
            QVERIFY(!desk.recorder.BaiduTokenRefreshed); // Baidu asks for a token when it comes back
        }
    }

    /// The user has chosen meanwhile: engine and language stay, and what else the record says counts.
    void selectorsAfterAChoice_data()
    {
        const Rows<Engine, QString, bool> row; // engine, types (of Baidu and of XunFei), fast
        row("Baidu", Engine::Baidu, "1637 mandarin", false);
        row("Tencent", Engine::Tencent, "80001 mandarin", true);
        row("XunFei", Engine::XunFei, "80001 en_us", true);
    }

    void selectorsAfterAChoice()
    {
        const auto [engine, types, fast] = rowOf<Engine, QString, bool>();
        Desk desk;
        desk.use(engine);
        const QString before = flags(desk.recorder);
        desk.state.BaiDuCurrentVoiceType = "1637"_s;
        desk.state.XunFeiWebApiCurrentVoiceType = "en_us"_s;
        desk.state.UseBDAPIPara = desk.state.UseTXAPIPara = desk.state.UseXFWAPIPara = 1;
        desk.state.UseBDFstPara = desk.state.UseXFWPIDWAPara = desk.state.ShowXFDialect = 1;
        desk.recorder.EnableXunFeiWebApiDwa = false;
        QString settings;
        for (const mevo::EngineChange &change :
             mevo::applyRecordSelectors(desk.state, desk.recorder, false, 0, 0, true)) {
            settings += written(change.writes) + u' ';
        }
        QCOMPARE(flags(desk.recorder), before);
        QCOMPARE(desk.state.BaiDuCurrentVoiceType + QLatin1Char(' ') +
                     desk.state.XunFeiWebApiCurrentVoiceType,
                 types);
        QCOMPARE(desk.state.BaiDuNoStreamApi_FastVersion, fast);
        QVERIFY(desk.recorder.EnableXunFeiWebApiDwa);
        QVERIFY2(settings.contains(QLatin1String("ShowXFDialect=1")), qPrintable(settings));
        QVERIFY2(!settings.contains(QLatin1String("UseTXASRApi")), qPrintable(settings));
    }

    void falls()
    {
        Desk desk;
        desk.use(Engine::Baidu);
        desk.recorder.UseTXASRApi = true; // stands as it was
        desk.recorder.BaiduTokenRefreshed = desk.recorder.BaiduViaSettings = true;
        const mevo::EngineChange toXunFei = mevo::fallToXunFei(desk.recorder);
        QCOMPARE(flags(desk.recorder), "TX"_s);
        QVERIFY(!desk.recorder.BaiduTokenRefreshed && !desk.recorder.BaiduViaSettings);
        QCOMPARE(written(toXunFei.writes), "BaiDuNoStreamApi=0 UseXunFeiWebApi=1"_s);
        const mevo::EngineChange toTencent = mevo::fallToTencent(desk.state, desk.recorder);
        QCOMPARE(flags(desk.recorder), "T"_s);
        QCOMPARE(written(toTencent.writes), "BaiDuNoStreamApi=0 UseTXASRApi=1 UseXunFeiWebApi=0"_s);
        for (const mevo::EngineChange &change : {toXunFei, toTencent}) {
            QVERIFY(change.rebuild && change.persistEngine && change.setupInputMethod);
        }
    }

    void whatTheRecordIsTold_data()
    {
        const Rows<QString, QString> row; // engines, columns (UseTXAPIPara, UseBDAPIPara, UseXFSDKPara)
        row("none: no statement", "", "");
        row("Baidu", "B", "0 1 0");
        row("Tencent", "T", "1 0 0");
        row("XunFei", "X", "0 0 1");
        row("Baidu and Tencent", "BT", "1 0 0");
        row("all", "BTX", "0 0 1");
    }

    void whatTheRecordIsTold()
    {
        const auto [engines, columns] = rowOf<QString, QString>();
        RecorderState recorder;
        recorder.BaiDuNoStreamApi = engines.contains(u'B');
        recorder.UseTXASRApi = engines.contains(u'T');
        recorder.UseXunFeiWebApi = engines.contains(u'X');
        const QStringList on = columns.split(u' ');
        QCOMPARE(mevo::engineStatement(recorder, "db"_s, "02-01-7"_s),
                 columns.isEmpty() ? QString()
                                   : "update db.device_serialid set DefaultRecEngine=10, UseTXAPIPara= '%1', "
                                     "UseBDAPIPara ='%2', UseXFSDKPara = '%3', UseXFWAPIPara='0'  where "
                                     "DongleID='02-01-7'"_s.arg(on[0], on[1], on[2]));
    }

    void firstArrival()
    {
        Desk desk;
        desk.state.EnableASR3 = desk.state.LocalEnableASR3 = true;
        desk.state.LocalUseASR3Index = desk.state.UseASR3Index = 2;
        desk.state.BaiDuCurrentVoiceType = "1637"_s;
        const mevo::EngineChange change = mevo::chooseAtFirstArrival(desk.state, desk.recorder);
        QCOMPARE(flags(desk.recorder), "B"_s);
        QVERIFY(!desk.state.EnableASR3 && !desk.state.LocalEnableASR3);
        QCOMPARE(desk.state.UseASR3Index + desk.state.LocalUseASR3Index, -2);
        QCOMPARE(written(change.writes),
                 "BaiDuCurrentVoiceType=1537 BaiDuNoStreamApi=1 BaiDuNoStreamApi_FastVersion=0 "
                 "FirstRunApp=0 LocalEnableASR3=0 LocalUseASR3Index=-1 UseTXASRApi=0 "
                 "UseXunFeiWebApi=0"_s);
        QVERIFY(change.rebuild && !change.persistEngine);
    }

    void refusedLanguage()
    {
        for (const char *code : {"ja_jp", "ko_kr", "ru-ru", "fr_fr", "es_es"}) {
            QCOMPARE(mevo::languageAfterXunFeiRefusal(QLatin1String(code)), "en_us"_s);
        }
        for (const char *code : {"en_us", "mandarin", "lmz", "ru_ru", ""}) {
            QCOMPARE(mevo::languageAfterXunFeiRefusal(QLatin1String(code)), "mandarin"_s);
        }
    }
};

QTEST_GUILESS_MAIN(TestCatalogue)
#include "tst_catalogue.moc"
