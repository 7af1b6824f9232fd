#include "state/OwnAccounts.h"

#include <QtTest>

using mevo::AccountService;
using mevo::OwnAccounts;

class TestOwnAccounts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keptText()
    {
        OwnAccounts accounts;
        QCOMPARE(accounts.toText(), QByteArray());
        QVERIFY(accounts.set(AccountService::Baidu, 0, QStringLiteral("  client\n")));
        QVERIFY(accounts.set(AccountService::Baidu, 1, QStringLiteral("密钥")));
        QVERIFY(accounts.set(AccountService::XunFei, 2, QStringLiteral("secret")));
        const QByteArray text = accounts.toText();
        QCOMPARE(text, QByteArray(R"({"Baidu":{"ApiKey":"client","SecretKey":"密钥"},)"
                                  R"("XunFei":{"ApiSecret":"secret"}})"));
        const auto back = OwnAccounts::fromText(text);
        QVERIFY(back && *back == accounts);
        QVERIFY(accounts.isComplete(AccountService::Baidu));
        QVERIFY(!accounts.isComplete(AccountService::XunFei));
        QVERIFY(accounts.hasAny(AccountService::XunFei));
        QVERIFY(!accounts.hasAny(AccountService::Tencent));
        accounts.remove(AccountService::XunFei);
        accounts.remove(AccountService::Baidu);
        QVERIFY(accounts.isEmpty());
    }

    void strangeTexts_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("understood");
        QTest::addColumn<QByteArray>("kept");
        const auto row = [](const char *name, const QByteArray &text, bool understood,
                            const char *kept = "") {
            QTest::newRow(name) << text << understood << QByteArray(kept);
        };
        row("nothing", "", true);
        row("no JSON", "Baidu=1", false);
        row("a list", "[1,2]", false);
        row("other services and types",
            R"({"Google":{"Key":"x"},"Baidu":7,"XunFei":{"AppId":5,"ApiKey":"k"}})", true,
            R"({"XunFei":{"ApiKey":"k"}})");
        row("a value that is none", "{\"Tencent\":{\"SecretId\":\"a\\u0007b\",\"SecretKey\":\"k\"}}", true,
            R"({"Tencent":{"SecretKey":"k"}})");
        row("too long a value", "{\"Tencent\":{\"SecretId\":\"" + QByteArray(201, 'x') + "\"}}", true);
    }
    void strangeTexts()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, understood);
        QFETCH(QByteArray, kept);
        const auto accounts = OwnAccounts::fromText(text);
        QCOMPARE(accounts.has_value(), understood);
        QCOMPARE(accounts.value_or(OwnAccounts()).toText(), kept);
    }

    void fields()
    {
        OwnAccounts accounts;
        QVERIFY(accounts.set(AccountService::Tencent, 1, QString(200, QLatin1Char('k'))));
        QVERIFY(!accounts.set(AccountService::Tencent, 1, QString(201, QLatin1Char('k'))));
        QVERIFY(!accounts.set(AccountService::Tencent, 2, QStringLiteral("there is no third")));
        QVERIFY(!accounts.set(AccountService::XunFei, -1, QStringLiteral("x")));
        QCOMPARE(accounts.values(AccountService::Tencent)[1].size(), 200);
        QVERIFY(!accounts.isComplete(AccountService::Tencent));
        QVERIFY(accounts.set(AccountService::Tencent, 0, QStringLiteral("id")));
        QVERIFY(accounts.isComplete(AccountService::Tencent));
    }

    void hints_data()
    {
        QTest::addColumn<QString>("secret");
        QTest::addColumn<QString>("hint");
        QTest::newRow("long") << QStringLiteral("AKIDabcdefgh1234") << QStringLiteral("••••1234");
        QTest::newRow("twelve") << QStringLiteral("abcdefgh5678") << QStringLiteral("••••5678");
        QTest::newRow("eleven") << QStringLiteral("abcdefg5678") << QStringLiteral("••••");
        QTest::newRow("short") << QStringLiteral("1234") << QStringLiteral("••••");
    }
    void hints()
    {
        QFETCH(QString, secret);
        QTEST(mevo::secretHint(secret), "hint");
    }
};

QTEST_GUILESS_MAIN(TestOwnAccounts)
#include "tst_own_accounts.moc"
