// Fields of words: which key one shows, and how what is typed there is saved and never lost.

#include "ui/settings/CSettingDialog.h"

#include "base/SettingsFile.h"
#include "state/MainState.h"
#include "state/SettingAccess.h"
#include "ui/Ask.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QScopedValueRollback>

#include <algorithm>

/// The place of the key that the selector picks; the first one while nothing is picked.
int CSettingDialog::selectedPlace(const Row &row) const
{
    if (row.selector == nullptr) {
        return 0;
    }
    const QButtonGroup *group = m_radioGroups.value(QLatin1String(row.selector));
    return std::max(0,
                    group != nullptr ? group->checkedId() : control<QComboBox>(row.selector)->currentIndex());
}

QString CSettingDialog::storedWords(const Row &row, int place) const
{
    const char *key = row.keys.at(std::size_t(place));
    const mevo::SettingsFile settings;
    if (!settings.contains(QLatin1String(key))) {
        return std::size_t(place) < row.words.size() ? QString::fromUtf8(row.words.at(std::size_t(place)))
                                                     : QString();
    }
    const mevo::SettingRow *setting = mevo::settingRow(QLatin1String(key));
    return setting != nullptr ? mevo::memberValue(*setting, m_state).toString()
                              : settings.value(QLatin1String(key)).toString();
}

bool CSettingDialog::areWordsEdited(const Row &row) const
{
    const auto *line = control<QLineEdit>(row.name);
    return line->isModified() &&
           line->text() != storedWords(row, m_shownPlaces.value(QLatin1String(row.name)));
}

void CSettingDialog::fillWords(const Row &row)
{
    auto *line = control<QLineEdit>(row.name);
    int &shown = m_shownPlaces[QLatin1String(row.name)];
    const int place = selectedPlace(row);
    if (areWordsEdited(row) && shown == place) {
        return;
    }
    shown = place;
    line->setText(storedWords(row, place));
    line->setModified(false);
}

void CSettingDialog::saveWords(const Row &row)
{
    auto *line = control<QLineEdit>(row.name);
    line->setModified(false);
    const char *key = row.keys.at(std::size_t(m_shownPlaces.value(QLatin1String(row.name))));
    store("MainSetting", key, line->text(), line->text());
}

/// Other words are to be shown: what was typed belongs to those that were.
void CSettingDialog::wordsWanted(const Row &row)
{
    if (m_filling) {
        return;
    }
    if (areWordsEdited(row)) {
        saveWords(row);
    }
    fillWords(row);
}

void CSettingDialog::wordsEdited(const Row &row)
{
    // The buttons of the field do what they do; a window that is left for another is not done with, and one
    // that closes saves.
    const QWidget *next = focusWidget();
    if (m_filling || m_asking || !isActiveWindow() || !isVisible() || !areWordsEdited(row) ||
        next == m_controls.value(QLatin1String(row.saveButton)) ||
        next == m_controls.value(QLatin1String(row.semicolonButton))) {
        return;
    }
    const Stay stay(*this);
    const QScopedValueRollback<bool> asking(m_asking, true);
    const int answer = mevo::ask(
        this,
        {tr("提示"), tr("是否要保存？"), {tr("是"), tr("否")}, false, {mevo::Answer::Yes, mevo::Answer::No}});
    if (m_retired) {
        return; // it has been stored
    }
    if (answer == 0) {
        saveWords(row);
    } else if (answer == 1) {
        control<QLineEdit>(row.name)->setModified(false);
        fillWords(row);
    }
}

void CSettingDialog::on_comboBox_SwitchVoiceMode_currentIndexChanged(int)
{
    for (const mevo::GroupRow &group : mevo::controlGroups()) {
        for (const Row &row : group.rows) {
            if (qstrcmp(row.selector, "comboBox_SwitchVoiceMode") == 0) {
                wordsWanted(row);
            }
        }
    }
}
