#include "instructions/LabelIndex.h"

LabelIndex::LabelIndex(const StringDeque& lines) {
  // QUIRK(first-line-label): a label on the first line is never found.
  for (long i = 1; i < lines.size(); ++i) {
    if (lines[i][0] == ':') {
      // Of equal labels the first one counts.
      m_lineOf.try_emplace(lines[i].view(), static_cast<std::uint32_t>(i));
    }
  }
}

std::uint32_t LabelIndex::find(const SString& target) const {
  const auto label = m_lineOf.find(target.view());
  return label == m_lineOf.end() ? kNone : label->second;
}
