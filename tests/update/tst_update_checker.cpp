#include "base/RuntimeLock.h"
#include "support/Rows.h"
#include "support/ScriptedHttp.h"
#include "update/MyUpdateChecker.h"
#include "update/UpdateSignature.h"

#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTranslator>
#include <QtTest>

#include <csignal>

#include <sys/resource.h>

namespace {

const QString path = "/Update/Z19/107/PenPad/"_s;

/// Answers as a test says, and writes down what it was asked.
struct FakeHost : mevo::UpdateHost
{
    void askForUpdate(const QString &text, bool forced, const std::function<void(bool)> &answer) override
    {
        questions.append(text);
        lastForced = forced;
        later = answer;
        if (updateNow) {
            answer(*updateNow);
        }
    }
    void setUpdateNotice(bool shown) override { events.append(shown ? "notice" : "no notice"); }
    void tellAboutCheck(mevo::CheckAnswer answer) override
    {
        static const QStringList names{"up to date", "no server", "no version",  "offline",
                                       "checking",   "asking",    "downloading", "installing"};
        events.append(names[int(answer)]);
    }
    void raiseUpdateQuestion() override { events.append("raise"); }
    void showDownload(const QString &fileName) override { events.append("show " + fileName); }
    void moveDownload(qint64 received, qint64) override { lastReceived = received; }
    void hideDownload() override { events.append("hide"); }
    bool confirmCancel() override
    {
        if (duringQuestion) {
            duringQuestion();
        }
        return cancel;
    }
    void tellAboutUpdate(const QString &text) override { events.append("tell " + text); }
    bool isForeignInstallation() const override { return foreign; }
    void openDownloadPage() override { events.append("page"); }
    QString programFile() const override { return folder.filePath("App/mevoinput"); }
    void handOver(const std::function<void(bool)> &answer) override
    {
        events.append("hand over");
        if (started) {
            answer(*started);
        }
    }

    QTemporaryDir folder;
    QStringList questions, events;
    std::function<void(bool)> later;
    std::function<void()> duringQuestion;
    std::optional<bool> updateNow = true;
    std::optional<bool> started = true; ///< the updater; nothing while the program waits for a quiet moment
    bool lastForced = false, cancel = false, foreign = false;
    qint64 lastReceived = 0;
};

/// While one lives no file of this program grows beyond `bytes`, as on a full disk.
class SmallFiles
{
public:
    explicit SmallFiles(rlim_t bytes)
        : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~SmallFiles()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    Q_DISABLE_COPY(SmallFiles)

private:
    void (*m_handler)(int);
    rlimit m_before{};
};

struct Update
{
    ScriptedHttp http;
    ServiceState service;
    UpdateState state;
    FakeHost host;
    std::unique_ptr<MyUpdateChecker> checker;

