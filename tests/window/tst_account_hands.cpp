// The user's own accounts in the running program.

#include "window/AccountHands.h"

#include "base/SettingsFile.h"
#include "service/WebCipher.h"
#include "support/ScriptedHttp.h"
#include "window/Program.h"

#include <QUrlQuery>

using mevo::AccountService;
using mevo::AccountSource;
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
            const QString id = form.queryItemValue(QStringLiteral("client_id"));
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
        return !accounts().accountsUnkept();
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
        QTRY_COMPARE(program.window->BaiduAccessToken, QStringLiteral("token of own-id"));
        QTRY_COMPARE(program.window->BaiduTtsAccessToken, QStringLiteral("token of own-id"));
        QCOMPARE(program.window->XunFeiAppId, QStringLiteral("xa"));
        QCOMPARE(program.window->XunFeiMinorApiSecret, QStringLiteral("xs"));
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
        QFile file(qEnvironmentVariable("MEVO_HOME") + QStringLiteral("/bbzdsrbdssset.ini"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(list);
        file.close();
        program.start();
        QTRY_VERIFY(program.askers.contains(QStringLiteral("listed-id")));
        QCOMPARE(program.window->BaiduClientId, QStringLiteral("listed-id"));
        QCOMPARE(program.accounts().accountInForce(AccountService::Baidu), AccountSource::List);
        mevo::SettingsFile().setValue(QStringLiteral("LastBDTK"), QStringLiteral("of the listed one"));

        QVERIFY(program.keep(Running::of(kept)));
        QCOMPARE(program.accounts().accountsPlace(), SecretPlace::Desktop);
        QCOMPARE(program.fake.secrets->kept, kept);
        QCOMPARE(program.window->BaiduClientId, QStringLiteral("own-id"));
        QTRY_COMPARE(program.window->BaiduAccessToken, QStringLiteral("token of own-id"));
        QVERIFY(stored("LastBDTK") != QLatin1String("of the listed one"));
        program.window->TimeOutReadInitPara(); // draws anew
        QCOMPARE(program.window->BaiduClientId, QStringLiteral("own-id"));

        QVERIFY(program.keep({}));
        QCOMPARE(program.fake.secrets->kept, QByteArray());
        QCOMPARE(program.window->BaiduClientId, QStringLiteral("listed-id"));
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
        mevo::SettingsFile().setValue(QStringLiteral("LastBDTK"),
                                      mevo::encipherField(WebCipher(), QStringLiteral("old token")));
        program.start();
        program.keep(Running::of(R"({"Baidu":{"ApiKey":"wrong","SecretKey":"s"}})"));
        QTRY_VERIFY(program.askers.contains(QStringLiteral("wrong")));
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
        QTRY_VERIFY(program.accounts().accountsLocked());
        QVERIFY(!program.accounts().accountsUnkept());
        QVERIFY(!program.keep(tencent));
        QVERIFY(program.accounts().accountsLocked());
        QCOMPARE(program.accounts().accountInForce(AccountService::Tencent), AccountSource::Own);
        QCOMPARE(program.accounts().accountInForce(AccountService::XunFei), AccountSource::None);
        QCOMPARE(program.fake.secrets->kept, kept);
        const int prompts = program.fake.secrets->prompts;

        const int changes = program.fake.secrets->changes;
        QTRY_VERIFY(program.fake.secrets->changes > changes); // it stays locked
        program.settle();
        QVERIFY(program.accounts().accountsUnkept());
        program.fake.secrets->locked = false;
        QTRY_VERIFY(!program.accounts().accountsUnkept());
        QCOMPARE(program.accounts().accountsLocked(), false);
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
        QTRY_VERIFY(program.accounts().accountsLocked());
        program.fake.secrets->locked = false;
        QTRY_COMPARE(program.window->XunFeiAppId, QStringLiteral("xa"));
        QTRY_COMPARE(program.window->BaiduAccessToken, QStringLiteral("token of own-id"));
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
        more.set(AccountService::XunFei, 1, QStringLiteral("another"));
        program.accounts().keepAccounts(more);
        program.fake.secrets->release();
        QTRY_COMPARE(program.fake.secrets->changes, 2);
        program.settle();
        const QByteArray all = QByteArray(keptAndTencent).replace("\"xk\"", "\"another\"");
        QCOMPARE(program.fake.secrets->kept, all);
        QCOMPARE(program.accounts().ownAccounts().toText(), all);
        QVERIFY(!program.accounts().accountsUnkept());
    }

    /// An account that is taken away does not come back because the keyring could not be reached just then.
    void failedRemoval()
    {
        Running program;
        program.fake.secrets->kept = kept;
        program.start();
        QTRY_VERIFY(!program.accounts().ownAccounts().isEmpty());
        program.fake.secrets->locked = true;
        QVERIFY(!program.keep({}));
        QVERIFY(!program.accounts().accountsLocked()); // what was kept is known
        program.fake.secrets->locked = false;
        QTRY_COMPARE(program.fake.secrets->kept, QByteArray());
        QTRY_VERIFY(!program.accounts().accountsUnkept());
        QVERIFY(program.accounts().ownAccounts().isEmpty());
    }

    /// A text that the program does not understand is not lost to the first account that is set.
    void whatIsKeptIsNoAccount()
    {
        Running program;
        program.fake.secrets->kept = "garbage";
        program.start();
        QTRY_VERIFY(program.window->InitDone && program.fake.secrets->reads > 0);
        program.settle();
        QVERIFY(program.accounts().ownAccounts().isEmpty());
        QCOMPARE(program.fake.secrets->kept, QByteArray("garbage"));
        QVERIFY(program.keep(tencent));
        QCOMPARE(program.fake.secrets->kept, tencent.toText());
        QCOMPARE(program.fake.secrets->aside, QList<QByteArray>({"garbage"}));
    }

    /// Of a time without the keyring there is a file, too.
    void twoPlaces()
    {
        Running program;
        program.fake.secrets->older = kept;
        program.fake.secrets->kept = R"({"Baidu":{"ApiKey":"own-new","SecretKey":"s"}})";
        program.start();
        QTRY_COMPARE(program.window->BaiduClientId, QStringLiteral("own-new"));
        QCOMPARE(program.window->XunFeiAppId, QStringLiteral("xa"));
    }
};

QTEST_MAIN(TestAccountHands)
#include "tst_account_hands.moc"
