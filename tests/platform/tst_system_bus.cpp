#include "platform/linux/DesktopNotifications.h"
#include "platform/linux/LinuxProcesses.h"
#include "platform/linux/SilentBus.h"
#include "platform/linux/StandingMessages.h"
#include "support/Rows.h"

#include <QApplication>
#include <QDBusConnection>
#include <QElapsedTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QPixmap>
#include <QSystemTrayIcon>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QVariantMap>

#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

#include <xcb/xcb.h>

namespace {

QDBusConnection serviceBus()
{
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, "services"_s);
}

/// Lines of qInfo() and above, for the messages that end in the log.
QStringList loggedLines;
QtMessageHandler nextHandler = nullptr;
void collect(QtMsgType type, const QMessageLogContext &context, const QString &line)
{
    loggedLines.append(line);
    nextHandler(type, context, line);
}

} // namespace

/// What a desktop offers under org.freedesktop.Notifications.
class FakeNotificationService : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    QStringList shown;

public slots:
    uint Notify(const QString &, uint, const QString &icon, const QString &summary, const QString &body,
                const QStringList &, const QVariantMap &, int timeout)
    {
        shown.append("%1|%2|%3|%4"_s.arg(icon, summary, body).arg(timeout));
        return static_cast<uint>(shown.size());
    }
};

/// logind's manager, which says `may` and takes note.
class FakeLogind : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

public:
    QString may = "yes"_s;
    QStringList done;

public slots:
    QString CanReboot() { return may; }
    QString CanPowerOff() { return may; }
    void Reboot(bool interactive) { done.append("reboot %1"_s.arg(interactive)); }
    void PowerOff(bool interactive) { done.append("power off %1"_s.arg(interactive)); }
};

class SystemBusTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QApplication::setQuitOnLastWindowClosed(false);
        nextHandler = qInstallMessageHandler(collect);
    }

    void aBusThatHangs_data()
    {
        const Rows<QByteArray, bool> row; // address (%1 is the folder of the test's sockets), silent
        row("the session's", qgetenv("DBUS_SESSION_BUS_ADDRESS"), false);
        row("hangs", QByteArray("unix:path=%1/hangs"), true);
        row("hangs, escaped, behind another", QByteArray("tcp:host=x;unix:guid=12,path=%1/%68angs"), true);
        row("nobody at the socket", QByteArray("unix:path=%1/left"), false);
        row("no socket", QByteArray("unix:path=%1/none"), false);
        row("abstract, nobody", QByteArray("unix:abstract=%1/hangs"), false);
        row("too long", "unix:path=/" + QByteArray(200, 'x'), false);
        row("a port", QByteArray("tcp:host=localhost,port=1"), false);
        row("nonsense", QByteArray("path=%1/hangs;:;unix;unix:="), false);
    }
    /// Qt would wait for it for 25 s before there is a window.
    void aBusThatHangs()
    {
        auto [address, silent] = rowOf<QByteArray, bool>();
        const QTemporaryDir folder;
        QLocalServer hangs; // takes no connection: nothing here runs an event loop
        QVERIFY(hangs.listen(folder.filePath("hangs"_s)));
        {
            QLocalServer left;
            QVERIFY(left.listen(folder.filePath("other"_s)));
            QVERIFY(QFile::rename(left.fullServerName(), folder.filePath("left"_s)));
        }
        const QByteArray before = qgetenv("DBUS_SESSION_BUS_ADDRESS");
        address.replace("%1", folder.path().toUtf8());
        qputenv("DBUS_SESSION_BUS_ADDRESS", address);
        {
            const mevo::SilentBus bus(silent ? std::chrono::milliseconds(20) : std::chrono::minutes(1));
            QCOMPARE(bus.isHidden(), silent);
            QCOMPARE(qgetenv("DBUS_SESSION_BUS_ADDRESS"), silent ? QByteArray("disabled:") : address);
        }
        QCOMPARE(qgetenv("DBUS_SESSION_BUS_ADDRESS"), address);
        qputenv("DBUS_SESSION_BUS_ADDRESS", before);
    }

    /// It may be busy with a session that begins.
    void aBusWhoseQueueIsFull()
    {
        const QTemporaryDir folder;
        QLocalServer server;
        QVERIFY(server.listen(folder.filePath("full"_s)));
        const QByteArray path = server.fullServerName().toUtf8();
        constexpr std::chrono::milliseconds limit(20);
        std::vector<std::unique_ptr<QLocalSocket>> queue;
        do {
            queue.push_back(std::make_unique<QLocalSocket>());
            queue.back()->connectToServer(server.fullServerName());
        } while (queue.back()->state() == QLocalSocket::ConnectedState);
        QElapsedTimer elapsed;
        elapsed.start();
        QVERIFY(mevo::isSilentBus(path, limit));
        QVERIFY(elapsed.elapsed() >= limit.count());
    }

    void messageWithoutAServiceIsLogged()
    {
        mevo::DesktopNotifications notifications;
        notifications.message(QString(), "nobody hears"_s, mevo::MessageIcon::Warning, 1000);
        QTRY_VERIFY(loggedLines.join(QLatin1Char('\n')).contains("nobody hears"_s));

        mevo::DesktopNotifications withoutBus(QDBusConnection("none"_s));
        withoutBus.message(QString(), "no bus"_s, mevo::MessageIcon::None, 1000);
        QVERIFY(loggedLines.join(QLatin1Char('\n')).contains("no bus"_s));
    }

    void messageWithoutATray()
    {
        FakeNotificationService service;
        QDBusConnection bus = serviceBus();
        QVERIFY(bus.registerObject("/org/freedesktop/Notifications"_s, &service,
                                   QDBusConnection::ExportAllSlots));
        QVERIFY(bus.registerService("org.freedesktop.Notifications"_s));

        mevo::DesktopNotifications notifications;
        QSystemTrayIcon icon;
        icon.setIcon(QPixmap(16, 16));
        icon.show();
        notifications.attach(&icon);
        QVERIFY(!notifications.trayAvailable());
        notifications.message(QString(), "未连接 <外部> & 网络"_s, mevo::MessageIcon::Warning, 3000);
        notifications.message("标题"_s, "text"_s, mevo::MessageIcon::None, 2000);
        std::thread other([&] {
            notifications.message(QString(), "from a thread"_s, mevo::MessageIcon::Critical, 1);
            notifications.trayAvailable();
        });
        other.join();
        QTRY_COMPARE(service.shown,
                     QStringList({"dialog-warning|灵犀听写|未连接 &lt;外部&gt; &amp; 网络|3000"_s,
                                  "|标题|text|2000"_s, "dialog-error|灵犀听写|from a thread|1"_s}));
        bus.unregisterService("org.freedesktop.Notifications"_s);
        bus.unregisterObject("/org/freedesktop/Notifications"_s);
    }

    /// What is told again while it stands is shown once; another one comes all the same.
    void aFloodOfMessages()
    {
        FakeNotificationService service;
        QDBusConnection bus = serviceBus();
        QVERIFY(bus.registerObject("/org/freedesktop/Notifications"_s, &service,
                                   QDBusConnection::ExportAllSlots));
        QVERIFY(bus.registerService("org.freedesktop.Notifications"_s));
        mevo::DesktopNotifications notifications;
        const auto say = [&notifications](const char *text, mevo::MessageIcon icon) {
            notifications.message(QString(), QString::fromLatin1(text), icon, 60000);
        };
        for (int i = 0; i < 70; ++i) {
            say("again", mevo::MessageIcon::Warning);
        }
        say("another", mevo::MessageIcon::Warning);
        say("again", mevo::MessageIcon::Warning);
        say("again", mevo::MessageIcon::Critical);
        QTRY_COMPARE(service.shown, QStringList({"dialog-warning|灵犀听写|again|60000"_s,
                                                 "dialog-warning|灵犀听写|another|60000"_s,
                                                 "dialog-error|灵犀听写|again|60000"_s}));
        bus.unregisterService("org.freedesktop.Notifications"_s);
        bus.unregisterObject("/org/freedesktop/Notifications"_s);
    }

    /// How long a message stands: its time, or until it makes room; not when nobody could show it.
    void standingMessages()
    {
        mevo::StandingMessages standing;
        qint64 now = 5000;
        const auto take = [&](const char *text, bool alone, int length = 3000) {
            return standing.take(QString(), QString::fromLatin1(text), mevo::MessageIcon::None, length, now,
                                 alone);
        };
        QVERIFY(take("a", false) && !take("a", false) && take("b", false) && !take("a", false));
        now += 2999;
        QVERIFY(!take("a", false));
        now += 1;
        QVERIFY(take("a", false) && take("b", true)); // of which only the last one stands
        QVERIFY(!take("b", true) && take("a", true));
        standing.forget(QString(), "a"_s, mevo::MessageIcon::None);
        QVERIFY(take("a", true));
        QVERIFY(take("short", false, 0) && take("short", false, 0));
    }

    void waitingMessageDoesNotOutliveItsNotifications()
    {
        auto notifications = std::make_unique<mevo::DesktopNotifications>();
        std::thread other(
            [&] { notifications->message(QString(), "too late"_s, mevo::MessageIcon::None, 1); });
        other.join();
        notifications.reset();
        QCoreApplication::processEvents();
    }

    void messageFromTheTray()
    {
        // A tray as far as applications see it: the owner of its selection.
        xcb_connection_t *display = xcb_connect(nullptr, nullptr);
        QCOMPARE(xcb_connection_has_error(display), 0);
        const QByteArray selection = "_NET_SYSTEM_TRAY_S0";
        xcb_intern_atom_reply_t *tray = xcb_intern_atom_reply(
            display,
            xcb_intern_atom(display, 0, static_cast<uint16_t>(selection.size()), selection.constData()),
            nullptr);
        const xcb_window_t owner = xcb_generate_id(display);
        xcb_create_window(display, 0, owner, xcb_setup_roots_iterator(xcb_get_setup(display)).data->root, 0,
                          0, 32, 32, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, 0, 0, nullptr);
        xcb_set_selection_owner(display, owner, tray->atom, XCB_CURRENT_TIME);
        xcb_flush(display);
        std::free(tray);

        FakeNotificationService service;
        QDBusConnection bus = serviceBus();
        QVERIFY(bus.registerObject("/org/freedesktop/Notifications"_s, &service,
                                   QDBusConnection::ExportAllSlots));
        QVERIFY(bus.registerService("org.freedesktop.Notifications"_s));
        {
            mevo::DesktopNotifications notifications;
            QSystemTrayIcon icon;
            icon.setIcon(QPixmap(16, 16));
            notifications.attach(&icon);
            QTRY_VERIFY(notifications.trayAvailable());
            notifications.message(QString(), "hidden icon"_s, mevo::MessageIcon::None, 1000);
            QTRY_COMPARE(service.shown.size(), 1);

            icon.show();
            notifications.message("T"_s, "tray"_s, mevo::MessageIcon::Information, 60000);
            const auto balloon = [] {
                for (const QWidget *widget : QApplication::topLevelWidgets()) {
                    if (QByteArray(widget->metaObject()->className()) == "QBalloonTip") {
                        return true;
                    }
                }
                return false;
            };
            QTRY_VERIFY(balloon());
            QCOMPARE(service.shown.size(), 1);
            notifications.attach(nullptr);
            QVERIFY(!notifications.trayAvailable());
        }
        bus.unregisterService("org.freedesktop.Notifications"_s);
        bus.unregisterObject("/org/freedesktop/Notifications"_s);
        xcb_disconnect(display);
    }

    void powerState_data()
    {
        const Rows<QString, bool> row; // may, goes
        row("yes", "yes"_s, true);
        row("after a password", "challenge"_s, true);
        row("no", "no"_s, false);
        row("nonsense", QString(), false);
    }
    void powerState()
    {
        const auto [may, goes] = rowOf<QString, bool>();
        // logind lives in a thread of its own: the question waits for its answer.
        FakeLogind logind;
        logind.may = may;
        QThread thread;
        logind.moveToThread(&thread);
        thread.start();
        QDBusConnection bus = serviceBus();
        QVERIFY(bus.registerObject("/org/freedesktop/login1"_s, &logind, QDBusConnection::ExportAllSlots));
        QVERIFY(bus.registerService("org.freedesktop.login1"_s));
        mevo::LinuxProcesses processes("/"_s, QDBusConnection::sessionBus());
        QCOMPARE(processes.restartComputer(), goes);
        QCOMPARE(processes.shutDownComputer(), goes);
        const QStringList expected{"reboot 1"_s, "power off 1"_s};
        const auto done = [&] {
            QStringList copy;
            QMetaObject::invokeMethod(
                &logind, [&] { copy = logind.done; }, Qt::BlockingQueuedConnection);
            return copy;
        };
        QTRY_COMPARE(done(), goes ? expected : QStringList());
        bus.unregisterService("org.freedesktop.login1"_s);
        bus.unregisterObject("/org/freedesktop/login1"_s);
        thread.quit();
        thread.wait();
        QVERIFY(!processes.restartComputer()); // without logind
    }
};

QTEST_MAIN(SystemBusTest)
#include "tst_system_bus.moc"
