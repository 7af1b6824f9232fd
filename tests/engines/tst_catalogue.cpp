#include "engines/AsrLanMenu.h"
#include "engines/EngineCatalogue.h"
#include "engines/EngineSelection.h"
#include "engines/LanguageImages.h"

#include <QSet>
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
        state.TXCurrentVoiceType = QStringLiteral("16k_zh");
        state.BaiDuCurrentVoiceType = QStringLiteral("1537");
        state.XunFeiWebApiCurrentVoiceType = QStringLiteral("mandarin");
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
                    ? QStringLiteral("|")
                    : (entry.checked ? QStringLiteral("*") : QString()) + QLatin1String(entry.language->code);
    }
    return rows.isEmpty() ? QStringLiteral("-") : rows.join(u' ');
}

QString flags(const RecorderState &recorder)
{
    return (recorder.BaiDuNoStreamApi ? QStringLiteral("B") : QString()) +
           (recorder.UseTXASRApi ? QStringLiteral("T") : QString()) +
           (recorder.UseXunFeiWebApi ? QStringLiteral("X") : QString());
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

Q_DECLARE_METATYPE(Change)
Q_DECLARE_METATYPE(mevo::Engine)

class TestCatalogue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void codes()
    {
        QCOMPARE(mevo::catalogueCodes(Engine::Tencent).join(u' '),
                 QStringLiteral("16k_zh 16k_ca 16k_zh_medical 16k_zh_dialect 16k_en 16k_ja"));
        QCOMPARE(mevo::catalogueCodes(Engine::Baidu).join(u' '), QStringLiteral("1537 1637 1737 1837 1936"));
        QCOMPARE(mevo::catalogueCodes(Engine::XunFei).join(u' '), QStringLiteral("mandarin en_us"));
    }

    void theFullXunFeiSet()
    {
        QCOMPARE(mevo::xunFeiLanguages().size(), std::size_t(31));
        QHash<QString, QString> codeOf;
        QSet<QString> codes;
        for (const mevo::XunFeiLanguage &language : mevo::xunFeiLanguages()) {
            codeOf[QString::fromUtf8(language.label)] = QLatin1String(language.code);
            codes += QLatin1String(language.code);
        }
        QCOMPARE(codeOf.size(), 31);
        QCOMPARE(codes.size(), 31);
        // the service's own exceptions from the pattern of the other codes
        QCOMPARE(codeOf[QStringLiteral("四川话")], QStringLiteral("lmz"));
        QCOMPARE(codeOf[QStringLiteral("俄语")], QStringLiteral("ru-ru"));
        QCOMPARE(codeOf[QStringLiteral("广东话")], QStringLiteral("cantonese"));
        QCOMPARE(codeOf[QStringLiteral("南京话")], QStringLiteral("nankinese"));
    }

    void images_data()
    {
        QTest::addColumn<QString>("style");
        QTest::addColumn<QString>("picture");
        const auto flat = [](const char *stem) {
            return mevo::languageButtonStyle(QLatin1String(stem), false);
        };
        const auto upright = [](const char *stem) {
            return mevo::languageButtonStyle(QLatin1String(stem), true);
        };
        const QString folder = QStringLiteral(":/rec/ChineseLan/");
        QTest::newRow("flat") << flat("PuTongHua") << folder + QStringLiteral("PuTongHua.png");
        QTest::newRow("upright") << upright("PuTongHua") << folder + QStringLiteral("PuTongHuaV.png");
        QTest::newRow("upright by name") << upright("JpV") << folder + QStringLiteral("JpV.png");
        QTest::newRow("whole path") << upright(":/rec/sougo.png") << QStringLiteral(":/rec/sougo.png");
        const auto baidu = [&](const char *code, const char *stem) {
            QTest::newRow(code) << mevo::baiduLanguageStyle(QLatin1String(code), false)
                                << folder + QLatin1String(stem);
        };
        baidu("1537", "PuTongHua.png");
        baidu("1536", "PuTongHua.png");
        baidu("1936", "PuTongHua.png");
        baidu("80001", "PuTongHua.png");
        baidu("1637", "YueYu.png");
        baidu("1837", "SiChuanHua.png");
        baidu("1737", "English.png");
        QTest::newRow("Baidu upright") << mevo::baiduLanguageStyle(QStringLiteral("1637"), true)
                                       << folder + QStringLiteral("YueYuV.png");
    }

    void images()
    {
        QFETCH(QString, picture);
        QTEST(QStringLiteral("QPushButton::menu-indicator{image:none;}QPushButton{border-image: url(") +
                  picture + QStringLiteral(");}"),
              "style");
    }

    void aBaiduCodeWithoutPictureLeavesTheButton()
    {
        QVERIFY(mevo::baiduLanguageStyle(QString(), false).isEmpty());
        QVERIFY(mevo::baiduLanguageStyle(QStringLiteral("1538"), true).isEmpty());
    }

    void menu_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<QString>("rows");
        QTest::addColumn<QString>("picture"); // stem on the button, empty to leave it
        const auto add = [](const char *name, const Change &change, const char *rows, const char *picture) {
            QTest::newRow(name) << change << QString::fromLatin1(rows) << QString::fromLatin1(picture);
        };
        add(
            "everything, Tencent", [](Desk &) {},
            "*16k_zh 16k_ca 16k_zh_medical 16k_en 16k_ja | 1537 1637 1837 1737 | mandarin en_us | 1 2 3",
            "/PuTongHua.png");
        add(
            "Baidu",
            [](Desk &d) {
                d.use(Engine::Baidu);
                d.state.BaiDuCurrentVoiceType = QStringLiteral("1837");
            },
            "16k_zh 16k_ca 16k_zh_medical 16k_en 16k_ja | 1537 1637 *1837 1737 | mandarin en_us | 1 2 3",
            "/SiChuanHua.png");
        add(
            "Baidu's fast variant has no row",
            [](Desk &d) {
                d.use(Engine::Baidu);
                d.state.BaiDuCurrentVoiceType = QStringLiteral("80001");
            },
            "16k_zh 16k_ca 16k_zh_medical 16k_en 16k_ja | 1537 1637 1837 1737 | mandarin en_us | 1 2 3", "");
        add(
            "XunFei upright",
            [](Desk &d) {
                d.use(Engine::XunFei);
                d.facts.vertical = true;
            },
            "16k_zh 16k_ca 16k_zh_medical 16k_en 16k_ja | 1537 1637 1837 1737 | *mandarin en_us | 1 2 3",
            "/PuTongHuaXFV.png");
        add(
            "Tencent's medical picture upright is spelt otherwise",
            [](Desk &d) {
                d.state.TXCurrentVoiceType = QStringLiteral("16k_zh_medical");
                d.facts.vertical = true;
            },
            "16k_zh 16k_ca *16k_zh_medical 16k_en 16k_ja | 1537 1637 1837 1737 | mandarin en_us | 1 2 3",
            "/PutongHuaYiliaoV.png");
        add(
            "a third party outranks the flags",
            [](Desk &d) {
                d.use(Engine::ThirdParty);
                d.state.LocalEnableASR3 = true;
                d.state.LocalUseASR3Index = 2;
            },
            "16k_zh 16k_ca 16k_zh_medical 16k_en 16k_ja | 1537 1637 1837 1737 | mandarin en_us | 1 *2 3",
            ":/rec/sougo.png");
        add(
            "third party's index alone checks nothing",
            [](Desk &d) {
                d.use(Engine::Baidu);
                d.state.BaiDuCurrentVoiceType.clear();
                d.state.LocalUseASR3Index = 2;
            },
            "16k_zh 16k_ca 16k_zh_medical 16k_en 16k_ja | 1537 1637 1837 1737 | mandarin en_us | 1 2 3", "");
        add(
            "dialect in force",
            [](Desk &d) {
                d.state.UseTecentZhDialect = true;
                d.state.TXCurrentVoiceType = QStringLiteral("16k_zh_dialect");
            },
            "16k_zh 16k_ca 16k_zh_medical *16k_zh_dialect 16k_en 16k_ja | 1537 1637 1837 1737 | mandarin "
            "en_us | 1 2 3",
            "/TXFangYan.png");
        add(
            "dialect without its switch",
            [](Desk &d) { d.state.TXCurrentVoiceType = QStringLiteral("16k_zh_dialect"); },
            "16k_zh 16k_ca 16k_zh_medical 16k_en 16k_ja | 1537 1637 1837 1737 | mandarin en_us | 1 2 3", "");
        add(
            "Baidu hidden hides what follows",
            [](Desk &d) {
                d.use(Engine::XunFei);
                d.state.ShowBaiduI = false;
            },
            "16k_zh 16k_ca 16k_zh_medical 16k_en 16k_ja |", "");
        add(
            "Baidu and Tencent hidden", [](Desk &d) { d.state.ShowBaiduI = d.state.ShowTXI = false; }, "-",
            "");
        add(
            "Tencent hidden", [](Desk &d) { d.state.ShowTXI = false; },
            "1537 1637 1837 1737 | mandarin en_us | 1 2 3", "");
        add(
            "XunFei in a language without a row",
            [](Desk &d) {
                d.use(Engine::XunFei);
                d.state.XunFeiWebApiCurrentVoiceType = QStringLiteral("ja_jp");
            },
            "16k_zh 16k_ca 16k_zh_medical 16k_en 16k_ja | 1537 1637 1837 1737 | mandarin en_us | 1 2 3",
            "/jp.png");
        add(
            "XP class", [](Desk &d) { d.facts.xpClass = true; },
            "*16k_zh 16k_ca 16k_zh_medical 16k_en 16k_ja | 1537 1637 1837 1737 | 1 2 3", "/PuTongHua.png");
        add(
            "XunFei not permitted", [](Desk &d) { d.state.ShowXFWebApi = d.state.ShowTXI = false; },
            "1537 1637 1837 1737 | 1 2 3", "");
        add(
            "Baidu's rows one by one",
            [](Desk &d) {
                d.state.ShowTXI = d.state.ShowXFWebApi = d.state.ShowASR3UI = false;
                d.state.ShowBdSdPTHI = d.state.ShowBdSCHI = false;
            },
            "1637 1737 |", "");
        add(
            "Baidu's other rows",
            [](Desk &d) {
                d.state.ShowTXI = d.state.ShowXFWebApi = d.state.ShowASR3UI = false;
                d.state.ShowBdYYI = d.state.ShowBdEnI = false;
            },
            "1537 1837 |", "");
        add(
            "third parties one by one",
            [](Desk &d) {
                d.state.ShowTXI = d.state.ShowXFWebApi = d.state.ShowXunFeiInputMethod = false;
                d.facts.customMethodKnown = false;
            },
            "1537 1637 1837 1737 | 2", "");
        add(
            "third parties, the others",
            [](Desk &d) {
                d.state.ShowTXI = d.state.ShowXFWebApi = d.state.ShowSogouInputMethod =
                    d.state.ShowASR3Custom = false;
            },
            "1537 1637 1837 1737 | 1", "");
    }

    void menu()
    {
        QFETCH(Change, change);
        QFETCH(QString, picture);
        Desk desk;
        change(desk);
        const mevo::AsrMenu menu = mevo::buildAsrMenu(desk.state, desk.recorder, desk.facts);
        QTEST(rendered(menu), "rows");
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
            QVERIFY2(rendered(menu).contains(QStringLiteral("16k_zh_dialect")) != ends, code);
        }
    }

    void choice_data()
    {
        QTest::addColumn<Engine>("engine");
        QTest::addColumn<QByteArray>("code");
        QTest::addColumn<QString>("recorder");
        QTest::addColumn<QString>("account"); // list that an account is drawn from before the row is stored
        QTest::addColumn<bool>("setup");
        QTest::newRow("Tencent") << Engine::Tencent << QByteArray("16k_ca") << "T"
                                 << "" << false;
        QTest::newRow("dialect") << Engine::Tencent << QByteArray("16k_zh_dialect") << "T"
                                 << "" << false;
        QTest::newRow("Baidu") << Engine::Baidu << QByteArray("1637") << "B"
                               << "byydsrbdssset.ini" << false;
        QTest::newRow("Baidu as before") << Engine::Baidu << QByteArray("1537") << "B"
                                         << "" << false;
        QTest::newRow("XunFei") << Engine::XunFei << QByteArray("en_us") << "X"
                                << "" << false;
        QTest::newRow("third party") << Engine::ThirdParty << QByteArray("2") << "T"
                                     << "" << true;
    }

    void choice()
    {
        QFETCH(Engine, engine);
        QFETCH(QByteArray, code);
        Desk desk;
        desk.use(Engine::XunFei);
        desk.state.BaiDuNoStreamApi_FastVersion = true;
        desk.state.UseTecentZhDialect = true;
        desk.state.LocalEnableASR3 = engine != Engine::ThirdParty;
        desk.state.LocalUseASR3Index = 1;
        const mevo::CredentialListRow *list = mevo::accountListFor(row(engine, code.constData()), desk.state);
        QTEST(QString::fromLatin1(list != nullptr ? list->file : ""), "account");
        const mevo::EngineChange change =
            mevo::chooseLanguage(row(engine, code.constData()), desk.state, desk.recorder);
        QTEST(flags(desk.recorder), "recorder");
        QTEST(change.setupInputMethod, "setup");
        QVERIFY(change.rebuild && change.persistEngine);
        QVERIFY(!desk.state.BaiDuNoStreamApi_FastVersion);
        QCOMPARE(desk.state.LocalEnableASR3, engine == Engine::ThirdParty);
        QCOMPARE(desk.state.LocalUseASR3Index, engine == Engine::ThirdParty ? code.toInt() : -1);
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
        QTest::addColumn<Change>("record");
        QTest::addColumn<QString>("recorder");
        QTest::addColumn<QString>("types"); // Baidu's and XunFei's language afterwards
        QTest::addColumn<QString>("steps"); // per change: R rebuilds, P persists, W writes only
        const auto add = [](const char *name, const Change &record, const char *recorder, const char *types,
                            const char *steps) {
            QTest::newRow(name) << record << QString::fromLatin1(recorder) << QString::fromLatin1(types)
                                << QString::fromLatin1(steps);
        };
        add(
            "record not read", [](Desk &) {}, "B", "1637 en_us", "");
        add(
            "Baidu already", [](Desk &d) { d.state.UseBDAPIPara = 1; }, "B", "1637 en_us", "");
        add(
            "Tencent", [](Desk &d) { d.state.UseTXAPIPara = 1; }, "T", "1637 en_us", "R");
        add(
            "XunFei", [](Desk &d) { d.state.UseXFWAPIPara = 1; }, "X", "1637 en_us", "R");
        add(
            "XunFei's other column is not read", [](Desk &d) { d.state.UseXFSDKPara = 1; }, "B", "1637 en_us",
            "");
        add(
            "two selectors end on Tencent",
            [](Desk &d) { d.state.UseBDAPIPara = d.state.UseXFWAPIPara = d.state.UseTXAPIPara = 1; }, "T",
            "1637 en_us", "RR");
        add(
            "Baidu, then XunFei",
            [](Desk &d) {
                d.use(Engine::Tencent);
                d.state.UseBDAPIPara = d.state.UseXFWAPIPara = 1;
            },
            "X", "1637 en_us", "RR");
        add(
            "Baidu without a language",
            [](Desk &d) {
                d.use(Engine::Tencent);
                d.state.BaiDuCurrentVoiceType.clear();
                d.state.UseBDAPIPara = 1;
            },
            "B", "1537 en_us", "R");
        add(
            "XP class, XunFei alone",
            [](Desk &d) {
                d.facts.xpClass = true;
                d.state.UseXFWAPIPara = 1;
            },
            "T", "1637 en_us", "R");
        add(
            "XP class takes XunFei as Tencent",
            [](Desk &d) {
                d.facts.xpClass = true;
                d.state.UseXFSDKPara = d.state.UseBDAPIPara = 1;
            },
            "T", "1637 en_us", "R");
        add(
            "fast on", [](Desk &d) { d.state.UseBDFstPara = 2; }, "B", "80001 en_us", "R");
        add(
            "fast off",
            [](Desk &d) {
                d.state.UseBDFstPara = 0;
                d.state.BaiDuNoStreamApi_FastVersion = true;
            },
            "B", "1537 en_us", "R");
        add(
            "fast as before", [](Desk &d) { d.state.UseBDFstPara = 0; }, "B", "1637 en_us", "");
        add(
            "correction", [](Desk &d) { d.state.UseXFWPIDWAPara = 1; }, "B", "1637 en_us", "W");
        add(
            "language switches while Baidu is on", [](Desk &d) { d.state.ShowXFDialect = 1; }, "B",
            "1637 mandarin", "W");
        add(
            "language switches while XunFei is on",
            [](Desk &d) {
                d.use(Engine::XunFei);
                d.state.ShowXFSmallLan = 1;
            },
            "X", "1637 mandarin", "P");
    }

    void selectors()
    {
        QFETCH(Change, record);
        Desk desk;
        desk.use(Engine::Baidu);
        desk.state.BaiDuCurrentVoiceType = QStringLiteral("1637");
        desk.state.XunFeiWebApiCurrentVoiceType = QStringLiteral("en_us");
        desk.recorder.BaiduTokenRefreshed = true;
        record(desk);
        const auto changes = mevo::applyRecordSelectors(desk.state, desk.recorder, desk.facts.xpClass, 0, 0);
        QString steps;
        for (const mevo::EngineChange &change : changes) {
            QVERIFY(!change.writes.empty());
            QVERIFY(change.setupInputMethod == change.persistEngine);
            steps += change.persistEngine ? u'P' : change.rebuild ? u'R' : u'W';
        }
        QTEST(steps, "steps");
        QTEST(flags(desk.recorder), "recorder");
        QTEST(desk.state.BaiDuCurrentVoiceType + QLatin1Char(' ') + desk.state.XunFeiWebApiCurrentVoiceType,
              "types");
        QCOMPARE(desk.recorder.EnableXunFeiWebApiDwa, desk.state.UseXFWPIDWAPara == 1);
        if (steps.contains(u'R') && desk.recorder.UseXunFeiWebApi) {
            QVERIFY(!desk.recorder.BaiduTokenRefreshed); // Baidu asks for a token when it comes back
        }
    }

    /// The user has chosen meanwhile: engine and language stay, and what else the record says counts.
    void selectorsAfterAChoice_data()
    {
        QTest::addColumn<int>("engine");
        QTest::addColumn<QString>("types"); // of Baidu and of XunFei
        QTest::addColumn<bool>("fast");
        QTest::newRow("Baidu") << int(Engine::Baidu) << "1637 mandarin" << false;
        QTest::newRow("Tencent") << int(Engine::Tencent) << "80001 mandarin" << true;
        QTest::newRow("XunFei") << int(Engine::XunFei) << "80001 en_us" << true;
    }

    void selectorsAfterAChoice()
    {
        QFETCH(int, engine);
        Desk desk;
        desk.use(Engine(engine));
        const QString before = flags(desk.recorder);
        desk.state.BaiDuCurrentVoiceType = QStringLiteral("1637");
        desk.state.XunFeiWebApiCurrentVoiceType = QStringLiteral("en_us");
        desk.state.UseBDAPIPara = desk.state.UseTXAPIPara = desk.state.UseXFWAPIPara = 1;
        desk.state.UseBDFstPara = desk.state.UseXFWPIDWAPara = desk.state.ShowXFDialect = 1;
        desk.recorder.EnableXunFeiWebApiDwa = false;
        QString settings;
        for (const mevo::EngineChange &change :
             mevo::applyRecordSelectors(desk.state, desk.recorder, false, 0, 0, true)) {
            settings += written(change.writes) + u' ';
        }
        QCOMPARE(flags(desk.recorder), before);
        QTEST(desk.state.BaiDuCurrentVoiceType + QLatin1Char(' ') + desk.state.XunFeiWebApiCurrentVoiceType,
              "types");
        QTEST(desk.state.BaiDuNoStreamApi_FastVersion, "fast");
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
        QCOMPARE(flags(desk.recorder), QStringLiteral("TX"));
        QVERIFY(!desk.recorder.BaiduTokenRefreshed && !desk.recorder.BaiduViaSettings);
        QCOMPARE(written(toXunFei.writes), QStringLiteral("BaiDuNoStreamApi=0 UseXunFeiWebApi=1"));
        const mevo::EngineChange toTencent = mevo::fallToTencent(desk.state, desk.recorder);
        QCOMPARE(flags(desk.recorder), QStringLiteral("T"));
        QCOMPARE(written(toTencent.writes),
                 QStringLiteral("BaiDuNoStreamApi=0 UseTXASRApi=1 UseXunFeiWebApi=0"));
        for (const mevo::EngineChange &change : {toXunFei, toTencent}) {
            QVERIFY(change.rebuild && change.persistEngine && change.setupInputMethod);
        }
    }

    void whatTheRecordIsTold_data()
    {
        QTest::addColumn<bool>("baidu");
        QTest::addColumn<bool>("tencent");
        QTest::addColumn<bool>("xunFei");
        QTest::addColumn<QString>(
            "columns"); // UseTXAPIPara, UseBDAPIPara, UseXFSDKPara; empty for no statement
        QTest::newRow("none") << false << false << false << "";
        QTest::newRow("Baidu") << true << false << false << "0 1 0";
        QTest::newRow("Tencent") << false << true << false << "1 0 0";
        QTest::newRow("XunFei") << false << false << true << "0 0 1";
        QTest::newRow("Baidu and Tencent") << true << true << false << "1 0 0";
        QTest::newRow("all") << true << true << true << "0 0 1";
    }

    void whatTheRecordIsTold()
    {
        QFETCH(QString, columns);
        RecorderState recorder;
        QFETCH(bool, baidu);
        QFETCH(bool, tencent);
        QFETCH(bool, xunFei);
        recorder.BaiDuNoStreamApi = baidu;
        recorder.UseTXASRApi = tencent;
        recorder.UseXunFeiWebApi = xunFei;
        const QStringList on = columns.split(u' ');
        QCOMPARE(
            mevo::engineStatement(recorder, QStringLiteral("db"), QStringLiteral("02-01-7")),
            columns.isEmpty()
                ? QString()
                : QStringLiteral("update db.device_serialid set DefaultRecEngine=10, UseTXAPIPara= '%1', "
                                 "UseBDAPIPara ='%2', UseXFSDKPara = '%3', UseXFWAPIPara='0'  where "
                                 "DongleID='02-01-7'")
                      .arg(on[0], on[1], on[2]));
    }

    void firstArrival()
    {
        Desk desk;
        desk.state.EnableASR3 = desk.state.LocalEnableASR3 = true;
        desk.state.LocalUseASR3Index = desk.state.UseASR3Index = 2;
        desk.state.BaiDuCurrentVoiceType = QStringLiteral("1637");
        const mevo::EngineChange change = mevo::chooseAtFirstArrival(desk.state, desk.recorder);
        QCOMPARE(flags(desk.recorder), QStringLiteral("B"));
        QVERIFY(!desk.state.EnableASR3 && !desk.state.LocalEnableASR3);
        QCOMPARE(desk.state.UseASR3Index + desk.state.LocalUseASR3Index, -2);
        QCOMPARE(
            written(change.writes),
            QStringLiteral("BaiDuCurrentVoiceType=1537 BaiDuNoStreamApi=1 BaiDuNoStreamApi_FastVersion=0 "
                           "FirstRunApp=0 LocalEnableASR3=0 LocalUseASR3Index=-1 UseTXASRApi=0 "
                           "UseXunFeiWebApi=0"));
        QVERIFY(change.rebuild && !change.persistEngine);
    }

    void refusedLanguage()
    {
        for (const char *code : {"ja_jp", "ko_kr", "ru-ru", "fr_fr", "es_es"}) {
            QCOMPARE(mevo::languageAfterXunFeiRefusal(QLatin1String(code)), QStringLiteral("en_us"));
        }
        for (const char *code : {"en_us", "mandarin", "lmz", "ru_ru", ""}) {
            QCOMPARE(mevo::languageAfterXunFeiRefusal(QLatin1String(code)), QStringLiteral("mandarin"));
        }
    }
};

QTEST_GUILESS_MAIN(TestCatalogue)
#include "tst_catalogue.moc"
