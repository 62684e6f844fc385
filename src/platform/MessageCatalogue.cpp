#include "platform/MessageCatalogue.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr std::size_t kMessageSize = 1024;
constexpr std::size_t kLocaleCodeSize = 5;
constexpr int kEnglish = 0;

const char* codeOf(int locale) {
  return msg_locale_table[locale][0];
}

// The first locale whose code is all that counts of LANG ("pt_BR.UTF-8", "it"); -1 when there is
// none.
int findExactly(const char* lang) {
  for (int i = 0; msg_locale_table[i] != nullptr; ++i) {
    if (std::strncmp(codeOf(i), lang, kLocaleCodeSize) == 0) {
      return i;
    }
  }
  return -1;
}

// The first locale with whose code LANG begins ("de_DE" finds "de"); -1 when there is none.
int findByLanguage(const char* lang) {
  for (int i = 0; msg_locale_table[i] != nullptr; ++i) {
    if (std::strncmp(codeOf(i), lang, std::strlen(codeOf(i))) == 0) {
      return i;
    }
  }
  return -1;
}

// QUIRK(hong-kong-reads-english): "zh_HK" is not given to "zh". That table is in simplified
// characters, which readers in Hong Kong do not use; they prefer English.
bool wantsEnglish(const char* lang) {
  return lang == nullptr || std::strcmp(lang, "C") == 0 || std::strncmp(lang, "zh_HK", 5) == 0;
}

// The formats come from the catalogue, whose build checks that they hold one "%s" at most.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"

void formatMessage(char* buffer, const char* format, const char* text) {
  std::snprintf(buffer, kMessageSize, format, text);
}

#pragma GCC diagnostic pop

}  // namespace

int get_locale() {
  const char* lang = std::getenv("LANG");
  if (wantsEnglish(lang)) {
    return kEnglish;
  }
  const int exact = findExactly(lang);
  if (exact >= 0) {
    return exact;
  }
  const int language = findByLanguage(lang);
  return language >= 0 ? language : kEnglish;
}

std::unique_ptr<char[]> get_msg(int id, const void* arg) {
  auto buffer = std::make_unique<char[]>(kMessageSize);
  if (id < 0 || id >= kCatalogueSize) {
    std::snprintf(buffer.get(), kMessageSize, "Error displaying message: id(%d)", id);
    return buffer;
  }
  // What the C library shows for a null string; handing it one is not defined everywhere.
  const char* text = arg == nullptr ? "(null)" : static_cast<const char*>(arg);
  formatMessage(buffer.get(), msg_locale_table[get_locale()][id], text);
  return buffer;
}
