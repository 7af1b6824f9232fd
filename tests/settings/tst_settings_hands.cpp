#include "audio/AudioRecorder.h"
#include "base/ApplicationFiles.h"
#include "base/SettingsFile.h"
#include "settings/List.h"
#include "support/Texts.h"
#include "ui/settings/CSettingDialog.h"
#include "window/Program.h"
#include "window/UpdateHands.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QElapsedTimer>
#include <QGroupBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QScopedValueRollback>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString setting(const char *key)
{
    return mevo::SettingsFile().value(QLatin1String(key), "absent"_s).toString();
}

CSettingDialog *dialogOf(const MainWindow &window)
{
    return window.findChild<CSettingDialog *>();
}

/// A program that runs, with its settings open.
struct WithSettings : Program
{
    WithSettings()
    {
        start();
        settle();
        window->pushBuutton_Setting_clicked();
        if (dialogOf(*window) == nullptr) {
            qFatal("no dialog");
        }
        fake.log.clear();
    }
    /// As if an input method were in force, so that its controls can be used.
    void methodInForce() const
    {
        window->LocalEnableASR3 = true;
        dialogOf(*window)->updateUI();
    }
    QAbstractButton *button(const char *name) const
    {
        return dialogOf(*window)->findChild<QAbstractButton *>(QLatin1String(name));
    }
};

} // namespace

