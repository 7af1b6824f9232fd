#include "services/RunServices.h"

#include "backend/WebApiService.h"
#include "inputmethods/Installers.h"
#include "push/PushService.h"
#include "recognisers/BaiduService.h"
#include "recognisers/TencentService.h"
#include "recognisers/XunFeiService.h"
#include "services/UpdateServer.h"
#include "translation/TranslateService.h"
#include "translation/TtsService.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QTextStream>
#include <QUrlQuery>

namespace lab {

namespace {

/// What the services have been asked, for /control/log.
class RequestLog
{
public:
    void add(QJsonObject entry)
    {
        entry.insert(QStringLiteral("monotonicMs"), clockMs());
        m_entries.append(entry);
        if (m_entries.size() > 10000) {
            m_entries.removeFirst();
        }
    }
    QByteArray json() const { return QJsonDocument(m_entries).toJson(QJsonDocument::Compact); }
    void clear() { m_entries = QJsonArray(); }

private:
    static double clockMs()
    {
        timespec now{};
        clock_gettime(CLOCK_MONOTONIC, &now);
        return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
    }
    QJsonArray m_entries;
};

/// Where the services answer.
struct Ports
{
    quint16 backend = 0, baiduHttp = 0, baiduHttps = 0, tencentHttps = 0, xunFei = 0, push = 0, translate = 0,
            tts = 0, control = 0;
};

bool writeEndpoints(const QString &path, const Ports &ports, const QString &schema)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        return false;
    }
    const QString api = QStringLiteral("http://127.0.0.1:%1/").arg(ports.backend);
    const QString nobody = QStringLiteral("127.0.0.1:9"); // the discard port: nothing answers there
    QTextStream out(&file);
    out.setCodec("UTF-8");
    out << "[Endpoints]\n";
    for (const char *key : {"BackendUrl", "BackendUrlBk1", "BackendUrlBk2"}) {
        out << key << '=' << '"' << api << "mevowebapi?\"\n";
    }
    out << "Schema=" << schema << '\n';
    for (const char *key : {"VersionCheckUrl", "VersionCheckUrl1"}) {
        out << key << '=' << api << "NewVersion\n";
    }
    for (const char *key : {"ManualDownloadUrl", "ManualDownloadUrl1"}) {
        out << key << '=' << api << "NewVersion_Manual\n";
    }
    out << "PushSocketUrl=ws://127.0.0.1:" << ports.push << '\n';
    out << "BaiduSpeechHost=127.0.0.1:" << ports.baiduHttp << "\nBaiduTokenHost=127.0.0.1:" << ports.baiduHttp
        << "\nBaiduSpeechHttpsHost=127.0.0.1:" << ports.baiduHttps << '\n';
    out << "TencentHost=127.0.0.1:" << ports.tencentHttps << "\nTencentSecretIds=\""
        << LabDatabase::TencentSecretId << "\"\nTencentSecretKeys=\"" << LabDatabase::TencentSecretKey
        << "\"\n";
    // Two names, as the real service has: the one that is signed and the one that is connected to.
    out << "XunFeiSignHost=localhost\nXunFeiSocketHost=127.0.0.1:" << ports.xunFei << '\n';
    out << "TranslateHost=127.0.0.1:" << ports.translate << "\nBaiduTtsHost=127.0.0.1:" << ports.tts << '\n';
    for (const char *key : {"SearchBaidu", "SearchSogou", "Search360", "SearchGoogle", "SearchBing"}) {
        out << key << '=' << nobody << '\n';
    }
    out << "VerifyCertificates=0\n";
    return true;
}

} // namespace

