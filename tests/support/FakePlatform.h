#pragma once

#include "platform/Platform.h"
#include "support/CallLog.h"

#include <QCoreApplication>
#include <QHash>
#include <QPointer>
#include <QThread>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <utility>

/// A clock that moves only by sleeping on it, by a test's hand, or to the next call that is due: callAfter()
/// takes no real time, but keeps the order.
class FakeTime : public Logged<mevo::Time>
{
public:
    using Logged::Logged;
    QDateTime now() const override { return start.addMSecs(m_us.load() / 1000); }
    qint64 monotonicMs() const override { return m_us.load() / 1000; }
    void sleepMs(int milliseconds) override
    {
        m_log.add(QStringLiteral("sleep %1").arg(milliseconds));
        m_us += qint64(milliseconds) * 1000;
        if (onSleep) {
            onSleep();
        }
    }
    void sleepUs(int microseconds) override { m_us += microseconds; }
    /// Main thread only.
    void callAfter(int milliseconds, QObject *context, std::function<void()> action) override;
    int pendingCalls() const { return static_cast<int>(m_pending.size()); }
    void advance(int milliseconds) { m_us += qint64(milliseconds) * 1000; }

    QDateTime start = QDateTime(QDate(2026, 11, 24), QTime(9, 0));
    std::function<void()> onSleep; ///< what happens meanwhile

private:
    struct Call
    {
        QPointer<QObject> context;
        std::function<void()> action;
    };
    void callNext();

    std::atomic<qint64> m_us{0};
    QObject m_eventLoop;
    std::multimap<qint64, Call> m_pending; ///< by the time in microseconds at which it is due
};

/// A receiver that a test scripts: what is enumerated, what is read, what it was sent.
/// Calls are logged as "hid init", "hid open PATH", "hid send 05 2c ...", "hid exit".
class FakeHid : public Logged<mevo::Hid>
{
public:
    using Logged::Logged;
    int init() override;
    std::vector<mevo::HidEntry> enumerate(quint16 vendor, quint16 product) override;
    mevo::HidHandle openPath(const QByteArray &path) override;
    int setNonBlocking(mevo::HidHandle handle, bool nonBlocking) override;
    int read(mevo::HidHandle handle, unsigned char *data, std::size_t length) override;
    /// Waits in real time for a push, at most `waitLimitMs`, so that a reader thread does not spin.
    int readTimeout(mevo::HidHandle handle, unsigned char *data, std::size_t length,
                    int milliseconds) override;
    int sendFeatureReport(mevo::HidHandle handle, const unsigned char *data, std::size_t length) override;
    int exit() override;

    /// The two collections of one receiver on one node.
    static std::vector<mevo::HidEntry> receiver(const QByteArray &path = "/dev/hidraw3");
    /// Puts a receiver in, or pulls it out: the handles that were opened until then are dead for ever.
    void plug()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        entries = receiver();
    }
    void unplug()
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        entries.clear();
        m_firstLive = m_nextHandle;
        m_input.clear();
    }
    /// Queues an input report for the next read of any handle.
    void push(const QByteArray &report);
    /// Input reports that nobody has read yet.
    int waitingReports() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return int(m_input.size());
    }
    /// Reports sent so far, as "05 2c 00 ..." texts.
    QStringList sent() const;

    int initResult = 0;
    int sendResult = 8;                  ///< what a send answers, -1 to fail
    std::vector<mevo::HidEntry> entries; ///< what is plugged in
    QList<QByteArray> unopenable;        ///< paths whose open fails
    QByteArray identityReply;            ///< queued as an input report when 05 2c is sent; empty for none
    std::atomic<bool> gone{false};       ///< reads answer -1
    std::atomic<int> openHandles{0};
    std::atomic<int> waitLimitMs{20};
    std::atomic<int> reads{0}; ///< reads so far, with or without a report

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_pushed;
    std::deque<QByteArray> m_input;
    bool isDead(mevo::HidHandle handle) const { return gone || quintptr(handle) < m_firstLive; }

    quintptr m_nextHandle = 0x100;
    std::atomic<quintptr> m_firstLive{0};
};

class FakeDeviceNotifier : public mevo::DeviceNotifier
{
public:
    bool start(Handler handler) override
    {
        m_handler = std::move(handler);
        return true;
    }
    void stop() override { m_handler = nullptr; }
    /// Reports a change as the system would.
    void report(Change change, const QString &name = QStringLiteral("HID#VID_258A&PID_1016&MI_01&Col02"))
    {
        if (m_handler) {
            m_handler(change, name);
        }
    }

private:
    Handler m_handler;
};

