#include "base/RuntimeLock.h"
#include "base/RuntimePath.h"
#include "patchrunner/UpdateRun.h"
#include "support/Rows.h"
#include "support/Signed.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include <cerrno>
#include <clocale>
#include <csignal>
#include <cstring>
#include <thread>

#include <archive.h>
#include <archive_entry.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/file.h>
#include <sys/mount.h>

using mevo::patchrunner::Outcome;
using mevo::patchrunner::runUpdate;

namespace {

struct Member
{
    QByteArray name;
    QByteArray content = {};
    unsigned type = AE_IFREG;
    QByteArray link = {};
    int mode = 0644;
};

QByteArray packed(const QList<Member> &members, int filter = ARCHIVE_FILTER_XZ)
{
    QByteArray result(16 << 20, '\0');
    std::size_t used = 0;
    archive *writer = archive_write_new();
    archive_write_add_filter(writer, filter);
    archive_write_set_format_pax_restricted(writer);
    archive_write_open_memory(writer, result.data(), std::size_t(result.size()), &used);
    for (const Member &member : members) {
        archive_entry *entry = archive_entry_new();
        archive_entry_set_pathname_utf8(entry, member.name.constData());
        archive_entry_set_filetype(entry, member.type);
        archive_entry_set_perm(entry, mode_t(member.mode));
        archive_entry_set_size(entry, member.content.size());
        if (member.type == AE_IFLNK) {
            archive_entry_set_symlink(entry, member.link.constData());
        } else if (!member.link.isEmpty()) {
            archive_entry_set_hardlink(entry, member.link.constData());
        }
        archive_write_header(writer, entry);
        archive_write_data(writer, member.content.constData(), std::size_t(member.content.size()));
        archive_entry_free(entry);
    }
    archive_write_close(writer);
    archive_write_free(writer);
    return result.left(int(used));
}

/// A program that says which version was started and comes up, unless `end` does something else.
Member program(const QByteArray &version, const QByteArray &end = "rm -f UpdatePending\n")
{
    return {"mevoinput", "#!/bin/sh\necho " + version + " >> ../started\n" + end, AE_IFREG, {}, 0755};
}

constexpr int dataFiles = 20;

QByteArray dataContent(const QByteArray &version, int number)
{
    return version + QByteArray(30000, char('a' + number));
}

const Member offeredVersion{"UpdateVersion", "108\n"};

QList<Member> wholeVersion(const QByteArray &version, const Member &number = offeredVersion)
{
    QList<Member> members{{"./", {}, AE_IFDIR, {}, 0755}, program(version), number};
    for (int i = 0; i < dataFiles; ++i) {
        members += Member{"data/" + QByteArray::number(i), dataContent(version, i)};
    }
    members += Member{"lib/libx.so", {}, AE_IFLNK, "../data/0"};
    members += Member{"MEVOSetting.ini", "[MainSetting]\nfrom=archive\n"};
    members += Member{"New.ini", "shipped"};
    return members;
}

const QByteArray users = "[MainSetting]\nmine=1\n";

/// A portable installation of version "old" in a folder of its own, and an update that waits.
struct Installation
{
    QTemporaryDir own;
    QString base;

