#include "output/PostingPlan.h"

#include <algorithm>

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

int typableLength(const QString &text, const QStringList &programs)
{
    // Editors of KTextEditor heed the first half of the pair alone, which is no printable character.
    static const QStringList dropping{QStringLiteral("kate"), QStringLiteral("kwrite"),
                                      QStringLiteral("kdevelop")};
    const bool drops = std::any_of(programs.begin(), programs.end(), [](const QString &program) {
        return dropping.contains(program, Qt::CaseInsensitive);
    });
    const auto surrogate = std::find_if(text.begin(), text.end(), [](QChar c) { return c.isSurrogate(); });
    return drops ? static_cast<int>(surrogate - text.begin()) : text.size();
}

ScratchSlots::ScratchSlots(int count)
    : m_slots(static_cast<std::size_t>(std::max(count, 0)))
{
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
            std::min_element(m_slots.begin(), m_slots.end(),
                             [](const Slot &a, const Slot &b) { return a.lastUse < b.lastUse; });
        if (oldest == m_slots.end() || oldest->lastUse == m_use) {
            break;
        }
        m_bySymbol.erase(oldest->symbol);
        *oldest = {symbol, m_use};
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

PostingPlan::PostingPlan(const QString &text, ScratchSlots &scratch)
    : m_units(postUnits(text))
    , m_scratch(scratch)
{
}

PostBatch PostingPlan::next()
{
    const auto hasOwnKey = [](KeySymbol symbol) { return symbol == ReturnSymbol || symbol == TabSymbol; };

    std::vector<KeySymbol> needed;
    std::size_t end = m_next;
    for (; end < m_units.size(); ++end) {
        const KeySymbol symbol = m_units[end].symbol;
        if (hasOwnKey(symbol) || std::find(needed.begin(), needed.end(), symbol) != needed.end()) {
            continue;
        }
        if (static_cast<int>(needed.size()) == m_scratch.count()) {
            break;
        }
        needed.push_back(symbol);
    }

    PostBatch batch;
    batch.rebind = m_scratch.assign(needed);
    batch.strokes.reserve(end - m_next);
    for (; m_next < end; ++m_next) {
        const PostUnit &unit = m_units[m_next];
        const int ownKey = unit.symbol == ReturnSymbol ? PostStroke::Return : PostStroke::Tab;
        batch.strokes.push_back({hasOwnKey(unit.symbol) ? ownKey : m_scratch.slotOf(unit.symbol), unit.end});
    }
    return batch;
}

} // namespace mevo
