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

/// A program whose token service gives the token "token of ID", and notes who asked.
struct Running : ScriptedHttp, Program
{
    Running()
        : Program(true, host())
    {
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
    SecretPlace keep(const mevo::OwnAccounts &all) const
    {
        std::optional<SecretPlace> place;
        accounts().keepAccounts(all, window.get(), [&place](SecretPlace where) { place = where; });
        if (!QTest::qWaitFor([&place] { return place.has_value(); })) {
            qFatal("It is not said where the accounts are kept");
        }
        return *place;
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

        QCOMPARE(program.keep(Running::of(kept)), SecretPlace::Desktop);
        QCOMPARE(program.fake.secrets->kept, kept);
        QCOMPARE(program.window->BaiduClientId, QStringLiteral("own-id"));
        QTRY_COMPARE(program.window->BaiduAccessToken, QStringLiteral("token of own-id"));
        QVERIFY(stored("LastBDTK") != QLatin1String("of the listed one"));
        program.window->TimeOutReadInitPara(); // draws anew
        QCOMPARE(program.window->BaiduClientId, QStringLiteral("own-id"));

        program.keep({});
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

    /// What a locked keyring holds is not overwritten unseen.
    void lockedKeyring()
    {
        Running program;
        program.fake.secrets->kept = kept;
        program.fake.secrets->locked = true;
        program.start();
        QTRY_VERIFY(program.accounts().accountsLocked());
        const mevo::OwnAccounts tencent = Running::of(R"({"Tencent":{"SecretId":"i","SecretKey":"k"}})");
        QCOMPARE(program.keep(tencent), SecretPlace::Nowhere);
        QCOMPARE(program.accounts().accountInForce(AccountService::Tencent), AccountSource::Own);
        QCOMPARE(program.fake.secrets->kept, kept);

        program.fake.secrets->locked = false;
        mevo::OwnAccounts more = tencent;
        more.set(AccountService::Tencent, 1, QStringLiteral("k2"));
        QCOMPARE(program.keep(more), SecretPlace::Desktop);
        QCOMPARE(program.accounts().accountsLocked(), false);
        const QByteArray all = program.fake.secrets->kept;
        QVERIFY2(all.contains("own-secret") && all.contains("k2") && all.contains("xs"), all.constData());
    }

    void whatIsKeptIsNoAccount()
    {
        Running program;
        program.fake.secrets->kept = "garbage";
        program.start();
        QTRY_VERIFY(program.window->InitDone && program.fake.secrets->reads > 0);
        program.settle();
        QVERIFY(program.accounts().ownAccounts().isEmpty());
    }
};

QTEST_MAIN(TestAccountHands)
#include "tst_account_hands.moc"
