#include "base/RuntimePath.h"

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
        QTest::addColumn<QString>("session"); ///< what the session says
        QTest::addColumn<int>("mode");        ///< of the user's folder; -1 where there is none
        QTest::addColumn<QString>("folder");
        const QString none;
        const QString session = QStringLiteral("session");
        const QString user = QStringLiteral("user");
        QTest::newRow("the session's own") << session << 0700 << session;
        QTest::newRow("a job without a session") << none << 0700 << user;
        QTest::newRow("a session whose folder is not there") << QStringLiteral("gone") << 0700 << user;
        QTest::newRow("others may look") << none << 0755 << none;
        QTest::newRow("others may write") << none << 0722 << none;
        QTest::newRow("no such folder") << none << -1 << none;
    }
    void whoIsToldNothingFindsTheUsersFolder()
    {
        QFETCH(QString, session);
        QFETCH(int, mode);
        QFETCH(QString, folder);
        const QTemporaryDir scratch;
        const auto path = [&scratch](const QString &name) {
            return name.isEmpty() ? QString() : scratch.filePath(name);
        };
        QVERIFY(QDir(scratch.path()).mkdir(QStringLiteral("session")));
        const QString user = scratch.filePath(QStringLiteral("user"));
        if (mode >= 0) {
            QVERIFY(QDir(scratch.path()).mkdir(QStringLiteral("user")));
            QCOMPARE(chmod(QFile::encodeName(user).constData(), mode_t(mode)), 0);
        }
        QCOMPARE(mevo::runtimeFolder(path(session), user), path(folder));
    }

    void whatIsNoFolderOfOursIsNotTaken()
    {
        const QTemporaryDir scratch;
        const QString real = scratch.filePath(QStringLiteral("real"));
        const QString link = scratch.filePath(QStringLiteral("link"));
        QVERIFY(QDir(scratch.path()).mkdir(QStringLiteral("real")));
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
