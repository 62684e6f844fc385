// GenericDeque: the growable sequence on which all others of the launcher are built.
//
// Indexes are signed, from 0, and never fail: an index outside the sequence yields no entry, and
// operations with such an index do nothing, except that a negative one appends on insertion.
// Entries are owned by value. A sequence of one entry takes room for one (tag files are full of
// those); appending is linear in the number of entries.
#ifndef CORVANE_UTIL_GENERICDEQUE_H
#define CORVANE_UTIL_GENERICDEQUE_H

#include <cstddef>
#include <utility>
#include <vector>

template <class Entry>
class GenericDeque {
 public:
  constexpr GenericDeque() noexcept = default;

  long size() const { return static_cast<long>(m_entries.size()); }
  bool empty() const { return m_entries.empty(); }

  // The entry at `index`, or null when there is none. Valid until the sequence is changed.
  Entry* at(long index) { return contains(index) ? &m_entries[asPosition(index)] : nullptr; }
  const Entry* at(long index) const {
    return contains(index) ? &m_entries[asPosition(index)] : nullptr;
  }

  void push_back(Entry entry) { m_entries.push_back(std::move(entry)); }

  // Puts `entry` in front of the entry at `index`. A negative index appends; an index at or past
  // the end does nothing (`entry` is destroyed).
  void insert(long index, Entry entry) {
    if (index >= size()) {
      return;
    }
    const auto place = index < 0 ? m_entries.end() : m_entries.begin() + index;
    m_entries.insert(place, std::move(entry));
  }

  void erase(long index) {
    if (contains(index)) {
      m_entries.erase(m_entries.begin() + index);
    }
  }

  void pop_back() { erase(size() - 1); }
  void clear() { m_entries.clear(); }

 private:
  static std::size_t asPosition(long index) { return static_cast<std::size_t>(index); }
  bool contains(long index) const { return index >= 0 && index < size(); }

  std::vector<Entry> m_entries;
};

#endif
