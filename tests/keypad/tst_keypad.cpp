#include "SlowWindows.h"
#include "keypad/KeyLayout.h"
#include "keypad/KeyTyper.h"
#include "keypad/KeyWords.h"
#include "keypad/KeypadCommand.h"
#include "keypad/KeypadExit.h"
#include "keypad/KeypadPlace.h"
#include "keypad/KeypadState.h"
#include "keypad/PinyinInput.h"
#include "keypad/PinyinList.h"
#include "support/Rows.h"

#include <QtTest>

using namespace mevo::keypad;
using mevo::CommandRow;
using mevo::CommandRows;

namespace {

CommandRow row(const QString &content, const QString &words, const QString &type = "1"_s)
{
    CommandRow made;
    made.CmdWordContents = content;
    made.CommandWords = words;
    made.CmdWordTypeIndex = type;
    return made;
}

PinyinTable table()
{
    return PinyinTable({row("ni", "你;泥"), row("hao", "好;号"), row("a", "啊;阿"), row("ai", "爱;哀"),
                        row("an", "安"), row("nin", "您")});
}

PinyinList shipped()
{
    static const PinyinList list = PinyinList::shipped();
    return list;
}

QStringList texts(const std::vector<Candidate> &candidates)
{
    QStringList list;
    for (const Candidate &candidate : candidates) {
        list.append(candidate.text + QString::number(candidate.letters));
    }
    return list;
}

/// The key of that name: its plain character, or one of the words below.
const Key &key(const QString &name)
{
    static const QHash<QString, KeyKind> kinds{{"Backspace", KeyKind::Backspace},
                                               {"Delete", KeyKind::Delete},
                                               {"Tab", KeyKind::Tab},
                                               {"Enter", KeyKind::Enter},
                                               {"Left", KeyKind::Left},
                                               {"Right", KeyKind::Right},
                                               {"Up", KeyKind::Up},
                                               {"Down", KeyKind::Down},
                                               {"Shift", KeyKind::Shift},
                                               {"Caps", KeyKind::CapsLock},
                                               {"Pinyin", KeyKind::Pinyin}};
    for (const Key &one : keyLayout()) {
        const bool wanted = kinds.contains(name) ? one.kind == kinds.value(name)
                                                 : one.kind == KeyKind::Character &&
                                                       one.plain == (name == "Space" ? " " : name)[0];
        if (wanted) {
            return one;
        }
    }
    qFatal("no key %s", qPrintable(name));
}

/// What pressing these keys, parted by blanks, types: texts as they are, keys as "<08>", with "S" for Shift;
/// "#2" takes the second text of the page.
QString typedBy(KeypadState &state, const QString &keys)
{
    QString typed;
    for (const QString &name : keys.split(' ', Qt::SkipEmptyParts)) {
        const bool chooses = name.size() == 2 && name[0] == '#';
        for (const Stroke &stroke :
             chooses ? state.choose(name[1].digitValue() - 1) : state.press(key(name))) {
            typed +=
                stroke.text.isEmpty()
                    ? "<%1%2>"_s.arg(stroke.shift ? "S" : "").arg(stroke.virtualKey, 2, 16, QLatin1Char('0'))
                    : stroke.text;
        }
    }
    return typed;
}

} // namespace

