#include "base/ApplicationFiles.h"
#include "base/SettingsFile.h"
#include "engines/BaiduTokens.h"
#include "engines/CredentialStore.h"
#include "support/FakePlatform.h"
#include "support/ScratchHome.h"
#include "support/ScriptedHttp.h"

#include <QJsonDocument>
#include <QtTest>

#include <csignal>
#include <functional>
#include <memory>
#include <set>

#include <sys/resource.h>

using mevo::CredentialList;

namespace {

ScratchHome home;
const WebCipher cipher;

QByteArray field(const char *text)
{
    return mevo::encipherField(cipher, QString::fromUtf8(text)).toLatin1();
}

/// An account file with the groups named after `names`, each value "NAME-KEY".
QByteArray accounts(const QList<QByteArray> &names, int keys = 3)
{
    QByteArray text;
    for (int group = 0; group < names.size(); ++group) {
        text += '[' + QByteArray::number(group) + "]\n";
        for (int key = 0; key < keys; ++key) {
            text +=
                QByteArray::number(key) + '=' + field(names[group] + '-' + QByteArray::number(key)) + '\n';
        }
        text += '\n';
    }
    return text;
}

QByteArray wrapped(const QJsonObject &object)
{
    const QString json = QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
    const QByteArray hex = cipher.EncryptString(json).toLatin1();
    return QByteArray::number(hex.size()).rightJustified(5, '0') + hex;
}

QJsonObject rows(const QStringList &names)
{
    QJsonObject object{{QStringLiteral("items"), names.size()}};
    for (int i = 0; i < names.size(); ++i) {
        QJsonObject row;
        for (int key = 0; key < 3; ++key) {
            row.insert(QStringLiteral("F%1").arg(key),
                       mevo::encipherField(cipher, names[i] + QStringLiteral("-%1").arg(key)));
        }
        object.insert(QStringLiteral("result%1").arg(i), row);
    }
    return object;
}

QString statementOf(const ScriptedRequest &request)
{
    const QByteArray tag = "newsql___";
    const int start = request.target.indexOf(tag) + tag.size() + 3;
    return cipher.DecryptString(QString::fromLatin1(request.target.mid(start)));
}

/// Keeps this process from writing files beyond a size while it lives.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit limit = m_before;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_before); }

private:
    rlimit m_before{};
};

} // namespace

class TestCredentials : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void random();
    void draws_data();
    void draws();
    void keepsTheAccountBefore_data();
    void keepsTheAccountBefore();
    void corruptValuesAreEmpty_data();
    void corruptValuesAreEmpty();
    void drawsEveryAccount();
    void currentLanguage_data();
    void currentLanguage();
    void choosesListsToFetch();
    void downloads();
    void keepsTheFile_data();
    void keepsTheFile();
    void survivesAFullDisk();
    void replacesABrokenFile();
    void refreshesByName();
    void tokens_data();
    void tokens();
    void tokenRequest();
    void tokenOfAnAccountThatIsNoLongerInForce();
    void theOwnerGoesDuringAWait_data();
    void theOwnerGoesDuringAWait();
    void oneDownloadAtATime();

private:
    QStringList asked() const;

    FakePlatform m_platform;
    MainState m_state;
    std::unique_ptr<ScriptedHttp> m_server;
    std::unique_ptr<mevo::WebApi> m_api;
    std::unique_ptr<mevo::CredentialStore> m_store;
    mevo::RandomRange m_random{1};
};

void TestCredentials::init()
{
    for (const mevo::CredentialListRow &row : mevo::credentialLists()) {
        home.remove(QLatin1String(row.file));
        home.remove(QLatin1String(row.file) + QStringLiteral(".broken"));
        m_state.*row.expectedSize = -1;
    }
    home.remove(QStringLiteral("MEVOSetting.ini"));
    m_server = std::make_unique<ScriptedHttp>();
    m_state.IsOnline = true;
    m_state.BackendReachable = true;
    m_state.SchemaName = QStringLiteral("db");
    m_state.ServerUrl = m_server->url(QStringLiteral("/mevowebapi?")).toString();
    m_state.BaiduAppId = m_state.BaiduClientId = m_state.BaiduClientSecret = QStringLiteral("before");
    m_state.BaiduTranslateAppId = m_state.BaiduTranslateKey = QStringLiteral("before");
    m_api = std::make_unique<mevo::WebApi>(m_state, cipher);
    m_store = std::make_unique<mevo::CredentialStore>(
        m_state, *m_api, cipher, [this](int low, int high) { return m_random.draw(low, high); });
}

