#pragma once

#include "base/ServiceEndpoints.h"
#include "recognisers/BaiduService.h"
#include "recognisers/TencentService.h"
#include "recognisers/XunFeiService.h"
#include "services/LabHttpServer.h"
#include "support/Texts.h"
#include "translation/TranslateService.h"

#include <QUrlQuery>

/// The four services of the lab, each with one account.
struct LabAccounts
{
    LabAccounts()
        : baidu("client-id-1234"_s, "client-secret"_s, note)
        , tencent(
              "AKID-of-the-test", "key-of-the-test",
              [](const QByteArray &, const auto &done) { done(QString()); }, note)
        , xunFei({{"app1"_s, "api-key-of-the-test"_s, "secret1"_s}}, {"localhost"_s}, note)
        , translate("appid", "translation-key", note)
        , baiduHttp([this](const lab::HttpRequest &request, const lab::LabHttpServer::Reply &reply) {
            request.path().startsWith("/oauth") ? baidu.handleToken(request, reply)
                                                : baidu.handleSpeech(request, reply);
        })
        , tencentHttps([this](const lab::HttpRequest &request, const lab::LabHttpServer::Reply &reply) {
            tencent.handle(request, reply);
        })
        , translateHttp([this](const lab::HttpRequest &request, const lab::LabHttpServer::Reply &reply) {
            translate.handle(request, reply);
        })
    {
        ready = baiduHttp.start(0) && tencentHttps.useTls() && tencentHttps.start(0) &&
                translateHttp.start(0) && xunFei.start(0);
        const auto at = [](quint16 port) { return "127.0.0.1:%1"_s.arg(port); };
        endpoints.BaiduTokenHost = endpoints.BaiduSpeechHost = at(baiduHttp.serverPort());
        endpoints.TencentHost = at(tencentHttps.serverPort());
        endpoints.TranslateHost = at(translateHttp.serverPort());
        endpoints.XunFeiSignHost = "localhost"_s;
        endpoints.XunFeiSocketHost = at(xunFei.serverPort());
    }
    Q_DISABLE_COPY(LabAccounts)
    static void note(const QJsonObject &) {}

    lab::BaiduService baidu;
    lab::TencentService tencent;
    lab::XunFeiService xunFei;
    lab::TranslateService translate;
    lab::LabHttpServer baiduHttp, tencentHttps, translateHttp;
    mevo::EngineEndpoints endpoints;
    bool ready = false;
};
