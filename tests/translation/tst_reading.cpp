#include "support/FakePlatform.h"
#include "support/FullDisk.h"
#include "support/Rows.h"
#include "support/ScratchHome.h"
#include "support/ScriptedHttp.h"
#include "translation/OnlineReading.h"

#include <QDir>
#include <QtTest>

#include <memory>

using mevo::OnlineReading;
using mevo::Pane;
using mevo::ReadingVoice;
using mevo::SoundEnd;

namespace {

ScratchHome home;
const QByteArray sound = "ID3 not much of a sound";
const QString failed = "message 在线朗读失败，如网络正常且一直显示此消息，请与销售商联系！ (3000)"_s;

/// A player that a test ends; it logs "play FILE CONTENT" and "silent".
class FakePlayer : public mevo::SoundPlayer
{
public:
    explicit FakePlayer(CallLog &log)
        : m_log(log)
    {
        players.append(this);
    }
    ~FakePlayer() override
    {
        players.removeOne(this);
        m_log.add("silent"_s);
    }
    void play(const QString &file) override
    {
        QFile played(file);
        const bool there = played.open(QIODevice::ReadOnly);
        m_log.add("play %1 %2"_s.arg(QDir::current().relativeFilePath(file),
                                     there ? QString::fromLatin1(played.readAll()) : "nothing"_s));
    }
    static inline QList<FakePlayer *> players;

private:
    CallLog &m_log;
};

/// A list written as one text, its parts between "|".
QStringList list(const char *joined)
{
    return QString::fromUtf8(joined).split(QLatin1Char('|'));
}

} // namespace

