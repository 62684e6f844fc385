// ShownText: foreign text on somebody's terminal, and not too much of it.
#ifndef CORVANE_AUTHORING_SHOWNTEXT_H
#define CORVANE_AUTHORING_SHOWNTEXT_H

#include <cstddef>
#include <string>
#include <string_view>

namespace authoring {

inline constexpr std::size_t kLongestShown = 300;

// safeText of the text; of one that is longer than `longest` bytes its beginning, and "...".
std::string shownText(std::string_view text, std::size_t longest = kLongestShown);

}  // namespace authoring

#endif