/// The statements that the backend has been asked.
QStringList TestCredentials::asked() const
{
    QStringList statements;
    for (const ScriptedRequest &request : m_server->requests) {
        statements.append(statementOf(request));
    }
    return statements;
}

void TestCredentials::random()
{
    mevo::RandomRange touched(7);
    mevo::RandomRange reference(7);
    QCOMPARE(touched.draw(0, 0), 0);
    QCOMPARE(touched.draw(5, 5), 5);
    QCOMPARE(touched.draw(5, 3), 5);
    std::set<int> drawn;
    for (int i = 0; i < 1000; ++i) {
        const int number = touched.draw(-2, 3);
        QCOMPARE(number, reference.draw(-2, 3)); // the draws without a choice have not moved it on
        drawn.insert(number);
    }
    QCOMPARE(drawn, (std::set<int>{-2, -1, 0, 1, 2}));
    QCOMPARE(RandomInRange(4, 4), 4);
    for (int i = 0; i < 100; ++i) {
        QVERIFY(RandomInRange(1, 3) == 1 || RandomInRange(1, 2) == 1);
    }
}

void TestCredentials::draws_data()
{
    QTest::addColumn<int>("list");
    for (const mevo::CredentialListRow &row : mevo::credentialLists()) {
        QTest::newRow(row.file) << static_cast<int>(row.id);
    }
}

void TestCredentials::draws()
{
    QFETCH(int, list);
    const mevo::CredentialListRow &row = mevo::credentialList(static_cast<CredentialList>(list));
    home.write(QLatin1String(row.file), accounts({"only"}, row.keys));
    const std::function<bool()> loaders[] = {
        [this] { return m_store->LoadXunFeiCredentials(); },
        [this] { return m_store->LoadXunFeiMinorCredentials(); },
        [&] { return m_store->LoadBaiduCredentials(QLatin1String(row.file)); },
        [this] { return m_store->LoadBaiduTtsCredentials(); },
        [this] { return m_store->LoadBaiduTranslateCredentials(); },
    };
    // Only the loader of this very list finds something.
    QCOMPARE(std::count_if(std::begin(loaders), std::end(loaders), [](const auto &load) { return load(); }),
             1);
    for (int key = 0; key < row.keys; ++key) {
        QCOMPARE(m_state.*row.members[key], QStringLiteral("only-%1").arg(key));
    }
}

void TestCredentials::keepsTheAccountBefore_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("no file") << QByteArray();
    QTest::newRow("no group") << QByteArray("stray=1\n");
    QTest::newRow("empty group") << QByteArray("[0]\n");
    QTest::newRow("binary") << QByteArray("\x00\xff\xfe[0]\x00\n0=\x01\n", 12);
}

void TestCredentials::keepsTheAccountBefore()
{
    QFETCH(QByteArray, content);
    for (const char *file : {"bbzdsrbdssset.ini", "bdsrbdsssetfy.ini"}) {
        if (!content.isEmpty()) {
            home.write(QLatin1String(file), content);
        }
    }
    QVERIFY(!m_store->LoadBaiduCredentials(QStringLiteral("bbzdsrbdssset.ini")));
    QCOMPARE(m_state.BaiduAppId + m_state.BaiduClientId + m_state.BaiduClientSecret,
             QStringLiteral("beforebeforebefore"));
    QVERIFY(!m_store->LoadBaiduTranslateCredentials());
    QCOMPARE(m_state.BaiduTranslateAppId, QStringLiteral("before"));
}