class TestReading : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QDir::setCurrent(m_folder->path());
        m_platform = std::make_unique<FakePlatform>();
        m_platform->time->start = QDateTime(QDate(2026, 11, 24), QTime(9, 5, 7));
        m_server = std::make_unique<ScriptedHttp>();
        m_server->fallback = ScriptedAnswer::body(sound);
        m_state.BaiduTtsAccessToken = "24.token"_s;
        m_state.BaiduAccessToken = "of recognition"_s;
        m_state.UseNetworkProxy = false;
        m_endpoints.BaiduTtsHost = m_server->host();
    }

    void cleanup() { QDir::setCurrent(QDir::rootPath()); }

    void queries_data()
    {
        const Rows<QString, ReadingVoice, QByteArray> row; // text, voice, query
        row("words", "good morning", ReadingVoice{5, 6, 7, 0},
            QByteArray("&lan=zh&cuid=***&ctp=1&tok=24.token&spd=5&pit=6&vol=7&per=0"
                       "&tex=good%20morning"));
        row("Chinese, an emoji, characters of an address, a line's end", "一😀%41&a=b+c/?\n"_s,
            ReadingVoice{0, 9, 15, 4},
            QByteArray("&lan=zh&cuid=***&ctp=1&tok=24.token&spd=0&pit=9&vol=15&per=4"
                       "&tex=%E4%B8%80%F0%9F%98%80%2541%26a%3Db%2Bc%2F%3F%0A"));
        row("nothing", QString(), ReadingVoice{},
            QByteArray("&lan=zh&cuid=***&ctp=1&tok=24.token&spd=0&pit=0&vol=0&per=0&tex="));
    }
    void queries()
    {
        const auto [text, voice, query] = rowOf<QString, ReadingVoice, QByteArray>();
        const std::unique_ptr<OnlineReading> reading = makeReading();
        reading->read(Pane::Source, text, voice);
        QTRY_COMPARE(m_server->requests.size(), 1);
        QCOMPARE(m_server->requests[0].method, QByteArray("GET"));
        QCOMPARE(m_server->requests[0].target, "/text2audio?" + query);
    }

    void readsAPane_data()
    {
        const Rows<Pane, QString> row; // pane, file
        row("above", Pane::Source, "SourceSynVoice/261124090507.mp3");
        row("below", Pane::Destination, "DestSynVoice/261124090507.mp3");
    }
    void readsAPane()
    {
        const auto [pane, file] = rowOf<Pane, QString>();
        const std::unique_ptr<OnlineReading> reading = makeReading();
        reading->read(pane, "x"_s, m_voice);
        QTRY_COMPARE(FakePlayer::players.size(), 1);
        QCOMPARE(calls(), QStringList{"play %1 %2"_s.arg(file, QLatin1String(sound))});
        emit FakePlayer::players[0]->ended(SoundEnd::Played);
        QCOMPARE(reading->activeCount(), 0);
        QTRY_COMPARE(calls().last(), "silent"_s);
        QVERIFY(QFile::exists(file)); // kept until the folders are made anew
    }

    void goesThroughTheProxy()
    {
        m_state.UseNetworkProxy = true;
        m_state.NetworkProxy_IP = "127.0.0.1"_s;
        m_state.NetworkProxy_Port = m_server->serverPort();
        m_state.NetworkProxy_UserName = "user"_s;
        m_state.NetworkProxy_Password = "secret"_s;
        m_endpoints.BaiduTtsHost = "tts.example"_s;
        const std::unique_ptr<OnlineReading> reading = makeReading();
        reading->read(Pane::Source, "x"_s, m_voice);
        QTRY_COMPARE(FakePlayer::players.size(), 1);
        QVERIFY(m_server->requests[0].target.startsWith("http://tts.example/text2audio?&lan=zh"));
    }

    void failures_data()
    {
        const Rows<ScriptedAnswer> row; // answer
        row("status 500", ScriptedAnswer::body(sound, 500));
        row("status 404", ScriptedAnswer::body(sound, 404));
        row("no answer in time", ScriptedAnswer::silence());
        row("cut short", ScriptedAnswer::cut(sound, 4000));
        row("no HTTP", ScriptedAnswer::raw("\x00 garbage"));
        row("endless", ScriptedAnswer::enormous(20LL * 1024 * 1024));
    }
    void failures()
    {
        const auto [answer] = rowOf<ScriptedAnswer>();
        m_server->fallback = answer;
        const std::unique_ptr<OnlineReading> reading = makeReading();
        reading->requestTimeoutMs = answer.held ? 50 : 30000;
        reading->read(Pane::Source, "x"_s, m_voice);
        QTRY_COMPARE_WITH_TIMEOUT(calls(), QStringList{failed}, 30000);
        QCOMPARE(reading->activeCount(), 0);
        QVERIFY(QDir("SourceSynVoice"_s).isEmpty());
    }

    void tellsHowASoundEnded_data()
    {
        const Rows<SoundEnd, QStringList> row; // end, messages
        row("played", SoundEnd::Played, QStringList());
        row("an error of the service, which comes as a file", SoundEnd::Unplayable, QStringList{failed});
        row("no sound device or no MP3", SoundEnd::NoPlayer,
            QStringList{"message 无法播放朗读的声音，请检查声音设备和MP3播放组件！ (3000)"_s});
    }
    void tellsHowASoundEnded()
    {
        const auto [end, messages] = rowOf<SoundEnd, QStringList>();
        const std::unique_ptr<OnlineReading> reading = makeReading();
        reading->read(Pane::Source, "x"_s, m_voice);
        QTRY_COMPARE(FakePlayer::players.size(), 1);
        FakePlayer *player = FakePlayer::players[0];
        emit player->ended(end);
        emit player->ended(end); // once is enough
        QCOMPARE(m_platform->log.calls("message"_s), messages);
        QCOMPARE(reading->activeCount(), 0);
    }

    /// One reading does not end another, not even of the same second, which has the same file.
    void readingsOverlap()
    {
        const std::unique_ptr<OnlineReading> reading = makeReading();
        m_server->enqueue(ScriptedAnswer::body("first"));
        reading->read(Pane::Source, "x"_s, m_voice);
        QTRY_COMPARE(FakePlayer::players.size(), 1);
        QFile first("SourceSynVoice/261124090507.mp3"_s);
        QVERIFY(first.open(QIODevice::ReadOnly)); // as a player has it
        m_server->enqueue(ScriptedAnswer::body("second"));
        reading->read(Pane::Source, "y"_s, m_voice);
        QTRY_COMPARE(FakePlayer::players.size(), 2);
        QCOMPARE(
            calls(),
            (list("play SourceSynVoice/261124090507.mp3 first|play SourceSynVoice/261124090507.mp3 second")));
        QCOMPARE(first.readAll(), QByteArray("first"));
    }

    void stops()
    {
        const std::unique_ptr<OnlineReading> reading = makeReading();
        reading->read(Pane::Source, "x"_s, m_voice);
        QTRY_COMPARE(FakePlayer::players.size(), 1);
        m_server->fallback = ScriptedAnswer::late(ScriptedAnswer::body(sound));
        reading->read(Pane::Destination, "y"_s, m_voice);
        QTRY_COMPARE(m_server->requests.size(), 2);
        QCOMPARE(reading->activeCount(), 2);
        reading->stop();
        QCOMPARE(reading->activeCount(), 0);
        QVERIFY(FakePlayer::players.isEmpty());
        m_server->answerHeld();
        m_server->fallback = ScriptedAnswer::body(sound);
        reading->read(Pane::Source, "z"_s, m_voice); // it goes on working
        QTRY_COMPARE(FakePlayer::players.size(), 1);
        QVERIFY(m_platform->log.calls("message"_s).isEmpty());
        QVERIFY(QDir("DestSynVoice"_s).isEmpty());
    }

    void endsWhileItAsks()
    {
        m_server->fallback = ScriptedAnswer::late(ScriptedAnswer::body(sound));
        std::unique_ptr<OnlineReading> reading = makeReading();
        reading->read(Pane::Source, "x"_s, m_voice);
        QTRY_COMPARE(m_server->requests.size(), 1);
        reading.reset();
        m_server->answerHeld();
        QTest::qWait(0);
        QVERIFY(calls().isEmpty());
    }

    /// Nothing is left of an earlier run; what a link leads to is nobody's to delete.
    void folders()
    {
        QTemporaryDir elsewhere;
        QFile mine(elsewhere.filePath("mine.mp3"_s));
        QVERIFY(mine.open(QIODevice::WriteOnly));
        QVERIFY(QDir().mkpath("SourceSynVoice/deeper"_s));
        QFile stale("SourceSynVoice/deeper/old.mp3"_s);
        QVERIFY(stale.open(QIODevice::WriteOnly));
        QVERIFY(QFile::link(elsewhere.path(), "DestSynVoice"_s));
        makeReading();
        for (const char *name : {"SourceSynVoice", "DestSynVoice"}) {
            QVERIFY(QFileInfo(QLatin1String(name)).isDir());
            QVERIFY(!QFileInfo(QLatin1String(name)).isSymLink());
            QVERIFY(QDir(QLatin1String(name)).isEmpty());
        }
        QVERIFY(mine.exists());
    }

    void workingFolderThatCannotBeWritten()
    {
        m_folder.reset(); // its process still stands in it, but nothing can be made there
        const std::unique_ptr<OnlineReading> reading = makeReading();
        reading->read(Pane::Destination, "x"_s, m_voice);
        QTRY_COMPARE(FakePlayer::players.size(), 1);
        QCOMPARE(home.read("DestSynVoice/261124090507.mp3"_s), sound);
    }

    void aFullDiskGivesNoHalfOfASound()
    {
        const std::unique_ptr<OnlineReading> reading = makeReading();
        const FullDisk full(8);
        reading->read(Pane::Source, "x"_s, m_voice);
        QTRY_COMPARE(calls(), QStringList{failed});
        QVERIFY(FakePlayer::players.isEmpty());
    }

    void mp3_data()
    {
        const Rows<QByteArray, bool> row; // bytes, is
        row("a tag", QByteArray("ID3\x03"), true);
        row("layer 3 of version 1", QByteArray("\xff\xfb\x90\x44"), true);
        row("layer 3 of version 2", QByteArray("\xff\xf3\x40\xc4"), true);
        row("layer 3 of version 2.5", QByteArray("\xff\xe3\x18\xc4"), true);
        row("no layer (AAC)", QByteArray("\xff\xf1\x50\x80"), false);
        row("an error in JSON", QByteArray(R"({"err_no":502})"), false);
        row("a mark of UTF-16", QByteArray("\xff\xfe{\0", 4), false);
        row("one byte", QByteArray("\xff"), false);
        row("nothing", QByteArray(), false);
    }
    void mp3()
    {
        const auto [bytes, is] = rowOf<QByteArray, bool>();
        QCOMPARE(mevo::beginsAsMp3(bytes), is);
    }

private:
    std::unique_ptr<OnlineReading> makeReading()
    {
        return std::make_unique<OnlineReading>(
            m_state, m_endpoints, *m_platform->time, *m_platform->notifications,
            [this] { return std::make_unique<FakePlayer>(m_platform->log); });
    }
    QStringList calls() const { return m_platform->log.calls(); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FakePlatform> m_platform;
    std::unique_ptr<ScriptedHttp> m_server;
    MainState m_state;
    mevo::EngineEndpoints m_endpoints;
    const ReadingVoice m_voice{5, 6, 7, 4};
};

QTEST_GUILESS_MAIN(TestReading)
#include "tst_reading.moc"
