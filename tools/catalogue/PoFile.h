// A PO file as its library reads it: the header fields that matter here, and the entries in use.
//
// Syntax errors, and whatever the library itself complains of (an entry that stands twice, bytes
// that are not UTF-8), are added to `problems` with file, line and locale.
#ifndef CORVANE_TOOLS_CATALOGUE_POFILE_H
#define CORVANE_TOOLS_CATALOGUE_POFILE_H

#include <string>
#include <vector>

#include "Problems.h"

namespace catalogue {

struct PoEntry {
  std::string context;  // msgctxt: the catalogue index in decimal; empty when absent
  std::string english;  // msgid
  std::string text;     // msgstr; empty when not translated
  bool fuzzy = false;
  bool plural = false;
};

struct PoFile {
  std::string contentType;
  std::string language;
  std::vector<PoEntry> entries;  // in the file's order, without the header and obsolete entries
};

// Returns what could be read; nothing at all when the file does not open.
PoFile readPoFile(const std::string& path, const char* locale, Problems& problems);

}  // namespace catalogue

#endif
