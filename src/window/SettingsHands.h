#pragma once

#include "ui/settings/SettingsHost.h"

#include <QPointer>

#include <memory>

class CSettingDialog;
class MainWindow;

namespace mevo {

class MicrophoneMeter;

/// The settings dialog, and what it asks of the main window.
class SettingsHands : public SettingsHost
{
public:
    explicit SettingsHands(MainWindow &window);
    ~SettingsHands() override;
    SettingsHands(const SettingsHands &) = delete;
    SettingsHands &operator=(const SettingsHands &) = delete;

    /// Shows the dialog, which is made at the first time; with `at` at that group or control.
    void open(const char *at = nullptr);
    /// The dialog is there and can be seen.
    bool isOpen() const { return openDialog() != nullptr; }
    QWidget *openDialog() const;
    /// Something that the dialog shows has changed.
    void refresh();
    /// What is being edited is stored.
    void storeEdits();
    /// The dialog goes; the next opening makes another.
    void close();

    RecorderState *recorderState() override;
    bool isXpClass() const override;
    void chooseEngine(Engine engine) override;
    void chooseInputMethod(int index) override;
    void chooseTencentDialect(bool on) override;
    void showTip(const QString &text) override;
    void tellRecord(const RecordChoices &choices) override;
    void restartProgram() override;
    void inputMethodPathStored() override;
    void downloadInputMethod(int index) override;
    void openXunFeiTool(const QString &program) override;
    void setXunFeiOffline(bool on) override;
    bool setRunAsAdministrator(bool on) override;
    bool setStartAtLogin(bool on) override;
    QStringList microphones() override;
    QString currentMicrophone() override;
    bool switchMicrophone(const QString &name) override;
    void channelCountChanged() override;
    void letMicrophoneGo() override;
    void openSoundSettings() override;
    void watchMicrophone(std::function<void(int level)> heard) override;
    void chooseMouse(const MouseGroup &group, int place) override;
    void assignKey(CustomKey key, const QString &shownLabel) override;
    QString readDongleID() override;
    void requestMouseID() override;
    void checkForUpdate(UpdateWish wish) override;
    QString versionText() const override;
    QString runFigures() const override;
    void openWebPage(const QString &address) override;
    void openCommandWords() override;
    AccountsHost &accounts() override;
    void openFirstStart() override;

private:
    MouseSettings mouse();
    void say(const QString &text);

    MainWindow &m_window;
    QPointer<CSettingDialog> m_dialog;
    std::unique_ptr<MicrophoneMeter> m_meter;
};

} // namespace mevo