void TestCredentials::corruptValuesAreEmpty_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("drawn");
    QTest::newRow("a key is missing")
        << QByteArray("[0]\n0=" + field("a") + "\n1=" + field("b") + "\n") << "a|b|";
    QTest::newRow("not enciphered") << QByteArray("[0]\n0=id\n1=key\n2=secret\n") << "||";
    QTest::newRow("no length") << QByteArray("[0]\n0=abc" + field("a").mid(3) + "\n1=" + field("b") +
                                             "\n2=" + field("c") + "\n")
                               << "|b|c";
    QTest::newRow("cut cipher") << QByteArray("[0]\n0=" + field("a") + "\n1=" + field("b").chopped(2) +
                                              "\n2=" + field("c") + "\n")
                                << "a||c";
    QTest::newRow("a zero ends a value")
        << QByteArray("[0]\n0=" + field("a") + "\\0x\n1=" + field("b") + "\n2=\n") << "a|b|";
    QTest::newRow("lists in place of values") << QByteArray("[0]\n0=a, b\n1=a, b\n2=a, b\n") << "||";
}

void TestCredentials::corruptValuesAreEmpty()
{
    QFETCH(QByteArray, content);
    home.write(QStringLiteral("bbzdsrbdssset.ini"), content);
    QTest::ignoreMessage(QtWarningMsg, "Accounts: account 0 of bbzdsrbdssset.ini cannot be read");
    QVERIFY(m_store->LoadBaiduCredentials(QStringLiteral("bbzdsrbdssset.ini")));
    QTEST(QStringList({m_state.BaiduAppId, m_state.BaiduClientId, m_state.BaiduClientSecret}).join(u'|'),
          "drawn");
}

void TestCredentials::drawsEveryAccount()
{
    home.write(QStringLiteral("besrfdssset.ini"), accounts({"a", "b"}));
    std::set<QString> drawn;
    for (int i = 0; i < 200; ++i) {
        QVERIFY(m_store->LoadXunFeiCredentials());
        QCOMPARE(m_state.XunFeiApiSecret, m_state.XunFeiAppId.left(1) + QStringLiteral("-2"));
        drawn.insert(m_state.XunFeiAppId);
    }
    QCOMPARE(drawn.size(), std::size_t(2));
}

void TestCredentials::currentLanguage_data()
{
    QTest::addColumn<QString>("voiceType");
    QTest::addColumn<QString>("file");
    QTest::newRow("fast") << "80001"
                          << "bjsdsrbdssset.ini";
    QTest::newRow("Mandarin") << "1537"
                              << "bbzdsrbdssset.ini";
    QTest::newRow("Cantonese") << "1637"
                               << "byydsrbdssset.ini";
    QTest::newRow("English") << "1737"
                             << "bendsrbdssset.ini";
    QTest::newRow("Sichuanese") << "1837"
                                << "bschdsrbdssset.ini";
    QTest::newRow("far field") << "1936"
                               << "";
    QTest::newRow("none told") << ""
                               << "";
}

void TestCredentials::currentLanguage()
{
    QFETCH(QString, voiceType);
    QFETCH(QString, file);
    for (const mevo::CredentialListRow &row : mevo::credentialLists()) {
        if (row.voiceType != nullptr) {
            home.write(QLatin1String(row.file), accounts({row.file}));
        }
    }
    mevo::SettingsFile().setValue(QStringLiteral("BaiDuCurrentVoiceType"), voiceType);
    m_state.BaiDuCurrentVoiceType = QStringLiteral("1637"); // the key decides
    QCOMPARE(m_store->LoadCurrentBaiduCredentials(), !file.isEmpty());
    QCOMPARE(m_state.BaiduAppId, file.isEmpty() ? QStringLiteral("before") : file + QStringLiteral("-0"));
}

void TestCredentials::choosesListsToFetch()
{
    EngineState state;
    QHash<QString, qint64> sizes{{QStringLiteral("besrfdssset.ini"), 100},
                                 {QStringLiteral("bdsrbdsssettts.ini"), 200}};
    const auto sizeOf = [&](const QString &file) { return sizes.value(file, 0); };
    QVERIFY(mevo::listsOfOtherSize(state, sizeOf).empty());
    QCOMPARE(mevo::listsWithoutSize(state).size(), std::size_t(9));

    state.besrfdsssetlen = 100;
    state.bdsrbdsssetttslen = 201;
    state.bdsrbdsssetenlen = 0; // an empty list, and no file
    state.bdsrbdsssetschlen = 5;
    QCOMPARE(mevo::listsOfOtherSize(state, sizeOf),
             (std::vector<CredentialList>{CredentialList::BaiduSichuanese, CredentialList::BaiduTts}));
    state.besrfdsssetlen = 101;
    QCOMPARE(mevo::listsOfOtherSize(state, sizeOf).at(1), CredentialList::XunFeiMinor);

    state.ShowBdYYI = false;
    QCOMPARE(mevo::listsWithoutSize(state),
             (std::vector<CredentialList>{CredentialList::BaiduFast, CredentialList::BaiduMandarin,
                                          CredentialList::BaiduTranslate}));
}

