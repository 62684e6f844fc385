#include "Encoder.h"

#include <cstdint>
#include <cstdio>
#include <stdexcept>

#include "platform/CharsetTables.h"

namespace catalogue {
namespace {

std::size_t lengthFromFirstByte(unsigned char byte) {
  if (byte < 0x80) return 1;
  if (byte >= 0xC2 && byte < 0xE0) return 2;
  if (byte >= 0xE0 && byte < 0xF0) return 3;
  if (byte >= 0xF0 && byte < 0xF5) return 4;
  return 1;
}

bool isControl(char32_t number) {
  return number < 0x20 || (number >= 0x7F && number < 0xA0);
}

// In UTF-8; a letter from U+0080 to U+07FF.
std::string twoBytesOf(char32_t letter) {
  return {static_cast<char>(0xC0 | letter >> 6), static_cast<char>(0x80 | (letter & 0x3F))};
}

}  // namespace

std::vector<std::string_view> charactersOf(std::string_view utf8) {
  std::vector<std::string_view> characters;
  while (!utf8.empty()) {
    const std::size_t length = lengthFromFirstByte(static_cast<unsigned char>(utf8.front()));
    characters.push_back(utf8.substr(0, length));
    utf8.remove_prefix(characters.back().size());
  }
  return characters;
}

char32_t codePointOf(std::string_view character) {
  constexpr unsigned char kFirstByteMask[] = {0x7F, 0x7F, 0x1F, 0x0F, 0x07};
  char32_t number =
      static_cast<unsigned char>(character.front()) & kFirstByteMask[character.size()];
  for (const char byte : character.substr(1))
    number = number << 6 | (static_cast<unsigned char>(byte) & 0x3F);
  return number;
}

std::string nameOfCharacter(std::string_view character) {
  const char32_t number = codePointOf(character);
  char name[16];
  std::snprintf(name, sizeof name, "U+%04lX", static_cast<unsigned long>(number));
  return isControl(number) ? name : std::string(name) + " '" + std::string(character) + "'";
}

Encoder::Encoder(const char* to, const char* from) : m_converter(iconv_open(to, from)) {
  if (reinterpret_cast<std::intptr_t>(m_converter) == -1) {
    throw std::runtime_error(std::string("iconv does not know the encoding ") +
                             (to == std::string("UTF-8") ? from : to));
  }
}

Encoder::~Encoder() {
  iconv_close(m_converter);
}

std::optional<std::string> Encoder::encode(std::string_view character) {
  std::optional<std::string> bytes = convert(character);
  const char32_t older = olderLetter(codePointOf(character));
  return bytes || older == 0 ? bytes : convert(twoBytesOf(older));
}

std::optional<std::string> Encoder::convert(std::string_view character) {
  std::string source(character);
  char target[16];
  char* from = source.data();
  char* to = target;
  std::size_t fromLeft = source.size();
  std::size_t toLeft = sizeof target;
  iconv(m_converter, nullptr, nullptr, nullptr, nullptr);
  // A positive result counts characters that were replaced by others.
  if (iconv(m_converter, &from, &fromLeft, &to, &toLeft) != 0 || fromLeft != 0) return std::nullopt;
  return std::string(target, to);
}

}  // namespace catalogue