    explicit Update(const QString &key = {})
    {
        service.IsOnline = true;
        service.VersionCheckUrl = http.url("/v").toString();
        service.VersionCheckUrl1 = http.url("/v1").toString();
        service.ManualDownloadUrl = http.url("/m").toString();
        service.ManualDownloadUrl1 = http.url("/m1").toString();
        checker = std::make_unique<MyUpdateChecker>(service, state, host, 107, key);
    }
    QStringList targets() const
    {
        QStringList list;
        for (const ScriptedRequest &request : http.requests) {
            list.append(QString::fromUtf8(request.target));
        }
        return list;
    }
    /// The files above the program's folder.
    QStringList files() const { return QDir(host.folder.path()).entryList(QDir::Files | QDir::Hidden); }
    QByteArray content(const QString &name) const
    {
        QFile file(host.folder.filePath(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void run()
    {
        checker->check();
        QTRY_VERIFY(!checker->isBusy());
    }
};

} // namespace

class TestUpdateChecker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void questions_data()
    {
        const Rows<QString, QByteArray, bool, QString> add; // language, mode, forced, text
        const QString simplified, traditional = "cht"_s;
        const auto row = [&](const QString &language, const char *mode, bool forced, const char *text) {
            add(rowName("%s %s %d", qPrintable(language), mode, forced), language, QByteArray(mode), forced,
                QString::fromUtf8(text));
        };
        row(simplified, "All", true, "V1.08完整安装版已提供，须在线更新！\r\n请点击'立即更新'按钮");
        row(simplified, "All", false, "V1.08完整安装版已提供在线更新！\r\n是否要更新?");
        row(simplified, "Part", true, "V1.08版本已提供，须在线更新,\r\n请点击'立即更新'按钮");
        row(simplified, "Part", false, "V1.08版本已提供在线更新,\r\n是否要更新?");
        row(traditional, "All", true, "V1.08完整安裝版本已提供，須在線更新！\r\n請點擊'立即更新'按鈕");
        row(traditional, "All", false, "V1.08完整安裝版本已提供在線更新！\r\n是否要更新？");
        row(traditional, "Part", true, "V1.08版本已提供，須在線更新！\r\n請點擊'立即更新'按鈕");
        row(traditional, "Part", false, "V1.08版本已提供在線更新,\r\n是否要更新？");
    }
    void questions()
    {
        const auto [language, mode, forced, text] = rowOf<QString, QByteArray, bool, QString>();
        QTranslator translator;
        if (!language.isEmpty()) {
            QVERIFY(translator.load(":/translations/%1.qm"_s.arg(language)));
            QCoreApplication::installTranslator(&translator);
        }
        for (const bool isSigned : {true, false}) {
            Update update(isSigned ? "key"_s : QString());
            update.service.SWName = "灵犀"_s;
            update.service.ForceUpdate = forced ? 1 : 0;
            update.host.updateNow = false;
            update.http.fallback = ScriptedAnswer::body("108;;" + mode + ";;a.tar.xz");
            update.run();
            QCOMPARE(update.host.questions.size(), 1);
            const QString asked = update.host.questions.first();
            QCOMPARE(asked.left(text.size() + 2), "灵犀"_s + text);
            QCOMPARE(asked.size() > text.size() + 2, !isSigned); // says that nothing is signed
            QCOMPARE(update.host.lastForced, forced);
            QCOMPARE(update.host.events, QStringList());
            QCOMPARE(update.targets(), QStringList("/v" + path + "ORVAppVer.txt"));
        }
    }

    /// What ends a check before its question: the version file's answers, and what follows.
    void checks_data()
    {
        // answers ("404" and the like are statuses), manual, bases, questions, events
        const Rows<QByteArrayList, bool, QStringList, int, QStringList> row;
        const QByteArray newer = "108;;All;;a.tar.xz";
        row("equal", QByteArrayList{"107;;All;;a.tar.xz"}, false, QStringList{"/v"}, 0, QStringList());
        row("two fields", QByteArrayList{"108;;All"}, false, QStringList{"/v"}, 0, QStringList());
        row("the second base", QByteArrayList{"404", newer}, false, QStringList{"/v", "/v1"}, 1,
            QStringList());
        row("a redirect is no file", QByteArrayList{"302", newer}, false, QStringList{"/v", "/v1"}, 1,
            QStringList());
        row("both fail", QByteArrayList{"500", "404"}, false, QStringList{"/v", "/v1"}, 0, QStringList());
        row("both fail for the user", QByteArrayList{"500", "404"}, true, QStringList{"/m", "/m1"}, 0,
            QStringList{"no server"});
        row("equal for the user", QByteArrayList{"107;;All;;a.tar.xz"}, true, QStringList{"/m"}, 0,
            QStringList{"no notice"});
        row("newer for the user", QByteArrayList{newer}, true, QStringList{"/m"}, 0, QStringList{"notice"});
        row("a megabyte", QByteArrayList{newer + ";;" + QByteArray(1 << 20, ' '), newer}, false,
            QStringList{"/v", "/v1"}, 1, QStringList());
    }
    void checks()
    {
        auto [answers, manual, bases, questions, events] =
            rowOf<QByteArrayList, bool, QStringList, int, QStringList>();
        Update update;
        update.state.ManualCheck = manual;
        update.host.updateNow = false;
        for (const QByteArray &answer : answers) {
            update.http.enqueue(answer.size() == 3 ? ScriptedAnswer::body("x", answer.toInt())
                                                   : ScriptedAnswer::body(answer));
        }
        update.run();
        for (QString &base : bases) {
            base += path + "ORVAppVer.txt"_s;
        }
        QCOMPARE(update.targets(), bases);
        QCOMPARE(update.host.questions.size(), questions);
        QCOMPARE(update.host.events, events);
        QCOMPARE(update.state.UpdateNotified, update.host.events == QStringList{"notice"});
    }

    void offlineAndTwice()
    {
        Update update;
        update.service.IsOnline = false;
        update.checker->check();
        QVERIFY(!update.checker->isBusy());
        update.service.IsOnline = true;
        update.host.updateNow.reset();
        update.http.fallback = ScriptedAnswer::body("108;;All;;a.tar.xz");
        update.checker->check();
        update.checker->check();
        QTRY_COMPARE(update.host.questions.size(), 1);
        update.checker->check(); // while the question stands
        QTest::qWait(0);
        QCOMPARE(update.http.requests.size(), 1);
        update.checker.reset();
        update.host.later(true); // an answer that comes when nobody is there any more
        QCOMPARE(update.files(), QStringList());
    }

    /// A user who asks gets an answer, whatever comes.
    void wishes_data()
    {
        // content (of the version file; empty for none), online, running (a check of the program's own,
        // when the user asks), events
        const Rows<QByteArray, bool, bool, QStringList> row;
        const QByteArray equal = "107;;All;;a.tar.xz";
        row("up to date", equal, true, false, QStringList{"no notice", "up to date"});
        row("no server", QByteArray(), true, false, QStringList{"no server"});
        row("nonsense", QByteArray("<html>"), true, false, QStringList{"no version"});
        row("offline", equal, false, false, QStringList{"offline"});
        row("during a check", equal, true, true, QStringList{"checking", "no notice", "up to date"});
        row("during a check in vain", QByteArray(), true, true, QStringList{"checking", "no server"});
        row("newer", QByteArray("108;;All;;a.tar.xz"), true, true, QStringList{"checking"});
    }
    void wishes()
    {
        const auto [content, online, running, events] = rowOf<QByteArray, bool, bool, QStringList>();
        Update update;
        update.service.IsOnline = online;
        update.host.updateNow = false;
        update.http.fallback =
            content.isEmpty() ? ScriptedAnswer::body("x", 500) : ScriptedAnswer::body(content);
        if (running) {
            update.checker->check();
        }
        update.checker->checkAtWish();
        QTRY_VERIFY(!update.checker->isBusy());
        QCOMPARE(update.host.events, events);
        QCOMPARE(update.host.questions.size(), int(content.startsWith("108")));
        update.host.events.clear();
        update.state = UpdateState();
        update.run(); // of the program's own: nobody waits for its answer
        QCOMPARE(update.host.events, QStringList());
    }

    /// Nor is there silence once the check has come further.
    void wishesLater()
    {
        Update update;
        update.host.updateNow.reset();
        update.host.started.reset();
        update.http.enqueue(ScriptedAnswer::body("108;;All;;a.tar.xz"));
        update.http.enqueue(ScriptedAnswer::late(ScriptedAnswer::body("archive")));
        update.checker->check();
        QTRY_COMPARE(update.host.questions.size(), 1);
        const auto wish = [&update] {
            update.host.events.clear();
            update.checker->checkAtWish();
            return update.host.events;
        };
        QCOMPARE(wish(), QStringList({"asking", "raise"}));
        update.host.later(true);
        QCOMPARE(wish(), QStringList({"downloading", "show a.tar.xz"}));
        update.host.duringQuestion = [&] { QCOMPARE(wish(), QStringList({"downloading", "raise"})); };
        update.checker->on_CancelDownload();
        QTRY_COMPARE(update.http.requests.size(), 2);
        update.http.answerHeld();
        QTRY_VERIFY(update.host.events.contains("hand over"));
        QCOMPARE(wish(), QStringList{"installing"});
        QCOMPARE(update.http.requests.size(), 2);
        QVERIFY(!update.state.ManualCheck); // what runs is not another check
    }

    /// An updater that works on an earlier download waits for the program's end: nothing is fetched beside
    /// it.
    void anUpdaterIsAtWork()
    {
        const QTemporaryDir runtime;
        const QByteArray before = qgetenv("XDG_RUNTIME_DIR");
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime.path()));
        mevo::RuntimeLock updater(mevo::updaterLockName);
        QVERIFY(updater.acquire(0));
        Update update;
        update.http.fallback = ScriptedAnswer::body("108;;All;;a.tar.xz");
        update.run();
        QCOMPARE(update.http.requests.size(), 1);
        QCOMPARE(update.host.events, QStringList({"hide", "tell 另一个更新正在安装，请稍后再试。"}));
        updater.release();
        update.run();
        QCOMPARE(update.http.requests.size(), 3);
        qputenv("XDG_RUNTIME_DIR", before);
    }

