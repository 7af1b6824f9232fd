#include "output/UndeliveredTexts.h"
#include "support/ScratchHome.h"

#include <QFileInfo>
#include <QtTest>

#include <csignal>
#include <sys/resource.h>

using mevo::UndeliveredTexts;

namespace {
const ScratchHome home;
const QString name = QStringLiteral("undelivered.json");
const QDateTime when(QDate(2026, 11, 24), QTime(9, 0), Qt::UTC);

QStringList textsOf(const UndeliveredTexts &store)
{
    QStringList texts;
    for (const mevo::UndeliveredText &entry : store.texts()) {
        texts.append(entry.text);
    }
    return texts;
}
} // namespace

class TestUndelivered : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        home.remove(name);
        home.remove(name + QStringLiteral(".broken"));
        home.remove(name + QStringLiteral(".broken2"));
    }

    void textsOutliveTheProgram()
    {
        const QStringList texts{QStringLiteral("你好"), QStringLiteral("𠀀😀 \"quoted\"\n\t\\"),
                                QStringLiteral("三")};
        {
            UndeliveredTexts store(home.path(name));
            for (const QString &text : texts) {
                QVERIFY(store.add(text, when));
            }
            QVERIFY(store.add(QString(), when));
        }
        UndeliveredTexts store(home.path(name));
        QCOMPARE(textsOf(store), texts);
        QCOMPARE(store.texts().front().when, when);
        QCOMPARE(QFileInfo(home.path(name)).permissions() &
                     (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup),
                 QFile::Permissions());
        QVERIFY(store.remove(1));
        QCOMPARE(textsOf(UndeliveredTexts(home.path(name))), (QStringList{texts.at(0), texts.at(2)}));
        QVERIFY(store.replace(0, QStringLiteral("好")));
        QCOMPARE(textsOf(UndeliveredTexts(home.path(name))),
                 (QStringList{QStringLiteral("好"), texts.at(2)}));
        QVERIFY(store.replace(0, QString()));
        QCOMPARE(store.count(), 1);
        QVERIFY(store.removeAll());
        QVERIFY(!QFileInfo::exists(home.path(name)));
        QVERIFY(store.removeAll());
    }

    void theOldestMakesRoom()
    {
        UndeliveredTexts store(home.path(name));
        for (int i = 0; i < 103; ++i) {
            store.add(QString::number(i), when);
        }
        QCOMPARE(store.count(), 100);
        QCOMPARE(store.texts().front().text, QStringLiteral("3"));
        QCOMPARE(UndeliveredTexts(home.path(name)).texts().back().text, QStringLiteral("102"));
    }

    void brokenFilesArePutAside_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QStringList>("texts");
        QTest::addColumn<bool>("aside");
        QTest::newRow("cut") << QByteArray("[{\"text\":\"a\"},{\"te") << QStringList() << true;
        QTest::newRow("nothing") << QByteArray() << QStringList() << true;
        QTest::newRow("an object") << QByteArray("{}") << QStringList() << true;
        QTest::newRow("entries of other shapes")
            << QByteArray(R"([1, null, [], {"text":5}, {"text":""}, {"text":"good","when":"never"}])")
            << QStringList{QStringLiteral("good")} << false;
    }

    void brokenFilesArePutAside()
    {
        QFETCH(QByteArray, content);
        QFETCH(bool, aside);
        home.write(name, content);
        UndeliveredTexts store(home.path(name));
        QTEST(textsOf(store), "texts");
        QCOMPARE(QFileInfo::exists(home.path(name + QStringLiteral(".broken"))), aside);
        QVERIFY(store.add(QStringLiteral("next"), when));
        QCOMPARE(home.read(name + QStringLiteral(".broken")), aside ? content : QByteArray());
        home.write(name, "once more");
        QCOMPARE(UndeliveredTexts(home.path(name)).count(), 0);
        QCOMPARE(home.read(name + QStringLiteral(".broken")), aside ? content : QByteArray("once more"));
    }

    void whatCannotBeWrittenStaysInMemory()
    {
        UndeliveredTexts store(home.path(QStringLiteral("no such folder/undelivered.json")));
        QVERIFY(!store.add(QStringLiteral("kept"), when));
        QCOMPARE(textsOf(store), QStringList{QStringLiteral("kept")});
    }

    void aFullDiskLosesNothing()
    {
        const QStringList both{QStringLiteral("一"), QStringLiteral("二")};
        {
            UndeliveredTexts store(home.path(name));
            QVERIFY(store.add(both.at(0), when));
            rlimit usual{};
            getrlimit(RLIMIT_FSIZE, &usual);
            rlimit full = usual;
            full.rlim_cur = 8; // less than the file's own buffer takes
            std::signal(SIGXFSZ, SIG_IGN);
            setrlimit(RLIMIT_FSIZE, &full);
            const bool written = store.add(both.at(1), when);
            setrlimit(RLIMIT_FSIZE, &usual);
            QVERIFY(!written);
            QCOMPARE(textsOf(store), both);
            QCOMPARE(textsOf(UndeliveredTexts(home.path(name))), both.mid(0, 1));
        }
        QCOMPARE(textsOf(UndeliveredTexts(home.path(name))), both); // there is room at the end
    }
};

QTEST_GUILESS_MAIN(TestUndelivered)
#include "tst_undelivered.moc"
