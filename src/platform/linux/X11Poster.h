#pragma once

#include "output/PostingPlan.h"
#include "platform/WindowSystem.h"
#include "platform/linux/X11Connection.h"
#include "platform/linux/X11ScratchKeys.h"

#include <memory>
#include <set>

namespace mevo {

/// Types texts into windows by injected key events, one text at a time, on the thread that it was made
/// on. The keys are bound in batches; before a key is bound anew the target has translated what it was
/// sent before.
class X11Poster
{
public:
    X11Poster();
    ~X11Poster();

    /// Whether this server lets keys be injected and bound.
    bool isUsable() const { return m_usable; }
    PostResult post(WindowId window, const QString &text);

private:
    struct SecondKeyboard;
    bool awaitTranslated(unsigned long topLevel, bool &answersPing, int drainMs);
    bool ping(unsigned long topLevel);
    bool awaitPong(unsigned long topLevel, long serial);
    bool sendFocused(WindowId window, const PostBatch &batch);
    bool sendBySecondKeyboard(WindowId window, const PostBatch &batch);
    /// `device` is an XDevice of the second keyboard, null for the user's own.
    void strike(const PostBatch &batch, void *device);
    int keycodeOf(const PostStroke &stroke) const;
    std::vector<int> liftModifiers();
    void putBackModifiers(const std::vector<int> &keycodes);

    X11Connection m_connection;
    std::unique_ptr<X11ScratchKeys> m_keys;
    std::unique_ptr<ScratchSlots> m_slots;
    std::unique_ptr<SecondKeyboard> m_second;
    bool m_usable = false;
    int m_returnKey = 0;
    int m_tabKey = 0;
    std::set<unsigned long> m_answering; ///< top-level windows that have answered a ping
    std::set<unsigned long> m_silent;    ///< those that say that they do and have never done so
    long m_pingSerial = 0;
};

} // namespace mevo
