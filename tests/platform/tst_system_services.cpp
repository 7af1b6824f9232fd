#include "base/RuntimePath.h"
#include "platform/linux/FlockSingleInstance.h"
#include "platform/linux/InstanceDoor.h"
#include "platform/linux/LinuxElevation.h"
#include "platform/linux/LinuxProcesses.h"
#include "platform/linux/LinuxSystemFacts.h"
#include "platform/linux/NoRegistry.h"
#include "platform/linux/RouteNetworkState.h"
#include "platform/linux/WindowsLocaleId.h"
#include "platform/linux/XdgStartupEntry.h"
#include "support/Rows.h"
#include "support/ScratchHome.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <memory>
#include <thread>

namespace {

ScratchHome home;

QString lockName()
{
    return "mevoinput-test-%1"_s.arg(qEnvironmentVariable("MEVO_TEST_LOCK"));
}

/// The other process of the lock's test: takes the lock, says so and waits to be ended.
int holdLock()
{
    mevo::FlockSingleInstance lock;
    const bool taken = lock.acquire(lockName());
    std::puts(taken ? "taken" : "busy");
    std::fflush(stdout);
    if (taken) {
        std::getchar();
    }
    return 0;
}

/// Another start: says "ANSWER" of the process that holds the lock, "closed", "silent" or "nobody".
int callHolder(const QByteArray &message, int answerMs)
{
    const auto result = mevo::FlockSingleInstance().call(lockName(), message, {20000, answerMs});
    std::puts(result.closed                    ? "closed"
              : !result.answer.isEmpty()       ? result.answer.constData()
              : result.reached && result.taken ? "silent"
                                               : "nobody");
    return 0;
}

/// What another start says of calling; this one's event loop goes on meanwhile.
QByteArray callFromElsewhere(const QString &message, int answerMs = 20000)
{
    QProcess caller;
    caller.start(QCoreApplication::applicationFilePath(), {"--call"_s, message, QString::number(answerMs)});
    [&caller] { QTRY_COMPARE_WITH_TIMEOUT(caller.state(), QProcess::NotRunning, 30000); }();
    return caller.readAllStandardOutput().trimmed();
}

QByteArray answer(QProcess &process)
{
    process.start(QCoreApplication::applicationFilePath(), {"--hold-lock"_s});
    while (!process.canReadLine() && process.waitForReadyRead(10000)) {
    }
    return process.readLine().trimmed();
}

void write(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), static_cast<qint64>(content.size()));
}

