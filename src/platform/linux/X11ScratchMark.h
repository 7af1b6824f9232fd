#pragma once

#include "output/PostingPlan.h"

#include <vector>

namespace mevo {

class X11Connection;

/// Which keys are bound, and what they yield, written on the root window beside a selection that dies with
/// us: the next start can unbind what a crash has left, and nothing that somebody else has bound since.
/// Several programs of ours may have keys bound at one time: each has a mark of its own. Changed with the
/// server grabbed.
class X11ScratchMark
{
public:
    struct Key
    {
        int keycode = 0;
        std::vector<KeySymbol> symbols; ///< as the keyboard map has them

        bool operator==(const Key &other) const
        {
            return keycode == other.keycode && symbols == other.symbols;
        }
    };

    explicit X11ScratchMark(X11Connection &connection);
    ~X11ScratchMark();
    X11ScratchMark(const X11ScratchMark &) = delete;
    X11ScratchMark &operator=(const X11ScratchMark &) = delete;

    /// Writes down that these are bound; the mark goes when there are none. While they change both what a key
    /// has yielded and what it is going to may stand in it.
    void write(const std::vector<Key> &keys);
    /// What programs of ours that are gone have left bound, and have marked.
    std::vector<Key> left() const;
    /// Takes the marks of those down.
    void removeLeft();

private:
    struct Place
    {
        unsigned long property = 0; ///< on the root window
        unsigned long selection = 0;
    };
    Place place(int index) const;
    bool isOwned(const Place &place) const;
    /// Where nothing is written, and nobody writes.
    Place freePlace() const;
    std::vector<Key> read(const Place &place) const;

    X11Connection &m_connection;
    unsigned long m_owner = 0;
    Place m_place;
    std::vector<Key> m_written;
};

} // namespace mevo
