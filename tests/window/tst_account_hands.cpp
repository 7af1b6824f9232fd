// The user's own accounts in the running program.

#include "window/AccountHands.h"

#include "base/SettingsFile.h"
#include "service/WebCipher.h"
#include "support/Rows.h"
#include "support/ScriptedHttp.h"
#include "window/Program.h"

#include <QUrlQuery>

using mevo::AccountService;
using mevo::AccountSource;
using mevo::AccountsUnkept;
using mevo::SecretPlace;

namespace {

const QByteArray kept = R"({"Baidu":{"ApiKey":"own-id","SecretKey":"own-secret"},)"
                        R"("XunFei":{"ApiKey":"xk","ApiSecret":"xs","AppId":"xa"}})";

const mevo::OwnAccounts tencent =
    *mevo::OwnAccounts::fromText(R"({"Tencent":{"SecretId":"i","SecretKey":"k"}})");
const QByteArray keptAndTencent = R"({"Baidu":{"ApiKey":"own-id","SecretKey":"own-secret"},)"
                                  R"("Tencent":{"SecretId":"i","SecretKey":"k"},)"
                                  R"("XunFei":{"ApiKey":"xk","ApiSecret":"xs","AppId":"xa"}})";

/// A program whose token service gives the token "token of ID", and notes who asked.
struct Running : ScriptedHttp, Program
{
    Running()
        : Program(true, host())
    {
        mevo::AccountHands::retryMs = 20;
        answering = [this](const ScriptedRequest &request) {
            if (!request.target.startsWith("/oauth")) {
                return ScriptedAnswer::body("", 500);
            }
            const QUrlQuery form(QString::fromUtf8(request.body));
            const QString id = form.queryItemValue("client_id"_s);
            askers.append(id);
            return id.startsWith(QLatin1String("own"))
                       ? ScriptedAnswer::body("{\"access_token\":\"token of " + id.toLatin1() + "\"}")
                       : ScriptedAnswer::body("{\"error\":\"invalid_client\"}", 401);
        };
    }
    QStringList askers;

    mevo::AccountsHost &accounts() const { return window->accountHands(); }
    /// Whether they are kept.
    bool keep(const mevo::OwnAccounts &all) const
    {
        const int before = fake.secrets->changes;
        accounts().keepAccounts(all);
        if (!QTest::qWaitFor([&] { return fake.secrets->changes > before; })) {
            qFatal("The accounts are not kept anywhere");
        }
        settle();
        return accounts().accountsUnkept() == AccountsUnkept::None;
    }
    static mevo::OwnAccounts of(const QByteArray &text)
    {
        return mevo::OwnAccounts::fromText(text).value_or(mevo::OwnAccounts());
    }
};

QString stored(const char *key)
{
    return mevo::SettingsFile().value(QLatin1String(key)).toString();
}

} // namespace

