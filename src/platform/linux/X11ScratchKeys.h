#pragma once

#include "output/PostingPlan.h"
#include "platform/linux/X11ScratchMark.h"

#include <vector>

struct _XkbDesc;

namespace mevo {

class X11Connection;

/// What a keyboard has to be locked to for a key to yield one of its symbols.
struct X11KeyState
{
    unsigned group = 0; ///< 0 to 3
    bool level3 = false;

    bool operator==(const X11KeyState &other) const { return group == other.group && level3 == other.level3; }
};

/// The keycodes that the keyboard map leaves free, bound to whatever symbols a text needs. A slot is a key
/// in one state of the keyboard, so that a key has several of them. Which keys are bound is marked, so that
/// the next start can unbind what a crash has left.
class X11ScratchKeys
{
public:
    /// False gives each key one slot, which any state of the keyboard yields.
    static constexpr bool useStates = true;

    explicit X11ScratchKeys(X11Connection &connection);
    ~X11ScratchKeys();

    /// Slots in all.
    int count() const { return keyCount() * static_cast<int>(m_states.size()); }
    int keyCount() const { return static_cast<int>(m_keycodes.size()); }
    int keycode(int slot) const { return m_keycodes[static_cast<std::size_t>(slot % keyCount())]; }
    X11KeyState state(int slot) const { return m_states[static_cast<std::size_t>(slot / keyCount())]; }
    /// The modifier that X11KeyState::level3 stands for, 0 when no state has it.
    unsigned level3Mask() const { return m_type.mask; }
    /// Groups that the states use.
    int groupCount() const { return static_cast<int>(m_states.back().group) + 1; }
    /// Binds slots to symbols in one request; symbol 0 unbinds. False when somebody else has changed the map,
    /// and when the server has not taken it, as where some keyboard has a map without the type that states
    /// need: then there are fewer slots from now on. Either way the free keys are looked for anew: count()
    /// may change, and nothing is bound.
    bool bind(const std::vector<ScratchSlots::Binding> &bindings);
    /// Whether these slots yield what they were bound to. What is no slot (below 0) is not looked at.
    bool yield(const std::vector<int> &some) const;
    /// Whether the map is as bind() left it. When somebody has changed it, what is still ours is unbound.
    /// Then, and where nothing was bound, the free keys are looked for anew: count() may change, and nothing
    /// is bound.
    bool checkMap();
    /// Unbinds every slot but those of `kept`, and leaves the keys that somebody else has bound since. The
    /// mark names the keys of `kept` from now on, and goes when there are none.
    void release(const std::vector<int> &kept = {});
    /// Slots that stay bound, and marked, when this ends: the next one of us unbinds them.
    void keepAtEnd(const std::vector<int> &kept) { m_keptAtEnd = kept; }

private:
    /// A type of key that the map has, in which one modifier chooses between two sets of levels, whatever
    /// Shift does. Types are not changed: programs that run mistake such changes.
    struct TwoSets
    {
        int index = 0;
        unsigned mask = 0;
        std::vector<bool> second; ///< by level
    };
    /// Unbinds what programs of ours that are gone have left.
    void recover();
    void findFree();
    void findStates(const _XkbDesc &map);
    /// Whether the keys, and the type that states need, are as they were left.
    bool areAsLeft(const std::vector<int> &keys) const;
    bool typeStands(const _XkbDesc &map) const;
    /// What a key should yield, as a map that it is in has it; nothing when it is not bound.
    std::vector<KeySymbol> expectedOn(int key) const;
    std::vector<int> allKeys() const;
    /// The keys that are bound, for the mark.
    std::vector<X11ScratchMark::Key> boundKeys() const;
    /// Binds the keys to what all slots are to yield, marked before and after. To be called with the server
    /// grabbed.
    void rebind(const std::vector<int> &keys, std::vector<KeySymbol> symbols);
    /// The same, for slots with new symbols. False when the server has not taken it; then their keys yield
    /// nothing.
    bool writeKeys(const std::vector<int> &keys, const std::vector<ScratchSlots::Binding> &bindings);
    std::vector<KeySymbol> symbolsOf(std::size_t key) const;
    void appendKey(std::vector<unsigned char> &out, const std::vector<KeySymbol> &symbols) const;
    /// To be called with the server grabbed.
    void setMap(const std::vector<int> &keys);

    X11Connection &m_connection;
    std::vector<int> m_keycodes;
    bool m_useStates = useStates;
    std::vector<X11KeyState> m_states{{}};
    TwoSets m_type;
    std::vector<KeySymbol> m_symbols; ///< by slot, 0 for none
    std::vector<int> m_keptAtEnd;
    X11ScratchMark m_mark;
};

} // namespace mevo
