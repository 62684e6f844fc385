#include "authoring/NearestName.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <utility>

namespace authoring {
namespace {

constexpr std::size_t kLettersPerMistake = 4;

char upperCase(char byte) {
  return static_cast<char>(std::toupper(static_cast<unsigned char>(byte)));
}

// How many letters must be added, left out, changed or swapped with their neighbour to make one of
// the other.
std::size_t distance(std::string_view a, std::string_view b) {
  using Row = std::vector<std::size_t>;  // from a beginning of `a` to each beginning of `b`
  Row last;
  Row row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  const auto isSame = [&](std::size_t i, std::size_t j) {
    return upperCase(a[i]) == upperCase(b[j]);
  };
  for (std::size_t i = 0; i < a.size(); ++i) {
    Row next(b.size() + 1, i + 1);
    for (std::size_t j = 0; j < b.size(); ++j) {
      next[j + 1] = std::min({row[j] + (isSame(i, j) ? 0 : 1), row[j + 1] + 1, next[j] + 1});
      if (i > 0 && j > 0 && isSame(i, j - 1) && isSame(i - 1, j)) {
        next[j + 1] = std::min(next[j + 1], last[j - 1] + 1);
      }
    }
    last = std::exchange(row, std::move(next));
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
