#include "platform/KeptText.h"

#include <algorithm>

void KeptText::append(std::string_view bytes) {
  const std::size_t room = std::min(m_limits.first - m_beginning.size(), bytes.size());
  m_beginning.append(bytes.substr(0, room));
  bytes.remove_prefix(room);
  m_afterBeginning += bytes.size();
  bytes.remove_prefix(bytes.size() - std::min(bytes.size(), m_limits.last));
  const std::size_t growth = std::min(m_limits.last - m_end.size(), bytes.size());
  m_end.append(bytes.substr(0, growth));
  bytes.remove_prefix(growth);
  while (!bytes.empty()) {
    const std::size_t part = std::min(m_end.size() - m_oldest, bytes.size());
    m_end.replace(m_oldest, part, bytes.substr(0, part));
    m_oldest = (m_oldest + part) % m_end.size();
    bytes.remove_prefix(part);
  }
}

SString KeptText::text() const {
  SString whole = m_beginning;
  if (leftOut() > 0) {
    whole += whole.empty() || whole.back() == '\n' ? "[" : "\n[";
    whole += std::to_string(leftOut());
    whole += " bytes left out]\n";
  }
  const std::string_view end = m_end;
  whole += end.substr(m_oldest);
  whole += end.substr(0, m_oldest);
  return whole;
}
