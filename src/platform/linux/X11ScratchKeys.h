#pragma once

#include "output/PostingPlan.h"

#include <utility>
#include <vector>

namespace mevo {

class X11Connection;

/// The keycodes that the keyboard map leaves free, bound to whatever symbols a text needs. Which ones
/// are bound is written on the root window beside a selection that dies with us, so that the next start
/// can unbind what a crash has left.
class X11ScratchKeys
{
public:
    explicit X11ScratchKeys(X11Connection &connection);
    ~X11ScratchKeys();

    int count() const { return static_cast<int>(m_keycodes.size()); }
    int keycode(int slot) const { return m_keycodes[static_cast<std::size_t>(slot)]; }
    /// Binds slots to symbols in one request; symbol 0 unbinds.
    void bind(const std::vector<ScratchSlots::Binding> &bindings);
    /// Whether the map is as bind() left it. When somebody has changed it, what is still ours is unbound and
    /// the free keys are looked for anew, so that count() may change and nothing is bound.
    bool checkMap();
    /// Unbinds every slot and takes the mark away.
    void release();

private:
    void recover();
    void findFree();
    void mark(bool on);
    void setMap(const std::vector<std::pair<int, KeySymbol>> &symbols);

    X11Connection &m_connection;
    std::vector<int> m_keycodes;
    std::vector<KeySymbol> m_symbols; ///< by slot, 0 for none
    unsigned long m_owner = 0;
    bool m_marked = false;
};

} // namespace mevo
