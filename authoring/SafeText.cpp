#include "authoring/SafeText.h"

#include <algorithm>
#include <cstdio>

namespace authoring {
namespace {

// Length, first byte and smallest code of UTF-8's forms.
struct Form {
  std::size_t bytes;
  unsigned char mask;
  unsigned char begin;
  std::uint32_t least;
};
constexpr Form kForms[] = {
    {1, 0x80, 0x00, 0}, {2, 0xE0, 0xC0, 0x80}, {3, 0xF0, 0xE0, 0x800}, {4, 0xF8, 0xF0, 0x10000}};

struct Range {
  std::uint32_t first;
  std::uint32_t last;
};
constexpr Range kUnsafe[] = {
    {0x00, 0x1F},     {0x7F, 0x9F},      // control characters
    {0x200E, 0x200F}, {0x202A, 0x202E},  // direction
    {0x2066, 0x2069}, {0x2028, 0x2029},  // direction; ends of lines
};

Letter readForm(std::string_view text, const Form& form) {
  const auto first = static_cast<unsigned char>(text[0]);
  if ((first & form.mask) != form.begin || text.size() < form.bytes) {
    return {};
  }
  std::uint32_t code = first & static_cast<unsigned char>(~form.mask);
  for (std::size_t i = 1; i < form.bytes; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if ((byte & 0xC0) != 0x80) {
      return {};
    }
    code = code << 6 | (byte & 0x3Fu);
  }
  const bool isLetter = code >= form.least && (code < 0xD800 || code > 0xDFFF) && code <= 0x10FFFF;
  return isLetter ? Letter{code, form.bytes} : Letter();
}

bool isUnsafe(std::uint32_t code) {
  return std::any_of(std::begin(kUnsafe), std::end(kUnsafe), [code](const Range& range) {
    return range.first <= code && code <= range.last;
  });
}

std::string escaped(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    char escape[5];
    std::snprintf(escape, sizeof escape, "\\x%02X",
                  static_cast<unsigned>(static_cast<unsigned char>(byte)));
    text += escape;
  }
  return text;
}

}  // namespace

Letter readLetter(std::string_view text) {
  for (const Form& form : kForms) {
    if (const Letter letter = readForm(text, form); letter.bytes != 0) {
      return letter;
    }
  }
  return {};
}

std::string safeText(std::string_view text) {
  std::string safe;
  while (!text.empty()) {
    const Letter letter = readLetter(text);
    const std::string_view bytes = text.substr(0, std::max<std::size_t>(letter.bytes, 1));
    safe += letter.bytes == 0 || isUnsafe(letter.code) ? escaped(bytes) : std::string(bytes);
    text.remove_prefix(bytes.size());
  }
  return safe;
}

bool isUtf8(std::string_view text) {
  while (!text.empty()) {
    const Letter letter = readLetter(text);
    if (letter.bytes == 0) {
      return false;
    }
    text.remove_prefix(letter.bytes);
  }
  return true;
}

}  // namespace authoring