/// Windows by id; posting is logged as "post ID TEXT" and finishes at once unless `holdPosts`.
class FakeWindowSystem : public Logged<mevo::WindowSystem>
{
public:
    using Logged::Logged;
    mevo::WindowId foregroundWindow() override { return foreground; }
    mevo::WindowId focusedWindow() override { return focused; }
    bool keysGoNowhere() override { return focused == 0 && !unseen; }
    bool isWindow(mevo::WindowId window) override { return window != 0 && !gone.contains(window); }
    void postText(mevo::WindowId window, const QString &text, PostDone done) override;
    void askWindow(mevo::WindowId, int, std::function<void(mevo::PostStop)> done) override
    {
        done(answers-- > 0 ? mevo::PostStop::AtEnd : mevo::PostStop::Hung);
    }
    bool canPostText() const override { return canPost; }
    bool activate(mevo::WindowId window) override;
    mevo::WindowId findWindow(const QString &windowClass, const QString &title) override;
    bool closeWindow(mevo::WindowId window) override;
    QString windowClass(mevo::WindowId) override { return classOfAll; }
    QString windowTitle(mevo::WindowId) override { return {}; }
    std::optional<QRect> caretRectangle() override { return caret; }
    void stackBelow(mevo::WindowId, mevo::WindowId) override {}

    mevo::WindowId foreground = 0x10;
    mevo::WindowId focused = 0x11;
    bool unseen = false; ///< a window that cannot be seen may have the focus
    bool obeys = false;  ///< a window that is activated comes to the front
    QString classOfAll;
    QList<mevo::WindowId> gone;
    int answers = 1000;                     ///< that programs give before they hang
    QHash<QString, mevo::WindowId> byTitle; ///< what findWindow answers
    std::optional<QRect> caret;
    bool canPost = true;
    bool holdPosts = false;                         ///< what is posted never arrives
    std::function<void()> onPost;                   ///< runs when a post has gone
    int postLimit = -1;                             ///< units that go before a post breaks off, -1 for all
    mevo::PostStop postStop = mevo::PostStop::Hung; ///< why it does
};

/// Windows of ours: every place is where it was put, unless a test says otherwise.
class FakeOwnWindows : public mevo::OwnWindows
{
public:
    void neverTakeFocus(mevo::WindowId window) override { withoutFocus.append(window); }
    void takeFocus(mevo::WindowId window) override { focused.append(window); }
    void keepOutOfLists(mevo::WindowId window) override { unlisted.append(window); }
    std::optional<QPoint> place(mevo::WindowId) override { return real; }
    void moveTo(mevo::WindowId, const QPoint &place) override { moves.append(place); }
    void beginSlide(mevo::WindowId, const QImage &) override { slides.append(true); }
    void endSlide(mevo::WindowId) override { slides.append(false); }
    bool isComposited() override { return composited; }
    void whenCompositingChanges(QObject *, std::function<void()> handler) override
    {
        handlers.push_back(std::move(handler));
    }
    void setShape(mevo::WindowId, const std::vector<QRect> &rectangles) override { shape = rectangles; }

    QList<mevo::WindowId> withoutFocus;
    QList<mevo::WindowId> focused; ///< those that were given the keyboard
    QList<mevo::WindowId> unlisted;
    std::optional<QPoint> real; ///< where windows stand; null answers nothing
    QList<QPoint> moves;
    QList<bool> slides; ///< beginnings and ends
    bool composited = true;
    std::vector<std::function<void()>> handlers;
    std::vector<QRect> shape; ///< of the window that was shaped last
};

class FakeKeyboard : public Logged<mevo::Keyboard>
{
public:
    using Logged::Logged;
    void keyDown(int virtualKey) override { m_log.add(QStringLiteral("key down %1").arg(virtualKey, 0, 16)); }
    void keyUp(int virtualKey) override { m_log.add(QStringLiteral("key up %1").arg(virtualKey, 0, 16)); }
};

class FakeClipboard : public Logged<mevo::Clipboard>
{
public:
    using Logged::Logged;
    void setText(const QString &text) override
    {
        m_log.add(QStringLiteral("clipboard set ") + text);
        putIn(text);
        if (onSet) {
            onSet();
        }
    }
    void putBack(const QString &text) override
    {
        m_log.add(QStringLiteral("clipboard put back ") + text);
        putIn(text);
    }
    /// Another program puts a text there.
    void putIn(const QString &text)
    {
        content = text;
        m_hasText = !text.isEmpty();
        ++m_changes;
    }
    std::function<void()> onSet; ///< runs when the program has put a text there
    QString text() const override { return content; }
    void clear() override
    {
        m_log.add(QStringLiteral("clipboard clear"));
        putIn(QString());
    }
    bool hasText() const override { return m_hasText; }
    bool mayHaveBeenRead() const override { return isRead; }
    bool isRead = true; ///< what is put there
    int changes() const override
    {
        const int count = m_changes;
        if (!copiedNext.isNull()) {
            const_cast<FakeClipboard *>(this)->putIn(std::exchange(copiedNext, QString()));
        }
        return count;
    }
    QString selection() const override { return selected; }

