// Which account is in force, and what an answer to a check says about one.

#include "engines/AccountChoice.h"
#include "engines/AccountVerdict.h"
#include "engines/TencentCredentials.h"
#include "support/Rows.h"

#include <QtTest>

using mevo::AccountFault;
using mevo::AccountService;
using mevo::AccountSource;

namespace {

/// "a,b,c" into the fields of a service.
void give(mevo::OwnAccounts &accounts, AccountService service, const char *values)
{
    const QStringList list = QString::fromLatin1(values).split(QLatin1Char(','));
    for (int field = 0; field < list.size(); ++field) {
        accounts.set(service, field, list[field]);
    }
}

} // namespace

class TestAccounts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void inForce_data()
    {
        // service, own (fields), others (list account, record and deployment that there are), source, and
        // what Tencent is called with
        const Rows<AccountService, QByteArray, QByteArray, AccountSource, QByteArray> row;
        const auto baidu = AccountService::Baidu, tencent = AccountService::Tencent,
                   xunFei = AccountService::XunFei, translate = AccountService::BaiduTranslate;
        row("Baidu: nobody's", baidu, "", "", AccountSource::None, "");
        row("Baidu: a list's", baidu, "", "list", AccountSource::List, "");
        row("Baidu: own before the list", baidu, "k,s", "list", AccountSource::Own, "");
        row("Baidu: half an own one is none", baidu, "k", "list", AccountSource::List, "");
        row("Baidu: half an own one alone", baidu, "k", "", AccountSource::None, "");
        row("Baidu: Tencent's are no help", baidu, "", "record,deployment", AccountSource::None, "");
        row("XunFei: own", xunFei, "a,k,s", "", AccountSource::Own, "");
        row("XunFei: without a secret", xunFei, "a,k", "list", AccountSource::List, "");
        row("translation: own", translate, "a,k", "list", AccountSource::Own, "");
        row("translation: a list's", translate, "", "list", AccountSource::List, "");
        row("Tencent: nobody's", tencent, "", "", AccountSource::None, "/");
        row("Tencent: the deployment's", tencent, "", "deployment", AccountSource::Deployment, "DID/DKEY");
        row("Tencent: the record before it", tencent, "", "record,deployment", AccountSource::Record,
            "RID/RKEY");
        row("Tencent: own before both", tencent, "OID;x,OKEY", "record,deployment", AccountSource::Own,
            "OID;x/OKEY");
        row("Tencent: own alone", tencent, "OID,OKEY", "", AccountSource::Own, "OID/OKEY");
        row("Tencent: half an own one", tencent, "OID", "deployment", AccountSource::Deployment, "DID/DKEY");
        row("Tencent: an id of the record with the deployment's key", tencent, "", "id,deployment",
            AccountSource::Record, "RID/DKEY");
        row("Tencent: an id alone", tencent, "", "id", AccountSource::None, "RID/");
    }
    void inForce()
    {
        const auto [service, own, others, source, called] =
            rowOf<AccountService, QByteArray, QByteArray, AccountSource, QByteArray>();
        EngineState state;
        mevo::EngineEndpoints endpoints;
        give(state.ownAccounts, service, own);
        for (const QByteArray &other : others.split(',')) {
            if (other == "list") {
                state.BaiduClientId = state.BaiduClientSecret = state.XunFeiAppId = state.XunFeiApiKey =
                    state.XunFeiApiSecret = state.BaiduTranslateAppId = state.BaiduTranslateKey = "drawn"_s;
            } else if (other == "record" || other == "id") {
                state.TXSCD = "RID"_s;
                state.TXSCK = other == "id" ? QString() : "RKEY"_s;
            } else if (other == "deployment") {
                endpoints.TencentSecretIds = "DID"_s;
                endpoints.TencentSecretKeys = "DKEY"_s;
            }
        }
        QCOMPARE(mevo::accountInForce(service, state, endpoints), source);
        if (service == AccountService::Tencent) {
            const auto drawn =
                mevo::drawTencentCredential(state, endpoints, [](int low, int) { return low; });
            QCOMPARE(drawn.secretId + '/' + drawn.secretKey, called);
        }
    }

    void insteadOfLists_data()
    {
        const Rows<QString> row; // values; the list is that of the row's name
        for (const char *file : {"bjsdsrbdssset.ini", "bbzdsrbdssset.ini", "byydsrbdssset.ini",
                                 "bendsrbdssset.ini", "bschdsrbdssset.ini", "bdsrbdsssettts.ini"}) {
            row(file, ",bk,bs");
        }
        row("besrfdssset.ini", "xa,xk,xs");
        row("besrfdsssetFYSL.ini", "xa,xk,xs");
        row("bdsrbdsssetfy.ini", "ta,tk,");
    }
    void insteadOfLists()
    {
        const auto [values] = rowOf<QString>();
        const auto &lists = mevo::credentialLists();
        const auto list = std::find_if(lists.begin(), lists.end(), [](const mevo::CredentialListRow &row) {
            return qstrcmp(row.file, QTest::currentDataTag()) == 0;
        });
        QVERIFY(list != lists.end());
        mevo::OwnAccounts accounts;
        give(accounts, AccountService::Tencent, "id,key");
        QVERIFY(!mevo::ownAccountFor(*list, accounts));
        give(accounts, AccountService::Baidu, "bk,bs");
        give(accounts, AccountService::XunFei, "xa,xk,xs");
        give(accounts, AccountService::BaiduTranslate, "ta,tk");
        const auto own = mevo::ownAccountFor(*list, accounts);
        QVERIFY(own);
        QCOMPARE(QStringList({(*own)[0], (*own)[1], (*own)[2]}).join(QLatin1Char(',')), values);
    }

    void verdicts_data()
    {
        const Rows<QByteArray, int, QByteArray, AccountFault, QString> table;
        const auto row = [&table](const char *service, int status, const QByteArray &body, AccountFault fault,
                                  const char *detail = "") {
            table(service + (' ' + QByteArray::number(status)) + ' ' + body.left(60), service, status, body,
                  fault, detail);
        };
        row("token", 200, R"({"access_token":"24.abc","expires_in":2592000})", AccountFault::None);
        row("token", 401, R"({"error":"invalid_client","error_description":"unknown client id"})",
            AccountFault::WrongId, "unknown client id");
        row("token", 401, R"({"error":"invalid_client","error_description":"Client authentication failed"})",
            AccountFault::WrongSecret, "Client authentication failed");
        row("token", 400, R"({"error":"invalid_request","error_description":"no grant type"})",
            AccountFault::ServiceFails, "no grant type");
        row("token", 502, "<html>Bad\nGateway</html>", AccountFault::ServiceFails,
            "HTTP 502 <html>Bad Gateway</html>");
        row("token", 200, R"({"expires_in":1})", AccountFault::ServiceFails, R"(HTTP 200 {"expires_in":1})");
        row("speech", 200, R"({"err_no":0,"err_msg":"success.","result":[""]})", AccountFault::None);
        row("speech", 200, R"({"err_no":3301,"err_msg":"speech quality error."})", AccountFault::None);
        row("speech", 200, R"({"err_no":3302,"err_msg":"Authentication failed"})", AccountFault::NotOpened,
            "3302 Authentication failed");
        row("speech", 200, R"({"err_no":3304,"err_msg":"qps"})", AccountFault::Quota, "3304 qps");
        row("speech", 200, R"({"err_no":3305,"err_msg":"daily"})", AccountFault::Quota, "3305 daily");
        row("speech", 200, R"({"err_no":3303,"err_msg":"server"})", AccountFault::ServiceFails,
            "3303 server");
        row("speech", 200, "{}", AccountFault::ServiceFails, "HTTP 200 {}");
        row("speech", 200, "", AccountFault::ServiceFails, "HTTP 200");
        row("tencent", 200, R"({"Response":{"Result":"","RequestId":"1"}})", AccountFault::None);
        row("tencent", 200,
            R"({"Response":{"Error":{"Code":"AuthFailure.SecretIdNotFound","Message":"no"}}})",
            AccountFault::WrongId, "AuthFailure.SecretIdNotFound no");
        row("tencent", 200,
            R"({"Response":{"Error":{"Code":"AuthFailure.SignatureFailure","Message":"no"}}})",
            AccountFault::WrongSecret, "AuthFailure.SignatureFailure no");
        row("tencent", 200,
            R"({"Response":{"Error":{"Code":"AuthFailure.SignatureExpire","Message":"late"}}})",
            AccountFault::ClockWrong, "AuthFailure.SignatureExpire late");
        row("tencent", 200,
            R"({"Response":{"Error":{"Code":"AuthFailure.UnauthorizedOperation","Message":"cam"}}})",
            AccountFault::NotOpened, "AuthFailure.UnauthorizedOperation cam");
        row("tencent", 200,
            R"({"Response":{"Error":{"Code":"FailedOperation.UserNotRegistered","Message":"open it"}}})",
            AccountFault::NotOpened, "FailedOperation.UserNotRegistered open it");
        row("tencent", 200,
            R"({"Response":{"Error":{"Code":"FailedOperation.UserHasNoFreeAmount","Message":"pay"}}})",
            AccountFault::Quota, "FailedOperation.UserHasNoFreeAmount pay");
        row("tencent", 200,
            R"({"Response":{"Error":{"Code":"InvalidParameterValue.ErrorVoicedataTooshort","Message":"x"}}})",
            AccountFault::None);
        row("tencent", 200, R"({"Response":{"Error":{"Code":"InternalError","Message":"x"}}})",
            AccountFault::ServiceFails, "InternalError x");
        row("tencent", 500, "oops", AccountFault::ServiceFails, "HTTP 500 oops");
        row("xunfei refuses", 401,
            R"({"message":"HMAC signature cannot be verified: fail to retrieve credential"})",
            AccountFault::WrongId, "HMAC signature cannot be verified: fail to retrieve credential");
        row("xunfei refuses", 401, R"({"message":"HMAC signature does not match"})",
            AccountFault::WrongSecret, "HMAC signature does not match");
        row("xunfei refuses", 403,
            R"({"message":"HMAC signature cannot be verified, a valid date or x-date header is required"})",
            AccountFault::ClockWrong,
            "HMAC signature cannot be verified, a valid date or x-date header is required");
        row("xunfei refuses", 403, R"({"message":"Your IP address is not allowed"})", AccountFault::NotOpened,
            "Your IP address is not allowed");
        row("xunfei refuses", 404, "", AccountFault::ServiceFails, "HTTP 404");
        row("xunfei", 0, R"({"code":0,"message":"success","data":{"status":2}})", AccountFault::None);
        row("xunfei", 0, R"({"code":10313,"message":"invalid appid"})", AccountFault::WrongId,
            "10313 invalid appid");
        row("xunfei", 0, R"({"code":11200,"message":"auth no license"})", AccountFault::NotOpened,
            "11200 auth no license");
        row("xunfei", 0, R"({"code":11201,"message":"daily"})", AccountFault::Quota, "11201 daily");
        row("xunfei", 0, R"({"code":10043,"message":"decode"})", AccountFault::ServiceFails, "10043 decode");
        row("xunfei", 0, "{", AccountFault::ServiceFails, "HTTP 200 {");
        row("translation", 200, R"({"from":"zh","to":"en","trans_result":[{"src":"a","dst":"b"}]})",
            AccountFault::None);
        row("translation", 200, R"({"error_code":"52003","error_msg":"UNAUTHORIZED USER"})",
            AccountFault::WrongId, "52003 UNAUTHORIZED USER");
        row("translation", 200, R"({"error_code":54001,"error_msg":"Invalid Sign"})",
            AccountFault::WrongSecret, "54001 Invalid Sign");
        row("translation", 200, R"({"error_code":"54004","error_msg":"Please recharge"})",
            AccountFault::Quota, "54004 Please recharge");
        row("translation", 200, R"({"error_code":"58002","error_msg":"SERVICE CLOSED"})",
            AccountFault::NotOpened, "58002 SERVICE CLOSED");
        row("translation", 200, R"({"error_code":"52001","error_msg":"TIMEOUT"})", AccountFault::ServiceFails,
            "52001 TIMEOUT");
        row("translation", 200, R"({"trans_result":[]})", AccountFault::ServiceFails,
            R"(HTTP 200 {"trans_result":[]})");
    }
    void verdicts()
    {
        const auto [service, status, body, fault, detail] =
            rowOf<QByteArray, int, QByteArray, AccountFault, QString>();
        const mevo::AccountVerdict verdict =
            service == "token"         ? mevo::baiduTokenVerdict(status, body)
            : service == "speech"      ? mevo::baiduSpeechVerdict(status, body)
            : service == "tencent"     ? mevo::tencentVerdict(status, body)
            : service == "xunfei"      ? mevo::xunFeiVerdict(QString::fromUtf8(body))
            : service == "translation" ? mevo::translationVerdict(status, body)
                                       : mevo::xunFeiRefusal(status, body);
        QCOMPARE(verdict.fault, fault);
        QCOMPARE(verdict.detail, detail);
    }

    void words()
    {
        QCOMPARE(mevo::accountVerdictText({}), "账号可用"_s);
        QCOMPARE(mevo::accountVerdictText({AccountFault::WrongSecret, "54001 Invalid Sign"_s}),
                 "密钥不正确 (54001 Invalid Sign)"_s);
        QCOMPARE(mevo::accountVerdictText({AccountFault::ClockWrong, QString()}),
                 "电脑的时间不正确，请校准后再试"_s);
        QCOMPARE(mevo::accountVerdictText({AccountFault::NoNetwork, QString()}),
                 "连接不上服务，请检查网络"_s);
        QCOMPARE(mevo::xunFeiRefusal(401, "{\"message\":\"" + QByteArray(5000, 'x') + "\"}").detail.size(),
                 200);
    }
};

QTEST_GUILESS_MAIN(TestAccounts)
#include "tst_accounts.moc"
