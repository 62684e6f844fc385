#include "TextRules.h"

namespace catalogue {
namespace {

using List = std::vector<std::string>;

// An identifier and the progress dot: the same in every language.
constexpr std::size_t kFixedEntries[] = {13, 18};

// Names of options must not be translated.
constexpr const char* kOptionNames[] = {"-cv:javahome", "-cv:tempdir", "-log", "-in"};

std::size_t countOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos;
       at = text.find(part, at + part.size()))
    ++count;
  return count;
}

std::size_t leadingBlanks(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string::npos ? text.size() : first;
}

std::size_t trailingBlanks(const std::string& text) {
  const std::size_t last = text.find_last_not_of(' ');
  return last == std::string::npos ? text.size() : text.size() - last - 1;
}

std::string has(std::size_t count, const std::string& what, std::size_t wanted) {
  return "has " + std::to_string(count) + " " + what + ", the English text " +
         std::to_string(wanted);
}

void checkCharacters(const std::string& text, const char* encoding, Encoder& encoder, List& list) {
  for (const std::string_view character : charactersOf(text)) {
    const char32_t number = codePointOf(character);
    if (number < 0x20 || (number >= 0x7F && number < 0xA0)) {
      list.push_back("holds the control character " + nameOfCharacter(character));
    } else if (!encoder.encode(character)) {
      list.push_back("the character " + nameOfCharacter(character) + " does not exist in " +
                     encoding);
    }
  }
}

// The texts are printf formats: a '%' that begins anything but "%s" reads arguments that are not
// there.
void checkPercent(const std::string& text, List& list) {
  if (countOf(text, "%") != countOf(text, "%s")) list.push_back("has a '%' other than in \"%s\"");
}

void checkBackslash(const std::string& text, List& list) {
  if (countOf(text, "\\") != countOf(text, "\\n"))
    list.push_back("has a '\\' other than in \"\\n\"");
}

void checkCounts(const std::string& english, const std::string& text, List& list) {
  const struct {
    const char* what;
    std::size_t wanted;
    std::size_t count;
  } rows[] = {
      {"\"%s\"", countOf(english, "%s"), countOf(text, "%s")},
      {"\"\\n\"", countOf(english, "\\n"), countOf(text, "\\n")},
      {"leading blanks", leadingBlanks(english), leadingBlanks(text)},
      {"trailing blanks", trailingBlanks(english), trailingBlanks(text)},
  };
  for (const auto& row : rows) {
    if (row.count != row.wanted) list.push_back(has(row.count, row.what, row.wanted));
  }
}

void checkOptionNames(const std::string& english, const std::string& text, List& list) {
  for (const char* name : kOptionNames) {
    if (countOf(english, name) != 0 && countOf(text, name) == 0)
      list.push_back(std::string("lacks the option name ") + name);
  }
}

}  // namespace

List problemsOfEnglish(const std::string& english, Encoder& ascii) {
  List list;
  checkCharacters(english, "ASCII", ascii, list);
  checkPercent(english, list);
  checkBackslash(english, list);
  if (countOf(english, "%s") > 1) list.push_back("has more than one \"%s\"");
  return list;
}

List problemsOfTranslation(std::size_t index, const std::string& english, const std::string& text,
                           const char* encoding, Encoder& encoder) {
  List list;
  checkCharacters(text, encoding, encoder, list);
  checkPercent(text, list);
  checkBackslash(text, list);
  checkCounts(english, text, list);
  checkOptionNames(english, text, list);
  for (const std::size_t fixed : kFixedEntries) {
    if (index == fixed && text != english) list.push_back("is the same in every language");
  }
  return list;
}

}  // namespace catalogue
