// The buttons of the user's own accounts, in the settings of the running program, against services that
// verify what they are sent.

#include "base/SettingsFile.h"
#include "support/Rows.h"
#include "ui/settings/CSettingDialog.h"
#include "window/LabAccounts.h"
#include "window/Program.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace {

/// A program whose services are the lab's, with its settings open.
struct OpenSettings : LabAccounts, Program
{
    explicit OpenSettings(bool reachable)
    {
        QFile file(qEnvironmentVariable("MEVO_HOME") + "/MEVOEndpoints.ini"_s);
        if (!ready || !file.open(QIODevice::WriteOnly | QIODevice::Append)) {
            qFatal("The services do not start");
        }
        if (!reachable) {
            for (QString mevo::EngineEndpoints::*host :
                 {&mevo::EngineEndpoints::BaiduTokenHost, &mevo::EngineEndpoints::TencentHost,
                  &mevo::EngineEndpoints::XunFeiSocketHost, &mevo::EngineEndpoints::TranslateHost}) {
                endpoints.*host = "127.0.0.1:9"_s; // nobody's
            }
        }
        file.write("BaiduTokenHost=http://%1\nBaiduSpeechHost=http://%2\nTencentHost=%3\n"
                   "XunFeiSignHost=localhost\nXunFeiSocketHost=%4\nTranslateHost=http://%5\n"
                   "VerifyCertificates=0\n"_s
                       .arg(endpoints.BaiduTokenHost, endpoints.BaiduSpeechHost, endpoints.TencentHost,
                            endpoints.XunFeiSocketHost, endpoints.TranslateHost)
                       .toLatin1());
        file.close();
        fake.time->start = QDateTime::currentDateTimeUtc(); // what is signed holds for minutes
        start();
        window->pushBuutton_Setting_clicked();
        dialog = window->findChild<CSettingDialog *>();
    }
    template <class T>
    T *find(const QString &name) const
    {
        T *widget = dialog->findChild<T *>(name);
        if (widget == nullptr) {
            qFatal("There is no %s", qPrintable(name));
        }
        return widget;
    }
    /// Types the values into the fields of a service, one after the other.
    void type(const QString &service, const QStringList &fields, const QStringList &values) const
    {
        for (int i = 0; i < fields.size(); ++i) {
            auto *line = find<QLineEdit>("lineEdit_Own%1%2"_s.arg(service, fields[i]));
            line->setFocus();
            QTest::keyClicks(line, values[i]);
        }
    }
    void press(const char *what, const QString &service) const
    {
        find<QPushButton>("pushButton_%1Own%2"_s.arg(QLatin1String(what), service))->click();
    }
    QString told(const QString &service) const { return find<QLabel>("label_Own"_s + service)->text(); }

    CSettingDialog *dialog = nullptr;
};

} // namespace

class TestAccountButtons : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void buttons_data()
    {
        const Rows<QString, QStringList, QStringList> add; // service, fields, right
        const auto row = [&](const char *service, const char *fields, const char *right) {
            add(service, QString::fromLatin1(service), QString::fromLatin1(fields).split(QLatin1Char(' ')),
                QString::fromLatin1(right).split(QLatin1Char(' ')));
        };
        row("Baidu", "ApiKey SecretKey", "client-id-1234 client-secret");
        row("Tencent", "SecretId SecretKey", "AKID-of-the-test key-of-the-test");
        row("XunFei", "AppId ApiKey ApiSecret", "app1 api-key-of-the-test secret1");
        row("BaiduTranslate", "AppId Key", "appid translation-key");
    }
    void buttons()
    {
        const auto [service, fields, right] = rowOf<QString, QStringList, QStringList>();
        const OpenSettings settings(true);
        QStringList wrong = right;
        wrong.last() = "something-else"_s;
        settings.type(service, fields, wrong);
        settings.press("Check", service);
        QTRY_VERIFY2_WITH_TIMEOUT(settings.told(service).startsWith("密钥不正确"_s),
                                  qPrintable(settings.told(service)), 20000);

        settings.type(service, {fields.last()}, {right.last()});
        settings.press("Check", service);
        QTRY_COMPARE_WITH_TIMEOUT(settings.told(service), "账号可用"_s, 20000);
        QTRY_VERIFY(settings.fake.secrets->kept.contains(right.last().toLatin1()));
        QCOMPARE(settings.find<QLabel>("label_OwnAccountsKept"_s)->text(), "账号保存在系统的密钥环中。"_s);

        settings.press("Remove", service);
        QTRY_COMPARE(settings.fake.secrets->kept, QByteArray());
        QCOMPARE(settings.told(service), "没有账号"_s);
        settings.press("Check", service);
        QTRY_COMPARE_WITH_TIMEOUT(settings.told(service), "请先填写全部内容"_s, 20000);
    }

    void noNetwork()
    {
        const OpenSettings settings(false);
        settings.type("XunFei"_s, {"AppId"_s, "ApiKey"_s, "ApiSecret"_s},
                      {"app1"_s, "api-key-of-the-test"_s, "secret1"_s});
        settings.press("Check", "XunFei"_s);
        QTRY_COMPARE_WITH_TIMEOUT(settings.told("XunFei"_s), "连接不上服务，请检查网络"_s, 20000);
    }
};

QTEST_MAIN(TestAccountButtons)
#include "tst_account_buttons.moc"
