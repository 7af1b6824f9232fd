#include "engines/AsrLanMenu.h"
#include "engines/EngineSelection.h"
#include "engines/LanguageImages.h"

#include <QSet>
#include <QtTest>

using mevo::Engine;

namespace {

struct Desk
{
    EngineState state;
    RecorderState recorder;
    mevo::MenuFacts facts;

    Desk()
    {
        state.LocalUseASR3Index = -1;
        state.TXCurrentVoiceType = QStringLiteral("16k_zh");
        state.BaiDuCurrentVoiceType = QStringLiteral("1537");
        state.XunFeiWebApiCurrentVoiceType = QStringLiteral("mandarin");
        mevo::setEngineFlags(recorder, Engine::Baidu);
    }
    /// The codes of the rows, a checked one in brackets, "|" for a separator.
    QString menu() const
    {
        QStringList rows;
        for (const mevo::MenuEntry &entry : mevo::buildAsrMenu(state, recorder, facts).entries) {
            const QString code =
                entry.language == nullptr ? QStringLiteral("|") : QString::fromLatin1(entry.language->code);
            rows.append(entry.checked ? QLatin1Char('[') + code + QLatin1Char(']') : code);
        }
        return rows.join(QLatin1Char(' '));
    }
    QString engine() const
    {
        return QStringLiteral("%1%2%3")
            .arg(int(recorder.BaiDuNoStreamApi))
            .arg(int(recorder.UseTXASRApi))
            .arg(int(recorder.UseXunFeiWebApi));
    }
};

const mevo::LanguageRow &row(Engine engine, const char *code)
{
    for (const mevo::LanguageRow &language : mevo::menuLanguages()) {
        if (language.engine == engine && qstrcmp(language.code, code) == 0) {
            return language;
        }
    }
    qFatal("no such row");
}

} // namespace

using Set = std::function<void(Desk &)>;
Q_DECLARE_METATYPE(Set)