void writeScript(const QString &path, const QByteArray &body)
{
    write(path, "#!/bin/sh\n" + body);
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class SystemServicesTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void siblings_data()
    {
        const Rows<QString, QString> row; // name, file
        row("beside", "\\KeypadHost.exe"_s, "bin/KeypadHost"_s);
        row("above", "\\..\\HW\\PenPadHost.exe"_s, "HW/PenPadHost"_s);
        row("not ASCII", "校时助手.exe"_s, "bin/校时助手"_s);
        row("no suffix", "/Tool"_s, "bin/Tool"_s);
    }
    void siblings()
    {
        const auto [name, file] = rowOf<QString, QString>();
        const QString path = m_folder->filePath(file);
        const QString result = m_folder->filePath("result"_s);
        mevo::LinuxProcesses processes(m_folder->filePath("bin"_s));
        QVERIFY(!processes.startSibling(name, {}, false)); // not there
        if (name.startsWith(QLatin1Char('\\'))) {
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression("is not installed$"_s));
            QVERIFY(!processes.openElevated(name, {})); // and nobody is asked for a password
        }
        write(path, "#!/bin/sh\n");
        QVERIFY(!processes.startSibling(name, {}, false)); // not a program
        writeScript(path, "printf '%s|' \"$@\" > '" + QFile::encodeName(result) + ".part'; mv '" +
                              QFile::encodeName(result) + ".part' '" + QFile::encodeName(result) + "'\n");
        const QStringList arguments{"ORVKBAppHide"_s, "a b;$(touch x)"_s};
        QVERIFY(processes.startSibling(name, arguments, true));
        QTRY_COMPARE(read(result), QByteArray("ORVKBAppHide|a b;$(touch x)|"));
    }

    void capture()
    {
        mevo::LinuxProcesses processes(m_folder->path());
        const QString tool = m_folder->filePath("tool"_s);
        const auto run = [&](const QByteArray &body, int timeout) {
            writeScript(tool, body);
            return processes.capture(tool, {"$HOME"_s}, timeout);
        };
        auto result = run("echo out \"$1\"; echo err >&2; exit 3", 10000);
        QVERIFY(result.finished);
        QCOMPARE(result.exitCode, 3);
        QCOMPARE(result.output, "out $HOME\nerr\n"_s);

        QElapsedTimer timer;
        timer.start();
        result = run("echo begun; exec sleep 100", 300);
        QVERIFY(!result.finished);
        QCOMPARE(result.output, "begun\n"_s);
        QVERIFY(timer.elapsed() < 5000);

        result = run("exec head -c 5000000 /dev/zero", 10000);
        QVERIFY(result.finished);
        QCOMPARE(result.output.size(), mevo::LinuxProcesses::MaxCapturedBytes);

        result = run("read line; echo \"[$line]\"", 10000); // nobody is there to type
        QCOMPARE(result.output, "[]\n"_s);

        QVERIFY(!run("kill -9 $$", 10000).finished);
        QVERIFY(!processes.capture(m_folder->filePath("missing"_s), {}, 1000).finished);
        QVERIFY(!processes.startDetached(m_folder->filePath("missing"_s), {}));
    }

    void killsByName_data()
    {
        const Rows<QString, QString, QString> row; // file, image, container
        row("script, as Windows names it", "MevoVoice"_s, "MevoVoice.exe"_s, QString());
        row("name longer than the kernel keeps", "MevoSpeechInputTool"_s, "MevoSpeechInputTool"_s, QString());
        row("with the suffix, other case", "MevoOddCase.exe"_s, "mevooddcase.EXE"_s, QString());
        row("in a container", "MevoInside"_s, "MevoInside"_s, "flatpak"_s);
    }
    void killsByName()
    {
        const auto [file, image, container] = rowOf<QString, QString, QString>();
        mevo::LinuxProcesses processes(m_folder->path());
        QVERIFY(!processes.isRunning(image));
        QVERIFY(!processes.killByImageName(image));
        writeScript(m_folder->filePath(file), "read line\n");
        const auto restore = qScopeGuard([was = qgetenv("DISPLAY")] { qputenv("DISPLAY", was); });
        qputenv("DISPLAY", ":6");
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DISPLAY"_s, ":6.1"_s);
        environment.insert("container"_s, container);
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start(m_folder->filePath(file), QStringList());
        QVERIFY(process.waitForStarted());
        QTRY_VERIFY(processes.isRunning(image));
        qputenv("DISPLAY", ":61");
        QCOMPARE(processes.isRunning(image), !container.isEmpty()); // else it is another desktop's
        QVERIFY(!container.isEmpty() || !processes.killByImageName(image));
        qputenv("DISPLAY", ":6.0");
        QVERIFY(!processes.isRunning(image.left(5)));
        QVERIFY(processes.killByImageName(image));
        QVERIFY(!processes.isRunning(image)); // it waits for the end
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);
    }

    void localeIds_data()
    {
        QTest::addColumn<int>("id");
        QTest::newRow("zh_CN") << 0x0804;
        QTest::newRow("zh_SG") << 0x1004;
        QTest::newRow("zh_TW") << 0x0404;
        QTest::newRow("zh_Hant_HK") << 0x0C04;
        QTest::newRow("zh_Hant_MO") << 0x1404;
        QTest::newRow("zh_Hant") << 0x0404;
        QTest::newRow("zh") << 0x0804;
        QTest::newRow("en_US") << 0x0409;
        QTest::newRow("en_GB") << 0x0809;
        QTest::newRow("fr_BE") << 0x040C;
        QTest::newRow("C") << 0x0409;
        QTest::newRow("is_IS") << 0x0409;
    }
    void localeIds()
    {
        QTEST(mevo::windowsLocaleId(QLocale(QString::fromLatin1(QTest::currentDataTag()))), "id");
    }

    void computerIdIsStable()
    {
        const QString machine = m_folder->filePath("machine-id"_s);
        const QString own = m_folder->filePath("deep/own-id"_s);
        const auto id = [&] { return mevo::LinuxSystemFacts({machine}, own).computerId(); };
        const QString random = id();
        QCOMPARE(random.size(), 32);
        QCOMPARE(id(), random);
        write(machine, "uninitialized\n");
        QCOMPARE(id(), random);
        write(own, "damaged");
        const QString second = id();
        QVERIFY(second != random);
        QCOMPARE(id(), second);

        const QByteArray secret = "0123456789abcdef0123456789abcdef";
        write(machine, secret + "\n");
        QCOMPARE(id().size(), 32);
        QVERIFY(id() != QString::fromLatin1(secret));
        QCOMPARE(id(), id());
    }

    void facts()
    {
        const mevo::LinuxSystemFacts facts;
        QVERIFY(!facts.isXpClass());
        QVERIFY(facts.compilerRuntimeInstalled());
        QVERIFY(facts.freeSpaceMiB() > 0);
        QVERIFY(mevo::LinuxSystemFacts::freeSpaceMiB(m_folder->filePath("not/made yet"_s)) > 0);
        QVERIFY(facts.localeId() > 0);
        QVERIFY(!mevo::NoRegistry().value("HKLM"_s, "x"_s).has_value());
    }

    void elevationMark()
    {
        const QString file = m_folder->filePath("conf/mevo.conf"_s);
        mevo::LinuxElevation mark(file, "/opt/语音 input"_s);
        QVERIFY(!mark.isSet());
        QVERIFY(mark.clear());
        QVERIFY(mark.set());
        QVERIFY(mark.isSet());
        QVERIFY(!mevo::LinuxElevation(file, "/elsewhere"_s).isSet());
        QVERIFY(mark.clear());
        QVERIFY(!mark.isSet());
        QVERIFY(!mevo::LinuxElevation("/proc/none/mevo.conf"_s, "/x"_s).set());
    }

    void startupEntry()
    {
        const QString name = "灵犀听写系统.lnk"_s;
        const QString path = m_folder->filePath("autostart/灵犀听写系统.desktop"_s);
        mevo::XdgStartupEntry entry(m_folder->filePath("autostart"_s), "/opt/a \"b\" $c 100%/mevoinput"_s);
        QVERIFY(!entry.exists(name));
        QVERIFY(entry.clear(name));
        QVERIFY(entry.set(name));
        QVERIFY(entry.exists(name));
        const QByteArray content = read(path);
        QVERIFY(content.contains("\nName=灵犀听写系统\n"));
        QVERIFY(content.contains("\nExec=\"/opt/a \\\\\"b\\\\\" \\\\$c 100%%/mevoinput\"\n"));
        write(path, content + "Hidden = true\n");
        QVERIFY(!entry.exists(name));
        QVERIFY(entry.set(name));
        QVERIFY(entry.exists(name));
        QVERIFY(entry.clear(name));
        QVERIFY(!QFile::exists(path));

        QVERIFY(!entry.set(QString()));
        QVERIFY(entry.set("../../x\ny"_s));
        QVERIFY(QFile::exists(m_folder->filePath("autostart/.._.._x_y.desktop"_s)));
        QVERIFY(!mevo::XdgStartupEntry("/proc/none"_s, "/x"_s).set(name));
    }

    void network_data()
    {
        using Connection = mevo::NetworkState::Connection;
        const Rows<QByteArray, QByteArray, QByteArray, int> add; // routes4, routes6, proxy, connection
        const QByteArray head = "Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\tMTU\n";
        const QByteArray lan = "eth0\t00000000\t0100A8C0\t0003\t0\t0\t100\t00000000\t0\t0\t0\n";
        const QByteArray near = "eth0\t0000A8C0\t00000000\t0001\t0\t0\t100\t00FFFFFF\t0\t0\t0\n";
        const QByteArray modem = "wwan0\t00000000\t0100A8C0\t0003\t0\t0\t50\t00000000\t0\t0\t0\n";
        const QByteArray unplugged = "down0\t00000000\t0100A8C0\t0003\t0\t0\t1\t00000000\t0\t0\t0\n";
        const QByteArray zero(32, '0');
        const QByteArray refused = zero + " 00 " + zero + " 00 " + zero + " ffffffff 1 0 00200200 lo\n";
        const QByteArray lan6 =
            zero + " 00 " + zero + " 00 fe80" + QByteArray(28, '1') + " 00000400 1 0 00000003 eth0\n";
        const auto row = [&](const char *tag, const QByteArray &routes4, const QByteArray &routes6,
                             const char *proxy, Connection connection) {
            add(tag, routes4, routes6, QByteArray(proxy), static_cast<int>(connection));
        };
        row("lan", head + near + lan, refused, "", Connection::Lan);
        row("modem preferred by its metric", head + lan + modem, "", "", Connection::Modem);
        row("cable pulled", head + unplugged, "", "", Connection::None);
        row("cable pulled, modem left", head + unplugged + modem, "", "", Connection::Modem);
        row("only IPv6", head, lan6 + refused, "", Connection::Lan);
        row("proxy in the neighbourhood", head + near, "", "http://p:3128", Connection::Proxy);
        row("proxy, but also a way out", head + lan, "", "http://p:3128", Connection::Lan);
        row("proxy without any route", head, refused, "http://p:3128", Connection::None);
        row("neighbourhood only", head + near, refused, "", Connection::None);
        row("nothing to read", "", "", "", Connection::None);
        row("garbage", "\n\t\teth0\n00000000 \xff\n", "x y z\n", "", Connection::None);
    }
    void network()
    {
        const auto [routes4, routes6, proxy, connection] = rowOf<QByteArray, QByteArray, QByteArray, int>();
        for (const char *name : {"HTTP_PROXY", "https_proxy", "HTTPS_PROXY", "all_proxy", "ALL_PROXY"}) {
            qunsetenv(name);
        }
        qputenv("http_proxy", proxy);
        write(m_folder->filePath("proc/net/route"_s), routes4);
        write(m_folder->filePath("proc/net/ipv6_route"_s), routes6);
        write(m_folder->filePath("sys/class/net/down0/operstate"_s), "down\n");
        write(m_folder->filePath("sys/class/net/eth0/operstate"_s), "up\n");
        QCOMPARE(static_cast<int>(mevo::RouteNetworkState({}, m_folder->path()).connection()), connection);
        QCOMPARE(mevo::RouteNetworkState([] { return true; }, m_folder->path()).connection(),
                 mevo::NetworkState::Connection::Lan);
    }

    void oneInstance_data() { flagRows("runtime folder", "common folder"); }
    void oneInstance()
    {
        const auto [runtimeFolder] = rowOf<bool>();
        qputenv("XDG_RUNTIME_DIR", runtimeFolder ? QFile::encodeName(m_folder->path()) : QByteArray());
        qputenv("MEVO_TEST_LOCK", QByteArray::number(QCoreApplication::applicationPid()));
        QProcess holder;
        QCOMPARE(answer(holder), QByteArray("taken"));
        mevo::FlockSingleInstance lock;
        QVERIFY(!lock.acquire(lockName()));
        holder.kill(); // without a chance to clean up
        QVERIFY(holder.waitForFinished());
        QVERIFY(lock.acquire(lockName()));
        QVERIFY(lock.acquire(lockName()));
        QList<QByteArray> heard;
        lock.whenCalled(20,
                        [&heard](const QByteArray &message, const mevo::SingleInstance::CallAnswer &reply) {
                            heard.append(message);
                            reply("answer to " + message);
                        });

        // A child does not keep the lock of the program that started it.
        QProcess child;
        child.start("cat"_s, QStringList());
        QVERIFY(child.waitForStarted());
        QProcess second;
        QCOMPARE(answer(second), QByteArray("busy"));
        QVERIFY(second.state() == QProcess::NotRunning || second.waitForFinished());
        QCOMPARE(callFromElsewhere("hello"_s), QByteArray("answer to hello"));
        QCOMPARE(callFromElsewhere("more than twenty bytes of it"_s), QByteArray("closed"));
        QCOMPARE(heard, QList<QByteArray>{"hello"});
        lock.whenCalled(20, [](const QByteArray &, const mevo::SingleInstance::CallAnswer &) {});
        QCOMPARE(callFromElsewhere("hello"_s, 100), QByteArray("silent"));
        // A holder that is going: who is there already is told so at once, who comes finds nobody.
        lock.whenCalled(20, [&lock](const QByteArray &, const mevo::SingleInstance::CallAnswer &) {
            QTimer::singleShot(0, QCoreApplication::instance(), [&lock] { lock.closeDoor(); });
        });
        QCOMPARE(callFromElsewhere("hello"_s), QByteArray("closed"));
        QCOMPARE(callFromElsewhere("hello"_s), QByteArray("nobody"));
        {
            QProcess during;
            QCOMPARE(answer(during), QByteArray("busy")); // the lock is another matter
            QVERIFY(during.state() == QProcess::NotRunning || during.waitForFinished());
        }
        lock.release();
        QProcess third;
        QCOMPARE(answer(third), QByteArray("taken"));
        third.closeWriteChannel();
        QVERIFY(third.waitForFinished());
        QCOMPARE(child.state(), QProcess::Running);
        child.closeWriteChannel();
        QVERIFY(child.waitForFinished());
    }
    /// A program from before the user's own folder was looked for has its lock in the common one.
    void anOlderInstanceElsewhere()
    {
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_folder->path()));
        qputenv("MEVO_TEST_LOCK", QByteArray::number(QCoreApplication::applicationPid()) + "-older");
        QFile file(mevo::runtimePaths(lockName(), ".lock"_s).last());
        QVERIFY(file.open(QIODevice::ReadWrite));
        QCOMPARE(flock(file.handle(), LOCK_EX | LOCK_NB), 0);
        const mevo::InstanceDoor door(
            mevo::runtimePaths(lockName(), ".socket"_s).last(), 20,
            [](const QByteArray &message, const auto &reply) { reply("older one: " + message); });
        mevo::FlockSingleInstance lock;
        QVERIFY(!lock.acquire(lockName()));
        QCOMPARE(callFromElsewhere("hello"_s), QByteArray("older one: hello"));
        file.close(); // it has ended, and its file stays
        QVERIFY(lock.acquire(lockName()));
        QVERIFY(file.remove());
    }

    void callersWhoSayTooMuchOrTooLittle_data()
    {
        // pieces, leaves (behind the last piece, without a line end), expected, log
        const Rows<QList<QByteArray>, bool, QList<QByteArray>, QByteArray> row;
        using Pieces = QList<QByteArray>;
        row("a line", Pieces{"abc\n"}, false, Pieces{"abc"}, QByteArray());
        row("in pieces", Pieces{"a", "b", "c\n"}, false, Pieces{"abc"}, QByteArray());
        row("the longest", Pieces{"0123456789\n"}, false, Pieces{"0123456789"}, QByteArray());
        row("nothing in it", Pieces{"\n"}, false, Pieces{""}, QByteArray());
        row("two lines", Pieces{"a\nb\n"}, false, Pieces{"a"}, QByteArray());
        row("too long", Pieces{"01234567890"}, false, Pieces{}, QByteArray("too long"));
        row("much too long", Pieces{QByteArray(200000, 'x') + '\n'}, false, Pieces{}, QByteArray("too long"));
        row("no line end", Pieces{"abc"}, false, Pieces{}, QByteArray("no message has come"));
        row("not a word", Pieces{}, false, Pieces{}, QByteArray("no message has come"));
        row("gone at once", Pieces{}, true, Pieces{}, QByteArray());
    }
    void callersWhoSayTooMuchOrTooLittle()
    {
        const auto [pieces, leaves, expected, log] =
            rowOf<QList<QByteArray>, bool, QList<QByteArray>, QByteArray>();
        const QString path = m_folder->filePath("door"_s);
        QList<QByteArray> heard;
        mevo::InstanceDoor::callerTimeMs = 200;
        mevo::InstanceDoor door(path, 10, [&heard](const QByteArray &message, const auto &reply) {
            heard.append(message);
            reply("yes");
            reply("only once");
        });
        if (!log.isEmpty()) {
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QString::fromLatin1(log)));
        }
        QLocalSocket caller;
        caller.connectToServer(path);
        for (const QByteArray &piece : pieces) {
            caller.write(piece);
            QTRY_VERIFY(caller.bytesToWrite() == 0 || caller.state() != QLocalSocket::ConnectedState);
        }
        if (leaves) {
            caller.disconnectFromServer();
        }
        QTRY_COMPARE(caller.state(), QLocalSocket::UnconnectedState);
        QCOMPARE(heard, expected);
        QCOMPARE(caller.readAll(), heard.isEmpty() ? QByteArray() : QByteArray("\nyes\n"));
    }
    /// One of an older version says nothing before its answer.
    void aHolderThatAnswersAtOnce()
    {
        QLocalServer server;
        QVERIFY(server.listen(m_folder->filePath("door"_s)));
        mevo::SingleInstance::CallResult result;
        std::atomic<bool> done{false};
        std::thread caller([&] {
            result = mevo::callInstance(server.fullServerName(), "abc", {20000, 20000});
            done = true;
        });
        [&server] { QTRY_VERIFY(server.hasPendingConnections()); }();
        server.nextPendingConnection()->write("yes\n");
        [&done] { QTRY_VERIFY_WITH_TIMEOUT(done, 30000); }();
        caller.join();
        QVERIFY(result.taken && !result.closed);
        QCOMPARE(result.answer, QByteArray("yes"));
    }
    /// A holder that is stuck is given up, and does not act on it when it comes round.
    void aHolderThatIsStuck()
    {
        const QString path = m_folder->filePath("door"_s);
        QList<QByteArray> heard;
        mevo::InstanceDoor door(path, 10,
                                [&heard](const QByteArray &message, const auto &) { heard.append(message); });
        const auto result = mevo::callInstance(path, "abc", {50, 600000}); // no event loop turns meanwhile
        QVERIFY(result.reached && !result.taken && !result.closed && result.answer.isEmpty());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("it has gone meanwhile"_s));
        QLocalSocket next;
        next.connectToServer(path);
        next.write("next\n");
        QTRY_COMPARE(heard, QList<QByteArray>{"next"});
    }
    void otherUsersAreTurnedAway()
    {
        if (geteuid() != 0) {
            QSKIP("only root can act as another user");
        }
        const QString path = m_folder->filePath("door"_s);
        mevo::InstanceDoor door(path, 10, [](const QByteArray &, const auto &) { QFAIL("heard"); });
        for (const QString &opened : {m_folder->path(), path}) {
            QCOMPARE(chmod(QFile::encodeName(opened).constData(), 0777), 0);
        }
        constexpr uid_t nobody = 65534;
        QLocalSocket caller;
        QCOMPARE(seteuid(nobody), 0);
        caller.connectToServer(path);
        const bool connected = caller.waitForConnected();
        QCOMPARE(seteuid(0), 0);
        QVERIFY(connected);
        caller.write("abc\n");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("another user"_s));
        QTRY_COMPARE(caller.state(), QLocalSocket::UnconnectedState);
    }
    void lockThatCannotBeMade()
    {
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_folder->path()));
        QVERIFY(QDir(m_folder->path()).mkdir("x.lock"_s));
        QVERIFY(mevo::FlockSingleInstance().acquire("x"_s));
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (application.arguments().value(1) == QLatin1String("--hold-lock")) {
        return holdLock();
    }
    if (application.arguments().value(1) == QLatin1String("--call")) {
        return callHolder(application.arguments().value(2).toUtf8(),
                          application.arguments().value(3).toInt());
    }
    SystemServicesTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_system_services.moc"
