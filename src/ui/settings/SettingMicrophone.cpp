// The microphones: which one is used, and what it hears.

#include "ui/settings/CSettingDialog.h"

#include "audio/MicrophoneChoice.h"
#include "state/MainState.h"

#include <QComboBox>
#include <QProgressBar>
#include <QScopedValueRollback>
#include <QTimer>

void CSettingDialog::fillMicrophones()
{
    const QScopedValueRollback<bool> filling(m_filling, true);
    auto *box = control<QComboBox>("comboBox_MICDeviceList");
    box->clear();
    box->addItems(m_host.microphones());
    box->addItem(tr("打开声音控制面板"));
    const int current = box->findText(m_host.currentMicrophone());
    box->setCurrentIndex(current < box->count() - 1 ? current : -1);
}

void CSettingDialog::on_comboBox_MICDeviceList_activated(int index)
{
    if (m_filling) {
        return;
    }
    const auto *box = control<QComboBox>("comboBox_MICDeviceList");
    if (index == box->count() - 1) {
        m_host.openSoundSettings();
        fillMicrophones(); // the panel is no microphone
        return;
    }
    if (!m_state.OnlyUseOurDeviceMic && m_host.switchMicrophone(box->itemText(index))) {
        watchMicrophone(true);
        return;
    }
    fillMicrophones();
}

void CSettingDialog::on_checkBox_SimulateDoubleChannel_clicked(bool on)
{
    if (m_filling) {
        return;
    }
    store("MainSetting", "SimulateDoubleChannel", on, on);
    m_host.channelCountChanged();
}

void CSettingDialog::on_checkBox_OnlyUseOurDeviceMic_clicked(bool on)
{
    if (m_filling) {
        return;
    }
    store("MainSetting", "OnlyUseOurDeviceMic", on, on);
    control<QComboBox>("comboBox_MICDeviceList")->setEnabled(!on);
    const QString own = mevo::productMicrophone(m_host.microphones());
    if (on && !own.isEmpty() && m_host.switchMicrophone(own)) {
        fillMicrophones();
        watchMicrophone(true);
    }
}

void CSettingDialog::on_checkBox_KeepMicrophoneReady_clicked(bool on)
{
    if (m_filling) {
        return;
    }
    store("MainSetting", "KeepMicrophoneReady", on, on);
    if (!on) {
        m_host.letMicrophoneGo();
    }
}

/// Later: opening a microphone takes the sound server a moment, which the window need not wait for.
void CSettingDialog::watchMicrophone(bool on)
{
    m_host.watchMicrophone(nullptr);
    control<QProgressBar>("progressBar_MicLevel")->setValue(0);
    if (!on) {
        return;
    }
    QTimer::singleShot(0, this, [this] {
        if (isVisible()) {
            m_host.watchMicrophone(
                [this](int level) { control<QProgressBar>("progressBar_MicLevel")->setValue(level); });
        }
    });
}
