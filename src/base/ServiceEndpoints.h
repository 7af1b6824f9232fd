#pragma once

#include <QString>

#include <optional>

namespace mevo {

/// Addresses of the private backend: the web API and its two backups, the version files, the download
/// pages and the push socket, and the schema that statements name.
struct BackendEndpoints
{
    QString SchemaName; ///< database schema, the first argument of every statement
    QString ServerUrl, ServerUrlBk1, ServerUrlBk2;
    QString VersionCheckUrl, VersionCheckUrl1;
    QString ManualDownloadUrl, ManualDownloadUrl1;
    QString PushSocketUrl;
};

/// Hosts of the cloud services and what else a deployment says about them. Each host is "HOST" or
/// "HOST:PORT", or has a scheme ("http://HOST:PORT"), which then stands in place of the service's own.
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
    /// Tencent's ids and keys where the service tells none, lists separated by ";". Never logged.
    QString TencentSecretIds, TencentSecretKeys;
    /// Whether a XunFei session goes on until the utterance's last result, or ends with the first message.
    /// Where nothing is said, it goes on with dynamic correction alone.
    std::optional<bool> XunFeiWholeUtterance;
    /// Checks certificates also where a service is called without by default.
    bool VerifyCertificates = false;
    /// Public key (Ed25519, base64) of who signs the updates; empty where they are not signed.
    QString UpdateKey;
};

} // namespace mevo
