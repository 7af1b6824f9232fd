#pragma once

#include <QString>
#include <QUrl>

namespace mevo {

/// An address that the desktop may be asked to open, or that a service may be asked at: http or https with a
/// host. No file or program above all.
inline bool isWebPage(const QUrl &address)
{
    return address.isValid() && !address.host().isEmpty() &&
           (address.scheme() == QLatin1String("http") || address.scheme() == QLatin1String("https"));
}

/// The address of the web that a service's text names. An empty one for anything else, and for a text that is
/// too long to be one.
inline QUrl webPage(const QString &text)
{
    constexpr int longest = 2048;
    const QUrl url(text.size() <= longest ? text.trimmed() : QString(), QUrl::TolerantMode);
    return isWebPage(url) ? url : QUrl();
}

} // namespace mevo