void TestCredentials::downloads()
{
    m_server->fallback = ScriptedAnswer::body(wrapped(rows({QStringLiteral("x"), QStringLiteral("y")})));
    home.write(QStringLiteral("bendsrbdssset.ini"), accounts({"a", "b", "c"}));
    QVERIFY(m_store->DownloadCredentialFile(CredentialList::BaiduEnglish));
    QCOMPARE(home.read(QStringLiteral("bendsrbdssset.ini")), accounts({"x", "y"}).chopped(1));
    QVERIFY(m_store->DownloadCredentialFile(CredentialList::BaiduTranslate));
    QCOMPARE(home.read(QStringLiteral("bdsrbdsssetfy.ini")), accounts({"x", "y"}, 2).chopped(1));
    QVERIFY(m_store->LoadBaiduTranslateCredentials());
    QCOMPARE(asked(), (QStringList{QStringLiteral("select F0,F1,F2 from db.bdasrid where F3 = 1 and nbe = 1"),
                                   QStringLiteral("select F0,F1 from db.bdasrfyid where F2 = 1")}));
}

void TestCredentials::keepsTheFile_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("status");
    QJsonObject gap = rows({QStringLiteral("x"), QStringLiteral("y")});
    gap.remove(QStringLiteral("result0"));
    QTest::newRow("no items") << wrapped(rows({})) << 200;
    QTest::newRow("negative items") << wrapped({{QStringLiteral("items"), -3}}) << 200;
    QTest::newRow("a row is missing") << wrapped(gap) << 200;
    const auto odd = [](const QString &column, const QJsonValue &value) {
        QJsonObject list = rows({QStringLiteral("x"), QStringLiteral("y")});
        QJsonObject row = list.value(QStringLiteral("result1")).toObject();
        row.insert(column, value);
        list.insert(QStringLiteral("result1"), row);
        return wrapped(list);
    };
    QTest::newRow("a number") << odd(QStringLiteral("F0"), 5) << 200;
    QTest::newRow("a null") << odd(QStringLiteral("F1"), QJsonValue()) << 200;
    QTest::newRow("no text") << odd(QStringLiteral("F2"), QString()) << 200;
    QTest::newRow("no column") << odd(QStringLiteral("F2"), QJsonValue(QJsonValue::Undefined)) << 200;
    QTest::newRow("length") << wrapped(rows({QStringLiteral("x")})) + "0" << 200;
    QTest::newRow("empty") << QByteArray() << 200;
    QTest::newRow("error") << wrapped(rows({QStringLiteral("x")})) << 500;
}

void TestCredentials::keepsTheFile()
{
    QFETCH(QByteArray, body);
    QFETCH(int, status);
    m_server->fallback = ScriptedAnswer::body(body, status);
    const QByteArray before = accounts({"a"});
    home.write(QStringLiteral("besrfdssset.ini"), before);
    QVERIFY(!m_store->DownloadCredentialFile(CredentialList::XunFei));
    QCOMPARE(home.read(QStringLiteral("besrfdssset.ini")), before);
}

void TestCredentials::survivesAFullDisk()
{
    m_server->fallback = ScriptedAnswer::body(wrapped(rows({QStringLiteral("x"), QStringLiteral("y")})));
    const QByteArray before = accounts({"a"});
    home.write(QStringLiteral("besrfdssset.ini"), before);
    {
        const FullDisk full(64);
        QVERIFY(!m_store->DownloadCredentialFile(CredentialList::XunFei));
    }
    QCOMPARE(home.read(QStringLiteral("besrfdssset.ini")), before);
    QVERIFY(m_store->LoadXunFeiCredentials());
    QCOMPARE(m_state.XunFeiAppId, QStringLiteral("a-0"));
    QVERIFY(!QFile::exists(home.path(QStringLiteral("besrfdssset.ini.new"))));
    QVERIFY(m_store->DownloadCredentialFile(CredentialList::XunFei)); // and once there is room again
    QCOMPARE(home.read(QStringLiteral("besrfdssset.ini")), accounts({"x", "y"}).chopped(1));
}

