#include "base/RuntimePath.h"
#include "support/Rows.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

class TestRuntimePath : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whoIsToldNothingFindsTheUsersFolder_data()
    {
        // session (what the session says), mode (of the user's folder; -1 where there is none), folder
        const Rows<QString, int, QString> row;
        const QString none;
        const QString session = "session"_s;
        const QString user = "user"_s;
        row("the session's own", session, 0700, session);
        row("a job without a session", none, 0700, user);
        row("a session whose folder is not there", "gone", 0700, user);
        row("others may look", none, 0755, none);
        row("others may write", none, 0722, none);
        row("no such folder", none, -1, none);
    }
    void whoIsToldNothingFindsTheUsersFolder()
    {
        const auto [session, mode, folder] = rowOf<QString, int, QString>();
        const QTemporaryDir scratch;
        const auto path = [&scratch](const QString &name) {
            return name.isEmpty() ? QString() : scratch.filePath(name);
        };
        QVERIFY(QDir(scratch.path()).mkdir("session"_s));
        const QString user = scratch.filePath("user"_s);
        if (mode >= 0) {
            QVERIFY(QDir(scratch.path()).mkdir("user"_s));
            QCOMPARE(chmod(QFile::encodeName(user).constData(), mode_t(mode)), 0);
        }
        QCOMPARE(mevo::runtimeFolder(path(session), user), path(folder));
    }

    void whatIsNoFolderOfOursIsNotTaken()
    {
        const QTemporaryDir scratch;
        const QString real = scratch.filePath("real"_s);
        const QString link = scratch.filePath("link"_s);
        QVERIFY(QDir(scratch.path()).mkdir("real"_s));
        QCOMPARE(chmod(QFile::encodeName(real).constData(), 0700), 0);
        QVERIFY(QFile::link(real, link));
        QCOMPARE(mevo::runtimeFolder({}, link), QString());
        if (geteuid() == 0) { // only root can give it away
            constexpr uid_t nobody = 65534;
            QCOMPARE(chown(QFile::encodeName(real).constData(), nobody, nobody), 0);
            QCOMPARE(mevo::runtimeFolder({}, real), QString());
        }
    }
};

QTEST_APPLESS_MAIN(TestRuntimePath)
#include "tst_runtime_path.moc"
