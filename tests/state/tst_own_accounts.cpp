#include "state/AccountChanges.h"

#include <QtTest>

using mevo::AccountChanges;
using mevo::AccountService;
using mevo::AccountValue;
using mevo::OwnAccounts;

namespace {

OwnAccounts of(const QByteArray &text)
{
    return OwnAccounts::fromText(text).value();
}

} // namespace

class TestOwnAccounts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void accounts()
    {
        OwnAccounts accounts;
        QVERIFY(accounts.set(AccountService::Baidu, 0, QStringLiteral("  client\n")));
        QVERIFY(accounts.set(AccountService::Baidu, 1, QStringLiteral("密钥")));
        QVERIFY(accounts.set(AccountService::XunFei, 2, QStringLiteral("secret")));
        QVERIFY(accounts == of(R"({"Baidu":{"ApiKey":"client","SecretKey":"密钥"},)"
                               R"("XunFei":{"ApiSecret":"secret"}})"));
        QVERIFY(accounts.isComplete(AccountService::Baidu));
        QVERIFY(!accounts.isComplete(AccountService::XunFei));
        QVERIFY(accounts.hasAny(AccountService::XunFei));
        QVERIFY(!accounts.hasAny(AccountService::Tencent));
        accounts.remove(AccountService::XunFei);
        accounts.remove(AccountService::Baidu);
        QVERIFY(accounts == OwnAccounts());
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
        QVERIFY(accounts.value_or(OwnAccounts()) == of(kept));
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

    void typed_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("fault");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const QString &typed, AccountValue::Fault fault,
                            const QString &text) { QTest::newRow(name) << typed << int(fault) << text; };
        const auto fine = AccountValue::Fault::None;
        row("nothing", {}, fine, {});
        row("blanks alone", QStringLiteral(" \r\n\t"), fine, {});
        row("a line end behind", QStringLiteral("key\r\n"), fine, QStringLiteral("key"));
        row("marks around", QStringLiteral("\uFEFF\u00A0\u200Bkey\u200B\u2028"), fine, QStringLiteral("key"));
        row("a blank within", QStringLiteral(" a key "), fine, QStringLiteral("a key"));
        row("two lines", QStringLiteral("id\nkey\n"), AccountValue::Fault::Invisible,
            QStringLiteral("id\nkey"));
        row("a mark within", QStringLiteral("k\u200Bey"), AccountValue::Fault::Invisible,
            QStringLiteral("k\u200Bey"));
        row("the longest", QStringLiteral("\n") + QString(200, QLatin1Char('k')), fine,
            QString(200, QLatin1Char('k')));
        row("too long", QString(201, QLatin1Char('k')), AccountValue::Fault::TooLong,
            QString(201, QLatin1Char('k')));
    }
    void typed()
    {
        QFETCH(QString, typed);
        const AccountValue value = mevo::accountValue(typed);
        QTEST(int(value.fault), "fault");
        QTEST(value.text, "text");
    }

    void changes_data()
    {
        QTest::addColumn<QByteArray>("before"); // as the program knows it
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QByteArray>("kept");
        QTest::addColumn<QByteArray>("result");
        const auto row = [](const char *name, const char *before, const char *after, const char *kept,
                            const char *result) {
            QTest::newRow(name) << QByteArray(before) << QByteArray(after) << QByteArray(kept)
                                << QByteArray(result);
        };
        const char *const both = R"({"Baidu":{"ApiKey":"i","SecretKey":"s"}})";
        row("the first", "", both, "", both);
        row("beside others, known or not", "", both, R"({"Google":[1],"XunFei":{"AppId":"a","Region":"b"}})",
            R"({"Baidu":{"ApiKey":"i","SecretKey":"s"},"Google":[1],"XunFei":{"AppId":"a","Region":"b"}})");
        row("half of one that is not known", "", R"({"Baidu":{"SecretKey":"new"}})", both,
            R"({"Baidu":{"ApiKey":"i","SecretKey":"new"}})");
        row("removal", both, "",
            R"({"Baidu":{"ApiKey":"i","SecretKey":"s","Region":"b"},"XunFei":{"AppId":"a"}})",
            R"({"XunFei":{"AppId":"a"}})");
        row("removal of which half is known", R"({"Baidu":{"SecretKey":"new"}})", "", both, "");
        row("a field taken away", both, R"({"Baidu":{"ApiKey":"i"}})", both, R"({"Baidu":{"ApiKey":"i"}})");
        row("over what is of another type", "", both, R"({"Baidu":7})", both);
        row("nothing", both, both, R"({"Tencent":{}})", R"({"Tencent":{}})");
    }
    void changes()
    {
        QFETCH(QByteArray, kept);
        QFETCH(QByteArray, result);
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        const AccountChanges changes(of(before), of(after));
        QCOMPARE(changes.isEmpty(), before == after);
        QCOMPARE(changes.appliedTo(kept), result);
        QVERIFY(changes.appliedTo(of(kept)) == of(result));
    }

    void laterChanges()
    {
        const OwnAccounts first = of(R"({"Baidu":{"ApiKey":"i","SecretKey":"s"}})");
        const OwnAccounts second = of(R"({"Tencent":{"SecretId":"t"}})");
        AccountChanges changes(OwnAccounts(), first);
        changes.add(AccountChanges(first, second));
        QCOMPARE(changes.appliedTo(QByteArray(R"({"Baidu":{"ApiKey":"old"},"XunFei":{"AppId":"a"}})")),
                 QByteArray(R"({"Tencent":{"SecretId":"t"},"XunFei":{"AppId":"a"}})"));
    }

    void joins_data()
    {
        QTest::addColumn<QList<QByteArray>>("texts");
        QTest::addColumn<QByteArray>("joined");
        QTest::addColumn<QList<QByteArray>>("aside");
        const auto row = [](const char *name, const QList<QByteArray> &texts, const char *joined,
                            const QList<QByteArray> &aside = {}) {
            QTest::newRow(name) << texts << QByteArray(joined) << aside;
        };
        const char *const both = R"({"Baidu":{"ApiKey":"i","SecretKey":"s"}})";
        row("nothing", {}, "");
        row("other services, known or not", {both, R"({"Google":1,"XunFei":{"AppId":"a"}})"},
            R"({"Baidu":{"ApiKey":"i","SecretKey":"s"},"Google":1,"XunFei":{"AppId":"a"}})");
        row("field by field", {both, R"({"Baidu":{"ApiKey":"new","Region":"b"}})"},
            R"({"Baidu":{"ApiKey":"new","Region":"b","SecretKey":"s"}})");
        row("no such texts", {"garbage", both, "[]"}, both, {"garbage", "[]"});
        row("a later value that is no account", {both, R"({"Baidu":7,"Google":1})"},
            R"({"Baidu":{"ApiKey":"i","SecretKey":"s"},"Google":1})", {R"({"Baidu":7})"});
        row("a later field that is none", {both, R"({"Baidu":{"ApiKey":null}})"}, both,
            {R"({"Baidu":{"ApiKey":null}})"});
        row("an earlier one that is none",
            {R"({"Baidu":7,"XunFei":{"AppId":5}})", both, R"({"XunFei":{"AppId":"a"}})"},
            R"({"Baidu":{"ApiKey":"i","SecretKey":"s"},"XunFei":{"AppId":"a"}})",
            {R"({"Baidu":7})", R"({"XunFei":{"AppId":5}})"});
        row("the same", {R"({"Baidu":7})", R"({"Baidu":7})"}, R"({"Baidu":7})");
        row("a field taken away", {both, R"({"Baidu":{"ApiKey":""}})"}, R"({"Baidu":{"SecretKey":"s"}})");
        row("the last field taken away", {R"({"Baidu":{"ApiKey":"i"}})", R"({"Baidu":{"ApiKey":""}})"}, "");
    }
    void joins()
    {
        QFETCH(QList<QByteArray>, texts);
        const mevo::JoinedAccounts joined = mevo::joinAccountTexts(texts);
        QTEST(joined.text, "joined");
        QTEST(joined.unreadable, "aside");
    }

    /// Changes that wait do to what is kept what they would have done at once.
    void waitingChanges_data() { changes_data(); }
    void waitingChanges()
    {
        QFETCH(QByteArray, kept);
        QFETCH(QByteArray, result);
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        const QByteArray waiting = AccountChanges(of(before), of(after)).addedTo(QByteArray());
        QCOMPARE(waiting.isEmpty(), before == after);
        const QList<QByteArray> texts{kept, waiting};
        const QByteArray joined = mevo::joinAccountTexts(waiting.isEmpty() ? texts.mid(0, 1) : texts).text;
        QVERIFY(of(joined) == of(result));
        QVERIFY(!joined.contains("Region") || result.contains("Region"));
    }

    void laterWaitingChanges()
    {
        const OwnAccounts first = of(R"({"Baidu":{"ApiKey":"i","SecretKey":"s"}})");
        const OwnAccounts second = of(R"({"Tencent":{"SecretId":"t"}})");
        QByteArray waiting = AccountChanges(OwnAccounts(), first).addedTo(R"({"Google":1})");
        waiting = AccountChanges(first, second).addedTo(waiting);
        QCOMPARE(waiting, QByteArray(R"({"Baidu":{"ApiKey":"","SecretKey":""},"Google":1,)"
                                     R"("Tencent":{"SecretId":"t"}})"));
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
