#include "base/ApplicationFiles.h"
#include "base/SettingsFile.h"
#include "engines/BaiduTokens.h"
#include "engines/CredentialStore.h"
#include "support/FakePlatform.h"
#include "support/FullDisk.h"
#include "support/Rows.h"
#include "support/ScratchHome.h"
#include "support/ScriptedHttp.h"

#include <QJsonDocument>
#include <QtTest>

#include <functional>
#include <memory>
#include <set>

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

/// The backend's list with an account for each letter.
QJsonObject rows(const QByteArray &letters)
{
    QJsonObject object{{"items"_s, letters.size()}};
    for (int i = 0; i < letters.size(); ++i) {
        QJsonObject row;
        for (int key = 0; key < 3; ++key) {
            row.insert("F%1"_s.arg(key),
                       QString::fromLatin1(field(letters.mid(i, 1) + '-' + QByteArray::number(key))));
        }
        object.insert("result%1"_s.arg(i), row);
    }
    return object;
}

QString statementOf(const ScriptedRequest &request)
{
    const QByteArray tag = "newsql___";
    const int start = request.target.indexOf(tag) + tag.size() + 3;
    return cipher.DecryptString(QString::fromLatin1(request.target.mid(start)));
}

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

class TestCredentials : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        for (const mevo::CredentialListRow &row : mevo::credentialLists()) {
            home.remove(QLatin1String(row.file));
            home.remove(QLatin1String(row.file) + ".broken"_s);
            m_state.*row.expectedSize = -1;
        }
        home.remove("MEVOSetting.ini"_s);
        m_server = std::make_unique<ScriptedHttp>();
        m_state.IsOnline = true;
        m_state.BackendReachable = true;
        m_state.SchemaName = "db"_s;
        m_state.ServerUrl = m_server->url("/mevowebapi?"_s).toString();
        m_state.BaiduAppId = m_state.BaiduClientId = m_state.BaiduClientSecret = "before"_s;
        m_state.BaiduTranslateAppId = m_state.BaiduTranslateKey = "before"_s;
        m_api = std::make_unique<mevo::WebApi>(m_state, cipher);
        m_endpoints.BaiduTokenHost = m_server->host();
        m_tokens = std::make_unique<mevo::BaiduTokens>(m_state, *m_api, cipher, m_endpoints);
        m_store = std::make_unique<mevo::CredentialStore>(
            m_state, *m_api, cipher, [this](int low, int high) { return m_random.draw(low, high); });
    }

    void random()
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
    }

    void draws_data()
    {
        const Rows<CredentialList> row;
        for (const mevo::CredentialListRow &list : mevo::credentialLists()) {
            row(list.file, list.id);
        }
    }
    void draws()
    {
        const auto [list] = rowOf<CredentialList>();
        const mevo::CredentialListRow &row = mevo::credentialList(list);
        home.write(QLatin1String(row.file), accounts({"only"}, row.keys));
        const std::function<bool()> loaders[] = {
            [this] { return m_store->LoadXunFeiCredentials(); },
            [this] { return m_store->LoadXunFeiMinorCredentials(); },
            [&] { return m_store->LoadBaiduCredentials(QLatin1String(row.file)); },
            [this] { return m_store->LoadBaiduTtsCredentials(); },
            [this] { return m_store->LoadBaiduTranslateCredentials(); },
        };
        // Only the loader of this very list finds something.
        QCOMPARE(std::count_if(std::begin(loaders), std::end(loaders), [](auto &load) { return load(); }), 1);
        for (int key = 0; key < row.keys; ++key) {
            QCOMPARE(m_state.*row.members[key], "only-%1"_s.arg(key));
        }
    }

    void keepsTheAccountBefore_data()
    {
        const Rows<QByteArray> row; // content
        row("no file", "");
        row("no group", "stray=1\n");
        row("empty group", "[0]\n");
        row("binary", QByteArray("\x00\xff\xfe[0]\x00\n0=\x01\n", 12));
    }
    void keepsTheAccountBefore()
    {
        const auto [content] = rowOf<QByteArray>();
        if (!content.isEmpty()) {
            home.write("bbzdsrbdssset.ini"_s, content);
            home.write("bdsrbdsssetfy.ini"_s, content);
        }
        QVERIFY(!m_store->LoadBaiduCredentials("bbzdsrbdssset.ini"_s));
        QCOMPARE(m_state.BaiduAppId + m_state.BaiduClientId + m_state.BaiduClientSecret,
                 "beforebeforebefore"_s);
        QVERIFY(!m_store->LoadBaiduTranslateCredentials());
        QCOMPARE(m_state.BaiduTranslateAppId, "before"_s);
    }

    void corruptValuesAreEmpty_data()
    {
        const Rows<QByteArray, QByteArray, QByteArray, QString> row; // values, drawn
        row("a key is missing", field("a"), field("b"), "-", "a|b|");
        row("not enciphered", "id", "key", "secret", "||");
        row("no length", "abc" + field("a").mid(3), field("b"), field("c"), "|b|c");
        row("cut cipher", field("a"), field("b").chopped(2), field("c"), "a||c");
        row("a zero ends a value", field("a") + "\\0x", field("b"), "", "a|b|");
        row("lists in place of values", "a, b", "a, b", "a, b", "||");
    }
    void corruptValuesAreEmpty()
    {
        const auto [id, key, secret, drawn] = rowOf<QByteArray, QByteArray, QByteArray, QString>();
        home.write("bbzdsrbdssset.ini"_s,
                   "[0]\n0=" + id + "\n1=" + key + '\n' + (secret == "-" ? "" : "2=" + secret + '\n'));
        QTest::ignoreMessage(QtWarningMsg, "Accounts: account 0 of bbzdsrbdssset.ini cannot be read");
        QVERIFY(m_store->LoadBaiduCredentials("bbzdsrbdssset.ini"_s));
        QCOMPARE(
            QStringList({m_state.BaiduAppId, m_state.BaiduClientId, m_state.BaiduClientSecret}).join(u'|'),
            drawn);
    }

    void drawsEveryAccount()
    {
        home.write("besrfdssset.ini"_s, accounts({"a", "b"}));
        std::set<QString> drawn;
        for (int i = 0; i < 200; ++i) {
            QVERIFY(m_store->LoadXunFeiCredentials());
            QCOMPARE(m_state.XunFeiApiSecret, m_state.XunFeiAppId.left(1) + "-2"_s);
            drawn.insert(m_state.XunFeiAppId);
        }
        QCOMPARE(drawn.size(), std::size_t(2));
    }

    void currentLanguage_data()
    {
        const Rows<QString, QString> row; // voiceType, file
        row("fast", "80001", "bjsdsrbdssset.ini");
        row("Mandarin", "1537", "bbzdsrbdssset.ini");
        row("Cantonese", "1637", "byydsrbdssset.ini");
        row("English", "1737", "bendsrbdssset.ini");
        row("Sichuanese", "1837", "bschdsrbdssset.ini");
        row("far field", "1936", "");
        row("none told", "", "");
    }
    void currentLanguage()
    {
        const auto [voiceType, file] = rowOf<QString, QString>();
        for (const mevo::CredentialListRow &row : mevo::credentialLists()) {
            if (row.voiceType != nullptr) {
                home.write(QLatin1String(row.file), accounts({row.file}));
            }
        }
        mevo::SettingsFile().setValue("BaiDuCurrentVoiceType"_s, voiceType);
        m_state.BaiDuCurrentVoiceType = "1637"_s; // the key decides
        QCOMPARE(m_store->LoadCurrentBaiduCredentials(), !file.isEmpty());
        QCOMPARE(m_state.BaiduAppId, file.isEmpty() ? "before"_s : file + "-0"_s);
    }

    void choosesListsToFetch()
    {
        EngineState state;
        QHash<QString, qint64> sizes{{"besrfdssset.ini"_s, 100}, {"bdsrbdsssettts.ini"_s, 200}};
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

    void downloads()
    {
        m_server->fallback = ScriptedAnswer::body(wrapped(rows("xy")));
        home.write("bendsrbdssset.ini"_s, accounts({"a", "b", "c"}));
        QVERIFY(m_store->DownloadCredentialFile(CredentialList::BaiduEnglish));
        QCOMPARE(home.read("bendsrbdssset.ini"_s), accounts({"x", "y"}).chopped(1));
        QVERIFY(m_store->DownloadCredentialFile(CredentialList::BaiduTranslate));
        QCOMPARE(home.read("bdsrbdsssetfy.ini"_s), accounts({"x", "y"}, 2).chopped(1));
        QVERIFY(m_store->LoadBaiduTranslateCredentials());
        QCOMPARE(asked(), list({"select F0,F1,F2 from db.bdasrid where F3 = 1 and nbe = 1",
                                "select F0,F1 from db.bdasrfyid where F2 = 1"}));
    }

    void keepsTheFile_data()
    {
        const Rows<QByteArray, int> row; // body, status
        QJsonObject gap = rows("xy");
        gap.remove("result0"_s);
        row("no items", wrapped(rows("")), 200);
        row("negative items", wrapped({{"items"_s, -3}}), 200);
        row("a row is missing", wrapped(gap), 200);
        const auto odd = [](const QString &column, const QJsonValue &value) {
            QJsonObject list = rows("xy");
            QJsonObject second = list.value("result1"_s).toObject();
            second.insert(column, value);
            list.insert("result1"_s, second);
            return wrapped(list);
        };
        row("a number", odd("F0"_s, 5), 200);
        row("a null", odd("F1"_s, QJsonValue()), 200);
        row("no text", odd("F2"_s, QString()), 200);
        row("no column", odd("F2"_s, QJsonValue(QJsonValue::Undefined)), 200);
        row("length", wrapped(rows("x")) + "0", 200);
        row("empty", "", 200);
        row("error", wrapped(rows("x")), 500);
    }
    void keepsTheFile()
    {
        const auto [body, status] = rowOf<QByteArray, int>();
        m_server->fallback = ScriptedAnswer::body(body, status);
        const QByteArray before = accounts({"a"});
        home.write("besrfdssset.ini"_s, before);
        QVERIFY(!m_store->DownloadCredentialFile(CredentialList::XunFei));
        QCOMPARE(home.read("besrfdssset.ini"_s), before);
    }

    void survivesAFullDisk()
    {
        m_server->fallback = ScriptedAnswer::body(wrapped(rows("xy")));
        const QByteArray before = accounts({"a"});
        home.write("besrfdssset.ini"_s, before);
        {
            const FullDisk full(64);
            QVERIFY(!m_store->DownloadCredentialFile(CredentialList::XunFei));
        }
        QCOMPARE(home.read("besrfdssset.ini"_s), before);
        QVERIFY(m_store->LoadXunFeiCredentials());
        QCOMPARE(m_state.XunFeiAppId, "a-0"_s);
        QVERIFY(!QFile::exists(home.path("besrfdssset.ini.new"_s)));
        QVERIFY(m_store->DownloadCredentialFile(CredentialList::XunFei)); // and once there is room again
        QCOMPARE(home.read("besrfdssset.ini"_s), accounts({"x", "y"}).chopped(1));
    }

    void replacesABrokenFile()
    {
        m_server->fallback = ScriptedAnswer::body(wrapped(rows("x")));
        home.write("besrfdssset.ini"_s, "[0\n=\n]]]broken");
        QVERIFY(m_store->DownloadCredentialFile(CredentialList::XunFei));
        QVERIFY(m_store->LoadXunFeiCredentials());
        QCOMPARE(m_state.XunFeiAppId, "x-0"_s);
    }

    void refreshesByName()
    {
        m_server->fallback = ScriptedAnswer::body(wrapped(rows("x")));
        const QByteArray kept = accounts({"a"});
        home.write("bbzdsrbdssset.ini"_s, kept);
        m_state.bdsrbdsssetbzlen = kept.size();
        m_state.bdsrbdsssetyylen = kept.size(); // missing: size 0
        m_state.besrfdsssetlen = kept.size();
        m_store->RefreshCredentialFiles();
        QStringList statements = asked();
        statements.sort();
        QCOMPARE(statements, list({"select F0,F1,F2 from db.bdasrid where F3 = 1 and yby = 1",
                                   "select F0,F1,F2 from db.wxfasrid where F3 = 1",
                                   "select F0,F1,F2 from db.wxfasrid where F3 = 1 and F4 = 1"}));

        // One that gets no answer keeps its file; the others are exchanged all the same.
        m_server->requests.clear();
        m_state.bdsrbdsssetenlen = m_state.bdsrbdsssetschlen = m_state.bdsrbdsssetbzlen = 1;
        m_server->answering = [](const ScriptedRequest &request) {
            return statementOf(request).contains(QLatin1String("zbb"))
                       ? ScriptedAnswer::body({}, 503)
                       : ScriptedAnswer::body(wrapped(rows("y")));
        };
        m_store->RefreshCredentialFiles();
        QCOMPARE(home.read("bbzdsrbdssset.ini"_s), kept);
        for (const char *file : {"bendsrbdssset.ini", "bschdsrbdssset.ini"}) {
            QCOMPARE(home.read(QLatin1String(file)), accounts({"y"}).chopped(1));
        }

        m_server->requests.clear();
        m_state.BackendReachable = false;
        m_store->RefreshCredentialFiles();
        QVERIFY(m_server->requests.isEmpty());
    }

    void tokens_data()
    {
        // body, status, kept, token, keptAfter
        const Rows<QByteArray, int, QByteArray, QString, QByteArray> row;
        const QByteArray good(R"({"access_token":"24.fresh","expires_in":2592000})");
        row("fresh", good, 200, field("old"), "24.fresh", field("24.fresh"));
        row("first", good, 200, "", "24.fresh", field("24.fresh"));
        row("refused", R"({"error":"invalid_client"})", 401, field("old"), "old", field("old"));
        row("no token in it", R"({"error":"x"})", 200, field("old"), "old", field("old"));
        row("no string", R"({"access_token":7})", 200, field("old"), "old", field("old"));
        row("rubbish", "<html>", 200, field("old"), "old", field("old"));
        row("created, not OK", good, 201, field("old"), "old", field("old"));
        row("nothing kept", "", 500, "", "", "");
        row("kept is broken", "", 500, "003zz", "", "003zz");
        const QByteArray huge(2000, 't');
        row("too long to keep", QByteArray("{\"access_token\":\"" + huge + "\"}"), 200, field("old"),
            QString::fromLatin1(huge), field("old"));
    }
    void tokens()
    {
        const auto [body, status, kept, token, keptAfter] =
            rowOf<QByteArray, int, QByteArray, QString, QByteArray>();
        m_server->fallback = ScriptedAnswer::body(body, status);
        const struct
        {
            QString key;
            QString EngineState::*member;
            bool (mevo::BaiduTokens::*fetch)();
        } kinds[] = {
            {"LastBDTK"_s, &EngineState::BaiduAccessToken, &mevo::BaiduTokens::FetchBaiduToken},
            {"LastBDTTSTK"_s, &EngineState::BaiduTtsAccessToken, &mevo::BaiduTokens::FetchBaiduTtsToken},
        };
        for (const auto &kind : kinds) {
            mevo::SettingsFile().setValue(kind.key, QString::fromLatin1(kept));
            m_state.*kind.member = "of another language"_s;
            QCOMPARE((m_tokens.get()->*kind.fetch)(), !token.isEmpty());
            QCOMPARE(m_state.*kind.member, token);
            QCOMPARE(mevo::SettingsFile().value(kind.key).toString().toLatin1(), keptAfter);
        }
        m_state.IsOnline = false;
        m_server->requests.clear();
        QCOMPARE(m_tokens->FetchBaiduToken(), !keptAfter.isEmpty() && !keptAfter.startsWith("003zz"));
        QVERIFY(m_server->requests.isEmpty());
    }

    void tokenRequest()
    {
        m_state.BaiduClientId = "id"_s;
        m_state.BaiduClientSecret = "secret"_s;
        m_server->fallback = ScriptedAnswer::silence();
        m_tokens->requestTimeoutMs = 50;
        m_tokens->FetchBaiduToken();
        const ScriptedRequest &request = m_server->requests.first();
        QCOMPARE(request.head.left(request.head.indexOf('\r')),
                 QByteArray("POST /oauth/2.0/token? HTTP/1.1"));
        QCOMPARE(request.headers.value("content-type"), QByteArray("application/x-www-form-urlencoded"));
        QCOMPARE(request.body,
                 QByteArray("grant_type=client_credentials&client_id=id&client_secret=secret&"));
    }

    void aFetchBesideAnother_data()
    {
        const Rows<QString, QByteArray> row; // account of the second, answer to the first
        row("for an account that is no longer in force", "second", R"({"access_token":"old"})");
        row("for the same account, without a token", "first", R"({"error":"x"})");
    }
    void aFetchBesideAnother()
    {
        const auto [account, reply] = rowOf<QString, QByteArray>();
        mevo::SettingsFile().setValue("LastBDTK"_s, QString::fromLatin1(field("kept")));
        m_state.BaiduClientId = "first"_s;
        m_state.BaiduAccessToken.clear();
        m_server->enqueue(ScriptedAnswer::late(ScriptedAnswer::body(reply)));
        m_server->fallback = ScriptedAnswer::body(R"({"access_token":"new"})");
        m_server->onRequest = [&, &account = account](const ScriptedRequest &) {
            m_server->onRequest = nullptr;
            QTimer::singleShot(0, this, [&, account = account] { // another language is chosen meanwhile
                m_state.BaiduClientId = account;
                QVERIFY(m_tokens->FetchBaiduToken());
                m_server->answerHeld();
            });
        };
        QVERIFY(m_tokens->FetchBaiduToken());
        QCOMPARE(m_state.BaiduAccessToken, "new"_s);
        QCOMPARE(mevo::SettingsFile().value("LastBDTK"_s).toString().toLatin1(), field("new"));
    }

    void theOwnerGoesDuringAWait_data()
    {
        const Rows<Wait, bool> row; // wait, answered
        const auto add = [&row](const QByteArray &name, const Wait &wait) {
            row(name + ", answered", wait, true);
            row(name + ", cut", wait, false);
        };
        const QString sql = "select"_s;
        add("probe", [](Owner &owner) { return owner.api.ProbeBackend() >= 0; });
        add("statement", [sql](Owner &owner) {
            return !owner.api.RunBackendSql(&owner.store, sql, owner.state.ServerUrl, 200).isNull();
        });
        add("statements", [sql](Owner &owner) {
            return !owner.api.RunBackendSqls(&owner.store, {sql, sql}, owner.state.ServerUrl, 200)[1]
                        .isNull();
        });
        add("three addresses", [sql](Owner &owner) {
            owner.api.RunWithFailover(
                sql, {200, 200, 200}); // an answer that is there is given, to whom it concerns
            return false;
        });
        add("column", [](Owner &owner) {
            owner.api.WriteDeviceColumn("x"_s);
            return false;
        });
        add("rest", [](Owner &owner) {
            QString reply;
            owner.api.BackendGet(QUrl(owner.state.ServerUrl), 1, reply);
            return owner.api.drain(200);
        });
        add("one list",
            [](Owner &owner) { return owner.store.DownloadCredentialFile(CredentialList::XunFei); });
        add("all lists", [](Owner &owner) {
            owner.store.RefreshCredentialFiles();
            return false;
        });
        add("token", [](Owner &owner) { return owner.tokens.FetchBaiduToken(); });
        add("token of synthesis", [](Owner &owner) { return owner.tokens.FetchBaiduTtsToken(); });
    }
    void theOwnerGoesDuringAWait()
    {
        const auto [wait, answered] = rowOf<Wait, bool>();
        auto owner = std::make_unique<Owner>(m_state, m_endpoints);
        owner->tokens.requestTimeoutMs = 200;
        m_server->fallback = ScriptedAnswer::late(ScriptedAnswer::body(wrapped(rows("x"))));
        m_server->onRequest = [&, held = answered](const ScriptedRequest &) {
            QTimer::singleShot(0, m_server.get(), [&, held] {
                owner.reset();
                held ? m_server->answerHeld() : m_server->kill();
            });
        };
        QVERIFY(!wait(*owner));
        QVERIFY(!owner);
        QVERIFY(home.read("besrfdssset.ini"_s).isEmpty());
    }

    void oneDownloadAtATime()
    {
        m_state.besrfdsssetlen = 1;
        m_server->fallback = ScriptedAnswer::body(wrapped(rows("x")));
        m_server->onRequest = [this](const ScriptedRequest &) { m_store->RefreshCredentialFiles(); };
        m_store->RefreshCredentialFiles();
        QCOMPARE(m_server->requests.size(), 2); // XunFei's two lists, once
    }

private:
    /// The statements that the backend has been asked.
    QStringList asked() const { return textsOf(m_server->requests, statementOf); }

    FakePlatform m_platform;
    MainState m_state;
    std::unique_ptr<ScriptedHttp> m_server;
    std::unique_ptr<mevo::WebApi> m_api;
    mevo::EngineEndpoints m_endpoints;
    std::unique_ptr<mevo::BaiduTokens> m_tokens;
    std::unique_ptr<mevo::CredentialStore> m_store;
    mevo::RandomRange m_random{1};
};

QTEST_GUILESS_MAIN(TestCredentials)
#include "tst_credentials.moc"
