// The languages of the message catalogue, in the order of its tables, and how each is stored.
//
// Who uses it: the catalogue generator alone. The encodings are those that Unix systems around the
// year 2000 used for the language (docs/messages.md gives the reasons); their names are iconv's.
#ifndef CORVANE_TOOLS_CATALOGUE_LOCALES_H
#define CORVANE_TOOLS_CATALOGUE_LOCALES_H

#include <array>
#include <cstddef>

namespace catalogue {

inline constexpr std::size_t kLocaleCount = 27;

struct Locale {
  const char* code;      // what LANG begins with; also the stem of the PO file
  const char* encoding;  // of the traditional tables
  const char* language;  // in English, UTF-8
};

// English is the first and has no PO file: its texts are those of the template.
inline constexpr std::array<Locale, kLocaleCount> kLocales{{
    {"en", "ASCII", "English"},
    {"bg", "ISO-8859-5", "Bulgarian"},
    {"cs", "ISO-8859-2", "Czech"},
    {"da", "ISO-8859-1", "Danish"},
    {"de", "ISO-8859-1", "German"},
    {"el", "ISO-8859-7", "Greek"},
    {"es", "ISO-8859-1", "Spanish"},
    {"fi", "ISO-8859-1", "Finnish"},
    {"fr", "ISO-8859-1", "French"},
    {"hr", "ISO-8859-2", "Croatian"},
    {"hu", "ISO-8859-2", "Hungarian"},
    {"it", "ISO-8859-1", "Italian"},
    {"ja", "EUC-JP", "Japanese"},
    {"ko", "EUC-KR", "Korean"},
    {"nl", "ISO-8859-1", "Dutch"},
    {"no", "ISO-8859-1", "Norwegian"},
    {"pl", "ISO-8859-2", "Polish"},
    {"pt", "ISO-8859-1", "Portuguese"},
    {"pt_BR", "ISO-8859-1", "Portuguese (Brazil)"},
    {"ro", "ISO-8859-2", "Romanian"},
    {"ru", "ISO-8859-5", "Russian"},
    {"sk", "ISO-8859-2", "Slovak"},
    {"sl", "ISO-8859-2", "Slovenian"},
    {"sv", "ISO-8859-1", "Swedish"},
    {"tr", "ISO-8859-9", "Turkish"},
    {"zh", "GB2312", "Chinese (simplified)"},
    {"zh_TW", "Big5", "Chinese (traditional)"},
}};

}  // namespace catalogue

#endif
