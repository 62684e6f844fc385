#include "instructions/LabelIndex.h"

#include <bit>
#include <functional>
#include <string_view>

namespace {

bool isLabel(const SString& line) {
  return line[0] == ':';
}

std::size_t countLabels(const StringDeque& lines) {
  std::size_t count = 0;
  for (long i = 1; i < lines.size(); ++i) {
    if (isLabel(lines[i])) {
      ++count;
    }
  }
  return count;
}

}  // namespace

// Twice as many slots as labels, and at least one more: a search always ends at a free slot.
LabelIndex::LabelIndex(const StringDeque& lines)
    : m_lines(lines), m_slots(std::bit_ceil(2 * countLabels(lines) + 1), kNone) {
  // QUIRK(first-line-label): the search for a label begins at the second line, so that a label on
  // the first line is never found; scripts that want to loop put another line in front.
  for (long i = 1; i < lines.size(); ++i) {
    if (isLabel(lines[i])) {
      std::uint32_t& slot = m_slots[slotOf(lines[i])];
      slot = slot == kNone ? static_cast<std::uint32_t>(i) : slot;  // the first of equals wins
    }
  }
}

std::size_t LabelIndex::slotOf(const SString& target) const {
  const std::size_t mask = m_slots.size() - 1;
  std::size_t slot = std::hash<std::string_view>()(target.view()) & mask;
  while (m_slots[slot] != kNone && !(m_lines[static_cast<long>(m_slots[slot])] == target)) {
    slot = (slot + 1) & mask;
  }
  return slot;
}
