#pragma once

#include "output/TypingHabits.h"

#include <QString>

#include <unordered_map>
#include <vector>

namespace mevo {

/// What one key of a keyboard map yields: an X key symbol.
using KeySymbol = quint32;

constexpr KeySymbol ReturnSymbol = 0xff0d;
constexpr KeySymbol TabSymbol = 0xff09;

/// One thing to type.
struct PostUnit
{
    KeySymbol symbol = 0;
    int end = 0; ///< UTF-16 units of the text that have gone once this is typed
};

/// The key strokes of a text, in order. Surrogate pairs are one stroke, a line end of any kind is one
/// Return; control characters and halves of pairs are left out.
/// Every other character, ASCII too, is a Unicode symbol: an input method in front of the target then
/// has no key of its own to take.
std::vector<PostUnit> postUnits(const QString &text);

/// Scratch keys that symbols are bound to. The one whose symbol was used longest ago is bound anew, of those
/// that are not held.
class ScratchSlots
{
public:
    struct Binding
    {
        int slot = 0;
        KeySymbol symbol = 0;
    };

    explicit ScratchSlots(int count);

    int count() const { return static_cast<int>(m_slots.size()); }
    /// Holds these slots, and those alone: they go on yielding what they do, and are not bound anew.
    void hold(const std::vector<int> &some);
    /// Slots that can be bound anew.
    int freeCount() const;
    /// Whether the symbol needs a slot that is not held, as long as it has none.
    bool needsFree(KeySymbol symbol) const;
    /// Finds slots for distinct symbols, of which at most freeCount() need a free one, and returns what has
    /// to be bound anew.
    std::vector<Binding> assign(const std::vector<KeySymbol> &symbols);
    /// The slot that yields `symbol`, -1 when none does.
    int slotOf(KeySymbol symbol) const;
    /// Forgets every binding, and holds nothing.
    void clear();

private:
    struct Slot
    {
        KeySymbol symbol = 0;
        quint64 lastUse = 0;
        bool held = false;
    };
    std::vector<Slot> m_slots;
    std::unordered_map<KeySymbol, int> m_bySymbol;
    quint64 m_use = 0;
};

/// One key to press and release.
struct PostStroke
{
    static constexpr int Return = -1;
    static constexpr int Tab = -2;
    int slot = 0; ///< a scratch slot, or one of the two keys above
    int end = 0;  ///< as PostUnit::end
};

/// Strokes that can be sent with one binding of the scratch keys.
struct PostBatch
{
    /// What the target must have done with the keys before.
    enum class After {
        Nothing,
        Translated, ///< it has taken them, so that keys may be bound anew
        Settled     ///< it has put them into its text, and sleeps
    };
    After after = After::Nothing;
    std::vector<ScratchSlots::Binding> rebind; ///< to be bound first
    std::vector<PostStroke> strokes;
    /// The slot of each stroke.
    std::vector<int> struck() const;
    bool hasPairs = false; ///< characters outside the BMP; where pairs overtake it begins with them
};

/// Cuts a text into batches: where keys have to be bound anew, and where the program's habits ask for a
/// pause.
class PostingPlan
{
public:
    /// `scratch` outlives the plan and keeps its bindings from one text to the next.
    PostingPlan(const QString &text, ScratchSlots &scratch, const TypingHabits &habits = {});
    bool atEnd() const { return m_next == m_units.size(); }
    /// The next batch: at most as many characters as the slots can yield at one time. Empty at the end, and
    /// when a character needs a slot and there are none at all.
    PostBatch next();
    /// The last batch has not been sent, and no slot yields anything any more: its characters come again.
    void again() { m_next = m_boundEnd = m_batchStart; }

private:
    /// Binds what as many units as possible need from m_next on, and sets m_boundEnd behind them.
    std::vector<ScratchSlots::Binding> bindFurther();
    /// What the target must have done before unit `index` is typed, bindings apart.
    PostBatch::After pauseBefore(std::size_t index) const;

    std::vector<PostUnit> m_units;
    ScratchSlots &m_scratch;
    TypingHabits m_habits;
    std::size_t m_batchStart = 0;
    std::size_t m_next = 0;
    std::size_t m_boundEnd = 0; ///< the units before it have their keys
};

} // namespace mevo