class TestAccountHands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keptAccountsAreUsed()
    {
        Running program;
        program.fake.secrets->kept = kept;
        program.start();
        QTRY_COMPARE(program.window->BaiduAccessToken, "token of own-id"_s);
        QTRY_COMPARE(program.window->BaiduTtsAccessToken, "token of own-id"_s);
        QCOMPARE(program.window->XunFeiAppId, "xa"_s);
        QCOMPARE(program.window->XunFeiMinorApiSecret, "xs"_s);
        QCOMPARE(program.accounts().accountInForce(AccountService::XunFei), AccountSource::Own);
        QCOMPARE(program.accounts().accountInForce(AccountService::Tencent), AccountSource::None);
        QCOMPARE(program.accounts().accountsPlace(), SecretPlace::Desktop);
    }

    /// Own accounts go before the lists at every draw, and what was drawn comes back when they go.
    void goBeforeTheLists()
    {
        Running program;
        const WebCipher cipher;
        QByteArray list = "[0]\n";
        for (const char *value : {"listed-app", "listed-id", "listed-secret"}) {
            list += QByteArray::number(list.count('\n') - 1) + '=' +
                    mevo::encipherField(cipher, QString::fromLatin1(value)).toLatin1() + '\n';
        }
        QFile file(qEnvironmentVariable("MEVO_HOME") + "/bbzdsrbdssset.ini"_s);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(list);
        file.close();
        program.start();
        QTRY_VERIFY(program.askers.contains("listed-id"_s));
        QCOMPARE(program.window->BaiduClientId, "listed-id"_s);
        QCOMPARE(program.accounts().accountInForce(AccountService::Baidu), AccountSource::List);
        mevo::SettingsFile().setValue("LastBDTK"_s, "of the listed one"_s);

        QVERIFY(program.keep(Running::of(kept)));
        QCOMPARE(program.accounts().accountsPlace(), SecretPlace::Desktop);
        QCOMPARE(program.fake.secrets->kept, kept);
        QCOMPARE(program.window->BaiduClientId, "own-id"_s);
        QTRY_COMPARE(program.window->BaiduAccessToken, "token of own-id"_s);
        QVERIFY(stored("LastBDTK") != QLatin1String("of the listed one"));
        program.window->TimeOutReadInitPara(); // draws anew
        QCOMPARE(program.window->BaiduClientId, "own-id"_s);

        QVERIFY(program.keep({}));
        QCOMPARE(program.fake.secrets->kept, QByteArray());
        QCOMPARE(program.window->BaiduClientId, "listed-id"_s);
        QCOMPARE(program.window->XunFeiApiKey, QString());
        QCOMPARE(program.accounts().accountInForce(AccountService::XunFei), AccountSource::None);
        QCOMPARE(program.window->BaiduAccessToken, QString());
        QCOMPARE(program.accounts().accountsPlace(), SecretPlace::Nowhere);
        file.remove();
    }

    /// A wrong own account does not fall back on the token of another one.
    void wrongAccountHasNoToken()
    {
        Running program;
        mevo::SettingsFile().setValue("LastBDTK"_s, mevo::encipherField(WebCipher(), "old token"_s));
        program.start();
        program.keep(Running::of(R"({"Baidu":{"ApiKey":"wrong","SecretKey":"s"}})"));
        QTRY_VERIFY(program.askers.contains("wrong"_s));
        program.settle();
        QCOMPARE(program.window->BaiduAccessToken, QString());
    }

    /// What a locked keyring holds is not overwritten unseen, and what could not be kept is kept later,
    /// without another prompt.
    void lockedKeyring()
    {
        Running program;
        program.fake.secrets->kept = kept;
        program.fake.secrets->locked = true;
        program.start();
        QTRY_COMPARE(program.accounts().accountsUnread(), SecretPlace::Desktop);
        QCOMPARE(program.accounts().accountsUnkept(), AccountsUnkept::None);
        QVERIFY(!program.keep(tencent));
        QCOMPARE(program.accounts().accountsUnread(), SecretPlace::Desktop);
        QCOMPARE(program.accounts().accountInForce(AccountService::Tencent), AccountSource::Own);
        QCOMPARE(program.accounts().accountInForce(AccountService::XunFei), AccountSource::None);
        QCOMPARE(program.fake.secrets->kept, kept);
        const int prompts = program.fake.secrets->prompts;

        const int changes = program.fake.secrets->changes;
        QTRY_VERIFY(program.fake.secrets->changes > changes); // it stays locked
        program.settle();
        QCOMPARE(program.accounts().accountsUnkept(), AccountsUnkept::Waiting);
        program.fake.secrets->locked = false;
        QTRY_COMPARE(program.accounts().accountsUnkept(), AccountsUnkept::None);
        QCOMPARE(program.accounts().accountsUnread(), SecretPlace::Nowhere);
        QCOMPARE(program.fake.secrets->prompts, prompts);
        QCOMPARE(program.fake.secrets->kept, keptAndTencent);
        QCOMPARE(program.accounts().accountInForce(AccountService::XunFei), AccountSource::Own);
    }

    /// A keyring that is unlocked later gives its accounts all the same.
    void unlockedLater()
    {
        Running program;
        program.fake.secrets->kept = kept;
        program.fake.secrets->locked = true;
        program.start();
        QTRY_COMPARE(program.accounts().accountsUnread(), SecretPlace::Desktop);
        program.fake.secrets->locked = false;
        QTRY_COMPARE(program.window->XunFeiAppId, "xa"_s);
        QTRY_COMPARE(program.window->BaiduAccessToken, "token of own-id"_s);
        QCOMPARE(program.fake.secrets->prompts, 1);
    }

    /// What is set before anything has been read goes on top of it, all of it.
    void changesBeforeTheReading()
    {
        Running program;
        program.fake.secrets->kept = kept;
        program.fake.secrets->held = true;
        program.start();
        program.accounts().keepAccounts(tencent);
        mevo::OwnAccounts more = tencent;
        more.set(AccountService::XunFei, 1, "another"_s);
        program.accounts().keepAccounts(more);
        program.fake.secrets->release();
        QTRY_COMPARE(program.fake.secrets->changes, 2);
        program.settle();
        const QByteArray all = QByteArray(keptAndTencent).replace("\"xk\"", "\"another\"");
        QCOMPARE(program.fake.secrets->kept, all);
        QVERIFY(program.accounts().ownAccounts() == Running::of(all));
        QCOMPARE(program.accounts().accountsUnkept(), AccountsUnkept::None);
    }

    /// An account that is taken away does not come back because the keyring could not be reached just then.
    void failedRemoval()
    {
        Running program;
        program.fake.secrets->kept = kept;
        program.start();
        QTRY_VERIFY(program.accounts().ownAccounts() == Running::of(kept));
        program.fake.secrets->locked = true;
        QVERIFY(!program.keep({}));
        QCOMPARE(program.accounts().accountsUnread(), SecretPlace::Nowhere); // what was kept is known
        program.fake.secrets->locked = false;
        QTRY_COMPARE(program.fake.secrets->kept, QByteArray());
        QTRY_COMPARE(program.accounts().accountsUnkept(), AccountsUnkept::None);
        QVERIFY(program.accounts().ownAccounts() == mevo::OwnAccounts());
    }

    /// An exit gives the store what it has not been given yet.
    void exitWithChanges_data() { flagRows("behind others", "that could be kept nowhere"); }
    void exitWithChanges()
    {
        const auto [behindOthers] = rowOf<bool>();
        Running program;
        auto &secrets = *program.fake.secrets;
        secrets.kept = kept;
        program.start();
        QTRY_VERIFY(program.accounts().ownAccounts() == Running::of(kept));
        mevo::OwnAccounts more = Running::of(keptAndTencent);
        if (behindOthers) {
            secrets.held = true;
            program.accounts().keepAccounts(more);
            more.set(AccountService::XunFei, 1, "another"_s);
            program.accounts().keepAccounts(more);
        } else {
            mevo::AccountHands::retryMs = 3600000;
            secrets.locked = true;
            secrets.waits = false;
            program.keep(more);
            QCOMPARE(program.accounts().accountsUnkept(), AccountsUnkept::InMemory);
            secrets.locked = false;
        }
        const int prompts = secrets.prompts;
        program.window.reset();
        secrets.release();
        QVERIFY(Running::of(secrets.kept) == more);
        QCOMPARE(secrets.prompts, prompts + int(behindOthers)); // those that it had been given before
    }

    /// Changes that a locked keyring did not take are in force at the next start, and go into it later.
    void changesOfTheRunBefore()
    {
        Running program;
        program.fake.secrets->kept = kept;
        program.start();
        QTRY_VERIFY(program.accounts().ownAccounts() == Running::of(kept));
        program.fake.secrets->locked = true;
        mevo::OwnAccounts changed = Running::of(keptAndTencent);
        changed.remove(AccountService::Baidu);
        QVERIFY(!program.keep(changed));
        program.window.reset();
        program.start();
        QTRY_COMPARE(program.accounts().accountsUnkept(), AccountsUnkept::Waiting);
        QCOMPARE(program.accounts().accountInForce(AccountService::Tencent), AccountSource::Own);
        QCOMPARE(program.fake.secrets->kept, kept);
        program.fake.secrets->locked = false;
        QTRY_VERIFY(Running::of(program.fake.secrets->kept) == changed);
        QTRY_COMPARE(program.accounts().accountsUnkept(), AccountsUnkept::None);
        QVERIFY(program.accounts().ownAccounts() == changed);
        QCOMPARE(program.fake.secrets->waiting, QByteArray());
    }

    /// A start that finds the keyring open needs nobody to put in order what waits.
    void waitingChangesAreKept()
    {
        Running program;
        program.fake.secrets->kept = kept;
        program.fake.secrets->waiting = R"({"Tencent":{"SecretId":"i","SecretKey":"k"}})";
        program.start();
        QTRY_COMPARE(program.fake.secrets->kept, keptAndTencent);
        QVERIFY(program.accounts().ownAccounts() == Running::of(keptAndTencent));
    }

    void keyringThatComesLater_data() { flagRows("at the settings' opening", "is asked for again"); }
    void keyringThatComesLater()
    {
        const auto [settings] = rowOf<bool>();
        Running program;
        program.fake.secrets->kept = R"({"XunFei":{"ApiKey":"xk","ApiSecret":"xs","AppId":"xa"}})";
        program.fake.secrets->older = R"({"Baidu":{"ApiKey":"own-new","SecretKey":"s"}})"; // the file
        program.fake.secrets->absent = true;
        mevo::AccountHands::retryMs = settings ? 3600000 : 20;
        program.start();
        QTRY_COMPARE(program.window->BaiduClientId, "own-new"_s);
        QCOMPARE(program.window->XunFeiAppId, QString());
        const int prompts = program.fake.secrets->prompts;
        program.fake.secrets->absent = false;
        if (settings) {
            program.window->pushBuutton_Setting_clicked();
        }
        QTRY_COMPARE(program.window->XunFeiAppId, "xa"_s);
        QCOMPARE(program.window->BaiduClientId, "own-new"_s);
        QCOMPARE(program.fake.secrets->prompts, prompts);
        const int reads = program.fake.secrets->reads;
        program.window->pushBuutton_Setting_clicked();
        program.settle();
        QCOMPARE(program.fake.secrets->reads, reads); // all is known now
    }

    /// A keyring that fails later takes nothing of what was read before.
    void keyringThatFailsLater()
    {
        Running program;
        program.fake.secrets->older = kept;
        program.fake.secrets->absent = true;
        program.start();
        QTRY_COMPARE(program.window->XunFeiAppId, "xa"_s);
        program.fake.secrets->absent = false;
        program.fake.secrets->locked = true;
        const int reads = program.fake.secrets->reads;
        QTRY_VERIFY(program.fake.secrets->reads > reads + 1);
        QCOMPARE(program.window->XunFeiAppId, "xa"_s);
        QCOMPARE(program.accounts().accountsUnread(), SecretPlace::Nowhere);
    }

    /// A text that the program does not understand is not lost to the first account that is set.
    void whatIsKeptIsNoAccount()
    {
        Running program;
        program.fake.secrets->kept = "garbage";
        program.start();
        QTRY_VERIFY(program.window->InitDone && program.fake.secrets->reads > 0);
        program.settle();
        QVERIFY(program.accounts().ownAccounts() == mevo::OwnAccounts());
        QCOMPARE(program.fake.secrets->kept, QByteArray("garbage"));
        QVERIFY(program.keep(tencent));
        QVERIFY(Running::of(program.fake.secrets->kept) == tencent);
        QCOMPARE(program.fake.secrets->aside, QList<QByteArray>({"garbage"}));
    }

    /// Of a time without the keyring there is a file, too.
    void twoPlaces()
    {
        Running program;
        program.fake.secrets->older = kept;
        program.fake.secrets->kept = R"({"Baidu":{"ApiKey":"own-new","SecretKey":"s"}})";
        program.start();
        QTRY_COMPARE(program.window->BaiduClientId, "own-new"_s);
        QCOMPARE(program.window->XunFeiAppId, "xa"_s);
    }
};

QTEST_MAIN(TestAccountHands)
#include "tst_account_hands.moc"
