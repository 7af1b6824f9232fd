// How the settings dialog fills its controls, and what of them it shows.

#include "ui/settings/CSettingDialog.h"
#include "ui/settings/SettingAccounts.h"

#include "base/SettingsFile.h"
#include "base/WebPage.h"
#include "engines/EngineSelection.h"
#include "state/MainState.h"
#include "state/RecorderState.h"
#include "state/SettingAccess.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>

namespace {

constexpr int customMethod = 3;

void setChecked(QAbstractButton *button, bool on)
{
    // An exclusive group keeps its last button on.
    if (QButtonGroup *group = button->group(); group != nullptr && !on && button->isChecked()) {
        group->setExclusive(false);
        button->setChecked(false);
        group->setExclusive(true);
    } else {
        button->setChecked(on);
    }
}

} // namespace

void CSettingDialog::updateUI()
{
    const RecorderState *recorder = m_host.recorderState();
    if (recorder == nullptr) {
        return; // the program is ending
    }
    if (!m_state.ShowBaiduI && recorder->BaiDuNoStreamApi && !m_state.LocalEnableASR3) {
        m_host.chooseEngine(mevo::Engine::Tencent);
    }
    const QScopedValueRollback<bool> filling(m_filling, true);
    for (const mevo::GroupRow &group : mevo::controlGroups()) {
        for (const Row &row : group.rows) {
            fill(row);
        }
    }
    fillEngines();
    fillInputMethods();
    fillHardware();
    fillSoftware();
    m_accounts->fill();
    applyRules();
}

void CSettingDialog::showAccounts()
{
    m_accounts->fill();
}

/// The live member of the row's key, or the file where there is none.
QVariant CSettingDialog::valueOf(const Row &row) const
{
    const bool proxy = QLatin1String(row.group) != QLatin1String("MainSetting");
    const mevo::SettingRow *setting = proxy ? nullptr : mevo::settingRow(QLatin1String(row.key));
    return setting != nullptr
               ? mevo::memberValue(*setting, m_state)
               : mevo::SettingsFile(QLatin1String(row.group)).value(QLatin1String(row.key), QString());
}

void CSettingDialog::fill(const Row &row)
{
    switch (row.kind) {
    case mevo::ControlKind::Words:
        fillWords(row);
        break;
    case mevo::ControlKind::Check:
    case mevo::ControlKind::Radio:
        if (row.mouse != nullptr) {
            setChecked(control<QAbstractButton>(row.name),
                       m_state.*row.mouse->member == row.mouse->values.at(std::size_t(row.place)));
        } else if (row.key != nullptr) {
            setChecked(control<QAbstractButton>(row.name), valueOf(row).toBool());
        }
        break;
    case mevo::ControlKind::Choice:
        if (row.key != nullptr) {
            auto *box = control<QComboBox>(row.name);
            const int index = valueOf(row).toInt() - row.firstNumber;
            box->setCurrentIndex(index >= 0 && index < box->count() ? index : -1);
        }
        break;
    case mevo::ControlKind::Text:
    case mevo::ControlKind::Secret:
    case mevo::ControlKind::Path:
        if (auto *line = control<QLineEdit>(row.name); !line->isModified()) {
            line->setText(valueOf(row).toString());
        }
        break;
    default:
        break;
    }
}

void CSettingDialog::check(const char *name, bool on)
{
    setChecked(control<QAbstractButton>(name), on);
}

void CSettingDialog::fillEngines()
{
    const RecorderState &recorder = *m_host.recorderState();
    const bool method = m_state.LocalEnableASR3;
    const bool noEngine = !recorder.BaiDuNoStreamApi && !recorder.UseTXASRApi && !recorder.UseXunFeiWebApi;
    const mevo::Engine engine = method ? mevo::Engine::ThirdParty : mevo::engineInForce(recorder);
    const bool baidu = engine == mevo::Engine::Baidu && !noEngine;
    check("radioButton_BaiduNotStreamRestApi", baidu);
    check("radioButton_UseXunFeiWebApi", engine == mevo::Engine::XunFei);
    check("radioButton_TXAsrAPI", engine == mevo::Engine::Tencent);
    check("radioButton_EnableThirdPartyVoiceInput", method);
    check("checkBox_BaiduNotStreamRestApi", baidu);
    check("checkBox_UseXunFeiWebApi", engine == mevo::Engine::XunFei);
    check("checkBox_EnableThirdPartyVoiceInput", method);
    check("checkBox_EnableXunFeiDwa", recorder.EnableXunFeiWebApiDwa);
    check("checkBox_EnableTecentAsr_zh_dialect", m_state.ShowTecentZhDialect && m_state.UseTecentZhDialect);
    check("checkBox_RunAsAdmin", m_state.RunAsAdmin);
    check("checkBox_AutoRunApp_2", !m_state.AutoRunApp.isEmpty());
    control<QComboBox>("comboBox_MICDeviceList")->setEnabled(!m_state.OnlyUseOurDeviceMic);
    m_groups.value(QStringLiteral("groupBox_ThirdParty"))->setEnabled(method || m_methodWanted);
}

