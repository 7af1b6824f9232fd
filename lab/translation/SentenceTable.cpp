#include "translation/SentenceTable.h"

namespace lab {

namespace {

struct Row
{
    const char *zh;
    const char *en;
    const char *jp;
};

constexpr Row rows[] = {
    {"你好。", "Hello.", "こんにちは。"},
    {"早上好。", "Good morning.", "おはようございます。"},
    {"晚上好。", "Good evening.", "こんばんは。"},
    {"晚安。", "Good night.", "おやすみなさい。"},
    {"再见。", "Goodbye.", "さようなら。"},
    {"谢谢。", "Thank you.", "ありがとうございます。"},
    {"不客气。", "You are welcome.", "どういたしまして。"},
    {"对不起。", "I am sorry.", "ごめんなさい。"},
    {"没关系。", "It does not matter.", "だいじょうぶです。"},
    {"请。", "Please.", "どうぞ。"},
    {"是。", "Yes.", "はい。"},
    {"不是。", "No.", "いいえ。"},
    {"你好吗？", "How are you?", "おげんきですか。"},
    {"我很好。", "I am fine.", "げんきです。"},
    {"你叫什么名字？", "What is your name?", "お名前は何ですか。"},
    {"很高兴认识你。", "Nice to meet you.", "はじめまして。"},
    {"今天天气很好。", "The weather is fine today.", "今日はいい天気です。"},
    {"今天天气很好，我们去公园。", "The weather is fine today, let us go to the park.",
     "今日はいい天気ですから、公園に行きましょう。"},
    {"明天会下雨。", "It will rain tomorrow.", "明日は雨が降ります。"},
    {"现在几点？", "What time is it now?", "今何時ですか。"},
    {"会议三点开始。", "The meeting begins at three.", "会議は三時に始まります。"},
    {"我们在这里开会。", "We have our meeting here.", "ここで会議をします。"},
    {"请在中午之前发送报告。", "Please send the report before noon.", "正午までに報告書を送ってください。"},
    {"请打开文件。", "Please open the file.", "ファイルを開いてください。"},
    {"请保存文件。", "Please save the file.", "ファイルを保存してください。"},
    {"我明白了。", "I understand.", "わかりました。"},
    {"我不明白。", "I do not understand.", "わかりません。"},
    {"请再说一遍。", "Please say it again.", "もう一度言ってください。"},
    {"请说慢一点。", "Please speak more slowly.", "もっとゆっくり話してください。"},
    {"你会说英语吗？", "Do you speak English?", "英語を話せますか。"},
    {"我在学习中文。", "I am learning Chinese.", "中国語を勉強しています。"},
    {"洗手间在哪里？", "Where is the bathroom?", "お手洗いはどこですか。"},
    {"车站在哪里？", "Where is the station?", "駅はどこですか。"},
    {"这个多少钱？", "How much is this?", "これはいくらですか。"},
    {"太贵了。", "That is too expensive.", "高すぎます。"},
    {"我要一杯咖啡。", "I would like a cup of coffee.", "コーヒーをください。"},
    {"我饿了。", "I am hungry.", "おなかがすきました。"},
    {"我需要帮助。", "I need help.", "助けが必要です。"},
    {"请给我打电话。", "Please call me.", "電話してください。"},
    {"我爱你。", "I love you.", "愛しています。"},
    {"祝你生日快乐。", "Happy birthday to you.", "お誕生日おめでとうございます。"},
    {"苹果", "apple", "りんご"},
};

QString keyOf(const QString &sentence)
{
    QString key;
    for (const QChar character : sentence.toLower()) {
        if (character.isLetterOrNumber() || character.isSurrogate()) {
            key += character;
        }
    }
    return key;
}

QString cell(const Row &row, const QString &code)
{
    return QString::fromUtf8(code == QLatin1String("zh")   ? row.zh
                             : code == QLatin1String("en") ? row.en
                             : code == QLatin1String("jp") ? row.jp
                                                           : "");
}

} // namespace

QString translateSentence(const QString &sentence, const QString &from, const QString &to)
{
    const QString key = keyOf(sentence);
    for (const Row &row : rows) {
        if (!key.isEmpty() && keyOf(cell(row, from)) == key) {
            return cell(row, to);
        }
    }
    return {};
}

QString guessLanguage(const QString &text)
{
    bool han = false;
    for (const QChar character : text) {
        const QChar::Script script = character.script();
        if (script == QChar::Script_Hiragana || script == QChar::Script_Katakana) {
            return QStringLiteral("jp");
        }
        han = han || script == QChar::Script_Han;
    }
    return han ? QStringLiteral("zh") : QStringLiteral("en");
}

} // namespace lab
