// What the settings dialog does when a control is used.

#include "ui/settings/CSettingDialog.h"
#include "ui/settings/SettingAccounts.h"

#include "base/SettingsFile.h"
#include "state/MainState.h"
#include "state/SettingAccess.h"
#include "state/SettingsTable.h"
#include "state/ThirdPartyMethod.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>

namespace {

constexpr char mainGroup[] = "MainSetting";

/// The row of a control; null for one that has none.
const mevo::ControlRow *rowOf(const char *name)
{
    for (const mevo::GroupRow &group : mevo::controlGroups()) {
        for (const mevo::ControlRow &row : group.rows) {
            if (qstrcmp(row.name, name) == 0) {
                return &row;
            }
        }
    }
    return nullptr;
}

/// Which input method's program a row is the path of.
int methodOfPath(const mevo::ControlRow &row)
{
    const QLatin1String key(row.key);
    return key == QLatin1String("LocalASR3XunFeiInstallPath")  ? mevo::thirdPartyXunFei
           : key == QLatin1String("LocalASR3SougoInstallPath") ? mevo::thirdPartySogou
                                                               : mevo::thirdPartyCustom;
}

} // namespace

void CSettingDialog::store(const char *group, const char *key, const QVariant &value, const QVariant &live)
{
    mevo::SettingsFile(QLatin1String(group)).setValue(QLatin1String(key), value);
    if (const mevo::SettingRow *row = mevo::settingRow(QLatin1String(key))) {
        mevo::setMemberValue(*row, live, m_state);
    }
}

void CSettingDialog::writeFlag(const Row &row, bool on)
{
    if (m_filling) {
        return;
    }
    store(row.group, row.key, mevo::storedFlag(mevo::settingRow(QLatin1String(row.key)), on), on);
    if (on && row.excluded != nullptr) {
        check(row.excluded, false);
        writeFlag(*rowOf(row.excluded), false);
    }
}

/// All keys of the group are written: the chosen one is true, the others are false.
void CSettingDialog::writeRadio(const Row &row)
{
    if (m_filling) {
        return;
    }
    if (row.mouse == &mevo::mouseDPI) {
        onRadioClickDPI(row.place);
        return;
    }
    if (row.mouse != nullptr) {
        m_host.chooseMouse(*row.mouse, row.place);
        return;
    }
    for (const mevo::GroupRow &group : mevo::controlGroups()) {
        for (const Row &other : group.rows) {
            if (qstrcmp(other.radioGroup, row.radioGroup) == 0) {
                writeFlag(other, &other == &row);
            }
        }
    }
}

void CSettingDialog::writeNumber(const Row &row, int index)
{
    if (!m_filling && index >= 0) {
        const int number = index + row.firstNumber;
        store(row.group, row.key, number, number);
    }
}

void CSettingDialog::writeText(const Row &row)
{
    auto *line = control<QLineEdit>(row.name);
    if (m_filling || !line->isModified()) {
        return;
    }
    line->setModified(false);
    store(row.group, row.key, line->text(), line->text());
    if (row.kind != mevo::ControlKind::Path) {
        return;
    }
    const int method = methodOfPath(row);
    if (m_methodWanted && !m_state.LocalEnableASR3 &&
        method == control<QComboBox>("comboBox_SelectASR3")->currentIndex() + 1) {
        chooseInputMethod(method); // it was not there
    } else {
        m_host.inputMethodPathStored();
    }
}

void CSettingDialog::storeEdits()
{
    m_accounts->store();
    for (const mevo::GroupRow &group : mevo::controlGroups()) {
        for (const Row &row : group.rows) {
            if (row.kind == mevo::ControlKind::Words) {
                if (areWordsEdited(row)) {
                    saveWords(row);
                }
            } else if (row.kind == mevo::ControlKind::Path || row.kind == mevo::ControlKind::Text ||
                       row.kind == mevo::ControlKind::Secret) {
                if (!row.hasSlot) {
                    writeText(row);
                } else if (control<QLineEdit>(row.name)->isModified()) {
                    storeProxy();
                }
            }
        }
    }
}

void CSettingDialog::browse(const Row &row)
{
    // Without a wait: the receiver may go, and this dialog with it, while the user looks.
    auto *finder =
        new QFileDialog(this, methodOfPath(row) == mevo::thirdPartyCustom ? tr("选择自定义语音输入法安装路径")
                                                                          : tr("选择语音输入法安装路径"));
    finder->setAttribute(Qt::WA_DeleteOnClose);
    finder->setFileMode(QFileDialog::ExistingFile);
    auto *line = control<QLineEdit>(row.name);
    if (!line->text().isEmpty()) {
        finder->selectFile(line->text());
    }
    connect(finder, &QFileDialog::fileSelected, this, [this, line, &row](const QString &file) {
        line->setText(file);
        line->setModified(true);
        writeText(row);
    });
    finder->open();
}

void CSettingDialog::on_checkBox_RunAsAdmin_clicked(bool on)
{
    if (m_filling) {
        return;
    }
    m_host.setRunAsAdministrator(on);
    check("checkBox_RunAsAdmin", m_state.RunAsAdmin);
}

void CSettingDialog::on_checkBox_AutoRunApp_2_clicked(bool on)
{
    if (m_filling) {
        return;
    }
    m_host.setStartAtLogin(on);
    check("checkBox_AutoRunApp_2", !m_state.AutoRunApp.isEmpty());
    check("checkBox_RunAsAdmin", m_state.RunAsAdmin); // which it may have taken back
}

void CSettingDialog::on_checkBox_NetworkProxy_clicked(bool)
{
    if (!m_filling) {
        storeProxy();
    }
}

void CSettingDialog::on_lineEdit_NetworkProxy_IP_editingFinished()
{
    storeProxy();
}

void CSettingDialog::on_lineEdit_NetworkProxy_Port_editingFinished()
{
    storeProxy();
}

void CSettingDialog::on_lineEdit_NetworkProxy_UserName_editingFinished()
{
    storeProxy();
}

void CSettingDialog::on_lineEdit_NetworkProxy_Password_editingFinished()
{
    storeProxy();
}

/// What has changed is written; the members are then what the next start would read, so that a proxy of which
/// nothing is set is none.
void CSettingDialog::storeProxy()
{
    if (m_filling) {
        return;
    }
    mevo::SettingsFile settings(QStringLiteral("NetworkProxy"));
    for (const char *name : {"lineEdit_NetworkProxy_IP", "lineEdit_NetworkProxy_Port",
                             "lineEdit_NetworkProxy_UserName", "lineEdit_NetworkProxy_Password"}) {
        auto *line = control<QLineEdit>(name);
        if (line->isModified()) {
            line->setModified(false);
            settings.setValue(QLatin1String(rowOf(name)->key), line->text());
        }
    }
    const bool on = control<QAbstractButton>("checkBox_NetworkProxy")->isChecked();
    if (settings.value(QStringLiteral("UseNetworkProxy")).toBool() != on) {
        settings.setValue(QStringLiteral("UseNetworkProxy"), on);
    }
    mevo::loadProxySettings(m_state, settings);
}

void CSettingDialog::on_pushButton_OpenCmdWordSet_clicked()
{
    m_host.openCommandWords();
}
