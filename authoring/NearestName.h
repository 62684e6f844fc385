// NearestName: what a misspelt name was probably meant to be.
#ifndef CORVANE_AUTHORING_NEARESTNAME_H
#define CORVANE_AUTHORING_NEARESTNAME_H

#include <string>
#include <string_view>
#include <vector>

namespace authoring {

// The name nearest to `word`, the first of several: case does not count, and one letter in four may
// be added, left out or changed. Empty when none is near.
std::string_view nearestName(std::string_view word, const std::vector<std::string_view>& names);

// The same over the rows of a table with names, as "did you mean NAME?".
template <class Rows>
std::string didYouMean(std::string_view word, const Rows& rows) {
  std::vector<std::string_view> names;
  for (const auto& row : rows) {
    names.emplace_back(row.name);
  }
  const std::string_view name = nearestName(word, names);
  return name.empty() ? "" : "did you mean " + std::string(name) + "?";
}

}  // namespace authoring

#endif
