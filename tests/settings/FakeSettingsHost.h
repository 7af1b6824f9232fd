#pragma once

#include "base/SettingsFile.h"
#include "engines/EngineSelection.h"
#include "settings/FakeAccountsHost.h"
#include "state/MainState.h"
#include "state/RecorderState.h"
#include "ui/settings/SettingsHost.h"

#include <QStringList>

#include <functional>
#include <utility>

/// A program around the settings dialog that notes what it is asked. Engines change as they do in the
/// program.
class FakeSettingsHost : public mevo::SettingsHost
{
public:
    explicit FakeSettingsHost(MainState &state)
        : m_state(state)
    {
    }

    QStringList calls;
    RecorderState recorder;
    bool ending = false;
    bool xpClass = false;
    bool methodsWork = true;
    bool refuses = false; ///< what asks the system fails
    QStringList inputs{QStringLiteral("Webcam"), QStringLiteral("QMZ mouse")};
    QString input = QStringLiteral("Webcam");
    QString figures;
    std::function<void(int)> heard;

    QStringList take() { return std::exchange(calls, {}); }

    RecorderState *recorderState() override { return ending ? nullptr : &recorder; }
    bool isXpClass() const override { return xpClass; }
    void chooseEngine(mevo::Engine engine) override
    {
        note("engine", QString::number(int(engine)));
        write(mevo::chooseEngine(engine, m_state, recorder));
    }
    void chooseInputMethod(int index) override
    {
        note("method", QString::number(index));
        const mevo::Engine before = mevo::engineInForce(recorder);
        write(mevo::chooseInputMethod(index, m_state, recorder));
        if (!methodsWork) {
            write(mevo::chooseEngine(before, m_state, recorder));
        }
    }
    void chooseTencentDialect(bool on) override
    {
        note("dialect", QString::number(on));
        write(mevo::chooseTencentDialect(on, m_state));
    }
    void showTip(const QString &text) override { note("tip", text.left(6).trimmed()); }
    void tellRecord(const mevo::RecordChoices &choices) override
    {
        note("record", mevo::assignments(choices));
    }
    void restartProgram() override { note("restart"); }
    void inputMethodPathStored() override { note("path"); }
    void downloadInputMethod(int index) override { note("download", QString::number(index)); }
    void openXunFeiTool(const QString &program) override { note("tool", program); }
    void setXunFeiOffline(bool on) override
    {
        note("offline", QString::number(on));
        m_state.OnlyUseXunFeiOfflineASR = refuses ? !on : on;
    }
    bool setRunAsAdministrator(bool on) override
    {
        note("administrator", QString::number(on));
        m_state.RunAsAdmin = refuses ? !on : on;
        return !refuses;
    }
    bool setStartAtLogin(bool on) override
    {
        note("login", QString::number(on));
        m_state.AutoRunApp = (refuses ? !on : on) ? QStringLiteral("1") : QString();
        return !refuses;
    }
    QStringList microphones() override { return inputs; }
    QString currentMicrophone() override { return input; }
    bool switchMicrophone(const QString &name) override
    {
        note("microphone", name);
        if (!refuses) {
            input = name;
        }
        return !refuses;
    }
    void channelCountChanged() override { note("channels", QString::number(m_state.SimulateDoubleChannel)); }
    void letMicrophoneGo() override { note("let go"); }
    void openSoundSettings() override { note("sound"); }
    void watchMicrophone(std::function<void(int)> to) override { heard = std::move(to); }
    void chooseMouse(const mevo::MouseGroup &group, int place) override
    {
        note(group.key, QString::number(place));
        m_state.*group.member = group.values.at(std::size_t(place));
    }
    void assignKey(mevo::CustomKey key, const QString &label) override
    {
        note(key == mevo::CustomKey::Left ? "left" : "right", label);
    }
    QString readDongleID() override
    {
        note("dongle");
        return QStringLiteral("02-01-001357");
    }
    void requestMouseID() override { note("mouse"); }
    void checkForUpdate(UpdateWish wish) override
    {
        static const char *const names[] = {"opened", "notice", "button"};
        note("update", QLatin1String(names[int(wish)]));
    }
    QString versionText() const override { return QStringLiteral("V1.07"); }
    QString runFigures() const override { return figures; }
    void openWebPage(const QString &address) override { note("page", address); }
    void openCommandWords() override { note("words"); }
    mevo::AccountsHost &accounts() override { return ownAccounts; }
    void openFirstStart() override { note("first start"); }

    FakeAccountsHost ownAccounts;

private:
    void note(const char *what, const QString &with = QString())
    {
        calls.append((QLatin1String(what) + QLatin1Char(' ') + with).trimmed());
    }
    static void write(const mevo::EngineChange &change)
    {
        mevo::SettingsFile settings;
        for (const mevo::SettingWrite &each : change.writes) {
            settings.setValue(QLatin1String(each.key), each.value);
        }
    }

    MainState &m_state;
};
