#include "output/UndeliveredTexts.h"
#include "support/Rows.h"
#include "support/ScratchHome.h"

#include <QFileInfo>
#include <QtTest>

#include <csignal>
#include <sys/resource.h>

using mevo::UndeliveredTexts;

namespace {
const ScratchHome home;
const QString name = "undelivered.json"_s;
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
        home.remove(name + ".broken"_s);
        home.remove(name + ".broken2"_s);
    }

    void textsOutliveTheProgram()
    {
        const QStringList texts{"你好"_s, "𠀀😀 \"quoted\"\n\t\\"_s, "三"_s};
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
        QVERIFY(store.replace(0, "好"_s));
        QCOMPARE(textsOf(UndeliveredTexts(home.path(name))), (QStringList{"好"_s, texts.at(2)}));
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
        QCOMPARE(store.texts().front().text, "3"_s);
        QCOMPARE(UndeliveredTexts(home.path(name)).texts().back().text, "102"_s);
    }

    void brokenFilesArePutAside_data()
    {
        const Rows<QByteArray, QStringList, bool> row; // content, texts, aside
        row("cut", QByteArray("[{\"text\":\"a\"},{\"te"), QStringList(), true);
        row("nothing", QByteArray(), QStringList(), true);
        row("an object", QByteArray("{}"), QStringList(), true);
        row("entries of other shapes",
            QByteArray(R"([1, null, [], {"text":5}, {"text":""}, {"text":"good","when":"never"}])"),
            QStringList{"good"_s}, false);
    }

    void brokenFilesArePutAside()
    {
        const auto [content, texts, aside] = rowOf<QByteArray, QStringList, bool>();
        home.write(name, content);
        UndeliveredTexts store(home.path(name));
        QCOMPARE(textsOf(store), texts);
        QCOMPARE(QFileInfo::exists(home.path(name + ".broken"_s)), aside);
        QVERIFY(store.add("next"_s, when));
        QCOMPARE(home.read(name + ".broken"_s), aside ? content : QByteArray());
        home.write(name, "once more");
        QCOMPARE(UndeliveredTexts(home.path(name)).count(), 0);
        QCOMPARE(home.read(name + ".broken"_s), aside ? content : QByteArray("once more"));
    }

    void whatCannotBeWrittenStaysInMemory()
    {
        UndeliveredTexts store(home.path("no such folder/undelivered.json"_s));
        QVERIFY(!store.add("kept"_s, when));
        QCOMPARE(textsOf(store), QStringList{"kept"_s});
    }

    void aFullDiskLosesNothing()
    {
        const QStringList both{"一"_s, "二"_s};
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
