// Macros in a text. What the resolution in two parts gives is what replacing in place gives, also
// with values that hold delimiters, halves of macros, or their own macro.
#include <algorithm>
#include <string>
#include <utility>

#include "fuzz/Fuzzing.h"
#include "launchscript/MacroHandler.h"

namespace {

constexpr std::size_t kLongestText = 512;
constexpr int kMostMacros = 100;  // from there on values are empty: they may name themselves

// The value of a macro is some part of the text.
class PartsOfText : public MacroHandler {
 public:
  explicit PartsOfText(std::string text) : m_text(std::move(text)) {}

  CommandText processMacro(const MacroText& text, char, std::size_t start,
                           std::size_t& end) const override {
    return value(text.buffer().bytes().substr(start + 1, end - start - 1));
  }
  SString value(const SString& name) const {
    const std::size_t begin = name.size() * 7 % (m_text.size() + 1);
    return ++m_calls > kMostMacros ? SString() : SString(m_text.substr(begin, name.size() + 2));
  }

 private:
  std::string m_text;
  mutable int m_calls = 0;
};

// Find, replace in place, look again from there; then single the doubled delimiters.
SString resolveInPlace(const PartsOfText& handler, SString text, char delimiter) {
  std::size_t p = text.find(delimiter);
  while (p != SString::npos && p + 2 < text.size()) {
    const std::size_t q = text.find(delimiter, p + 2);
    if (q == SString::npos) {
      break;
    }
    text.replace(p, q + 1 - p, handler.value(text.substr(p + 1, q - p - 1)));
    p = text.find(delimiter, p);
  }
  const char pair[] = {delimiter, delimiter, '\0'};
  for (p = text.find(pair); p != SString::npos; p = text.find(pair, p + 1)) {
    text.erase(p, 1);
  }
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(fuzz::toText(data, std::min(size, kLongestText)));
  for (const char delimiter : {'%', '@'}) {
    fuzz::require(PartsOfText(text).resolve(SString(text), delimiter).bytes() ==
                  resolveInPlace(PartsOfText(text), SString(text), delimiter));
  }
  return 0;
}