void TestCredentials::replacesABrokenFile()
{
    m_server->fallback = ScriptedAnswer::body(wrapped(rows({QStringLiteral("x")})));
    home.write(QStringLiteral("besrfdssset.ini"), "[0\n=\n]]]broken");
    QVERIFY(m_store->DownloadCredentialFile(CredentialList::XunFei));
    QVERIFY(m_store->LoadXunFeiCredentials());
    QCOMPARE(m_state.XunFeiAppId, QStringLiteral("x-0"));
}

void TestCredentials::refreshesByName()
{
    m_server->fallback = ScriptedAnswer::body(wrapped(rows({QStringLiteral("x")})));
    const QByteArray kept = accounts({"a"});
    home.write(QStringLiteral("bbzdsrbdssset.ini"), kept);
    m_state.bdsrbdsssetbzlen = kept.size();
    m_state.bdsrbdsssetyylen = kept.size(); // missing: size 0
    m_state.besrfdsssetlen = kept.size();
    m_store->RefreshCredentialFiles();
    QStringList statements = asked();
    statements.sort();
    QCOMPARE(statements,
             (QStringList{QStringLiteral("select F0,F1,F2 from db.bdasrid where F3 = 1 and yby = 1"),
                          QStringLiteral("select F0,F1,F2 from db.wxfasrid where F3 = 1"),
                          QStringLiteral("select F0,F1,F2 from db.wxfasrid where F3 = 1 and F4 = 1")}));

    // One that gets no answer keeps its file; the others are exchanged all the same.
    m_server->requests.clear();
    m_state.bdsrbdsssetenlen = m_state.bdsrbdsssetschlen = m_state.bdsrbdsssetbzlen = 1;
    m_server->answering = [](const ScriptedRequest &request) {
        return statementOf(request).contains(QLatin1String("zbb"))
                   ? ScriptedAnswer::body({}, 503)
                   : ScriptedAnswer::body(wrapped(rows({QStringLiteral("y")})));
    };
    m_store->RefreshCredentialFiles();
    QCOMPARE(home.read(QStringLiteral("bbzdsrbdssset.ini")), kept);
    for (const char *file : {"bendsrbdssset.ini", "bschdsrbdssset.ini"}) {
        QCOMPARE(home.read(QLatin1String(file)), accounts({"y"}).chopped(1));
    }

    m_server->requests.clear();
    m_state.BackendReachable = false;
    m_store->RefreshCredentialFiles();
    QVERIFY(m_server->requests.isEmpty());
}

void TestCredentials::tokens_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("kept");
    QTest::addColumn<QString>("token");
    QTest::addColumn<QByteArray>("keptAfter");
    const QByteArray good(R"({"access_token":"24.fresh","expires_in":2592000})");
    QTest::newRow("fresh") << good << 200 << field("old") << "24.fresh" << field("24.fresh");
    QTest::newRow("first") << good << 200 << QByteArray() << "24.fresh" << field("24.fresh");
    QTest::newRow("refused") << QByteArray(R"({"error":"invalid_client"})") << 401 << field("old") << "old"
                             << field("old");
    QTest::newRow("no token in it") << QByteArray(R"({"error":"x"})") << 200 << field("old") << "old"
                                    << field("old");
    QTest::newRow("no string") << QByteArray(R"({"access_token":7})") << 200 << field("old") << "old"
                               << field("old");
    QTest::newRow("rubbish") << QByteArray("<html>") << 200 << field("old") << "old" << field("old");
    QTest::newRow("created, not OK") << good << 201 << field("old") << "old" << field("old");
    QTest::newRow("nothing kept") << QByteArray() << 500 << QByteArray() << QString() << QByteArray();
    QTest::newRow("kept is broken") << QByteArray() << 500 << QByteArray("003zz") << QString()
                                    << QByteArray("003zz");
    const QByteArray huge(2000, 't');
    QTest::newRow("too long to keep") << QByteArray(R"({"access_token":")" + huge + "\"}") << 200
                                      << field("old") << QString::fromLatin1(huge) << field("old");
}