    explicit Installation(const QString &where = {})
        : base(where.isEmpty() ? own.path() : where)
    {
        write("App/mevoinput", program("old").content);
        QFile(base + "/App/mevoinput").setPermissions(QFile::Permissions(0x7755));
        for (int i = 0; i < dataFiles; ++i) {
            write("App/data/" + QString::number(i), dataContent("old", i));
        }
        write("App/MEVOSetting.ini", users);
        write("App/UpdateVersion", "108\n");
        write("App/log/1.log", "said");
        write("App/mine/note.txt", "kept");
        QFile::link("../elsewhere.ini", base + "/App/linked.ini");
    }
    void write(const QString &name, const QByteArray &content) const
    {
        QDir().mkpath(QFileInfo(base + "/" + name).path());
        QFile file(base + "/" + name);
        QVERIFY2(file.open(QIODevice::WriteOnly) && file.write(content) == content.size(), qPrintable(name));
    }
    QByteArray read(const QString &name) const
    {
        QFile file(base + "/" + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void offer(const QByteArray &archive, const QByteArray &more = {}, const QByteArray &mode = "All") const
    {
        write("a.tar.xz", archive);
        write("DownloadSetting.ini",
              "[Set]\nUpdaterName=a.tar.xz\nMode=" + mode + "\nExeName=App/mevoinput\nVersion=108\n" + more);
    }
    /// "old" or "new" when the program's folder holds that version whole, and what the user has there with
    /// it.
    QString version() const
    {
        const QString line = read("App/mevoinput").split('\n').value(1);
        const QByteArray name = line.contains("new") ? "new" : "old";
        if (!QFileInfo(base + "/App/mevoinput").isExecutable()) {
            return "no program";
        }
        for (int i = 0; i < dataFiles; ++i) {
            if (read("App/data/" + QString::number(i)) != dataContent(name, i)) {
                return "mixed";
            }
        }
        const bool kept = read("App/MEVOSetting.ini") == users && read("App/log/1.log") == "said" &&
                          read("App/mine/note.txt") == "kept" &&
                          QFile::symLinkTarget(base + "/App/linked.ini").endsWith("/elsewhere.ini");
        return kept ? QString::fromLatin1(name) : "the user's files are gone";
    }
    QStringList left() const
    {
        QStringList names = QDir(base).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        for (const char *expected : {"App", "started", "PatchRunner", "PatchRunner.log"}) {
            names.removeAll(expected);
        }
        return names;
    }
    /// The versions that were started, when there are that many; the last start may still be under way.
    QByteArray started(int count) const
    {
        [&] { QTRY_COMPARE(read("started").count('\n'), count); }();
        return read("started").replace('\n', ' ').trimmed();
    }
};

/// A small file system for this process alone; nothing is mounted where that is not allowed.
struct OwnDisk
{
    QTemporaryDir folder;
    bool mounted = false;
    QString refusal; ///< why nothing is mounted
    explicit OwnDisk(const char *options)
    {
        mounted = unshare(CLONE_NEWNS) == 0 &&
                  mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                  mount("tmpfs", folder.path().toLocal8Bit().constData(), "tmpfs", 0, options) == 0;
        refusal = QString::fromLocal8Bit(std::strerror(errno));
    }
    ~OwnDisk()
    {
        if (mounted) {
            umount2(folder.path().toLocal8Bit().constData(), MNT_DETACH);
        }
    }
    bool makeReadOnly() const
    {
        return mount("tmpfs", folder.path().toLocal8Bit().constData(), nullptr, MS_REMOUNT | MS_RDONLY,
                     nullptr) == 0;
    }
};

} // namespace

class TestPatchRunner : public QObject
{
    Q_OBJECT

    QTemporaryDir m_runtime;

private Q_SLOTS:
    void initTestCase() { qputenv("XDG_RUNTIME_DIR", m_runtime.path().toLocal8Bit()); }

