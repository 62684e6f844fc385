#include "authoring/Findings.h"

#include <algorithm>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace authoring {

void Findings::error(Place place, std::string what, std::string why, std::string advice) {
  m_findings.push_back(
      {Severity::kError, std::move(place), std::move(what), std::move(why), std::move(advice)});
}

void Findings::warning(Place place, std::string what, std::string why, std::string advice) {
  m_findings.push_back(
      {Severity::kWarning, std::move(place), std::move(what), std::move(why), std::move(advice)});
}

void Findings::add(const Findings& others) {
  m_findings.insert(m_findings.end(), others.m_findings.begin(), others.m_findings.end());
}

void Findings::sort(const std::vector<std::string>& files) {
  std::unordered_map<std::string, std::size_t> ranks;
  for (const std::string& file : files) {
    ranks.try_emplace(file, ranks.size() + 1);
  }
  const auto rankOf = [&ranks](const Finding& finding) {
    const auto rank = ranks.find(finding.place.file);
    return std::make_tuple(rank == ranks.end() ? 0 : rank->second, finding.place.line);
  };
  std::stable_sort(m_findings.begin(), m_findings.end(),
                   [&rankOf](const Finding& a, const Finding& b) { return rankOf(a) < rankOf(b); });
}

void Findings::makeStrict() {
  for (Finding& finding : m_findings) {
    finding.severity = Severity::kError;
  }
}

std::size_t Findings::count(Severity severity) const {
  return static_cast<std::size_t>(
      std::count_if(m_findings.begin(), m_findings.end(),
                    [severity](const Finding& finding) { return finding.severity == severity; }));
}

}  // namespace authoring
