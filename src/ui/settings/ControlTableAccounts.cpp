// The user's own accounts.

#include "ui/settings/ControlTable.h"

#include <QtGlobal>

namespace mevo {

namespace {

using namespace control; // NOLINT(google-build-using-namespace): the rows are nothing but its calls

/// The fields of one service, what can be done with them, and what is said about them.
std::vector<ControlRow> accountRows(std::vector<ControlRow> fields, const char *checkButton,
                                    const char *removeButton, const char *told)
{
    fields.push_back(
        button(checkButton, QT_TRANSLATE_NOOP("CSettingDialog", "检查账号"))
            .tip(QT_TRANSLATE_NOOP("CSettingDialog", "向服务发送一次很小的请求，检查账号是否可用"))
            .line());
    fields.push_back(button(removeButton, QT_TRANSLATE_NOOP("CSettingDialog", "删除账号")));
    fields.push_back(other(ControlKind::Caption, told).line());
    return fields;
}

ControlRow field(const char *name, const char *label)
{
    return other(ControlKind::Account, name, label).slot();
}

} // namespace

std::vector<GroupRow> accountGroups()
{
    const char *const box = "groupBox_OwnAccounts";
    const Page page = Page::Advanced;
    return {
        {box,
         page,
         QT_TRANSLATE_NOOP("CSettingDialog", "自有账号"),
         {other(ControlKind::Caption, "label_OwnAccountsKept")}},
        {"groupBox_OwnBaidu", page, QT_TRANSLATE_NOOP("CSettingDialog", "百度语音"),
         accountRows({field("lineEdit_OwnBaiduApiKey", "API Key:"),
                      field("lineEdit_OwnBaiduSecretKey", "Secret Key:")},
                     "pushButton_CheckOwnBaidu", "pushButton_RemoveOwnBaidu", "label_OwnBaidu"),
         box, ShownWhen::Baidu},
        {"groupBox_OwnTencent", page, QT_TRANSLATE_NOOP("CSettingDialog", "腾讯语音"),
         accountRows({field("lineEdit_OwnTencentSecretId", "SecretId:"),
                      field("lineEdit_OwnTencentSecretKey", "SecretKey:")},
                     "pushButton_CheckOwnTencent", "pushButton_RemoveOwnTencent", "label_OwnTencent"),
         box, ShownWhen::Tencent},
        {"groupBox_OwnXunFei", page, QT_TRANSLATE_NOOP("CSettingDialog", "讯飞语音"),
         accountRows({field("lineEdit_OwnXunFeiAppId", "APPID:"),
                      field("lineEdit_OwnXunFeiApiKey", "APIKey:"),
                      field("lineEdit_OwnXunFeiApiSecret", "APISecret:")},
                     "pushButton_CheckOwnXunFei", "pushButton_RemoveOwnXunFei", "label_OwnXunFei"),
         box, ShownWhen::XunFei},
        {"groupBox_OwnBaiduTranslate", page, QT_TRANSLATE_NOOP("CSettingDialog", "百度翻译"),
         accountRows({field("lineEdit_OwnBaiduTranslateAppId", "APP ID:"),
                      field("lineEdit_OwnBaiduTranslateKey", QT_TRANSLATE_NOOP("CSettingDialog", "密钥："))},
                     "pushButton_CheckOwnBaiduTranslate", "pushButton_RemoveOwnBaiduTranslate",
                     "label_OwnBaiduTranslate"),
         box},
    };
}

} // namespace mevo
