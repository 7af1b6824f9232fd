#pragma once

#include "inputmethods/InstallerHost.h"
#include "ui/DownloadProgressDialog.h"

#include <QPointer>

class MainWindow;

namespace mevo {

/// Shows and starts what the download of an input method asks for.
class InputMethodHands : public InstallerHost
{
public:
    explicit InputMethodHands(MainWindow &window)
        : m_window(window)
    {
    }
    ~InputMethodHands() override;

    void showDownload() override;
    void moveDownload(qint64 received, qint64 total) override;
    void hideDownload() override;
    void tellAboutDownload(const QString &text) override;
    void openInstaller(const QString &path) override;
    void downloadCancelled() override;
    void installerOpened() override;

private:
    MainWindow &m_window;
    QPointer<DownloadProgressDialog> m_progress;
};

} // namespace mevo
