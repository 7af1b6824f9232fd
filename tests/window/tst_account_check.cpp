// An account is tried against the lab's services, which verify what they are sent by themselves.

#include "window/AccountCheck.h"

#include "support/FakePlatform.h"
#include "window/LabAccounts.h"

#include <QElapsedTimer>
#include <QTcpServer>
#include <QtTest>

#include <memory>

using mevo::AccountFault;
using mevo::AccountService;

Q_DECLARE_METATYPE(mevo::AccountService)
Q_DECLARE_METATYPE(mevo::AccountFault)

namespace {

/// An address at which nobody listens.
QString nobody()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return QStringLiteral("127.0.0.1:%1").arg(server.serverPort());
}

} // namespace

class TestAccountCheck : public QObject
{
    Q_OBJECT

private:
    FakePlatform m_fakes;
    MainState m_state;

    mevo::AccountVerdict check(const mevo::EngineEndpoints &endpoints, AccountService service,
                               const QByteArray &values, int timeoutMs = 20000)
    {
        mevo::OwnAccounts::Values fields;
        const QList<QByteArray> list = values.split(',');
        for (int i = 0; i < list.size(); ++i) {
            fields[std::size_t(i)] = QString::fromLatin1(list[i]);
        }
        mevo::AccountCheck check(m_state, *m_fakes.systemFacts, *m_fakes.time, endpoints);
        check.timeoutMs = timeoutMs;
        QList<mevo::AccountVerdict> verdicts;
        check.start(service, fields,
                    [&verdicts](const mevo::AccountVerdict &verdict) { verdicts.append(verdict); });
        if (!QTest::qWaitFor([&verdicts] { return !verdicts.isEmpty(); }, 30000)) {
            QTest::qFail("No verdict comes", __FILE__, __LINE__);
            return {};
        }
        return verdicts.first();
    }

private Q_SLOTS:
    void init() { m_fakes.time->start = QDateTime::currentDateTimeUtc(); }

    void accounts_data()
    {
        QTest::addColumn<AccountService>("service");
        QTest::addColumn<QByteArray>("values");
        QTest::addColumn<AccountFault>("fault");
        QTest::addColumn<QString>("detail");
        const auto row = [](const char *name, AccountService service, const char *values, AccountFault fault,
                            const char *detail = "") {
            QTest::newRow(name) << service << QByteArray(values) << fault << QString::fromUtf8(detail);
        };
        const auto baidu = AccountService::Baidu, tencent = AccountService::Tencent,
                   xunFei = AccountService::XunFei, translate = AccountService::BaiduTranslate;
        row("Baidu: right", baidu, "client-id-1234,client-secret", AccountFault::None);
        row("Baidu: wrong key", baidu, "somebody,client-secret", AccountFault::WrongId, "unknown client id");
        row("Baidu: wrong secret", baidu, "client-id-1234,secret", AccountFault::WrongSecret,
            "Client authentication failed");
        row("Baidu: half", baidu, "client-id-1234,", AccountFault::Incomplete);
        row("Tencent: right", tencent, "AKID-of-the-test,key-of-the-test", AccountFault::None);
        row("Tencent: wrong id", tencent, "AKID,key-of-the-test", AccountFault::WrongId,
            "AuthFailure.SecretIdNotFound The SecretId is not found, please ensure that your SecretId is "
            "correct.");
        row("Tencent: wrong key", tencent, "AKID-of-the-test,key", AccountFault::WrongSecret,
            "AuthFailure.SignatureFailure The provided credentials could not be validated. Please check your "
            "signature is correct.");
        row("XunFei: right", xunFei, "app1,api-key-of-the-test,secret1", AccountFault::None);
        row("XunFei: wrong app", xunFei, "app2,api-key-of-the-test,secret1", AccountFault::WrongId,
            "10313 invalid appid");
        row("XunFei: wrong key", xunFei, "app1,key,secret1", AccountFault::WrongId,
            "HMAC signature cannot be verified: fail to retrieve credential");
        row("XunFei: wrong secret", xunFei, "app1,api-key-of-the-test,secret", AccountFault::WrongSecret,
            "HMAC signature does not match");
        row("translation: right", translate, "appid,translation-key", AccountFault::None);
        row("translation: wrong id", translate, "other,translation-key", AccountFault::WrongId,
            "52003 UNAUTHORIZED USER");
        row("translation: wrong key", translate, "appid,key", AccountFault::WrongSecret,
            "54001 Invalid Sign");
    }
    void accounts()
    {
        QFETCH(AccountService, service);
        QFETCH(QByteArray, values);
        LabAccounts services;
        QVERIFY(services.ready);
        const mevo::AccountVerdict verdict = check(services.endpoints, service, values);
        QTEST(verdict.fault, "fault");
        QTEST(verdict.detail, "detail");
    }

