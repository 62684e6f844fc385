// The tables of the charsets that the launcher writes, which the build makes
// (tools/catalogue/Charsets.cpp). Constant data without pointers: nothing is relocated when the
// launcher starts.
//
// ASCII is a part of each charset and stands in no table; UTF-8 needs none.
#ifndef CORVANE_PLATFORM_CHARSETTABLES_H
#define CORVANE_PLATFORM_CHARSETTABLES_H

#include <cstdint>

// One charset. Its characters beyond ASCII are in kCharsetCharacters, in the order of their bytes.
// One byte a character: those of 0x80, 0x81, ... Two bytes: row by row; the first byte is
// `firstLead` plus the row's number, the second one is trailByte() of the column.
struct CharsetTable {
  char name[12];           // of letters and digits, in lower case: "iso88591"
  std::uint8_t firstLead;  // 0: one byte a character
  std::uint8_t columns;    // of a row
  std::uint16_t count;     // of characters
  std::uint32_t first;     // in kCharsetCharacters
};

extern const CharsetTable kCharsetTables[];
extern const int kCharsetCount;
extern const std::uint16_t kCharsetCharacters[];  // code points; 0: these bytes stand for none

// A table with rows of 94 has the second bytes A1 to FE; Big5 with 157 has 40 to 7E before them.
inline constexpr int kLowTrailColumns = 63;

constexpr unsigned trailByte(int columns, int column) {
  const int before = columns > 94 ? kLowTrailColumns : 0;
  return static_cast<unsigned>(column < before ? 0x40 + column : 0xA1 + column - before);
}

// The letter that older charsets have in the place of a newer one, or 0. Romanian is written with
// commas below the letters S and T; most charsets know them only with the cedilla.
constexpr char32_t olderLetter(char32_t letter) {
  switch (letter) {
    case 0x218:
      return 0x15E;
    case 0x219:
      return 0x15F;
    case 0x21A:
      return 0x162;
    case 0x21B:
      return 0x163;
    default:
      return 0;
  }
}

#endif
