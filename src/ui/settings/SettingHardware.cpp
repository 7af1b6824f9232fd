// The mouse, the battery, the receiver, and the program itself.

#include "ui/settings/CSettingDialog.h"

#include "base/SettingsFile.h"
#include "state/MainState.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

void CSettingDialog::selectCustomKey(const char *name, int value)
{
    auto *box = control<QComboBox>(name);
    if (box->count() == 0) {
        for (const mevo::CustomKeyFunction &function : mevo::customKeyFunctions) {
            box->addItem(mevo::customKeyLabel(function), function.value);
        }
        box->addItem(tr("自定义"));
    }
    const int index = box->findData(value);
    box->setCurrentIndex(index >= 0 ? index : box->count() - 1);
}

void CSettingDialog::fillHardware()
{
    m_deviceShown = m_state.deviceOpen();
    selectCustomKey("comboBox_MouseCustomLeftKey", m_state.MouseCurrentLeftKeyValue);
    selectCustomKey("comboBox_MouseCustomRightKey", m_state.MouseCurrentRightKeyValue);
    QGroupBox *mouse = m_groups.value(QStringLiteral("groupBox_Mouse"));
    const bool noMouse = mevo::SettingsFile().value(QStringLiteral("NoMouse")).toBool();
    mouse->setTitle(noMouse ? tr("鼠标设置(不适用于此产品)") : tr(" 鼠标设置"));
    mouse->setEnabled(!noMouse && m_deviceShown);
    m_groups.value(QStringLiteral("groupBox_PowerLevel"))->setEnabled(m_deviceShown);
    m_groups.value(QStringLiteral("groupBox_Receiver"))->setEnabled(m_deviceShown);
}

void CSettingDialog::onRadioClickDPI(int place)
{
    if (!m_filling) {
        m_host.chooseMouse(mevo::mouseDPI, place);
    }
}

void CSettingDialog::on_comboBox_MouseCustomLeftKey_currentIndexChanged(int index)
{
    if (!m_filling && index >= 0) {
        m_host.assignKey(mevo::CustomKey::Left,
                         control<QComboBox>("comboBox_MouseCustomLeftKey")->itemText(index));
    }
}

void CSettingDialog::on_comboBox_MouseCustomRightKey_currentIndexChanged(int index)
{
    if (!m_filling && index >= 0) {
        m_host.assignKey(mevo::CustomKey::Right,
                         control<QComboBox>("comboBox_MouseCustomRightKey")->itemText(index));
    }
}

/// The picture of the level that the receiver has told last; none before it has.
void CSettingDialog::showBattery()
{
    auto *button = control<QPushButton>("pushButton_ReadPowerLevel_2");
    const int level = m_state.PowerLevel;
    const QString picture = mevo::batteryPicture(level);
    button->setVisible(!picture.isEmpty());
    if (!picture.isEmpty()) {
        const QIcon icon(picture);
        button->setIcon(icon);
        button->setIconSize(icon.actualSize(QSize(64, 32)));
        button->setAccessibleName(tr("电量 %1/3").arg(level));
    }
}

void CSettingDialog::on_pushButton_ReadPowerLevel_clicked()
{
    on_pushButton_ReadPowerLevel_2_clicked();
}

void CSettingDialog::on_pushButton_ReadPowerLevel_2_clicked()
{
    showBattery();
}

void CSettingDialog::on_pushButton_GetDongleID_clicked()
{
    control<QLabel>("label_DongleID")->setText(m_host.readDongleID());
}

void CSettingDialog::on_pushButton_GetMouseID_clicked()
{
    m_host.requestMouseID();
}

void CSettingDialog::setUpdateNotice(const QString &text)
{
    auto *notice = control<QPushButton>("pushButton_UpdateNotice");
    const bool answered = m_updateAsked && text.isEmpty();
    m_updateAsked = false;
    notice->setText(answered ? tr("已是最新版本") : text);
    notice->setEnabled(!answered);
    notice->setVisible(!notice->text().isEmpty());
}

void CSettingDialog::on_pushButton_UpdateNotice_clicked()
{
    m_host.checkForUpdate(mevo::SettingsHost::UpdateWish::Notice);
}

void CSettingDialog::on_pushButton_CheckUpdate_clicked()
{
    m_updateAsked = true;
    m_host.checkForUpdate(mevo::SettingsHost::UpdateWish::Button);
}

void CSettingDialog::on_pushButton_DrvDownload_clicked()
{
    m_host.openWebPage(m_state.DownloadDrvWeb);
}

void CSettingDialog::on_pushButton_Manual_clicked()
{
    m_host.openWebPage(m_state.UserManual);
}

void CSettingDialog::on_pushButton_WebAddress_clicked()
{
    m_host.openWebPage(m_state.Website);
}

void CSettingDialog::on_pushButton_FirstStart_clicked()
{
    m_host.openFirstStart();
}
