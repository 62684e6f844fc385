// PtrDeque: a sequence that owns the objects its entries point to.
//
// Removing an entry, or destroying the sequence, destroys its object. Indexes follow GenericDeque:
// an index outside the sequence yields null.
#ifndef CORVANE_UTIL_PTRDEQUE_H
#define CORVANE_UTIL_PTRDEQUE_H

#include <memory>
#include <utility>

#include "util/GenericDeque.h"

template <class Element>
class PtrDeque {
 public:
  constexpr PtrDeque() noexcept = default;

  long size() const { return m_entries.size(); }
  bool empty() const { return m_entries.empty(); }

  Element* at(long index) const {
    const std::unique_ptr<Element>* entry = m_entries.at(index);
    return entry == nullptr ? nullptr : entry->get();
  }
  Element* operator[](long index) const { return at(index); }
  Element* back() const { return at(size() - 1); }

  void push_back(std::unique_ptr<Element> element) { m_entries.push_back(std::move(element)); }
  void insert(long index, std::unique_ptr<Element> element) {
    m_entries.insert(index, std::move(element));
  }
  void erase(long index) { m_entries.erase(index); }
  void pop_back() { m_entries.pop_back(); }
  void clear() { m_entries.clear(); }

 private:
  GenericDeque<std::unique_ptr<Element>> m_entries;
};

#endif
