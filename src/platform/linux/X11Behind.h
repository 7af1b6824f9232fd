#pragma once

#include "platform/linux/X11Target.h"

#include <QElapsedTimer>

#include <map>
#include <vector>

namespace mevo {

/// The windows whose programs may still have to take keys of ours, each with the slots that those were struck
/// on: what they yield must not change before.
class X11Behind
{
public:
    bool contains(const X11Target &target) const { return m_entries.count(target.topLevel) > 0; }
    bool isEmpty() const { return m_entries.empty(); }
    void add(const X11Target &target, const std::vector<int> &struck)
    {
        Entry &entry = m_entries[target.topLevel];
        entry.target = target;
        entry.since.start();
        entry.struck.insert(entry.struck.end(), struck.begin(), struck.end());
    }
    void remove(const X11Target &target) { m_entries.erase(target.topLevel); }
    /// Removes those of whose targets, and of the milliseconds since they were last sent anything,
    /// `hasCaughtUp` is true.
    template <class HasCaughtUp>
    void removeIf(HasCaughtUp hasCaughtUp)
    {
        for (auto entry = m_entries.begin(); entry != m_entries.end();) {
            const bool has = hasCaughtUp(entry->second.target, entry->second.since.elapsed());
            entry = has ? m_entries.erase(entry) : std::next(entry);
        }
    }
    /// All their slots, in no order.
    std::vector<int> struck() const
    {
        std::vector<int> all;
        for (const auto &entry : m_entries) {
            all.insert(all.end(), entry.second.struck.begin(), entry.second.struck.end());
        }
        return all;
    }
    /// The windows stay; what they were sent will not be what they take.
    void letSlotsGo()
    {
        for (auto &entry : m_entries) {
            entry.second.struck.clear();
        }
    }

private:
    struct Entry
    {
        X11Target target;
        QElapsedTimer since;
        std::vector<int> struck;
    };
    std::map<unsigned long, Entry> m_entries; ///< by top-level window
};

} // namespace mevo
