#include "base/SettingsFile.h"
#include "inputmethods/ThirdPartyVoiceInput.h"
#include "support/Rows.h"
#include "support/ScratchHome.h"
#include "support/ScriptedHttp.h"

#include <QTemporaryDir>
#include <QtTest>

namespace {

const ScratchHome home;

struct Host : mevo::InstallerHost
{
    void showDownload() override { calls += "show"; }
    void moveDownload(qint64 received, qint64) override
    {
        if (received > 0 && onProgress) {
            onProgress();
        }
    }
    void hideDownload() override { hidden = true; }
    void tellAboutDownload(const QString &text) override { calls += "tell " + text; }
    void openInstaller(const QString &path) override { calls += "open " + path; }
    void downloadCancelled() override { calls += "cancelled"; }
    void installerOpened() override { calls += "opened"; }

    QStringList calls;
    bool hidden = false;
    std::function<void()> onProgress;
};

struct Fixture
{
    explicit Fixture(ScriptedHttp::Security security = ScriptedHttp::Security::Plain, bool verify = false)
        : server(security)
        , download(std::make_unique<ThirdPartyVoiceInput>(service, host, folder.path(), verify))
    {
        mevo::SettingsFile().setValue("InstallerFile", QString());
    }
    /// Names and contents of the folder's files.
    QStringList files() const
    {
        QStringList all;
        for (const QFileInfo &file :
             QDir(folder.path()).entryInfoList(QDir::Files | QDir::Hidden, QDir::Name)) {
            QFile opened(file.filePath());
            opened.open(QIODevice::ReadOnly);
            all += file.fileName() + '=' + opened.readAll();
        }
        return all;
    }
    void write(const QString &name, const QByteArray &content) const
    {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    void run(const QString &path)
    {
        download->Start(server.url(path));
        QTRY_VERIFY_WITH_TIMEOUT(!download->isBusy(), 20000);
    }

    QTemporaryDir folder;
    ServiceState service;
    Host host;
    ScriptedHttp server;
    std::unique_ptr<ThirdPartyVoiceInput> download;
};

ScriptedAnswer redirect(const QByteArray &target)
{
    return ScriptedAnswer::raw("HTTP/1.1 302 Found\r\nLocation: " + target +
                               "\r\nContent-Length: 5\r\nConnection: close\r\n\r\nmoved");
}

} // namespace

class TestInstaller : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fetchesAndOpens_data()
    {
        const Rows<bool, QByteArray, bool> row; // tls, content, executable
        row("a script", false, QByteArray("#!/bin/sh\nexit\n"), true);
        row("a program", false,
            QByteArray("\x7f"
                       "ELF and so on"),
            true);
        row("a package", false, QByteArray("!<arch>\n"), false);
        row("a certificate that nobody trusts", true, QByteArray("!<arch>\n"), false);
    }
    void fetchesAndOpens()
    {
        const auto [tls, content, executable] = rowOf<bool, QByteArray, bool>();
        Fixture f(tls ? ScriptedHttp::Security::Tls : ScriptedHttp::Security::Plain);
        f.server.enqueue(ScriptedAnswer::body(content));
        f.run("/dir/setup.run?x=1");
        QCOMPARE(f.files(), QStringList{"setup.run=" + content});
        QCOMPARE(f.host.calls, (QStringList{"show", "open " + f.folder.filePath("setup.run")}));
        QVERIFY(f.host.hidden);
        QCOMPARE(QFileInfo(f.folder.filePath("setup.run")).isExecutable(), executable);
        QCOMPARE(f.server.requests.size(), 1);
        QCOMPARE(f.server.requests[0].method, QByteArray("GET"));
        QCOMPARE(f.server.requests[0].headers.value("content-type"),
                 QByteArray("application/x-www-form-urlencoded"));
        QTRY_COMPARE_WITH_TIMEOUT(f.host.calls.last(), QString("opened"), 20000);
    }

