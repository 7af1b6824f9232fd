// The translation window's settings: the lists, their languages, the voice that reads.

#include "ui/translation/CTransTipDialog.h"

#include "base/SettingsFile.h"
#include "translation/TranslationLanguages.h"
#include "ui/Picture.h"
#include "ui/translation/SendChoices.h"
#include "ui/translation/TransFace.h"
#include "ui/translation/TransLists.h"

#include <QAction>
#include <QActionGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QHash>
#include <QIcon>
#include <QMenu>
#include <QPushButton>
#include <QScopedValueRollback>

namespace {

const QString group = QStringLiteral("TransSetting");
constexpr int volumes = 16;
constexpr int speeds = 10;
constexpr int tones = 10;

void fillNumbers(QComboBox *box, int count)
{
    for (int i = 0; i < count; ++i) {
        box->addItem(QString::number(i));
    }
}

} // namespace

void CTransTipDialog::fillLists()
{
    QHash<QString, QIcon> flags; // reading them all takes longer than making the rest of the window
    const auto fill = [&flags](QComboBox *box, const mevo::RowRange &rows) {
        for (int i = rows.first; i < rows.first + rows.count; ++i) {
            const mevo::TranslationLanguage &language = mevo::translationLanguages()[std::size_t(i)];
            const QString file = mevo::languageFlag(language);
            auto flag = flags.find(file);
            if (flag == flags.end()) {
                flag = flags.insert(file, mevo::lateIcon(file));
            }
            box->addItem(*flag, mevo::languageRowText(language));
        }
    };
    fill(m_face->comboBox_SourceLan, mevo::spokenSources());
    fill(m_face->comboBox_DestLan, mevo::destinations());
    fill(m_face->comboBox_SourceLan_Delimit, mevo::textSources());
    fill(m_face->comboBox_DestLan_Delimit, mevo::destinations());
    fillNumbers(m_face->comboBox_TTS_Volume, volumes);
    fillNumbers(m_face->comboBox_TTS_Speed, speeds);
    fillNumbers(m_face->comboBox_TTS_Tone, tones);
    m_face->comboBox_TTS_Reader->addItems({tr("女声"), tr("男声"), tr("度逍遥"), tr("度丫丫")});

    auto *choices = new QActionGroup(this);
    for (const mevo::SendChoice &choice : mevo::sendChoices()) {
        QAction *action = m_face->sendMenu->addAction(tr(choice.text));
        action->setCheckable(true);
        action->setData(choice.seconds);
        choices->addAction(action);
    }
    connect(choices, &QActionGroup::triggered, this, &CTransTipDialog::trigerSendMenu);
}

void CTransTipDialog::loadSettings()
{
    const mevo::SettingsFile settings(group);
    const auto number = [&settings](const char *key) { return settings.value(QLatin1String(key)).toInt(); };
    const auto flag = [&settings](const char *key) { return settings.value(QLatin1String(key)).toBool(); };
    const auto language = [&number](QComboBox *box, const char *key, const mevo::RowRange &rows) {
        const int index = mevo::rowInRange(number(key), rows.count);
        box->setCurrentIndex(index);
        return QString::fromLatin1(mevo::translationLanguages()[std::size_t(rows.first + index)].code);
    };
    SourceLan = language(m_face->comboBox_SourceLan, "SourceLan_currentIndex", mevo::spokenSources());
    DestLan = language(m_face->comboBox_DestLan, "DestLan_currentIndex", mevo::destinations());
    SourceLan_Delimit =
        language(m_face->comboBox_SourceLan_Delimit, "SourceLan_Delimit_currentIndex", mevo::textSources());
    DestLan_Delimit =
        language(m_face->comboBox_DestLan_Delimit, "DestLan_Delimit_currentIndex", mevo::destinations());

    const auto chosen = [&number](QComboBox *box, const char *key) {
        const int index = mevo::rowInRange(number(key), box->count());
        box->setCurrentIndex(index);
        return index;
    };
    TTS_Volume = chosen(m_face->comboBox_TTS_Volume, "TTS_Volume");
    TTS_Speed = chosen(m_face->comboBox_TTS_Speed, "TTS_Speed");
    TTS_Tone = chosen(m_face->comboBox_TTS_Tone, "TTS_Tone");
    TTS_Reader = mevo::storedReaderNumber(chosen(m_face->comboBox_TTS_Reader, "TTS_Reader"));

    OnlineTTSFirst = flag("OnlineTTSFirst");
    AutoReadSourceResult = flag("AutoReadSourceResult");
    AutoReadDestResult = flag("AutoReadDestResult") && !AutoReadSourceResult;
    m_face->checkBox_OnlineTTSFirst->setChecked(OnlineTTSFirst);
    m_face->checkBox_AutoReadSourceResult->setChecked(AutoReadSourceResult);
    m_face->checkBox_AutoReadDestResult->setChecked(AutoReadDestResult);

    SendTransResult2ScreenMode = mevo::sendChoiceOf(number("SendTransResult2ScreenMode")).seconds;
    for (QAction *action : m_face->sendMenu->actions()) {
        if (action->data().toInt() == SendTransResult2ScreenMode) {
            action->setChecked(true);
            m_face->pushButton_TransSendSet->setText(action->text());
        }
    }
}

