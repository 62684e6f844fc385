#include "platform/MessageCatalogue.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/CharsetTables.h"
#include "platform/UserLocale.h"

namespace {

constexpr std::size_t kMessageSize = 1024;
constexpr std::size_t kLocaleCodeSize = 5;
constexpr int kEnglish = 0;
constexpr int kNone = -1;

const char* codeOf(int locale) {
  return storedText(locale, 0);
}

// The first locale whose code `matches`; kNone when there is none.
template <class Matches>
int findLocale(Matches matches) {
  for (int i = 0; i < kLocaleCount; ++i) {
    if (matches(codeOf(i))) {
      return i;
    }
  }
  return kNone;
}

bool beginsWith(const char* text, const char* prefix) {
  return std::strncmp(text, prefix, std::strlen(prefix)) == 0;
}

// True when the locale's name is the code, with or without a country, charset or variant after it.
bool isNamedBy(const char* name, const char* code) {
  return beginsWith(name, code) && std::strchr("_.@", name[std::strlen(code)]) != nullptr;
}

// Current systems name Norwegian by its two written forms. The table is in the first.
bool isNorwegian(const char* name) {
  return isNamedBy(name, "nb") || isNamedBy(name, "nn");
}

int findNorwegian() {
  return findLocale([](const char* code) { return std::strcmp(code, "no") == 0; });
}

// QUIRK(hong-kong-reads-english): "zh_HK" reads English, not the texts of "zh".
bool wantsEnglish(const char* name) {
  return std::strcmp(name, "C") == 0 || beginsWith(name, "zh_HK");
}

// The rule of corvane-launcher: the first five bytes of LANG are a code ("pt_BR.UTF-8", "it"), or
// LANG begins with one ("de_DE" finds "de").
int localeOfLang() {
  const char* lang = std::getenv("LANG");
  if (lang == nullptr || wantsEnglish(lang)) {
    return kEnglish;
  }
  int found = findLocale([lang](const char* code) {  //
    return std::strncmp(code, lang, kLocaleCodeSize) == 0;
  });
  if (found == kNone) {
    found = findLocale([lang](const char* code) { return beginsWith(lang, code); });
  }
  if (found == kNone && isNorwegian(lang)) {
    found = findNorwegian();
  }
  return found == kNone ? kEnglish : found;
}

// The rule of corvane-launcher-any: variables and names are read as the C library reads them, so
// "fil_PH" is not Finnish. A code with a country is preferred.
int localeOfUser() {
  const char* name = userLocale("LC_MESSAGES");
  if (wantsEnglish(name)) {
    return kEnglish;
  }
  int found = findLocale([name](const char* code) {
    return std::strchr(code, '_') != nullptr && isNamedBy(name, code);
  });
  if (found == kNone) {
    found = findLocale([name](const char* code) { return isNamedBy(name, code); });
  }
  if (found == kNone && isNorwegian(name)) {
    found = findNorwegian();
  }
  return found == kNone ? kEnglish : found;
}

bool canShow(Charset charset, int locale) {
  return charset.isUtf8() ||
         (charset.table() >= 0 && (kLocaleCharsets[locale] >> charset.table() & 1) != 0);
}

// The next character of a stored text, which is known to be valid UTF-8.
char32_t nextCharacter(const char*& text) {
  const auto first = static_cast<unsigned char>(*text++);
  if (first < 0x80) {
    return first;
  }
  const int more = first < 0xE0 ? 1 : first < 0xF0 ? 2 : 3;
  char32_t character = first & (0x3FU >> more);
  for (int i = 0; i < more; ++i) {
    character = character << 6 | (static_cast<unsigned char>(*text++) & 0x3FU);
  }
  return character;
}

SString convertText(const char* text, Charset charset) {
  SString converted;
  while (*text != '\0') {
    const char32_t character = nextCharacter(text);
    if (!charset.append(character, converted)) {
      (void)charset.append(olderLetter(character), converted);
    }
  }
  return converted;
}

// The format of a message as it is printed. English is ASCII, which every charset holds.
SString formatOf(int id) {
  const int locale = get_locale();
  const char* stored = storedText(locale, id);
  return kTextsAreUtf8 && locale != kEnglish ? convertText(stored, consoleCharset()) : stored;
}

// The formats come from the catalogue, whose build checks that they hold one "%s" at most.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"

void formatMessage(char* buffer, const char* format, const char* text) {
  std::snprintf(buffer, kMessageSize, format, text);
}

#pragma GCC diagnostic pop

}  // namespace

const char* storedText(int locale, int index) {
  const char* text = kStoredTexts + kLocaleStarts[locale];
  for (; index > 0; --index) {
    text += std::strlen(text) + 1;
  }
  return text;
}

int get_locale() {
  if (!kTextsAreUtf8) {
    return localeOfLang();
  }
  const int locale = localeOfUser();
  return locale == kEnglish || canShow(consoleCharset(), locale) ? locale : kEnglish;
}

// In a locale that is not installed corvane-launcher does what the C library does.
Charset consoleCharset() {
  return userCharset(kTextsAreUtf8 ? NamedCharset::IsBelieved : NamedCharset::MustBeInstalled);
}

std::unique_ptr<char[]> get_msg(int id, const void* arg) {
  auto buffer = std::make_unique<char[]>(kMessageSize);
  if (id < 0 || id >= kCatalogueSize) {
    std::snprintf(buffer.get(), kMessageSize, "Error displaying message: id(%d)", id);
    return buffer;
  }
  // What the C library shows for a null string; handing it one is not defined everywhere.
  const char* text = arg == nullptr ? "(null)" : static_cast<const char*>(arg);
  formatMessage(buffer.get(), formatOf(id).c_str(), text);
  return buffer;
}