    void done()
    {
        Update update;
        const QByteArray archive(300000, 'a');
        update.http.enqueue(ScriptedAnswer::body("108;;Part;;a.tar.xz\n"));
        update.http.enqueue(ScriptedAnswer::body(archive));
        QFile::link("/nonexistent/elsewhere", update.host.folder.filePath(".update-part"));
        update.run();
        QCOMPARE(update.host.events, QStringList({"show a.tar.xz", "hide", "hand over"}));
        QCOMPARE(update.targets().last(), "/v" + path + "a.tar.xz");
        QCOMPARE(update.files(), QStringList({"a.tar.xz", "DownloadSetting.ini"}));
        QCOMPARE(update.content("a.tar.xz"), archive);
        QCOMPARE(update.content("DownloadSetting.ini"),
                 QByteArray("[Set]\nUpdaterName=a.tar.xz\nMode=Part\nExeName=App/mevoinput\nVersion=108\n"));
        QCOMPARE(update.host.lastReceived, qint64(archive.size()));
    }

    /// What was fetched goes where it is not handed over: the updater cannot be started, or the program ends
    /// before its quiet moment. Until then nothing else is fetched over it.
    void notHandedOver_data() { flagRows("the updater does not start", "the program ends first"); }
    void notHandedOver()
    {
        const auto [answered] = rowOf<bool>();
        Update update;
        update.host.started.reset();
        if (answered) {
            update.host.started = false;
        }
        update.http.enqueue(ScriptedAnswer::body("108;;All;;a.tar.xz"));
        update.http.enqueue(ScriptedAnswer::body("archive"));
        update.checker->check();
        QTRY_COMPARE(update.host.events.value(2), QString("hand over"));
        QCOMPARE(update.checker->isBusy(), !answered);
        if (!answered) {
            QCOMPARE(update.files(), QStringList({"a.tar.xz", "DownloadSetting.ini"}));
            update.checker->check();
            update.checker->on_CancelDownload(); // it is too late for that
            QCOMPARE(update.host.questions.size(), 1);
            update.checker.reset();
        }
        QCOMPARE(update.files(), QStringList());
    }

