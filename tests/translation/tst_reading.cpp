#include "support/FakePlatform.h"
#include "support/FullDisk.h"
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

Q_DECLARE_METATYPE(ScriptedAnswer)
Q_DECLARE_METATYPE(mevo::ReadingVoice)
Q_DECLARE_METATYPE(mevo::Pane)
Q_DECLARE_METATYPE(mevo::SoundEnd)

namespace {

ScratchHome home;
const QByteArray sound = "ID3 not much of a sound";
const QString failed =
    QStringLiteral("message 在线朗读失败，如网络正常且一直显示此消息，请与销售商联系！ (3000)");

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
        m_log.add(QStringLiteral("silent"));
    }
    void play(const QString &file) override
    {
        QFile played(file);
        const bool there = played.open(QIODevice::ReadOnly);
        m_log.add(QStringLiteral("play %1 %2")
                      .arg(QDir::current().relativeFilePath(file),
                           there ? QString::fromLatin1(played.readAll()) : QStringLiteral("nothing")));
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
    void init();
    void cleanup();
    void queries_data();
    void queries();
    void readsAPane_data();
    void readsAPane();
    void goesThroughTheProxy();
    void failures_data();
    void failures();
    void tellsHowASoundEnded_data();
    void tellsHowASoundEnded();
    void readingsOverlap();
    void stops();
    void endsWhileItAsks();
    void folders();
    void workingFolderThatCannotBeWritten();
    void aFullDiskGivesNoHalfOfASound();
    void mp3_data();
    void mp3();

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

void TestReading::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QDir::setCurrent(m_folder->path());
    m_platform = std::make_unique<FakePlatform>();
    m_platform->time->start = QDateTime(QDate(2026, 11, 24), QTime(9, 5, 7));
    m_server = std::make_unique<ScriptedHttp>();
    m_server->fallback = ScriptedAnswer::body(sound);
    m_state.BaiduTtsAccessToken = QStringLiteral("24.token");
    m_state.BaiduAccessToken = QStringLiteral("of recognition");
    m_state.UseNetworkProxy = false;
    m_endpoints.BaiduTtsHost = m_server->host();
}

void TestReading::cleanup()
{
    QDir::setCurrent(QDir::rootPath());
}

void TestReading::queries_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<ReadingVoice>("voice");
    QTest::addColumn<QByteArray>("query");
    QTest::newRow("words") << "good morning" << ReadingVoice{5, 6, 7, 0}
                           << QByteArray("&lan=zh&cuid=***&ctp=1&tok=24.token&spd=5&pit=6&vol=7&per=0"
                                         "&tex=good%20morning");
    QTest::newRow("Chinese, an emoji, characters of an address, a line's end")
        << QStringLiteral("一😀%41&a=b+c/?\n") << ReadingVoice{0, 9, 15, 4}
        << QByteArray("&lan=zh&cuid=***&ctp=1&tok=24.token&spd=0&pit=9&vol=15&per=4"
                      "&tex=%E4%B8%80%F0%9F%98%80%2541%26a%3Db%2Bc%2F%3F%0A");
    QTest::newRow("nothing") << QString() << ReadingVoice{}
                             << QByteArray(
                                    "&lan=zh&cuid=***&ctp=1&tok=24.token&spd=0&pit=0&vol=0&per=0&tex=");
}

void TestReading::queries()
{
    QFETCH(QString, text);
    QFETCH(ReadingVoice, voice);
    QFETCH(QByteArray, query);
    const std::unique_ptr<OnlineReading> reading = makeReading();
    reading->read(Pane::Source, text, voice);
    QTRY_COMPARE(m_server->requests.size(), 1);
    QCOMPARE(m_server->requests[0].method, QByteArray("GET"));
    QCOMPARE(m_server->requests[0].target, "/text2audio?" + query);
}

void TestReading::readsAPane_data()
{
    QTest::addColumn<Pane>("pane");
    QTest::addColumn<QString>("file");
    QTest::newRow("above") << Pane::Source << "SourceSynVoice/261124090507.mp3";
    QTest::newRow("below") << Pane::Destination << "DestSynVoice/261124090507.mp3";
}

void TestReading::readsAPane()
{
    QFETCH(Pane, pane);
    QFETCH(QString, file);
    const std::unique_ptr<OnlineReading> reading = makeReading();
    reading->read(pane, QStringLiteral("x"), m_voice);
    QTRY_COMPARE(FakePlayer::players.size(), 1);
    QCOMPARE(calls(), QStringList{QStringLiteral("play %1 %2").arg(file, QLatin1String(sound))});
    emit FakePlayer::players[0]->ended(SoundEnd::Played);
    QCOMPARE(reading->activeCount(), 0);
    QTRY_COMPARE(calls().last(), QStringLiteral("silent"));
    QVERIFY(QFile::exists(file)); // kept until the folders are made anew
}

