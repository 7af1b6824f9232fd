#include "state/AccountChanges.h"
#include "support/Rows.h"

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
        QVERIFY(accounts.set(AccountService::Baidu, 0, "  client\n"_s));
        QVERIFY(accounts.set(AccountService::Baidu, 1, "密钥"_s));
        QVERIFY(accounts.set(AccountService::XunFei, 2, "secret"_s));
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
        const Rows<QByteArray, bool, QByteArray> add; // text, understood, kept
        const auto row = [&](const char *name, const QByteArray &text, bool understood,
                             const char *kept = "") { add(name, text, understood, QByteArray(kept)); };
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
        const auto [text, understood, kept] = rowOf<QByteArray, bool, QByteArray>();
        const auto accounts = OwnAccounts::fromText(text);
        QCOMPARE(accounts.has_value(), understood);
        QVERIFY(accounts.value_or(OwnAccounts()) == of(kept));
    }

    void fields()
    {
        OwnAccounts accounts;
        QVERIFY(accounts.set(AccountService::Tencent, 1, QString(200, QLatin1Char('k'))));
        QVERIFY(!accounts.set(AccountService::Tencent, 1, QString(201, QLatin1Char('k'))));
        QVERIFY(!accounts.set(AccountService::Tencent, 2, "there is no third"_s));
        QVERIFY(!accounts.set(AccountService::XunFei, -1, "x"_s));
        QCOMPARE(accounts.values(AccountService::Tencent)[1].size(), 200);
        QVERIFY(!accounts.isComplete(AccountService::Tencent));
        QVERIFY(accounts.set(AccountService::Tencent, 0, "id"_s));
        QVERIFY(accounts.isComplete(AccountService::Tencent));
    }

    void typed_data()
    {
        const Rows<QString, int, QString> add; // typed, fault, text
        const auto row = [&](const char *name, const QString &typed, AccountValue::Fault fault,
                             const QString &text) { add(name, typed, int(fault), text); };
        const auto fine = AccountValue::Fault::None;
        row("nothing", {}, fine, {});
        row("blanks alone", " \r\n\t"_s, fine, {});
        row("a line end behind", "key\r\n"_s, fine, "key"_s);
        row("marks around", "\uFEFF\u00A0\u200Bkey\u200B\u2028"_s, fine, "key"_s);
        row("a blank within", " a key "_s, fine, "a key"_s);
        row("two lines", "id\nkey\n"_s, AccountValue::Fault::Invisible, "id\nkey"_s);
        row("a mark within", "k\u200Bey"_s, AccountValue::Fault::Invisible, "k\u200Bey"_s);
        row("the longest", "\n"_s + QString(200, QLatin1Char('k')), fine, QString(200, QLatin1Char('k')));
        row("too long", QString(201, QLatin1Char('k')), AccountValue::Fault::TooLong,
            QString(201, QLatin1Char('k')));
    }
    void typed()
    {
        const auto [typed, fault, text] = rowOf<QString, int, QString>();
        const AccountValue value = mevo::accountValue(typed);
        QCOMPARE(int(value.fault), fault);
        QCOMPARE(value.text, text);
    }

    void changes_data()
    {
        // before (as the program knows it), after, kept, result
        const Rows<QByteArray, QByteArray, QByteArray, QByteArray> row;
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
        const auto [before, after, kept, result] = rowOf<QByteArray, QByteArray, QByteArray, QByteArray>();
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
        const Rows<QList<QByteArray>, QByteArray, QList<QByteArray>> add; // texts, wanted, aside
        const auto row = [&](const char *name, const QList<QByteArray> &texts, const char *joined,
                             const QList<QByteArray> &aside = {}) {
            add(name, texts, QByteArray(joined), aside);
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
        const auto [texts, wanted, aside] = rowOf<QList<QByteArray>, QByteArray, QList<QByteArray>>();
        const mevo::JoinedAccounts joined = mevo::joinAccountTexts(texts);
        QCOMPARE(joined.text, wanted);
        QCOMPARE(joined.unreadable, aside);
    }

    /// Changes that wait do to what is kept what they would have done at once.
    void waitingChanges_data() { changes_data(); }
    void waitingChanges()
    {
        const auto [before, after, kept, result] = rowOf<QByteArray, QByteArray, QByteArray, QByteArray>();
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
        const Rows<QString, QString> row; // secret, hint
        row("long", "AKIDabcdefgh1234"_s, "••••1234"_s);
        row("twelve", "abcdefgh5678"_s, "••••5678"_s);
        row("eleven", "abcdefg5678"_s, "••••"_s);
        row("short", "1234"_s, "••••"_s);
    }
    void hints()
    {
        const auto [secret, hint] = rowOf<QString, QString>();
        QCOMPARE(mevo::secretHint(secret), hint);
    }
};

QTEST_GUILESS_MAIN(TestOwnAccounts)
#include "tst_own_accounts.moc"
