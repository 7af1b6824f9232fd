#include "base/Endpoints.h"

#include "base/ApplicationFiles.h"
#include "base/SettingsFile.h"

#include <QHostAddress>
#include <QUrl>

namespace mevo {

namespace {

struct ServiceAddress
{
    const char *key;
    const char *fallback;
    QString BackendEndpoints::*member;
};

constexpr ServiceAddress serviceAddresses[] = {
    {"BackendUrl", "http://127.0.0.1:19004/mevowebapi?", &BackendEndpoints::ServerUrl},
    {"BackendUrlBk1", "http://127.0.0.1:19004/mevowebapi?", &BackendEndpoints::ServerUrlBk1},
    {"BackendUrlBk2", "http://127.0.0.1:19004/mevowebapi?", &BackendEndpoints::ServerUrlBk2},
    {"Schema", "mevodb", &BackendEndpoints::SchemaName},
    {"VersionCheckUrl", "http://127.0.0.1:19004/NewVersion", &BackendEndpoints::VersionCheckUrl},
    {"VersionCheckUrl1", "http://127.0.0.1:19004/NewVersion", &BackendEndpoints::VersionCheckUrl1},
    {"ManualDownloadUrl", "http://127.0.0.1:19004/NewVersion_Manual", &BackendEndpoints::ManualDownloadUrl},
    {"ManualDownloadUrl1", "http://127.0.0.1:19004/NewVersion_Manual", &BackendEndpoints::ManualDownloadUrl1},
    {"PushSocketUrl", "ws://127.0.0.1:19006", &BackendEndpoints::PushSocketUrl},
};

struct EngineHostName
{
    const char *key;
    QString EngineEndpoints::*member;
};

constexpr EngineHostName engineHosts[] = {
    {"BaiduSpeechHost", &EngineEndpoints::BaiduSpeechHost},
    {"BaiduSpeechHttpsHost", &EngineEndpoints::BaiduSpeechHttpsHost},
    {"BaiduTokenHost", &EngineEndpoints::BaiduTokenHost},
    {"TencentHost", &EngineEndpoints::TencentHost},
    {"XunFeiSignHost", &EngineEndpoints::XunFeiSignHost},
    {"XunFeiSocketHost", &EngineEndpoints::XunFeiSocketHost},
    {"TranslateHost", &EngineEndpoints::TranslateHost},
    {"BaiduTtsHost", &EngineEndpoints::BaiduTtsHost},
};

/// The browser goes there, not the program: they do not count when it is asked what the program calls.
constexpr EngineHostName searchHosts[] = {
    {"SearchBaidu", &EngineEndpoints::SearchBaidu}, {"SearchSogou", &EngineEndpoints::SearchSogou},
    {"Search360", &EngineEndpoints::Search360},     {"SearchGoogle", &EngineEndpoints::SearchGoogle},
    {"SearchBing", &EngineEndpoints::SearchBing},
};

bool isLoopback(const QString &address)
{
    const QUrl url(address.contains(QLatin1String("://")) ? address : QLatin1String("//") + address);
    return url.host() == QLatin1String("localhost") || QHostAddress(url.host()).isLoopback();
}

} // namespace

EngineEndpoints loadEndpoints(BackendEndpoints &backend, const QString &path)
{
    EngineEndpoints endpoints;
    const SettingsFile file(QStringLiteral("Endpoints"),
                            path.isEmpty() ? appFile(QStringLiteral("MEVOEndpoints.ini")) : path);
    const auto value = [&file](const char *key, const QString &fallback) {
        const QString text = file.value(QLatin1String(key)).toString().trimmed();
        return text.isEmpty() ? fallback : text;
    };
    for (const ServiceAddress &row : serviceAddresses) {
        backend.*row.member = value(row.key, QLatin1String(row.fallback));
    }
    for (const EngineHostName &row : engineHosts) {
        endpoints.*row.member = value(row.key, endpoints.*row.member);
    }
    for (const EngineHostName &row : searchHosts) {
        endpoints.*row.member = value(row.key, endpoints.*row.member);
    }
    endpoints.TencentSecretIds = value("TencentSecretIds", {});
    endpoints.TencentSecretKeys = value("TencentSecretKeys", {});
    const QVariant whole = file.value(QStringLiteral("XunFeiWholeUtterance"));
    if (!whole.toString().isEmpty()) {
        endpoints.XunFeiWholeUtterance = whole.toBool();
    }
    endpoints.VerifyCertificates = file.value(QStringLiteral("VerifyCertificates"), false).toBool();
    endpoints.UpdateKey = value("UpdateKey", {});
    return endpoints;
}

QUrl serviceUrl(const char *scheme, const QString &host, const char *path)
{
    const QString base =
        host.contains(QLatin1String("://")) ? host : QLatin1String(scheme) + QStringLiteral("://") + host;
    return QUrl(base + QLatin1String(path));
}

bool allOnThisMachine(const BackendEndpoints &backend, const EngineEndpoints &endpoints)
{
    for (const ServiceAddress &row : serviceAddresses) {
        if (row.member != &BackendEndpoints::SchemaName && !isLoopback(backend.*row.member)) {
            return false;
        }
    }
    for (const EngineHostName &row : engineHosts) {
        if (!isLoopback(endpoints.*row.member)) {
            return false;
        }
    }
    return true;
}

} // namespace mevo
