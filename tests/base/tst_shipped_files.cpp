#include "base/ShippedFiles.h"
#include "support/Rows.h"

#include <QDir>
#include <QLockFile>
#include <QRegularExpression>
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
        // users (what the user has made of the file; "one" is as it came), notes (what has become of the
        // notes; empty as they were), content
        const Rows<QByteArray, QByteArray, QByteArray> row;
        row("untouched", "one", "", "two");
        row("edited", "mine", "", "mine");
        row("emptied", "", "", "");
        row("removed", "none", "", "two");
        row("nothing noted", "one", "{}", "one");
        row("notes are damaged", "one", "{\"MEV", "one");
        row("notes of another form", "one", "{\"MEVOTable.ini\":[1]}", "one");
    }
    void aNewerVersionComes()
    {
        const auto [users, notes, content] = rowOf<QByteArray, QByteArray, QByteArray>();
        const QTemporaryDir folder;
        const QString shipped = folder.filePath("share/MEVOTable.ini"_s);
        const QString target = folder.filePath("home"_s);
        const QString copy = target + "/MEVOTable.ini"_s;
        QVERIFY(QDir().mkpath(target));
        const auto start = [&] { mevo::bringShippedFiles({folder.filePath("share"_s)}, target); };
        write(shipped, "one");
        write(folder.filePath("share/other.ini"_s), "not ours");
        QVERIFY(QFile::setPermissions(shipped, QFile::ReadOwner));
        start();
        QCOMPARE(read(copy), QByteArray("one"));
        QVERIFY(QFile::permissions(copy) & QFile::WriteOwner);
        QVERIFY(!QFile::exists(target + "/other.ini"_s));
        if (users == "none") {
            QVERIFY(QFile::remove(copy));
        } else {
            write(copy, users);
        }
        if (!notes.isEmpty()) {
            write(target + "/MEVOShipped.json"_s, notes);
        }
        QVERIFY(QFile::remove(shipped));
        write(shipped, "two");
        for (int i = 0; i < 2; ++i) { // the second time there is nothing to be done
            start();
            QCOMPARE(read(copy), content);
        }
    }

    /// A folder that was filled before there were notes: what is the shipped file is known as such from then
    /// on.
    void anOlderFolderIsLookedAt()
    {
        const QTemporaryDir folder;
        const QString share = folder.filePath("share"_s);
        const QString target = folder.filePath("home"_s);
        for (const QString &place : {share, target}) {
            write(place + "/MEVOTable.ini"_s, "one");
            write(place + "/MEVOSetting.ini"_s, place == share ? "shipped" : "mine");
        }
        mevo::bringShippedFiles({share}, target);
        write(share + "/MEVOTable.ini"_s, "two");
        write(share + "/MEVOSetting.ini"_s, "shipped, two");
        mevo::bringShippedFiles({share}, target);
        QCOMPARE(read(target + "/MEVOTable.ini"_s), QByteArray("two"));
        QCOMPARE(read(target + "/MEVOSetting.ini"_s), QByteArray("mine"));
    }

    /// A package that is being installed, or a disk that was full: what the user has stays.
    void anEmptyFileIsNotBrought()
    {
        const QTemporaryDir folder;
        const QString share = folder.filePath("share"_s);
        const QString target = folder.filePath("home"_s);
        QVERIFY(QDir().mkpath(target));
        write(share + "/MEVOTable.ini"_s, "one");
        write(share + "/MEVOSetting.ini"_s, "");
        mevo::bringShippedFiles({share}, target);
        write(share + "/MEVOTable.ini"_s, "");
        mevo::bringShippedFiles({share}, target);
        QCOMPARE(read(target + "/MEVOTable.ini"_s), QByteArray("one"));
        QCOMPARE(read(target + "/MEVOSetting.ini"_s), QByteArray("none"));
        write(share + "/MEVOTable.ini"_s, "two");
        mevo::bringShippedFiles({share}, target);
        QCOMPARE(read(target + "/MEVOTable.ini"_s), QByteArray("two"));
    }

    void oneProgramAtATime()
    {
        const QTemporaryDir folder;
        const QString share = folder.filePath("share"_s);
        write(share + "/MEVOTable.ini"_s, "one");
        const QString copy = folder.filePath("MEVOTable.ini"_s);
        QLockFile other(folder.filePath("MEVOShipped.lock"_s));
        QVERIFY(other.lock());
        mevo::bringShippedFiles({share}, folder.path(), 0);
        QVERIFY(!QFile::exists(copy));
        other.unlock();
        mevo::bringShippedFiles({share}, folder.path(), 0);
        QCOMPARE(read(copy), QByteArray("one"));
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList({"MEVOShipped.json"_s, "MEVOTable.ini"_s}));
    }

    /// A full disk, for one, takes no lock: a start without its tables has to leave a trace.
    void aFolderThatTakesNothingIsTold()
    {
        const QTemporaryDir folder;
        write(folder.filePath("share/MEVOTable.ini"_s), "one");
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression("^Shipped files: nothing can be brought to .*nowhere"_s));
        mevo::bringShippedFiles({folder.filePath("share"_s)}, folder.filePath("nowhere"_s), 0);
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
