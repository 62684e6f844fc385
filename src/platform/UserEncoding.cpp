#include "platform/UserEncoding.h"

#include <clocale>
#include <cstdlib>

namespace {

constexpr wchar_t kLastAscii = 0x7F;

// The locale that the C library takes for the character type: the first of these that is not empty.
SString nameOfUserLocale() {
  for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && *value != '\0') {
      return value;
    }
  }
  return {};
}

char toLowerAscii(char byte) {
  return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

}  // namespace

UserEncoding::UserEncoding() : m_saved(std::setlocale(LC_CTYPE, nullptr)) {
  if (std::setlocale(LC_CTYPE, "") == nullptr && isUtf8(nameOfUserLocale())) {
    std::setlocale(LC_CTYPE, "C.UTF-8");
  }
}

UserEncoding::~UserEncoding() {
  std::setlocale(LC_CTYPE, m_saved.c_str());
}

bool UserEncoding::isNeededFor(const wchar_t* text) {
  // Negative characters (stray bytes) cannot be converted in any locale.
  while (*text != L'\0' && *text <= kLastAscii) {
    ++text;
  }
  return *text != L'\0';
}

bool UserEncoding::isUtf8(const SString& localeName) {
  const std::size_t dot = localeName.find('.');
  SString codeset;
  for (std::size_t i = dot; i < localeName.size() && localeName[i] != '@'; ++i) {
    if (localeName[i] != '-') {
      codeset += toLowerAscii(localeName[i]);
    }
  }
  return codeset == ".utf8";
}
