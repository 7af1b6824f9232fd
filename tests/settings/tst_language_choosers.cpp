#include "base/SettingsFile.h"
#include "settings/List.h"
#include "state/MainState.h"
#include "support/Rows.h"
#include "support/ScratchHome.h"
#include "ui/settings/LanguageChoosers.h"

#include <QCheckBox>
#include <QPushButton>
#include <QtTest>

namespace {

const ScratchHome home;

QStringList ticked(const QDialog &dialog)
{
    QStringList codes;
    for (const QCheckBox *box : dialog.findChildren<QCheckBox *>()) {
        if (box->isChecked()) {
            codes.append(box->objectName().mid(int(strlen("checkBox_"))));
        }
    }
    return codes;
}

std::unique_ptr<QDialog> make(bool dialects, MainState &state)
{
    if (dialects) {
        return std::make_unique<CSelectXFWebApiDialectDialog>(state);
    }
    return std::make_unique<CSelectSmallLanDialectDialog>(state);
}

} // namespace

class TestLanguageChoosers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rows()
    {
        MainState state;
        const QStringList dialects =
            "长沙话=changshanese 东北话=dongbeiese 甘肃话=gansunese "
            "广东话=cantonese 杭州话=hangzhounese 河北话=hebeinese "
            "合肥话=hefeinese 河南话=henanese 客家话=hakkanese 闽南话=minnanese "
            "南昌话=nanchangnese 南京话=nankinese 山东话=shandongnese "
            "上海话=shanghainese 陕西话=shanxinese 四川话=lmz 台湾话=taiwanese "
            "太原话=taiyuanese 天津话=tianjinese 武汉话=wuhanese 云南话=yunnanese "
            "宁夏话=ningxianese 贵州话=guizhounese 皖北话=wanbeinese"_s.split(QLatin1Char(' '));
        const QStringList languages = "中文=zh_cn 英语=en_us 法语=fr_fr 日语=ja_jp 韩语=ko_kr "
                                      "俄语=ru-ru 西班牙语=es_es"_s.split(QLatin1Char(' '));
        for (const bool dialect : {true, false}) {
            const auto dialog = make(dialect, state);
            QStringList shown;
            for (const QCheckBox *box : dialog->findChildren<QCheckBox *>()) {
                shown.append(box->text() + QLatin1Char('=') +
                             box->objectName().mid(int(strlen("checkBox_"))));
            }
            QCOMPARE(shown, dialect ? dialects : languages);
            QVERIFY(!(dialog->windowFlags() & Qt::WindowContextHelpButtonHint));
        }
    }

    void listsAreReadAndWritten_data()
    {
        // dialects, stored, shown, click (a box that is clicked before OK), written
        const Rows<bool, QString, QStringList, QString, QString> row;
        row("empty stays empty", true, "", QStringList(), "", "");
        row("the slip of old lists is understood and mended", true, "ianjinese;", list({"tianjinese"}), "",
            "tianjinese;");
        row("in the order of the rows, not of the list", true, "lmz;cantonese", list({"cantonese", "lmz"}),
            "changshanese", "changshanese;cantonese;lmz;");
        row("what is no language is not kept", false, "ru-ru;;klingon;zh_cn;", list({"zh_cn", "ru-ru"}),
            "zh_cn", "ru-ru;");
        row("the slip is the dialects' alone", false, "ianjinese;", QStringList(), "es_es", "es_es;");
    }

    void listsAreReadAndWritten()
    {
        const auto [dialects, stored, shown, click, written] =
            rowOf<bool, QString, QStringList, QString, QString>();
        const QString key = dialects ? "XFSelectDirlect"_s : "XFSelectSmallLan"_s;
        mevo::SettingsFile().setValue(key, stored);
        MainState state;
        const auto dialog = make(dialects, state);
        QCOMPARE(ticked(*dialog), shown);
        dialog->show();
        if (!click.isEmpty()) {
            QTest::mouseClick(dialog->findChild<QCheckBox *>("checkBox_"_s + click), Qt::LeftButton);
        }
        QTest::mouseClick(dialog->findChild<QPushButton *>(dialects ? "pushButton_SelectDialectDlg_OK"_s
                                                                    : "pushButton_SmallLanDlg_OK"_s),
                          Qt::LeftButton);
        QVERIFY(!dialog->isVisible());
        QCOMPARE(mevo::SettingsFile().value(key).toString(), written);
        QCOMPARE(dialects ? state.XFSelectDirlect : state.XFSelectSmallLan, written);
    }

    void closingWritesNothing()
    {
        mevo::SettingsFile().setValue("XFSelectDirlect"_s, "ianjinese;lmz"_s);
        MainState state;
        CSelectXFWebApiDialectDialog dialog(state);
        dialog.show();
        dialog.findChild<QCheckBox *>("checkBox_lmz"_s)->click();
        dialog.close();
        QCOMPARE(mevo::SettingsFile().value("XFSelectDirlect"_s).toString(), "ianjinese;lmz"_s);
    }
};

QTEST_MAIN(TestLanguageChoosers)
#include "tst_language_choosers.moc"