class TestSettingsHands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theDialogIsMadeOnce()
    {
        Program program;
        program.start();
        program.settle();
        QVERIFY(dialogOf(*program.window) == nullptr); // not before it is wanted
        QElapsedTimer clock;
        clock.start();
        program.window->pushBuutton_Setting_clicked();
        qInfo("First opening: %d ms", int(clock.elapsed()));
        CSettingDialog *dialog = dialogOf(*program.window);
        QVERIFY(dialog != nullptr && dialog->isVisible());
        dialog->close();
        program.window->pushBuutton_Setting_clicked();
        QVERIFY(dialogOf(*program.window) == dialog && dialog->isVisible());
    }

    void commandsGoToTheReceiver()
    {
        WithSettings program;
        program.button("radioButton_Mouse_SetDPI800")->click();
        program.button("radioButton__Mouse_SetDataRate500")->click();
        program.button("radioButton__Mouse_SetWheelSpeed_Fast")->click();
        dialogOf(*program.window)
            ->findChild<QComboBox *>("comboBox_MouseCustomLeftKey"_s)
            ->setCurrentIndex(6);
        program.button("pushButton_GetMouseID")->click();
        const QStringList wanted =
            list({"hid send 05 20 10 00 00 00 00 00", "hid send 05 20 20 00 00 00 02 00",
                  "hid send 05 20 40 00 00 00 00 02", "hid send 05 71 01 0f 00 00 00 00",
                  "hid send 05 2d 00 00 00 00 00 00"});
        QCOMPARE(program.order(wanted), wanted);
        QCOMPARE(setting("MouseCurrentDPI"), "800"_s);
        QCOMPARE(setting("MouseCurrentWheelSpeed"), "2"_s);
        QCOMPARE(setting("MouseCurrentLeftKeyValue"), "15"_s);
    }

    void anEngineIsInForceAtOnce()
    {
        WithSettings program;
        MainWindow &window = *program.window;
        window.BaiduQuotaHit = true;
        program.button("radioButton_TXAsrAPI")->click();
        QVERIFY(window.recorder()->UseTXASRApi && !window.recorder()->BaiDuNoStreamApi &&
                !window.BaiduQuotaHit);
        QCOMPARE(setting("UseTXASRApi") + setting("BaiDuNoStreamApi") + setting("UseXunFeiWebApi"), "100"_s);
        program.settle();
        QCOMPARE(setting("EngineChoiceUntold"), "1"_s); // nobody answers here
        program.button("radioButton_BaiduNotStreamRestApi")->click();
        QVERIFY(window.recorder()->BaiDuNoStreamApi && window.recorder()->BaiduViaSettings);
    }

    /// Nothing of it is there, and nowhere to have it from.
    void aChoiceThatCannotBeHadSaysSo()
    {
        WithSettings program;
        MainWindow &window = *program.window;
        QVERIFY(!window.BackendReachable);
        program.button("radioButton_EnableThirdPartyVoiceInput")->click();
        program.settle();
        QCOMPARE(program.fake.log.calls("message 没有找到讯飞语音输入法的程序"_s).size(), 1);
        QVERIFY(window.recorder()->BaiDuNoStreamApi && !window.LocalEnableASR3 &&
                program.questions.isEmpty());
        QVERIFY(program.button("radioButton_BaiduNotStreamRestApi")->isChecked());
        QCOMPARE(setting("RecordChoicesUntold"), "absent"_s);
        QVERIFY(dialogOf(window)->findChild<QGroupBox *>("groupBox_ThirdParty"_s)->isEnabled());
    }

    /// The path of what has been chosen and was not there: it is set up at once.
    void aPathMakesTheMethodUsable()
    {
        WithSettings program;
        MainWindow &window = *program.window;
        mevo::SettingsFile().setValue("ThirdPartyConsentAsked"_s, 1);
        auto *methods = dialogOf(window)->findChild<QComboBox *>("comboBox_SelectASR3"_s);
        program.button("radioButton_EnableThirdPartyVoiceInput")->click();
        methods->setCurrentIndex(1);
        const QTemporaryDir folder;
        QFile made(folder.filePath("VoiceInput"_s));
        QVERIFY(made.open(QIODevice::WriteOnly) &&
                made.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        made.close();
        auto *path = dialogOf(window)->findChild<QLineEdit *>("lineEdit_ASR3SougoInstallPath"_s);
        const auto store = [path](const QString &text) {
            path->setText(text);
            path->setModified(true);
            Q_EMIT path->editingFinished();
        };
        store(made.fileName());
        QVERIFY(!window.ThirdPartyActive); // nothing waits in the dialog
        QTRY_VERIFY(window.ThirdPartyActive);
        QCOMPARE(setting("LocalASR3SougoInstallPath"), made.fileName());
        QCOMPARE(setting("RecordChoicesUntold"), "EnableASR3=1;MustClickRunASR3=0;UseASR3Index=2"_s);
        window.ForceUseASR3 = false;
        QVERIFY(made.remove());
        store(folder.path()); // where it is no longer
        QTRY_VERIFY(!window.ThirdPartyActive && window.recorder()->BaiDuNoStreamApi);
    }

    void aCustomMethodHasNoInstaller()
    {
        WithSettings program;
        program.window->ShowASR3Custom = true;
        program.window->LocalUseASR3Index = 3;
        program.methodInForce();
        program.button("pushButton_ASR3DownWeb")->click();
        QTRY_COMPARE(program.fake.log.calls("message 该语音输入法没有可下载的安装程序！"_s).size(), 1);
    }

    void choicesWaitForTheBackend()
    {
        WithSettings program;
        program.window->ForceUseASR3 = false;
        program.methodInForce();
        program.button("checkBox_ForceUseASR3")->click();
        program.settle();
        QVERIFY(program.window->ForceUseASR3);
        QCOMPARE(setting("RecordChoicesUntold"), "ForceUseASR3=1"_s);
        program.button("checkBox_ForceUseASR3")->click();
        program.settle();
        QCOMPARE(setting("RecordChoicesUntold"), "ForceUseASR3=0"_s);
    }

    void theSystem()
    {
        WithSettings program;
        MainWindow &window = *program.window;
        program.button("checkBox_AutoRunApp_2")->click();
        QCOMPARE(setting("AutoRunApp"), "1"_s);
        QCOMPARE(program.fake.startupEntry->names.size(), 1);
        program.button("checkBox_AutoRunApp_2")->click();
        QCOMPARE(setting("AutoRunApp"), QString());
        QVERIFY(program.fake.startupEntry->names.isEmpty());
        program.fake.startupEntry->refuses = true;
        program.button("checkBox_AutoRunApp_2")->click();
        QVERIFY(!program.button("checkBox_AutoRunApp_2")->isChecked() && window.AutoRunApp.isEmpty());
        program.button("checkBox_RunAsAdmin")->click();
        QVERIFY(program.fake.elevation->marked && window.RunAsAdmin);
        QCOMPARE(setting("RunAsAdmin"), "true"_s);
        program.button("checkBox_RunAsAdmin")->click();
        QVERIFY(!program.fake.elevation->marked && !window.RunAsAdmin);
        program.methodInForce();
        program.button("pushButton_OpenXunFeiInputSetting")->click();
        QVERIFY(program.fake.log.has("message 没有找到讯飞输入法的程序 iFlyIMEConfig.exe！ (3000)"_s));
        const QTemporaryDir folder;
        const QString tool = folder.filePath("iFlyHandwriting"_s);
        QFile made(tool);
        QVERIFY(made.open(QIODevice::WriteOnly) &&
                made.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        made.close();
        program.fake.registry->values.insert(
            "HKEY_LOCAL_MACHINE\\SOFTWARE\\iFly Info Tek\\iFlyIME|Install_Dir_Ver2"_s, folder.path());
        program.button("pushButton_OpenXunFeiInputHW")->click();
        QVERIFY(program.fake.log.has("start "_s + tool));
    }

    void offlineRecognitionOfTheInputMethod()
    {
        const QTemporaryDir data;
        qputenv("XDG_DATA_HOME", QFile::encodeName(data.filePath("share"_s)));
        const QString folder = data.filePath("localLow/iFly Info Tek/iFlyIME"_s);
        QVERIFY(QDir().mkpath(folder) && QDir().mkpath(data.filePath("share"_s)));
        WithSettings program;
        program.methodInForce();
        const char *const box = "checkBox_OnlyUseXunFeiOfflineASR";
        constexpr int restart = 0, cancel = 2;
        program.answer = cancel;
        program.button(box)->click();
        program.settle();
        QVERIFY(!program.button(box)->isChecked());
        QCOMPARE(setting("OnlyUseXunFeiOfflineASR"), "absent"_s);
        program.answer = restart; // and there is no file to take
        program.button(box)->click();
        program.settle();
        QCOMPARE(program.fake.log.calls("message 无法修改讯飞输入法的配置"_s).size(), 1);
        QVERIFY(!program.button(box)->isChecked() && !program.fake.log.has("restart computer"_s));
        QFile source(mevo::appFile("configXFOffline.xml"_s));
        QVERIFY(source.open(QIODevice::WriteOnly) && source.write("<offline/>") > 0);
        source.close();
        // As the program itself leaves the file when it has seen to the hot key.
        QFile target(folder + "/config.xml"_s);
        QVERIFY(target.open(QIODevice::WriteOnly) && target.setPermissions(QFile::ReadOwner));
        target.close();
        program.button(box)->click();
        program.settle();
        QVERIFY(program.button(box)->isChecked() && program.window->OnlyUseXunFeiOfflineASR);
        QCOMPARE(setting("OnlyUseXunFeiOfflineASR") + setting("PureXunFeiOfflineVersion"), "11"_s);
        QVERIFY(target.open(QIODevice::ReadOnly));
        QCOMPARE(target.readAll(), QByteArray("<offline/>"));
        QVERIFY(program.fake.log.has("restart computer"_s));
        QVERIFY(source.remove());
    }

    void theReceiverIsPulledOut()
    {
        WithSettings program;
        const QPointer<CSettingDialog> dialog(dialogOf(*program.window));
        auto *words = dialog->findChild<QLineEdit *>("lineEdit_CmdFlags_Contents_Driect"_s);
        words->setFocus();
        QTest::keyClicks(words, "X"_s);
        const QString typed = words->text();
        program.change(mevo::DeviceNotifier::Change::Removal);
        program.settle();
        QTRY_VERIFY(dialog.isNull());
        QCOMPARE(setting("CmdFlags_Contents_Driect"), typed);
        program.window->pushBuutton_Setting_clicked();
        QVERIFY(!dialogOf(*program.window)->findChild<QGroupBox *>("groupBox_Mouse"_s)->isEnabled());
        program.change(mevo::DeviceNotifier::Change::Arrival);
        program.settle();
        QTRY_VERIFY(dialogOf(*program.window)->findChild<QGroupBox *>("groupBox_Mouse"_s)->isEnabled());
    }

    /// A question on an update that stands over the settings has not been answered when they go.
    void theUpdateQuestionOutlivesTheSettings()
    {
        WithSettings program;
        const QScopedValueRollback<decltype(mevo::askHook)> askForReal(mevo::askHook, nullptr);
        mevo::UpdateHands hands(*program.window);
        QList<bool> answers;
        hands.askForUpdate("text"_s, true, [&answers](bool now) { answers.append(now); });
        const QPointer<CSettingDialog> dialog(dialogOf(*program.window));
        const QPointer<QMessageBox> box(dialog->findChild<QMessageBox *>());
        QVERIFY(!box.isNull());
        program.change(mevo::DeviceNotifier::Change::Removal);
        program.settle();
        QTRY_VERIFY(dialog.isNull());
        QVERIFY(!box.isNull() && box->isVisible() && answers.isEmpty());
        box->buttons().first()->click();
        QCOMPARE(answers, QList<bool>{true});
    }

    void anExitStoresWhatIsBeingEdited()
    {
        WithSettings program;
        auto *words =
            dialogOf(*program.window)->findChild<QLineEdit *>("lineEdit_CmdFlags_Contents_Driect"_s);
        QTest::keyClicks(words, "Y"_s);
        const QString typed = words->text();
        program.window->on_exitAppAction();
        QCOMPARE(setting("CmdFlags_Contents_Driect"), typed);
        program.window->pushBuutton_Setting_clicked();
        program.settle();
        QTRY_VERIFY(dialogOf(*program.window) == nullptr); // a program that ends opens nothing
    }

    void aRestart()
    {
        WithSettings program;
        program.methodInForce();
        program.button("checkBox_AsrOffline")->click();
        QVERIFY(program.fake.log.has("message 将自动重启软件，请稍候 (2000)"_s));
        QCOMPARE(setting("ForceUseXFMore3V"), "true"_s);
        QTimer::singleShot(20000, qApp, [] { QCoreApplication::exit(-1); });
        QCOMPARE(QCoreApplication::exec(), MainWindow::restartCode);
        QVERIFY(program.questions.isEmpty());
    }

    void theSettingsAreLeftInPeace()
    {
        WithSettings program;
        program.window->show();
        program.fake.log.clear();
        QVERIFY(dialogOf(*program.window)->isVisible());
        program.window->DeviceConnected = false; // the bar would be hidden
        program.window->setWndTopMostTimeout();
        QVERIFY(program.window->isVisible());
        dialogOf(*program.window)->close();
        program.window->setWndTopMostTimeout();
        QVERIFY(!program.window->isVisible());
        program.window->DeviceConnected = true;
    }
};

QTEST_MAIN(TestSettingsHands)
#include "tst_settings_hands.moc"