void TestCredentials::tokens()
{
    QFETCH(QByteArray, body);
    QFETCH(int, status);
    QFETCH(QByteArray, kept);
    QFETCH(QString, token);
    QFETCH(QByteArray, keptAfter);
    mevo::EngineEndpoints endpoints;
    endpoints.BaiduTokenHost = m_server->host();
    mevo::BaiduTokens fetcher(m_state, *m_api, cipher, endpoints);
    m_server->fallback = ScriptedAnswer::body(body, status);
    const struct
    {
        QString key;
        QString EngineState::*member;
        bool (mevo::BaiduTokens::*fetch)();
    } kinds[] = {
        {QStringLiteral("LastBDTK"), &EngineState::BaiduAccessToken, &mevo::BaiduTokens::FetchBaiduToken},
        {QStringLiteral("LastBDTTSTK"), &EngineState::BaiduTtsAccessToken,
         &mevo::BaiduTokens::FetchBaiduTtsToken},
    };
    for (const auto &kind : kinds) {
        mevo::SettingsFile().setValue(kind.key, QString::fromLatin1(kept));
        m_state.*kind.member = QStringLiteral("of another language");
        QCOMPARE((fetcher.*kind.fetch)(), !token.isEmpty());
        QCOMPARE(m_state.*kind.member, token);
        QCOMPARE(mevo::SettingsFile().value(kind.key).toString().toLatin1(), keptAfter);
    }
    m_state.IsOnline = false;
    m_server->requests.clear();
    QCOMPARE(fetcher.FetchBaiduToken(), !keptAfter.isEmpty() && !keptAfter.startsWith("003zz"));
    QVERIFY(m_server->requests.isEmpty());
}

void TestCredentials::tokenRequest()
{
    mevo::EngineEndpoints endpoints;
    endpoints.BaiduTokenHost = m_server->host();
    mevo::BaiduTokens fetcher(m_state, *m_api, cipher, endpoints);
    m_state.BaiduClientId = QStringLiteral("id");
    m_state.BaiduClientSecret = QStringLiteral("secret");
    m_server->fallback = ScriptedAnswer::silence();
    fetcher.requestTimeoutMs = 50;
    fetcher.FetchBaiduToken();
    const ScriptedRequest &request = m_server->requests.first();
    QCOMPARE(request.head.left(request.head.indexOf('\r')), QByteArray("POST /oauth/2.0/token? HTTP/1.1"));
    QCOMPARE(request.headers.value("content-type"), QByteArray("application/x-www-form-urlencoded"));
    QCOMPARE(request.body, QByteArray("grant_type=client_credentials&client_id=id&client_secret=secret&"));
}

void TestCredentials::tokenOfAnAccountThatIsNoLongerInForce()
{
    mevo::EngineEndpoints endpoints;
    endpoints.BaiduTokenHost = m_server->host();
    mevo::BaiduTokens fetcher(m_state, *m_api, cipher, endpoints);
    m_state.BaiduClientId = QStringLiteral("first");
    m_server->answering = [](const ScriptedRequest &request) {
        const bool first = request.body.contains("client_id=first&");
        const ScriptedAnswer answer =
            ScriptedAnswer::body(first ? R"({"access_token":"old"})" : R"({"access_token":"new"})");
        return first ? ScriptedAnswer::late(answer) : answer;
    };
    m_server->onRequest = [&](const ScriptedRequest &) {
        m_server->onRequest = nullptr;
        QTimer::singleShot(0, this, [&] { // another language is chosen meanwhile
            m_state.BaiduClientId = QStringLiteral("second");
            QVERIFY(fetcher.FetchBaiduToken());
            m_server->answerHeld();
        });
    };
    QVERIFY(fetcher.FetchBaiduToken());
    QCOMPARE(m_state.BaiduAccessToken, QStringLiteral("new"));
    QCOMPARE(mevo::SettingsFile().value(QStringLiteral("LastBDTK")).toString().toLatin1(), field("new"));
}