void CTransTipDialog::write(const char *key, const QVariant &value)
{
    mevo::SettingsFile(group).setValue(QLatin1String(key), value);
}

void CTransTipDialog::swapLanguages()
{
    const QScopedValueRollback<bool> swapping(m_swapping, true);
    QComboBox *const source = DelimitMode ? m_face->comboBox_SourceLan_Delimit : m_face->comboBox_SourceLan;
    QComboBox *const dest = DelimitMode ? m_face->comboBox_DestLan_Delimit : m_face->comboBox_DestLan;
    const auto swapped = mevo::swappedLanguages({source->currentIndex(), dest->currentIndex()},
                                                DelimitMode ? mevo::textSources() : mevo::spokenSources());
    if (!swapped) {
        return;
    }
    source->setCurrentIndex(swapped->source);
    dest->setCurrentIndex(swapped->destination);
    if (DelimitMode) {
        std::swap(SourceLan_Delimit, DestLan_Delimit);
    } else {
        std::swap(SourceLan, DestLan);
    }
    write(DelimitMode ? "SourceLan_Delimit_currentIndex" : "SourceLan_currentIndex", swapped->source);
    write(DelimitMode ? "DestLan_Delimit_currentIndex" : "DestLan_currentIndex", swapped->destination);
    showPair();
}

void CTransTipDialog::languageChosen(QString &code, const QString &label)
{
    if (m_constructed && !m_swapping) {
        code = mevo::codeInBrackets(label);
        showPair();
    }
}

void CTransTipDialog::indexChosen(const char *key, int index)
{
    if (m_constructed && !m_swapping) {
        write(key, index);
    }
}

void CTransTipDialog::on_comboBox_SourceLan_currentIndexChanged(const QString &text)
{
    languageChosen(SourceLan, text);
}

void CTransTipDialog::on_comboBox_SourceLan_currentIndexChanged(int index)
{
    indexChosen("SourceLan_currentIndex", index);
}

void CTransTipDialog::on_comboBox_DestLan_currentIndexChanged(const QString &text)
{
    languageChosen(DestLan, text);
}

void CTransTipDialog::on_comboBox_DestLan_currentIndexChanged(int index)
{
    indexChosen("DestLan_currentIndex", index);
}

void CTransTipDialog::on_comboBox_SourceLan_Delimit_currentIndexChanged(const QString &text)
{
    languageChosen(SourceLan_Delimit, text);
}

void CTransTipDialog::on_comboBox_SourceLan_Delimit_currentIndexChanged(int index)
{
    indexChosen("SourceLan_Delimit_currentIndex", index);
}

void CTransTipDialog::on_comboBox_DestLan_Delimit_currentIndexChanged(const QString &text)
{
    languageChosen(DestLan_Delimit, text);
}

void CTransTipDialog::on_comboBox_DestLan_Delimit_currentIndexChanged(int index)
{
    indexChosen("DestLan_Delimit_currentIndex", index);
}

void CTransTipDialog::on_checkBox_OnlineTTSFirst_clicked(bool checked)
{
    OnlineTTSFirst = checked;
    write("OnlineTTSFirst", checked);
}

void CTransTipDialog::on_checkBox_AutoReadSourceResult_clicked(bool checked)
{
    readByItself(checked, false);
}

void CTransTipDialog::on_checkBox_AutoReadDestResult_clicked(bool checked)
{
    readByItself(false, checked);
}

void CTransTipDialog::readByItself(bool source, bool dest)
{
    AutoReadSourceResult = source;
    AutoReadDestResult = dest;
    m_face->checkBox_AutoReadSourceResult->setChecked(source);
    m_face->checkBox_AutoReadDestResult->setChecked(dest);
    write("AutoReadSourceResult", source);
    write("AutoReadDestResult", dest);
}

void CTransTipDialog::on_comboBox_TTS_Volume_currentIndexChanged(const QString &text)
{
    numberChosen(TTS_Volume, "TTS_Volume", text);
}

void CTransTipDialog::on_comboBox_TTS_Speed_currentIndexChanged(const QString &text)
{
    numberChosen(TTS_Speed, "TTS_Speed", text);
}

void CTransTipDialog::on_comboBox_TTS_Tone_currentIndexChanged(const QString &text)
{
    numberChosen(TTS_Tone, "TTS_Tone", text);
}

void CTransTipDialog::numberChosen(int &number, const char *key, const QString &text)
{
    if (m_constructed) {
        number = text.toInt();
        write(key, text);
    }
}

void CTransTipDialog::on_comboBox_TTS_Reader_currentIndexChanged(int index)
{
    if (m_constructed) {
        TTS_Reader = mevo::readerNumber(index);
        write("TTS_Reader", index);
    }
}
