#pragma once

#include <QString>

namespace mevo {

/// Hosts of the cloud services, each "HOST" or "HOST:PORT". A host may be written with a scheme
/// ("http://HOST:PORT"), which then stands in place of the service's own.
struct EngineEndpoints
{
    QString BaiduSpeechHost = QStringLiteral("vop.baidu.com");      ///< standard variant, http
    QString BaiduSpeechHttpsHost = QStringLiteral("vop.baidu.com"); ///< fast variant, https
    QString BaiduTokenHost = QStringLiteral("openapi.baidu.com");
    QString TencentHost = QStringLiteral("asr.tencentcloudapi.com");
    QString XunFeiSignHost = QStringLiteral("iat-api.xfyun.cn");         ///< the host that is signed
    QString XunFeiSocketHost = QStringLiteral("iat-niche-api.xfyun.cn"); ///< the host that is connected to
    QString TranslateHost = QStringLiteral("api.fanyi.baidu.com");
    QString BaiduTtsHost = QStringLiteral("tsn.baidu.com");
    // Where the browser is sent for a search.
    QString SearchBaidu = QStringLiteral("www.baidu.com");
    QString SearchSogou = QStringLiteral("www.sogou.com");
    QString Search360 = QStringLiteral("www.so.com");
    QString SearchGoogle = QStringLiteral("www.google.com");
    QString SearchBing = QStringLiteral("www.bing.com");
    /// Checks certificates also where a service is called without by default.
    bool VerifyCertificates = false;
};

} // namespace mevo