    QString content;
    QString selected;           ///< in a window of another program
    mutable QString copiedNext; ///< comes from another program once somebody has begun to wait for a change

private:
    std::atomic<bool> m_hasText{false};
    int m_changes = 0;
};

class FakeProcesses : public Logged<mevo::Processes>
{
public:
    using Logged::Logged;
    bool startDetached(const QString &program, const QStringList &arguments) override;
    bool startToType(const QString &program) override;
    bool startSibling(const QString &name, const QStringList &arguments, bool hidden) override;
    bool hasSibling(const QString &name) override { return !notInstalled.contains(name); }
    Captured capture(const QString &program, const QStringList &arguments, int timeoutMs) override;
    bool killByImageName(const QString &imageName) override;
    bool isRunning(const QString &imageName) override { return running.contains(imageName); }
    bool openElevated(const QString &program, const QStringList &arguments) override;
    bool restartComputer() override;
    bool shutDownComputer() override;

    QStringList running;
    QStringList notInstalled; ///< siblings
    QStringList broken;       ///< programs that cannot be started
    Captured captured;
    std::function<void(const QString &name)> onSibling; ///< runs while a sibling is started
};

class FakeSystemFacts : public mevo::SystemFacts
{
public:
    bool isXpClass() const override { return xpClass; }
    int localeId() const override { return locale; }
    qint64 freeSpaceMiB() const override { return freeMiB; }
    bool compilerRuntimeInstalled() const override { return runtime; }
    QString computerId() const override { return QStringLiteral("test-computer"); }
    QStringList programFolders() const override { return programs; }

    bool xpClass = false;
    int locale = 0x0804;
    qint64 freeMiB = 50000;
    bool runtime = true;
    QStringList programs;
};

class FakeElevation : public Logged<mevo::Elevation>
{
public:
    using Logged::Logged;
    bool isSet() const override { return marked; }
    bool set() override
    {
        m_log.add(QStringLiteral("elevation set"));
        return marked = true;
    }
    bool clear() override
    {
        m_log.add(QStringLiteral("elevation clear"));
        marked = false;
        return true;
    }
    bool marked = false;
};

class FakeStartupEntry : public Logged<mevo::StartupEntry>
{
public:
    using Logged::Logged;
    bool exists(const QString &name) const override { return names.contains(name); }
    bool set(const QString &name) override
    {
        m_log.add(QStringLiteral("startup set ") + name);
        if (!refuses) {
            names.append(name);
        }
        return !refuses;
    }
    bool clear(const QString &name) override
    {
        m_log.add(QStringLiteral("startup clear ") + name);
        return names.removeAll(name) > 0;
    }
    QStringList names;
    bool refuses = false; ///< set() fails
};

class FakeRegistry : public mevo::Registry
{
public:
    std::optional<QString> value(const QString &path, const QString &name) const override
    {
        const auto found = values.constFind(path + QLatin1Char('|') + name);
        return found == values.constEnd() ? std::nullopt : std::optional<QString>(*found);
    }
    QHash<QString, QString> values; ///< "PATH|NAME" to value
};

class FakeAudioRouter : public Logged<mevo::AudioRouter>
{
public:
    using Logged::Logged;
    QStringList inputNames() override
    {
        if (slow && QThread::currentThread() != QCoreApplication::instance()->thread()) {
            slow();
        }
        return names;
    }
    bool switchDefault(const QString &name) override
    {
        m_log.add(QStringLiteral("audio switch ") + name);
        return names.contains(name);
    }
    QStringList names;
    std::function<void()> slow; ///< runs before an answer to another thread than the application's
};

/// A computer without a microphone.
class FakeSoundInputs : public Logged<mevo::SoundInputs>
{
public:
    using Logged::Logged;
    QString defaultName() override { return {}; }
    bool hasOutput() override { return false; }
    std::unique_ptr<mevo::SoundInput> open(const mevo::SoundFormat &) override { return nullptr; }
    void letGo() override { m_log.add(QStringLiteral("audio let go")); }
};

class FakeNetworkState : public mevo::NetworkState
{
public:
    Connection connection() override { return kind; }
    Connection kind = Connection::Lan;
};

