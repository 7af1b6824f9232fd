// The file of secrets, and the desktop's keyring: a real one, on a bus of the test's own.

#include "platform/linux/DesktopSecretStore.h"
#include "platform/linux/SecretFile.h"
#include "support/Rows.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusReply>
#include <QDBusVirtualObject>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>
#include <csignal>
#include <sys/stat.h>

using mevo::DesktopSecretStore;
using mevo::KeyringPrompt;
using mevo::SecretPlace;
using mevo::SecretStore;

using Attributes = QMap<QString, QString>;

namespace {

const QString serviceName = "org.freedesktop.secrets"_s;
const QString servicePath = "/org/freedesktop/secrets"_s;
const QString serviceInterface = "org.freedesktop.Secret.Service"_s;

int modeOf(const QString &path)
{
    struct stat info = {};
    return stat(QFile::encodeName(path).constData(), &info) == 0 ? int(info.st_mode & 0777) : -1;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Waits for an answer of a store.
template <typename Ask>
SecretStore::Found answerOf(const Ask &ask)
{
    std::optional<SecretStore::Found> got;
    QObject context;
    ask(&context, [&got](const SecretStore::Found &answer) { got = answer; });
    if (!QTest::qWaitFor([&got] { return got.has_value(); }, 60000)) {
        QTest::qFail("The store does not answer", __FILE__, __LINE__);
    }
    return got.value_or(SecretStore::Found{});
}

SecretStore::Found read(SecretStore &store, KeyringPrompt prompt = KeyringPrompt::Allowed)
{
    return answerOf([&](QObject *context, const auto &done) { store.read(prompt, context, done); });
}

/// What was there goes to `old`, if it has been asked for.
SecretStore::Found change(SecretStore &store, const SecretStore::Change &change,
                          QList<QByteArray> *old = nullptr, KeyringPrompt prompt = KeyringPrompt::Allowed)
{
    return answerOf([&](QObject *context, const auto &done) {
        store.change(prompt,
                     {[change, old](const QList<QByteArray> &texts) {
                          if (old != nullptr) {
                              *old = texts;
                          }
                          return change;
                      },
                      [change](const QByteArray &waiting) {
                          const QList<QByteArray> waits = waiting.split(';');
                          return waits.value(waits.size() - 2, "none") == change.text
                                     ? waiting
                                     : waiting + change.text + ';';
                      }},
                     context, done);
    });
}

/// Where a text has been kept.
SecretPlace write(SecretStore &store, const QByteArray &secret)
{
    const SecretStore::Found found = change(store, {secret, {}});
    return found.answered && found.texts == QList<QByteArray>({secret}) ? found.place : SecretPlace::Nowhere;
}

bool remove(SecretStore &store)
{
    return change(store, {}).answered;
}

/// A keyring that is there and answers nothing, or a fault.
class BadKeyring : public QDBusVirtualObject
{
public:
    explicit BadKeyring(const QDBusConnection &bus)
        : m_bus(bus)
    {
        if (!m_bus.registerVirtualObject(servicePath, this, QDBusConnection::SubPath) ||
            !m_bus.registerService(serviceName)) {
            qFatal("The bus does not take the keyring");
        }
    }
    ~BadKeyring() override
    {
        m_bus.unregisterService(serviceName);
        m_bus.unregisterObject(servicePath);
    }
    Q_DISABLE_COPY(BadKeyring)
    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        members.append(message.member());
        if (fault.isEmpty()) {
            message.setDelayedReply(true);
        } else {
            connection.send(message.createErrorReply(fault, "said by the test"_s));
        }
        return true;
    }
    QString fault;
    QStringList members; ///< that were called

private:
    QDBusConnection m_bus;
};

} // namespace

