#include "platform/linux/X11Poster.h"

#include "platform/linux/ProcessQuiet.h"
#include "platform/linux/ScreenLock.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QSysInfo>

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <algorithm>
#include <chrono>
#include <thread>

namespace mevo {

namespace {

// Where the target answers no ping it has taken its keys when its program sleeps again,
constexpr int quietMs = 20;
constexpr int quietLimitMs = 2000; // of its own time
// and where that cannot be seen either it is given a time: before keys are bound anew, and at the end.
constexpr int drainMs = 40;
constexpr int lastDrainMs = 150;
// An office keeps what it is typed for up to 20 ms before it goes into the text.
constexpr int settledMs = 50;
constexpr int settledLimitMs = 10000;
constexpr int behindLookMs = 100;
constexpr int grabTimeoutMs = 2000;
constexpr int grabRetryMs = 10;

void pause(int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

const char *nameOf(PostStop stop)
{
    switch (stop) {
    case PostStop::AtEnd:
        return "";
    case PostStop::NoKeys:
        return "no key can be injected";
    case PostStop::Gone:
        return "the window is gone";
    case PostStop::Hidden:
        return "the window is minimised or on another desktop";
    case PostStop::Hung:
        return "the program does not answer";
    case PostStop::FocusRefused:
        return "the window does not take the focus";
    case PostStop::FocusLeft:
        return "another window has the focus";
    case PostStop::KeyboardGrabbed:
        return "another program holds the keyboard";
    case PostStop::Untypable:
        return "the program drops the next character";
    case PostStop::ScreenLocked:
        return "the screen is locked";
    }
    return "";
}

} // namespace

X11Poster::X11Poster(const ScreenLock &lock)
    : m_lock(lock)
    , m_ping(m_connection)
{
    Display *display = m_connection.display();
    int event = 0, error = 0, major = 0, minor = 0, opcode = 0;
    if (display == nullptr || XTestQueryExtension(display, &event, &error, &major, &minor) == False ||
        XkbQueryExtension(display, &opcode, &event, &error, &major, &minor) == False) {
        qWarning() << "Typing: this display lets no keys be injected";
        return;
    }
    XTestGrabControl(display, True);
    m_keys = std::make_unique<X11ScratchKeys>(m_connection);
    m_usable = m_keys->count() > 0;
    m_slots = std::make_unique<ScratchSlots>(m_keys->count());
    m_neverShown = XCreateSimpleWindow(display, m_connection.root(), -9, -9, 1, 1, 0, 0, 0);
    XSetWindowAttributes unmanaged{};
    unmanaged.override_redirect = True;
    m_asideWindow = XCreateWindow(display, m_connection.root(), -9, -9, 1, 1, 0, 0, InputOnly, CopyFromParent,
                                  CWOverrideRedirect, &unmanaged);
    XMapWindow(display, m_asideWindow);
    m_returnKey = XKeysymToKeycode(display, XK_Return);
    m_tabKey = XKeysymToKeycode(display, XK_Tab);
}

X11Poster::~X11Poster()
{
    m_second.reset();
    m_keys.reset();
}

PostResult X11Poster::post(WindowId window, const QString &text)
{
    PostResult result;
    if (!m_usable) {
        result.stop = PostStop::NoKeys;
        return result;
    }
    if (!m_keys->checkMap()) {
        m_oneState = false;
        m_slots = std::make_unique<ScratchSlots>(m_keys->count());
    }
    if (m_keys->count() == 0) {
        result.stop = PostStop::NoKeys;
        return result;
    }
    m_ping.listen(true);
    const Target target = targetOf(window);
    limitStates(target.habits.oneState);
    const int typable = typableLength(text, target.habits);
    const int slotsBefore = m_keys->count();
    result.stop = typeInto(target, text.left(typable), result.posted);
    if (result.stop == PostStop::NoKeys && result.posted == 0 && m_keys->count() < slotsBefore) {
        result.stop = typeInto(target, text.left(typable), result.posted);
    }
    if (result.stop == PostStop::AtEnd && typable < text.size()) {
        result.posted = typable;
        result.stop = PostStop::Untypable;
    }
    m_ping.listen(false);
    m_connection.discardEvents();
    result.complete = result.stop == PostStop::AtEnd;
    if (result.complete) {
        result.posted = text.size(); // with what is no key stroke at its end
    } else {
        qWarning() << "Typing:" << result.posted << "of" << text.size()
                   << "characters are seen to have arrived:" << nameOf(result.stop);
    }
    return result;
}

PostStop X11Poster::typeInto(const Target &target, const QString &text, int &taken)
{
    if (!m_connection.exists(target.window)) {
        return PostStop::Gone;
    }
    if (!m_connection.isViewable(target.window)) {
        return PostStop::Hidden;
    }
    if (m_lock.isLocked()) {
        return PostStop::ScreenLocked;
    }
    // A program that hangs is sent nothing: when it wakes it would take what has been offered elsewhere.
    if (target.answersPing) {
        m_ping.send(target.topLevel);
    }
    bool asked = target.answersPing;
    if (asked && m_behind == target.topLevel) {
        // What it was sent before would be translated by the keys that are bound now.
        asked = false;
        const PostStop stop = awaitAnswer(X11Ping::timeoutMs);
        if (stop != PostStop::AtEnd) {
            return stop;
        }
        m_behind = 0;
    }
    bool first = true;
    int sent = 0;
    PostingPlan plan(text, *m_slots, target.habits);
    while (!plan.atEnd()) {
        const PostBatch batch = plan.next();
        if (!first && batch.after != PostBatch::After::Nothing) {
            const PostStop stop = awaitTaken(target, drainMs);
            if (stop != PostStop::AtEnd) {
                m_slots->clear(); // the keys of this batch have not been bound
                return stop;
            }
            taken = sent;
        }
        if (!m_keys->bind(batch.rebind)) {
            m_oneState = false;
            m_slots = std::make_unique<ScratchSlots>(m_keys->count());
            taken = sent; // what went before has been waited for
            return PostStop::NoKeys;
        }
        if (asked) {
            asked = false;
            const PostStop stop = awaitAnswer(X11Ping::timeoutMs);
            if (stop != PostStop::AtEnd) {
                return stop;
            }
        }
        PostStop stop = batch.after == PostBatch::After::Settled ? awaitSettled(target) : PostStop::AtEnd;
        if (stop != PostStop::AtEnd) {
            return stop;
        }
        stop = send(target, batch);
        if (stop != PostStop::AtEnd) {
            if (!first && awaitTaken(target, lastDrainMs) == PostStop::AtEnd) {
                taken = sent;
            }
            return stop;
        }
        if (!batch.strokes.empty()) {
            first = false;
            sent = batch.strokes.back().end;
        }
    }
    const PostStop stop = first ? PostStop::AtEnd : awaitTaken(target, lastDrainMs);
    if (stop == PostStop::AtEnd) {
        taken = sent;
    }
    return stop;
}

PostStop X11Poster::awaitAnswer(int limitMs)
{
    switch (m_ping.await(limitMs)) {
    case X11Ping::Answer::Given:
        return PostStop::AtEnd;
    case X11Ping::Answer::Gone:
        return PostStop::Gone;
    case X11Ping::Answer::Silence:
        break;
    }
    return PostStop::Hung;
}

PostStop X11Poster::awaitTaken(const Target &target, int drain)
{
    if (target.answersPing) {
        m_ping.send(target.topLevel);
        const PostStop stop = awaitAnswer(takenLimitMs);
        if (stop != PostStop::AtEnd) {
            m_behind = stop == PostStop::Hung ? target.topLevel : 0;
            return stop;
        }
    } else {
        // A program that waits for a slow server sleeps as well, but does not once the server has answered
        // us.
        const auto askServer = [this] { XSync(m_connection.display(), False); };
        switch (awaitQuiet(target.processId, quietMs, quietLimitMs, askServer)) {
        case ProcessState::Stopped:
            return PostStop::Hung;
        case ProcessState::Unknown:
            pause(drain);
            break;
        case ProcessState::Quiet:
        case ProcessState::Busy:
            break;
        }
    }
    return m_connection.exists(target.window) ? PostStop::AtEnd : PostStop::Gone;
}

PostStop X11Poster::awaitSettled(const Target &target)
{
    switch (awaitQuiet(target.processId, settledMs, settledLimitMs)) {
    case ProcessState::Unknown:
        pause(lastDrainMs);
        break;
    case ProcessState::Quiet:
        break;
    case ProcessState::Stopped:
    case ProcessState::Busy:
        return PostStop::Hung;
    }
    return PostStop::AtEnd;
}

X11Poster::Target X11Poster::targetOf(WindowId window) const
{
    Target target;
    target.window = window;
    target.topLevel = m_connection.topLevel(window);
    target.answersPing = m_ping.isOffered(target.topLevel);
    if (m_connection.text(target.topLevel, "WM_CLIENT_MACHINE") == QSysInfo::machineHostName()) {
        target.processId = qint64(m_connection.firstItem(target.topLevel, m_connection.atom("_NET_WM_PID")));
    }
    target.habits =
        typingHabits(m_connection.text(target.topLevel, "WM_CLASS").split(QChar(0), Qt::SkipEmptyParts));
    return target;
}

bool X11Poster::isFocused(const Target &target) const
{
    return m_connection.focus() == target.window;
}

PostStop X11Poster::send(const Target &target, const PostBatch &batch)
{
    QElapsedTimer clock;
    clock.start();
    PostStop stop = sendAtOnce(target, batch);
    while (stop == PostStop::KeyboardGrabbed && clock.elapsed() < grabTimeoutMs) {
        pause(grabRetryMs); // a window switcher, a menu that is about to close
        stop = sendAtOnce(target, batch);
    }
    return stop;
}

PostStop X11Poster::sendAtOnce(const Target &target, const PostBatch &batch)
{
    Display *display = m_connection.display();
    if (!isFocused(target) && !m_second) {
        m_second = std::make_unique<X11SecondKeyboard>(display);
    }
    // Under the grab nobody can hide the window or move the focus between the look and the keys.
    XGrabServer(display);
    PostStop stop = PostStop::AtEnd;
    if (!m_connection.isViewable(target.window)) {
        stop = m_connection.exists(target.window) ? PostStop::Hidden : PostStop::Gone;
    } else if (isKeyboardGrabbed()) {
        stop = PostStop::KeyboardGrabbed;
    } else if (isFocused(target)) {
        strike(batch, false);
    } else if (batch.hasPairs && target.habits.dropsPairsUnfocused) {
        stop = PostStop::Untypable;
    } else if (m_second && m_second->isUsable() && m_second->setFocus(target.window)) {
        strike(batch, true);
        giveFocusBack();
    } else {
        stop = PostStop::FocusRefused;
    }
    XUngrabServer(display);
    XSync(display, False);
    return stop;
}

void X11Poster::giveFocusBack()
{
    // Window managers take the window that a keyboard's focus came to for the active one. Off and on again,
    // within the grab, the focus of the user's keyboard tells them where it is; by way of a window that they
    // do not know, as some of them look for a window to focus when it goes to none. fluxbox needs that one.
    Display *display = m_connection.display();
    const unsigned long root = m_connection.root();
    const QString manager = m_connection.text(
        m_connection.firstItem(root, m_connection.atom("_NET_SUPPORTING_WM_CHECK")), "_NET_WM_NAME");
    const Window aside = manager == QLatin1String("Fluxbox") ? 0 : m_asideWindow;
    m_second->setFocus(aside);
    Window user = 0;
    int revert = 0;
    XGetInputFocus(display, &user, &revert);
    XSetInputFocus(display, aside, revert, CurrentTime);
    XSetInputFocus(display, user, revert, CurrentTime);
    if (manager == QLatin1String("i3")) {
        // It knows, but goes on telling other programs that the target is active until it looks again, as it
        // does when the root window gets the focus.
        XEvent event{};
        event.xfocus.type = FocusIn;
        event.xfocus.window = root;
        event.xfocus.mode = NotifyNormal;
        event.xfocus.detail = NotifyDetailNone;
        XSendEvent(display, root, False, FocusChangeMask, &event);
    }
}

bool X11Poster::rest()
{
    if (m_behind != 0 && m_connection.exists(m_behind)) {
        m_ping.listen(true);
        m_ping.send(m_behind);
        const bool stillHangs = m_ping.await(behindLookMs) == X11Ping::Answer::Silence;
        m_ping.listen(false);
        if (stillHangs) {
            m_connection.discardEvents();
            return false;
        }
    }
    m_behind = 0;
    m_second.reset();
    m_slots->clear();
    m_keys->release();
    m_connection.discardEvents();
    return true;
}

bool X11Poster::isKeyboardGrabbed() const
{
    // A window that is not shown cannot grab it, so that asking does nothing to anybody.
    const int answer =
        XGrabKeyboard(m_connection.display(), m_neverShown, False, GrabModeAsync, GrabModeAsync, CurrentTime);
    return answer == AlreadyGrabbed || answer == GrabFrozen;
}

int X11Poster::keycodeOf(const PostStroke &stroke) const
{
    return stroke.slot == PostStroke::Return ? m_returnKey
           : stroke.slot == PostStroke::Tab  ? m_tabKey
                                             : m_keys->keycode(stroke.slot);
}

X11KeyState X11Poster::stateOf(const PostStroke &stroke) const
{
    return stroke.slot < 0 ? X11KeyState() : m_keys->state(stroke.slot);
}

void X11Poster::limitStates(bool oneState)
{
    if (oneState != m_oneState) {
        m_oneState = oneState;
        m_keys->release();
        m_slots = std::make_unique<ScratchSlots>(oneState ? m_keys->keyCount() : m_keys->count());
    }
}

void X11Poster::lock(bool second, const X11KeyState &before, const X11KeyState &state)
{
    // Qt 5 goes by the state of the user's keyboard, whatever keyboard the key is of.
    Display *display = m_connection.display();
    const unsigned level3 = m_keys->level3Mask();
    for (const unsigned device : {unsigned(XkbUseCoreKbd), second ? m_second->device() : 0}) {
        if (device != 0 && state.group != before.group) {
            XkbLockGroup(display, device, state.group);
        }
        if (device != 0 && state.level3 != before.level3) {
            XkbLockModifiers(display, device, level3, state.level3 ? level3 : 0);
        }
    }
}

void X11Poster::strike(const PostBatch &batch, bool second)
{
    Display *display = m_connection.display();
    const std::vector<int> held = liftModifiers();
    XkbStateRec users{};
    XkbGetState(display, XkbUseCoreKbd, &users);
    // Programs make capitals of what a key yields while Caps Lock is on.
    const unsigned unlocked = users.locked_mods & (LockMask | m_keys->level3Mask());
    if (unlocked != 0) {
        XkbLockModifiers(display, XkbUseCoreKbd, unlocked, 0);
    }
    if ((users.latched_mods & m_keys->level3Mask()) != 0) {
        XkbLatchModifiers(display, XkbUseCoreKbd, m_keys->level3Mask(), 0); // our first key would end it
    }
    // A group that is left over from an earlier map counts again while keys of ours have as many.
    const bool regroup = m_keys->groupCount() > 1 && users.group != 0;
    if (regroup) {
        XkbLockGroup(display, XkbUseCoreKbd, 0);
    }
    if (second) {
        m_second->setGroups(m_keys->groupCount());
    }
    X11KeyState state;
    for (const PostStroke &stroke : batch.strokes) {
        const auto keycode = static_cast<unsigned>(keycodeOf(stroke));
        lock(second, state, stateOf(stroke));
        state = stateOf(stroke);
        for (const bool down : {true, false}) {
            if (second) {
                m_second->key(keycode, down);
            } else {
                XTestFakeKeyEvent(display, keycode, down ? True : False, CurrentTime);
            }
        }
    }
    lock(second, state, {});
    if (regroup) {
        XkbLockGroup(display, XkbUseCoreKbd, users.locked_group);
    }
    if (unlocked != 0) {
        XkbLockModifiers(display, XkbUseCoreKbd, unlocked, unlocked);
    }
    putBackModifiers(held);
}

std::vector<int> X11Poster::liftModifiers()
{
    Display *display = m_connection.display();
    char keys[32] = {};
    XQueryKeymap(display, keys);
    std::vector<int> held;
    XModifierKeymap *map = XGetModifierMapping(display);
    if (map == nullptr) {
        return held;
    }
    for (int i = 0; i < 8 * map->max_keypermod; ++i) {
        const int keycode = map->modifiermap[i];
        if (keycode != 0 && (keys[keycode / 8] >> (keycode % 8) & 1) != 0) {
            XTestFakeKeyEvent(display, static_cast<unsigned>(keycode), False, CurrentTime);
            held.push_back(keycode);
        }
    }
    XFreeModifiermap(map);
    return held;
}

void X11Poster::putBackModifiers(const std::vector<int> &keycodes)
{
    for (const int keycode : keycodes) {
        XTestFakeKeyEvent(m_connection.display(), static_cast<unsigned>(keycode), True, CurrentTime);
    }
}

} // namespace mevo