class FakeSingleInstance : public Logged<mevo::SingleInstance>
{
public:
    using Logged::Logged;
    bool acquire(const QString &) override { return free; }
    void release() override { m_log.add(QStringLiteral("lock released")); }
    void whenCalled(int, std::function<void(const QByteArray &, CallAnswer)> handler) override
    {
        called = std::move(handler);
    }
    void closeDoor() override { called = nullptr; }
    /// Logged as "call MESSAGE".
    CallResult call(const QString &, const QByteArray &message, const CallWaits &) override
    {
        m_log.add(QStringLiteral("call ") + QString::fromUtf8(message));
        return reached;
    }
    /// The user starts the program once more, with "talk" or "settings" or without any.
    void startAgain(const QByteArray &what = "show")
    {
        called(R"({"mevoinput":1,"do":")" + what + "\"}",
               [this](const QByteArray &answer) { answers.append(answer); });
    }
    bool free = true;
    CallResult reached{true, R"({"mevoinput":1,"answer":"done"})", false, true};
    std::function<void(const QByteArray &, CallAnswer)> called;
    QByteArrayList answers; ///< to startAgain()
};

/// Messages are logged as "message TEXT (MILLISECONDS)".
class FakeNotifications : public Logged<mevo::Notifications>
{
public:
    using Logged::Logged;
    void attach(QSystemTrayIcon *) override {}
    bool trayAvailable() const override { return true; }
    void message(const QString &title, const QString &text, mevo::MessageIcon icon,
                 int milliseconds) override;
};

/// A voice that a test ends by hand. Logged as "speak LANGUAGE TEXT", "speech rate 3", "speech volume 50",
/// "speech stop".
class FakeSpeech : public Logged<mevo::Speech>
{
public:
    using Logged::Logged;
    bool open() override { return available; }
    bool speak(const QString &text, const QString &language) override
    {
        m_log.add(QStringLiteral("speak %1 %2").arg(language, text));
        ++speaking;
        return available;
    }
    void setRate(int rate) override { m_log.add(QStringLiteral("speech rate %1").arg(rate)); }
    void setVolume(int volume) override { m_log.add(QStringLiteral("speech volume %1").arg(volume)); }
    void stop() override
    {
        m_log.add(QStringLiteral("speech stop"));
        speaking = 0;
    }
    void whenStreamEnds(Ended handler) override { m_ended = std::move(handler); }
    /// The text that was given first comes to its end.
    void end(mevo::SpeechEnd how = mevo::SpeechEnd::Spoken)
    {
        --speaking;
        if (m_ended) {
            m_ended(how);
        }
    }

    bool available = true;
    int speaking = 0; ///< texts that have not ended

private:
    Ended m_ended;
};

/// A secret store that answers from the event loop. Its end is logged as "secrets kept".
class FakeSecretStore : public Logged<mevo::SecretStore>
{
public:
    using Logged::Logged;
    ~FakeSecretStore() override { m_log.add(QStringLiteral("secrets kept")); }
    void read(mevo::KeyringPrompt prompt, QObject *context, Done done) override;
    void change(mevo::KeyringPrompt prompt, Edit edit, QObject *context, Done done) override;

    QByteArray kept;
    QByteArray older; ///< is kept in another place, too
    QByteArray waiting;
    bool waits = true; ///< what cannot be kept waits
    QList<QByteArray> aside;
    mevo::SecretPlace place = mevo::SecretPlace::Desktop; ///< where it keeps what it is given
    bool locked = false;                                  ///< neither reads nor writes
    bool absent = false;                                  ///< the keyring with `kept` is not there so far
    bool held = false;                                    ///< nothing is answered or done before release()
    int reads = 0;
    int changes = 0;
    int prompts = 0; ///< calls that may ask the user
    void release();

private:
    Found found() const;
    void answer(const QPointer<QObject> &context, const Done &done) const;
    void doOrHold(const std::function<void()> &call);
    std::vector<std::function<void()>> m_held;
};

/// A platform made of the fakes above, with one call log. The members stay reachable under their
/// own types; `platform` is what the program is given.
struct FakePlatform
{
    FakePlatform();

    CallLog log;
    mevo::Platform platform;
    FakeTime *time;
    FakeSystemFacts *systemFacts;
    FakeHid *hid;
    FakeDeviceNotifier *deviceNotifier;
    FakeWindowSystem *windowSystem;
    FakeOwnWindows *ownWindows;
    FakeKeyboard *keyboard;
    FakeClipboard *clipboard;
    FakeProcesses *processes;
    FakeElevation *elevation;
    FakeStartupEntry *startupEntry;
    FakeRegistry *registry;
    FakeAudioRouter *audioRouter;
    FakeSoundInputs *soundInputs;
    FakeNetworkState *networkState;
    FakeSingleInstance *singleInstance;
    FakeNotifications *notifications;
    FakeSpeech *speech;
    FakeSecretStore *secrets;
};
