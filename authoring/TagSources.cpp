#include "authoring/TagSources.h"

namespace authoring {

const TagSource* TagSources::find(std::string_view name) const {
  const auto tag = m_last.find(std::string(name));
  return tag == m_last.end() ? nullptr : &m_tags[tag->second];
}

void TagSources::onLine(std::int32_t number, std::string_view line) {
  m_line.number = number;
  m_line.text = line;
}

void TagSources::onTag(std::string_view key) {
  m_last[std::string(key)] = m_tags.size();
  m_tags.push_back({std::string(key), m_line, {}, 0});
}

void TagSources::onValue() {
  m_tags.back().values.push_back(m_line);
}

void TagSources::onBlockEnd() {
  m_tags.back().end = m_line.number;
}

}  // namespace authoring