namespace {

/// Everything that a wait can come back to, gone together as with the window that owns it.
struct Owner
{
    MainState state;
    WebCipher ownCipher;
    mevo::WebApi api{state, ownCipher};
    mevo::CredentialStore store{state, api, ownCipher};
    mevo::BaiduTokens tokens;

    Owner(const MainState &like, const mevo::EngineEndpoints &endpoints)
        : tokens(state, api, ownCipher, endpoints)
    {
        state.IsOnline = state.BackendReachable = true;
        state.ServerUrl = state.ServerUrlBk1 = state.ServerUrlBk2 = like.ServerUrl;
        state.besrfdsssetlen = 1;
    }
};
using Wait = std::function<bool(Owner &)>;

} // namespace

Q_DECLARE_METATYPE(Wait)

void TestCredentials::theOwnerGoesDuringAWait_data()
{
    QTest::addColumn<Wait>("wait");
    QTest::addColumn<bool>("answered");
    const auto add = [](const char *name, const Wait &wait) {
        for (const bool answered : {false, true}) {
            QTest::addRow("%s, %s", name, answered ? "answered" : "cut") << wait << answered;
        }
    };
    const QString sql = QStringLiteral("select");
    add("probe", [](Owner &owner) { return owner.api.ProbeBackend() >= 0; });
    add("statement", [sql](Owner &owner) {
        return !owner.api.RunBackendSql(&owner.store, sql, owner.state.ServerUrl, 200).isNull();
    });
    add("statements", [sql](Owner &owner) {
        return !owner.api.RunBackendSqls(&owner.store, {sql, sql}, owner.state.ServerUrl, 200)[1].isNull();
    });
    add("three addresses", [sql](Owner &owner) {
        owner.api.RunWithFailover(sql,
                                  {200, 200, 200}); // an answer that is there is given, to whom it concerns
        return false;
    });
    add("column", [](Owner &owner) {
        owner.api.WriteDeviceColumn(QStringLiteral("x"));
        return false;
    });
    add("rest", [](Owner &owner) {
        QString reply;
        owner.api.BackendGet(QUrl(owner.state.ServerUrl), 1, reply);
        return owner.api.drain(200);
    });
    add("one list", [](Owner &owner) { return owner.store.DownloadCredentialFile(CredentialList::XunFei); });
    add("all lists", [](Owner &owner) {
        owner.store.RefreshCredentialFiles();
        return false;
    });
    add("token", [](Owner &owner) { return owner.tokens.FetchBaiduToken(); });
    add("token of synthesis", [](Owner &owner) { return owner.tokens.FetchBaiduTtsToken(); });
}

void TestCredentials::theOwnerGoesDuringAWait()
{
    QFETCH(Wait, wait);
    QFETCH(bool, answered);
    mevo::EngineEndpoints endpoints;
    endpoints.BaiduTokenHost = m_server->host();
    auto owner = std::make_unique<Owner>(m_state, endpoints);
    owner->tokens.requestTimeoutMs = 200;
    m_server->fallback = ScriptedAnswer::late(ScriptedAnswer::body(wrapped(rows({QStringLiteral("x")}))));
    m_server->onRequest = [&](const ScriptedRequest &) {
        QTimer::singleShot(0, m_server.get(), [&] {
            owner.reset();
            if (answered) {
                m_server->answerHeld();
            } else {
                m_server->kill();
            }
        });
    };
    QVERIFY(!wait(*owner));
    QVERIFY(!owner);
    QVERIFY(home.read(QStringLiteral("besrfdssset.ini")).isEmpty());
}

void TestCredentials::oneDownloadAtATime()
{
    m_state.besrfdsssetlen = 1;
    m_server->fallback = ScriptedAnswer::body(wrapped(rows({QStringLiteral("x")})));
    m_server->onRequest = [this](const ScriptedRequest &) { m_store->RefreshCredentialFiles(); };
    m_store->RefreshCredentialFiles();
    QCOMPARE(m_server->requests.size(), 2); // XunFei's two lists, once
}

QTEST_GUILESS_MAIN(TestCredentials)
#include "tst_credentials.moc"