    /// The archive's name is a stranger's choice: a file of the user's own under it, or beside it, stays;
    /// what an earlier download has left is replaced, or goes.
    void filesOfTheUsersStay_data()
    {
        // earlier (archive that DownloadSetting.ini names), there, comesLater (while the archive is on its
        // way), refused, left
        const Rows<QByteArray, QString, bool, bool, QStringList> row;
        const QStringList done{"a.tar.xz", "DownloadSetting.ini"};
        row("the user's", "", "a.tar.xz", false, true, {"a.tar.xz"});
        row("the user's, that comes later", "", "a.tar.xz", true, true, {"a.tar.xz"});
        row("the user's, after another download", "b.tar.xz", "a.tar.xz", false, true, done);
        row("an earlier download's", "a.tar.xz", "a.tar.xz", false, false, done);
        row("an earlier download's, of another name", "b.tar.xz", "b.tar.xz", false, false, done);
        row("the user's signature, that nobody wants", "", "a.tar.xz.sig", false, false,
            {"a.tar.xz", "a.tar.xz.sig", "DownloadSetting.ini"});
        row("the user's part", "", "a.tar.xz.part", false, false,
            {"a.tar.xz", "a.tar.xz.part", "DownloadSetting.ini"});
        row("the rest of a download", "", ".update-part", false, false, done);
    }
    void filesOfTheUsersStay()
    {
        const auto [earlier, there, comesLater, refused, left] =
            rowOf<QByteArray, QString, bool, bool, QStringList>();
        Update update;
        const auto write = [&update](const QString &name, const QByteArray &content) {
            QFile file(update.host.folder.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        };
        if (!earlier.isEmpty()) {
            write("DownloadSetting.ini",
                  "[Set]\nUpdaterName=" + earlier + "\nMode=All\nExeName=App/mevoinput\nVersion=108\n");
        }
        if (!comesLater) {
            write(there, "what stands there");
        }
        update.http.enqueue(ScriptedAnswer::body("108;;All;;a.tar.xz"));
        update.http.enqueue(ScriptedAnswer::late(ScriptedAnswer::body("archive")));
        update.checker->check();
        QTRY_VERIFY(update.http.requests.size() == 2 || !update.checker->isBusy());
        if (comesLater) {
            write(there, "what stands there");
        }
        update.http.answerHeld();
        QTRY_VERIFY(!update.checker->isBusy());
        QCOMPARE(update.host.events.last() == "hand over", !refused);
        QCOMPARE(update.files(), left);
        if (QFile::exists(update.host.folder.filePath(there))) {
            QCOMPARE(update.content(there),
                     QByteArray(earlier == "a.tar.xz" ? "archive" : "what stands there"));
        }
    }

    /// A signature of the user's own stays where one is wanted, and ends the update before it is fetched.
    void signatureOfTheUsersStays()
    {
        Update update(QString::fromLatin1(QByteArray(32, 'k').toBase64()));
        QFile file(update.host.folder.filePath("a.tar.xz.sig"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("mine") == 4);
        file.close();
        update.http.fallback = ScriptedAnswer::body("108;;All;;a.tar.xz");
        update.run();
        QVERIFY(update.host.events.last().startsWith("tell 不能保存文件 "));
        QCOMPARE(update.files(), QStringList{"a.tar.xz.sig"});
        QCOMPARE(update.http.requests.size(), 1);
    }

    /// The checks of a large archive leave the window alone.
    void checksAside()
    {
        Update update;
        const QByteArray archive(96 << 20, 'a');
        QTemporaryFile same;
        QVERIFY(same.open() && same.write(archive) == archive.size() && same.flush());
        update.http.enqueue(ScriptedAnswer::body("108;;All;;a.tar.xz;;" + mevo::fileSha256(same.fileName())));
        update.http.enqueue(ScriptedAnswer::body(archive));
        bool aside = false; // a thread was at it while the event loop ran
        QTimer ticks;
        connect(&ticks, &QTimer::timeout,
                [&] { aside = aside || !update.checker->findChildren<QThread *>().isEmpty(); });
        ticks.start(0);
        update.checker->check();
        QTRY_VERIFY_WITH_TIMEOUT(update.host.events.contains("hand over"), 60000);
        QVERIFY(aside);
    }

    void foreignInstallation()
    {
        Update update;
        update.host.foreign = true;
        update.http.fallback = ScriptedAnswer::body("108;;All;;a.tar.xz");
        update.run();
        QCOMPARE(update.host.events, QStringList{"page"});
        QCOMPARE(update.http.requests.size(), 1);
    }

    /// Every download that fails says so in its own words, and leaves nothing.
    void failures_data()
    {
        const Rows<QString, QString> row; // kind, told
        row("missing", "missing", "tell 文件  a.tar.xz 不存在.");
        row("server's fault", "status", "tell 下载错误: ");
        row("redirect", "redirect", "tell 下载错误: HTTP 302.");
        row("broken off", "cut", "tell 下载错误: ");
        row("wrong checksum", "checksum", "tell 下载错误: 校验和不符.");
        row("no place", "place", "tell 不能保存文件 ");
        row("no signature", "unsigned", "tell 更新文件没有有效的数字签名，已拒绝安装。");
        row("wrong signature", "signature", "tell 更新文件没有有效的数字签名，已拒绝安装。");
        row("a key that is none", "key", "tell 更新文件没有有效的数字签名，已拒绝安装。");
    }
    void failures()
    {
        const auto [kind, told] = rowOf<QString, QString>();
        const QString key = kind == "key" ? "none" : QString::fromLatin1(QByteArray(32, 'k').toBase64());
        const bool isSigned = kind == "unsigned" || kind == "signature" || kind == "key";
        Update update(isSigned ? key : QString());
        const QByteArray digest = kind == "checksum" ? ";;" + QByteArray(64, '0') : QByteArray();
        update.http.enqueue(ScriptedAnswer::body("108;;All;;a.tar.xz" + digest));
        update.http.enqueue(kind == "missing"    ? ScriptedAnswer::body("x", 404)
                            : kind == "status"   ? ScriptedAnswer::body("x", 500)
                            : kind == "redirect" ? ScriptedAnswer::body("x", 302)
                            : kind == "cut"      ? ScriptedAnswer::cut("half", 1000)
                                                 : ScriptedAnswer::body("archive"));
        update.http.enqueue(kind == "unsigned" ? ScriptedAnswer::body("x", 404)
                                               : ScriptedAnswer::body(QByteArray(64, 's')));
        if (kind == "place") {
            QVERIFY(QDir(update.host.folder.path()).mkdir(".update-part"));
        }
        update.run();
        QVERIFY2(update.host.events.last().startsWith(told), qPrintable(update.host.events.join('\n')));
        QVERIFY(!update.host.events.contains("hand over"));
        QCOMPARE(update.files(), QStringList());
    }

    void cancelled_data()
    {
        const Rows<bool, bool, QStringList> row; // yes, comesDuringQuestion, events
        row("yes", true, false, QStringList({"show a.tar.xz", "hide"}));
        row("yes, it came meanwhile", true, true, QStringList({"show a.tar.xz", "hide"}));
        row("no", false, false, QStringList({"show a.tar.xz", "show a.tar.xz", "hide", "hand over"}));
        row("no, it came meanwhile", false, true, QStringList({"show a.tar.xz", "hide", "hand over"}));
    }
    void cancelled()
    {
        const auto [yes, comesDuringQuestion, events] = rowOf<bool, bool, QStringList>();
        Update update;
        update.http.enqueue(ScriptedAnswer::body("108;;All;;a.tar.xz"));
        update.http.enqueue(ScriptedAnswer::late(ScriptedAnswer::body(QByteArray(5000, 'a'))));
        update.host.cancel = yes;
        update.checker->check();
        QTRY_COMPARE(update.http.requests.size(), 2);
        if (comesDuringQuestion) {
            update.host.duringQuestion = [&update] {
                update.http.answerHeld();
                const QString part = update.host.folder.filePath(".update-part");
                QTRY_COMPARE(QFileInfo(part).size(), qint64(5000));
                QCoreApplication::processEvents();
                QCOMPARE(update.host.events, QStringList{"show a.tar.xz"}); // it waits for the answer
            };
        }
        update.checker->on_CancelDownload();
        update.http.answerHeld();
        QTRY_VERIFY(!update.checker->isBusy());
        QCOMPARE(update.host.events, events);
        QCOMPARE(update.files().isEmpty(), yes);
    }

    /// A disk that fills up under the archive, or behind it, says so and leaves nothing; the next check goes
    /// on as if nothing had been.
    void fullDisk_data()
    {
        QTest::addColumn<int>("archive"); ///< bytes
        QTest::newRow("the archive finds no room") << 300000;
        QTest::newRow("its setting finds none") << 10;
    }
    void fullDisk()
    {
        QFETCH(int, archive);
        Update update;
        const QByteArray version = "108;;All;;a.tar.xz", content(archive, 'a');
        for (int i = 0; i < 2; ++i) {
            update.http.enqueue(ScriptedAnswer::body(version));
            update.http.enqueue(ScriptedAnswer::body(content));
        }
        {
            const SmallFiles small(20);
            update.run();
        }
        QVERIFY2(update.host.events.last().startsWith("tell 不能保存文件 "),
                 qPrintable(update.host.events.join('\n')));
        QCOMPARE(update.files(), QStringList());
        update.run();
        QCOMPARE(update.host.events.last(), QString("hand over"));
        QCOMPARE(update.content("a.tar.xz"), content);
    }

    void endsInTheMiddle()
    {
        Update update;
        update.http.enqueue(ScriptedAnswer::body("108;;All;;a.tar.xz"));
        update.http.enqueue(ScriptedAnswer::silence());
        update.checker->check();
        QTRY_COMPARE(update.http.requests.size(), 2);
        QCOMPARE(update.files(), QStringList{".update-part"});
        update.host.duringQuestion = [&update] { update.checker.reset(); };
        update.checker->on_CancelDownload();
        QCOMPARE(update.files(), QStringList());
    }
};

QTEST_MAIN(TestUpdateChecker)
#include "tst_update_checker.moc"
