// What tests, fuzz targets and benchmarks of the instruction script share.
#ifndef CORVANE_TESTS_SUPPORT_SCRIPTSUPPORT_H
#define CORVANE_TESTS_SUPPORT_SCRIPTSUPPORT_H

#include <string>
#include <utility>
#include <vector>

#include "instructions/InstructionsException.h"
#include "launcher/LauncherFacts.h"
#include "support/TestAccess.h"
#include "support/Texts.h"
#include "tagfile/TagFile.h"
#include "util/LauncherException.h"

namespace test {

// A variable's name, such as "N1", and its value as text.
using Variables = std::vector<std::pair<std::string, std::string>>;

// Gives every variable its first value, then these ones theirs.
inline void setVariables(const Variables& variables = {}) {
  LauncherTestAccess::resetState();
  for (const auto& [name, value] : variables) {
    const auto number = static_cast<std::int32_t>(std::stol(name.substr(1)));
    if (name[0] == 'N') {
      LauncherFacts::setLongVariable(number, static_cast<std::int32_t>(std::stol(value)));
    } else {
      LauncherFacts::setStringVariable(number, SString(value));
    }
  }
}

// The variables that have not their first value, such as "N1=5 S10=[a b]".
inline std::string describeVariables() {
  std::string text;
  for (std::int32_t n = 1; n <= 5; ++n) {
    if (const std::int32_t value = LauncherFacts::getLongVariable(n); value != 0) {
      text += (text.empty() ? "N" : " N") + std::to_string(n) + "=" + std::to_string(value);
    }
  }
  for (std::int32_t n = 1; n <= 10; ++n) {
    if (const SString value = LauncherFacts::getStringVariable(n); !value.empty()) {
      text += (text.empty() ? "S" : " S") + std::to_string(n) + "=[" + str(value) + "]";
    }
  }
  return text;
}

inline void fillScript(TagFile& file, const std::vector<std::string>& lines) {
  for (const std::string& line : lines) {
    file.appendTagValue("INSTRUCTIONS", SString(line));
  }
}

// What `body` returned, or what it threw: "LauncherException: TEXT" or "Line N: TEXT".
template <class Body>
std::string outcomeOf(Body body) {
  try {
    return body();
  } catch (const InstructionsException& e) {
    return "Line " + std::to_string(e.getLineNumber()) + ": " + str(e.getMessage());
  } catch (const LauncherException& e) {
    return "LauncherException: " + str(e.getMessage());
  }
}

}  // namespace test

#endif
