#pragma once

#include <QString>

namespace mevo {

/// What the download of an installer shows and starts.
class InstallerHost
{
public:
    virtual ~InstallerHost() = default;

    virtual void showDownload() = 0;
    /// In bytes; a total below 1 is not known.
    virtual void moveDownload(qint64 received, qint64 total) = 0;
    virtual void hideDownload() = 0;
    /// Beside everything else, without waiting.
    virtual void tellAboutDownload(const QString &text) = 0;
    /// Opens the installer under the user's eyes.
    virtual void openInstaller(const QString &path) = 0;
    /// The user wants no download.
    virtual void downloadCancelled() = 0;
    /// A download is over and its installer has been open for a while.
    virtual void installerOpened() = 0;
};

} // namespace mevo
