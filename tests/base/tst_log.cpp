#include "base/ApplicationFiles.h"
#include "base/DiagnosticLog.h"
#include "base/Endpoints.h"
#include "base/InterfaceLanguage.h"
#include "base/KeyTable.h"
#include "base/VersionText.h"
#include "support/Rows.h"
#include "support/ScratchHome.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

namespace {
const ScratchHome home;
}

class TestLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lines_data()
    {
        const Rows<QtMsgType, int, QString, QString> row; // type, bit, its short and its long name
        row("Debug", QtDebugMsg, 1, "Debug", "Debug");
        row("Info", QtInfoMsg, 2, "Info", "Info");
        row("Warning", QtWarningMsg, 4, "Warning", "Warning");
        row("Critical", QtCriticalMsg, 8, "Critial", "Critical");
        row("Fatal", QtFatalMsg, 16, "Fatal", "Fatal");
    }

    void lines()
    {
        const auto [type, bit, shortName, longName] = rowOf<QtMsgType, int, QString, QString>();
        const QDateTime time(QDate(2026, 11, 24), QTime(9, 8, 7, 6));
        const QMessageLogContext context("f.cpp", 12, "go()", "default");
        const QString message = "50%1 %2"_s; // a message that looks like a place to fill
        QCOMPARE(mevo::logLine(type, context, message, time, bit, false),
                 "[ 2026-11-24 09:08:07:006 ]:\t "_s + shortName + ":\t50%1 %2"_s);
        QCOMPARE(mevo::logLine(type, context, message, time, 31, true),
                 "[ 2026-11-24 09:08:07:006 ]:\t(f.cpp,(12),: go())  "_s + longName + ":\t50%1 %2"_s);
        QVERIFY(mevo::logLine(type, context, message, time, 31 & ~bit, false).isEmpty());
        const QMessageLogContext nothing;
        QVERIFY(mevo::logLine(type, nothing, message, time, bit, true).contains("(,(0),: )"_s));
    }

    void filesByDay()
    {
        const QTemporaryDir folder;
        const QDate day(2026, 11, 24);
        mevo::appendToLog(folder.path(), day, "一"_s);
        mevo::appendToLog(folder.path(), day, QString());
        mevo::appendToLog(folder.path(), day.addDays(1), "二"_s);
        QFile first(folder.filePath("2026-11-24/2026-11-24.log"_s));
        QVERIFY(first.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(first.readAll()), "一\r\n\r\n"_s);
        QVERIFY(QFile::exists(folder.filePath("2026-11-25/2026-11-25.log"_s)));
        mevo::appendToLog("/proc/nowhere"_s, day,
                          "lost"_s); // and nothing happens
    }

    void languages_data()
    {
        const Rows<int, QString> row; // locale, file
        row("Taiwan", 0x0404, "cht.qm");
        row("Hong Kong", 0x0C04, "cht.qm");
        row("Macao", 0x1404, "cht.qm");
        row("China", 0x0804, "");
        row("Singapore", 0x1004, "");
        row("other", 0x0407, "en.qm");
    }

    void languages()
    {
        const auto [locale, file] = rowOf<int, QString>();
        QCOMPARE(mevo::translationFileFor(locale), file);
    }

    void versions()
    {
        QCOMPARE(mevo::buildStamp("Jan  2 2026"_s, "12:34:56"_s), "(2026.01.02 12:34:56)"_s);
        QCOMPARE(mevo::buildStamp("Dec 31 2026"_s, "1"_s), "(2026.12.31 1)"_s);
        QCOMPARE(mevo::buildStamp("nonsense"_s, "1"_s), "( 1)"_s);
    }

    void keysKeepTheOrderOfTheFile()
    {
        const mevo::KeyTable table =
            mevo::parseKeyTable("[z]\nShowName=一\nVKCode=65\n[half]\nShowName=x\n"
                                "[a]\r\nVKCode = 66 \r\nShowName=\"二\\x4e00\"\r\nnoise\n[b]\n"
                                "[half]\nShowName=y ; a remark\n");
        // Every group has its place, whatever it lacks.
        QCOMPARE(table.names, QStringList({"一"_s, "y"_s, "二一"_s, QString()}));
        QCOMPARE(table.codes, QStringList({"65"_s, QString(), "66"_s, QString()}));
        QTest::ignoreMessage(QtWarningMsg,
                             "Key table: 2000 keys have no name or no code, the first is group \\x01x");
        QByteArray many = "[\x01x]\n" + QByteArray("[]\n[a]\n[b]\n[a]\n").repeated(5);
        for (int i = 0; i < 1996; ++i) {
            many += '[' + QByteArray::number(i) + "]\n";
        }
        QCOMPARE(mevo::parseKeyTable(many).names.size(), 2000);
        QVERIFY(mevo::parseKeyTable("").names.isEmpty());
    }

    /// Keys from index 69 on are played as media keys, the ones before as keyboard keys.
    void theShippedKeysAreUsagesWithTheMediaKeysLast()
    {
        QFile file(QStringLiteral(MEVO_RESOURCES "/MEVKeysSetting.ini"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const mevo::KeyTable keys = mevo::parseKeyTable(file.readAll());
        QVERIFY(keys.names.size() > 69);
        QCOMPARE(QSet<QString>(keys.names.begin(), keys.names.end()).size(), keys.names.size());
        for (int i = 0; i < keys.codes.size(); ++i) {
            bool number = false;
            const int usage = keys.codes[i].toInt(&number, 16);
            QVERIFY2(number && (usage >= 0xb0) == (i >= 69), qPrintable(keys.names[i]));
        }
        QCOMPARE(keys.codes[keys.names.indexOf("S"_s)].toInt(nullptr, 16), 0x16);
        QCOMPARE(keys.codes[keys.names.indexOf("Enter"_s)].toInt(nullptr, 16), 0x28);
    }

    void theFolderIsTheOneThatIsForced()
    {
        QCOMPARE(mevo::appFolder(), QDir(home.path(QString())).absolutePath());
        home.write("MEVKeysSetting.ini"_s, "[k]\nShowName=S\nVKCode=16\n");
        QCOMPARE(mevo::loadKeyTable().codes, list({"16"}));
    }

    void endpoints()
    {
        mevo::BackendEndpoints state;
        mevo::EngineEndpoints defaults = mevo::loadEndpoints(state, home.path("none.ini"_s));
        QCOMPARE(state.ServerUrl, "http://127.0.0.1:19004/mevowebapi?"_s);
        QCOMPARE(defaults.BaiduSpeechHost, "vop.baidu.com"_s);
        QVERIFY(!mevo::allOnThisMachine(state, defaults));
        QByteArray local = "[Endpoints]\nVerifyCertificates=true\nTencentSecretIds=\"a;b\"\nBackendUrl="
                           "\"http://localhost:1/mevowebapi?\"\n";
        for (const char *key : {"BaiduSpeechHost", "BaiduSpeechHttpsHost", "BaiduTokenHost", "TencentHost",
                                "XunFeiSignHost", "XunFeiSocketHost", "TranslateHost", "BaiduTtsHost"}) {
            local += QByteArray(key) + "=127.0.0.1:9\n";
        }
        home.write("local.ini"_s, local);
        const mevo::EngineEndpoints read = mevo::loadEndpoints(state, home.path("local.ini"_s));
        QCOMPARE(state.ServerUrl, "http://localhost:1/mevowebapi?"_s);
        QCOMPARE(read.TencentSecretIds, "a;b"_s);
        QVERIFY(read.TencentSecretKeys.isEmpty());
        QVERIFY(read.VerifyCertificates && mevo::allOnThisMachine(state, read));
        state.PushSocketUrl = "ws://10.0.0.1:19006"_s;
        QVERIFY(!mevo::allOnThisMachine(state, read));
    }
};

QTEST_GUILESS_MAIN(TestLog)
#include "tst_log.moc"
