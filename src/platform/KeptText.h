// KeptText: what is kept of a text of any length: its beginning, its end, and how much lay between.
//
// Holds at most `Limits::first` + `Limits::last` bytes, however much is appended.
#ifndef CORVANE_PLATFORM_KEPTTEXT_H
#define CORVANE_PLATFORM_KEPTTEXT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "util/SString.h"

class KeptText {
 public:
  struct Limits {
    std::size_t first = SString::npos;
    std::size_t last = 0;
  };

  KeptText() = default;
  explicit KeptText(Limits limits) : m_limits(limits) {}

  void append(std::string_view bytes);
  // The text as far as it is kept without a gap from its first byte.
  const SString& beginning() const { return m_beginning; }
  std::uint64_t leftOut() const { return m_afterBeginning - m_end.size(); }
  // What is kept; where something is left out a line of its own says so: "[N bytes left out]".
  SString text() const;

 private:
  Limits m_limits;
  SString m_beginning;
  std::uint64_t m_afterBeginning = 0;  // bytes that came after the beginning
  std::string m_end;                   // the last of them; a ring once it is full
  std::size_t m_oldest = 0;            // where the ring begins
};

#endif