void TestReading::goesThroughTheProxy()
{
    m_state.UseNetworkProxy = true;
    m_state.NetworkProxy_IP = QStringLiteral("127.0.0.1");
    m_state.NetworkProxy_Port = m_server->serverPort();
    m_state.NetworkProxy_UserName = QStringLiteral("user");
    m_state.NetworkProxy_Password = QStringLiteral("secret");
    m_endpoints.BaiduTtsHost = QStringLiteral("tts.example");
    const std::unique_ptr<OnlineReading> reading = makeReading();
    reading->read(Pane::Source, QStringLiteral("x"), m_voice);
    QTRY_COMPARE(FakePlayer::players.size(), 1);
    QVERIFY(m_server->requests[0].target.startsWith("http://tts.example/text2audio?&lan=zh"));
}

void TestReading::failures_data()
{
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::newRow("status 500") << ScriptedAnswer::body(sound, 500);
    QTest::newRow("status 404") << ScriptedAnswer::body(sound, 404);
    QTest::newRow("no answer in time") << ScriptedAnswer::silence();
    QTest::newRow("cut short") << ScriptedAnswer::cut(sound, 4000);
    QTest::newRow("no HTTP") << ScriptedAnswer::raw("\x00 garbage");
    QTest::newRow("endless") << ScriptedAnswer::enormous(20LL * 1024 * 1024);
}

void TestReading::failures()
{
    QFETCH(ScriptedAnswer, answer);
    m_server->fallback = answer;
    const std::unique_ptr<OnlineReading> reading = makeReading();
    reading->requestTimeoutMs = answer.held ? 50 : 30000;
    reading->read(Pane::Source, QStringLiteral("x"), m_voice);
    QTRY_COMPARE_WITH_TIMEOUT(calls(), QStringList{failed}, 30000);
    QCOMPARE(reading->activeCount(), 0);
    QVERIFY(QDir(QStringLiteral("SourceSynVoice")).isEmpty());
}

void TestReading::tellsHowASoundEnded_data()
{
    QTest::addColumn<SoundEnd>("end");
    QTest::addColumn<QStringList>("messages");
    QTest::newRow("played") << SoundEnd::Played << QStringList();
    QTest::newRow("an error of the service, which comes as a file")
        << SoundEnd::Unplayable << QStringList{failed};
    QTest::newRow("no sound device or no MP3")
        << SoundEnd::NoPlayer
        << QStringList{QStringLiteral("message 无法播放朗读的声音，请检查声音设备和MP3播放组件！ (3000)")};
}

void TestReading::tellsHowASoundEnded()
{
    QFETCH(SoundEnd, end);
    QFETCH(QStringList, messages);
    const std::unique_ptr<OnlineReading> reading = makeReading();
    reading->read(Pane::Source, QStringLiteral("x"), m_voice);
    QTRY_COMPARE(FakePlayer::players.size(), 1);
    FakePlayer *player = FakePlayer::players[0];
    emit player->ended(end);
    emit player->ended(end); // once is enough
    QCOMPARE(m_platform->log.calls(QStringLiteral("message")), messages);
    QCOMPARE(reading->activeCount(), 0);
}

/// One reading does not end another, not even of the same second, which has the same file.
void TestReading::readingsOverlap()
{
    const std::unique_ptr<OnlineReading> reading = makeReading();
    m_server->enqueue(ScriptedAnswer::body("first"));
    reading->read(Pane::Source, QStringLiteral("x"), m_voice);
    QTRY_COMPARE(FakePlayer::players.size(), 1);
    QFile first(QStringLiteral("SourceSynVoice/261124090507.mp3"));
    QVERIFY(first.open(QIODevice::ReadOnly)); // as a player has it
    m_server->enqueue(ScriptedAnswer::body("second"));
    reading->read(Pane::Source, QStringLiteral("y"), m_voice);
    QTRY_COMPARE(FakePlayer::players.size(), 2);
    QCOMPARE(
        calls(),
        (list("play SourceSynVoice/261124090507.mp3 first|play SourceSynVoice/261124090507.mp3 second")));
    QCOMPARE(first.readAll(), QByteArray("first"));
}

