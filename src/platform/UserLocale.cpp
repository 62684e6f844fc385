#include "platform/UserLocale.h"

#include <langinfo.h>

#include <clocale>
#include <cstdlib>

namespace {

// The charset of the installed locale that the environment asks for. Asking for its name alone
// makes the C library load no converter.
Charset charsetOfInstalledLocale() {
  const SString saved(std::setlocale(LC_CTYPE, nullptr));
  if (std::setlocale(LC_CTYPE, "") == nullptr) {
    return Charset::ascii();
  }
  const SString name(nl_langinfo(CODESET));
  std::setlocale(LC_CTYPE, saved.c_str());
  return Charset::named(name).value_or(Charset::ascii());
}

}  // namespace

const char* userLocale(const char* category) {
  for (const char* variable : {"LC_ALL", category, "LANG"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && *value != '\0') {
      return value;
    }
  }
  return "";
}

std::string_view charsetInName(std::string_view locale) {
  const std::string_view beforeVariant = locale.substr(0, locale.find('@'));
  const std::size_t dot = beforeVariant.find('.');
  return dot == std::string_view::npos ? std::string_view() : beforeVariant.substr(dot + 1);
}

Charset userCharset(NamedCharset rule) {
  const auto named = Charset::named(charsetInName(userLocale("LC_CTYPE")));
  if (named && (named->isUtf8() || rule == NamedCharset::IsBelieved)) {
    return *named;
  }
  return charsetOfInstalledLocale();
}
