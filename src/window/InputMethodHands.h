#pragma once

#include "inputmethods/InstallerHost.h"
#include "ui/DownloadProgressDialog.h"

#include <QPointer>

class MainWindow;

namespace mevo {

class InputMethods;

/// Shows and starts what the download of an input method asks for.
class InputMethodHands : public InstallerHost
{
public:
    InputMethodHands(MainWindow &window, InputMethods &methods)
        : m_window(window)
        , m_methods(methods)
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
    InputMethods &m_methods;
    QPointer<DownloadProgressDialog> m_progress;
};

} // namespace mevo
