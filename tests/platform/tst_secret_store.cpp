// The file of secrets, and the desktop's keyring: a real one, on a bus of the test's own.

#include "platform/linux/DesktopSecretStore.h"
#include "platform/linux/SecretFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

using mevo::DesktopSecretStore;
using mevo::SecretPlace;
using mevo::SecretStore;

namespace {

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
template <typename Answer, typename Ask>
Answer answerOf(const Ask &ask)
{
    std::optional<Answer> got;
    QObject context;
    ask(&context, [&got](const Answer &answer) { got = answer; });
    if (!QTest::qWaitFor([&got] { return got.has_value(); }, 30000)) {
        QTest::qFail("The store does not answer", __FILE__, __LINE__);
    }
    return got.value_or(Answer{});
}

SecretStore::Found read(SecretStore &store)
{
    return answerOf<SecretStore::Found>(
        [&store](QObject *context, const auto &done) { store.read(context, done); });
}

SecretPlace write(SecretStore &store, const QByteArray &secret)
{
    return answerOf<SecretPlace>(
        [&](QObject *context, const auto &done) { store.write(secret, context, done); });
}

} // namespace

class TestSecretStore : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    QProcess m_daemon; ///< of the bus
    QProcess m_keyring;
    QByteArray m_bus;
    QString path() const { return m_folder.filePath(QStringLiteral("deeper/accounts.json")); }

private Q_SLOTS:
    void initTestCase()
    {
        // A bus of its own that starts no services, beside folders of its own.
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_folder.path()));
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_folder.filePath(QStringLiteral("data"))));
        qputenv("HOME", QFile::encodeName(m_folder.path()));
        const QString socket = m_folder.filePath(QStringLiteral("own-bus"));
        QFile config(m_folder.filePath(QStringLiteral("bus.conf")));
        QVERIFY(config.open(QIODevice::WriteOnly));
        config.write("<!DOCTYPE busconfig PUBLIC '-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN' "
                     "'http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd'>\n"
                     "<busconfig><type>session</type><listen>unix:path=" +
                     QFile::encodeName(socket) +
                     "</listen><policy context='default'><allow send_destination='*' eavesdrop='true'/>"
                     "<allow eavesdrop='true'/><allow own='*'/></policy></busconfig>\n");
        config.close();
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--nofork"), QStringLiteral("--config-file"), config.fileName()});
        QVERIFY(m_daemon.waitForStarted());
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(socket), 20000);
        m_bus = "unix:path=" + QFile::encodeName(socket);
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus);
    }
    void init() { QFile::remove(path()); }

    void file()
    {
        QCOMPARE(mevo::readSecretFile(path()), std::make_optional(QByteArray()));
        QVERIFY(mevo::writeSecretFile(path(), "first"));
        QCOMPARE(modeOf(path()), 0600);
        QVERIFY(
            QFile::setPermissions(path(), QFile::permissions(path()) | QFile::ReadGroup | QFile::ReadOther));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("others could read")));
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
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot be read")));
        QCOMPARE(mevo::readSecretFile(m_folder.path()), std::optional<QByteArray>());
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("cannot be written")));
        QVERIFY(!mevo::writeSecretFile(QStringLiteral("/proc/none/accounts.json"), "secret"));
    }

    void fileOnly()
    {
        DesktopSecretStore store(path(), true);
        QCOMPARE(write(store, "own"), SecretPlace::File);
        QCOMPARE(contentOf(path()), QByteArray("own"));
        const SecretStore::Found found = read(store);
        QVERIFY(found.answered);
        QCOMPARE(found.secret, QByteArray("own"));
        QCOMPARE(found.place, SecretPlace::File);
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
        QCOMPARE(read(store).place, SecretPlace::Nowhere);
        QCOMPARE(write(store, "own"), SecretPlace::File);
        QCOMPARE(read(store).secret, QByteArray("own"));
        QCOMPARE(write(store, {}), SecretPlace::File);
        QVERIFY(!QFile::exists(path()));
    }

    void answersNobodyThatHasGone()
    {
        bool heard = false;
        DesktopSecretStore store(path(), true);
        auto asker = std::make_unique<QObject>();
        store.read(asker.get(), [&heard](const SecretStore::Found &) { heard = true; });
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
                store.write("secret " + QByteArray::number(i), &context, [](SecretPlace) {});
            }
        }
        QCOMPARE(contentOf(path()), QByteArray("secret 19"));
    }

    void keyring()
    {
        const QString daemon = QStandardPaths::findExecutable(QStringLiteral("gnome-keyring-daemon"));
        if (daemon.isEmpty()) {
            QSKIP("There is no keyring");
        }
        m_keyring.start(daemon, {QStringLiteral("--foreground"), QStringLiteral("--unlock"),
                                 QStringLiteral("--components=secrets")});
        QVERIFY(m_keyring.waitForStarted());
        m_keyring.write("\n");
        m_keyring.closeWriteChannel();
        QVERIFY(mevo::writeSecretFile(path(), "of a time without it"));
        DesktopSecretStore store(path(), false);
        QTRY_COMPARE_WITH_TIMEOUT(write(store, "in the keyring"), SecretPlace::Desktop, 20000);
        QVERIFY(!QFile::exists(path()));
        QCOMPARE(read(store).secret, QByteArray("in the keyring"));
        {
            DesktopSecretStore another(path(), false); // of the next start
            const SecretStore::Found found = read(another);
            QCOMPARE(found.secret, QByteArray("in the keyring"));
            QCOMPARE(found.place, SecretPlace::Desktop);
        }
        QCOMPARE(write(store, "another"), SecretPlace::Desktop);
        QCOMPARE(read(store).secret, QByteArray("another"));
        QCOMPARE(write(store, {}), SecretPlace::Desktop);
        QCOMPARE(read(store).place, SecretPlace::Nowhere);
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
