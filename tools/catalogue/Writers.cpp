#include "Writers.h"

#include <cstdio>

#include "Encoder.h"

namespace catalogue {
namespace {

constexpr const char* kTablesHead =
    "// Generated from messages/*.po by tools/make_catalogue.cpp: do not edit.\n"
    "#include \"platform/MessageCatalogue.h\"\n";

constexpr const char* kPageHead =
    "# Every message in every language\n"
    "\n"
    "Generated from `messages/*.po`: do not edit, but build the target `messages_page`. How the\n"
    "translations are kept, and which encodings they are stored in, tells [messages.md]"
    "(messages.md).\n"
    "\n"
    "`%s` is a name that the launcher puts in. A blank at the beginning or the end of a text, "
    "where\n"
    "other text joins it, is shown as `\xE2\x90\xA3`.\n";

std::string encoded(const std::string& utf8, Encoder& encoder) {
  std::string bytes;
  for (const std::string_view character : charactersOf(utf8))
    bytes += encoder.encode(character).value();
  return bytes;
}

// Octal escapes end after three digits, so nothing that follows is taken for a part of them.
std::string literalOf(const std::string& bytes) {
  std::string literal = "\"";
  for (const char byte : bytes) {
    const auto number = static_cast<unsigned char>(byte);
    if (byte == '"' || byte == '\\') {
      literal += '\\';
      literal += byte;
    } else if (number >= 0x20 && number < 0x7F) {
      literal += byte;
    } else {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\%03o", static_cast<unsigned>(number));
      literal += escape;
    }
  }
  return literal + "\"";
}

std::string tableOf(const Locale& locale, const Texts& texts, Variant variant) {
  Encoder encoder(variant == Variant::Utf8 ? "UTF-8" : locale.encoding);
  const std::string name = std::string("unixlauncher_msg_") + locale.code + "[]";
  std::string table =
      "\nextern const char* const " + name + ";\nconst char* const " + name + " = {\n";
  for (const std::string& text : texts)
    table += "    " + literalOf(encoded(text, encoder)) + ",\n";
  return table + "    nullptr};\n";
}

// Code spans show blanks and angle brackets as they are; no text holds a back quote or a bar.
std::string shownText(std::string text) {
  const std::string shownBlank = "\xE2\x90\xA3";
  if (text.back() == ' ') text.replace(text.size() - 1, 1, shownBlank);
  if (text.front() == ' ') text.replace(0, 1, shownBlank);
  return "`" + text + "`";
}

std::string sectionOf(const Catalogue& catalogue, std::size_t index) {
  std::string section = "\n## " + std::to_string(index) + ". " + shownText(catalogue[0][index]) +
                        "\n\n| Locale | Language | Text |\n|---|---|---|\n";
  for (std::size_t i = 0; i < kLocaleCount; ++i) {
    section += std::string("| `") + kLocales[i].code + "` | " + kLocales[i].language + " | " +
               shownText(catalogue[i][index]) + " |\n";
  }
  return section;
}

}  // namespace

std::string tablesOf(const Catalogue& catalogue, Variant variant) {
  std::string source = kTablesHead;
  std::string list = "\nconst char* const* const msg_locale_table[] = {\n";
  for (std::size_t i = 0; i < kLocaleCount; ++i) {
    source += tableOf(kLocales[i], catalogue[i], variant);
    list += std::string("    unixlauncher_msg_") + kLocales[i].code + ",\n";
  }
  return source + list + "    nullptr};\n";
}

std::string pageOf(const Catalogue& catalogue) {
  std::string page = kPageHead;
  for (std::size_t index = 1; index < kEntryCount; ++index)
    page += sectionOf(catalogue, index);
  return page;
}

}  // namespace catalogue
