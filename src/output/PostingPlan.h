#pragma once

#include <QString>
#include <QStringList>

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

/// UTF-16 units from the start of `text` that a program takes by key strokes: some drop characters outside
/// the BMP. `programs` are the names of its window class.
int typableLength(const QString &text, const QStringList &programs);

/// Scratch keys that symbols are bound to. The one whose symbol was used longest ago is bound anew.
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
    /// Finds slots for distinct symbols, at most count() of them, and returns what has to be bound anew.
    std::vector<Binding> assign(const std::vector<KeySymbol> &symbols);
    /// The slot that yields `symbol`, -1 when none does.
    int slotOf(KeySymbol symbol) const;
    /// Whether any slot yields anything.
    bool anyBound() const { return !m_bySymbol.empty(); }
    /// Forgets every binding.
    void clear();

private:
    struct Slot
    {
        KeySymbol symbol = 0;
        quint64 lastUse = 0;
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
    std::vector<ScratchSlots::Binding>
        rebind; ///< to be bound first; the earlier keys must be translated by then
    std::vector<PostStroke> strokes;
};

/// Cuts a text into batches.
class PostingPlan
{
public:
    /// `scratch` outlives the plan and keeps its bindings from one text to the next.
    PostingPlan(const QString &text, ScratchSlots &scratch);
    bool atEnd() const { return m_next == m_units.size(); }
    /// The next batch: as many characters as the slots can yield at one time. Empty at the end, and when
    /// a character needs a slot and there are none at all.
    PostBatch next();

private:
    std::vector<PostUnit> m_units;
    ScratchSlots &m_scratch;
    std::size_t m_next = 0;
};

} // namespace mevo
