// Charset: one of the encodings that the launcher can write.
//
// The C library is never asked to convert: for most charsets it would load modules of the machine
// that we run on, which need not fit the library that we are linked with. A value is a number and
// is copied freely.
#ifndef CORVANE_PLATFORM_CHARSET_H
#define CORVANE_PLATFORM_CHARSET_H

#include <optional>
#include <string_view>

#include "util/SString.h"

class Charset {
 public:
  static constexpr Charset ascii() { return Charset(kAscii); }
  static constexpr Charset utf8() { return Charset(kUtf8); }
  // The charset of that name, of which only letters (in any case) and digits count: "ISO-8859-1",
  // "iso88591", "eucJP". Nothing for a charset that we have no table of.
  [[nodiscard]] static std::optional<Charset> named(std::string_view name);

  // Its number in kCharsetTables; -1 when it needs no table.
  constexpr int table() const { return m_number < 0 ? -1 : m_number; }
  constexpr bool isUtf8() const { return m_number == kUtf8; }
  // Appends the character's bytes. False, with nothing appended, when the charset lacks it, or it
  // is half of a surrogate pair or no character at all.
  [[nodiscard]] bool append(char32_t character, SString& text) const;

  friend constexpr bool operator==(Charset a, Charset b) { return a.m_number == b.m_number; }

 private:
  static constexpr int kAscii = -1;
  static constexpr int kUtf8 = -2;

  explicit constexpr Charset(int number) : m_number(number) {}

  int m_number;
};

#endif