void TestReading::stops()
{
    const std::unique_ptr<OnlineReading> reading = makeReading();
    reading->read(Pane::Source, QStringLiteral("x"), m_voice);
    QTRY_COMPARE(FakePlayer::players.size(), 1);
    m_server->fallback = ScriptedAnswer::late(ScriptedAnswer::body(sound));
    reading->read(Pane::Destination, QStringLiteral("y"), m_voice);
    QTRY_COMPARE(m_server->requests.size(), 2);
    QCOMPARE(reading->activeCount(), 2);
    reading->stop();
    QCOMPARE(reading->activeCount(), 0);
    QVERIFY(FakePlayer::players.isEmpty());
    m_server->answerHeld();
    m_server->fallback = ScriptedAnswer::body(sound);
    reading->read(Pane::Source, QStringLiteral("z"), m_voice); // it goes on working
    QTRY_COMPARE(FakePlayer::players.size(), 1);
    QVERIFY(m_platform->log.calls(QStringLiteral("message")).isEmpty());
    QVERIFY(QDir(QStringLiteral("DestSynVoice")).isEmpty());
}

void TestReading::endsWhileItAsks()
{
    m_server->fallback = ScriptedAnswer::late(ScriptedAnswer::body(sound));
    std::unique_ptr<OnlineReading> reading = makeReading();
    reading->read(Pane::Source, QStringLiteral("x"), m_voice);
    QTRY_COMPARE(m_server->requests.size(), 1);
    reading.reset();
    m_server->answerHeld();
    QTest::qWait(0);
    QVERIFY(calls().isEmpty());
}

/// Nothing is left of an earlier run; what a link leads to is nobody's to delete.
void TestReading::folders()
{
    QTemporaryDir elsewhere;
    QFile mine(elsewhere.filePath(QStringLiteral("mine.mp3")));
    QVERIFY(mine.open(QIODevice::WriteOnly));
    QVERIFY(QDir().mkpath(QStringLiteral("SourceSynVoice/deeper")));
    QFile stale(QStringLiteral("SourceSynVoice/deeper/old.mp3"));
    QVERIFY(stale.open(QIODevice::WriteOnly));
    QVERIFY(QFile::link(elsewhere.path(), QStringLiteral("DestSynVoice")));
    makeReading();
    for (const char *name : {"SourceSynVoice", "DestSynVoice"}) {
        QVERIFY(QFileInfo(QLatin1String(name)).isDir());
        QVERIFY(!QFileInfo(QLatin1String(name)).isSymLink());
        QVERIFY(QDir(QLatin1String(name)).isEmpty());
    }
    QVERIFY(mine.exists());
}

void TestReading::workingFolderThatCannotBeWritten()
{
    m_folder.reset(); // its process still stands in it, but nothing can be made there
    const std::unique_ptr<OnlineReading> reading = makeReading();
    reading->read(Pane::Destination, QStringLiteral("x"), m_voice);
    QTRY_COMPARE(FakePlayer::players.size(), 1);
    QCOMPARE(home.read(QStringLiteral("DestSynVoice/261124090507.mp3")), sound);
}

void TestReading::aFullDiskGivesNoHalfOfASound()
{
    const std::unique_ptr<OnlineReading> reading = makeReading();
    const FullDisk full(8);
    reading->read(Pane::Source, QStringLiteral("x"), m_voice);
    QTRY_COMPARE(calls(), QStringList{failed});
    QVERIFY(FakePlayer::players.isEmpty());
}

void TestReading::mp3_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("is");
    QTest::newRow("a tag") << QByteArray("ID3\x03") << true;
    QTest::newRow("layer 3 of version 1") << QByteArray("\xff\xfb\x90\x44") << true;
    QTest::newRow("layer 3 of version 2") << QByteArray("\xff\xf3\x40\xc4") << true;
    QTest::newRow("layer 3 of version 2.5") << QByteArray("\xff\xe3\x18\xc4") << true;
    QTest::newRow("no layer (AAC)") << QByteArray("\xff\xf1\x50\x80") << false;
    QTest::newRow("an error in JSON") << QByteArray(R"({"err_no":502})") << false;
    QTest::newRow("a mark of UTF-16") << QByteArray("\xff\xfe{\0", 4) << false;
    QTest::newRow("one byte") << QByteArray("\xff") << false;
    QTest::newRow("nothing") << QByteArray() << false;
}

void TestReading::mp3()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, is);
    QCOMPARE(mevo::beginsAsMp3(bytes), is);
}

QTEST_GUILESS_MAIN(TestReading)
#include "tst_reading.moc"
