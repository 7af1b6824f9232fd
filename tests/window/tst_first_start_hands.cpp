// What the running program tells a new user.

#include "base/SettingsFile.h"
#include "support/Rows.h"
#include "ui/FirstStartDialog.h"
#include "ui/settings/CSettingDialog.h"
#include "window/AccountHands.h"
#include "window/FirstStartHands.h"
#include "window/Program.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSemaphore>
#include <QTabWidget>
#include <QThread>

#include <atomic>

namespace {

const QString refused = QStringLiteral("message 接收器：已插入，但没有使用权限");
const QByteArray account = R"({"Tencent":{"SecretId":"id","SecretKey":"key"}})";

struct Start : Program
{
    explicit Start(bool plugged)
        : Program(plugged)
    {
        mevo::FirstStartHands::waitMs = 0;
        mevo::SettingsFile().setValue(QStringLiteral("FirstStartShown"), false);
        fake.audioRouter->names = QStringList{QStringLiteral("Webcam")};
    }
    /// The window, null when it is not shown.
    FirstStartDialog *shown() const
    {
        auto *dialog = window->findChild<FirstStartDialog *>();
        return dialog != nullptr && dialog->isVisible() ? dialog : nullptr;
    }
    static bool isMarked() { return mevo::SettingsFile().value(QStringLiteral("FirstStartShown")).toBool(); }
};

bool says(const FirstStartDialog &dialog, const char *text)
{
    for (const QLabel *label : dialog.findChildren<QLabel *>()) {
        if (label->text() == QString::fromUtf8(text)) {
            return true;
        }
    }
    return false;
}

} // namespace

