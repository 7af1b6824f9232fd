#include "service/LocalAddress.h"
#include "service/QReplyTimeout.h"
#include "service/RelayHttp.h"
#include "service/ReplyWait.h"
#include "service/WebApi.h"
#include "service/isOnl.h"
#include "support/FakePlatform.h"
#include "support/Rows.h"
#include "support/ScriptedHttp.h"

#include <QElapsedTimer>
#include <QJsonObject>
#include <QSignalSpy>
#include <QtTest>

#include <algorithm>
#include <memory>

using mevo::WebApi;

namespace {

const WebCipher cipher;

QByteArray wrapped(const QByteArray &json)
{
    const QByteArray hex = cipher.EncryptString(QString::fromUtf8(json)).toLatin1();
    return QByteArray::number(hex.size()).rightJustified(5, '0') + hex;
}

/// The statement that a request carries; empty when its form is not the right one.
QString statementOf(const ScriptedRequest &request, const QByteArray &tag)
{
    const QByteArray start = "/mevowebapi?" + tag;
    if (request.method != "GET" || !request.target.startsWith(start)) {
        return {};
    }
    const QByteArray rest = request.target.mid(start.size());
    const QString text = cipher.DecryptString(QString::fromLatin1(rest.mid(3)));
    return rest.left(3) == QByteArray::number(text.size()).rightJustified(3, '0') ? text : QString();
}

} // namespace

