#include "engines/CurlPost.h"
#include "engines/TencentSpeech.h"
#include "recognisers/TencentService.h"
#include "support/FakeEngineHost.h"
#include "support/FakePlatform.h"
#include "support/Messages.h"
#include "support/Rows.h"
#include "support/ScratchHome.h"

#include <QFile>
#include <QJsonDocument>
#include <QThread>
#include <QtTest>

#include <functional>
#include <memory>
#include <unistd.h>

namespace {

ScratchHome home;
const mevo::CurlLibrary curl;

/// Tencent's service of the lab, on a thread of its own: the engine blocks the one that it is asked on.
class Service
{
public:
    Service()
    {
        m_thread.start();
        m_worker.moveToThread(&m_thread);
        in([this] {
            m_service = std::make_unique<lab::TencentService>(
                "AKID-of-the-test", "key-of-the-test",
                [](const QByteArray &, const auto &done) { done("hello"_s); },
                [this](const QJsonObject &note) { m_note = note; });
            m_server = std::make_unique<lab::LabHttpServer>(
                [this](const lab::HttpRequest &request, const lab::LabHttpServer::Reply &reply) {
                    m_requests.append(request);
                    m_service->handle(request, reply);
                });
            m_ready = m_server->useTls() && m_server->start(0);
        });
    }
    ~Service()
    {
        in([this] {
            m_server.reset();
            m_service.reset();
        });
        m_thread.quit();
        m_thread.wait();
    }
    Q_DISABLE_COPY(Service)

    void anew()
    {
        in([this] {
            m_requests.clear();
            m_note = {};
            m_server->clearFaults();
            m_service->setError({}, 0);
            m_service->setClockOffset(0);
            m_service->setTexts({"今天"_s});
        });
    }
    void change(const std::function<void(lab::TencentService &, lab::LabHttpServer &)> &how)
    {
        in([&] { how(*m_service, *m_server); });
    }
    QString host() const { return "127.0.0.1:%1"_s.arg(m_server->serverPort()); }
    bool ready() const { return m_ready; }
    QList<lab::HttpRequest> requests() { return copyOf(m_requests); }
    QJsonObject note() { return copyOf(m_note); }

private:
    template <class Value>
    Value copyOf(const Value &value)
    {
        Value copy;
        in([&] { copy = value; });
        return copy;
    }
    void in(const std::function<void()> &work)
    {
        QMetaObject::invokeMethod(&m_worker, work, Qt::BlockingQueuedConnection);
    }

    QThread m_thread;
    QObject m_worker;
    std::unique_ptr<lab::TencentService> m_service;
    std::unique_ptr<lab::LabHttpServer> m_server;
    QList<lab::HttpRequest> m_requests;
    QJsonObject m_note;
    bool m_ready = false;
};

/// Of a tip the error's code counts; whether there is a tip window is none of the service's business.
class FakeHost : public FakeEngineHost
{
public:
    using FakeEngineHost::FakeEngineHost;
    void ensureEngineTip() override {}
    void showEngineTip(const QString &text, bool regardless) override
    {
        FakeEngineHost::showEngineTip(text.section(u'\n', 1, 1), regardless);
    }
};

/// What one of the standard streams is sent while this lives.
class Captured
{
public:
    explicit Captured(int descriptor)
        : m_descriptor(descriptor)
        , m_kept(dup(descriptor))
        , m_file(home.path("stream%1"_s.arg(descriptor)))
    {
        std::fflush(nullptr);
        m_file.open(QIODevice::ReadWrite | QIODevice::Truncate);
        dup2(m_file.handle(), descriptor);
    }
    ~Captured() { end(); }
    Q_DISABLE_COPY(Captured)
    QByteArray end()
    {
        if (m_kept >= 0) {
            std::fflush(nullptr);
            dup2(m_kept, m_descriptor);
            close(m_kept);
            m_kept = -1;
            m_file.seek(0);
        }
        return m_file.readAll();
    }

private:
    int m_descriptor;
    int m_kept;
    QFile m_file;
};

/// The parties of one case, for what a row does to them.
struct Case
{
    MainState &state;
    lab::TencentService &service;
};
using Setup = std::function<void(Case &)>;

} // namespace

