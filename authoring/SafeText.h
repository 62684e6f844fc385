// SafeText: bytes of files on their way to a terminal.
#ifndef CORVANE_AUTHORING_SAFETEXT_H
#define CORVANE_AUTHORING_SAFETEXT_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace authoring {

// The first letter of a text in UTF-8.
struct Letter {
  std::uint32_t code = 0;
  std::size_t bytes = 0;  // 0: no letter begins here
};
Letter readLetter(std::string_view text);

// The text with \xNN for each byte that a terminal could take as something else than a letter:
// control characters (also those of UTF-8 from U+0080 on), marks that turn the direction of writing
// or end a line, and bytes that are no UTF-8. The result is one line.
std::string safeText(std::string_view text);

bool isUtf8(std::string_view text);

}  // namespace authoring

#endif
