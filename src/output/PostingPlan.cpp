#include "output/PostingPlan.h"

#include <algorithm>
#include <tuple>

namespace mevo {

namespace {

constexpr KeySymbol UnicodeSymbols = 0x01000000;

bool isLineEnd(char32_t c)
{
    return c == U'\n' || c == U'\r' || c == 0x2028 || c == 0x2029;
}

bool isControl(char32_t c)
{
    return c < 0x20 || (c >= 0x7f && c < 0xa0);
}

bool isPair(KeySymbol symbol)
{
    return symbol > UnicodeSymbols + 0xffff;
}

bool hasOwnKey(KeySymbol symbol)
{
    return symbol == ReturnSymbol || symbol == TabSymbol;
}

} // namespace

std::vector<PostUnit> postUnits(const QString &text)
{
    std::vector<PostUnit> units;
    units.reserve(static_cast<std::size_t>(text.size()));
    for (int i = 0; i < text.size(); ++i) {
        char32_t c = text.at(i).unicode();
        if (QChar::isSurrogate(c)) {
            if (!text.at(i).isHighSurrogate() || i + 1 == text.size() || !text.at(i + 1).isLowSurrogate()) {
                continue;
            }
            c = QChar::surrogateToUcs4(text.at(i), text.at(i + 1));
            ++i;
        }
        if (c == U'\r' && i + 1 < text.size() && text.at(i + 1) == QLatin1Char('\n')) {
            ++i;
        }
        if (isLineEnd(c)) {
            units.push_back({ReturnSymbol, i + 1});
        } else if (c == U'\t') {
            units.push_back({TabSymbol, i + 1});
        } else if (c >= 0xa0 && c <= 0xff) {
            units.push_back(
                {static_cast<KeySymbol>(c), i + 1}); // terminals know these by their old symbols only
        } else if (!isControl(c)) {
            units.push_back({UnicodeSymbols | static_cast<KeySymbol>(c), i + 1});
        }
    }
    return units;
}

ScratchSlots::ScratchSlots(int count)
    : m_slots(static_cast<std::size_t>(std::max(count, 0)))
{
}

void ScratchSlots::hold(const std::vector<int> &some)
{
    for (Slot &slot : m_slots) {
        slot.held = false;
    }
    for (const int slot : some) {
        if (slot >= 0 && slot < count()) {
            m_slots[static_cast<std::size_t>(slot)].held = true;
        }
    }
}

int ScratchSlots::freeCount() const
{
    return static_cast<int>(
        std::count_if(m_slots.begin(), m_slots.end(), [](const Slot &slot) { return !slot.held; }));
}

bool ScratchSlots::needsFree(KeySymbol symbol) const
{
    const int slot = slotOf(symbol);
    return slot < 0 || !m_slots[static_cast<std::size_t>(slot)].held;
}

std::vector<ScratchSlots::Binding> ScratchSlots::assign(const std::vector<KeySymbol> &symbols)
{
    ++m_use;
    std::vector<KeySymbol> missing;
    for (const KeySymbol symbol : symbols) {
        const int slot = slotOf(symbol);
        if (slot >= 0) {
            m_slots[static_cast<std::size_t>(slot)].lastUse = m_use;
        } else {
            missing.push_back(symbol);
        }
    }
    std::vector<Binding> bound;
    for (const KeySymbol symbol : missing) {
        const auto oldest =
            std::min_element(m_slots.begin(), m_slots.end(), [](const Slot &a, const Slot &b) {
                return std::tie(a.held, a.lastUse) < std::tie(b.held, b.lastUse);
            });
        if (oldest == m_slots.end() || oldest->held || oldest->lastUse == m_use) {
            break;
        }
        m_bySymbol.erase(oldest->symbol);
        *oldest = {symbol, m_use, false};
        const int slot = static_cast<int>(oldest - m_slots.begin());
        m_bySymbol[symbol] = slot;
        bound.push_back({slot, symbol});
    }
    return bound;
}

int ScratchSlots::slotOf(KeySymbol symbol) const
{
    const auto found = m_bySymbol.find(symbol);
    return found == m_bySymbol.end() ? -1 : found->second;
}

void ScratchSlots::clear()
{
    std::fill(m_slots.begin(), m_slots.end(), Slot());
    m_bySymbol.clear();
}

std::vector<int> PostBatch::struck() const
{
    std::vector<int> all;
    all.reserve(strokes.size());
    for (const PostStroke &stroke : strokes) {
        all.push_back(stroke.slot);
    }
    return all;
}

PostingPlan::PostingPlan(const QString &text, ScratchSlots &scratch, const TypingHabits &habits)
    : m_units(postUnits(text))
    , m_scratch(scratch)
    , m_habits(habits)
{
}

std::vector<ScratchSlots::Binding> PostingPlan::bindFurther()
{
    std::vector<KeySymbol> needed;
    int freeNeeded = 0;
    m_boundEnd = m_next;
    for (; m_boundEnd < m_units.size(); ++m_boundEnd) {
        const KeySymbol symbol = m_units[m_boundEnd].symbol;
        if (hasOwnKey(symbol) || std::find(needed.begin(), needed.end(), symbol) != needed.end()) {
            continue;
        }
        if (m_scratch.needsFree(symbol) && ++freeNeeded > m_scratch.freeCount()) {
            break;
        }
        needed.push_back(symbol);
    }
    return m_scratch.assign(needed);
}

PostBatch::After PostingPlan::pauseBefore(std::size_t index) const
{
    const KeySymbol symbol = m_units[index].symbol;
    const KeySymbol before = index == 0 ? 0 : m_units[index - 1].symbol;
    if ((m_habits.pairsOvertake && isPair(symbol) && !isPair(before)) ||
        (m_habits.ownKeysLag && hasOwnKey(before))) {
        return PostBatch::After::Settled;
    }
    return m_habits.mergesRepeats && symbol == before ? PostBatch::After::Translated
                                                      : PostBatch::After::Nothing;
}

PostBatch PostingPlan::next()
{
    PostBatch batch;
    if (atEnd()) {
        return batch;
    }
    if (m_next == m_boundEnd) {
        batch.rebind = bindFurther();
    }
    batch.after = pauseBefore(m_next);
    if (!batch.rebind.empty()) {
        batch.after = std::max(batch.after, PostBatch::After::Translated);
    }
    m_batchStart = m_next;
    for (; m_next < m_boundEnd; ++m_next) {
        if (m_next > m_batchStart && pauseBefore(m_next) != PostBatch::After::Nothing) {
            break;
        }
        const PostUnit &unit = m_units[m_next];
        batch.hasPairs = batch.hasPairs || isPair(unit.symbol);
        const int ownKey = unit.symbol == ReturnSymbol ? PostStroke::Return : PostStroke::Tab;
        batch.strokes.push_back({hasOwnKey(unit.symbol) ? ownKey : m_scratch.slotOf(unit.symbol), unit.end});
    }
    return batch;
}

} // namespace mevo