class TestTencentSpeech : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_service.ready()); }

    void init()
    {
        m_service.anew();
        m_platform.log.clear();
        m_platform.time->start = QDateTime::currentDateTime();
        m_state = std::make_unique<MainState>();
        m_state->TXCurrentVoiceType = "16k_zh"_s;
        m_state->ShowTipsDlg = true;
        m_state->TXSCD = "AKID-of-the-test"_s;
        m_state->TXSCK = "key-of-the-test"_s;
        m_endpoints = {};
        m_endpoints.TencentHost = m_service.host();
        m_texts.clear();
        m_receiver = 0;
    }

    void countsToTheReceiverOfThePress()
    {
        m_state->DongleID = "01-01-000001"_s;
        m_receiver = m_state->dayCounts.receiver();
        m_state->DongleID = "01-01-000002"_s;
        recognise("samples");
        QCOMPARE(m_state->dayCounts.used(mevo::CountColumn::Tencent), 0);
        m_state->DongleID = "01-01-000001"_s;
        QCOMPARE(m_state->dayCounts.used(mevo::CountColumn::Tencent), 1);
    }

    void onTheWire()
    {
        const QByteArray pcm("\x01\x02\x03", 3);
        m_state->AddPunctuationWhenEnd = true;
        QCOMPARE(recognise(pcm), qMakePair(true, "今天"_s));
        QCOMPARE(m_texts, list({"今天__over__"}));
        QCOMPARE(m_state->TXSR1DUsedQuantity, 1);
        QVERIFY(m_platform.log.calls().isEmpty());
        QCOMPARE(home.read("test.pcm"_s), QByteArray("\x03\x00\x00\x00", 4) + pcm);

        QCOMPARE(m_service.requests().size(), 1);
        const lab::HttpRequest request = m_service.requests().first();
        QStringList names;
        for (const QByteArray &line : request.head.split('\n').mid(1)) {
            names.append(QString::fromLatin1(line.left(qMax(0, line.indexOf(':')))));
        }
        names.removeAll(QString());
        QCOMPARE(names, "Host Accept Authorization Content-Type X-TC-Action X-TC-Timestamp "
                        "X-TC-Version Content-Length"_s.split(QLatin1Char(' ')));
        QCOMPARE(request.headers.value("host"), m_service.host().toLatin1());
        QCOMPARE(request.headers.value("content-type"), QByteArray("application/json; charset=utf-8"));
        const QJsonObject body = QJsonDocument::fromJson(request.body).object();
        QCOMPARE(body.value("FilterPunc"_s).toInt(-1), 0);
        QCOMPARE(QByteArray::fromBase64(body.value("Data"_s).toString().toLatin1()).mid(44), pcm);
        QVERIFY(!body.contains("ConvertNumMode"_s));
    }

    void longAudio()
    {
        const int length = 60 * 32000;
        QVERIFY(recognise(QByteArray(length, '\x11')).first);
        QCOMPARE(m_service.note().value("pcmBytes"_s).toInt(), length);
    }

    void refusals_data()
    {
        const Rows<QStringList, Setup> row; // calls, setup
        const auto tip = [](const char *code) { return "tip 0 "_s + QLatin1String(code); };
        const auto clock = [](int seconds) {
            return Setup([seconds](Case &c) { c.service.setClockOffset(seconds); });
        };
        const QString tool = "elevated \\校时助手.exe"_s;
        row("clock behind", {tool, tip("AuthFailure.SignatureExpire")}, clock(330));
        row("clock ahead", {tool, tip("AuthFailure.SignatureExpire")}, clock(-330));
        row("clock nearly right", {}, clock(250));
        row("clock behind, no tips wanted", {tip("AuthFailure.SignatureExpire")}, [](Case &c) {
            c.service.setClockOffset(330);
            c.state.ShowTipsDlg = false;
        }); // which the host does not show
        row("wrong key", {tip("AuthFailure.SignatureFailure")}, [](Case &c) { c.state.TXSCK = "k"_s; });
        row("unknown id", {tip("AuthFailure.SecretIdNotFound")}, [](Case &c) { c.state.TXSCD = "i"_s; });
        row("no credentials", {tip("AuthFailure.SecretIdNotFound")},
            [](Case &c) { c.state.TXSCD = c.state.TXSCK = QString(); });
        row("unknown language", {tip("InvalidParameterValue.ErrorInvalidEngservice")},
            [](Case &c) { c.state.TXCurrentVoiceType = "16k_xx"_s; });
        row("no money left", {tip("FailedOperation.UserHasNoAmount")}, [](Case &c) {
            c.service.setError({"FailedOperation.UserHasNoAmount"_s, {}}, 1);
        });
    }

    void refusals()
    {
        const auto [calls, setup] = rowOf<QStringList, Setup>();
        m_service.change([&, &set = setup](auto &service, auto &) {
            Case parties{*m_state, service};
            set(parties);
        });
        QCOMPARE(recognise("samples").first, calls.isEmpty()); // an error ends the transfer
        QCOMPARE(m_texts.isEmpty(), !calls.isEmpty());
        QCOMPARE(m_state->TXSR1DUsedQuantity, calls.isEmpty() ? 1 : 0);
        QCOMPARE(m_platform.log.calls(), calls);
        init(); // and once all is well again
        QCOMPARE(recognise("samples"), qMakePair(true, "今天"_s));
    }

    void faults_data()
    {
        const Rows<QByteArray, int, bool, int, QString> row; // kind, value, done, texts, line (in the log)
        row("closed", "close", 0, false, 0, "the request failed");
        row("cut", "cut", 20, false, 0, "are no answer");
        row("cut in its head", "head", 30, true, 0, "the reply is empty");
        row("whole, but too short", "length", 7, false, 1, "the request failed");
        row("garbage", "garbage", 0, true, 0, "are no answer");
        row("empty", "empty", 0, true, 0, "the reply is empty");
        row("no content", "status", 204, true, 0, "the reply is empty");
        row("server error", "status", 500, true, 1, ""); // the body is what counts
        row("without end", "huge", 5 * mevo::TencentSpeech::MaxReplyBytes, false, 0, "are no answer");
        row("late", "delay", 200, true, 1, "");
    }

    void faults()
    {
        const auto [kind, value, done, texts, line] = rowOf<QByteArray, int, bool, int, QString>();
        const lab::Fault fault{kind, value, 1};
        m_service.change([&fault](auto &, auto &server) { server.setFault("/", fault); });
        const Messages logged;
        QCOMPARE(recognise("samples").first, done);
        QCOMPARE(logged.all.isEmpty(), line.isEmpty());
        QVERIFY2(logged.all.join(u'\n').contains(line), qPrintable(logged.all.join(u'\n')));
        QCOMPARE(m_texts.size(), texts);
        QCOMPARE(m_state->TXSR1DUsedQuantity, texts);
        QVERIFY(m_platform.log.calls().isEmpty()); // nothing for the user to see
    }

    void replyInTwoChunks()
    {
        m_service.change([](auto &service, auto &) { service.setTexts({QString(20000, QChar(0x5b57))}); });
        QCOMPARE(recognise("samples"), qMakePair(true, QString()));
        QVERIFY(m_texts.isEmpty());
    }

    void nobodyThere()
    {
        m_endpoints.TencentHost = "127.0.0.1:9"_s;
        QCOMPARE(recognise("samples"), qMakePair(false, QString()));
    }

    void certificateIsCheckedOnRequest()
    {
        m_endpoints.VerifyCertificates = true;
        QCOMPARE(recognise("samples"), qMakePair(false, QString()));
        QVERIFY(m_service.requests().isEmpty());
    }

    void standardStreams()
    {
        const Messages logged;
        Captured out(STDOUT_FILENO);
        Captured err(STDERR_FILENO);
        recognise("samples");
        m_state->TXSCK = "wrong"_s;
        recognise("samples");
        const QByteArray output = out.end();
        const QByteArray errors = err.end();
        const QList<lab::HttpRequest> requests = m_service.requests();
        QCOMPARE(requests.size(), 2);
        for (const lab::HttpRequest &request : requests) {
            QVERIFY(output.contains(request.headers.value("authorization") + '\n'));
        }
        QVERIFY(output.contains("\nsize * nmemb：\n"));
        QVERIFY(errors.startsWith("size * nmemb： "));
        QVERIFY(errors.contains("\nresult_code != CURLE_fail\n"));
        QVERIFY(errors.endsWith(
            "\ncurl_easy_perform() failed: Failed writing received data to disk/application\n"));
        const QString log = logged.all.join(u'\n');
        QVERIFY(log.contains(QLatin1String("AuthFailure.SignatureFailure")));
        QVERIFY(!log.contains(QLatin1String("AKID")) && !log.contains(QLatin1String("Signature=")));
    }

private:
    QPair<bool, QString> recognise(const QByteArray &pcm)
    {
        mevo::TencentSpeech speech(*m_state, m_host, *m_platform.time, *m_platform.processes, m_endpoints,
                                   [this](const QString &text, int session) {
                                       QCOMPARE(session, 7);
                                       m_texts.append(text);
                                   });
        mevo::SessionContext session;
        session.number = 7;
        session.engine.tencentLanguage = m_state->TXCurrentVoiceType;
        session.receiver = m_receiver;
        return speech.recognise(pcm, session);
    }

    Service m_service;
    FakePlatform m_platform;
    FakeHost m_host{m_platform.log};
    std::unique_ptr<MainState> m_state;
    mevo::EngineEndpoints m_endpoints;
    QStringList m_texts;
    int m_receiver = 0; ///< of the press
};

QTEST_GUILESS_MAIN(TestTencentSpeech)
#include "tst_tencent_speech.moc"
