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
    /// A XunFei session goes on until the utterance's last result instead of ending with the first message.
    bool XunFeiWholeUtterance = false;
    /// Checks certificates also where a service is called without by default.
    bool VerifyCertificates = false;
};

} // namespace mevo
