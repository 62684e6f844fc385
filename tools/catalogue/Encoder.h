// Characters in UTF-8, one by one, and their form in another encoding.
#ifndef CORVANE_TOOLS_CATALOGUE_ENCODER_H
#define CORVANE_TOOLS_CATALOGUE_ENCODER_H

#include <iconv.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace catalogue {

// Cuts UTF-8 text into its characters. A byte that belongs to none is a character of its own, which
// cannot be encoded.
std::vector<std::string_view> charactersOf(std::string_view utf8);

// The number of a character that charactersOf gave.
char32_t codePointOf(std::string_view character);

// How problems name a character: its number, then the character itself unless it would not show
// ("U+2026 '...'" with the one character between the quotes).
std::string nameOfCharacter(std::string_view character);

// Converts character by character. For stateless encodings only: an encoded text is its encoded
// characters in a row. Throws std::runtime_error when iconv does not know an encoding.
class Encoder {
 public:
  explicit Encoder(const char* to, const char* from = "UTF-8");
  ~Encoder();
  Encoder(const Encoder&) = delete;
  Encoder& operator=(const Encoder&) = delete;

  // Nothing when the encoding lacks the character. None is replaced by a similar one, except as
  // olderLetter() says (src/platform/CharsetTables.h).
  std::optional<std::string> encode(std::string_view character);

 private:
  std::optional<std::string> convert(std::string_view character);

  iconv_t m_converter;
};

}  // namespace catalogue

#endif