void CSettingDialog::fillInputMethods()
{
    auto *methods = control<QComboBox>("comboBox_SelectASR3");
    const bool custom = m_state.ShowASR3Custom;
    if (!custom && methods->count() == customMethod) {
        methods->removeItem(customMethod - 1);
    } else if (custom && methods->count() < customMethod) {
        methods->addItem(tr("自定义语音输入法"));
    }
    // What the user wants; else what is in force or was, what the record would use, the first.
    const int wanted = m_methodWanted ? methods->currentIndex() + 1 : 0;
    for (const int method : {wanted, m_state.LocalUseASR3Index, m_state.UseASR3Index, 1}) {
        if (method >= 1 && method <= methods->count()) {
            methods->setCurrentIndex(method - 1);
            return;
        }
    }
}

bool CSettingDialog::isShown(mevo::ShownWhen rule) const
{
    switch (rule) {
    case mevo::ShownWhen::Always:
        return true;
    case mevo::ShownWhen::Never:
        return false;
    case mevo::ShownWhen::Baidu:
        return m_state.ShowBaiduI;
    case mevo::ShownWhen::Tencent:
        return m_state.ShowTXI;
    case mevo::ShownWhen::TencentDialect:
        return m_state.ShowTecentZhDialect;
    case mevo::ShownWhen::XunFei:
        return m_state.ShowXFWebApi && !m_host.isXpClass();
    case mevo::ShownWhen::XunFeiDialect:
        return m_state.ShowXFDialect != 0;
    case mevo::ShownWhen::XunFeiSmallLan:
        return m_state.ShowXFSmallLan != 0;
    case mevo::ShownWhen::InputMethod:
        return m_state.ShowASR3UI;
    case mevo::ShownWhen::CustomMethod:
        return m_state.ShowASR3Custom;
    case mevo::ShownWhen::Battery:
        return m_state.ShowPowerLevel;
    case mevo::ShownWhen::RunFigures:
        return !m_host.runFigures().isEmpty();
    }
    return true;
}

void CSettingDialog::applyRules()
{
    for (const mevo::GroupRow &group : mevo::controlGroups()) {
        m_groups.value(QLatin1String(group.name))->setVisible(isShown(group.shown));
        for (const Row &row : group.rows) {
            if (row.kind != mevo::ControlKind::Picture && row.kind != mevo::ControlKind::Notice) {
                m_carriers.value(QLatin1String(row.name))->setVisible(isShown(row.shown));
            }
        }
    }
    QGroupBox *lanes = m_groups.value(QStringLiteral("groupBox_DirectLanes"));
    const bool noLanes = mevo::SettingsFile().value(QStringLiteral("NoDirectLanes")).toBool();
    lanes->setTitle(noLanes ? tr("软件功能直通车(不适用此产品)") : tr("功能直通车"));
    lanes->setEnabled(!noLanes);
    control<QLabel>("label_SupportContact")->setVisible(!m_state.SupportContact.isEmpty());
    control<QLabel>("label_SupportEmail")->setVisible(!m_state.SupportEmail.isEmpty());
    showBattery();
}

void CSettingDialog::fillSoftware()
{
    const auto show = [this](const char *name, const QString &text) { control<QLabel>(name)->setText(text); };
    show("label_Version", tr("软件版本号：") + m_host.versionText());
    show("label_SupportContact", tr("联系方式：") + m_state.SupportContact);
    show("label_SupportEmail", tr("电子邮件：") + m_state.SupportEmail);
    show("label_RunFigures", m_host.runFigures());
    const auto offer = [this](const char *name, const QString &address) {
        control<QPushButton>(name)->setEnabled(!mevo::webPage(address).isEmpty());
    };
    offer("pushButton_DrvDownload", m_state.DownloadDrvWeb);
    offer("pushButton_Manual", m_state.UserManual);
    offer("pushButton_WebAddress", m_state.Website);
    auto *notice = control<QPushButton>("pushButton_UpdateNotice");
    notice->setVisible(!notice->text().isEmpty());
}
