// Texts as the tests compare them: conversions, error texts, and texts without what differs from
// run to run.
#ifndef CORVANE_TESTS_SUPPORT_TEXTS_H
#define CORVANE_TESTS_SUPPORT_TEXTS_H

#include <string>
#include <string_view>
#include <vector>

#include "util/LauncherException.h"
#include "util/SString.h"
#include "util/StringDeque.h"

namespace test {

inline std::string str(const SString& text) {
  return std::string(text.view());
}

inline SString sstr(std::string_view text) {
  return SString(text);
}

inline std::vector<std::string> toVector(const StringDeque& deque) {
  std::vector<std::string> texts;
  for (long i = 0; i < deque.size(); ++i) {
    texts.push_back(str(deque[i]));
  }
  return texts;
}

// The text that `step` throws; empty when it succeeds.
template <class Error = LauncherException, class Step>
std::string errorOf(Step step) {
  try {
    step();
    return "";
  } catch (const Error& e) {
    return e.what();
  }
}

// Every `from` in `text` becomes `to`: rows write HOME or DIR for folders that each run makes.
std::string replaced(const std::string& text, const std::string& from, const std::string& to);

// How often `part` is in `text`.
int countOf(const std::string& part, const std::string& text);

// `text` with DIR for the folder `scratch`, and cvj# for each temporary name.
std::string normalised(const std::string& text, const std::string& scratch);

}  // namespace test

#endif
