// The charsets that the launcher can write: which ones, and their tables.
//
// They are those of the catalogue's languages (titles are shown in them, too), those that other
// systems use for these languages, and the other one-byte charsets of Unix locales.
#ifndef CORVANE_TOOLS_CATALOGUE_CHARSETS_H
#define CORVANE_TOOLS_CATALOGUE_CHARSETS_H

#include <cstdint>
#include <string>
#include <vector>

#include "Encoder.h"

namespace catalogue {

struct Charset {
  std::string name;      // as the launcher compares it; see src/platform/CharsetTables.h
  std::string encoding;  // iconv's name
  std::uint8_t firstLead = 0;
  std::uint8_t columns = 0;
  std::vector<std::uint16_t> characters;
};

// In the order of the launcher's tables. Throws std::runtime_error when iconv lacks one.
std::vector<Charset> makeCharsets();

// True when the charset's table holds every character of the text (UTF-8), with the bytes that
// `encoder`, which converts to this charset, gives it.
bool canShow(const Charset& charset, Encoder& encoder, std::string_view text);

}  // namespace catalogue

#endif
