// LabelIndex: finds the line that defines a label, at the same cost in a script of any length.
//
// Built once over a script's lines, which it does not own and which must stay as they are; about
// ten bytes a label. A label's line is found by its whole text, colon included.
#ifndef CORVANE_INSTRUCTIONS_LABELINDEX_H
#define CORVANE_INSTRUCTIONS_LABELINDEX_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "util/SString.h"
#include "util/StringDeque.h"

class LabelIndex {
 public:
  // No line: also the first one, which defines no label that can be found.
  static constexpr std::uint32_t kNone = 0;

  explicit LabelIndex(const StringDeque& lines);

  // The first line, counted from 0, that equals `target` (which begins with a colon); kNone when
  // there is none.
  std::uint32_t find(const SString& target) const { return m_slots[slotOf(target)]; }

 private:
  // Where the line equal to `target` stands in the table, or the free slot where it would.
  std::size_t slotOf(const SString& target) const;

  const StringDeque& m_lines;
  std::vector<std::uint32_t> m_slots;  // an open hash table of line numbers; kNone: free
};

#endif