int runServices(const QStringList &arguments)
{
    QCommandLineParser parser;
    const auto option = [&parser](const QString &name, const QString &fallback) {
        parser.addOption({name, name, name, fallback});
    };
    option(QStringLiteral("home"), QDir::currentPath());
    for (const char *port : {"port-backend", "baidu-http", "baidu-https", "tencent-https", "xunfei", "push",
                             "translate", "tts", "control"}) {
        option(QLatin1String(port), QStringLiteral("0"));
    }
    option(QStringLiteral("schema"), QStringLiteral("mevodb"));
    option(QStringLiteral("write-endpoints"), QString());
    parser.process(arguments);
    const auto port = [&parser](const char *name) {
        return quint16(parser.value(QLatin1String(name)).toUInt());
    };
    const QString schema = parser.value(QStringLiteral("schema"));

    RequestLog log;
    const auto note = [&log](const QJsonObject &entry) { log.add(entry); };
    const LabCipher cipher;
    LabDatabase database;
    const QString file =
        QDir(parser.value(QStringLiteral("home"))).filePath(QStringLiteral("backend.sqlite"));
    if (!database.open(file, schema, cipher)) {
        qCritical().noquote() << "services:" << file << database.error();
        return 1;
    }
    WebApiService webApi(database, cipher, note);
    const UpdateServer updates(QDir(parser.value(QStringLiteral("home"))).filePath(QStringLiteral("updates")),
                               note);
    const InstallerServer installers(
        QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("inputmethods")), note);
    BaiduService baidu(QLatin1String(LabDatabase::BaiduClientId),
                       QLatin1String(LabDatabase::BaiduClientSecret), note);

    TencentService tencent(
        LabDatabase::TencentSecretId, LabDatabase::TencentSecretKey,
        [&baidu](const QByteArray &pcm, const std::function<void(const QString &)> &done) {
            baidu.recognise(pcm, done);
        },
        note);
    QList<XunFeiService::Account> xunFeiAccounts;
    for (const auto &account : LabDatabase::XunFeiAccounts) {
        xunFeiAccounts.append(
            {QLatin1String(account[0]), QLatin1String(account[1]), QLatin1String(account[2])});
    }
    XunFeiService xunFei(xunFeiAccounts, {QStringLiteral("localhost")}, note);

    PushService push(cipher, QDir(parser.value(QStringLiteral("home"))).filePath(QStringLiteral("web")),
                     note);

    TranslateService translate(LabDatabase::BaiduAppId, LabDatabase::BaiduClientSecret, note);
    TtsService tts([&baidu](const QString &token) { return baidu.knowsToken(token); }, note);

    const auto notFound = HttpResponse{404, "text/plain", {}};
    const auto baiduHandler = [&](const HttpRequest &request, const LabHttpServer::Reply &reply) {
        if (request.path() == "/oauth/2.0/token") {
            baidu.handleToken(request, reply);
        } else if (request.path() == "/server_api" || request.path() == "/pro_api") {
            baidu.handleSpeech(request, reply);
        } else {
            reply(notFound);
        }
    };
    LabHttpServer backendServer([&](const HttpRequest &request, const LabHttpServer::Reply &reply) {
        if (request.path().startsWith("/web/")) {
            push.handle(request, reply);
        } else if (UpdateServer::takes(request.path())) {
            updates.handle(request, reply);
        } else if (InstallerServer::takes(request.path())) {
            installers.handle(request, reply);
        } else {
            webApi.handle(request, reply);
        }
    });
    LabHttpServer baiduHttp(baiduHandler);
    LabHttpServer baiduHttps(baiduHandler);
    LabHttpServer tencentHttps([&](const HttpRequest &request, const LabHttpServer::Reply &reply) {
        tencent.handle(request, reply);
    });
    LabHttpServer translateHttp([&](const HttpRequest &request, const LabHttpServer::Reply &reply) {
        if (request.path() == TranslateService::Path) {
            translate.handle(request, reply);
        } else {
            reply(notFound);
        }
    });
    LabHttpServer ttsHttp([&](const HttpRequest &request, const LabHttpServer::Reply &reply) {
        if (request.path() == TtsService::Path) {
            tts.handle(request, reply);
        } else {
            reply(notFound);
        }
    });
    LabHttpServer *const servers[] = {&backendServer, &baiduHttp,     &baiduHttps,
                                      &tencentHttps,  &translateHttp, &ttsHttp};

    LabHttpServer control([&](const HttpRequest &request, const LabHttpServer::Reply &reply) {
        const QUrlQuery query(QString::fromUtf8(request.query()));
        const auto value = [&query](const char *name) {
            return query.queryItemValue(QLatin1String(name), QUrl::FullyDecoded);
        };
        const QByteArray path = request.path();
        if (path == "/control/log") {
            reply({200, "application/json", log.json()});
            return;
        }
        if (path == "/control/clear") {
            log.clear();
            baidu.setError(0, 0);
            tencent.setError({}, 0);
            tencent.setClockOffset(0);
            xunFei.reset();
            push.reset();
            translate.reset();
            tts.reset();
            for (LabHttpServer *server : servers) {
                server->clearFaults();
            }
        } else if (path == "/control/fault") {
            const QString count = value("count");
            for (LabHttpServer *server : servers) {
                server->setFault(value("path").toUtf8(), {value("kind").toLatin1(), value("value").toInt(),
                                                          count.isEmpty() ? 1 : count.toInt()});
            }
        } else if (path == "/control/record") { // assignments for the receiver's row of the device record
            const QString where =
                QStringLiteral(" where DongleID = '%1'").arg(QLatin1String(LabDatabase::DongleId));
            const QString statement =
                QStringLiteral("update %1.device_serialid set %2").arg(schema, value("set"));
            if (database.run((statement + where).toUtf8()).value(QStringLiteral("items")).toInt() != 1) {
                reply({400, "text/plain", {}});
                return;
            }
        } else if (path == "/control/method") { // assignments for the rows of an input method
            int changed = 0;
            for (const char *table : {"asr3setting", "asr3setting_usexunfeiinputmore30"}) {
                const QString statement = QStringLiteral("update %1.%2 set %3 where ASR3Index = %4")
                                              .arg(schema, QLatin1String(table), value("set"))
                                              .arg(value("index").toInt());
                changed += database.run(statement.toUtf8()).value(QStringLiteral("items")).toInt();
            }
            if (changed < 1) {
                reply({400, "text/plain", {}});
                return;
            }
        } else if (path == "/control/text") {
            baidu.setTexts(value("text").split(QLatin1Char('|')));
            tencent.setTexts(value("text").split(QLatin1Char('|')));
        } else if (path == "/control/error") {
            const int count = value("count").isEmpty() ? 1 : value("count").toInt();
            baidu.setError(value("number").toInt(), count);             // Baidu's errors are numbers
            tencent.setError({value("code"), value("message")}, count); // and Tencent's are words
        } else if (path == "/control/clock") {
            tencent.setClockOffset(value("seconds").toInt());
        } else if (path == "/control/push" || path == "/control/translate" || path == "/control/tts") {
            if (path == "/control/push"        ? !push.control(query)
                : path == "/control/translate" ? !translate.control(query)
                                               : !tts.control(query)) {
                reply({400, "text/plain", {}});
                return;
            }
        } else if (path != "/control/xunfei" || !xunFei.control(query)) {
            reply(notFound);
            return;
        }
        reply({200, "application/json", "{}"});
    });

    if (!baiduHttps.useTls() || !tencentHttps.useTls() || !tencentHttps.start(port("tencent-https")) ||
        !backendServer.start(port("port-backend")) || !baiduHttp.start(port("baidu-http")) ||
        !baiduHttps.start(port("baidu-https")) || !xunFei.start(port("xunfei")) ||
        !push.start(port("push")) || !translateHttp.start(port("translate")) || !ttsHttp.start(port("tts")) ||
        !control.start(port("control"))) {
        qCritical() << "services: a port cannot be had";
        return 1;
    }
    const QString backendAddress = QStringLiteral("http://127.0.0.1:%1/").arg(backendServer.serverPort());
    push.setWebAddress(backendAddress + QStringLiteral("web/"));
    if (!database.offerInputMethods(schema, backendAddress + QStringLiteral("installers/"))) {
        qCritical().noquote() << "services:" << database.error();
        return 1;
    }
    const QString endpoints = parser.value(QStringLiteral("write-endpoints"));
    const Ports ports{backendServer.serverPort(), baiduHttp.serverPort(), baiduHttps.serverPort(),
                      tencentHttps.serverPort(),  xunFei.serverPort(),    push.serverPort(),
                      translateHttp.serverPort(), ttsHttp.serverPort(),   control.serverPort()};
    if (!endpoints.isEmpty() && !writeEndpoints(endpoints, ports, schema)) {
        qCritical().noquote() << "services: cannot write" << endpoints;
        return 1;
    }
    QTextStream(stdout) << QJsonDocument(QJsonObject{{QStringLiteral("backend"), ports.backend},
                                                     {QStringLiteral("baiduHttp"), ports.baiduHttp},
                                                     {QStringLiteral("baiduHttps"), ports.baiduHttps},
                                                     {QStringLiteral("tencentHttps"), ports.tencentHttps},
                                                     {QStringLiteral("xunFei"), ports.xunFei},
                                                     {QStringLiteral("push"), ports.push},
                                                     {QStringLiteral("translate"), ports.translate},
                                                     {QStringLiteral("tts"), ports.tts},
                                                     {QStringLiteral("control"), ports.control}})
                               .toJson(QJsonDocument::Compact)
                        << '\n';
    return QCoreApplication::exec();
}

} // namespace lab