    void verifiedCertificates()
    {
        Fixture f(ScriptedHttp::Security::Tls, true);
        f.run("/setup.run");
        QVERIFY(f.files().isEmpty());
        QVERIFY(f.host.calls.last().startsWith("tell Download failed: "));
    }

    void faults_data()
    {
        const Rows<QByteArray, QString> row; // kind, told (begin of what the user is told)
        const QString failed = "tell Download failed: ";
        row("not there", QByteArray("404"), failed);
        row("server error", QByteArray("500"), failed);
        row("no content", QByteArray("empty"), failed);
        row("cut off", QByteArray("cut"), failed);
        row("no HTTP", QByteArray("garbage"), failed);
        row("nobody listens", QByteArray("dead"), failed);
        row("announced too large", QByteArray("large"), "tell Impossible to save the file ");
        row("too large unannounced", QByteArray("flood"), "tell Impossible to save the file ");
        row("for ever somewhere else", QByteArray("loop"), failed);
        row("to a file", QByteArray("file:///etc/passwd"), failed);
        row("to nowhere", QByteArray("http:"), failed);
    }
    void faults()
    {
        const auto [kind, told] = rowOf<QByteArray, QString>();
        const QScopedValueRollback<qint64> bound(ThirdPartyVoiceInput::largestInstaller, 100000);
        Fixture f;
        f.write("setup.run", "of an earlier download");
        mevo::SettingsFile().setValue("InstallerFile", "setup.run");
        ScriptedAnswer &answer = f.server.fallback;
        if (kind == "404" || kind == "500") {
            answer = ScriptedAnswer::body("a page", kind.toInt());
        } else if (kind == "empty") {
            answer = ScriptedAnswer::body("");
        } else if (kind == "cut") {
            answer = ScriptedAnswer::cut("half", 1000);
        } else if (kind == "garbage") {
            answer = ScriptedAnswer::raw("garbage\r\n\r\n");
        } else if (kind == "dead") {
            f.server.close();
        } else if (kind == "large") {
            answer = ScriptedAnswer::enormous(200000);
        } else if (kind == "flood") {
            answer =
                ScriptedAnswer::raw("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" + QByteArray(200000, 'x'));
        } else {
            answer = redirect(kind == "loop" ? QByteArray("/again/x.run") : kind);
        }
        f.run("/setup.run");
        QCOMPARE(f.files(), QStringList{"setup.run=of an earlier download"}); // replaced by a whole one alone
        QCOMPARE(f.host.calls.size(), 2);
        QVERIFY2(f.host.calls.last().startsWith(told), qPrintable(f.host.calls.last()));
        QVERIFY(f.host.hidden);
        QVERIFY(f.server.requests.size() <= ThirdPartyVoiceInput::mostRedirects + 1);
    }

    void redirects_data()
    {
        const Rows<QByteArray, QByteArray> row; // target, asked
        row("relative", QByteArray("other/x.bin"), QByteArray("/dir/other/x.bin"));
        row("absolute", QByteArray("/y"), QByteArray("/y"));
    }
    /// The name stays that of the row, and nothing of the first answer is left.
    void redirects()
    {
        const auto [target, asked] = rowOf<QByteArray, QByteArray>();
        Fixture f;
        f.server.enqueue(redirect(target));
        f.server.enqueue(ScriptedAnswer::body("ok"));
        f.run("/dir/setup.deb");
        QCOMPARE(f.files(), QStringList{"setup.deb=ok"});
        QCOMPARE(f.server.requests.last().target, asked);
    }

