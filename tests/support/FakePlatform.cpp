#include "support/FakePlatform.h"

#include <QTimer>

#include <chrono>
#include <cstring>

using mevo::HidEntry;
using mevo::HidHandle;
using mevo::MessageIcon;
using mevo::Processes;
using mevo::WindowId;

namespace {

QString hex(const unsigned char *data, std::size_t length)
{
    return QString::fromLatin1(
        QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(length)).toHex(' '));
}

template <typename Fake, typename Slot, typename... Arguments>
Fake *install(Slot &slot, Arguments &...arguments)
{
    auto fake = std::make_unique<Fake>(arguments...);
    Fake *raw = fake.get();
    slot = std::move(fake);
    return raw;
}

} // namespace

void FakeTime::callAfter(int milliseconds, QObject *context, std::function<void()> action)
{
    m_pending.emplace(m_us + qint64(milliseconds) * 1000, Call{context, std::move(action)});
    QTimer::singleShot(0, &m_eventLoop, [this] { callNext(); });
}

void FakeTime::callNext()
{
    const auto next = m_pending.begin();
    const Call call = next->second;
    m_us = qMax(m_us.load(), next->first);
    m_pending.erase(next);
    if (call.context) {
        call.action();
    }
}

int FakeHid::init()
{
    m_log.add(QStringLiteral("hid init"));
    return initResult;
}

std::vector<HidEntry> FakeHid::enumerate(quint16 vendor, quint16 product)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::vector<HidEntry> found;
    for (const HidEntry &entry : entries) {
        if ((vendor == 0 || entry.vendorId == vendor) && (product == 0 || entry.productId == product)) {
            found.push_back(entry);
        }
    }
    return found;
}

HidHandle FakeHid::openPath(const QByteArray &path)
{
    m_log.add(QStringLiteral("hid open ") + QString::fromLocal8Bit(path));
    if (unopenable.contains(path)) {
        return nullptr;
    }
    ++openHandles;
    return reinterpret_cast<HidHandle>(m_nextHandle++); // NOLINT(performance-no-int-to-ptr)
}

int FakeHid::setNonBlocking(HidHandle, bool)
{
    return 0;
}

int FakeHid::read(HidHandle handle, unsigned char *data, std::size_t length)
{
    ++reads;
    if (isDead(handle)) {
        return -1;
    }
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_input.empty()) {
        return 0;
    }
    const QByteArray report = m_input.front();
    m_input.pop_front();
    const auto size = qMin(length, static_cast<std::size_t>(report.size()));
    std::memcpy(data, report.constData(), size);
    return static_cast<int>(size);
}

int FakeHid::readTimeout(HidHandle handle, unsigned char *data, std::size_t length, int milliseconds)
{
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        if (m_input.empty() && !isDead(handle)) {
            m_pushed.wait_for(lock, std::chrono::milliseconds(qMin(milliseconds, waitLimitMs.load())));
        }
    }
    return read(handle, data, length);
}

int FakeHid::sendFeatureReport(HidHandle handle, const unsigned char *data, std::size_t length)
{
    m_log.add(QStringLiteral("hid send ") + hex(data, length));
    if (isDead(handle)) {
        return -1;
    }
    if (sendResult > 0 && length > 1 && data[0] == 5 && data[1] == 0x2c && !identityReply.isEmpty()) {
        push(identityReply);
    }
    return sendResult;
}

int FakeHid::exit()
{
    m_log.add(QStringLiteral("hid exit"));
    openHandles = 0;
    return 0;
}

std::vector<HidEntry> FakeHid::receiver(const QByteArray &path)
{
    return {{path, 0x258A, 0x1016, 0x000D, 1}, {path, 0x258A, 0x1016, 0xFF00, 1}};
}

void FakeHid::push(const QByteArray &report)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_input.push_back(report);
    m_pushed.notify_all();
}

QStringList FakeHid::sent() const
{
    QStringList reports;
    const QString prefix = QStringLiteral("hid send ");
    for (const QString &call : m_log.calls(prefix)) {
        reports.append(call.mid(prefix.size()));
    }
    return reports;
}

void FakeWindowSystem::postText(WindowId window, const QString &text, PostDone done)
{
    const int units = postLimit < 0 ? text.size() : qMin(postLimit, text.size());
    m_log.add(QStringLiteral("post %1 %2").arg(window, 0, 16).arg(text.left(units)));
    if (onPost) {
        onPost();
    }
    if (done && !holdPosts) {
        const bool whole = units == text.size();
        done({units, whole, whole ? mevo::PostStop::AtEnd : postStop});
    }
}

bool FakeWindowSystem::activate(WindowId window)
{
    m_log.add(QStringLiteral("activate %1").arg(window, 0, 16));
    if (obeys) {
        foreground = window;
    }
    return isWindow(window);
}

WindowId FakeWindowSystem::findWindow(const QString &, const QString &title)
{
    return byTitle.value(title, 0);
}

bool FakeWindowSystem::closeWindow(WindowId window)
{
    m_log.add(QStringLiteral("close window %1").arg(window, 0, 16));
    return isWindow(window);
}