class TestWebApi : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_server = std::make_unique<ScriptedHttp>();
        m_state.IsOnline = true;
        m_state.BackendReachable = true;
        m_state.UseNetworkProxy = false;
        m_state.ServerVersion.clear();
        m_state.SchemaName = "db"_s;
        m_state.DongleID = "01-02-030405"_s;
        m_state.ServerUrl = m_state.ServerUrlBk1 = m_state.ServerUrlBk2 = base();
        m_api = std::make_unique<WebApi>(m_state, cipher);
    }

    void answers_data()
    {
        const Rows<QByteArray, int, QString> row; // bytes, code, reply
        row("good", ScriptedAnswer::body("语音").bytes, 200, "语音");
        row("empty", ScriptedAnswer::body("").bytes, 200, "");
        row("accepted only", ScriptedAnswer::body("later", 202).bytes, 202, QString());
        row("moved", QByteArray("HTTP/1.1 302 Found\r\nLocation: /else\r\nContent-Length: 0\r\n\r\n"), 302,
            QString());
        row("not found", ScriptedAnswer::body("no", 404).bytes, int(QNetworkReply::ContentNotFoundError),
            QString());
        row("server error", ScriptedAnswer::body("no", 500).bytes, int(QNetworkReply::InternalServerError),
            QString());
        row("no HTTP", QByteArray("SSH-2.0-whatever\r\n"), int(QNetworkReply::RemoteHostClosedError),
            QString());
        row("nothing", QByteArray(), int(QNetworkReply::RemoteHostClosedError), QString());
        row("half", ScriptedAnswer::cut("half an ans", 100).bytes, int(QNetworkReply::RemoteHostClosedError),
            QString());
        row("length that is none", QByteArray("HTTP/1.1 200 OK\r\nContent-Length: -7\r\n\r\nbody"), 200,
            "body");
    }
    void answers()
    {
        const auto [bytes, code, reply] = rowOf<QByteArray, int, QString>();
        m_server->fallback = ScriptedAnswer::raw(bytes); // Qt asks again where a connection ends early
        QString got;
        QCOMPARE(get(5000, got), code);
        QCOMPARE(got, reply);
    }

    void refusesEnormousReplies()
    {
        m_server->enqueue(ScriptedAnswer::enormous(mevo::MaxReplyBytes + (4 << 20)));
        QString reply;
        QCOMPARE(get(20000, reply), int(QNetworkReply::OperationCanceledError));
        QVERIFY(reply.isEmpty());
        m_server->enqueue(ScriptedAnswer::enormous(mevo::MaxReplyBytes));
        QCOMPARE(get(20000, reply), 200);
        QCOMPARE(reply.size(), int(mevo::MaxReplyBytes));
    }

    void requestBytes()
    {
        m_server->enqueue(ScriptedAnswer::body("raw reply"));
        const QString sql = "select * from db.device_serialid where DongleID='01-02-030405'"_s;
        QCOMPARE(m_api->RunBackendSql(nullptr, sql, base(), 2000), "raw reply"_s);
        const ScriptedRequest &request = m_server->requests.first();
        QCOMPARE(statementOf(request, "newsql___"), sql);
        QCOMPARE(request.headers.value("content-type"), QByteArray("application/x-www-form-urlencoded"));
        QCOMPARE(request.headers.value("host"), m_server->host().toLatin1());
    }

    void postBytes()
    {
        m_server->enqueue(ScriptedAnswer::body("posted"));
        QString reply;
        QCOMPARE(
            m_api->BackendPost(m_server->url("/json"_s), 2000, R"({"a":"语"})", reply, "application/json"),
            200);
        QCOMPARE(reply, "posted"_s);
        const ScriptedRequest &request = m_server->requests.first();
        QCOMPARE(request.method, QByteArray("POST"));
        QCOMPARE(request.target, QByteArray("/json"));
        QCOMPARE(request.body, QByteArray(R"({"a":"语"})"));
        QCOMPARE(request.headers.value("content-type"), QByteArray("application/json"));
    }

    void waitsFromElevenMilliseconds()
    {
        m_server->fallback = ScriptedAnswer::silence();
        QString reply;
        QCOMPARE(get(10, reply), 0);
        QCOMPARE(get(-1, reply), 0);
        QCOMPARE(m_api->pendingCount(), 2);
        QCOMPARE(get(11, reply), -1);
        QCOMPARE(m_api->pendingCount(), 2);
    }

    void timesOut()
    {
        m_server->enqueue(ScriptedAnswer::late(ScriptedAnswer::body("too late")));
        QString reply;
        QElapsedTimer time;
        time.start();
        QCOMPARE(get(100, reply), -1);
        QVERIFY2(time.elapsed() >= 95 && time.elapsed() < 1000, qPrintable(QString::number(time.elapsed())));
        m_server->answerHeld(); // into a connection that is being torn down
        m_server->enqueue(ScriptedAnswer::body("in time"));
        QCOMPARE(get(5000, reply), 200);
        QCOMPARE(reply, "in time"_s);
    }

    void forgottenCallsLeaveAndAreCleanedUp()
    {
        m_server->fallback = ScriptedAnswer::late(ScriptedAnswer::body("seen"));
        QString reply;
        for (int i = 0; i < 20; ++i) {
            QCOMPARE(m_api->BackendGet(m_server->url("/%1"_s.arg(i)), 1, reply), 0);
        }
        QVERIFY(!m_api->drain(11)); // nobody answers: the wait has an end
        QTRY_VERIFY(!m_server->requests.isEmpty());
        m_server->fallback = ScriptedAnswer::body("seen");
        m_server->answerHeld();
        QVERIFY(m_api->drain(10000));
        QCOMPARE(m_server->requests.size(), 20);
        QVERIFY(!m_server->requests.first().headers.contains("content-type"));
        QTRY_COMPARE(m_api->findChildren<QNetworkReply *>().size(), 0);
        QVERIFY(m_api->drain(10000));

        // A server that dies with requests open, and one that refuses, leave nothing behind either.
        m_server->fallback = ScriptedAnswer::silence();
        QCOMPARE(get(1, reply), 0);
        QTRY_COMPARE(m_server->requests.size(), 21);
        const QUrl url = m_server->url();
        m_server->kill();
        QCOMPARE(m_api->BackendGet(url, 1, reply), 0);
        QVERIFY(m_api->drain(10000));
    }

    /// A count is told when it has been taken, and goes when the one before it has ended, whatever came of
    /// that.
    void countsGoOneAfterTheOther()
    {
        mevo::DayCounts &counts = m_state.dayCounts;
        const auto write = [&](int count) {
            m_api->WriteCount({counts.receiver(), mevo::CountColumn::Baidu, count, "count %1"_s.arg(count)});
        };
        const auto asked = [&] {
            QStringList statements;
            for (const ScriptedRequest &request : qAsConst(m_server->requests)) {
                statements.append(statementOf(request, "newsql___"));
            }
            return statements.join(u'|');
        };
        m_server->enqueue(ScriptedAnswer::late(ScriptedAnswer::body({}, 503)));
        m_server->enqueue(ScriptedAnswer::body("taken"));
        for (const int count : {1, 2, 3}) {
            write(count);
        }
        QTRY_COMPARE(asked(), "count 1"_s);
        QVERIFY(!m_api->drain(50));
        QCOMPARE(asked(), "count 1"_s);
        m_server->answerHeld();
        QVERIFY(m_api->drain(10000)); // also for the one that has waited
        QCOMPARE(asked(), "count 1|count 3"_s);
        QCOMPARE(m_state.BDSR1DReadQuantity, 3);

        m_server->enqueue(ScriptedAnswer::body({}, 503));
        write(4);
        QVERIFY(m_api->drain(10000));
        QCOMPARE(m_state.BDSR1DReadQuantity, 3);

        m_server->enqueue(ScriptedAnswer::silence());
        write(5);
        write(6);
        QTRY_COMPARE(m_server->requests.size(), 4);
        m_api->overtakeCounts();
        QVERIFY(m_api->drain(10000)); // nothing waits for the one that is stuck
        QVERIFY(asked().endsWith("|count 5|count 6"_s));

        m_state.BackendReachable = false;
        write(7);
        QCOMPARE(m_api->pendingCount(), 0);
    }

    void offline()
    {
        m_state.IsOnline = false;
        QString reply;
        QCOMPARE(get(5000, reply), -1);
        QCOMPARE(get(1, reply), -1);
        QCOMPARE(m_api->ProbeBackend(), -1);
        QVERIFY(m_api->RunBackendSql(nullptr, "x"_s, base(), 5000).isNull());
        QCOMPARE(m_server->connections, 0);
    }

    void sqlNeedsTheBackend()
    {
        m_state.BackendReachable = false;
        QVERIFY(m_api->RunBackendSql(nullptr, "x"_s, base(), 5000).isNull());
        QCOMPARE(m_server->connections, 0);
        m_state.BackendReachable = true;
        m_server->enqueue(ScriptedAnswer::body("no", 500));
        QVERIFY(m_api->RunBackendSql(nullptr, "x"_s, base(), 5000).isNull());
        QVERIFY(m_state.BackendReachable); // only a probe takes the flag away

        auto owner = std::make_unique<QObject>();
        m_server->onRequest = [&owner](const ScriptedRequest &) { owner.reset(); };
        QVERIFY(m_api->RunBackendSql(owner.get(), "x"_s, base(), 5000).isNull());
        QVERIFY(!owner);
    }

    void probe_data()
    {
        const Rows<QByteArray, int, int, bool, QString> row; // body, status, result, reachable, version
        const QByteArray good = wrapped("{\"items\":\"107\",\"result\":\"http://v.example\"}");
        row("good", good, 200, 107, true, "http://v.example");
        row("length off by one", good + "0", 200, 0, true, "kept");
        row("rubbish", QByteArray("<html>"), 200, 0, true, "kept");
        row("gone", QByteArray(), 503, -1, false, "kept");
        row("not quite", good, 203, -1, false, "kept");
    }
    void probe()
    {
        const auto [body, status, result, reachable, version] = rowOf<QByteArray, int, int, bool, QString>();
        m_state.BackendReachable = !reachable;
        m_state.ServerVersion = "kept"_s;
        m_server->enqueue(ScriptedAnswer::body(body, status));
        QCOMPARE(m_api->ProbeBackend(), result);
        QCOMPARE(m_state.BackendReachable.load(), reachable);
        QCOMPARE(m_state.ServerVersion, version);
        QCOMPARE(statementOf(m_server->requests.first(), "newGetNewVer___"), "newGetNewVer"_s);
    }

    void columnWrite()
    {
        QCOMPARE(m_api->WriteDeviceColumn("IPRecord='10.0.0.2'"_s), 0);
        QCOMPARE(statementOf(m_server->requests.first(), "updateIP___"),
                 "update db.device_serialid set IPRecord='10.0.0.2' where DongleID='01-02-030405'"_s);
        m_server->fallback = ScriptedAnswer::body({}, 500);
        QCOMPARE(m_api->WriteDeviceColumn("IPRecord='10.0.0.2'"_s), -1);
    }

    void failover_data()
    {
        const Rows<int, QString> row; // down, reply
        row("primary", 0, "from 0");
        row("first backup", 1, "from 1");
        row("second backup", 2, "from 2");
        row("none", 3, QString());
    }
    void failover()
    {
        const auto [down, reply] = rowOf<int, QString>();
        ScriptedHttp servers[3];
        for (int i = 0; i < 3; ++i) {
            servers[i].fallback = ScriptedAnswer::body("from " + QByteArray::number(i));
            if (i < down) {
                servers[i].fallback = i == 0 ? ScriptedAnswer::silence() : ScriptedAnswer::body({}, 500);
            }
        }
        const QString query = "/mevowebapi?"_s;
        m_state.ServerUrl = servers[0].url(query).toString();
        m_state.ServerUrlBk1 = servers[1].url(query).toString();
        m_state.ServerUrlBk2 = servers[2].url(query).toString();
        m_state.BackendReachable = false;
        QCOMPARE(m_api->RunWithFailover("select"_s, {50, 5000, 5000}).value_or(QString()), reply);
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(servers[i].requests.size(), i <= down ? 1 : 0);
        }
    }

    void statementsSideBySide()
    {
        std::vector<QString> statements;
        for (int i = 0; i < 9; ++i) {
            statements.push_back("list %1"_s.arg(i));
        }
        m_server->answering = [](const ScriptedRequest &request) {
            const QString statement = statementOf(request, "newsql___");
            return statement == QLatin1String("list 3")
                       ? ScriptedAnswer::late(ScriptedAnswer::body("no", 500))
                       : ScriptedAnswer::late(ScriptedAnswer::body("answer to " + statement.toLatin1()));
        };
        // Nothing is answered before the last has been asked: they cannot have waited for one another.
        m_server->onRequest = [this](const ScriptedRequest &) {
            if (m_server->requests.size() == 9) {
                QTimer::singleShot(0, m_server.get(), [this] { m_server->answerHeld(); });
            }
        };
        const std::vector<QString> answers = m_api->RunBackendSqls(nullptr, statements, base(), 20000);
        QCOMPARE(answers.size(), std::size_t(9));
        for (int i = 0; i < 9; ++i) {
            QCOMPARE(answers[std::size_t(i)], i == 3 ? QString() : "answer to list %1"_s.arg(i));
        }

        m_server->onRequest = nullptr; // those that come are had, though one never does
        m_server->answering = [](const ScriptedRequest &request) {
            return statementOf(request, "newsql___") == QLatin1String("list 0") ? ScriptedAnswer::silence()
                                                                                : ScriptedAnswer::body("had");
        };
        const std::vector<QString> some = m_api->RunBackendSqls(nullptr, statements, base(), 500);
        QVERIFY(some[0].isNull());
        QCOMPARE(std::count(some.begin(), some.end(), "had"_s), 8);
        m_state.BackendReachable = false;
        m_server->clear();
        QCOMPARE(m_api->RunBackendSqls(nullptr, statements, base(), 500), std::vector<QString>(9));
        QCOMPARE(m_server->connections, 0);
    }

    void sharedWait()
    {
        m_server->fallback = ScriptedAnswer::silence();
        m_api->shareWait(200);
        QElapsedTimer time;
        time.start();
        QString reply;
        QCOMPARE(get(50, reply), -1);
        QCOMPARE(m_api->cutOffCount(), 0); // it has had its whole time
        QVERIFY(m_api->RunBackendSqls(nullptr, {"a"_s, "b"_s}, base(), 5000)[0].isNull());
        QCOMPARE(m_api->cutOffCount(), 1);
        QVERIFY(m_api->sharedWaitUsedUp());
        QTRY_COMPARE(m_server->requests.size(), 3);
        QVERIFY(!m_api->RunWithFailover("x"_s, {5000, 5000, 5000}).has_value());
        QCOMPARE(m_api->WriteDeviceColumn("x"_s), -1);
        QCOMPARE(m_api->cutOffCount(), 5);
        QCOMPARE(get(1, reply), 0); // what nobody waits for takes no time
        QVERIFY2(time.elapsed() < 4000, qPrintable(QString::number(time.elapsed())));
        QTRY_COMPARE(m_server->requests.size(), 4);
        m_api->endSharedWait();
        m_server->fallback = ScriptedAnswer::body("in time");
        QCOMPARE(get(5000, reply), 200);
        QCOMPARE(m_api->cutOffCount(), 5);
    }

    void ownAddress_data()
    {
        const Rows<QString, QString> row; // addresses, address
        row("usual", "127.0.0.1 ::1 fe80::1%eth0 192.168.1.7 10.0.0.2", "192.168.1.7");
        row("no lease", "127.0.0.1 169.254.7.7 2001:db8::7", "2001:db8::7");
        row("alone", "127.0.0.1 ::1 fe80::1%eth0", "127.0.0.1");
        row("none", "", "127.0.0.1");
    }
    void ownAddress()
    {
        const auto [addresses, address] = rowOf<QString, QString>();
        QList<QHostAddress> list;
        for (const QString &each : addresses.split(u' ', Qt::SkipEmptyParts)) {
            list.append(QHostAddress(each));
        }
        QCOMPARE(mevo::localAddress(list), address);
    }

    void goesThroughTheProxy()
    {
        ScriptedHttp proxy;
        m_state.UseNetworkProxy = true;
        m_state.NetworkProxy_IP = "127.0.0.1"_s;
        m_state.NetworkProxy_Port = proxy.serverPort();
        QString reply;
        m_api->BackendGet(QUrl("http://backend.invalid:19004/x"_s), 5000, reply);
        QVERIFY(!proxy.requests.isEmpty());
        QVERIFY(proxy.requests.first().target.contains("backend.invalid:19004"));
        proxy.clear();
        m_api->BackendGet(QUrl("http://backend.invalid:19004/x"_s), 1, reply);
        QVERIFY(m_api->drain(10000));
        QVERIFY(!proxy.requests.isEmpty());
    }

    void surroundingsGoDuringAWait_data()
    {
        const Rows<QString> row; // what
        for (const char *what :
             {"the object", "the server", "the event loop", "nothing, but a second call runs"}) {
            row(what, QString::fromLatin1(what));
        }
    }
    void surroundingsGoDuringAWait()
    {
        const auto [what] = rowOf<QString>();
        QString inner;
        int innerCode = 0;
        m_server->enqueue(ScriptedAnswer::late(ScriptedAnswer::body("outer")));
        m_server->onRequest = [&, &what = what](const ScriptedRequest &) {
            m_server->onRequest = nullptr;
            QTimer::singleShot(0, this, [&, what] {
                if (what == QLatin1String("the object")) {
                    m_api.reset();
                    m_server->answerHeld();
                } else if (what == QLatin1String("the server")) {
                    m_server->kill();
                } else if (what == QLatin1String("the event loop")) {
                    QCoreApplication::quit();
                } else {
                    m_server->enqueue(ScriptedAnswer::body("inner"));
                    innerCode = get(5000, inner);
                    m_server->answerHeld();
                }
            });
        };
        m_state.BackendReachable = true;
        const int code = m_api->ProbeBackend();
        if (what == QLatin1String("the event loop")) {
            // A pass of the main loop clears the application's wish to quit for the tests that follow.
            QTimer::singleShot(0, qApp, &QCoreApplication::quit);
            QCoreApplication::exec();
        }
        if (what.startsWith(QLatin1String("nothing"))) {
            QCOMPARE(code, 0); // answered, with something that is no reply of the backend
            QCOMPARE(innerCode, 200);
            QCOMPARE(inner, "inner"_s);
        } else {
            QCOMPARE(code, -1);
            QCOMPARE(m_state.BackendReachable.load(), what == QLatin1String("the object"));
        }
    }

    void httpEnds_data()
    {
        const Rows<QByteArray, bool, int> row; // bytes, late, error
        row("good", ScriptedAnswer::body("data").bytes, false, 0);
        row("not found", ScriptedAnswer::body("no", 404).bytes, false,
            int(QNetworkReply::ContentNotFoundError));
        row("cut", ScriptedAnswer::cut("da", 4).bytes, false, int(QNetworkReply::RemoteHostClosedError));
        row("late", ScriptedAnswer::body("data").bytes, true, 4);
    }
    void httpEnds()
    {
        const auto [bytes, late, error] = rowOf<QByteArray, bool, int>();
        m_server->fallback = ScriptedAnswer::raw(bytes);
        m_server->fallback.held = late;
        const int maxTime = late ? 50 : 5000;
        relay_NetWork::HTTP http;
        QSignalSpy finished(&http, &relay_NetWork::HTTP::finished);
        QSignalSpy failed(&http, &relay_NetWork::HTTP::error);

        http.get(m_server->url(), maxTime);
        QTRY_COMPARE(finished.size() + failed.size(), 1);
        QCOMPARE(finished.size(), error == 0 ? 1 : 0);
        if (error != 0) {
            QCOMPARE(failed.first().first().value<QNetworkReply::NetworkError>(), error);
        }
        QByteArray target("before");
        QNetworkRequest request(m_server->url("/post"_s));
        request.setHeader(QNetworkRequest::ContentTypeHeader, QByteArray("application/json"));
        QCOMPARE(http.post(request, "sent", target, maxTime), error == 0);
        QCOMPARE(target, error == 0 ? QByteArray("data") : QByteArray("before"));
        QCOMPARE(m_server->requests.last().body, QByteArray("sent"));
        m_server->answerHeld();
        QCOMPARE(finished.size() + failed.size(), 2); // what comes after a time-out is not heard
    }

    void httpLaterCallCancelsAWait()
    {
        m_server->enqueue(ScriptedAnswer::silence());
        m_server->enqueue(ScriptedAnswer::body("second"));
        relay_NetWork::HTTP http;
        QByteArray second;
        bool secondResult = false;
        m_server->onRequest = [&](const ScriptedRequest &) {
            m_server->onRequest = nullptr;
            QTimer::singleShot(0, &http, [&] { secondResult = http.get(m_server->url(), second, 5000); });
        };
        QByteArray first;
        QVERIFY(!http.get(m_server->url(), first, 5000));
        QVERIFY(first.isEmpty());
        QVERIFY(secondResult);
        QCOMPARE(second, QByteArray("second"));

        auto doomed = std::make_unique<relay_NetWork::HTTP>();
        m_server->enqueue(ScriptedAnswer::silence());
        m_server->onRequest = [&](const ScriptedRequest &) {
            QTimer::singleShot(0, this, [&] { doomed.reset(); });
        };
        QVERIFY(!doomed->get(m_server->url(), first, 5000));
        QVERIFY(!doomed);
    }

    void httpChecksCertificates()
    {
        ScriptedHttp server(ScriptedHttp::Security::Tls);
        server.fallback = ScriptedAnswer::body("secret");
        relay_NetWork::HTTP http;
        QByteArray target;
        QVERIFY(!http.get(server.url(), target, 5000));
        QVERIFY(server.requests.isEmpty());
        http.setCertificateChecks(false);
        QVERIFY(http.get(server.url(), target, 5000));
        QCOMPARE(target, QByteArray("secret"));
    }

    void replyTimeout()
    {
        m_server->enqueue(ScriptedAnswer::silence());
        QNetworkAccessManager manager;
        QNetworkReply *reply = manager.get(QNetworkRequest(m_server->url()));
        auto *timeout = new QReplyTimeout(reply, 20);
        QSignalSpy timedOut(timeout, &QReplyTimeout::timeout);
        QTRY_VERIFY(reply->isFinished());
        QCOMPARE(reply->error(), QNetworkReply::OperationCanceledError);
        QCOMPARE(timedOut.size(), 1);
        timeout->onTimeout(); // a finished reply is left alone
        QCOMPARE(timedOut.size(), 1);
    }

    void onlineWatch()
    {
        std::atomic<bool> busy{false};
        m_platform.networkState->kind = mevo::NetworkState::Connection::None;
        isOnl watch(*m_platform.networkState, busy);
        QVERIFY(!watch.isOnline);
        QSignalSpy reported(&watch, &isOnl::returnisonline);
        QTRY_COMPARE(reported.size(), 1);
        QCOMPARE(reported.last().first().toInt(), -1);

        m_platform.networkState->kind = mevo::NetworkState::Connection::Lan;
        busy = true;
        watch.GetInternetConnectState();
        QCOMPARE(reported.size(), 1);
        busy = false;
        QTRY_COMPARE(reported.size(), 2); // its own timer goes on by itself
        QCOMPARE(reported.last().first().toInt(), 2);
        QVERIFY(watch.isOnline);
        QVERIFY(!watch.isVisible());
    }

private:
    QString base() const { return m_server->url("/mevowebapi?"_s).toString(); }
    int get(int timeoutMs, QString &reply) { return m_api->BackendGet(m_server->url(), timeoutMs, reply); }

    FakePlatform m_platform;
    MainState m_state;
    std::unique_ptr<ScriptedHttp> m_server;
    std::unique_ptr<WebApi> m_api;
};

QTEST_MAIN(TestWebApi)
#include "tst_webapi.moc"