class TestMenu : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void catalogue()
    {
        QCOMPARE(mevo::xunFeiLanguages().size(), std::size_t(31));
        QSet<QString> codes;
        for (const mevo::XunFeiLanguage &language : mevo::xunFeiLanguages()) {
            codes.insert(QLatin1String(language.code));
        }
        QCOMPARE(codes.size(), 31);
        QVERIFY(codes.contains(QStringLiteral("lmz")) && codes.contains(QStringLiteral("ru-ru")));
        QCOMPARE(mevo::catalogueCodes(Engine::Baidu).last(), QStringLiteral("1936"));
        QCOMPARE(mevo::catalogueCodes(Engine::Tencent).size(), 6);
    }

    void menus_data()
    {
        QTest::addColumn<Set>("set");
        QTest::addColumn<QString>("menu");
        const QString tencent = QStringLiteral("16k_zh 16k_ca 16k_zh_medical 16k_en 16k_ja |");
        const QString tail = QStringLiteral(" 1637 1837 1737 | mandarin en_us | 1 2");
        QTest::newRow("Baidu in force") << Set([](Desk &) {}) << tencent + QLatin1String(" [1537]") + tail;
        QTest::newRow("Tencent in force")
            << Set([](Desk &d) { mevo::setEngineFlags(d.recorder, Engine::Tencent); })
            << QLatin1String("[16k_zh] 16k_ca 16k_zh_medical 16k_en 16k_ja | 1537") + tail;
        QTest::newRow("Tencent hidden")
            << Set([](Desk &d) { d.state.ShowTXI = false; }) << QLatin1String("[1537]") + tail;
        QTest::newRow("Baidu hidden: nothing below")
            << Set([](Desk &d) { d.state.ShowBaiduI = false; }) << tencent;
        QTest::newRow("XP class: no streaming") << Set([](Desk &d) { d.facts.xpClass = true; })
                                                << tencent + QLatin1String(" [1537] 1637 1837 1737 | 1 2");
        QTest::newRow("single Baidu rows hidden") << Set([](Desk &d) {
            d.state.ShowBdYYI = d.state.ShowBdSCHI = d.state.ShowBdEnI = false;
            d.state.ShowASR3UI = false;
        }) << tencent + QLatin1String(" [1537] | mandarin en_us |");
        QTest::newRow("an input method in force checks no cloud row") << Set([](Desk &d) {
            mevo::setEngineFlags(d.recorder, Engine::ThirdParty);
            d.state.LocalEnableASR3 = true;
            d.state.LocalUseASR3Index = 2;
        }) << tencent + QLatin1String(" 1537 1637 1837 1737 | mandarin en_us | 1 [2]");
        QTest::newRow("custom method with a known program")
            << Set([](Desk &d) { d.facts.customMethodKnown = true; })
            << tencent + QLatin1String(" [1537]") + tail + QLatin1String(" 3");
        QTest::newRow("dialect in force") << Set([](Desk &d) {
            mevo::setEngineFlags(d.recorder, Engine::Tencent);
            d.state.TXCurrentVoiceType = QStringLiteral("16k_zh_dialect");
            d.state.UseTecentZhDialect = true;
        }) << QLatin1String("16k_zh 16k_ca 16k_zh_medical [16k_zh_dialect] 16k_en 16k_ja | 1537") + tail;
        QTest::newRow("dialect without its flag: no row checked") << Set([](Desk &d) {
            mevo::setEngineFlags(d.recorder, Engine::Tencent);
            d.state.TXCurrentVoiceType = QStringLiteral("16k_zh_dialect");
        }) << tencent + QLatin1String(" 1537") + tail;
    }

    void menus()
    {
        QFETCH(Set, set);
        Desk desk;
        set(desk);
        QTEST(desk.menu(), "menu");
        const auto built = mevo::buildAsrMenu(desk.state, desk.recorder, desk.facts);
        QCOMPARE(built.forceTencent, !desk.state.ShowBaiduI);
    }

    void choosing_data()
    {
        QTest::addColumn<int>("engine");
        QTest::addColumn<QByteArray>("code");
        QTest::addColumn<QString>("flags"); // Baidu, Tencent, XunFei
        QTest::addColumn<int>("method");
        QTest::addColumn<bool>("reload");
        QTest::newRow("Tencent") << int(Engine::Tencent) << QByteArray("16k_en") << "010" << -1 << false;
        QTest::newRow("the same Baidu language")
            << int(Engine::Baidu) << QByteArray("1537") << "100" << -1 << false;
        QTest::newRow("another Baidu language")
            << int(Engine::Baidu) << QByteArray("1737") << "100" << -1 << true;
        QTest::newRow("XunFei") << int(Engine::XunFei) << QByteArray("en_us") << "001" << -1 << false;
        QTest::newRow("Sogou, Tencent idles")
            << int(Engine::ThirdParty) << QByteArray("2") << "010" << 2 << false;
    }

    void choosing()
    {
        QFETCH(int, engine);
        QFETCH(QByteArray, code);
        QFETCH(int, method);
        Desk desk;
        desk.state.BaiDuNoStreamApi_FastVersion = true;
        const auto change =
            mevo::chooseLanguage(row(Engine(engine), code.constData()), desk.state, desk.recorder);
        QTEST(desk.engine(), "flags");
        QTEST(change.reloadBaiduAccount, "reload");
        QCOMPARE(desk.state.LocalUseASR3Index, method);
        QCOMPARE(desk.state.LocalEnableASR3, method > 0);
        QVERIFY(!desk.state.BaiDuNoStreamApi_FastVersion && change.rebuild && change.persistEngine);
        QSet<QByteArray> keys;
        for (const mevo::SettingWrite &write : change.writes) {
            keys.insert(write.key);
        }
        for (const char *key : {"BaiDuCurrentVoiceType", "BaiDuNoStreamApi_FastVersion", "UseBaiDuiAI",
                                "XunFeiWebApiCurrentVoiceType", "TXCurrentVoiceType", "BaiDuNoStreamApi",
                                "UseTXASRApi", "UseXunFeiWebApi"}) {
            QVERIFY2(keys.contains(key), key);
        }
    }

    void theRecordSelects_data()
    {
        QTest::addColumn<Set>("set");
        QTest::addColumn<bool>("xpClass");
        QTest::addColumn<QString>("outcome"); // flags and Baidu type
        QTest::newRow("nothing read") << Set([](Desk &) {}) << false << "100 1537";
        QTest::newRow("Tencent") << Set([](Desk &d) { d.state.UseTXAPIPara = 1; }) << false << "010 1537";
        QTest::newRow("XunFei") << Set([](Desk &d) { d.state.UseXFWAPIPara = 1; }) << false << "001 1537";
        QTest::newRow("XunFei's other column selects nothing")
            << Set([](Desk &d) { d.state.UseXFSDKPara = 1; }) << false << "100 1537";
        QTest::newRow("two selectors end on the last")
            << Set([](Desk &d) { d.state.UseXFWAPIPara = d.state.UseTXAPIPara = 1; }) << false << "010 1537";
        QTest::newRow("XunFei on XP class is Tencent")
            << Set([](Desk &d) { d.state.UseXFWAPIPara = 1; }) << true << "010 1537";
        QTest::newRow("fast variant")
            << Set([](Desk &d) { d.state.UseBDFstPara = 1; }) << false << "100 80001";
        QTest::newRow("fast variant off") << Set([](Desk &d) {
            d.state.UseBDFstPara = 0;
            d.state.BaiDuNoStreamApi_FastVersion = true;
            d.state.BaiDuCurrentVoiceType = QStringLiteral("80001");
        }) << false << "100 1537";
    }

    void theRecordSelects()
    {
        QFETCH(Set, set);
        QFETCH(bool, xpClass);
        Desk desk;
        set(desk);
        mevo::applyRecordSelectors(desk.state, desk.recorder, xpClass, 0, 0);
        QTEST(desk.engine() + QLatin1Char(' ') + desk.state.BaiDuCurrentVoiceType, "outcome");
    }

    void falls()
    {
        Desk desk;
        QVERIFY(mevo::fallToXunFei(desk.recorder).persistEngine);
        QCOMPARE(desk.engine(), QStringLiteral("001"));
        mevo::fallToTencent(desk.recorder);
        QCOMPARE(desk.engine(), QStringLiteral("010"));
        QCOMPARE(mevo::languageAfterXunFeiRefusal(QStringLiteral("ru-ru")), QStringLiteral("en_us"));
        QCOMPARE(mevo::languageAfterXunFeiRefusal(QStringLiteral("lmz")), QStringLiteral("mandarin"));
    }

    void images()
    {
        QCOMPARE(mevo::languageButtonStyle(QStringLiteral("PuTongHua"), false),
                 QStringLiteral("QPushButton::menu-indicator{image:none;}"
                                "QPushButton{border-image: url(:/rec/ChineseLan/PuTongHua.png);}"));
        QVERIFY(mevo::baiduLanguageStyle(QStringLiteral("80001"), true)
                    .contains(QLatin1String("PuTongHuaV.png")));
        QVERIFY(mevo::baiduLanguageStyle(QStringLiteral("999"), false).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestMenu)
#include "tst_menu.moc"
