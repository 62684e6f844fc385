#include "support/Texts.h"

#include <regex>

namespace test {

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t found = text.find(from); found != std::string::npos;
       found = text.find(from, found + to.size())) {
    text.replace(found, from.size(), to);
  }
  return text;
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