bool FakeProcesses::startDetached(const QString &program, const QStringList &arguments)
{
    m_log.add((QStringList{QStringLiteral("start"), program} + arguments).join(QLatin1Char(' ')));
    return !broken.contains(program);
}

bool FakeProcesses::startToType(const QString &program)
{
    m_log.add(QStringLiteral("open to type ") + program);
    return !broken.contains(program);
}

bool FakeProcesses::startSibling(const QString &name, const QStringList &arguments, bool)
{
    m_log.add((QStringList{QStringLiteral("sibling"), name} + arguments).join(QLatin1Char(' ')));
    if (onSibling) {
        onSibling(name);
    }
    return hasSibling(name);
}

Processes::Captured FakeProcesses::capture(const QString &program, const QStringList &arguments, int)
{
    m_log.add((QStringList{QStringLiteral("capture"), program} + arguments).join(QLatin1Char(' ')));
    return captured;
}

bool FakeProcesses::killByImageName(const QString &imageName)
{
    m_log.add(QStringLiteral("kill ") + imageName);
    return running.removeAll(imageName) > 0;
}

bool FakeProcesses::openElevated(const QString &program, const QStringList &arguments)
{
    m_log.add((QStringList{QStringLiteral("elevated"), program} + arguments).join(QLatin1Char(' ')));
    return true;
}

bool FakeProcesses::restartComputer()
{
    m_log.add(QStringLiteral("restart computer"));
    return true;
}

bool FakeProcesses::shutDownComputer()
{
    m_log.add(QStringLiteral("shut down computer"));
    return true;
}

void FakeNotifications::message(const QString &, const QString &text, MessageIcon, int milliseconds)
{
    m_log.add(QStringLiteral("message %1 (%2)").arg(text).arg(milliseconds));
}

void FakeSecretStore::release()
{
    held = false;
    for (const auto &call : std::exchange(m_held, {})) {
        call();
    }
}

mevo::SecretStore::Found FakeSecretStore::found() const
{
    Found found;
    found.answered = !locked;
    found.keyringAbsent = absent;
    found.waiting = !waiting.isEmpty();
    found.place = locked ? place : mevo::SecretPlace::Nowhere;
    for (const QByteArray &text : {older, absent ? QByteArray() : kept}) {
        if (!locked && !text.isEmpty()) {
            found.place = place;
            found.texts.append(text);
        }
    }
    if (found.waiting) {
        found.texts.append(waiting);
    }
    return found;
}

/// From the event loop, and not once the asker has gone.
void FakeSecretStore::answer(const QPointer<QObject> &context, const Done &done) const
{
    if (!context.isNull()) {
        QTimer::singleShot(0, context, [done, found = found()] { done(found); });
    }
}

void FakeSecretStore::read(mevo::KeyringPrompt prompt, QObject *context, Done done)
{
    doOrHold([this, prompt, asker = QPointer<QObject>(context), done] {
        ++reads;
        prompts += int(prompt == mevo::KeyringPrompt::Allowed);
        answer(asker, done);
    });
}

void FakeSecretStore::change(mevo::KeyringPrompt prompt, Edit edit, QObject *context, Done done)
{
    doOrHold([this, prompt, edit, asker = QPointer<QObject>(context), done] {
        ++changes;
        prompts += int(prompt == mevo::KeyringPrompt::Allowed);
        if (!locked) {
            const Change change = edit.make(found().texts);
            kept = change.text;
            older.clear();
            waiting.clear();
            aside.append(change.aside);
        } else if (waits) {
            waiting = edit.postpone(waiting);
        }
        answer(asker, done);
    });
}

void FakeSecretStore::doOrHold(const std::function<void()> &call)
{
    if (held) {
        m_held.push_back(call);
    } else {
        call();
    }
}

FakePlatform::FakePlatform()
    : time(install<FakeTime>(platform.time, log))
    , systemFacts(install<FakeSystemFacts>(platform.systemFacts))
    , hid(install<FakeHid>(platform.hid, log))
    , deviceNotifier(install<FakeDeviceNotifier>(platform.deviceNotifier))
    , windowSystem(install<FakeWindowSystem>(platform.windowSystem, log))
    , ownWindows(install<FakeOwnWindows>(platform.ownWindows))
    , keyboard(install<FakeKeyboard>(platform.keyboard, log))
    , clipboard(install<FakeClipboard>(platform.clipboard, log))
    , processes(install<FakeProcesses>(platform.processes, log))
    , elevation(install<FakeElevation>(platform.elevation, log))
    , startupEntry(install<FakeStartupEntry>(platform.startupEntry, log))
    , registry(install<FakeRegistry>(platform.registry))
    , audioRouter(install<FakeAudioRouter>(platform.audioRouter, log))
    , soundInputs(install<FakeSoundInputs>(platform.soundInputs, log))
    , networkState(install<FakeNetworkState>(platform.networkState))
    , singleInstance(install<FakeSingleInstance>(platform.singleInstance, log))
    , notifications(install<FakeNotifications>(platform.notifications, log))
    , speech(install<FakeSpeech>(platform.speech, log))
    , secrets(install<FakeSecretStore>(platform.secrets, log))
{
}
