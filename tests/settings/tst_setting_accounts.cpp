// The user's own accounts in the settings dialog.

#include "settings/DialogFixture.h"
#include "support/Rows.h"

#include <QClipboard>
#include <QGroupBox>
#include <QLabel>

#include <utility>

using mevo::AccountService;

namespace {

mevo::OwnAccounts of(const QByteArray &text)
{
    return mevo::OwnAccounts::fromText(text).value_or(mevo::OwnAccounts());
}

constexpr const char *baiduText = "label_OwnBaidu";

} // namespace

class TestSettingAccounts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fields_data()
    {
        // fields, service (of the names of its buttons), kept
        const Rows<QStringList, QString, QByteArray> add;
        const auto row = [&](const char *fields, const char *service, const char *kept) {
            add(service, QString::fromLatin1(fields).split(QLatin1Char(' ')), QString::fromLatin1(service),
                QByteArray(kept));
        };
        row("lineEdit_OwnBaiduApiKey lineEdit_OwnBaiduSecretKey", "OwnBaidu",
            R"({"Baidu":{"ApiKey":"value-number-0","SecretKey":"value-number-1"}})");
        row("lineEdit_OwnTencentSecretId lineEdit_OwnTencentSecretKey", "OwnTencent",
            R"({"Tencent":{"SecretId":"value-number-0","SecretKey":"value-number-1"}})");
        row("lineEdit_OwnXunFeiAppId lineEdit_OwnXunFeiApiKey lineEdit_OwnXunFeiApiSecret", "OwnXunFei",
            R"({"XunFei":{"ApiKey":"value-number-1","ApiSecret":"value-number-2","AppId":"value-number-0"}})");
        row("lineEdit_OwnBaiduTranslateAppId lineEdit_OwnBaiduTranslateKey", "OwnBaiduTranslate",
            R"({"BaiduTranslate":{"AppId":"value-number-0","Key":"value-number-1"}})");
    }
    /// An account is stored when its last field is left, is not shown any more, and can be taken away.
    void fields()
    {
        const auto [fields, service, kept] = rowOf<QStringList, QString, QByteArray>();
        const Opened opened;
        const QByteArray removeName = "pushButton_Remove" + service.toLatin1();
        auto *remove = opened.find(removeName);
        QVERIFY(!remove->isEnabled());
        for (int field = 0; field < fields.size(); ++field) {
            QCOMPARE(opened.host.ownAccounts.stores, 0);
            opened.type(qPrintable(fields[field]), "value-number-%1"_s.arg(field));
            QCOMPARE(opened.find<QLineEdit>(qPrintable(fields[field]))->echoMode(),
                     field == 0 ? QLineEdit::Normal : QLineEdit::Password);
        }
        opened.find<QWidget>("checkBox_ShowTipsDlg")->setFocus();
        QVERIFY(opened.host.ownAccounts.kept == of(kept));
        QCOMPARE(opened.host.ownAccounts.stores, 1);
        for (const QString &field : fields) {
            const auto *line = opened.find<QLineEdit>(qPrintable(field));
            QCOMPARE(line->text(), QString());
            QVERIFY2(line->placeholderText().startsWith("已保存 ••••er-"_s),
                     qPrintable(line->placeholderText()));
        }
        const QByteArray told = "label_" + service.toLatin1();
        QCOMPARE(opened.find<QLabel>(told)->text(), "正在使用自有账号"_s);
        opened.click(removeName);
        QVERIFY(opened.host.ownAccounts.kept == mevo::OwnAccounts());
        QCOMPARE(opened.find<QLabel>(told)->text(), "没有账号"_s);
        QCOMPARE(opened.find<QLineEdit>(qPrintable(fields[0]))->placeholderText(), QString());
    }

    /// A new id is not used with the old key while the key is still being typed.
    void halfAnAccount()
    {
        Opened opened;
        opened.host.ownAccounts.kept =
            of(R"({"Baidu":{"ApiKey":"old-id-of-mine","SecretKey":"old-key-of-mine"}})");
        opened.dialog->updateUI();
        opened.type("lineEdit_OwnBaiduApiKey", "new-id"_s);
        opened.find<QWidget>("lineEdit_OwnBaiduSecretKey")->setFocus();
        QTest::keyClick(opened.find<QWidget>("lineEdit_OwnBaiduSecretKey"), Qt::Key_Return);
        QCOMPARE(opened.host.ownAccounts.stores, 0);
        opened.dialog->updateUI(); // the record has been read again
        QCOMPARE(opened.find<QLineEdit>("lineEdit_OwnBaiduApiKey")->text(), "new-id"_s);
        QTest::keyClicks(opened.find<QWidget>("lineEdit_OwnBaiduSecretKey"), "new-key"_s);
        QTest::keyClick(opened.find<QWidget>("lineEdit_OwnBaiduSecretKey"), Qt::Key_Return);
        QVERIFY(opened.host.ownAccounts.kept == of(R"({"Baidu":{"ApiKey":"new-id","SecretKey":"new-key"}})"));
        QCOMPARE(opened.host.ownAccounts.stores, 1);
        // Another key for the same id.
        opened.type("lineEdit_OwnBaiduSecretKey", "third-key"_s);
        opened.dialog->close();
        QVERIFY(opened.host.ownAccounts.kept ==
                of(R"({"Baidu":{"ApiKey":"new-id","SecretKey":"third-key"}})"));
    }

    void situations()
    {
        Opened opened;
        auto &host = opened.host.ownAccounts;
        const auto told = [&](const char *name) {
            opened.dialog->updateUI();
            return opened.find<QLabel>(name)->text();
        };
        QCOMPARE(told("label_OwnBaidu"), "没有账号"_s);
        QCOMPARE(told("label_OwnAccountsKept"), "在各服务商的网站申请账号，填写后优先使用自己的账号。"_s);
        host.others = mevo::AccountSource::List;
        QCOMPARE(told("label_OwnBaidu"), "正在使用系统提供的账号"_s);
        host.kept = of(R"({"Baidu":{"ApiKey":"id"}})");
        QCOMPARE(told("label_OwnBaidu"), "自有账号没有填写完整。正在使用系统提供的账号"_s);
        QCOMPARE(told("label_OwnAccountsKept"), "账号保存在系统的密钥环中。"_s);
        host.place = mevo::SecretPlace::File;
        QCOMPARE(told("label_OwnAccountsKept"), "账号保存在只有您本人可以读取的文件中。"_s);
        const QString unkept = "账号的改动还没有保存下来，会自动重试；如果先退出软件，改动会丢失。"_s;
        host.unread = mevo::SecretPlace::File;
        QCOMPARE(told("label_OwnAccountsKept"), "保存账号的文件无法读取，其中的账号暂时不能使用。"_s);
        host.unread = mevo::SecretPlace::Desktop;
        const QString locked = "系统的密钥环没有解锁或没有回应，其中保存的账号暂时不能使用。"_s;
        QCOMPARE(told("label_OwnAccountsKept"), locked);
        host.unkept = mevo::AccountsUnkept::InMemory;
        QCOMPARE(told("label_OwnAccountsKept"), locked + QLatin1Char('\n') + unkept);
        host.unread = mevo::SecretPlace::Nowhere;
        opened.dialog->showAccounts(); // as the program does when something has changed
        QCOMPARE(opened.find<QLabel>("label_OwnAccountsKept")->text(), unkept);
        host.unkept = mevo::AccountsUnkept::Waiting;
        QCOMPARE(told("label_OwnAccountsKept"),
                 "账号的改动暂存在只有您本人可以读取的文件中，退出软件也不会丢失，稍后会自动保存。"_s);
    }

    /// What an opened dialog shows may have come meanwhile.
    void looksOnceMore()
    {
        Opened opened;
        const int before = opened.host.ownAccounts.rereadings;
        opened.dialog->close();
        QCOMPARE(opened.host.ownAccounts.rereadings, before);
        opened.dialog->present(nullptr);
        QCOMPARE(opened.host.ownAccounts.rereadings, before + 1);
    }

    void refused_data()
    {
        const Rows<QString, QString, QByteArray> row; // pasted, told (empty: it is stored), kept
        const QByteArray whole = R"({"Baidu":{"ApiKey":"id","SecretKey":"the key"}})";
        row("line ends around", "\n the key \r\n"_s, QString(), whole);
        row("two lines", "the key\nand more"_s, "没有保存：Secret Key 中间有换行或看不见的字符。"_s,
            QByteArray());
        row("too long", QString(201, QLatin1Char('k')), "没有保存：Secret Key 太长。"_s, QByteArray());
    }
    /// What cannot be stored is said, and stays in its field; the id is not stored without it.
    void refused()
    {
        const auto [pasted, told, kept] = rowOf<QString, QString, QByteArray>();
        Opened opened;
        auto &host = opened.host.ownAccounts;
        opened.type("lineEdit_OwnBaiduApiKey", "id"_s);
        auto *secret = opened.find<QLineEdit>("lineEdit_OwnBaiduSecretKey");
        secret->setFocus();
        QGuiApplication::clipboard()->setText(pasted);
        secret->paste();
        opened.find<QWidget>("checkBox_ShowTipsDlg")->setFocus();
        QVERIFY(host.kept == of(kept));
        if (told.isEmpty()) {
            QCOMPARE(secret->text(), QString());
            return;
        }
        QCOMPARE(opened.find<QLabel>(baiduText)->text(), told);
        QCOMPARE(opened.find<QLineEdit>("lineEdit_OwnBaiduApiKey")->text(), "id"_s);
        opened.click("pushButton_CheckOwnBaidu");
        QVERIFY(host.checks.empty());
        opened.dialog->close();
        opened.dialog->present(nullptr);
        QCOMPARE(opened.find<QLabel>(baiduText)->text(), told);
        opened.replace("lineEdit_OwnBaiduSecretKey", "the key"_s);
        opened.click("pushButton_CheckOwnBaidu");
        QVERIFY(host.kept == of(R"({"Baidu":{"ApiKey":"id","SecretKey":"the key"}})"));
        QCOMPARE(host.checks.size(), std::size_t(1));
        QCOMPARE(opened.find<QLabel>(baiduText)->text(), "正在检查……"_s);
    }

    void checks()
    {
        Opened opened;
        auto &host = opened.host.ownAccounts;
        opened.type("lineEdit_OwnBaiduApiKey", "id"_s);
        opened.click("pushButton_CheckOwnBaidu"); // what has been typed is what is checked
        QVERIFY(host.kept == of(R"({"Baidu":{"ApiKey":"id"}})"));
        auto *label = opened.find<QLabel>("label_OwnBaidu");
        QCOMPARE(label->text(), "正在检查……"_s);
        const auto first = std::exchange(host.checks, {});
        opened.click("pushButton_CheckOwnBaidu"); // it is under way
        QVERIFY(host.checks.empty());
        host.checks = first;
        opened.dialog->updateUI();
        QCOMPARE(label->text(), "正在检查……"_s);
        host.checks.at(AccountService::Baidu)(
            {mevo::AccountFault::WrongSecret, "Client authentication failed"_s});
        QCOMPARE(label->text(), "密钥不正确 (Client authentication failed)"_s);
        opened.click("pushButton_CheckOwnBaidu");
        host.checks.at(AccountService::Baidu)({});
        QCOMPARE(label->text(), "账号可用"_s);
        opened.type("lineEdit_OwnBaiduApiKey", "another"_s);
        opened.find<QWidget>("checkBox_ShowTipsDlg")->setFocus();
        QCOMPARE(label->text(),
                 "自有账号没有填写完整。没有账号"_s); // the verdict was on another
    }

    void checksOfAnotherAccount_data()
    {
        QTest::addColumn<QString>("how");
        for (const char *how : {"typed", "removed", "read"}) {
            QTest::newRow(how) << QString::fromLatin1(how);
        }
    }
    /// What a check says of an account is not said of the one that has taken its place meanwhile.
    void checksOfAnotherAccount()
    {
        QFETCH(QString, how);
        Opened opened;
        auto &host = opened.host.ownAccounts;
        host.kept = of(R"({"Baidu":{"ApiKey":"id","SecretKey":"key"}})");
        opened.dialog->updateUI();
        opened.click("pushButton_CheckOwnBaidu");
        const auto late = host.checks.at(AccountService::Baidu);
        QString now = "正在使用自有账号"_s;
        if (how == QLatin1String("typed")) {
            opened.type("lineEdit_OwnBaiduSecretKey", "another-key"_s);
            opened.find<QWidget>("checkBox_ShowTipsDlg")->setFocus();
        } else if (how == QLatin1String("removed")) {
            opened.click("pushButton_RemoveOwnBaidu");
            now = "没有账号"_s;
        } else {
            host.kept = of(R"({"Baidu":{"ApiKey":"id","SecretKey":"of the keyring"}})");
            opened.dialog->showAccounts();
        }
        const auto *label = opened.find<QLabel>("label_OwnBaidu");
        QCOMPARE(label->text(), now);
        late({mevo::AccountFault::WrongSecret, {}});
        QCOMPARE(label->text(), now);
        opened.click("pushButton_CheckOwnBaidu");
        late({});
        QCOMPARE(label->text(), "正在检查……"_s);
        host.checks.at(AccountService::Baidu)({});
        QCOMPARE(label->text(), "账号可用"_s);
    }

    /// The keyboard stays at the button, and does not go on to the one that takes the account away.
    void checksByTheKeyboard()
    {
        Opened opened;
        auto &host = opened.host.ownAccounts;
        host.kept = of(R"({"Baidu":{"ApiKey":"id","SecretKey":"key"}})");
        opened.dialog->updateUI();
        opened.find<QWidget>("pushButton_CheckOwnBaidu")->setFocus();
        for (int i = 0; i < 2; ++i) {
            QTest::keyClick(opened.dialog->focusWidget(), Qt::Key_Space);
            QVERIFY(!host.checks.empty());
        }
        host.checks.at(AccountService::Baidu)({});
        QTest::keyClick(opened.dialog->focusWidget(), Qt::Key_Space);
        QVERIFY(host.kept == of(R"({"Baidu":{"ApiKey":"id","SecretKey":"key"}})"));
        QCOMPARE(opened.find<QLabel>(baiduText)->text(), "正在检查……"_s);
    }

    /// A check ends with the dialog.
    void closing()
    {
        Opened opened;
        auto &host = opened.host.ownAccounts;
        opened.click("pushButton_CheckOwnXunFei");
        QCOMPARE(host.checks.size(), std::size_t(1));
        const auto late = host.checks.at(AccountService::XunFei);
        opened.dialog->close();
        QCOMPARE(host.endings, 1);
        opened.dialog->present(nullptr);
        QCOMPARE(opened.find<QLabel>("label_OwnXunFei")->text(), "没有账号"_s);
        opened.click("pushButton_CheckOwnXunFei");
        QCOMPARE(host.checks.size(), std::size_t(1));
        opened.dialog.reset();
        late({});
    }

    void hiddenWithTheService()
    {
        Opened opened;
        opened.state.ShowBaiduI = opened.state.ShowTXI = opened.state.ShowXFWebApi = false;
        opened.host.recorder.BaiDuNoStreamApi = false;
        opened.dialog->updateUI();
        QVERIFY(!opened.isShown("groupBox_OwnBaidu"));
        QVERIFY(!opened.isShown("groupBox_OwnTencent"));
        QVERIFY(!opened.isShown("groupBox_OwnXunFei"));
        QVERIFY(opened.isShown("groupBox_OwnBaiduTranslate"));
    }

    void turnsToTheGroup()
    {
        const Opened opened;
        opened.dialog->turnTo("groupBox_OwnAccounts");
        QCOMPARE(opened.find<QTabWidget>("tabWidget_Setting")->currentIndex(), 1);
        const auto *field = opened.find<QWidget>("lineEdit_OwnBaiduApiKey");
        QVERIFY(field->hasFocus());
        QTRY_VERIFY(!field->visibleRegion().isEmpty());
        opened.dialog->turnTo("comboBox_MICDeviceList");
        QCOMPARE(opened.find<QTabWidget>("tabWidget_Setting")->currentIndex(), 0);
        QVERIFY(opened.find<QWidget>("comboBox_MICDeviceList")->hasFocus());
    }
};

QTEST_MAIN(TestSettingAccounts)
#include "tst_setting_accounts.moc"
