#include "support/Texts.h"

#include <regex>

namespace test {

// In one pass: a text may be a whole program.
std::string replaced(const std::string& text, const std::string& from, const std::string& to) {
  std::string result;
  std::size_t begin = 0;
  for (std::size_t found; (found = text.find(from, begin)) != std::string::npos;
       begin = found + from.size()) {
    result.append(text, begin, found - begin).append(to);
  }
  return result.append(text, begin);
}

int countOf(const std::string& part, const std::string& text) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

std::string normalised(const std::string& text, const std::string& scratch) {
  return std::regex_replace(replaced(text, scratch, "DIR"), std::regex("/cvj[A-Za-z0-9]{6}"),
                            "/cvj#");
}

}  // namespace test
