// Engines and input methods: controls whose effect goes beyond a key.

#include "ui/settings/CSettingDialog.h"

#include "base/SettingsFile.h"
#include "state/MainState.h"
#include "state/RecorderState.h"
#include "ui/settings/LanguageChoosers.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QScopedValueRollback>

void CSettingDialog::chooseEngine(mevo::Engine engine)
{
    if (m_filling) {
        return;
    }
    const Stay stay(*this);
    m_methodWanted = false;
    if (m_host.recorderState() != nullptr) {
        m_host.chooseEngine(engine);
    }
    updateUI();
}

void CSettingDialog::chooseInputMethod(int index)
{
    const Stay stay(*this);
    m_methodWanted = true;
    m_host.chooseInputMethod(index);
    updateUI();
}

void CSettingDialog::on_radioButton_BaiduNotStreamRestApi_clicked(bool)
{
    chooseEngine(mevo::Engine::Baidu);
}

void CSettingDialog::on_radioButton_UseXunFeiWebApi_clicked(bool)
{
    if (m_host.isXpClass()) {
        updateUI();
        return;
    }
    RecorderState *recorder = m_host.recorderState();
    if (!m_filling && recorder != nullptr) {
        recorder->EnableXunFeiWebApiDwa = control<QAbstractButton>("checkBox_EnableXunFeiDwa")->isChecked();
    }
    chooseEngine(mevo::Engine::XunFei);
}

void CSettingDialog::on_radioButton_TXAsrAPI_clicked(bool)
{
    chooseEngine(mevo::Engine::Tencent);
}

void CSettingDialog::on_radioButton_EnableThirdPartyVoiceInput_clicked(bool)
{
    if (m_filling) {
        return;
    }
    chooseInputMethod(control<QComboBox>("comboBox_SelectASR3")->currentIndex() + 1);
}

void CSettingDialog::on_checkBox_BaiduNotStreamRestApi_clicked(bool on)
{
    on_radioButton_BaiduNotStreamRestApi_clicked(on);
}

void CSettingDialog::on_checkBox_UseXunFeiWebApi_clicked(bool on)
{
    on_radioButton_UseXunFeiWebApi_clicked(on);
}

void CSettingDialog::on_checkBox_EnableThirdPartyVoiceInput_clicked(bool on)
{
    on_radioButton_EnableThirdPartyVoiceInput_clicked(on);
}

void CSettingDialog::on_checkBox_EnableTecentAsr_zh_dialect_clicked(bool on)
{
    if (m_filling) {
        return;
    }
    const Stay stay(*this);
    m_host.chooseTencentDialect(on);
    if (on) {
        m_host.showTip(
            tr("\n腾讯语音支持自动识别方言，上海话、四川话、武汉话、贵阳话、昆明话、西安话、郑州话、"
               "太原话、兰州话、银川话、西宁话、南京话、合肥话、南昌话、长沙话、苏州话、杭州话、"
               "济南话、天津话、石家庄话、黑龙江话、吉林话、辽宁话等。"));
    }
}

void CSettingDialog::on_checkBox_EnableXunFeiDwa_clicked(bool on)
{
    RecorderState *recorder = m_host.recorderState();
    if (m_filling || recorder == nullptr) {
        return;
    }
    mevo::SettingsFile().setValue(QStringLiteral("EnableXunFeiWebApiDwa"), int(on));
    recorder->EnableXunFeiWebApiDwa = on;
}

void CSettingDialog::on_pushButton_XFWebApiSelectDialect_clicked()
{
    auto *chooser = new CSelectXFWebApiDialectDialog(m_state, this);
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->open();
}

void CSettingDialog::on_pushButton_XFWebApiSelectSmallLan_clicked()
{
    auto *chooser = new CSelectSmallLanDialectDialog(m_state, this);
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->open();
}

void CSettingDialog::on_comboBox_SelectASR3_currentIndexChanged(int index)
{
    if (m_filling || index < 0) {
        return;
    }
    m_host.tellRecord({{QStringLiteral("UseASR3Index"), index + 1}});
    chooseInputMethod(index + 1);
}

void CSettingDialog::on_checkBox_ForceUseASR3_clicked(bool on)
{
    if (m_filling) {
        return;
    }
    store("MainSetting", "ForceUseASR3", on, on);
    m_host.tellRecord({{QStringLiteral("ForceUseASR3"), int(on)}});
}

void CSettingDialog::on_pushButton_ASR3DownWeb_clicked()
{
    const Stay stay(*this);
    m_host.downloadInputMethod(control<QComboBox>("comboBox_SelectASR3")->currentIndex() + 1);
}

void CSettingDialog::on_pushButton_OpenXunFeiInputSetting_clicked()
{
    m_host.openXunFeiTool(QStringLiteral("iFlyIMEConfig.exe"));
}

void CSettingDialog::on_pushButton_OpenXunFeiInputHW_clicked()
{
    m_host.openXunFeiTool(QStringLiteral("iFlyHandwriting.exe"));
}

void CSettingDialog::on_checkBox_OnlyUseXunFeiOfflineASR_clicked(bool on)
{
    if (m_filling) {
        return;
    }
    const Stay stay(*this);
    m_host.setXunFeiOffline(on);
    check("checkBox_OnlyUseXunFeiOfflineASR", m_state.OnlyUseXunFeiOfflineASR);
}

void CSettingDialog::on_checkBox_AsrOffline_clicked(bool on)
{
    if (m_filling) {
        return;
    }
    const Stay stay(*this);
    store("MainSetting", "ForceUseXFMore3V", on, on);
    m_host.tellRecord({{QStringLiteral("ForceUseXFMore3V"), int(on)}});
    m_host.restartProgram();
}
