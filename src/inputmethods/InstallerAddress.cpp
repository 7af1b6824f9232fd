#include "inputmethods/InstallerAddress.h"

#include "base/WebPage.h"

#include <algorithm>

namespace mevo {

namespace {
constexpr int longestName = 200; ///< bytes; file systems take 255
} // namespace

QString installerFileName(const QUrl &url)
{
    const QString last = url.path(QUrl::FullyDecoded).replace(QLatin1Char('\\'), QLatin1Char('/'));
    const QString name = last.section(QLatin1Char('/'), -1).trimmed();
    const bool odd =
        std::any_of(name.begin(), name.end(), [](QChar character) { return !character.isPrint(); });
    return odd || name.startsWith(QLatin1Char('.')) || name.toUtf8().size() > longestName ? QString() : name;
}

QUrl installerUrl(const QString &address)
{
    const QUrl url = webPage(address);
    return installerFileName(url).isEmpty() ? QUrl() : url;
}

} // namespace mevo