class TestSecretStore : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    QProcess m_daemon; ///< of the bus
    QProcess m_keyring;
    QByteArray m_bus;
    QString path() const { return m_folder.filePath("deeper/accounts.json"_s); }
    QString waiting() const { return path() + ".waiting"_s; }

    QDBusConnection bus() const
    {
        return QDBusConnection::connectToBus(QString::fromLatin1(m_bus), "of the test"_s);
    }
    void endKeyring()
    {
        m_keyring.terminate();
        m_keyring.waitForFinished(20000);
        QTRY_VERIFY(!bus().interface()->isServiceRegistered(serviceName).value());
    }
    /// Its keyring is unlocked by an empty password.
    void startKeyring()
    {
        m_keyring.start("gnome-keyring-daemon"_s, {"--foreground"_s, "--unlock"_s, "--components=secrets"_s});
        QVERIFY(m_keyring.waitForStarted());
        m_keyring.write("\n");
        m_keyring.closeWriteChannel();
        QTRY_VERIFY_WITH_TIMEOUT(bus().interface()->isServiceRegistered(serviceName).value(), 20000);
    }
    void lockKeyring() const
    {
        QDBusInterface service(serviceName, servicePath, serviceInterface, bus());
        const QDBusReply<QDBusObjectPath> keyring = service.call("ReadAlias"_s, "default"_s);
        QVERIFY(keyring.isValid());
        const QDBusMessage locked =
            service.call("Lock"_s, QVariant::fromValue(QList<QDBusObjectPath>{keyring.value()}));
        QVERIFY2(locked.type() == QDBusMessage::ReplyMessage, qPrintable(locked.errorMessage()));
    }
    /// How many secrets of the program the keyring holds, whatever they are.
    int itemsInKeyring() const
    {
        QDBusInterface service(serviceName, servicePath, serviceInterface, bus());
        const QDBusMessage found = service.call(
            "SearchItems"_s, QVariant::fromValue(Attributes{{"xdg:schema"_s, "org.mevoinput.Accounts"_s}}));
        return found.arguments().isEmpty()
                   ? -1
                   : qdbus_cast<QList<QDBusObjectPath>>(found.arguments().first()).size();
    }

