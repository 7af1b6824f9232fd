#include "platform/linux/X11Poster.h"

#include "platform/linux/ScreenLock.h"
#include "platform/linux/X11LiftedModifiers.h"

#include <QDebug>
#include <QElapsedTimer>

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <algorithm>

namespace mevo {

namespace {

constexpr int grabTimeoutMs = 2000;
constexpr int grabRetryMs = 10;
constexpr int lookAgainMs = 1000; // whether a program that hung is well, while few keys are left
constexpr int mostChanges = 5;    // of the keyboard map, before one batch goes

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
    case PostStop::NoField:
        return "no text field has the focus";
    case PostStop::ReceiverGone:
        return "the receiver is gone";
    case PostStop::NotRead:
        return "the clipboard is not read";
    case PostStop::KeyboardGrabbed:
        return "another program holds the keyboard";
    case PostStop::KeyboardChanged:
        return "the keyboard map was changed meanwhile";
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
    , m_waits(m_connection)
{
    Display *display = m_connection.display();
    int event = 0, error = 0, major = 0, minor = 0, opcode = 0;
    if (display == nullptr || XTestQueryExtension(display, &event, &error, &major, &minor) == False ||
        XkbQueryExtension(display, &opcode, &event, &error, &major, &minor) == False) {
        qWarning() << "Typing: this display lets no keys be injected";
        return;
    }
    XTestGrabControl(display, True);
    X11SecondKeyboard::removeLeft(display);
    m_keys = std::make_unique<X11ScratchKeys>(m_connection);
    m_usable = m_keys->count() > 0;
    m_slots = ScratchSlots(m_keys->count());
    m_neverShown = XCreateSimpleWindow(display, m_connection.root(), -9, -9, 1, 1, 0, 0, 0);
    XSetWindowAttributes unmanaged{};
    unmanaged.override_redirect = True;
    m_asideWindow = XCreateWindow(display, m_connection.root(), -9, -9, 1, 1, 0, 0, InputOnly, CopyFromParent,
                                  CWOverrideRedirect, &unmanaged);
    XMapWindow(display, m_asideWindow);
}

X11Poster::~X11Poster()
{
    m_second.reset();
    if (m_keys) {
        lookBehind(); // what a program that hangs has yet to take is unbound by the next one of us
        m_keys->keepAtEnd(m_behind.struck());
    }
    m_keys.reset();
}

PostResult X11Poster::post(WindowId window, const QString &text)
{
    PostResult result;
    if (!m_usable) {
        result.stop = PostStop::NoKeys;
        return result;
    }
    checkMap();
    if (m_keys->count() == 0) {
        result.stop = PostStop::NoKeys;
        return result;
    }
    m_waits.listen(true);
    const X11Target target = x11Target(m_connection, window);
    limitStates(target.habits.oneState);
    const int typable = typableLength(text, target.habits);
    result.stop = typeInto(target, text.left(typable), result.posted);
    if (result.stop == PostStop::AtEnd && typable < text.size()) {
        result.posted = typable;
        result.stop = PostStop::Untypable;
    }
    m_waits.listen(false);
    if (m_behind.isEmpty()) {
        // Chromium and what is built on it heed only the keyboard that came last: while there is a second one
        // they take none of the user's keys. Programs that may still have to take ours must know it.
        m_second.reset();
    }
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

PostStop X11Poster::ask(WindowId window, int limitMs)
{
    if (!m_usable || !m_connection.exists(window)) {
        return PostStop::AtEnd; // nobody is there who could be seen to hang
    }
    const X11Target target = x11Target(m_connection, window);
    m_waits.listen(true);
    m_waits.ask(target);
    const PostStop stop = m_waits.awaitAnswer(target, limitMs);
    m_waits.listen(false);
    m_connection.discardEvents();
    return stop == PostStop::Hung ? stop : PostStop::AtEnd;
}

PostStop X11Poster::refusal(const X11Target &target) const
{
    if (!m_connection.exists(target.window)) {
        return PostStop::Gone;
    }
    if (!m_connection.isViewable(target.window)) {
        return PostStop::Hidden;
    }
    return m_lock.isLocked() ? PostStop::ScreenLocked : PostStop::AtEnd;
}

PostStop X11Poster::typeInto(const X11Target &target, const QString &text, int &taken)
{
    PostStop stop = refusal(target);
    if (stop != PostStop::AtEnd) {
        return stop;
    }
    // A program that hangs is sent nothing: when it wakes it would take what has been offered elsewhere.
    bool answered = false;
    if (m_behind.contains(target)) {
        m_waits.ask(target);
        stop = m_waits.awaitAnswer(target);
        if (stop != PostStop::AtEnd) {
            return stop;
        }
        answered = true;
        if (target.answersPing) { // any other is sent the text in any case, and its keys are held
            m_behind.remove(target);
            holdSlots();
        }
    }
    findFreeSlots();
    return typeBatches(target, text, answered, taken);
}

PostStop X11Poster::typeBatches(const X11Target &target, const QString &text, bool answered, int &taken)
{
    int sent = 0, changes = 0;
    m_underWay.clear();
    PostingPlan plan(text, m_slots, target.habits);
    while (!plan.atEnd()) {
        if (!m_underWay.empty()) {
            // Each batch but the first begins with a key that is bound anew, or with a pause.
            const PostStop stop = awaitTaken(target, X11Waits::drainMs);
            if (stop != PostStop::AtEnd) {
                return stop;
            }
            taken = sent;
            findFreeSlots();
        }
        const PostBatch batch = plan.next();
        if (batch.strokes.empty()) {
            return PostStop::NoKeys;
        }
        const PostStop stop = typeBatch(target, batch, answered);
        if (stop == PostStop::KeyboardChanged) {
            m_keys->checkMap();
            startSlots();
            if (++changes <= mostChanges) {
                plan.again();
                continue;
            }
        }
        if (stop != PostStop::AtEnd) {
            return stop;
        }
        changes = 0;
        sent = batch.strokes.back().end;
        m_underWay = batch.struck();
    }
    const PostStop stop = m_underWay.empty() ? PostStop::AtEnd : awaitTaken(target, X11Waits::lastDrainMs);
    if (stop == PostStop::AtEnd) {
        taken = sent;
    }
    return stop;
}

PostStop X11Poster::typeBatch(const X11Target &target, const PostBatch &batch, bool &answered)
{
    if (!m_keys->bind(batch.rebind)) {
        return PostStop::KeyboardChanged;
    }
    PostStop stop = PostStop::AtEnd;
    if (!answered || (m_underWay.empty() && !batch.rebind.empty())) {
        // The answer comes behind the change of the map: Chromium, which learns the whole map anew after a
        // keyboard has gone, would read the first key by the old one otherwise.
        answered = true;
        m_waits.ask(target);
        stop = m_waits.awaitAnswer(target);
    }
    if (stop == PostStop::AtEnd && batch.after == PostBatch::After::Settled) {
        stop = m_waits.awaitSettled(target);
    }
    return stop == PostStop::AtEnd ? send(target, batch) : stop;
}

PostStop X11Poster::awaitTaken(const X11Target &target, int drain)
{
    X11Waits::Taken taken = m_waits.awaitTaken(target, drain);
    if (taken.stop == PostStop::AtEnd && !m_keys->yield(m_underWay)) {
        taken.stop = PostStop::KeyboardChanged; // what it made of them, nobody knows
    }
    if (taken.maybeBehind) {
        m_behind.add(target, m_underWay);
    } else {
        m_behind.remove(target);
    }
    m_underWay.clear();
    holdSlots();
    return taken.stop;
}

void X11Poster::holdSlots()
{
    std::vector<int> held = m_behind.struck();
    if (m_oneState) {
        for (int &slot : held) {
            slot = slot < 0 ? slot : slot % m_keys->keyCount(); // no key of theirs gets another symbol
        }
    }
    m_slots.hold(held);
}

void X11Poster::lookBehind()
{
    if (!m_behind.isEmpty()) {
        m_waits.listen(true);
        m_behind.removeIf(
            [this](const X11Target &target, qint64 ms) { return m_waits.hasCaughtUp(target, ms); });
        m_waits.listen(false);
    }
}

void X11Poster::findFreeSlots()
{
    const int free = m_slots.freeCount();
    const bool few =
        free < m_slots.count() / 4 && (!m_lastLook.isValid() || m_lastLook.hasExpired(lookAgainMs));
    if (free > 0 && !few) {
        return;
    }
    lookBehind();
    m_lastLook.start();
    m_waits.listen(true);
    holdSlots();
    if (m_slots.freeCount() == 0) {
        qWarning() << "Typing: no key is left but those that a program which hangs has yet to take";
        m_behind.letSlotsGo();
        holdSlots();
    }
}

void X11Poster::checkMap()
{
    if (!m_keys->checkMap()) {
        startSlots();
    }
}

void X11Poster::startSlots()
{
    m_behind.letSlotsGo();
    m_slots = ScratchSlots(m_oneState ? m_keys->keyCount() : m_keys->count());
}

bool X11Poster::isFocused(const X11Target &target) const
{
    return m_connection.focus() == target.window;
}

PostStop X11Poster::send(const X11Target &target, const PostBatch &batch)
{
    QElapsedTimer clock;
    clock.start();
    PostStop stop = sendAtOnce(target, batch);
    if (stop == PostStop::FocusRefused && !m_second) {
        stop = sendAtOnce(target, batch); // the focus left before the grab, and only now it gets one
    }
    while (stop == PostStop::KeyboardGrabbed && clock.elapsed() < grabTimeoutMs && !m_waits.end().isOver()) {
        X11Waits::pause(grabRetryMs); // a window switcher, a menu that is about to close
        stop = sendAtOnce(target, batch);
    }
    return stop;
}

PostStop X11Poster::sendAtOnce(const X11Target &target, const PostBatch &batch)
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
    } else if (!m_keys->yield(batch.struck())) {
        stop = PostStop::KeyboardChanged;
    } else if (!findOwnKeys(batch)) {
        stop = PostStop::NoKeys;
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
    if (!m_usable) {
        return true;
    }
    lookBehind();
    if (!m_behind.isEmpty()) {
        holdSlots();
        m_connection.discardEvents();
        return false;
    }
    m_second.reset();
    m_slots.clear();
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

bool X11Poster::findOwnKeys(const PostBatch &batch)
{
    m_connection.discardEvents(); // Xlib knows of a change once it has taken its event
    const auto find = [this, &batch](int slot, unsigned long symbol, int &keycode) {
        const auto isStruck = [slot](const PostStroke &stroke) { return stroke.slot == slot; };
        if (std::none_of(batch.strokes.begin(), batch.strokes.end(), isStruck)) {
            return true;
        }
        keycode = XKeysymToKeycode(m_connection.display(), symbol);
        return keycode != 0;
    };
    return find(PostStroke::Return, XK_Return, m_returnKey) && find(PostStroke::Tab, XK_Tab, m_tabKey);
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
        m_keys->release(m_behind.struck());
        m_slots = ScratchSlots(oneState ? m_keys->keyCount() : m_keys->count());
        holdSlots();
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
    const X11LiftedModifiers lifted(display);
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
}

} // namespace mevo
