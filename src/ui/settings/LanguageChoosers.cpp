#include "ui/settings/LanguageChoosers.h"

#include "base/SettingsFile.h"
#include "engines/EngineCatalogue.h"
#include "state/SettingAccess.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace mevo {

namespace {

constexpr int columns = 3; ///< as many as a screen of 640 pixels holds

/// The dialects are the catalogue's rows before Mandarin.
QVector<LanguageTick> dialects()
{
    QVector<LanguageTick> ticks;
    for (const XunFeiLanguage &language : xunFeiLanguages()) {
        if (qstrcmp(language.code, "mandarin") == 0) {
            break;
        }
        LanguageTick tick{QCoreApplication::translate("XunFeiLanguages", language.label),
                          QLatin1String(language.code), QString()};
        if (tick.code == QLatin1String("tianjinese")) {
            tick.alias = QStringLiteral("ianjinese"); // kept: so it stands in settings of old
        }
        ticks.append(tick);
    }
    return ticks;
}

QVector<LanguageTick> minorLanguages()
{
    const auto tick = [](const char *label, const char *code) {
        return LanguageTick{QCoreApplication::translate("XunFeiLanguages", label), QLatin1String(code),
                            QString()};
    };
    return {tick(QT_TRANSLATE_NOOP("XunFeiLanguages", "中文"), "zh_cn"),
            tick(QT_TRANSLATE_NOOP("XunFeiLanguages", "英语"), "en_us"),
            tick(QT_TRANSLATE_NOOP("XunFeiLanguages", "法语"), "fr_fr"),
            tick(QT_TRANSLATE_NOOP("XunFeiLanguages", "日语"), "ja_jp"),
            tick(QT_TRANSLATE_NOOP("XunFeiLanguages", "韩语"), "ko_kr"),
            tick(QT_TRANSLATE_NOOP("XunFeiLanguages", "俄语"), "ru-ru"), // no slip: the service knows it so
            tick(QT_TRANSLATE_NOOP("XunFeiLanguages", "西班牙语"), "es_es")};
}

} // namespace

LanguageChooser::LanguageChooser(MainState &state, const char *key, const QVector<LanguageTick> &languages,
                                 const QString &hint, const char *okName, QWidget *parent)
    : QDialog(parent)
    , m_state(state)
    , m_key(key)
    , m_languages(languages)
{
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto *layout = new QVBoxLayout(this);
    auto *label = new QLabel(hint, this);
    label->setWordWrap(true);
    layout->addWidget(label);
    auto *grid = new QGridLayout;
    layout->addLayout(grid);
    const QStringList ticked = SettingsFile().value(QLatin1String(key)).toString().split(QLatin1Char(';'));
    for (const LanguageTick &language : languages) {
        auto *box = new QCheckBox(language.label, this);
        box->setObjectName(QStringLiteral("checkBox_") + language.code);
        box->setChecked(ticked.contains(language.code) ||
                        (!language.alias.isEmpty() && ticked.contains(language.alias)));
        grid->addWidget(box, m_boxes.size() / columns, m_boxes.size() % columns);
        m_boxes.append(box);
    }
    auto *ok = new QPushButton(tr("确定"), this);
    ok->setObjectName(QLatin1String(okName));
    ok->setDefault(true);
    layout->addWidget(ok, 0, Qt::AlignRight);
}

void LanguageChooser::take()
{
    QString codes;
    for (int i = 0; i < m_boxes.size(); ++i) {
        if (m_boxes.at(i)->isChecked()) {
            codes += m_languages.at(i).code + QLatin1Char(';');
        }
    }
    SettingsFile().setValue(QLatin1String(m_key), codes);
    if (const SettingRow *row = settingRow(QLatin1String(m_key))) {
        setMemberValue(*row, codes, m_state);
    }
    accept();
}

} // namespace mevo

CSelectSmallLanDialectDialog::CSelectSmallLanDialectDialog(MainState &state, QWidget *parent)
    : LanguageChooser(state, "XFSelectSmallLan", mevo::minorLanguages(),
                      tr("请选择语种(试用功能，不保证一直提供该功能)"), "pushButton_SmallLanDlg_OK", parent)
{
    setWindowTitle(tr("选择小语种"));
    QMetaObject::connectSlotsByName(this);
}

CSelectXFWebApiDialectDialog::CSelectXFWebApiDialectDialog(MainState &state, QWidget *parent)
    : LanguageChooser(state, "XFSelectDirlect", mevo::dialects(),
                      tr("请选择方言(中文方言为试用功能，不保证一直提供该功能）"),
                      "pushButton_SelectDialectDlg_OK", parent)
{
    setWindowTitle(tr("选择中文方言"));
    QMetaObject::connectSlotsByName(this);
}
