#include "authoring/TagSources.h"

#include <algorithm>

namespace authoring {

const TagSource* TagSources::find(std::string_view name) const {
  const auto tag = std::find_if(m_tags.rbegin(), m_tags.rend(),
                                [name](const TagSource& source) { return source.name == name; });
  return tag == m_tags.rend() ? nullptr : &*tag;
}

void TagSources::onLine(std::int32_t number, std::string_view line) {
  m_line.number = number;
  m_line.text = line;
}

void TagSources::onTag(std::string_view key) {
  m_tags.push_back({std::string(key), m_line, {}, 0});
}

void TagSources::onValue() {
  m_tags.back().values.push_back(m_line);
}

void TagSources::onBlockEnd() {
  m_tags.back().end = m_line.number;
}

}  // namespace authoring
