// StringDeque: a growable sequence of strings, indexed from 0.
//
// Reading never fails: an index outside 0..size()-1 yields the one shared empty string
// `StringDeque::emptyString`. Callers rely on it (an absent value reads as empty).
#ifndef CORVANE_UTIL_STRINGDEQUE_H
#define CORVANE_UTIL_STRINGDEQUE_H

#include <utility>

#include "util/GenericDeque.h"
#include "util/SString.h"

class StringDeque {
 public:
  static const SString emptyString;

  constexpr StringDeque() noexcept = default;

  long size() const { return m_entries.size(); }
  bool empty() const { return m_entries.empty(); }
  const SString& at(long index) const;
  const SString& operator[](long index) const { return at(index); }
  const SString& back() const { return at(size() - 1); }
  // True when an entry equals `text`.
  bool contains(const SString& text) const;

  void push_back(SString text) { m_entries.push_back(std::move(text)); }
  // As GenericDeque::insert: a negative index appends, one at or past the end does nothing.
  void insert(long index, SString text);
  // Overwrites the entry at `index`; does nothing for an index outside the sequence.
  void set(long index, SString text);
  void erase(long index) { m_entries.erase(index); }
  // Removes the first entry that equals `text`; does nothing when there is none.
  void eraseFirst(const SString& text);
  void pop_back() { m_entries.pop_back(); }
  void clear() { m_entries.clear(); }

 private:
  long indexOf(const SString& text) const;  // -1: none

  GenericDeque<SString> m_entries;
};

#endif