    void whole()
    {
        Installation installation;
        installation.offer(
            packed(wholeVersion("new") + QList<Member>{{"PatchRunner", "new one", AE_IFREG, {}, 0755}}));
        installation.write("PatchRunner", "old one");
        const auto report = runUpdate(installation.base);
        QVERIFY2(report.outcome == Outcome::Done, qPrintable(report.detail));
        QCOMPARE(installation.version(), "new");
        QCOMPARE(installation.read("App/New.ini"), QByteArray("shipped"));
        QCOMPARE(installation.read("App/lib/libx.so"), dataContent("new", 0));
        QCOMPARE(installation.read("PatchRunner"), QByteArray("new one"));
        QCOMPARE(installation.left(), QStringList());
        QCOMPARE(installation.started(1), QByteArray("new"));
        // The program has ended for an update that is not there: it goes on all the same.
        QVERIFY(runUpdate(installation.base).outcome == Outcome::NothingToDo);
        QCOMPARE(installation.started(2), QByteArray("new new"));
        installation.write("DownloadSetting.ini", "[Set]\nUpdaterName=../x\n");
        const int held = open(m_runtime.filePath("mevoinput.lock").toLocal8Bit().constData(),
                              O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        QVERIFY(flock(held, LOCK_EX) == 0);
        QVERIFY(runUpdate(installation.base, {50, 50}).outcome == Outcome::NothingToDo); // it runs
        close(held);
        QVERIFY(runUpdate(installation.base).outcome == Outcome::NothingToDo);
        QCOMPARE(installation.started(3), QByteArray("new new new"));
    }

    /// Also in a session whose locale has other letters than those of a name in the archive.
    void part_data()
    {
        QTest::addColumn<QByteArray>("locale");
        QTest::newRow("UTF-8") << QByteArray("C.UTF-8");
        QTest::newRow("none") << QByteArray("C");
    }
    void part()
    {
        QFETCH(QByteArray, locale);
        const QByteArray before = setlocale(LC_CTYPE, nullptr);
        const auto restore = qScopeGuard([&] { setlocale(LC_CTYPE, before.constData()); });
        setlocale(LC_CTYPE, "C.UTF-8");
        Installation installation;
        installation.offer(packed({{"extra/声音", "x"}, offeredVersion}), {}, "Part");
        setlocale(LC_CTYPE, locale.constData());
        const auto report = runUpdate(installation.base);
        QVERIFY2(report.outcome == Outcome::Done, qPrintable(report.detail));
        QCOMPARE(installation.version(), "old");
        QCOMPARE(installation.read("App/extra/声音"), QByteArray("x"));
        QCOMPARE(installation.started(1), QByteArray("old"));
    }

    void refused_data()
    {
        const Rows<QByteArray, int> add; // archive, outcome
        const auto with = [](const Member &member) {
            return packed(wholeVersion("new") + QList<Member>{member});
        };
        const auto row = [&](const char *name, const QByteArray &archive,
                             Outcome outcome = Outcome::BadArchive) { add(name, archive, int(outcome)); };
        row("a member above", with({"../evil", "x"}));
        row("a member above, through a folder", with({"data/../../evil", "x"}));
        row("an absolute member", with({"/tmp/mevo-evil", "x"}));
        row("a folder above", with({"../evil/", {}, AE_IFDIR}));
        row("an absolute link", with({"l", {}, AE_IFLNK, "/etc/passwd"}));
        row("a link above", with({"lib/l", {}, AE_IFLNK, "../../started"}));
        row("a link to the folder itself", with({"lib/l", {}, AE_IFLNK, ".."}));
        row("a link that goes up later", with({"lib/l", {}, AE_IFLNK, "../data/../../App"}));
        row("a link to nothing", with({"l", {}, AE_IFLNK, "nothing"}));
        row("through a link",
            packed(wholeVersion("new") + QList<Member>{{"l", {}, AE_IFLNK, "data"}, {"l/x", "x"}}));
        row("through a link of links",
            packed(wholeVersion("new") + QList<Member>{{"d", {}, AE_IFLNK, "lib"}, {"d/../../x", "x"}}));
        row("a hard link", with({"h", {}, AE_IFREG, "mevoinput"}));
        row("a hard link to outside", with({"h", {}, AE_IFREG, "/etc/passwd"}));
        row("a pipe", with({"p", {}, AE_IFIFO}));
        row("a device", with({"d", {}, AE_IFCHR}));
        row("twice", with({"data/1", "x"}));
        row("a file as a folder", with({"mevoinput/x", "x"}));
        row("the mark of the updater", with({"UpdatePending", "x"}));
        row("a file where the user has a folder", with({"mine", "x"}), Outcome::Failed);
        row("a folder where the user has an INI file",
            packed({program("new"), offeredVersion, {"MEVOSetting.ini/x", "x"}}), Outcome::Failed);
        row("no program", packed({{"data/1", "x"}}));
        row("a program that cannot be run", packed({{"mevoinput", "x"}, offeredVersion}));
        row("another version than offered", packed(wholeVersion("new", {"UpdateVersion", "105\n"})));
        row("a version that is none", packed(wholeVersion("new", {"UpdateVersion", "108\n108"})));
        row("no version, though the old folder has one", packed(wholeVersion("new", {"data/x", "x"})));
        row("a program that is a link out",
            packed({{"mevoinput", {}, AE_IFLNK, "/bin/true"}, offeredVersion}));
        row("nothing in it", packed({}));
        const QByteArray good = packed(wholeVersion("new"));
        row("cut", good.left(good.size() / 2));
        row("cut at its end", good.left(good.size() - 20));
        QByteArray flipped = good;
        flipped[good.size() / 2] = char(flipped[good.size() / 2] ^ 4);
        row("a wrong checksum within", flipped);
        row("another compression", packed(wholeVersion("new"), ARCHIVE_FILTER_GZIP));
        row("none at all", packed(wholeVersion("new"), ARCHIVE_FILTER_NONE));
        row("empty", {});
        row("a page", "<html>not found</html>");
    }
    void refused()
    {
        const auto [archive, outcome] = rowOf<QByteArray, int>();
        Installation installation;
        installation.offer(archive);
        const auto report = runUpdate(installation.base);
        QVERIFY2(int(report.outcome) == outcome, qPrintable(report.detail));
        QCOMPARE(installation.version(), "old");
        QCOMPARE(installation.left(), QStringList());
        QCOMPARE(installation.started(1), QByteArray("old"));
        QVERIFY(!QFile::exists("/tmp/mevo-evil"));
    }

    void checksumsAndSignatures_data()
    {
        const Rows<QString, int> row; // kind, outcome
        row("checksum", "checksum", int(Outcome::Done));
        row("wrong checksum", "wrong checksum", int(Outcome::BadArchive));
        row("signed", "signed", int(Outcome::Done));
        row("not signed", "not signed", int(Outcome::BadSignature));
        row("signed by another", "another", int(Outcome::BadSignature));
    }
    void checksumsAndSignatures()
    {
        const auto [kind, outcome] = rowOf<QString, int>();
        Installation installation;
        const QByteArray archive = packed(wholeVersion("new"));
        QByteArray more;
        if (kind.contains("checksum")) {
            const QByteArray signedContent = kind == "checksum" ? archive : archive + "x";
            installation.write("a.tar.xz.sig", "the user's"); // nobody has asked for one
            more = "Sha256=" + QCryptographicHash::hash(signedContent, QCryptographicHash::Sha256).toHex() +
                   "\n";
        } else {
            const Signed made(archive);
            more = "UpdateKey=" + (kind == "another" ? QByteArray(32, 'k') : made.key).toBase64() + "\n";
            if (kind != "not signed") {
                installation.write("a.tar.xz.sig", made.signature);
            }
        }
        installation.offer(archive, more);
        QCOMPARE(int(runUpdate(installation.base).outcome), outcome);
        QCOMPARE(installation.version(), outcome == int(Outcome::Done) ? "new" : "old");
        QCOMPARE(installation.left(),
                 kind.contains("checksum") ? QStringList{"a.tar.xz.sig"} : QStringList());
    }

    /// A new version that does not come up: the old one is back, with everything that it had.
    void takenBack_data()
    {
        const Rows<Member, QByteArray> row; // program, started
        row("it ends", program("new", "echo broken > MEVOSetting.ini; exit 0\n"), QByteArray("new old"));
        row("it crashes", program("new", "kill -SEGV $$\n"), QByteArray("new old"));
        row("it hangs", program("new", "exec sleep 600\n"), QByteArray("new old"));
        row("it is none", Member{"mevoinput", "\nnew, but no program", AE_IFREG, {}, 0755},
            QByteArray("old"));
    }
    void takenBack()
    {
        const auto [program, started] = rowOf<Member, QByteArray>();
        Installation installation;
        QList<Member> members = wholeVersion("new");
        members[1] = program;
        installation.offer(packed(members));
        const auto report = runUpdate(installation.base, {1000, 1000});
        QVERIFY2(report.outcome == Outcome::NotStarted, qPrintable(report.detail));
        QCOMPARE(installation.version(), "old");
        QCOMPARE(installation.left(), QStringList());
        QCOMPARE(installation.started(started.count(' ') + 1), started);
        QVERIFY(!QFile::exists(installation.base + "/App/UpdatePending"));
    }

    /// A new version that neither comes up nor lets go: it stays, and is not said to be missing.
    void neitherUpNorEnded()
    {
        Installation installation;
        QList<Member> members = wholeVersion("new");
        // Locked before it forks: a lock that came behind the end of the script could be looked for too
        // early.
        members[1] = program("new", "exec 9> \"$XDG_RUNTIME_DIR/mevoinput.lock\"\nflock 9\nsleep 600 &\n"
                                    "echo $! > ../pid\n");
        installation.offer(packed(members));
        const auto report = runUpdate(installation.base, {1000, 4000, 100});
        const pid_t pid = installation.read("pid").trimmed().toInt();
        QVERIFY(pid > 0);
        ::kill(pid, SIGKILL);
        QVERIFY2(report.outcome == Outcome::Unconfirmed, qPrintable(report.detail));
        QCOMPARE(installation.version(), "new");
    }

    /// An updater that was killed after the exchange: the next run goes on there, and what it takes back is
    /// the old version, not the broken one.
    void takenUpAfterTheExchange()
    {
        Installation installation;
        QList<Member> members = wholeVersion("new");
        members[1] = program("new", "exit 1\n");
        installation.offer(packed(members));
        QVERIFY(QDir(installation.base).rename("App", ".update-new"));
        installation.write("App/mevoinput", members[1].content);
        QFile(installation.base + "/App/mevoinput").setPermissions(QFile::Permissions(0x7755));
        installation.write("App/UpdatePending", "1");
        QVERIFY(runUpdate(installation.base, {1000, 1000}).outcome == Outcome::NotStarted);
        QCOMPARE(installation.version(), "old");
        QCOMPARE(installation.left(), QStringList());
    }

    void waitsForTheEnd_data()
    {
        QTest::addColumn<QString>("lock");
        const QStringList paths = mevo::runtimePaths(mevo::programLockName, ".lock");
        QTest::newRow("in the runtime folder") << paths.first();
        QTest::newRow("in the common one, from before there was one") << paths.last();
    }

    void waitsForTheEnd()
    {
        QFETCH(QString, lock);
        Installation installation;
        installation.offer(packed(wholeVersion("new")));
        const int held = open(lock.toLocal8Bit().constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        QVERIFY(flock(held, LOCK_EX) == 0);
        QVERIFY(runUpdate(installation.base, {50, 1000}).outcome == Outcome::StillRunning);
        QCOMPARE(installation.version(), "old");
        QVERIFY(installation.read("started").isEmpty());
        std::thread running([held] {
            QThread::msleep(100); // the program's exit
            close(held);
        });
        QVERIFY(runUpdate(installation.base).outcome == Outcome::Done);
        running.join();
        QCOMPARE(installation.version(), "new");
    }

    /// Two at a time would take each other's work away.
    void oneAtATime()
    {
        Installation installation;
        installation.offer(packed(wholeVersion("new")));
        mevo::RuntimeLock other(mevo::updaterLockName);
        QVERIFY(other.acquire(0));
        mevo::patchrunner::RunTimes times;
        times.updaterMs = 0;
        QVERIFY(runUpdate(installation.base, times).outcome == Outcome::AnotherRuns);
        QCOMPARE(installation.version(), "old");
        QVERIFY(installation.read("started").isEmpty());
        other.release();
        QVERIFY(runUpdate(installation.base).outcome == Outcome::Done);
    }

    void fullDisk()
    {
        const OwnDisk disk("size=2m");
        if (!disk.mounted) {
            QSKIP(qPrintable("no mounts of one's own here: " + disk.refusal));
        }
        Installation installation(disk.folder.path());
        // Small enough to be fetched, too large to be unpacked.
        const QByteArray archive =
            packed(wholeVersion("new") + QList<Member>{{"zeros", QByteArray(3 << 20, '\0')}});
        installation.offer(archive);
        const auto report = runUpdate(installation.base);
        QVERIFY2(report.outcome == Outcome::NoSpace, qPrintable(report.detail));
        QCOMPARE(installation.version(), "old");
        QCOMPARE(installation.left(), QStringList());
        QCOMPARE(installation.started(1), QByteArray("old"));
    }

    void readOnly()
    {
        const OwnDisk disk("size=4m");
        if (!disk.mounted) {
            QSKIP(qPrintable("no mounts of one's own here: " + disk.refusal));
        }
        Installation installation(disk.folder.path());
        installation.offer(packed(wholeVersion("new")));
        if (!disk.makeReadOnly()) {
            QSKIP(qPrintable(QString("a mount cannot be made read-only here: %1").arg(std::strerror(errno))));
        }
        const auto report = runUpdate(installation.base);
        QVERIFY2(report.outcome == Outcome::ReadOnly, qPrintable(report.detail));
        QCOMPARE(installation.version(), "old");
    }

    /// The updater itself, killed at any moment: the folder holds one version whole, and the next run ends
    /// well.
    void killed()
    {
        const QByteArray archive = packed(wholeVersion("new"));
        const auto start = [](QProcess &process, const Installation &installation) {
            if (!QFile::exists(installation.base + "/PatchRunner")) {
                QVERIFY(QFile::copy(MEVO_PATCHRUNNER, installation.base + "/PatchRunner"));
            }
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.remove("DISPLAY");
            process.setProcessEnvironment(environment);
            process.setStandardErrorFile(QProcess::nullDevice());
            process.start(installation.base + "/PatchRunner", QStringList());
            QVERIFY(process.waitForStarted());
        };
        QElapsedTimer timer;
        qint64 wholeUs = 0;
        {
            Installation installation;
            installation.offer(archive);
            QProcess process;
            start(process, installation);
            timer.start();
            QVERIFY(process.waitForFinished());
            wholeUs = timer.nsecsElapsed() / 1000;
            QCOMPARE(process.exitCode(), 0);
            QCOMPARE(installation.version(), "new");
        }
        const quint32 seed = QRandomGenerator::global()->generate();
        QRandomGenerator random(seed);
        qInfo("a run takes %lld us; seed %u", wholeUs, seed);
        int newAfterKill = 0;
        for (int i = 0; i < 60; ++i) {
            Installation installation;
            installation.offer(archive);
            {
                QProcess process;
                start(process, installation);
                QThread::usleep(random.bounded(quint32(wholeUs)));
                process.kill();
                process.waitForFinished();
            }
            const QString version = installation.version();
            QVERIFY2(version == "old" || version == "new", qPrintable(version));
            newAfterKill += version == "new" ? 1 : 0;
            if (QFile::exists(installation.base + "/DownloadSetting.ini")) {
                QProcess process;
                start(process, installation);
                QVERIFY(process.waitForFinished());
                QCOMPARE(process.exitCode(), 0);
                QCOMPARE(installation.left(), QStringList());
            }
            QCOMPARE(installation.version(), "new");
        }
        qInfo("%d of 60 were killed after the exchange", newAfterKill);
    }
};

QTEST_GUILESS_MAIN(TestPatchRunner)
#include "tst_patchrunner.moc"
