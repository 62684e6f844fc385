#include "platform/Charset.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "platform/CharsetTables.h"

namespace {

constexpr char32_t kFirstBeyondAscii = 0x80;
constexpr char32_t kLastCharacter = 0x10FFFF;

char byteOf(char32_t number) {
  return static_cast<char>(static_cast<unsigned char>(number));
}

bool isHalfOfPair(char32_t character) {
  return character >= 0xD800 && character <= 0xDFFF;
}

// A continuation byte: the six bits from bit `shift` on.
char sixBits(char32_t character, int shift) {
  return byteOf(0x80 | (character >> shift & 0x3F));
}

bool appendUtf8(char32_t character, SString& text) {
  if (isHalfOfPair(character) || character > kLastCharacter) {
    return false;
  }
  if (character < 0x800) {
    text += byteOf(0xC0 | character >> 6);
  } else {
    if (character < 0x10000) {
      text += byteOf(0xE0 | character >> 12);
    } else {
      text += byteOf(0xF0 | character >> 18);
      text += sixBits(character, 12);
    }
    text += sixBits(character, 6);
  }
  text += sixBits(character, 0);
  return true;
}

// A linear search is enough: texts are short and few.
bool appendFromTable(const CharsetTable& table, char32_t character, SString& text) {
  const std::uint16_t* begin = kCharsetCharacters + table.first;
  const std::uint16_t* end = begin + table.count;
  const std::uint16_t* place = std::find(begin, end, character);
  if (place == end) {
    return false;
  }
  const auto index = static_cast<int>(place - begin);
  if (table.firstLead == 0) {
    text += byteOf(kFirstBeyondAscii + static_cast<char32_t>(index));
  } else {
    text += byteOf(static_cast<char32_t>(table.firstLead + index / table.columns));
    text += byteOf(trailByte(table.columns, index % table.columns));
  }
  return true;
}

bool isDigit(char byte) {
  return byte >= '0' && byte <= '9';
}

// Letters in lower case and digits; 0 for what does not count in a charset's name.
char plainOf(char byte) {
  if (byte >= 'A' && byte <= 'Z') {
    return static_cast<char>(byte - 'A' + 'a');
  }
  return isDigit(byte) || (byte >= 'a' && byte <= 'z') ? byte : '\0';
}

SString plainName(std::string_view name) {
  SString plain;
  for (const char byte : name) {
    if (plainOf(byte) != '\0') {
      plain += plainOf(byte);
    }
  }
  return plain;
}

}  // namespace

std::optional<Charset> Charset::named(std::string_view name) {
  const SString plain = plainName(name);
  if (plain == "utf8") {
    return utf8();
  }
  for (int i = 0; i < kCharsetCount; ++i) {
    if (plain == kCharsetTables[i].name) {
      return Charset(i);
    }
  }
  return std::nullopt;
}

bool Charset::append(char32_t character, SString& text) const {
  if (character < kFirstBeyondAscii) {
    text += byteOf(character);
    return true;
  }
  if (isUtf8()) {
    return appendUtf8(character, text);
  }
  return m_number >= 0 && appendFromTable(kCharsetTables[m_number], character, text);
}
