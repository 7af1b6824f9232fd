#pragma once

#include "ui/UpdateProgressDialog.h"
#include "update/UpdateHost.h"

#include <QPointer>

class MainWindow;

namespace mevo {

/// Shows and starts what the update checker asks for.
class UpdateHands : public UpdateHost
{
public:
    explicit UpdateHands(MainWindow &window)
        : m_window(window)
    {
    }

    void askForUpdate(const QString &text, bool forced, const std::function<void(bool)> &answer) override;
    void setUpdateNotice(bool shown) override;
    void tellAboutCheck(CheckAnswer answer) override;
    void raiseUpdateQuestion() override;
    void showDownload(const QString &fileName) override;
    void moveDownload(qint64 received, qint64 total) override;
    void hideDownload() override;
    bool confirmCancel() override;
    void tellAboutUpdate(const QString &text) override;
    bool isForeignInstallation() const override;
    void openDownloadPage() override;
    QString programFile() const override;
    void handOver(const std::function<void(bool)> &answer) override;

private:
    /// Null when it is not open.
    QWidget *settingsDialog() const;

    MainWindow &m_window;
    QPointer<UpdateProgressDialog> m_progress;
};

} // namespace mevo
