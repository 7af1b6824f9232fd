#include "base/RuntimeLock.h"
#include "support/Rows.h"
#include "support/Signed.h"
#include "update/DownloadSetting.h"
#include "update/StartReport.h"
#include "update/UnfinishedUpdate.h"
#include "update/UpdateAddress.h"
#include "update/UpdateQuestion.h"
#include "update/UpdateSignature.h"
#include "update/VersionFile.h"

#include <QTemporaryDir>
#include <QtTest>

using mevo::UpdateMode;
using mevo::UpdateStep;

class TestUpdateDecisions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void versionFile_data()
    {
        const Rows<QByteArray, int, bool, QString> row; // content, version (0: refused), all, name
        const auto good = [&](const char *title, const QByteArray &content, int version, bool all,
                              const char *name) {
            row(title, content, version, all, QString::fromUtf8(name));
        };
        good("whole", "108;;All;;MEVO-1.08.tar.xz", 108, true, "MEVO-1.08.tar.xz");
        good("patch with line end", "207;;Part;;p.tar.xz\r\n", 207, false, "p.tar.xz");
        good("more fields", "108;;All;;a.tar.xz;;;;future", 108, true, "a.tar.xz");
        good("a name in Chinese", "108;;All;;灵犀听写.tar.xz", 108, true, "灵犀听写.tar.xz");
        const auto bad = [&](const char *title, const QByteArray &content) {
            row(title, content, 0, false, QString());
        };
        bad("empty", "");
        bad("two fields", "108;;All");
        bad("one separator", "108;All;a.tar.xz");
        bad("two digits", "99;;All;;a.tar.xz");
        bad("four digits", "1080;;All;;a.tar.xz");
        bad("no number", "1x8;;All;;a.tar.xz");
        bad("a sign", "+18;;All;;a.tar.xz");
        bad("digits of another script", "١٠٨;;All;;a.tar.xz");
        bad("unknown mode", "108;;all;;a.tar.xz");
        bad("no name", "108;;All;;");
        bad("a path up", "108;;All;;../a.tar.xz");
        bad("a path down", "108;;All;;x/a.tar.xz");
        bad("a path of Windows", "108;;All;;x\\a.tar.xz");
        bad("absolute", "108;;All;;/tmp/a.tar.xz");
        bad("hidden", "108;;All;;.a.tar.xz");
        bad("another kind of file", "108;;All;;PatchRunner");
        bad("a line more in it", "108;;All;;a\nExeName=b.tar.xz");
        bad("a zero byte", QByteArray("108;;All;;a\0.tar.xz", 19));
        bad("an endless name", "108;;All;;" + QByteArray(200, 'a') + ".tar.xz");
        bad("a page", "<html><body>;;;;;;</body></html>");
        bad("a megabyte", "108;;All;;a.tar.xz;;" + QByteArray(1 << 20, ' '));
        bad("a short checksum", "108;;All;;a.tar.xz;;abcd");
        bad("a checksum that is none", "108;;All;;a.tar.xz;;" + QByteArray(64, 'g'));
    }
    void versionFile()
    {
        const auto [content, version, all, name] = rowOf<QByteArray, int, bool, QString>();
        const auto file = mevo::parseVersionFile(content);
        QCOMPARE(file.has_value(), version != 0);
        if (file) {
            QCOMPARE(file->version, version);
            QCOMPARE(file->mode == UpdateMode::All, all);
            QCOMPARE(file->fileName, name);
            QVERIFY(file->sha256.isEmpty());
        }
    }
    void versionFileWithChecksum()
    {
        const auto file = mevo::parseVersionFile("108;;All;;a.tar.xz;;" + QByteArray(64, 'A') + "\n");
        QVERIFY(file);
        QCOMPARE(file->sha256, QByteArray(64, 'a'));
    }

    void archiveVersion_data()
    {
        const Rows<QByteArray, int> row; // content, version (0: none)
        row("with a line end", QByteArray("108\n"), 108);
        row("bare", QByteArray("999"), 999);
        row("empty", QByteArray(), 0);
        row("two", QByteArray("108\n109\n"), 0);
        row("four digits", QByteArray("1080"), 0);
        row("a sign", QByteArray("+18"), 0);
        row("a megabyte", QByteArray(1 << 20, ' ') + "108", 0);
    }
    void archiveVersion()
    {
        const auto [content, version] = rowOf<QByteArray, int>();
        QCOMPARE(mevo::parseArchiveVersion(content).value_or(0), version);
    }

    void steps_data()
    {
        const Rows<int, bool, bool, int> row; // offered, manual, notified, step
        row("newer", 108, false, false, int(UpdateStep::Ask));
        row("newer, a notice stands", 108, false, true, int(UpdateStep::Ask));
        row("equal", 107, false, false, int(UpdateStep::Nothing));
        row("older", 99, false, true, int(UpdateStep::Nothing));
        row("settings, equal", 107, true, true, int(UpdateStep::ClearNotice));
        row("settings, newer", 108, true, false, int(UpdateStep::ShowNotice));
        row("the notice clicked", 200, true, true, int(UpdateStep::Ask));
    }
    void steps()
    {
        const auto [offered, manual, notified, step] = rowOf<int, bool, bool, int>();
        mevo::VersionFile file;
        file.version = offered;
        QCOMPARE(int(mevo::updateStep(file, 107, manual, notified)), step);
    }

    void addresses_data()
    {
        const Rows<QString, bool, QString, QString> row; // serverVersion, manual, first, second
        const QString path = "/Update/Z19/107/PenPad/ORVAppVer.txt"_s;
        const QString own = "https://down.example"_s;
        row("automatic", QString(), false, "http://v/NewVersion" + path, "http://v1/NewVersion" + path);
        row("manual", QString(), true, "http://m/NewVersion_Manual" + path,
            "http://m1/NewVersion_Manual" + path);
        row("automatic, the server's", own, false, own + "/NewVersion" + path, "http://v1/NewVersion" + path);
        row("manual, the server's", own, true, own + "/NewVersion_Manual" + path,
            "http://m1/NewVersion_Manual" + path);
        row("no address", "107", false, QString(), "http://v1/NewVersion" + path);
        row("a file", "file:///etc", false, QString(), "http://v1/NewVersion" + path);
    }
    void addresses()
    {
        const auto [serverVersion, manual, first, second] = rowOf<QString, bool, QString, QString>();
        mevo::BackendEndpoints endpoints;
        endpoints.VersionCheckUrl = "http://v/NewVersion"_s;
        endpoints.VersionCheckUrl1 = "http://v1/NewVersion"_s;
        endpoints.ManualDownloadUrl = "http://m/NewVersion_Manual"_s;
        endpoints.ManualDownloadUrl1 = "http://m1/NewVersion_Manual"_s;
        const auto bases = mevo::updateBases(serverVersion, manual, endpoints);
        const QString file = "ORVAppVer.txt"_s;
        QCOMPARE(mevo::updateUrl(bases.first, 107, file).toString(), first);
        QCOMPARE(mevo::updateUrl(bases.second, 107, file).toString(), second);
    }

    void downloadSetting_data()
    {
        const Rows<QByteArray, bool> row; // content, good
        const QByteArray rest = "UpdaterName=a.tar.xz\nMode=Part\nVersion=108\n";
        row("all keys", "[Set]\nExeName=App/mevoinput\nSha256=ab\nUpdateKey=k=\n" + rest, true);
        row("order and line ends",
            QByteArray("[Other]\r\nMode=x\r\n[Set]\r\nMode = Part\r\nExeName="
                       "App/mevoinput\r\nUpdaterName=a.tar.xz\r\nVersion=108\r\nSha256=ab\r\n"
                       "UpdateKey=k=\r\n"),
            true);
        row("no program", "[Set]\n" + rest, false);
        row("program elsewhere", "[Set]\nExeName=../mevoinput\n" + rest, false);
        row("program at the root", "[Set]\nExeName=/mevoinput\n" + rest, false);
        row("program too deep", "[Set]\nExeName=a/b/mevoinput\n" + rest, false);
        row("no mode", QByteArray("[Set]\nExeName=A/m\nVersion=108\nUpdaterName=a.tar.xz\n"), false);
        row("no version", QByteArray("[Set]\nExeName=A/m\nMode=All\nUpdaterName=a.tar.xz\n"), false);
        row("a version that is none", "[Set]\nExeName=A/m\n" + QByteArray(rest).replace("108", "new"), false);
        row("archive elsewhere",
            QByteArray("[Set]\nExeName=A/m\nMode=All\nVersion=108\nUpdaterName=../a.tar.xz\n"), false);
        row("another group", "[Sets]\nExeName=A/m\n" + rest, false);
        row("garbage", QByteArray::fromHex("00ff5b5365745d0aff"), false);
    }
    void downloadSetting()
    {
        const auto [content, good] = rowOf<QByteArray, bool>();
        const auto setting = mevo::parseDownloadSetting(content);
        QCOMPARE(setting.has_value(), good);
        if (setting) {
            QCOMPARE(
                mevo::downloadSettingText(*setting),
                QByteArray(
                    "[Set]\nUpdaterName=a.tar.xz\nMode=Part\nExeName=App/mevoinput\nVersion=108\nSha256=ab\n"
                    "UpdateKey=k=\n"));
        }
    }

    /// What an update has left at a start, and what becomes of it.
    void updateRest_data()
    {
        // setting, also ("pending", "part", "folder" in the place of the part, "updater"), told (version, 0
        // for half a download, -1 for nothing), expected
        const Rows<QByteArray, QString, int, QStringList> row;
        const QByteArray setting =
            "[Set]\nUpdaterName=a.tar.xz\nMode=All\nExeName=App/mevoinput\nVersion=108\n";
        QByteArray equal = setting, another = setting;
        equal.replace("108", "107");
        another.replace("App/", "Other/");
        const QStringList rest{".update-new", "DownloadSetting.ini", "a.tar.xz"};
        const QStringList nothing;
        const QString alone;
        row("none", QByteArray(), alone, -1, nothing);
        row("newer", setting, alone, 108, rest);
        row("signed", setting + "UpdateKey=key\n", alone, 108, rest + QStringList{"a.tar.xz.sig"});
        row("installed, its updater killed", equal, alone, -1, rest);
        row("the updater looks at this start", setting, "pending"_s, -1, nothing);
        row("an updater is at work", setting, "updater part"_s, -1, nothing);
        row("of another program", another, alone, -1, nothing);
        row("unusable", QByteArray("[Set]\nVersion=108\n"), alone, -1, nothing);
        row("half a download", QByteArray(), "part"_s, 0, QStringList{".update-part"});
        row("half a download of the next", setting, "part"_s, 108,
            QStringList{".update-new", ".update-part"} + rest.mid(1));
        row("a folder of the user's", QByteArray(), "folder"_s, -1, nothing);
    }
    void updateRest()
    {
        const auto [setting, also, told, expected] = rowOf<QByteArray, QString, int, QStringList>();
        const QTemporaryDir base, runtime;
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime.path()));
        const auto write = [&base](const QString &name, const QByteArray &content) {
            QDir().mkpath(QFileInfo(base.filePath(name)).path());
            QFile file(base.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        };
        write("App/mevoinput", "program");
        write("a.tar.xz", "archive");
        write("a.tar.xz.sig", "signature");
        write("mine.tar.xz", "the user's");
        write("outside/kept", "x");
        write(".update-new/data/1", "half");
        QVERIFY(QFile::link(base.filePath("outside"), base.filePath(".update-new/link")));
        if (!setting.isEmpty()) {
            write("DownloadSetting.ini", setting);
        }
        if (also.contains("pending")) {
            write("App/" + mevo::updatePendingFile, "1");
        }
        if (also.contains("part")) {
            write(".update-part", "half");
        }
        if (also.contains("folder")) {
            QVERIFY(QDir(base.path()).mkdir(".update-part"));
        }
        mevo::RuntimeLock updater(mevo::updaterLockName);
        QVERIFY(!also.contains("updater") || updater.acquire(0));
        const auto files = [&base] {
            const QStringList names =
                QDir(base.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
            return QSet<QString>(names.begin(), names.end());
        };
        const QSet<QString> before = files();
        const QString program = base.filePath("App/mevoinput");
        const auto unfinished = mevo::clearUpdateRest(program, 107);
        QCOMPARE(unfinished ? unfinished->version : -1, told);
        QSet<QString> gone = before - files();
        QStringList goneNames(gone.begin(), gone.end());
        goneNames.sort();
        QCOMPARE(goneNames, expected);
        QVERIFY(QFile::exists(base.filePath("outside/kept")) && QFile::exists(program));
        QVERIFY(!mevo::clearUpdateRest(program, 107)); // it is told once
    }

    void theStartIsReported()
    {
        const QTemporaryDir folder;
        const QString pending = folder.filePath(mevo::updatePendingFile);
        QVERIFY(QFile(pending).open(QIODevice::WriteOnly));
        mevo::reportStart(folder.path());
        QVERIFY(!QFile::exists(pending));
        QVERIFY(QDir().mkdir(pending)); // which is no file to be removed
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("cannot be told: .+"));
        mevo::reportStart(folder.path());
    }

    /// Where a link stands in the place of the folder, what it leads to stays.
    void updateRestBehindALink()
    {
        const QTemporaryDir base, runtime;
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime.path()));
        QVERIFY(QDir(base.path()).mkpath("App") && QDir(base.path()).mkpath("mine/folder"));
        QVERIFY(QFile::link(base.filePath("mine"), base.filePath(".update-new")));
        QFile file(base.filePath("DownloadSetting.ini"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[Set]\nUpdaterName=a.tar.xz\nMode=All\nExeName=App/mevoinput\nVersion=108\n");
        file.close();
        QVERIFY(mevo::clearUpdateRest(base.filePath("App/mevoinput"), 107));
        QVERIFY(QFileInfo(base.filePath("mine/folder")).isDir() && !file.exists());
    }

    void signatures()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath("a.tar.xz"_s);
        const QByteArray content(100000, 'u');
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        const auto [key, signature] = Signed(content);
        const QString base64 = QString::fromLatin1(key.toBase64());
        QVERIFY(mevo::isSignedBy(path, signature, base64));
        QVERIFY(mevo::isSignedBy(path, signature.toBase64() + "\n", base64));
        QByteArray other = signature;
        other[10] = char(other[10] ^ 1);
        QVERIFY(!mevo::isSignedBy(path, other, base64));
        QVERIFY(!mevo::isSignedBy(path, signature.left(63), base64));
        QVERIFY(!mevo::isSignedBy(path, {}, base64));
        QVERIFY(!mevo::isSignedBy(path, signature, QString::fromLatin1(QByteArray(32, 'k').toBase64())));
        for (const char *noKey : {"", "no key", "AAAA"}) {
            QVERIFY(!mevo::isSignedBy(path, signature, QLatin1String(noKey)));
        }
        QVERIFY(!mevo::isSignedBy(folder.filePath("none"_s), signature, base64));
        QVERIFY(file.open(QIODevice::Append));
        file.write("x");
        file.close();
        QVERIFY(!mevo::isSignedBy(path, signature, base64));
    }
};

QTEST_GUILESS_MAIN(TestUpdateDecisions)
#include "tst_update_decisions.moc"
