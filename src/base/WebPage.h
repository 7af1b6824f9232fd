#pragma once

#include <QString>
#include <QUrl>

namespace mevo {

/// A page that a service names, as the desktop may be asked to open it: http or https with a host. An empty
/// address for anything else, a file or a program above all.
inline QUrl webPage(const QString &text)
{
    constexpr int longest = 2048;
    const QUrl url(text.size() <= longest ? text.trimmed() : QString(), QUrl::TolerantMode);
    const bool web = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
    return url.isValid() && web && !url.host().isEmpty() ? url : QUrl();
}

} // namespace mevo
