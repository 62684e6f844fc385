#include "launchscript/PlainWords.h"

#include <string_view>

namespace {

constexpr std::string_view kPlainOutsideQuotes =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 +,-./:=@%_^";
constexpr std::string_view kNotPlainInQuotes("$`\\\0", 4);

bool isPlain(char byte, bool isInQuotes) {
  return isInQuotes ? kNotPlainInQuotes.find(byte) == std::string_view::npos
                    : kPlainOutsideQuotes.find(byte) != std::string_view::npos;
}

// The words, as they come byte by byte.
class Words {
 public:
  // There is a word from here on, though it may stay empty.
  void begin() { m_isInWord = true; }
  void add(char byte) {
    begin();
    m_word += byte;
  }
  void end() {
    if (m_isInWord) {
      m_words.push_back(m_word);
    }
    m_word.clear();
    m_isInWord = false;
  }
  const StringDeque& all() const { return m_words; }

 private:
  StringDeque m_words;
  SString m_word;
  bool m_isInWord = false;
};

}  // namespace

std::optional<StringDeque> plainWords(const CommandText& command) {
  Words words;
  bool isInQuotes = false;
  for (std::size_t i = 0; i < command.size(); ++i) {
    const char byte = command.shape()[i];
    if (byte == '"') {
      isInQuotes = !isInQuotes;
      words.begin();
    } else if (!isPlain(byte, isInQuotes)) {
      return std::nullopt;
    } else if (byte == ' ' && !isInQuotes) {
      words.end();
    } else {
      words.add(command.bytes()[i]);
    }
  }
  if (isInQuotes) {
    return std::nullopt;
  }
  words.end();
  return words.all();
}
