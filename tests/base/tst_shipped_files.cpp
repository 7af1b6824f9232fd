#include "base/ShippedFiles.h"

#include <QDir>
#include <QLockFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {

void write(const QString &path, const QByteArray &content)
{
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
}

} // namespace

class TestShippedFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewerVersionComes_data()
    {
        QTest::addColumn<QByteArray>("users"); ///< what the user has made of the file; "one" is as it came
        QTest::addColumn<QByteArray>("notes"); ///< what has become of the notes; empty as they were
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("untouched") << QByteArray("one") << QByteArray() << QByteArray("two");
        QTest::newRow("edited") << QByteArray("mine") << QByteArray() << QByteArray("mine");
        QTest::newRow("emptied") << QByteArray("") << QByteArray() << QByteArray("");
        QTest::newRow("removed") << QByteArray("none") << QByteArray() << QByteArray("two");
        QTest::newRow("nothing noted") << QByteArray("one") << QByteArray("{}") << QByteArray("one");
        QTest::newRow("notes are damaged") << QByteArray("one") << QByteArray("{\"MEV") << QByteArray("one");
        QTest::newRow("notes of another form")
            << QByteArray("one") << QByteArray("{\"MEVOTable.ini\":[1]}") << QByteArray("one");
    }
    void aNewerVersionComes()
    {
        QFETCH(QByteArray, users);
        QFETCH(QByteArray, notes);
        const QTemporaryDir folder;
        const QString shipped = folder.filePath(QStringLiteral("share/MEVOTable.ini"));
        const QString target = folder.filePath(QStringLiteral("home"));
        const QString copy = target + QStringLiteral("/MEVOTable.ini");
        QVERIFY(QDir().mkpath(target));
        const auto start = [&] {
            mevo::bringShippedFiles({folder.filePath(QStringLiteral("share"))}, target);
        };
        write(shipped, "one");
        write(folder.filePath(QStringLiteral("share/other.ini")), "not ours");
        QVERIFY(QFile::setPermissions(shipped, QFile::ReadOwner));
        start();
        QCOMPARE(read(copy), QByteArray("one"));
        QVERIFY(QFile::permissions(copy) & QFile::WriteOwner);
        QVERIFY(!QFile::exists(target + QStringLiteral("/other.ini")));
        if (users == "none") {
            QVERIFY(QFile::remove(copy));
        } else {
            write(copy, users);
        }
        if (!notes.isEmpty()) {
            write(target + QStringLiteral("/MEVOShipped.json"), notes);
        }
        QVERIFY(QFile::remove(shipped));
        write(shipped, "two");
        for (int i = 0; i < 2; ++i) { // the second time there is nothing to be done
            start();
            QTEST(read(copy), "content");
        }
    }

    /// A folder that was filled before there were notes: what is the shipped file is known as such from then
    /// on.
    void anOlderFolderIsLookedAt()
    {
        const QTemporaryDir folder;
        const QString share = folder.filePath(QStringLiteral("share"));
        const QString target = folder.filePath(QStringLiteral("home"));
        for (const QString &place : {share, target}) {
            write(place + QStringLiteral("/MEVOTable.ini"), "one");
            write(place + QStringLiteral("/MEVOSetting.ini"), place == share ? "shipped" : "mine");
        }
        mevo::bringShippedFiles({share}, target);
        write(share + QStringLiteral("/MEVOTable.ini"), "two");
        write(share + QStringLiteral("/MEVOSetting.ini"), "shipped, two");
        mevo::bringShippedFiles({share}, target);
        QCOMPARE(read(target + QStringLiteral("/MEVOTable.ini")), QByteArray("two"));
        QCOMPARE(read(target + QStringLiteral("/MEVOSetting.ini")), QByteArray("mine"));
    }

    /// A package that is being installed, or a disk that was full: what the user has stays.
    void anEmptyFileIsNotBrought()
    {
        const QTemporaryDir folder;
        const QString share = folder.filePath(QStringLiteral("share"));
        const QString target = folder.filePath(QStringLiteral("home"));
        QVERIFY(QDir().mkpath(target));
        write(share + QStringLiteral("/MEVOTable.ini"), "one");
        write(share + QStringLiteral("/MEVOSetting.ini"), "");
        mevo::bringShippedFiles({share}, target);
        write(share + QStringLiteral("/MEVOTable.ini"), "");
        mevo::bringShippedFiles({share}, target);
        QCOMPARE(read(target + QStringLiteral("/MEVOTable.ini")), QByteArray("one"));
        QCOMPARE(read(target + QStringLiteral("/MEVOSetting.ini")), QByteArray("none"));
        write(share + QStringLiteral("/MEVOTable.ini"), "two");
        mevo::bringShippedFiles({share}, target);
        QCOMPARE(read(target + QStringLiteral("/MEVOTable.ini")), QByteArray("two"));
    }

    void oneProgramAtATime()
    {
        const QTemporaryDir folder;
        const QString share = folder.filePath(QStringLiteral("share"));
        write(share + QStringLiteral("/MEVOTable.ini"), "one");
        const QString copy = folder.filePath(QStringLiteral("MEVOTable.ini"));
        QLockFile other(folder.filePath(QStringLiteral("MEVOShipped.lock")));
        QVERIFY(other.lock());
        mevo::bringShippedFiles({share}, folder.path(), 0);
        QVERIFY(!QFile::exists(copy));
        other.unlock();
        mevo::bringShippedFiles({share}, folder.path(), 0);
        QCOMPARE(read(copy), QByteArray("one"));
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList({QStringLiteral("MEVOShipped.json"), QStringLiteral("MEVOTable.ini")}));
    }

    void theFirstFolderCounts()
    {
        const QTemporaryDir folder;
        const auto path = [&folder](const char *name) { return folder.filePath(QString::fromLatin1(name)); };
        write(path("program/MEVOTable.ini"), "beside the program");
        write(path("share/MEVOTable.ini"), "shared");
        write(path("share/MEVOSetting.ini"), "shared");
        QVERIFY(QDir().mkpath(path("home")));
        const QStringList sources{path("program"), path("share"), path("not-there")};
        mevo::bringShippedFiles(sources, path("home"));
        QCOMPARE(read(path("home/MEVOTable.ini")), QByteArray("beside the program"));
        QCOMPARE(read(path("home/MEVOSetting.ini")), QByteArray("shared"));
        mevo::bringShippedFiles(sources,
                                path("program")); // a folder of the user's own, which is a source too
        QCOMPARE(read(path("program/MEVOTable.ini")), QByteArray("beside the program"));
        QCOMPARE(read(path("program/MEVOSetting.ini")), QByteArray("shared"));
    }
};

QTEST_APPLESS_MAIN(TestShippedFiles)
#include "tst_shipped_files.moc"