class TestKeypad : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keysTypeWhatStandsOnThem()
    {
        QString plain, shifted;
        for (const Key &one : keyLayout()) {
            if (one.kind == KeyKind::Character) {
                plain += one.plain;
                shifted += one.shifted;
            }
        }
        QCOMPARE(plain, QString("`1234567890-=qwertyuiop[]\\asdfghjkl;'zxcvbnm,./ "));
        QCOMPARE(shifted, QString("~!@#$%^&*()_+QWERTYUIOP{}|ASDFGHJKL:\"ZXCVBNM<>? "));
    }

    void keysStandBesideEachOther_data()
    {
        QTest::addColumn<QSize>("screen");
        QTest::newRow("full HD") << QSize(1920, 1050);
        QTest::newRow("1280 x 720") << QSize(1280, 700);
        QTest::newRow("1280 x 720 at one and a half") << QSize(853, 460);
        QTest::newRow("1280 x 720 at two") << QSize(640, 340);
        QTest::newRow("tiny") << QSize(320, 200);
        QTest::newRow("upright") << QSize(600, 1900);
    }
    void keysStandBesideEachOther()
    {
        QFETCH(QSize, screen);
        const QSize size = keypadSize(screen);
        QVERIFY(size.width() <= screen.width() && size.height() < screen.height());
        const KeypadGeometry geometry = keypadGeometry(size);
        std::vector<QRect> all = keyRects(geometry.keys);
        QCOMPARE(all.size(), keyLayout().size());
        all.push_back(geometry.strip);
        all.push_back(geometry.candidates);
        for (std::size_t i = 0; i < all.size(); ++i) {
            QVERIFY(QRect(QPoint(), size).contains(all[i]));
            QVERIFY(all[i].width() >= 12 && all[i].height() >= 10);
            for (std::size_t j = 0; j < i; ++j) {
                QVERIFY(!all[i].intersects(all[j]));
            }
        }
        QVERIFY(geometry.strip.contains(geometry.close));
        // Every row fills the width, as keys of a row that was counted wrong would not.
        for (int line = 0; line < 5; ++line) {
            int left = size.width(), right = 0;
            for (std::size_t i = 0; i < keyLayout().size(); ++i) {
                if (keyLayout()[i].row == line) {
                    left = qMin(left, all[i].left());
                    right = qMax(right, all[i].right());
                }
            }
            QCOMPARE(left, geometry.keys.left());
            QCOMPARE(right, geometry.keys.right());
        }
    }
    void aLargeScreenKeepsTheUsualSize()
    {
        QCOMPARE(keypadSize({3840, 2100}), keypadSize({1280, 700}));
        QVERIFY(keypadSize({640, 340}).height() < keypadSize({1280, 700}).height());
    }

    void syllables_data()
    {
        const Rows<QString, QString> row; // letters, found
        row("nothing", "", "");
        row("exact, then longer ones", "a", "啊1 阿1 爱1 哀1 安1");
        row("exact, then its beginning", "ai", "爱2 哀2 啊1 阿1");
        row("begun", "h", "好1 号1");
        row("two syllables", "nihao", "你2 泥2");
        row("longest beginning first", "nina", "您3 你2 泥2");
        row("unknown", "xyz", "");
        row("no letters", "你", "");
    }
    void syllables()
    {
        const auto [letters, found] = rowOf<QString, QString>();
        QCOMPARE(texts(table().candidates(letters)).join(' '), found);
    }

    void oddRows()
    {
        const PinyinTable odd({row("ma", "妈;;吗 ;妈;"), row("ma", "马"), row("MA", "大"), row("m1", "数"),
                               row("", "空"), row("ma", "网", "2"), row("ma", "无", ""), row("me", "")});
        QCOMPARE(texts(odd.candidates("m")).join(' '), QString("妈1 吗1 马1"));
        QVERIFY(PinyinTable({row("a", "啊", "0")}).isEmpty());
    }

    void lists_data()
    {
        const Rows<QString, QString, QString> row; // letters, exactly, beginning (of two texts at most)
        row("in their order", "ni", "你泥", "您年");
        row("at the end", "nin", "您", "");
        row("begun", "n", "", "你您");
        row("before all", "a", "", "");
        row("behind all", "z", "", "");
        row("not typed", "你", "", "");
        row("odd", "o", "", "好");
    }
    void lists()
    {
        const auto [letters, exactly, beginning] = rowOf<QString, QString, QString>();
        const PinyinList list("# ni no\n你 ni\n您 nin\n\n年 nian\n泥 ni\n o\n#o o\no\nO O\n口 o \n口  o\n"
                              "口 o\r\n好 ok\n口 o" +
                              QByteArray(70000, 'o') + "\n里 l");
        QCOMPARE(list.exactly(letters, 9).join(QString()), exactly);
        QCOMPARE(list.beginning(letters, 2).join(QString()), beginning);
        QCOMPARE(list.exactly("l", 9), QStringList{"里"}); // the last line needs no end
        QVERIFY(PinyinList().isEmpty() && PinyinList("你ni\n").isEmpty() && !list.isEmpty());
    }

    void shippedList_data()
    {
        const Rows<QString, QString, QStringList> add; // letters, first, others (somewhere behind it)
        const auto row = [&](const char *letters, const char *first, const QStringList &others) {
            add(letters, letters, first, others);
        };
        row("a", "啊", {"阿", "爱", "安"});
        row("ni", "你", {"泥", "呢", "妮", "擬", "年"});
        row("shi", "是", {"时", "十", "事", "世", "市", "石", "師"});
        row("zhong", "中", {"种", "重", "众", "钟", "终", "种类"});
        row("de", "的", {"得", "地", "德"});
        row("lv", "律", {"绿", "旅", "吕", "铝", "驴", "綠"});
        row("nv", "女", {"女人", "钕"});
        row("lue", "略", {"掠"});
        row("lve", "略", {"掠"});
        row("nue", "疟", {"虐"});
        row("nve", "疟", {"虐"});
        row("xing", "行", {"性", "姓", "星", "兴"});
        row("hang", "行", {"航", "杭"});
        row("chang", "常", {"长", "场", "長"});
        row("zhang", "长", {"张", "章", "張"});
        row("xian", "现", {"先", "西安", "县"});
        row("guo", "国", {"过", "果", "國", "過"});
        row("nihao", "你好", {"你", "泥"});
        row("women", "我们", {"我"});
        row("zhongguo", "中国", {"中"});
        row("zhongg", "中国", {"中"});
        row("yinhang", "银行", {"银"});
        row("shoudu", "首都", {"手"});
        row("chongqing", "重庆", {"冲"});
        row("zh", "这", {"中", "着", "只", "中国"});
        row("nikan", "你", {"泥"});
    }
    void shippedList()
    {
        const auto [letters, first, others] = rowOf<QString, QString, QStringList>();
        const PinyinTable full({}, shipped());
        const auto found = full.candidates(letters);
        QVERIFY(!found.empty());
        QCOMPARE(found.front().text, first);
        QStringList all;
        for (const Candidate &one : found) {
            QVERIFY2(!all.contains(one.text), qPrintable(one.text));
            all.append(one.text);
        }
        for (const QString &other : others) {
            QVERIFY2(all.indexOf(other) > 0, qPrintable(other));
        }
    }

    void everySyllableIsThere()
    {
        const QString syllables = "a ai an ang ao ba bai ban bang bao bei ben beng bi bian biao bie bin bing "
                                  "bo bu ca cai can cang cao "
                                  "ce cen ceng cha chai chan chang chao che chen cheng chi chong chou chu "
                                  "chuai chuan chuang chui chun "
                                  "chuo ci cong cou cu cuan cui cun cuo da dai dan dang dao de dei deng di "
                                  "dian diao die ding diu dong "
                                  "dou du duan dui dun duo e ei en eng er fa fan fang fei fen feng fo fou fu "
                                  "ga gai gan gang gao ge gei "
                                  "gen geng gong gou gu gua guai guan guang gui gun guo ha hai han hang hao "
                                  "he hei hen heng hong hou hu "
                                  "hua huai huan huang hui hun huo ji jia jian jiang jiao jie jin jing jiong "
                                  "jiu ju juan jue jun ka kai "
                                  "kan kang kao ke ken keng kong kou ku kua kuai kuan kuang kui kun kuo la "
                                  "lai lan lang lao le lei leng "
                                  "li lia lian liang liao lie lin ling liu long lou lu luan lue lun luo lv "
                                  "ma mai man mang mao me mei "
                                  "men meng mi mian miao mie min ming miu mo mou mu na nai nan nang nao ne "
                                  "nei nen neng ni nian niang "
                                  "niao nie nin ning niu nong nu nuan nue nuo nv o ou pa pai pan pang pao "
                                  "pei pen peng pi pian piao pie "
                                  "pin ping po pou pu qi qia qian qiang qiao qie qin qing qiong qiu qu quan "
                                  "que qun ran rang rao re ren "
                                  "reng ri rong rou ru ruan rui run ruo sa sai san sang sao se sen seng sha "
                                  "shai shan shang shao she "
                                  "shei shen sheng shi shou shu shua shuai shuan shuang shui shun shuo si "
                                  "song sou su suan sui sun suo "
                                  "ta tai tan tang tao te teng ti tian tiao tie ting tong tou tu tuan tui "
                                  "tun tuo wa wai wan wang wei "
                                  "wen weng wo wu xi xia xian xiang xiao xie xin xing xiong xiu xu xuan xue "
                                  "xun ya yan yang yao ye yi "
                                  "yin ying yo yong you yu yuan yue yun za zai zan zang zao ze zei zen zeng "
                                  "zha zhai zhan zhang zhao "
                                  "zhe zhen zheng zhi zhong zhou zhu zhua zhuai zhuan zhuang zhui zhun zhuo "
                                  "zi zong zou zu zuan zui zun "
                                  "zuo";
        for (const QString &syllable : syllables.split(' ')) {
            const QStringList texts = shipped().exactly(syllable, 1000);
            QVERIFY2(!texts.isEmpty() && texts.first().size() == 1, qPrintable(syllable));
        }
        QVERIFY(shipped().exactly("yi", 1000).size() > 200);
    }

    void theUsersTableGoesFirst()
    {
        const PinyinTable both({row("ni", "泥;我自己;倪"), row("nim", "宁")}, shipped());
        const QStringList found = texts(both.candidates("ni"));
        QCOMPARE(found.mid(0, 4), QStringList({"泥2", "我自己2", "倪2", "你2"}));
        QCOMPARE(found.count("泥2"), 1);
        QVERIFY(found.indexOf("宁2") > found.indexOf("拟2")); // which only begins so
        QVERIFY(!both.isEmpty() && !PinyinTable({}, shipped()).isEmpty());
    }

    void allPagesOfManyCharacters()
    {
        PinyinInput input;
        input.setTable(PinyinTable({}, shipped()));
        input.addLetter('y');
        input.addLetter('i');
        QStringList all = input.page();
        while (input.hasPageAfter()) {
            input.turnPage(1);
            QVERIFY(!input.page().isEmpty() && input.page().size() <= 9);
            all += input.page();
        }
        QCOMPARE(all.size(), 500);
        QCOMPARE(all.removeDuplicates(), 0);
        QVERIFY(all.contains("翼") && all.contains("義") && all.contains("一样"));
        const QString last = input.page().first();
        QCOMPARE(input.choose(0), last);
    }

    void theShippedListIsReadQuickly()
    {
        PinyinList list;
        QBENCHMARK
        {
            list = PinyinList::shipped();
        }
        QVERIFY(!list.isEmpty());
    }

    void aHugeTable()
    {
        CommandRows rows;
        for (int i = 0; i < 200000; ++i) {
            QString syllable;
            for (const int letter : {i % 26, i / 26 % 26, i / 676 % 26}) {
                syllable += QChar('a' + letter);
            }
            rows.push_back(row(syllable, "字%1"_s.arg(i)));
        }
        const PinyinTable huge(rows);
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(int(huge.candidates("a").size()), 500);
        QCOMPARE(int(huge.candidates(QString(100000, 'a')).size()), 12);
        QVERIFY(timer.elapsed() < 1000);
    }

    void pages()
    {
        const QStringList words =
            QString("一丁七万丈三上下不与丐丑专且世丘丙业丛东").split("", Qt::SkipEmptyParts);
        PinyinInput input;
        input.setTable(PinyinTable({row("zi", words.join(';')), row("z", "在")}));
        input.addLetter('z');
        input.addLetter('i');
        QCOMPARE(input.page().first(), QString("一"));
        QCOMPARE(input.page().size(), 9);
        QVERIFY(!input.hasPageBefore() && input.hasPageAfter());
        input.turnPage(-1);
        QCOMPARE(input.page().first(), QString("一"));
        input.turnPage(1);
        input.turnPage(1);
        input.turnPage(1);
        QCOMPARE(input.page(), QStringList({"丛", "东", "在"}));
        QVERIFY(input.hasPageBefore() && !input.hasPageAfter());
        // The file is saved while the user chooses, once with the same and once with fewer characters.
        input.setTable(PinyinTable({row("zi", words.join(';'))}));
        QCOMPARE(input.page(), QStringList({"丛", "东"}));
        input.setTable(PinyinTable({row("zi", "字;子")}));
        QCOMPARE(input.page(), QStringList({"字", "子"}));
        QCOMPARE(input.choose(2), QString());
        QCOMPARE(input.choose(-1), QString());
        QCOMPARE(input.letters(), QString("zi"));
        QCOMPARE(input.choose(1), QString("子"));
        QVERIFY(!input.isActive() && input.page().isEmpty());
    }

    void pagesOfLongTexts_data()
    {
        const Rows<QString, QString> row; // texts, pages
        const QString endless(100, QChar(u'长'));
        row("as many as there is room for", "一二;三四;五六;七八;九十;百千;万亿;兆",
            "一二 三四 五六 七八 九十 百千|万亿 兆");
        row("long ones", "社会主义;马马虎虎;乱七八糟;不三不四;好", "社会主义 马马虎虎 乱七八糟|不三不四 好");
        row("to the last place", "一;二;三;四;五;六;七;八;九", "一 二 三 四 五 六 七 八 九");
        row("one more", "一;二;三;四;五;六;七;八;九;十", "一 二 三 四 五 六 七 八 九|十");
        row("without end", "好;" + endless + ";号", "好|" + endless + "|号");
    }
    void pagesOfLongTexts()
    {
        const auto [texts, pages] = rowOf<QString, QString>();
        PinyinInput input;
        input.setTable(PinyinTable({row("ci", texts)}));
        input.addLetter('c');
        QStringList found{input.page().join(' ')};
        while (input.hasPageAfter()) {
            input.turnPage(1);
            found.append(input.page().join(' '));
        }
        QCOMPARE(found.join('|'), pages);
        QCOMPARE(input.choose(input.page().size()), QString());
        QCOMPARE(input.choose(0), found.last().section(' ', 0, 0));
    }

    void presses_data()
    {
        const Rows<QString, QString, QString> row; // keys, typed, letters (of the syllable that is left)
        row("letters and signs", "h i Space 1 ; ` \\", "hi 1;`\\", "");
        row("Shift is for one key", "Shift h i Shift 1 2 Shift /", "Hi!2?", "");
        row("Shift twice is none", "Shift Shift a", "a", "");
        row("capitals stay", "Caps a b 1 Shift 1 Shift c Caps d", "AB1!cd", "");
        row("keys without characters", "Backspace Delete Tab Enter Left Up Right Down",
            "<08><2e><09><0d><25><26><27><28>", "");
        row("Shift selects", "Shift Left Left Shift Enter", "<S25><25><S0d>", "");
        row("a syllable", "Pinyin n i", "", "ni");
        row("blank takes the first", "Pinyin n i Space", "你", "");
        row("digit takes its own", "Pinyin n i 2", "泥", "");
        row("digit without a character", "Pinyin n i 9", "", "ni");
        row("by the mouse", "Pinyin n i #2 h #1", "泥好", "");
        row("one syllable after the other", "Pinyin n i h a o Space Space", "你好", "");
        row("Enter takes the letters", "Pinyin n i Enter Enter", "ni<0d>", "");
        row("unknown syllable", "Pinyin x y Space", "xy", "");
        row("Backspace", "Pinyin n i Backspace Backspace Backspace", "<08>", "");
        row("Delete", "Pinyin n i Delete Delete", "<2e>", "");
        row("a sign takes the first", "Pinyin n i h a o Space ,", "你好，", "");
        row("letters that nothing stands for", "Pinyin n i x .", "你x。", "");
        row("capital", "Pinyin n i Shift h a", "niH", "a");
        row("switched off", "Pinyin n i Pinyin a", "nia", "");
        row("Chinese signs", "Pinyin , . ; Shift ; Shift / Shift 1 [ ] \\ Shift 9 Shift 0 1 -",
            "，。；：？！【】、（）1-", "");
        row("blank without a syllable", "Pinyin Space a Space", " 啊", "");
    }
    void presses()
    {
        const auto [keys, typed, letters] = rowOf<QString, QString, QString>();
        KeypadState state;
        state.pinyin().setTable(table());
        QCOMPARE(typedBy(state, keys), typed);
        QCOMPARE(state.pinyin().letters(), letters);
    }

    void pagesByKeys()
    {
        KeypadState state;
        state.pinyin().setTable(PinyinTable({row("a", "1;2;3;4;5;6;7;8;9;十;百")}));
        QCOMPARE(typedBy(state, "Pinyin a ="), QString());
        QCOMPARE(state.pinyin().page(), QStringList({"十", "百"}));
        QCOMPARE(typedBy(state, "Left Down Up = 2"), QString("百"));
    }

    void thousandLetters()
    {
        KeypadState state;
        QString keys = "Pinyin";
        for (int i = 0; i < 1000; ++i) {
            keys += " a";
        }
        QCOMPARE(typedBy(state, keys + " Enter"), QString(32, 'a'));
    }

    void labels()
    {
        KeypadState state;
        QCOMPARE(state.textOf(key("a")) + state.textOf(key("1")), QString("a1"));
        typedBy(state, "Caps");
        QCOMPARE(state.textOf(key("a")) + state.textOf(key("1")), QString("A1"));
        typedBy(state, "Shift");
        QCOMPARE(state.textOf(key("a")) + state.textOf(key("1")), QString("a!"));
    }

    void commandLines_data()
    {
        const Rows<QStringList, int, int, QString> row; // arguments, wish (-1 for none), exitCode, text
        const QStringList none;
        row("show or hide", QStringList{"ORVKBAppShowOrHide"}, int(Wish::ShowOrHide), 0, "");
        row("hide", QStringList{"ORVKBAppHide"}, int(Wish::Hide), 0, "");
        row("exit", QStringList{"ORVKBAppExit"}, int(Wish::Exit), 0, "");
        row("by hand", none, int(Wish::ShowOrHide), 0, "");
        row("unknown", QStringList{"ORVKBAppShow"}, -1, 2,
            "KeypadHost: unknown word: ORVKBAppShow (--help lists the words)\n");
        row("other case", QStringList{"orvkbapphide"}, -1, 2,
            "KeypadHost: unknown word: orvkbapphide (--help lists the words)\n");
        row("of two lines", QStringList{"a\nb"}, -1, 2,
            "KeypadHost: unknown word: a\\nb (--help lists the words)\n");
        row("empty", QStringList{""}, -1, 2, "KeypadHost: unknown word:  (--help lists the words)\n");
        row("two", QStringList{"ORVKBAppHide", "ORVKBAppExit"}, -1, 2,
            "KeypadHost: more than one word: ORVKBAppExit (--help lists the words)\n");
        row("version", QStringList{"--version"}, -1, 0, "KeypadHost V1.07\n");
    }
    void commandLines()
    {
        const auto [arguments, wish, exitCode, text] = rowOf<QStringList, int, int, QString>();
        const CommandLine line = readCommandLine(arguments);
        QCOMPARE(line.wish ? int(*line.wish) : -1, wish);
        QCOMPARE(line.exitCode(), exitCode);
        QCOMPARE(line.text, text);
    }

    void wishes()
    {
        QCOMPARE(effectOf(Wish::ShowOrHide, false), Effect::Show);
        QCOMPARE(effectOf(Wish::ShowOrHide, true), Effect::Hide);
        QCOMPARE(effectOf(Wish::Hide, false), Effect::Nothing);
        QCOMPARE(effectOf(Wish::Hide, true), Effect::Hide);
        QCOMPARE(effectOf(Wish::Exit, true), Effect::End);
        QCOMPARE(effectOf(Wish::Exit, false), Effect::End);
    }

    void textsAndKeysKeepTheirOrder()
    {
        CallLog log;
        SlowWindows windows(log);
        FakeKeyboard keyboard(log);
        QList<bool> told;
        KeyTyper typer(windows, keyboard, [&told](bool gone) { told.append(gone); });
        QVERIFY(typer.type({{"a", 0, false}}));
        QVERIFY(typer.type({{"b", 0, false}}));
        QVERIFY(typer.type({{"c", 0, false}, {{}, 0x08, false}}));
        QVERIFY(typer.type({{{}, 0x25, true}, {"d", 0, false}}));
        QCOMPARE(log.calls(), QStringList{"post 11 a"}); // nothing overtakes it
        QVERIFY(!typer.isIdle());
        windows.takeAll();
        QCOMPARE(log.calls(), QStringList({"post 11 a", "post 11 bc", "key down 8", "key up 8", "key down 10",
                                           "key down 25", "key up 25", "key up 10", "post 11 d"}));
        QCOMPARE(told, QList<bool>({true, true, true, true, true}));
        QVERIFY(typer.isIdle());
    }

    void theFocusMovesMeanwhile()
    {
        CallLog log;
        SlowWindows windows(log);
        FakeKeyboard keyboard(log);
        QList<bool> told;
        KeyTyper typer(windows, keyboard, [&told](bool gone) { told.append(gone); });
        typer.type({{"a", 0, false}, {{}, 0x08, false}, {"b", 0, false}});
        windows.focused = 0x22;
        typer.type({{{}, 0x0D, false}, {"c", 0, false}});
        typer.type({{"d", 0, false}});
        // What was to stand behind the key would be a text with a hole in it.
        QTest::ignoreMessage(QtWarningMsg, "Keypad: the focus has gone to another window, a key is dropped");
        QTest::ignoreMessage(QtWarningMsg, "Keypad: something did not go; dropped behind it: 1");
        windows.takeAll();
        QCOMPARE(log.calls(), QStringList({"post 11 a", "key down d", "key up d", "post 22 cd"}));
        QCOMPARE(told, QList<bool>({true, false, true, true}));
        windows.focused = 0x11;
        typer.type({{"e", 0, false}}); // and it goes on
        windows.takeAll();
        QCOMPARE(log.calls().last(), QString("post 11 e"));
    }

    void aTextThatDoesNotGoWhole()
    {
        CallLog log;
        SlowWindows windows(log);
        FakeKeyboard keyboard(log);
        QList<bool> told;
        KeyTyper typer(windows, keyboard, [&told](bool gone) { told.append(gone); });
        windows.postLimit = 1;
        typer.type({{"ab", 0, false}, {{}, 0x08, false}});
        windows.focused = 0x22;
        typer.type({{"d", 0, false}});
        windows.focused = 0x11;
        typer.type({{"c", 0, false}, {{}, 0x0D, false}});
        // What was to follow it does not; the other window has its own.
        QTest::ignoreMessage(QtWarningMsg, "Keypad: something did not go; dropped behind it: 3");
        windows.takeAll();
        QCOMPARE(log.calls(), QStringList({"post 11 a", "post 22 d"}));
        QCOMPARE(told, QList<bool>({false, true}));
        typer.type({{{}, 0x08, false}}); // and it goes on
        QCOMPARE(log.calls().last(), QString("key up 8"));
    }

    void whatCannotBeTyped()
    {
        CallLog log;
        SlowWindows windows(log);
        FakeKeyboard keyboard(log);
        QList<bool> told;
        KeyTyper typer(windows, keyboard, [&told](bool gone) { told.append(gone); });
        windows.focused = 0;
        QTest::ignoreMessage(QtWarningMsg, "Keypad: no window has the focus, nothing is typed");
        QVERIFY(!typer.type({{"a", 0, false}, {{}, 0x08, false}}));
        QVERIFY(log.calls().isEmpty() && typer.isIdle());
        // A program that hangs while a key is held down.
        windows.focused = 0x11;
        for (int i = 0; i < 201; ++i) {
            QVERIFY(typer.type({{i % 2 == 0 ? "x" : "", i % 2 == 0 ? 0 : 0x08, false}}));
        }
        QCOMPARE(typer.waiting(), 200);
        QTest::ignoreMessage(QtWarningMsg, "Keypad: too much waits to be typed, a key is not taken");
        QVERIFY(!typer.type({{{}, 0x08, false}}));
        windows.takeAll();
        QCOMPARE(log.calls("post 11 x").size(), 101);
        QCOMPARE(log.calls("key down 8").size(), 100);
        QCOMPARE(told.size(), 201);
    }

    void endings_data()
    {
        const Rows<QString, QString> row; // steps (see below), expected
        row("at once", "ask", "close end");
        row("twice", "ask ask look", "close end");
        row("a text is on its way", "typing ask look typed look look", "close end");
        row("it never arrives", "typing ask limit", "close end");
        row("still on its way", "typing ask look ask", "close");
        row("a syllable", "composing ask look composed typing look typed look", "close end");
        row("the user goes on with it", "composing ask look ask look", "");
        row("the user has gone away", "composing ask limit", "compose close end");
        row("no time for it", "composing ask hurry", "close end");
        row("no time at all", "composing hurry hurry ask", "close end");
    }
    void endings()
    {
        const auto [steps, expected] = rowOf<QString, QString>();
        bool composing = false, typing = false;
        QStringList done;
        KeypadExit::Hooks hooks;
        hooks.isComposing = [&] { return composing; };
        hooks.isTyping = [&] { return typing; };
        hooks.endComposition = [&] {
            done.append("compose");
            typing = true;
            composing = false;
        };
        hooks.close = [&] { done.append("close"); };
        hooks.end = [&] { done.append("end"); };
        const bool limited = steps.contains("limit");
        KeypadExit ending(hooks, limited ? KeypadExit::Limits{1, 1} : KeypadExit::Limits{});
        for (const QString &step : steps.split(' ')) {
            if (step == "ask") {
                ending.ask();
            } else if (step == "hurry") {
                ending.hurry();
            } else if (step == "look") {
                ending.look();
            } else if (step == "limit") {
                QTRY_VERIFY_WITH_TIMEOUT(done.contains("end"), 30000);
            } else if (step.startsWith("typ")) {
                typing = step == "typing";
            } else {
                composing = step == "composing";
            }
        }
        QCOMPARE(done.join(' '), expected);
    }

    void places_data()
    {
        const Rows<QVariant, QPoint> row; // kept, place
        row("none kept: bottom of the first", QVariant(), QPoint(350, 684));
        row("as kept", QVariant(QPoint(10, 20)), QPoint(10, 20));
        row("on the other screen", QVariant(QPoint(1700, 300)), QPoint(1700, 300));
        row("over the edge", QVariant(QPoint(-200, 800)), QPoint(0, 700));
        row("between two screens", QVariant(QPoint(1200, 100)), QPoint(1300, 100));
        row("on a screen that is gone", QVariant(QPoint(5000, 5000)), QPoint(350, 684));
        row("a corner is left", QVariant(QPoint(-600, -250)), QPoint(350, 684));
    }
    void places()
    {
        const auto [kept, place] = rowOf<QVariant, QPoint>();
        const std::vector<QRect> screens{QRect(0, 0, 1400, 1000), QRect(1300, 0, 1920, 1080)};
        const auto at = kept.isNull() ? std::nullopt : std::optional<QPoint>(kept.toPoint());
        QCOMPARE(keypadPlace(at, QSize(700, 300), screens), place);
    }
    void placesWithoutRoom()
    {
        QCOMPARE(keypadPlace(QPoint(50, 60), {700, 300}, {}), QPoint(50, 60));
        QCOMPARE(keypadPlace({}, {700, 300}, {}), QPoint());
        QCOMPARE(keypadPlace({}, {700, 300}, {QRect(100, 100, 400, 200)}), QPoint(100, 100));
    }

    void keptPlaces_data()
    {
        const Rows<QByteArray, QVariant> row; // text, place
        row("none", QByteArray(), QVariant());
        row("whole", QByteArray("[Keypad]\nLeft=-5\nTop=70\n"), QVariant(QPoint(-5, 70)));
        row("half", QByteArray("[Keypad]\nLeft=5\n"), QVariant());
        row("no number", QByteArray("[Keypad]\nLeft=5px\nTop=7\n"), QVariant());
        row("beyond every screen", QByteArray("[Keypad]\nLeft=2000000000\nTop=7\n"), QVariant());
        row("nonsense", QByteArray("\0\xff[[Keypad", 11), QVariant());
    }
    void keptPlaces()
    {
        const auto [text, place] = rowOf<QByteArray, QVariant>();
        QTemporaryDir folder;
        const QString path = folder.filePath("MEVKeypad.ini");
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        const auto loaded = PlaceMemory(path).load();
        QCOMPARE(loaded ? QVariant(*loaded) : QVariant(), place);
        PlaceMemory(path).save({-40, 123});
        QCOMPARE(PlaceMemory(path).load(), std::optional<QPoint>(QPoint(-40, 123)));
    }

    void spokenWords()
    {
        const KeyWords words({row("a", "a;A;唉;诶", "0"), row("A", "大", "0"), row("5", "五;伍;五", "0"),
                              row("ab", "二", "0"), row(";", "分号", "0"), row("b", "拼", "1"),
                              row("c", "一;二;三;四;五;六;七;八;九;十", "0")});
        QCOMPARE(words.of('a'), QStringList({"唉", "诶", "大"}));
        QCOMPARE(words.of('5'), QStringList({"五", "伍"}));
        QVERIFY(words.of('b').isEmpty() && words.of(';').isEmpty());
        QCOMPARE(words.of('c').size(), 8);
    }
};

QTEST_GUILESS_MAIN(TestKeypad)
#include "tst_keypad.moc"
