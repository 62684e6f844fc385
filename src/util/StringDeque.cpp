#include "util/StringDeque.h"

#include <utility>

constinit const SString StringDeque::emptyString;

const SString& StringDeque::at(long index) const {
  const SString* entry = m_entries.at(index);
  return entry == nullptr ? emptyString : *entry;
}

long StringDeque::indexOf(const SString& text) const {
  for (long i = 0; i < size(); ++i) {
    if (at(i) == text) {
      return i;
    }
  }
  return -1;
}

bool StringDeque::contains(const SString& text) const {
  return indexOf(text) >= 0;
}

void StringDeque::insert(long index, SString text) {
  m_entries.insert(index, std::move(text));
}

void StringDeque::set(long index, SString text) {
  if (SString* entry = m_entries.at(index)) {
    *entry = std::move(text);
  }
}

void StringDeque::eraseFirst(const SString& text) {
  m_entries.erase(indexOf(text));
}