    void whatStandsThere_data()
    {
        const Rows<QString, QString, bool> row; // name, known (begun before), fetched
        row("an earlier installer", "setup.run", "setup.run", true);
        row("a rest of one", "setup.run.part", "setup.run", true);
        row("somebody's file", "setup.run", "", false);
        row("somebody's file, another installer", "setup.run", "other.run", false);
        row("somebody's part", "setup.run.part", "", false);
    }
    void whatStandsThere()
    {
        const auto [name, known, fetched] = rowOf<QString, QString, bool>();
        Fixture f;
        f.write(name, "before");
        mevo::SettingsFile().setValue("InstallerFile", known);
        f.server.enqueue(ScriptedAnswer::body("new"));
        f.run("/setup.run");
        QCOMPARE(f.files(), QStringList{fetched ? QString("setup.run=new") : name + "=before"});
        QCOMPARE(f.host.calls.contains("show"), fetched);
        if (!fetched) {
            QVERIFY(f.host.calls[0].startsWith("tell Impossible to save the file "));
            QVERIFY(f.server.requests.isEmpty());
        }
    }

    void noName()
    {
        Fixture f;
        f.run("/dir/");
        QVERIFY(f.host.calls[0].startsWith("tell File http://127.0.0.1"));
        QVERIFY(f.host.calls[0].endsWith(" is not present."));
        QVERIFY(f.files().isEmpty() && f.server.requests.isEmpty());
    }

    void noWebAddress()
    {
        Fixture f;
        f.write("other", "a file of the computer");
        f.download->Start(QUrl::fromLocalFile(f.folder.filePath("other")));
        QVERIFY(!f.download->isBusy());
        QVERIFY(f.host.calls[0].startsWith("tell File file://"));
        QCOMPARE(f.files().size(), 1);
    }

    void noFolder()
    {
        Fixture f;
        ThirdPartyVoiceInput download(f.service, f.host, f.folder.filePath("none"), false);
        download.Start(f.server.url("/setup.run"));
        QVERIFY(!download.isBusy());
        QVERIFY(f.host.calls.last().startsWith("tell Impossible to save the file "));
    }

    void cancelled_data() { flagRows("half way", "at 0%"); }
    void cancelled()
    {
        const auto [begun] = rowOf<bool>();
        Fixture f;
        f.server.fallback =
            begun ? ScriptedAnswer{"HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nhalf", false, false, 0}
                  : ScriptedAnswer::silence();
        f.download->Start(f.server.url("/setup.run"));
        QTRY_COMPARE(f.server.requests.size(), 1);
        if (begun) {
            QTRY_COMPARE(f.files(), QStringList{"setup.run.part=half"});
        }
        f.download->on_CancelDownload();
        QVERIFY(!f.download->isBusy() && f.host.hidden);
        QVERIFY(f.files().isEmpty());
        QCOMPARE(f.host.calls, (QStringList{"show", "cancelled"}));
        f.download->on_CancelDownload(); // once more: nothing
        QCOMPARE(f.host.calls.size(), 2);
        f.server.fallback = ScriptedAnswer::body("new"); // and the next one is not hindered
        f.run("/setup.run");
        QCOMPARE(f.files(), QStringList{"setup.run=new"});
    }

    void endsWithTheProgram()
    {
        Fixture f;
        f.server.fallback = ScriptedAnswer::silence();
        f.download->Start(f.server.url("/setup.run"));
        QTRY_COMPARE(f.server.requests.size(), 1);
        f.download.reset();
        QVERIFY(f.files().isEmpty());
        QCOMPARE(f.host.calls, QStringList{"show"});
    }

    void oneAtATime()
    {
        Fixture f;
        f.server.enqueue(ScriptedAnswer::late(ScriptedAnswer::body("first")));
        f.download->Start(f.server.url("/first"));
        f.download->Start(f.server.url("/second"));
        QTRY_COMPARE(f.server.requests.size(), 1);
        f.server.answerHeld();
        QTRY_VERIFY(!f.download->isBusy());
        QCOMPARE(f.files(), QStringList{"first=first"});
    }
};

QTEST_GUILESS_MAIN(TestInstaller)
#include "tst_installer.moc"