class TestFirstStartHands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsMissing()
    {
        Start start(true);
        start.fake.secrets->kept = account;
        start.start();
        QTRY_VERIFY(Start::isMarked());
        start.settle();
        QVERIFY(start.shown() == nullptr);
    }

    void showsOnceWhatIsMissing()
    {
        Start start(true);
        start.start();
        QTRY_VERIFY(start.shown() != nullptr);
        QVERIFY(says(*start.shown(), "语音识别：没有账号"));
        QVERIFY(says(*start.shown(), "接收器：已连接"));
        QVERIFY(says(*start.shown(), "麦克风：已找到"));
        QVERIFY(start.shown()->testAttribute(Qt::WA_ShowWithoutActivating));
        QVERIFY(Start::isMarked());
        // To where an account is entered.
        start.shown()->findChild<QPushButton *>(QStringLiteral("pushButton_OwnAccount"))->click();
        auto *settings = start.window->findChild<CSettingDialog *>();
        QVERIFY(settings != nullptr && settings->isVisible());
        QCOMPARE(settings->findChild<QTabWidget *>(QStringLiteral("tabWidget_Setting"))->currentIndex(), 1);
        settings->close();
    }

    void notAtALaterStart()
    {
        Start start(false);
        mevo::SettingsFile().setValue(QStringLiteral("FirstStartShown"), true);
        start.start();
        start.settle();
        QTest::qWait(1); // its timer would have been due
        QVERIFY(start.shown() == nullptr);
        // But from the settings.
        start.window->pushBuutton_Setting_clicked();
        start.window->findChild<QPushButton *>(QStringLiteral("pushButton_FirstStart"))->click();
        QTRY_VERIFY(start.shown() != nullptr);
        QVERIFY(!start.shown()->testAttribute(Qt::WA_ShowWithoutActivating));
        QVERIFY(says(*start.shown(), "接收器：没有找到，请插入电脑的USB接口"));
    }

    void waitsForTheKeyring()
    {
        Start start(true);
        start.fake.secrets->kept = account;
        start.fake.secrets->held = true;
        start.start();
        start.settle();
        QTest::qWait(1);
        QVERIFY(!Start::isMarked());
        start.fake.secrets->release();
        QTRY_VERIFY(Start::isMarked());
        QVERIFY(start.shown() == nullptr);
    }

    /// A slow sound server does not hold the program, and the program's end waits for its answer.
    void slowSoundServer()
    {
        std::atomic<int> asked{0};
        QSemaphore answer;
        Start start(true);
        start.fake.audioRouter->slow = [&] {
            ++asked;
            answer.tryAcquire(1, 60000);
        };
        start.start();
        QTRY_COMPARE(asked.load(), 1);
        start.settle();
        QVERIFY(start.shown() == nullptr);
        QVERIFY(!Start::isMarked());
        answer.release();
        QTRY_VERIFY(start.shown() != nullptr);
        // It looks again while the window is shown, and the program ends meanwhile.
        QTRY_COMPARE_WITH_TIMEOUT(asked.load(), 2, 20000);
        QObject::connect(start.window.get(), &QObject::destroyed, [&answer] { answer.release(); });
        start.window.reset();
        QCOMPARE(answer.available(), 0);
    }

    /// A first start that ends before the window could come leaves it to the next one.
    void endsBeforeItIsShown()
    {
        std::atomic<int> asked{0};
        Start start(false);
        start.fake.audioRouter->slow = [&asked] { ++asked; };
        start.start();
        start.window->ResultIdle = false; // a text is on its way
        QTRY_COMPARE(asked.load(), 1);
        QTRY_VERIFY(start.window->findChildren<QThread *>().isEmpty()); // what has been found is known
        QVERIFY(start.shown() == nullptr);
        QVERIFY(!Start::isMarked());
        start.window->ResultIdle = true;
        QTRY_VERIFY(start.shown() != nullptr);
        QVERIFY(Start::isMarked());
    }

    void receiverWithoutRights_data() { flagRows("the window has been closed", "the window says so"); }
    void receiverWithoutRights()
    {
        const auto [closed] = rowOf<bool>();
        Start start(true);
        start.fake.secrets->kept = account;
        start.fake.hid->unopenable = {"/dev/hidraw3"};
        start.start();
        QTRY_VERIFY(start.shown() != nullptr);
        QVERIFY(says(*start.shown(), "接收器：已插入，但没有使用权限"));
        if (closed) {
            start.shown()->close();
        }
        start.change(mevo::DeviceNotifier::Change::Arrival);
        start.settle();
        QCOMPARE(start.fake.log.calls(refused).size(), int(closed));
    }

    /// One that is plugged in while the window waits for a quiet moment is told by the window alone.
    void receiverWithoutRightsBeforeTheWindow()
    {
        std::atomic<int> asked{0};
        Start start(false);
        start.fake.secrets->kept = account;
        start.fake.hid->unopenable = {"/dev/hidraw3"};
        start.fake.audioRouter->slow = [&asked] { ++asked; };
        start.start();
        start.window->ResultIdle = false; // a text is on its way
        QTRY_COMPARE(asked.load(), 1);
        QTRY_VERIFY(start.window->findChildren<QThread *>().isEmpty());
        start.change(mevo::DeviceNotifier::Change::Arrival);
        start.settle();
        QVERIFY(start.shown() == nullptr);
        QVERIFY(start.fake.log.calls(refused).isEmpty());
    }

    /// A keyring that stays locked may hold an account: that one is missing is neither said nor remembered.
    void lockedKeyring()
    {
        Start start(true);
        start.fake.secrets->kept = account;
        start.fake.secrets->locked = true;
        mevo::AccountHands::retryMs = 20;
        start.start();
        const int reads = start.fake.secrets->reads;
        QTRY_VERIFY(start.fake.secrets->reads > reads + 2);
        start.settle();
        QVERIFY(start.shown() == nullptr);
        QVERIFY(!Start::isMarked());
        start.fake.secrets->kept.clear();
        start.fake.secrets->locked = false;
        QTRY_VERIFY(start.shown() != nullptr);
        QVERIFY(says(*start.shown(), "语音识别：没有账号"));
        QVERIFY(Start::isMarked());
    }

    /// Something else is missing beside what is not known.
    void lockedKeyringAndNoMicrophone()
    {
        Start start(true);
        start.fake.secrets->kept = account;
        start.fake.secrets->locked = true;
        start.fake.audioRouter->names = QStringList();
        mevo::AccountHands::retryMs = 3600000;
        start.start();
        QTRY_VERIFY(start.shown() != nullptr);
        QVERIFY(says(*start.shown(), "语音识别：保存的账号暂时无法读取"));
        QVERIFY(!Start::isMarked());
        start.fake.secrets->locked = false;
        start.window->accountHands().rereadAccounts();
        QTRY_VERIFY_WITH_TIMEOUT(says(*start.shown(), "语音识别：已有账号"), 20000);
        QVERIFY(Start::isMarked());
    }

    void receiverWithoutRightsAtALaterStart()
    {
        Start start(true);
        mevo::SettingsFile().setValue(QStringLiteral("FirstStartShown"), true);
        start.fake.hid->unopenable = {"/dev/hidraw3"};
        start.start();
        QCOMPARE(start.fake.log.calls(refused).size(), 1);
    }
};

QTEST_MAIN(TestFirstStartHands)
#include "tst_first_start_hands.moc"
