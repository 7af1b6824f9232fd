#include "base/ApplicationFiles.h"
#include "base/DiagnosticLog.h"
#include "base/Endpoints.h"
#include "base/InterfaceLanguage.h"
#include "base/KeyTable.h"
#include "base/VersionText.h"
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
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("bit");
        QTest::addColumn<QString>("shortLine");
        QTest::addColumn<QString>("longLine");
        const auto row = [](QtMsgType type, int bit, const char *shortName, const char *longName) {
            QTest::newRow(longName) << int(type) << bit
                                    << QStringLiteral("[ 2026-11-24 09:08:07:006 ]:\t ") +
                                           QLatin1String(shortName) + QStringLiteral(":\t50%1 %2")
                                    << QStringLiteral("[ 2026-11-24 09:08:07:006 ]:\t(f.cpp,(12),: go())  ") +
                                           QLatin1String(longName) + QStringLiteral(":\t50%1 %2");
        };
        row(QtDebugMsg, 1, "Debug", "Debug");
        row(QtInfoMsg, 2, "Info", "Info");
        row(QtWarningMsg, 4, "Warning", "Warning");
        row(QtCriticalMsg, 8, "Critial", "Critical");
        row(QtFatalMsg, 16, "Fatal", "Fatal");
    }

    void lines()
    {
        QFETCH(int, type);
        QFETCH(int, bit);
        const QDateTime time(QDate(2026, 11, 24), QTime(9, 8, 7, 6));
        const QMessageLogContext context("f.cpp", 12, "go()", "default");
        const QString message = QStringLiteral("50%1 %2"); // a message that looks like a place to fill
        QTEST(mevo::logLine(QtMsgType(type), context, message, time, bit, false), "shortLine");
        QTEST(mevo::logLine(QtMsgType(type), context, message, time, 31, true), "longLine");
        QVERIFY(mevo::logLine(QtMsgType(type), context, message, time, 31 & ~bit, false).isEmpty());
        const QMessageLogContext nothing;
        QVERIFY(mevo::logLine(QtMsgType(type), nothing, message, time, bit, true)
                    .contains(QStringLiteral("(,(0),: )")));
    }

    void filesByDay()
    {
        const QTemporaryDir folder;
        const QDate day(2026, 11, 24);
        mevo::appendToLog(folder.path(), day, QStringLiteral("一"));
        mevo::appendToLog(folder.path(), day, QString());
        mevo::appendToLog(folder.path(), day.addDays(1), QStringLiteral("二"));
        QFile first(folder.filePath(QStringLiteral("2026-11-24/2026-11-24.log")));
        QVERIFY(first.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(first.readAll()), QStringLiteral("一\r\n\r\n"));
        QVERIFY(QFile::exists(folder.filePath(QStringLiteral("2026-11-25/2026-11-25.log"))));
        mevo::appendToLog(QStringLiteral("/proc/nowhere"), day,
                          QStringLiteral("lost")); // and nothing happens
    }

    void languages_data()
    {
        QTest::addColumn<int>("locale");
        QTest::addColumn<QString>("file");
        QTest::newRow("Taiwan") << 0x0404 << "cht.qm";
        QTest::newRow("Hong Kong") << 0x0C04 << "cht.qm";
        QTest::newRow("Macao") << 0x1404 << "cht.qm";
        QTest::newRow("China") << 0x0804 << "";
        QTest::newRow("Singapore") << 0x1004 << "";
        QTest::newRow("other") << 0x0407 << "en.qm";
    }

    void languages()
    {
        QFETCH(int, locale);
        QTEST(mevo::translationFileFor(locale), "file");
    }

    void versions()
    {
        QCOMPARE(mevo::versionText(), QStringLiteral("V1.07"));
        QCOMPARE(mevo::buildStamp(QStringLiteral("Jan  2 2026"), QStringLiteral("12:34:56")),
                 QStringLiteral("(2026.01.02 12:34:56)"));
        QCOMPARE(mevo::buildStamp(QStringLiteral("Dec 31 2026"), QStringLiteral("1")),
                 QStringLiteral("(2026.12.31 1)"));
        QCOMPARE(mevo::buildStamp(QStringLiteral("nonsense"), QStringLiteral("1")), QStringLiteral("( 1)"));
    }

    void keysKeepTheOrderOfTheFile()
    {
        const mevo::KeyTable table =
            mevo::parseKeyTable("[z]\nShowName=一\nVKCode=65\n[half]\nShowName=x\n"
                                "[a]\r\nVKCode = 66 \r\nShowName=\"二\\x4e00\"\r\nnoise\n[b]\n"
                                "[half]\nShowName=y ; a remark\n");
        // Every group has its place, whatever it lacks.
        QCOMPARE(table.names,
                 QStringList({QStringLiteral("一"), QStringLiteral("y"), QStringLiteral("二一"), QString()}));
        QCOMPARE(table.codes,
                 QStringList({QStringLiteral("65"), QString(), QStringLiteral("66"), QString()}));
        QTest::ignoreMessage(QtWarningMsg,
                             "Key table: 2000 keys have no name or no code, the first is group \\x01x");
        QCOMPARE(mevo::parseKeyTable("[\x01x]\n" + QByteArray("[]\n[a]\n[b]\n[a]\n").repeated(5) +
                                     [] {
                                         QByteArray many;
                                         for (int i = 0; i < 1996; ++i) {
                                             many += '[' + QByteArray::number(i) + "]\n";
                                         }
                                         return many;
                                     }())
                     .names.size(),
                 2000);
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
        QCOMPARE(keys.codes[keys.names.indexOf(QStringLiteral("S"))].toInt(nullptr, 16), 0x16);
        QCOMPARE(keys.codes[keys.names.indexOf(QStringLiteral("Enter"))].toInt(nullptr, 16), 0x28);
    }

    void theFolderIsTheOneThatIsForced()
    {
        QCOMPARE(mevo::appFolder(), QDir(home.path(QString())).absolutePath());
        home.write(QStringLiteral("MEVKeysSetting.ini"), "[k]\nShowName=S\nVKCode=16\n");
        QCOMPARE(mevo::loadKeyTable().codes, QStringList{QStringLiteral("16")});
    }

    void endpoints()
    {
        mevo::BackendEndpoints state;
        mevo::EngineEndpoints defaults = mevo::loadEndpoints(state, home.path(QStringLiteral("none.ini")));
        QCOMPARE(state.ServerUrl, QStringLiteral("http://127.0.0.1:19004/mevowebapi?"));
        QCOMPARE(defaults.BaiduSpeechHost, QStringLiteral("vop.baidu.com"));
        QVERIFY(!mevo::allOnThisMachine(state, defaults));
        QByteArray local = "[Endpoints]\nVerifyCertificates=true\nTencentSecretIds=\"a;b\"\nBackendUrl="
                           "\"http://localhost:1/mevowebapi?\"\n";
        for (const char *key : {"BaiduSpeechHost", "BaiduSpeechHttpsHost", "BaiduTokenHost", "TencentHost",
                                "XunFeiSignHost", "XunFeiSocketHost", "TranslateHost", "BaiduTtsHost"}) {
            local += QByteArray(key) + "=127.0.0.1:9\n";
        }
        home.write(QStringLiteral("local.ini"), local);
        const mevo::EngineEndpoints read = mevo::loadEndpoints(state, home.path(QStringLiteral("local.ini")));
        QCOMPARE(state.ServerUrl, QStringLiteral("http://localhost:1/mevowebapi?"));
        QCOMPARE(read.TencentSecretIds, QStringLiteral("a;b"));
        QVERIFY(read.TencentSecretKeys.isEmpty());
        QVERIFY(read.VerifyCertificates && mevo::allOnThisMachine(state, read));
        state.PushSocketUrl = QStringLiteral("ws://10.0.0.1:19006");
        QVERIFY(!mevo::allOnThisMachine(state, read));
    }
};

QTEST_GUILESS_MAIN(TestLog)
#include "tst_log.moc"
