#include "authoring/NearestName.h"

#include <algorithm>
#include <cctype>
#include <numeric>

namespace authoring {
namespace {

constexpr std::size_t kLettersPerMistake = 4;

char upperCase(char byte) {
  return static_cast<char>(std::toupper(static_cast<unsigned char>(byte)));
}

// How many letters must be added, left out or changed to make one of the other.
std::size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);  // from a beginning of `a` to each beginning of `b`
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t changed = diagonal + (upperCase(a[i]) == upperCase(b[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string_view nearestName(std::string_view word, const std::vector<std::string_view>& names) {
  std::string_view nearest;
  std::size_t least = std::string_view::npos;
  for (const std::string_view name : names) {
    const std::size_t mistakes = std::max<std::size_t>(1, name.size() / kLettersPerMistake);
    if (word.size() > name.size() + mistakes || name.size() > word.size() + mistakes) {
      continue;
    }
    const std::size_t difference = distance(word, name);
    if (difference <= mistakes && difference < least) {
      least = difference;
      nearest = name;
    }
  }
  return nearest;
}

}  // namespace authoring