    void otherFaults()
    {
        LabAccounts services;
        QVERIFY(services.ready);
        const QByteArray baidu = "client-id-1234,client-secret", tencent = "AKID-of-the-test,key-of-the-test";
        services.baidu.setError(3305, 1);
        QCOMPARE(check(services.endpoints, AccountService::Baidu, baidu).fault, AccountFault::Quota);
        services.tencent.setError({QStringLiteral("FailedOperation.UserHasNoAmount"), {}}, 1);
        QCOMPARE(check(services.endpoints, AccountService::Tencent, tencent).fault, AccountFault::Quota);
        services.xunFei.control(QUrlQuery(QStringLiteral("error=11201")));
        QCOMPARE(check(services.endpoints, AccountService::XunFei, "app1,api-key-of-the-test,secret1").fault,
                 AccountFault::Quota);
        services.translate.control(QUrlQuery(QStringLiteral("error=54004")));
        QCOMPARE(check(services.endpoints, AccountService::BaiduTranslate, "appid,translation-key").fault,
                 AccountFault::Quota);
        services.baiduHttp.setFault("/server_api", {"garbage"});
        QCOMPARE(check(services.endpoints, AccountService::Baidu, baidu).fault, AccountFault::ServiceFails);
    }

    void wrongClock()
    {
        LabAccounts services;
        QVERIFY(services.ready);
        m_fakes.time->start = QDateTime::currentDateTimeUtc().addSecs(-3600);
        QCOMPARE(check(services.endpoints, AccountService::Tencent, "AKID-of-the-test,key-of-the-test").fault,
                 AccountFault::ClockWrong);
        QCOMPARE(check(services.endpoints, AccountService::XunFei, "app1,api-key-of-the-test,secret1").fault,
                 AccountFault::ClockWrong);
    }

    void network_data()
    {
        QTest::addColumn<AccountService>("service");
        QTest::newRow("Baidu") << AccountService::Baidu;
        QTest::newRow("Tencent") << AccountService::Tencent;
        QTest::newRow("XunFei") << AccountService::XunFei;
        QTest::newRow("translation") << AccountService::BaiduTranslate;
    }
    void network()
    {
        QFETCH(AccountService, service);
        mevo::EngineEndpoints endpoints;
        endpoints.XunFeiSignHost = QStringLiteral("localhost");
        endpoints.BaiduTokenHost = endpoints.TencentHost = endpoints.XunFeiSocketHost =
            endpoints.TranslateHost = nobody();
        QCOMPARE(check(endpoints, service, "a,b,c").fault, AccountFault::NoNetwork);

        QTcpServer silent; // takes connections and says nothing
        QVERIFY(silent.listen(QHostAddress::LocalHost));
        endpoints.BaiduTokenHost = endpoints.TencentHost = endpoints.XunFeiSocketHost =
            endpoints.TranslateHost = QStringLiteral("127.0.0.1:%1").arg(silent.serverPort());
        QCOMPARE(check(endpoints, service, "a,b,c", 200).fault, AccountFault::TimeOut);
    }

    /// Nobody hears of a check that has been given up.
    void goes()
    {
        LabAccounts services;
        bool heard = false;
        auto given = std::make_unique<mevo::AccountCheck>(m_state, *m_fakes.systemFacts, *m_fakes.time,
                                                          services.endpoints);
        given->start(AccountService::XunFei, {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")},
                     [&heard](const mevo::AccountVerdict &) { heard = true; });
        given.reset();
        QCOMPARE(check(services.endpoints, AccountService::XunFei, "app1,api-key-of-the-test,secret1").fault,
                 AccountFault::None);
        QVERIFY(!heard);
    }

    /// The service gives an unknown key back; it is not shown.
    void hidesWhatItIsGiven()
    {
        lab::LabHttpServer server([](const lab::HttpRequest &, const lab::LabHttpServer::Reply &reply) {
            reply({401, "application/json",
                   R"({"error":"invalid_client","error_description":"no my-very-own-secret-key"})"});
        });
        QVERIFY(server.start(0));
        mevo::EngineEndpoints endpoints;
        endpoints.BaiduTokenHost = QStringLiteral("127.0.0.1:%1").arg(server.serverPort());
        QCOMPARE(check(endpoints, AccountService::Baidu, "a-client-of-mine,my-very-own-secret-key").detail,
                 QStringLiteral("no ••••-key"));
    }
};

QTEST_GUILESS_MAIN(TestAccountCheck)
#include "tst_account_check.moc"