private Q_SLOTS:
    void initTestCase()
    {
        // A bus of its own that starts no services, beside folders of its own.
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_folder.path()));
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_folder.filePath("data"_s)));
        qputenv("HOME", QFile::encodeName(m_folder.path()));
        const QString socket = m_folder.filePath("own-bus"_s);
        QFile config(m_folder.filePath("bus.conf"_s));
        QVERIFY(config.open(QIODevice::WriteOnly));
        config.write("<!DOCTYPE busconfig PUBLIC '-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN' "
                     "'http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd'>\n"
                     "<busconfig><type>session</type><listen>unix:path=" +
                     QFile::encodeName(socket) +
                     "</listen><policy context='default'><allow send_destination='*' eavesdrop='true'/>"
                     "<allow eavesdrop='true'/><allow own='*'/></policy></busconfig>\n");
        config.close();
        m_daemon.start("dbus-daemon"_s, {"--nofork"_s, "--config-file"_s, config.fileName()});
        QVERIFY(m_daemon.waitForStarted());
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(socket), 20000);
        m_bus = "unix:path=" + QFile::encodeName(socket);
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus);
        qDBusRegisterMetaType<Attributes>();
        QTRY_VERIFY(bus().isConnected());
    }
    void init()
    {
        QVERIFY(!QFile::exists(path()) || QFile::remove(path()));
        QVERIFY(!QFile::exists(waiting()) || QFile::remove(waiting()));
    }

    void file()
    {
        QCOMPARE(mevo::readSecretFile(path()), std::make_optional(QByteArray()));
        QVERIFY(mevo::writeSecretFile(path(), "first"));
        QCOMPARE(modeOf(path()), 0600);
        QVERIFY(
            QFile::setPermissions(path(), QFile::permissions(path()) | QFile::ReadGroup | QFile::ReadOther));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("others could read"_s));
        QCOMPARE(mevo::readSecretFile(path()), std::make_optional(QByteArray("first")));
        QCOMPARE(modeOf(path()), 0600);
        QVERIFY(QFile::setPermissions(path(), QFile::permissions(path()) | QFile::ReadOther));
        QVERIFY(mevo::writeSecretFile(path(), "second"));
        QCOMPARE(modeOf(path()), 0600);
        QCOMPARE(contentOf(path()), QByteArray("second"));
        QCOMPARE(QFileInfo(path()).dir().entryList(QDir::Files).size(), 1);
        QVERIFY(mevo::writeSecretFile(path(), {}));
        QVERIFY(!QFile::exists(path()));
        QVERIFY(mevo::writeSecretFile(path(), {}));
    }

    void unusableFile()
    {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("cannot be read"_s));
        QCOMPARE(mevo::readSecretFile(m_folder.path()), std::optional<QByteArray>());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("cannot be written"_s));
        QVERIFY(!mevo::writeSecretFile("/proc/none/accounts.json"_s, "secret"));
    }

    void fileOnly()
    {
        DesktopSecretStore store(path(), true);
        QCOMPARE(write(store, "own"), SecretPlace::File);
        QCOMPARE(contentOf(path()), QByteArray("own"));
        const SecretStore::Found found = read(store);
        QVERIFY(found.answered);
        QCOMPARE(found.texts, QList<QByteArray>({"own"}));
        QCOMPARE(found.place, SecretPlace::File);
        QVERIFY(remove(store));
        QVERIFY(!QFile::exists(path()));
    }

    /// Texts that are set aside stay, each once.
    void asideInFiles()
    {
        DesktopSecretStore store(path(), true);
        const auto aside = [this](const QByteArray &text) {
            return path() + ".unreadable-"_s + mevo::secretAsideName(text);
        };
        for (const char *text : {"one", "another", "one"}) {
            QVERIFY(mevo::writeSecretFile(path(), text));
            QList<QByteArray> old;
            QVERIFY(change(store, {"new", {text}}, &old).answered);
            QCOMPARE(old, QList<QByteArray>({text}));
            QCOMPARE(contentOf(path()), QByteArray("new"));
        }
        QCOMPARE(contentOf(aside("one")), QByteArray("one"));
        QCOMPARE(contentOf(aside("another")), QByteArray("another"));
        QCOMPARE(modeOf(aside("one")), 0600);
        QCOMPARE(QFileInfo(path()).dir().entryList(QDir::Files).size(), 3);
        QVERIFY(QFile::remove(aside("one")) && QFile::remove(aside("another")));
    }

    void withoutBus()
    {
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        withoutKeyring();
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus);
    }

    void withoutKeyring()
    {
        DesktopSecretStore store(path(), false);
        const SecretStore::Found nothing = read(store);
        QVERIFY(nothing.answered && nothing.keyringAbsent);
        QCOMPARE(nothing.place, SecretPlace::Nowhere);
        QCOMPARE(write(store, "own"), SecretPlace::File);
        QCOMPARE(read(store).texts, QList<QByteArray>({"own"}));
        QVERIFY(remove(store));
        QVERIFY(!QFile::exists(path()));
    }

    void badKeyring_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::newRow("silent") << QString();
        QTest::newRow("fails") << "org.freedesktop.DBus.Error.Failed"_s;
        QTest::newRow("breaks off") << "org.freedesktop.DBus.Error.NoReply"_s;
        QTest::newRow("goes just now") << "org.freedesktop.DBus.Error.ServiceUnknown"_s;
        QTest::newRow("has gone") << "org.freedesktop.DBus.Error.NameHasNoOwner"_s;
        QTest::newRow("is not started") << "org.freedesktop.DBus.Error.Spawn.ServiceNotFound"_s;
    }
    /// A keyring that is not to be reached may still hold the accounts: nothing is done elsewhere but to let
    /// the changes wait, until it can be done.
    void badKeyring()
    {
        QFETCH(QString, fault);
        DesktopSecretStore store(path(), false);
        store.answerLimitMs = 500;
        QVERIFY(mevo::writeSecretFile(path(), "kept"));
        {
            BadKeyring keyring(bus());
            keyring.fault = fault;
            SecretStore::Found found = read(store);
            QVERIFY(!found.answered && !found.waiting && !found.keyringAbsent);
            QCOMPARE(found.place, SecretPlace::Desktop);
            QCOMPARE(found.texts, QList<QByteArray>({"kept"}));
            QList<QByteArray> old{"not asked"};
            QVERIFY(!change(store, {"new", {}}, &old).answered);
            found = change(store, {"newer", {}}, &old);
            QVERIFY(!found.answered && found.waiting);
            QCOMPARE(found.texts, QList<QByteArray>({"kept", "new;newer;"}));
            QCOMPARE(old, QList<QByteArray>({"not asked"}));
            QCOMPARE(contentOf(path()), QByteArray("kept"));
            QCOMPARE(contentOf(waiting()), QByteArray("new;newer;"));
            QCOMPARE(modeOf(waiting()), 0600);
        }
        const SecretStore::Found found = read(store);
        QVERIFY(found.answered && found.waiting);
        QCOMPARE(found.place, SecretPlace::File);
        QList<QByteArray> old;
        QVERIFY(change(store, {"joined", {}}, &old).answered);
        QCOMPARE(old, QList<QByteArray>({"kept", "new;newer;"}));
        QCOMPARE(contentOf(path()), QByteArray("joined"));
        QVERIFY(!QFile::exists(waiting()));
    }

    /// The end of the program does not hang on a keyring that is silent, and loses nothing.
    void endsBesideASilentKeyring()
    {
        const BadKeyring keyring(bus());
        QElapsedTimer took;
        {
            DesktopSecretStore store(path(), false);
            QObject context;
            store.change(KeyringPrompt::Allowed,
                         {[](const QList<QByteArray> &) {
                              return SecretStore::Change{"kept", {}};
                          },
                          [](const QByteArray &) { return QByteArray("waits"); }},
                         &context, [](const SecretStore::Found &) {});
            took.start();
        }
        QVERIFY(took.elapsed() < 20000);
        QCOMPARE(contentOf(waiting()), QByteArray("waits"));
        QVERIFY(!QFile::exists(path()));
    }

    void unreadableFile()
    {
        DesktopSecretStore store(path(), true);
        QVERIFY(QDir().mkpath(path()));
        const SecretStore::Found found = read(store);
        QVERIFY(!found.answered);
        QCOMPARE(found.place, SecretPlace::File);
        QVERIFY(change(store, {"new", {}}).waiting);
        QVERIFY(QDir().rmdir(path()));
        QCOMPARE(read(store).texts, QList<QByteArray>({"new;"}));
    }

    /// The time that a call may take begins when it is its turn.
    void ownTime()
    {
        const BadKeyring keyring(bus());
        DesktopSecretStore store(path(), false);
        store.answerLimitMs = 500;
        QObject context;
        int first = 0; // what a call asks of the keyring
        store.read(KeyringPrompt::None, &context,
                   [&](const SecretStore::Found &) { first = keyring.members.size(); });
        QVERIFY(!read(store).answered);
        QVERIFY(first > 0);
        QVERIFY(keyring.members.size() > first);
    }

    void answersNobodyThatHasGone()
    {
        bool heard = false;
        DesktopSecretStore store(path(), true);
        auto asker = std::make_unique<QObject>();
        store.read(KeyringPrompt::None, asker.get(), [&heard](const SecretStore::Found &) { heard = true; });
        asker.reset();
        QCOMPARE(read(store).answered, true); // behind it
        QVERIFY(!heard);
    }

    /// What is being kept when the program ends is kept.
    void keepsToTheEnd()
    {
        {
            DesktopSecretStore store(path(), true);
            QObject context;
            for (int i = 0; i < 20; ++i) {
                store.change(KeyringPrompt::None,
                             {[i](const QList<QByteArray> &) {
                                  return SecretStore::Change{"secret " + QByteArray::number(i), {}};
                              },
                              [](const QByteArray &before) { return before; }},
                             &context, [](const SecretStore::Found &) {});
            }
        }
        QCOMPARE(contentOf(path()), QByteArray("secret 19"));
    }

    void keyring()
    {
        if (QStandardPaths::findExecutable("gnome-keyring-daemon"_s).isEmpty()) {
            QSKIP("There is no keyring");
        }
        startKeyring();
        QVERIFY(mevo::writeSecretFile(path(), "of a time without it"));
        DesktopSecretStore store(path(), false);
        QTRY_COMPARE_WITH_TIMEOUT(write(store, "in the keyring"), SecretPlace::Desktop, 20000);
        QVERIFY(!QFile::exists(path()));
        QCOMPARE(read(store).texts, QList<QByteArray>({"in the keyring"}));
        {
            DesktopSecretStore another(path(), false); // of the next start
            const SecretStore::Found found = read(another);
            QCOMPARE(found.texts, QList<QByteArray>({"in the keyring"}));
            QCOMPARE(found.place, SecretPlace::Desktop);
        }
        QCOMPARE(write(store, "another"), SecretPlace::Desktop);
        QCOMPARE(read(store).texts, QList<QByteArray>({"another"}));
        QCOMPARE(itemsInKeyring(), 1);

        // Of a time without it there is a file as well; both count, and one is left.
        QVERIFY(mevo::writeSecretFile(path(), "newer"));
        QCOMPARE(read(store).texts, QList<QByteArray>({"another", "newer"}));
        QList<QByteArray> old;
        QCOMPARE(change(store, {"joined", {"newer"}}, &old).place, SecretPlace::Desktop);
        QCOMPARE(old, QList<QByteArray>({"another", "newer"}));
        QVERIFY(!QFile::exists(path()));
        QCOMPARE(read(store).texts, QList<QByteArray>({"joined"}));
        QCOMPARE(itemsInKeyring(), 2); // and what was set aside

        // What cannot be done in both places is not done in one.
        QVERIFY(QDir().mkpath(path() + "/file"_s));
        QVERIFY(!remove(store));
        QVERIFY(QDir(path()).removeRecursively());
        QVERIFY(QFile::remove(waiting()));
        QCOMPARE(read(store).texts, QList<QByteArray>({"joined"}));

        // What is set aside is there once, however often that is tried.
        for (int i = 0; i < 2; ++i) {
            QVERIFY(change(store, {"joined", {"newer", "another one"}}).answered);
        }
        QCOMPARE(itemsInKeyring(), 3);
    }

    /// A run that ends between two places leaves no older change as the newest.
    void aChangeWaitsWhileItIsDone_data()
    {
        const Rows<QByteArray, QByteArray> row; // file, older
        row("an older one waits", QByteArray(), QByteArray("older;"));
        row("there is a file as well", QByteArray("of a time without it"), QByteArray());
    }
    void aChangeWaitsWhileItIsDone()
    {
        const auto [file, older] = rowOf<QByteArray, QByteArray>();
        if (m_keyring.state() != QProcess::Running) {
            QSKIP("There is no keyring");
        }
        QVERIFY(mevo::writeSecretFile(path(), file) && mevo::writeSecretFile(waiting(), older));
        DesktopSecretStore store(path(), false);
        const auto keyring = static_cast<pid_t>(m_keyring.processId());
        SecretStore::Found found;
        QObject context;
        store.change(KeyringPrompt::Allowed,
                     {[keyring](const QList<QByteArray> &) {
                          kill(keyring, SIGSTOP); // it takes the text later
                          return SecretStore::Change{"new", {}};
                      },
                      [](const QByteArray &waits) { return waits + "new;"; }},
                     &context, [&found](const SecretStore::Found &answer) { found = answer; });
        QTRY_COMPARE(contentOf(waiting()), older + "new;");
        QVERIFY(!found.answered);
        kill(keyring, SIGCONT);
        QTRY_VERIFY(found.answered);
        QVERIFY(!QFile::exists(waiting()) && !QFile::exists(path()));
        QCOMPARE(read(store).texts, QList<QByteArray>({"new"}));
    }

    /// What a keyring holds is neither forgotten nor written elsewhere while it is locked or away.
    void keyringThatIsLocked()
    {
        if (m_keyring.state() != QProcess::Running) {
            QSKIP("There is no keyring");
        }
        DesktopSecretStore store(path(), false);
        store.answerLimitMs = 5000; // nobody answers its prompt
        QCOMPARE(write(store, "kept"), SecretPlace::Desktop);
        lockKeyring();
        for (const KeyringPrompt prompt : {KeyringPrompt::None, KeyringPrompt::Allowed}) {
            QVERIFY(!read(store, prompt).answered);
            QVERIFY(!change(store, {"new", {}}, nullptr, prompt).answered);
            QVERIFY(!change(store, {}, nullptr, prompt).answered);
        }
        endKeyring();
        QVERIFY(!read(store).answered);
        QVERIFY(change(store, {"new", {}}).waiting);
        QVERIFY(!QFile::exists(path()));

        startKeyring();
        const QList<QByteArray> both{"kept", "new;;new;;new;"};
        QTRY_COMPARE_WITH_TIMEOUT(read(store).texts, both, 20000);
        QCOMPARE(write(store, "new"), SecretPlace::Desktop);
        QVERIFY(remove(store));
        QCOMPARE(read(store).place, SecretPlace::Nowhere);
        QCOMPARE(itemsInKeyring(), 2); // what was set aside
    }

    void cleanupTestCase()
    {
        for (QProcess *process : {&m_keyring, &m_daemon}) {
            process->terminate();
            process->waitForFinished(5000);
        }
    }
};

QTEST_GUILESS_MAIN(TestSecretStore)
#include "tst_secret_store.moc"
