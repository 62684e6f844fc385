// LabelIndex: finds the line that defines a label, in constant time.
//
// Built once over a script's lines, which it does not own and which must stay as they are. A
// label's line is found by its whole text, colon included.
#ifndef CORVANE_INSTRUCTIONS_LABELINDEX_H
#define CORVANE_INSTRUCTIONS_LABELINDEX_H

#include <cstdint>
#include <string_view>
#include <unordered_map>

#include "util/SString.h"
#include "util/StringDeque.h"

class LabelIndex {
 public:
  // No line. It is the index of the first line, which never defines a label.
  static constexpr std::uint32_t kNone = 0;

  explicit LabelIndex(const StringDeque& lines);

  // The first line, counted from 0, that equals `target` (which begins with a colon); kNone when
  // there is none.
  std::uint32_t find(const SString& target) const;

 private:
  std::unordered_map<std::string_view, std::uint32_t> m_lineOf;  // views of the script's lines
};

#endif
